#include "apps/vireo-view/TablePlot.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <set>
#include <string_view>
#include <utility>

#include "tavo/base/text/printable.h"

namespace vireo_view {

namespace {

constexpr std::size_t LONGEST_NAME = 100;

std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
        [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

// "pressure [Pa]" or "pressure (Pa)".
AxisText splitUnit(const std::string& name)
{
    for (const auto& [open, close] : {std::pair('[', ']'), std::pair('(', ')')}) {
        const std::size_t begin = name.rfind(open);
        if (name.empty() || name.back() != close || begin == std::string::npos || begin == 0)
            continue;
        return {std::string(trimmed(name.substr(0, begin))), name.substr(begin + 1, name.size() - begin - 2)};
    }
    return {name, {}};
}

AxisText textOf(const Column& column)
{
    const AxisText text = splitUnit(column.name);
    return {tavo::printable(text.label, LONGEST_NAME), tavo::printable(text.unit, LONGEST_NAME)};
}

bool isCalled(const Column& column, const std::string& name)
{
    return lowerCase(column.name) == lowerCase(name) || lowerCase(splitUnit(column.name).label) == lowerCase(name);
}

std::string listOf(const Table& table)
{
    constexpr std::size_t MOST = 8;
    const std::size_t number = table.columns.size();
    std::string text;
    for (std::size_t i = 0; i < std::min(number, MOST); ++i)
        text += (i > 0 ? ", " : "") +
                (table.columns[i].name.empty() ? std::to_string(i + 1) : tavo::printable(table.columns[i].name, 30));
    return number > MOST ? text + " and " + std::to_string(number - MOST) + " more" : text;
}

std::optional<std::size_t> indexOf(const Table& table, const std::string& name)
{
    const auto begin = table.columns.begin();
    const auto end = table.columns.end();
    auto found = std::find_if(begin, end, [&name](const Column& column) { return column.name == name; });
    if (found == end)
        found = std::find_if(begin, end, [&name](const Column& column) { return isCalled(column, name); });
    if (found != end && !name.empty())
        return static_cast<std::size_t>(found - begin);
    std::size_t number = 0;
    const auto [last, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    const bool isNumber = error == std::errc() && last == name.data() + name.size();
    return isNumber && number >= 1 && number <= table.columns.size() ? std::optional(number - 1) : std::nullopt;
}

// Whether the numbers go only one way, from one end to another; strictly up, of a column without a name.
bool canBeX(const Column& column)
{
    std::size_t numUp = 0, numDown = 0, numSame = 0;
    double last = std::nan("");
    for (const double value : column.values) {
        numUp += value > last;
        numDown += value < last;
        numSame += value == last;
        last = std::isnan(value) ? last : value;
    }
    if (column.name.empty())
        return numUp > 0 && numDown == 0 && numSame == 0;
    return (numUp == 0 || numDown == 0) && (numUp + numDown > 0 || numSame == 0);
}

bool isNamedAsTime(const Column& column)
{
    const std::string name = lowerCase(splitUnit(column.name).label);
    const auto has = [&name](const char* word) { return name.find(word) != std::string::npos; };
    return name == "t" || name == "ts" || has("time") || has("date") || has("epoch") || has("unix") || has("zeit");
}

// Seconds since 1970, from 1973 on, or a thousand, a million or a milliard times as many: numbers so large, all of one
// magnitude, in a column with such a name. A unit must agree.
bool isEpoch(const Column& column)
{
    struct Magnitude
    {
        double least;
        std::string_view units;
    };
    constexpr std::array<Magnitude, 4> MAGNITUDES = {
        {{1e8, " s sec seconds "}, {1e11, " ms "}, {1e14, " us \xC2\xB5s \xCE\xBCs "}, {1e17, " ns "}}};
    constexpr double SPAN = 1000;
    if (!isNamedAsTime(column))
        return false;
    const std::string unit = splitUnit(column.name).unit;
    return std::any_of(MAGNITUDES.begin(), MAGNITUDES.end(), [&](const Magnitude& magnitude) {
        const bool agrees = unit.empty() || magnitude.units.find(" " + unit + " ") != std::string_view::npos;
        return agrees && std::all_of(column.values.begin(), column.values.end(), [&](double value) {
            return std::isnan(value) || (value >= magnitude.least && value < magnitude.least * SPAN);
        });
    });
}

// Of columns that a person names, and of what the columns themselves suggest.
class Planner
{
public:
    // Units that have an axis keep it.
    Planner(const std::filesystem::path& file, const Table& table, const ColumnChoice& choice,
        const std::vector<std::string>& units = {})
        : m_File(file)
        , m_Table(table)
        , m_Choice(choice)
    {
        m_Plot.units = units;
        for (const std::string& name : choice.columns)
            if (const std::size_t i = findColumn(file, table, name); !isAsked(i))
                m_Asked.push_back(i);
    }

    std::optional<std::size_t> chooseX() const
    {
        if (m_Choice.x == "0")
            return std::nullopt;
        if (!m_Choice.x.empty())
            return findColumn(m_File, m_Table, m_Choice.x);
        const std::vector<Column>& columns = m_Table.columns;
        for (std::size_t i = 0; i < columns.size(); ++i)
            if (columns[i].hasNumbers() && columns[i].isTime && !isAsked(i))
                return i;
        const auto numbers =
            std::count_if(columns.begin(), columns.end(), [](const Column& column) { return column.hasNumbers(); });
        const auto first =
            std::find_if(columns.begin(), columns.end(), [](const Column& column) { return column.hasNumbers(); });
        const auto i = static_cast<std::size_t>(first - columns.begin());
        return numbers > 1 && canBeX(*first) && !isAsked(i) ? std::optional(i) : std::nullopt;
    }

    TablePlot plan(std::optional<std::size_t> xColumn, bool isTime)
    {
        m_Plot.xColumn = xColumn;
        m_Plot.isTime = isTime;
        m_Plot.x = xColumn ? axisOf(*xColumn) : AxisText{"index", {}};
        if (isTime)
            m_Plot.x.unit.clear(); // the axis shows dates
        chooseCurves();
        chooseAxes();
        nameCurves();
        return m_Plot;
    }

private:
    bool isAsked(std::size_t i) const { return std::find(m_Asked.begin(), m_Asked.end(), i) != m_Asked.end(); }

    AxisText axisOf(std::size_t i) const
    {
        AxisText text = textOf(m_Table.columns[i]);
        if (text.label.empty())
            text.label = "column " + std::to_string(i + 1);
        return text;
    }

    void chooseCurves()
    {
        if (!m_Asked.empty()) {
            for (const std::size_t i : m_Asked)
                m_Plot.curves.push_back({i, {}});
            return;
        }
        for (std::size_t i = 0; i < m_Table.columns.size(); ++i) {
            const Column& column = m_Table.columns[i];
            if (!column.hasNumbers() || i == m_Plot.xColumn)
                continue;
            if (column.isTime)
                m_Plot.leftOut.push_back(i);
            else
                m_Plot.curves.push_back({i, {}});
        }
        if (m_Plot.curves.empty())
            throw InputError(m_File,
                m_Plot.xColumn ? "has no column of numbers for a curve over " + describe(m_Table, *m_Plot.xColumn)
                               : "has no column of numbers");
    }

    // The first unit has the left axis, the second one the right one, and there are no more axes.
    void chooseAxes()
    {
        constexpr std::size_t MOST_UNITS = 2;
        std::vector<std::string>& units = m_Plot.units;
        for (TablePlot::Curve& curve : m_Plot.curves) {
            const std::string unit = textOf(m_Table.columns[curve.column]).unit;
            if (std::find(units.begin(), units.end(), unit) == units.end() && units.size() < MOST_UNITS)
                units.push_back(unit);
            curve.isOnY2 = units.size() == MOST_UNITS && unit == units.back();
            if (std::find(units.begin(), units.end(), unit) == units.end())
                m_Plot.withoutAxis.push_back(curve.column);
        }
        m_Plot.y = axisOfCurves(false);
        m_Plot.y2 = axisOfCurves(true);
        if (m_Plot.withoutAxis.empty())
            m_Plot.y.unit = units.front();
        m_Plot.y2.unit = units.size() == MOST_UNITS ? units.back() : "";
    }

    // With the name of the only curve that it counts.
    AxisText axisOfCurves(bool isY2) const
    {
        const auto isCounted = [isY2](const TablePlot::Curve& curve) { return curve.isOnY2 == isY2; };
        const auto begin = m_Plot.curves.begin();
        const auto end = m_Plot.curves.end();
        if (std::count_if(begin, end, isCounted) != 1)
            return {};
        return {axisOf(std::find_if(begin, end, isCounted)->column).label, {}};
    }

    // Every curve has a name of its own.
    void nameCurves()
    {
        const bool isShared = m_Plot.units.size() == 1;
        std::set<std::string> taken;
        for (TablePlot::Curve& curve : m_Plot.curves) {
            const Column& column = m_Table.columns[curve.column];
            const std::string base = isShared || column.name.empty() ? axisOf(curve.column).label
                                                                     : tavo::printable(column.name, LONGEST_NAME);
            curve.name = base;
            for (int i = 2; !taken.insert(curve.name).second; ++i)
                curve.name = base + " (" + std::to_string(i) + ")";
        }
    }

    const std::filesystem::path& m_File;
    const Table& m_Table;
    const ColumnChoice& m_Choice;
    std::vector<std::size_t> m_Asked;
    TablePlot m_Plot;
};

// What is not at the indices any more is left out.
void keepOnly(std::vector<double>& values, const std::vector<std::size_t>& rows)
{
    for (std::size_t i = 0; i < rows.size(); ++i)
        values[i] = values[rows[i]];
    values.resize(rows.size());
}

} // namespace

std::size_t findColumn(const std::filesystem::path& file, const Table& table, const std::string& name)
{
    const std::optional<std::size_t> i = indexOf(table, name);
    if (!i)
        throw NoSuchColumn(file, "has no column " + quotedText(name) + "; its columns are " + listOf(table));
    if (!table.columns[*i].hasNumbers())
        throw NoSuchColumn(file, describe(table, *i) + " has no numbers");
    return *i;
}

TablePlot planPlot(const std::filesystem::path& file, const Table& table, const ColumnChoice& choice)
{
    Planner planner(file, table, choice);
    const std::optional<std::size_t> x = planner.chooseX();
    return planner.plan(x, x && (table.columns[*x].isTime || isEpoch(table.columns[*x])));
}

TablePlot planAgain(
    const std::filesystem::path& file, const Table& table, const ColumnChoice& choice, const TablePlot& before)
{
    TablePlot plot = Planner(file, table, choice, before.units).plan(before.xColumn, before.isTime);
    for (TablePlot::Curve& curve : plot.curves)
        for (const TablePlot::Curve& known : before.curves)
            if (known.column == curve.column)
                curve.name = known.name;
    return plot;
}

PlotExhibit makePlot(Table table, const TablePlot& plot, const std::string& name)
{
    PlotExhibit exhibit{name, plot.x, plot.y, plot.isTime, {}, {}, {}, plot.y2};
    std::vector<std::size_t> rows;
    bool areAllKept = true;
    if (plot.xColumn) {
        exhibit.xs = table.columns[*plot.xColumn].values;
        for (std::size_t i = 0; i < exhibit.xs.size(); ++i)
            if (!std::isnan(exhibit.xs[i]))
                rows.push_back(i);
        areAllKept = rows.size() == table.numRows;
        keepOnly(exhibit.xs, rows);
    }
    for (const TablePlot::Curve& curve : plot.curves) {
        std::vector<double> y = std::move(table.columns[curve.column].values);
        y.resize(table.numRows, std::nan(""));
        if (!areAllKept)
            keepOnly(y, rows);
        exhibit.curves.push_back({curve.name, std::move(y), curve.isOnY2});
    }
    return exhibit;
}

} // namespace vireo_view
