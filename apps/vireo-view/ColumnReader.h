#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "apps/vireo-view/InputBuffer.h"

namespace vireo_view {

// A table of numbers.
struct Columns
{
    std::vector<std::string> names;          // from the header line; empty without one
    std::vector<std::vector<double>> values; // a vector per column, all of one length; NaN where there is no value

    std::size_t getNumColumns() const { return values.size(); }
    std::size_t getNumRows() const { return values.empty() ? 0 : values.front().size(); }
};

// Reads a text with columns of numbers.
//
// Cells are separated by semicolons, commas or tabs, whichever of these the first line has (looked for in this order),
// else by any number of blanks. They may be in double quotes. Numbers have decimal points. A cell that is empty, "nan"
// or "NA", or infinite, holds no value. A first line without any number is the header. Empty lines, and what follows a
// '#', are left out, and so are columns without a value.
//
// Throws InputError for a cell that is no number, for a line that has not as many cells as the first, and for a file
// without any value.
Columns readColumns(const std::filesystem::path& file, const Progress& progress);

} // namespace vireo_view
