#pragma once

#include "apps/vireo-view/Geometry.h"
#include "apps/vireo-view/InputBuffer.h"

namespace vireo_view {

// Reads the points and triangles of a glTF file of version 2, as text or binary, where its nodes place them. Buffers
// may be in files beside it. Throws InputError if something does not hold, or if the file needs an extension that is
// not known.
GeometryFile readGltf(InputBuffer& input);

} // namespace vireo_view
