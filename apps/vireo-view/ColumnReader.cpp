#include "apps/vireo-view/ColumnReader.h"

#include <algorithm>
#include <istream>
#include <iterator>
#include <map>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

// The kinds of lines of a text, by which the table in it is found.
struct LineKind
{
    bool isEmpty = true;
    char separator = BLANKS_SEPARATE;
    std::size_t numCells = 0;
    bool isRow = false; // has a number or a time stamp
    bool hasTexts = false;

    bool isText() const { return !isEmpty && !isRow; }
    bool hasCellsOf(const LineKind& other) const
    {
        return !isEmpty && separator == other.separator && numCells == other.numCells;
    }
};

LineKind kindOf(std::string_view line)
{
    const std::string_view bare = trimmed(withoutComment(line));
    if (bare.empty())
        return {};
    LineKind kind{false, separatorOf(bare)};
    Cells cells;
    splitCells(bare, kind.separator, cells);
    kind.numCells = cells.size();
    TableParser parser;
    parser.parseLine(line, 0);
    const Table& table = parser.getTable();
    kind.isRow = table.numRows > 0;
    kind.hasTexts = std::any_of(
        table.columns.begin(), table.columns.end(), [](const Column& column) { return column.numTexts > 0; });
    return kind;
}

// The kind of most rows; none if there are no two of the same.
LineKind commonRow(const std::vector<LineKind>& lines)
{
    std::map<std::pair<char, std::size_t>, std::size_t> numbers;
    LineKind common;
    std::size_t most = 1;
    for (const LineKind& line : lines)
        if (line.isRow)
            if (const std::size_t number = ++numbers[{line.separator, line.numCells}]; number > most) {
                most = number;
                common = line;
            }
    return common;
}

// How many lines there are before the names of the columns, where rows that are none of the table come before these:
// rows with other cells than most, or with text where there are numbers below the names.
std::size_t numLinesBefore(const std::vector<LineKind>& lines)
{
    const auto first = std::find_if(lines.begin(), lines.end(), [](const LineKind& line) { return line.isRow; });
    const LineKind common = commonRow(lines);
    const auto areNamesAndRow = [&common](const LineKind& names, const LineKind& row) {
        return names.isText() && names.hasCellsOf(common) && row.isRow && row.hasCellsOf(common);
    };
    auto names = std::adjacent_find(first, lines.end(), areNamesAndRow);
    if (common.numCells < 2 || names == lines.end())
        return 0;
    const bool isBelowText = first != lines.begin() && std::prev(first)->isText();
    if (first->hasCellsOf(common) && (isBelowText || !first->hasTexts || std::next(names)->hasTexts))
        return 0;
    while (std::prev(names)->isText() && std::prev(names)->hasCellsOf(common))
        --names;
    return static_cast<std::size_t>(names - lines.begin());
}

// The lines at the beginning, as far as the table in them is looked for.
std::vector<std::string> readBeginning(std::istream& stream)
{
    constexpr std::size_t MOST_LINES = 200;
    constexpr std::size_t MOST_BYTES = 1 << 20;
    std::vector<std::string> lines;
    std::size_t size = 0;
    for (std::string line; lines.size() < MOST_LINES && size < MOST_BYTES && std::getline(stream, line);) {
        size += line.size();
        lines.push_back(std::move(line));
    }
    return lines;
}

std::size_t numLinesBefore(const std::vector<std::string>& lines)
{
    if (lines.empty() || lines.front().starts_with("sep="))
        return 0;
    std::vector<LineKind> kinds(lines.size());
    std::transform(lines.begin(), lines.end(), kinds.begin(), kindOf);
    return numLinesBefore(kinds);
}

Table parseTable(InputBuffer& input)
{
    TableParser parser;
    std::istream stream(&input);
    const std::vector<std::string> beginning = readBeginning(stream);
    const std::size_t numBefore = numLinesBefore(beginning);
    for (std::size_t i = numBefore; i < beginning.size(); ++i)
        parser.parseLine(beginning[i], i + 1);
    std::string line;
    while (std::getline(stream, line))
        parser.parseLine(line, input.getLineNumber());
    if (stream.bad())
        throw std::bad_alloc(); // which the stream has swallowed
    input.checkEnd();
    Table table = parser.takeRows();
    table.numBefore = numBefore;
    return table;
}

} // namespace

Table readColumns(const std::filesystem::path& file, const Progress& progress)
{
    InputBuffer input(file, InputBuffer::LineEnds::UNIVERSAL, progress);
    try {
        Table table = parseTable(input);
        if (!table.hasNumbers())
            throw InputError(file, "has no numbers");
        return table;
    } catch (const std::bad_alloc&) {
        throw InputError(file, "does not fit into memory");
    }
}

} // namespace vireo_view
