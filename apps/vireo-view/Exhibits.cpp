#include "apps/vireo-view/Exhibits.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <limits>
#include <string_view>
#include <utility>

#include "apps/vireo-view/CloudCurves.h"
#include "apps/vireo-view/ColumnReader.h"
#include "apps/vireo-view/FileFormat.h"
#include "apps/vireo-view/Histogram.h"
#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/NiftiReader.h"
#include "apps/vireo-view/PointFileReader.h"
#include "apps/vireo-view/Span.h"
#include "apps/vireo-view/lowerCaseExtension.h"
#include "tavo/base/text/printable.h"

namespace vireo_view {

namespace {

std::string axisName(Axis axis)
{
    return std::string(1, "xyz"[static_cast<std::size_t>(axis)]);
}

std::string shortNumber(double value)
{
    char text[32];
    constexpr int DIGITS = 4;
    return {text, std::to_chars(text, std::end(text), value, std::chars_format::general, DIGITS).ptr};
}

std::string rangeText(const Span& span)
{
    return "(" + shortNumber(span.getMin()) + " to " + shortNumber(span.getMax()) + ")";
}

// Of a column, in a title.
constexpr std::size_t LONGEST_NAME = 100;

// Of text in UTF-8.
std::size_t numCharacters(std::string_view text)
{
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0u) != 0x80; }));
}

Span spanOf(const Points3& points, unsigned int axis)
{
    Span span;
    for (const tavo::Vector3d& point : points)
        if (isFinite(point))
            span.include(point[axis]);
    return span;
}

// A gap in the data is a gap in the picture.
std::vector<Points3> splitAtGaps(const Points3& points)
{
    std::vector<Points3> pieces;
    bool inGap = true;
    for (const tavo::Vector3d& point : points) {
        if (isFinite(point)) {
            if (inGap)
                pieces.emplace_back();
            pieces.back().push_back(point);
        }
        inGap = !isFinite(point);
    }
    return pieces;
}

// A line through one point would not be seen.
void stretchLonePoint(FittedPoints3& piece)
{
    constexpr float DASH = 0.01f;
    if (piece.size() == 1) {
        piece.push_back(piece.front());
        piece.front()[0] -= DASH / 2;
        piece.back()[0] += DASH / 2;
    }
}

// Curves that have their points at the same x.
struct LabelledCurve
{
    std::string label;
    Points2 points;
};

PlotExhibit plotOf(const std::string& name, const std::vector<LabelledCurve>& curves, const std::string& over)
{
    PlotExhibit plot;
    plot.name = name;
    plot.x.label = over;
    plot.y.label = curves.size() == 1 ? curves.front().label : "";
    for (const tavo::Vector2d& point : curves.front().points)
        plot.xs.push_back(point[0]);
    for (const LabelledCurve& curve : curves) {
        plot.curves.push_back({curve.label, {}});
        for (const tavo::Vector2d& point : curve.points)
            plot.curves.back().y.push_back(point[1]);
    }
    return plot;
}

// How clouds are turned: with the axis that points up along the view's y, and the longer of the others along its x. The
// third comes to lie along z, towards the viewer or away from him, so that nothing is mirrored.
class Turn
{
public:
    Turn(const Points3& cloud, Axis up)
        : m_Right(static_cast<unsigned int>(longerAxisBeside(up, cloud)))
        , m_Up(static_cast<unsigned int>(up))
        , m_Third(3 - m_Right - m_Up)
        , m_Sign((m_Up + 3 - m_Right) % 3 == 1 ? 1 : -1)
    {}

    tavo::Vector3d operator()(const tavo::Vector3d& p) const { return {p[m_Right], p[m_Up], m_Sign * p[m_Third]}; }

    // What it does, for a title; empty if nothing.
    std::string text() const
    {
        if (m_Right == 0 && m_Up == 1)
            return {};
        return " (" + axisName(Axis(m_Right)) + " to the right, " + axisName(Axis(m_Up)) + " up)";
    }

private:
    unsigned int m_Right;
    unsigned int m_Up;
    unsigned int m_Third;
    double m_Sign;
};

std::unique_ptr<tavo::PointSet> makePointSet(const Points3& cloud, const Turn& turn)
{
    Points3 turned(cloud.size());
    std::transform(cloud.begin(), cloud.end(), turned.begin(), turn);
    const FittedPoints3 fitted = fitPoints(turned);

    tavo::VertexDescriptor descriptor;
    descriptor.pushAttrib({"position", 3, tavo::VertexAttribDescriptor::TYPE_FLOAT});
    auto points = std::make_unique<tavo::PointSet>(descriptor, static_cast<unsigned int>(fitted.size()));
    const tavo::AttributeAccessToken position = points->getAAT("position");
    for (unsigned int i = 0; i < points->getNumPoints(); ++i)
        points->set3f(i, position, fitted[i].data());
    return points;
}

bool isTextOfPoints(FileFormat format)
{
    return format == FileFormat::XYZ || format == FileFormat::PTS;
}

// Any text has columns, if they are asked for.
FileFormat formatOf(const std::filesystem::path& file, ColumnsAs columnsAs)
{
    const FileFormat format = detectFormat(file);
    return columnsAs == ColumnsAs::PLOT && isTextOfPoints(format) ? FileFormat::COLUMNS : format;
}

class FileLoader
{
public:
    FileLoader(const std::filesystem::path& file, const std::string& name, const LoadOptions& options)
        : m_File(file)
        , m_Name(name)
        , m_Options(options)
    {}

    std::vector<Exhibit> load(const Progress& progress)
    {
        const FileFormat format = formatOf(m_File, m_Options.columnsAs);
        if (format == FileFormat::COLUMNS)
            addColumns(readColumns(m_File, progress));
        else if (format == FileFormat::NIFTI)
            addVolume(readNifti(m_File, progress));
        else
            addCloud(readPointFile(m_File, format, progress));
        return std::move(m_Exhibits);
    }

private:
    void addCloud(const Points3& points)
    {
        Points3 cloud;
        std::copy_if(points.begin(), points.end(), std::back_inserter(cloud),
            [](const tavo::Vector3d& p) { return isFinite(p); });
        if (cloud.empty())
            throw InputError(m_File, "has no points with finite coordinates");
        if (cloud.size() > std::numeric_limits<unsigned int>::max())
            throw InputError(m_File, "has too many points");

        const Turn turn(cloud, m_Options.up);
        std::string name = m_Name + " - " + std::to_string(cloud.size()) + " points" + turn.text();
        if (cloud.size() < points.size())
            name += " (" + std::to_string(points.size() - cloud.size()) + " without finite coordinates left out)";
        m_Exhibits.emplace_back(CloudExhibit{name, makePointSet(cloud, turn)});
        if (m_Options.withCurves)
            addCurvesOf(cloud);
    }

    void addCurvesOf(const Points3& cloud)
    {
        const std::string up = axisName(m_Options.up);
        addCurves("points per " + up, {{"points per " + up, heightHistogram(cloud, m_Options.up)}}, up);
        const Silhouette shape = silhouette(cloud, m_Options.up);
        addCurves(
            "highest and lowest " + up, {{"highest", shape.highest}, {"lowest", shape.lowest}}, axisName(shape.along));
    }

    void addVolume(tavo::RegularVolume volume)
    {
        const tavo::Vector3i& extends = volume.getExtends();
        std::string name = m_Name + " - " + std::to_string(extends[0]) + " x " + std::to_string(extends[1]) + " x " +
                           std::to_string(extends[2]) + " voxels";
        const Points2 curve = m_Options.withCurves ? densityHistogram(volume) : Points2();
        m_Exhibits.emplace_back(
            VolumeExhibit{std::move(name), std::make_unique<tavo::RegularVolume>(std::move(volume))});
        if (!curve.empty())
            addCurves("voxels per density", {{"log10 of voxels", curve}}, "density");
    }

    // Empty if no density is finite.
    static Points2 densityHistogram(const tavo::RegularVolume& volume)
    {
        const Histogram histogram(volume);
        if (histogram.getSpan().isEmpty())
            return {};
        return outlineOf(histogram.getBins(), histogram.getLogCounts());
    }

    void addCurves(const std::string& what, const std::vector<LabelledCurve>& curves, const std::string& over)
    {
        m_Exhibits.emplace_back(plotOf(m_Name + " - " + what, curves, over));
    }

    void addColumns(Table table)
    {
        switch (m_Options.columnsAs) {
        case ColumnsAs::POINTS: return addCloud(pointsOf(table, "cloud"));
        case ColumnsAs::PATH: return addPath(pointsOf(table, "curve in space"));
        default: return addPlot(std::move(table));
        }
    }

    void addPlot(Table table)
    {
        const TablePlot plot = planPlot(m_File, table, m_Options.columns);
        std::vector<std::string> remarks = remarksOn(m_File, table, plot);
        PlotExhibit exhibit = makePlot(std::move(table), plot, m_Name);
        exhibit.remarks = std::move(remarks);
        m_Exhibits.emplace_back(std::move(exhibit));
    }

    // Of the columns that are asked for, or else of the first with numbers.
    std::vector<std::size_t> coordinates(const Table& table, const std::string& what) const
    {
        constexpr std::size_t NUMBER = 3;
        std::vector<std::size_t> found;
        for (const std::string& name : m_Options.columns.columns)
            found.push_back(findColumn(m_File, table, name));
        for (std::size_t i = 0; i < table.columns.size() && m_Options.columns.columns.empty(); ++i)
            if (table.columns[i].hasNumbers() && found.size() < NUMBER)
                found.push_back(i);
        if (found.size() < NUMBER)
            throw InputError(m_File, "has " + std::to_string(found.size()) + " column(s) of numbers, and a " + what +
                                         " needs " + std::to_string(NUMBER));
        return found;
    }

    Points3 pointsOf(const Table& table, const std::string& what) const
    {
        const std::vector<std::size_t> xyz = coordinates(table, what);
        Points3 points;
        points.reserve(table.numRows);
        for (std::size_t row = 0; row < table.numRows; ++row)
            points.emplace_back(table.columns[xyz[0]].values[row], table.columns[xyz[1]].values[row],
                table.columns[xyz[2]].values[row]);
        return points;
    }

    void addPath(const Points3& points)
    {
        if (spanOf(points, 0).isEmpty())
            throw InputError(m_File, "has no line with all the numbers of a point");
        PathExhibit path{m_Name + " - curve,", fitCurves(splitAtGaps(points))};
        for (unsigned int axis = 0; axis < 3; ++axis)
            path.name += " " + axisName(Axis(axis)) + " " + rangeText(spanOf(points, axis));
        for (FittedPoints3& piece : path.pieces)
            stretchLonePoint(piece);
        m_Exhibits.emplace_back(std::move(path));
    }

    const std::filesystem::path& m_File;
    const std::string& m_Name;
    const LoadOptions& m_Options;
    std::vector<Exhibit> m_Exhibits;
};

} // namespace

const std::string& nameOf(const Exhibit& exhibit)
{
    return std::visit([](const auto& shown) -> const std::string& { return shown.name; }, exhibit);
}

bool isPlotted(const std::filesystem::path& file, const LoadOptions& options)
{
    if (options.columnsAs == ColumnsAs::POINTS || options.columnsAs == ColumnsAs::PATH)
        return false;
    std::error_code error;
    if (std::filesystem::exists(file, error) && std::filesystem::file_size(file, error) > 0)
        return formatOf(file, options.columnsAs) == FileFormat::COLUMNS;
    const std::string extension = lowerCaseExtension(file);
    for (const char* const other : {".nii", ".hdr", ".img", ".ply", ".off"})
        if (extension == other)
            return false;
    const bool isOfPoints = extension == ".xyz" || extension == ".pwn" || extension == ".pts";
    return options.columnsAs == ColumnsAs::PLOT || !isOfPoints;
}

std::vector<std::string> remarksOn(const std::filesystem::path& file, const Table& table, const TablePlot& plot)
{
    std::vector<std::string> lines;
    const auto tooLong = std::find_if(table.columns.begin(), table.columns.end(),
        [](const Column& column) { return numCharacters(column.name) > LONGEST_NAME; });
    if (tooLong != table.columns.end())
        lines.push_back("the name of column " + std::to_string(tooLong - table.columns.begin() + 1) + " has " +
                        std::to_string(numCharacters(tooLong->name)) + " characters; names are cut after " +
                        std::to_string(LONGEST_NAME));
    for (const std::string& remark : table.remarks())
        lines.push_back(remark);
    for (const std::size_t i : plot.leftOut)
        lines.push_back(
            describe(table, i) + " has times and is left out (--x " + std::to_string(i + 1) + " has it along x)");
    for (std::string& line : lines)
        line = printableName(file) + ": " + line;
    return lines;
}

std::vector<Exhibit> loadExhibits(
    const std::filesystem::path& file, const std::string& name, const LoadOptions& options, const Progress& progress)
{
    try {
        return FileLoader(file, name, options).load(progress);
    } catch (const std::bad_alloc&) {
        throw InputError(file, "does not fit into memory");
    }
}

} // namespace vireo_view
