#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <fstream>

#include "apps/vireo-view/ColumnReader.h"
#include "apps/vireo-view/FileFormat.h"
#include "apps/vireo-view/FollowedPlot.h"
#include "apps/vireo-view/InputError.h"
#include "tests/fuzz/Fuzzing.h"
#include "tests/fuzz/checkExhibits.h"

// Any bytes as a text with columns of numbers, shown in every way that there is, and as one that grows.

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

void checkTable(const Table& table)
{
    require(table.hasNumbers(), "there is a column of numbers");
    require(table.columns.size() <= MOST_CELLS, "columns are not without number");
    for (const Column& column : table.columns) {
        const auto numValues = static_cast<std::size_t>(
            std::count_if(column.values.begin(), column.values.end(), [](double value) { return !std::isnan(value); }));
        require(column.values.empty() || column.values.size() == table.numRows, "all columns are of one length");
        require(numValues == column.numValues, "values are counted");
    }
    for (const std::string& remark : table.remarks())
        requireGoodMessage(remark);
}

std::string textOf(double value)
{
    std::array<char, 32> text{};
    return std::isnan(value) ? "NA" : std::string(text.data(), std::to_chars(text.data(), text.end(), value).ptr);
}

std::string textOf(const Table& table)
{
    std::string text;
    for (std::size_t row = 0; row < table.numRows; ++row)
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            const std::vector<double>& values = table.columns[i].values;
            text += textOf(values.empty() ? std::nan("") : values[row]) + (i + 1 < table.columns.size() ? ";" : "\n");
        }
    return text;
}

void checkWrittenAgain(const Table& table)
{
    const Table again = readColumns(writeFile("again.csv", textOf(table)), nullptr);
    for (const Column& column : again.columns)
        require(column.name.empty() && !column.isTime, "numbers are neither names nor times");
    require(textOf(again) == textOf(table), "numbers that are written and read again are the same");
}

void checkFollowed(std::string_view bytes)
{
    const std::filesystem::path file = writeFile("grows.csv", "");
    FollowedPlot plot(file, "grows", {});
    const std::size_t piece = bytes.size() / 4 + 1;
    for (std::size_t i = 0; i < bytes.size(); i += piece) {
        std::ofstream(file, std::ios::binary | std::ios::app) << bytes.substr(i, piece);
        const FollowedPlot::News news = plot.poll();
        require(!news.isAnew, "a file that only grows is not shown anew");
        for (const std::string& line : news.lines)
            requireGoodMessage(line);
        if (news.rows)
            for (const PlotExhibit::Curve& curve : news.rows->curves)
                require(curve.y.size() == news.rows->xs.size(), "every row has an x");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::filesystem::path file = writeFile("table.csv", vireo_fuzz::bytesOf(data, size));
    tryTo([&] {
        // Texts that begin as a cloud's file are for another reader.
        if (detectFormat(file) != FileFormat::COLUMNS)
            return;
        const Table table = readColumns(file, nullptr);
        checkTable(table);
        checkWrittenAgain(table);
        for (const ColumnsAs as : {ColumnsAs::AUTOMATIC, ColumnsAs::PLOT, ColumnsAs::POINTS, ColumnsAs::PATH})
            for (const ColumnChoice& choice : {ColumnChoice(), ColumnChoice{"2", {"1", "3", "2"}}})
                tryTo([&] {
                    vireo_fuzz::checkExhibits(loadExhibits(file, "table", {as, choice, Axis::Z, true}, nullptr));
                });
    });
    tryTo([&] { checkFollowed(vireo_fuzz::bytesOf(data, size)); });
    return 0;
}
