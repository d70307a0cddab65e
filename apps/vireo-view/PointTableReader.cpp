#include "apps/vireo-view/PointTableReader.h"

#include <algorithm>
#include <cmath>
#include <istream>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/pointFields.h"
#include "apps/vireo-view/words.h"

namespace vireo_view {

namespace {

constexpr const char* NO_POINT = "not a point: it does not begin with three numbers";

bool isCount(std::string_view line)
{
    const std::string_view text = trimmed(line);
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

enum class Tabs
{
    AS_THEY_ARE,
    ARE_BLANKS
};

Table parse(InputBuffer& input, Tabs tabs)
{
    TableParser parser;
    std::istream stream(&input);
    bool mayBeCount = true;
    for (std::string line; std::getline(stream, line);) {
        if (mayBeCount && isCount(line)) {
            mayBeCount = false;
            continue;
        }
        if (tabs == Tabs::ARE_BLANKS)
            std::replace(line.begin(), line.end(), '\t', ' ');
        parser.parseLine(line.starts_with("//") ? std::string_view(line).substr(2) : line, input.getLineNumber());
        mayBeCount = mayBeCount && parser.getTable().numRows == 0;
    }
    if (stream.bad())
        throw std::bad_alloc(); // which the stream has swallowed
    input.checkEnd();
    return parser.takeRows();
}

bool isNamed(const Column& column, std::string_view name)
{
    return column.name.size() == 1 && (column.name[0] | 0x20) == name[0];
}

// Those of that name, or else the first three.
std::vector<std::size_t> coordinatesOf(const Table& table)
{
    std::vector<std::size_t> named;
    for (const char* const name : {"x", "y", "z"})
        for (std::size_t i = 0; i < table.columns.size(); ++i)
            if (isNamed(table.columns[i], name) && named.size() < 3)
                named.push_back(i);
    return named.size() == 3 ? named : std::vector<std::size_t>{0, 1, 2};
}

// A line that is no point is refused, even where the rest of a table could be shown.
void check(const InputBuffer& input, const Table& table, const std::vector<std::size_t>& xyz)
{
    if (table.numRows == 0)
        throw InputError(input.getFile(), "has no points");
    for (const std::size_t i : xyz) {
        if (i >= table.columns.size())
            throw InputError(input.getFile(), table.firstLine, NO_POINT);
        if (table.columns[i].numTexts > 0)
            throw InputError(input.getFile(), table.columns[i].lineOfFirstText, NO_POINT);
        if (!table.columns[i].hasNumbers())
            throw InputError(input.getFile(), "has no points with finite coordinates");
    }
    const auto lacks = [&table](std::size_t i) { return table.columns[i].numValues < table.numRows; };
    if (table.numUneven > 0 && std::any_of(xyz.begin(), xyz.end(), lacks))
        throw InputError(input.getFile(), table.firstUneven, NO_POINT);
}

using Columns = std::vector<NamedColumn>;

bool areBytes(const NumberColumn& column)
{
    const auto& values = std::get<std::vector<double>>(column);
    return std::all_of(values.begin(), values.end(),
        [](double value) { return value >= 0 && value <= 255 && value == std::floor(value); });
}

bool areUnitVectors(const NumberColumn* columns[3])
{
    constexpr double TOLERANCE = 0.02;
    for (std::size_t i = 0; i < sizeOf(*columns[0]); ++i) {
        const double length = std::hypot(numberAt(*columns[0], i), numberAt(*columns[1], i), numberAt(*columns[2], i));
        if (!(std::abs(length - 1) < TOLERANCE || length == 0))
            return false;
    }
    return true;
}

void name(Columns& columns, std::size_t first, std::initializer_list<const char*> names)
{
    for (const char* const text : names)
        columns[first++].name = text;
}

// Says of columns without names what they are: one by one from the left until triples are left, of which one may be
// normals and one colours.
void guessNames(Columns& columns)
{
    constexpr std::size_t NUM_COORDINATES = 3;
    const std::size_t numOthers = columns.size() - NUM_COORDINATES;
    bool hasNormals = false, hasColours = false;
    for (std::size_t i = NUM_COORDINATES + numOthers % 3; i < columns.size(); i += 3) {
        const NumberColumn* const triple[3] = {&columns[i].values, &columns[i + 1].values, &columns[i + 2].values};
        const NumberColumn* vectors[3] = {triple[0], triple[1], triple[2]};
        if (!hasNormals && areUnitVectors(vectors)) {
            name(columns, i, {"nx", "ny", "nz"});
            hasNormals = true;
        } else if (!hasColours && std::all_of(triple, triple + 3, [](const auto* c) { return areBytes(*c); })) {
            name(columns, i, {"red", "green", "blue"});
            hasColours = true;
        }
    }
    if (numOthers % 3 == 1 && numOthers > 1)
        columns[NUM_COORDINATES].name = "intensity";
}

} // namespace

GeometryFile pointsOfTable(Table table, const std::vector<std::size_t>& xyz)
{
    GeometryFile file;
    file.remarks = table.remarks();
    Columns columns;
    for (std::size_t i = 0; i < 3; ++i)
        columns.push_back({std::string(1, "xyz"[i]), table.columns[xyz[i]].values});
    bool areNamed = false;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        Column& column = table.columns[i];
        if (std::find(xyz.begin(), xyz.end(), i) != xyz.end() || !column.hasNumbers())
            continue;
        areNamed = areNamed || !column.name.empty();
        column.values.resize(table.numRows, std::nan(""));
        columns.push_back({column.name, std::move(column.values)});
    }
    if (!areNamed)
        guessNames(columns);
    for (std::size_t i = 3; i < columns.size(); ++i)
        if (columns[i].name.empty())
            columns[i].name = "column " + std::to_string(i + 1);
    file.geometries.push_back(geometryOf(std::move(columns)));
    return file;
}

GeometryFile readPointTable(InputBuffer& input)
{
    const auto read = [&input](Tabs tabs) {
        Table table = parse(input, tabs);
        const std::vector<std::size_t> xyz = coordinatesOf(table);
        check(input, table, xyz);
        return pointsOfTable(std::move(table), xyz);
    };
    try {
        return read(Tabs::AS_THEY_ARE);
    } catch (const InputError&) {
        // Some programs put tabs and blanks between numbers as they like.
        input.checkEnd();
        input.rewind();
        return read(Tabs::ARE_BLANKS);
    }
}

} // namespace vireo_view
