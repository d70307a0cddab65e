#pragma once

#include <filesystem>

#include "apps/vireo-view/FileFormat.h"
#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/Volume.h"

namespace vireo_view {

// Reads a file of one volume, or of several in time: of NIfTI, NRRD, MetaImage or TIFF. Throws InputError.
Volume readVolume(const std::filesystem::path& file, FileFormat format, const Progress& progress);

} // namespace vireo_view
