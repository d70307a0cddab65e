#pragma once

#include "apps/vireo-view/Geometry.h"
#include "apps/vireo-view/InputBuffer.h"

namespace vireo_view {

// Reads a PLY file in ASCII or either byte order. Throws InputError if its points cannot be read; faces that end too
// soon are remarked.
GeometryFile readPly(InputBuffer& input);

} // namespace vireo_view
