#pragma once

#include <filesystem>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/Volume.h"

namespace vireo_view {

// Reads a TIFF file whose pages are the slices of a volume, by libtiff: of single numbers, or of red, green and blue
// (and opacity). Where ImageJ has written it, the sizes of voxels and the times are those that it says. Throws
// InputError if the file does not hold that, or if the program was built without libtiff.
Volume readTiffStack(const std::filesystem::path& file, const Progress& progress);

// Whether the file is a TIFF whose first two pages are alike. What is damaged behind them, readTiffStack() says.
bool isTiffStack(const std::filesystem::path& file);

// Whether the pages of such a file are rather images than slices: there are up to 16 of them, and neither ImageJ nor a
// spacing says that they are slices.
bool isTiffOfImages(const std::filesystem::path& file);

} // namespace vireo_view
