#include "apps/vireo-view/RawReader.h"

#include <array>
#include <bit>
#include <charconv>
#include <string>
#include <utility>

#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

constexpr std::array<std::pair<std::string_view, VoxelType>, 12> TYPES = {
    {{"int8", VoxelType::INT8}, {"uint8", VoxelType::UINT8}, {"int16", VoxelType::INT16}, {"uint16", VoxelType::UINT16},
        {"int32", VoxelType::INT32}, {"uint32", VoxelType::UINT32}, {"int64", VoxelType::INT64},
        {"uint64", VoxelType::UINT64}, {"float", VoxelType::FLOAT}, {"float32", VoxelType::FLOAT},
        {"double", VoxelType::DOUBLE}, {"float64", VoxelType::DOUBLE}}};

// Takes what is before the separator from the text, and the separator.
std::string_view takeUntil(std::string_view& text, char separator)
{
    const std::string_view part = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(text.size(), part.size() + 1));
    return part;
}

int positiveNumber(std::string_view text)
{
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && number > 0 ? number : 0;
}

} // namespace

std::optional<RawFormat> parseRawFormat(std::string_view text)
{
    RawFormat format;
    std::string_view extents = takeUntil(text, ':');
    const std::string_view type = takeUntil(text, ':');
    const bool isInOrder = text.empty() || text == "be" || text == "le";
    format.isBigEndian = text == "be";
    std::size_t numExtents = 0;
    for (; !extents.empty() && numExtents < 4; ++numExtents) {
        int& extent = numExtents < 3 ? format.size[numExtents] : format.numTimes;
        extent = positiveNumber(takeUntil(extents, 'x'));
        if (extent == 0)
            return {};
    }
    for (const auto& [name, known] : TYPES)
        if (name == type && isInOrder && numExtents >= 3 && extents.empty()) {
            format.type = known;
            return format;
        }
    return {};
}

Volume readRaw(const std::filesystem::path& file, const RawFormat& format, const Progress& progress)
{
    VoxelLayout layout;
    layout.type = format.type;
    layout.isSwapped = format.isBigEndian != (std::endian::native == std::endian::big);
    layout.numPerTime = numVoxels(file, format.size);
    layout.numTimes = static_cast<std::size_t>(format.numTimes);
    CompressedFile data(file);
    Volume volume;
    volume.grid.size = format.size;
    volume.times = readVoxels(data, layout, progress);
    std::error_code error;
    const std::uint64_t numBytes = layout.numPerTime * layout.numTimes * sizeInBytes(layout.type);
    const std::uint64_t fileSize = std::filesystem::file_size(file, error);
    if (!error && file.extension() != ".gz" && fileSize > numBytes)
        volume.remarks.push_back("has " + std::to_string(fileSize - numBytes) +
                                 " byte(s) more than voxels of this size, which are left out");
    return volume;
}

} // namespace vireo_view
