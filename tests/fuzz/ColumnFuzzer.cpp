#include <array>
#include <charconv>
#include <cmath>

#include "apps/vireo-view/ColumnReader.h"
#include "apps/vireo-view/FileFormat.h"
#include "apps/vireo-view/InputError.h"
#include "tests/fuzz/Fuzzing.h"
#include "tests/fuzz/checkExhibits.h"

// Any bytes as a text with columns of numbers, shown in every way that there is.

namespace {

using namespace vireo_view;
using vireo_fuzz::require;
using vireo_fuzz::requireGoodMessage;
using vireo_fuzz::writeFile;

// Runs a reader, which may refuse its file.
template <typename Read>
void tryTo(Read read)
{
    try {
        read();
    } catch (const InputError& error) {
        requireGoodMessage(error.what());
    }
}

void checkColumns(const Columns& columns)
{
    require(columns.getNumColumns() > 0, "there is a column");
    require(
        columns.names.empty() || columns.names.size() == columns.getNumColumns(), "all columns have names, or none");
    for (const std::vector<double>& column : columns.values) {
        require(column.size() == columns.getNumRows(), "all columns are of one length");
        bool hasValue = false;
        for (const double value : column) {
            require(!std::isinf(value), "there are no infinite values");
            hasValue = hasValue || !std::isnan(value);
        }
        require(hasValue, "a column has a value");
    }
}

std::string textOf(double value)
{
    std::array<char, 32> text{};
    return std::isnan(value) ? "NA" : std::string(text.data(), std::to_chars(text.data(), text.end(), value).ptr);
}

std::string textOf(const Columns& columns)
{
    std::string text;
    for (std::size_t row = 0; row < columns.getNumRows(); ++row)
        for (std::size_t i = 0; i < columns.getNumColumns(); ++i)
            text += textOf(columns.values[i][row]) + (i + 1 < columns.getNumColumns() ? ";" : "\n");
    return text;
}

void checkWrittenAgain(const Columns& columns)
{
    const Columns again = readColumns(writeFile("again.csv", textOf(columns)), nullptr);
    require(again.names.empty(), "numbers are no names");
    require(textOf(again) == textOf(columns), "numbers that are written and read again are the same");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::filesystem::path file = writeFile("table.csv", vireo_fuzz::bytesOf(data, size));
    tryTo([&] {
        // Texts that begin as a cloud's file are for another reader.
        if (detectFormat(file) != FileFormat::COLUMNS)
            return;
        const Columns columns = readColumns(file, nullptr);
        checkColumns(columns);
        checkWrittenAgain(columns);
        for (const ColumnsAs as :
            {ColumnsAs::AUTOMATIC, ColumnsAs::SERIES, ColumnsAs::PLANE, ColumnsAs::SPACE, ColumnsAs::CLOUD})
            tryTo([&] { vireo_fuzz::checkExhibits(loadExhibits(file, "table", {as, Axis::Z, true}, nullptr)); });
    });
    return 0;
}
