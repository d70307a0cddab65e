#pragma once

#include <filesystem>

#include "apps/vireo-view/FileFormat.h"
#include "apps/vireo-view/Geometry.h"
#include "apps/vireo-view/InputBuffer.h"

namespace vireo_view {

// Reads the points and surfaces of a PLY, OFF, OBJ, STL, glTF, XYZ or PTS file, with all that it says of them; at least
// one point. Throws InputError if the file does not hold what it should.
GeometryFile readGeometry(const std::filesystem::path& file, FileFormat format, const Progress& progress);

} // namespace vireo_view
