#pragma once

#include <filesystem>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/Volume.h"

namespace vireo_view {

// Reads a NRRD file, FILE.nrrd or FILE.nhdr with its voxels in a file beside it, of raw, gzip or text encoding. Throws
// InputError if it does not hold what it should.
Volume readNrrd(const std::filesystem::path& file, const Progress& progress);

} // namespace vireo_view
