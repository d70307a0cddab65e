#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/TableParser.h"

namespace vireo_view {

struct AxisText
{
    std::string label;
    std::string unit;
};

// Curves that are shown in one plot, over the same x.
struct PlotExhibit
{
    struct Curve
    {
        std::string name;
        std::vector<double> y; // NaN is a gap
        bool isOnY2 = false;
    };

    std::string name;
    AxisText x;
    AxisText y;
    bool isTime = false;    // x is seconds since 1970, or a thousand, a million or a milliard times as much
    std::vector<double> xs; // empty: 0, 1, 2 ...
    std::vector<Curve> curves;
    std::vector<std::string> remarks; // what a person should know
    AxisText y2 = {};                 // of curves with a unit of their own
};

// The columns that a person asks for, each by its name or by its number from 1. What is empty is chosen by the columns.
struct ColumnChoice
{
    std::string x; // "0" is the number of the row
    std::vector<std::string> columns;
};

// The command line names a column that the file does not have, or that is text.
class NoSuchColumn : public InputError
{
public:
    using InputError::InputError;
};

// The column of that name or number, which has numbers. Throws NoSuchColumn.
std::size_t findColumn(const std::filesystem::path& file, const Table& table, const std::string& name);

// How the columns of a table are plotted.
struct TablePlot
{
    struct Curve
    {
        std::size_t column;
        std::string name;
        bool isOnY2 = false;
    };

    std::optional<std::size_t> xColumn; // nothing: the number of the row
    bool isTime = false;
    AxisText x;
    AxisText y;
    AxisText y2;
    std::vector<Curve> curves;
    std::vector<std::size_t> leftOut;     // columns with times that nobody asked for
    std::vector<std::string> units;       // that have an axis: the left one, and maybe the right one
    std::vector<std::size_t> withoutAxis; // columns with a further unit, which the left axis counts, too
};

// Unless one is asked for, x is the first column with time stamps, or else the first with numbers if that goes only one
// way and has a name, or without a name always grows, as times and indices do. All other columns with numbers are
// curves. A unit that all of them have in brackets behind their names is that of the axis; a second one has the right
// axis.
//
// Throws NoSuchColumn, and InputError if no column is left for a curve.
TablePlot planPlot(const std::filesystem::path& file, const Table& table, const ColumnChoice& choice);

// Plans again when columns may have got numbers later: x stays what it was, and curves keep their names.
TablePlot planAgain(
    const std::filesystem::path& file, const Table& table, const ColumnChoice& choice, const TablePlot& before);

// The rows of the table that have an x.
PlotExhibit makePlot(Table table, const TablePlot& plot, const std::string& name);

} // namespace vireo_view
