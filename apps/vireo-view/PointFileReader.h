#pragma once

#include <filesystem>

#include "apps/vireo-view/FileFormat.h"
#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/Point.h"

namespace vireo_view {

// Reads the positions of a PLY, OFF, XYZ or PTS file, at least one; what else the file says of its points, and what
// comes behind them, is left out. Throws InputError if the file does not hold what it should.
Points3 readPointFile(const std::filesystem::path& file, FileFormat format, const Progress& progress);

} // namespace vireo_view
