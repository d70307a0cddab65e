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
#include "tavo/base/debug/displayException.h"
#include "tavo/base/text/printable.h"

namespace vireo_view {

namespace {

struct NamedColour
{
    std::string_view name;
    tavo::RGBA8 colour;
};

// The colours of a picture's curves, in this order and then again.
const std::array<NamedColour, 8> PALETTE = {{{"yellow", {255, 220, 60, 255}}, {"cyan", {60, 210, 255, 255}},
    {"magenta", {255, 90, 220, 255}}, {"green", {90, 230, 90, 255}}, {"orange", {255, 150, 40, 255}},
    {"blue", {110, 140, 255, 255}}, {"red", {255, 80, 70, 255}}, {"white", {255, 255, 255, 255}}}};

const NamedColour& paletteColour(std::size_t i)
{
    return PALETTE[i % PALETTE.size()];
}

template <unsigned int N>
using Curve = std::vector<tavo::StaticVector<double, N>>;

// A curve that may have gaps, and what it shows.
template <unsigned int N>
struct LabelledCurve
{
    std::string label;
    Curve<N> points;
};

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

template <unsigned int N>
Span spanOf(const std::vector<LabelledCurve<N>>& curves, unsigned int axis)
{
    Span span;
    for (const LabelledCurve<N>& curve : curves)
        for (const auto& point : curve.points)
            if (isFinite(point))
                span.include(point[axis]);
    return span;
}

// The labels, each with its curve's colour if there are several.
template <unsigned int N>
std::string legend(const std::vector<LabelledCurve<N>>& curves)
{
    if (curves.size() == 1)
        return curves.front().label;
    std::string text;
    for (std::size_t i = 0; i < curves.size() && i < PALETTE.size(); ++i)
        text += (i > 0 ? ", " : "") + curves[i].label + " (" + std::string(paletteColour(i).name) + ")";
    return curves.size() > PALETTE.size() ? text + ", ..." : text;
}

// A gap in the data is a gap in the picture.
template <unsigned int N>
std::vector<Curve<N>> splitAtGaps(const Curve<N>& curve)
{
    std::vector<Curve<N>> pieces;
    bool inGap = true;
    for (const auto& point : curve) {
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
template <unsigned int N>
void stretchLonePoint(std::vector<tavo::StaticVector<float, N>>& curve)
{
    constexpr float DASH = 0.01f;
    if (curve.size() == 1) {
        curve.push_back(curve.front());
        curve.front()[0] -= DASH / 2;
        curve.back()[0] += DASH / 2;
    }
}

template <unsigned int N>
CurvesExhibit<N> makeCurves(std::string name, const std::vector<LabelledCurve<N>>& curves)
{
    CurvesExhibit<N> exhibit;
    exhibit.name = std::move(name);
    std::vector<Curve<N>> allPieces;
    for (std::size_t i = 0; i < curves.size(); ++i) {
        std::vector<Curve<N>> pieces = splitAtGaps<N>(curves[i].points);
        exhibit.colours.insert(exhibit.colours.end(), pieces.size(), paletteColour(i).colour);
        std::move(pieces.begin(), pieces.end(), std::back_inserter(allPieces));
    }
    exhibit.curves = fitCurves(allPieces);
    for (auto& curve : exhibit.curves)
        stretchLonePoint<N>(curve);
    return exhibit;
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
        const FileFormat format = detectFormat(m_File);
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
        addGraphs({{"points per " + up, heightHistogram(cloud, m_Options.up)}}, up);
        const Silhouette shape = silhouette(cloud, m_Options.up);
        addGraphs({{"highest", shape.highest}, {"lowest " + up, shape.lowest}}, axisName(shape.along));
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
            addGraphs({{"log10 of voxels per density", curve}}, "density");
    }

    // Empty if no density is finite.
    static Points2 densityHistogram(const tavo::RegularVolume& volume)
    {
        const Histogram histogram(volume);
        if (histogram.getSpan().isEmpty())
            return {};
        return outlineOf(histogram.getBins(), histogram.getLogCounts());
    }

    void addColumns(const Columns& columns)
    {
        warnOfLongNames(columns);
        switch (effectiveColumnsAs(columns)) {
        case ColumnsAs::SERIES: return addSeries(columns);
        case ColumnsAs::PLANE: requireColumns(columns, 2, "graph"); return addPlane(columns);
        case ColumnsAs::SPACE: requireColumns(columns, 3, "curve in space"); return addCurve(firstThree(columns));
        default: requireColumns(columns, 3, "cloud"); return addCloud(firstThree(columns));
        }
    }

    ColumnsAs effectiveColumnsAs(const Columns& columns) const
    {
        if (m_Options.columnsAs != ColumnsAs::AUTOMATIC)
            return m_Options.columnsAs;
        if (columns.getNumColumns() == 1)
            return ColumnsAs::SERIES;
        return columns.getNumColumns() == 3 ? ColumnsAs::SPACE : ColumnsAs::PLANE;
    }

    void requireColumns(const Columns& columns, std::size_t number, const std::string& what) const
    {
        if (columns.getNumColumns() < number)
            throw InputError(m_File, "has " + std::to_string(columns.getNumColumns()) +
                                         " column(s) of numbers, and a " + what + " needs " + std::to_string(number));
    }

    static std::string columnName(const Columns& columns, std::size_t i)
    {
        return columns.names.empty() || columns.names[i].empty() ? "column " + std::to_string(i + 1)
                                                                 : tavo::printable(columns.names[i], LONGEST_NAME);
    }

    void warnOfLongNames(const Columns& columns) const
    {
        for (std::size_t i = 0; i < columns.names.size(); ++i)
            if (numCharacters(columns.names[i]) > LONGEST_NAME)
                return tavo::warning(printableName(m_File) + ": the name of column " + std::to_string(i + 1) + " has " +
                                     std::to_string(numCharacters(columns.names[i])) +
                                     " characters; names are cut after " + std::to_string(LONGEST_NAME));
    }

    void addSeries(const Columns& columns)
    {
        std::vector<LabelledCurve<2>> curves;
        for (std::size_t i = 0; i < columns.getNumColumns(); ++i) {
            LabelledCurve<2> curve{columnName(columns, i), {}};
            for (std::size_t row = 0; row < columns.getNumRows(); ++row)
                curve.points.emplace_back(static_cast<double>(row + 1), columns.values[i][row]);
            curves.push_back(std::move(curve));
        }
        addGraphs(curves, "row");
    }

    void addPlane(const Columns& columns)
    {
        std::vector<LabelledCurve<2>> curves;
        for (std::size_t i = 1; i < columns.getNumColumns(); ++i) {
            LabelledCurve<2> curve{columnName(columns, i), {}};
            for (std::size_t row = 0; row < columns.getNumRows(); ++row)
                curve.points.emplace_back(columns.values[0][row], columns.values[i][row]);
            curves.push_back(std::move(curve));
        }
        addGraphs(curves, columnName(columns, 0));
    }

    static Points3 firstThree(const Columns& columns)
    {
        Points3 points;
        for (std::size_t row = 0; row < columns.getNumRows(); ++row)
            points.emplace_back(columns.values[0][row], columns.values[1][row], columns.values[2][row]);
        return points;
    }

    void addGraphs(const std::vector<LabelledCurve<2>>& curves, const std::string& over)
    {
        const Span x = spanOf(curves, 0);
        checkNotEmpty(x);
        m_Exhibits.emplace_back(makeCurves<2>(
            m_Name + " - " + legend(curves) + " " + rangeText(spanOf(curves, 1)) + " over " + over + " " + rangeText(x),
            curves));
    }

    void addCurve(const Points3& points)
    {
        const std::vector<LabelledCurve<3>> curves = {{"", points}};
        checkNotEmpty(spanOf(curves, 0));
        std::string name = m_Name + " - curve,";
        for (unsigned int axis = 0; axis < 3; ++axis)
            name += " " + axisName(Axis(axis)) + " " + rangeText(spanOf(curves, axis));
        m_Exhibits.emplace_back(makeCurves<3>(name, curves));
    }

    void checkNotEmpty(const Span& span) const
    {
        if (span.isEmpty())
            throw InputError(m_File, "has no line with all the numbers of a point");
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
