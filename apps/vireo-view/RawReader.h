#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/VoxelReader.h"

namespace vireo_view {

// What a person says of a file that holds nothing but voxels.
struct RawFormat
{
    std::array<int, 3> size{1, 1, 1};
    int numTimes = 1;
    VoxelType type = VoxelType::UINT8;
    bool isBigEndian = false;
};

// Of "256x256x128:int16" or, with times and big-endian numbers, "64x64x32x10:float:be". Nothing if the text is none.
std::optional<RawFormat> parseRawFormat(std::string_view text);

// Reads the voxels, which begin with the file. Throws InputError if there are fewer.
Volume readRaw(const std::filesystem::path& file, const RawFormat& format, const Progress& progress);

} // namespace vireo_view
