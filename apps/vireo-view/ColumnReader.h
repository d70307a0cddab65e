#pragma once

#include <filesystem>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/TableParser.h"

namespace vireo_view {

// Reads a text with columns of numbers (see TableParser). Lines before the names of the columns are left out, also
// those with numbers, if these have other cells than the rows below the names. Throws InputError for a file without any
// number.
Table readColumns(const std::filesystem::path& file, const Progress& progress);

} // namespace vireo_view
