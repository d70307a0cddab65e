#pragma once

#include <filesystem>
#include <vector>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/NumberColumn.h"

namespace vireo_view {

// Rows of pixels, the highest one first. The channels of a pixel lie side by side: one number, one and opacity, red,
// green and blue, or these and opacity.
struct Picture
{
    NumberColumn numbers;
    int width = 0;
    int height = 0;
    int channels = 1;
};

// The pixels of a file, with the numbers that it has: TIFF, PFM, PGM and PPM, and what Qt reads. The pages of a TIFF,
// and the frames of an animation, are several. Throws InputError if it is none of these, or broken, or has no sizes
// that can be, and as InputBuffer does.
std::vector<Picture> readImages(const std::filesystem::path& file, const Progress& progress);

// What one picture takes in memory; throws InputError unless a file of that size can hold it, so that a few bytes that
// claim to be a huge picture fill no memory.
std::size_t checkedSizeOfPicture(
    const std::filesystem::path& file, std::uint64_t width, std::uint64_t height, std::uint64_t bytesPerPixel);

} // namespace vireo_view
