#pragma once

#include <filesystem>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/Volume.h"

namespace vireo_view {

// Reads a MetaImage, FILE.mha or FILE.mhd with its voxels in a file beside it. Throws InputError if it does not hold
// what it should.
Volume readMetaImage(const std::filesystem::path& file, const Progress& progress);

} // namespace vireo_view
