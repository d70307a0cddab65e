#pragma once

#include "apps/vireo-view/Geometry.h"
#include "apps/vireo-view/InputBuffer.h"

namespace vireo_view {

// Reads an STL file, as text or binary. Its normals follow from its triangles. Throws InputError if it has none, or
// not as many as it promises.
GeometryFile readStl(InputBuffer& input);

} // namespace vireo_view
