#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

#include "tavo/base/math/vectors.h"

namespace vireo_view {

// What labels of a volume stand for, and the colours that somebody has chosen for them.
struct LabelTable
{
    std::map<std::int64_t, std::string> names;
    std::map<std::int64_t, tavo::RGBA8> colours;
};

// Reads what lies beside a volume of labels, as "atlas.nii.txt" or "atlas.txt" beside "atlas.nii.gz": names, one a line
// behind the number of their label, and in a file that ends with .lut 256 levels of red, of green and of blue. Empty if
// there is nothing. Throws InputError if one of them is something else.
LabelTable readLabelTable(const std::filesystem::path& volume);

} // namespace vireo_view
