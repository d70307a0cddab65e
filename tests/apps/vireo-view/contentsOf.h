#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace vireo_view {

// The bytes of a file.
inline std::string contentsOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

} // namespace vireo_view
