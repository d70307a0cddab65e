#pragma once

#include "apps/vireo-view/Geometry.h"
#include "apps/vireo-view/InputBuffer.h"

namespace vireo_view {

// Reads the points of an OBJ file with their colours, its polygons, and the normals at their corners. A point at whose
// corners normals differ becomes several. Throws InputError if there are no points, or if a line cannot be read.
GeometryFile readObj(InputBuffer& input);

} // namespace vireo_view
