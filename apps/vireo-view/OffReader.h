#pragma once

#include "apps/vireo-view/Geometry.h"
#include "apps/vireo-view/InputBuffer.h"

namespace vireo_view {

// Reads an OFF file, as text or binary, with any of the letters before its keyword. Throws InputError if its points
// cannot be read; faces that end too soon are remarked.
GeometryFile readOff(InputBuffer& input);

} // namespace vireo_view
