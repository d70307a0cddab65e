#pragma once

#include "apps/vireo-view/ImageReader.h"

namespace vireo_view {

// All pages of a TIFF. Integers and floating-point numbers keep their type; pages of other kinds, such as those of
// palettes or of single bits, become colours. Throws as readImages() does.
std::vector<Picture> readTiffImages(const std::filesystem::path& file, const Progress& progress);

} // namespace vireo_view
