#include "apps/vireo-view/Exhibits.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <string_view>
#include <utility>

#include "apps/vireo-view/CloudCurves.h"
#include "apps/vireo-view/ColumnReader.h"
#include "apps/vireo-view/DicomReader.h"
#include "apps/vireo-view/FileFormat.h"
#include "apps/vireo-view/GeometryReader.h"
#include "apps/vireo-view/Histogram.h"
#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/PointTableReader.h"
#include "apps/vireo-view/Span.h"
#include "apps/vireo-view/TiffReader.h"
#include "apps/vireo-view/VolumeReader.h"
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

// All points with finite coordinates, where they are shown.
Points3 finitePoints(const std::vector<Geometry>& geometries)
{
    Points3 points;
    for (const Geometry& geometry : geometries)
        for (const Placement& placement : geometry.placements)
            for (std::size_t i = 0; i < geometry.getNumPoints(); ++i)
                if (const tavo::Vector3d point = placement.apply(geometry.getPoint(i)); isFinite(point))
                    points.push_back(point);
    return points;
}

std::uint64_t numNotFinite(const std::vector<Geometry>& geometries)
{
    std::uint64_t number = 0;
    for (const Geometry& geometry : geometries)
        for (std::size_t i = 0; i < geometry.getNumPoints(); ++i)
            number += !isFinite(geometry.getPoint(i));
    return number;
}

// Scenes leave points out that have a coordinate beyond it.
constexpr double FARTHEST = 1e30;

// With coordinates that are finite.
std::uint64_t numTooFar(const std::vector<Geometry>& geometries)
{
    const auto isFar = [](double coordinate) { return std::abs(coordinate) > FARTHEST; };
    std::uint64_t number = 0;
    for (const Geometry& geometry : geometries)
        for (std::size_t i = 0; i < geometry.getNumPoints(); ++i)
            if (const tavo::Vector3d point = geometry.getPoint(i); isFinite(point))
                number += isFar(point[0]) || isFar(point[1]) || isFar(point[2]);
    return number;
}

// "a, b and c"
std::string listOf(const std::vector<std::string>& things)
{
    constexpr std::size_t MOST = 4;
    const std::size_t number = std::min(things.size(), MOST);
    std::string text;
    for (std::size_t i = 0; i < number; ++i)
        text += (i == 0 ? "" : i + 1 < things.size() ? ", " : " and ") + things[i];
    return things.size() > MOST ? text + " and " + std::to_string(things.size() - MOST) + " more" : text;
}

// Those with a name: others may come of separators at the ends of lines. Empty if there are none.
std::string emptyColumnsOf(const Table& table)
{
    std::vector<std::string> empty;
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        if (const Column& column = table.columns[i];
            !column.name.empty() && column.numValues == 0 && column.numTexts == 0)
            empty.push_back(describe(table, i));
    return empty.empty() ? "" : listOf(empty) + (empty.size() > 1 ? " are" : " is") + " empty and left out";
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
        if (m_Options.raw) {
            addVolume(readRaw(m_File, *m_Options.raw, progress));
            return std::move(m_Exhibits);
        }
        const FileFormat format = formatHere();
        if (format == FileFormat::COLUMNS)
            addColumns(readColumns(m_File, progress));
        else if (format == FileFormat::DICOM)
            addVolume(readScan(progress));
        else if (isOfVolumes(format))
            addVolume(readVolume(m_File, format, progress));
        else if (format == FileFormat::IMAGE)
            m_Exhibits.emplace_back(ImageExhibit{m_Name, readImages(m_File, progress)});
        else
            addScene(readGeometry(m_File, format, progress));
        return std::move(m_Exhibits);
    }

private:
    FileFormat formatHere() const
    {
        const FileFormat format = formatOf(m_File, m_Options.columnsAs);
        const bool isOfImages = format == FileFormat::TIFF && !m_Options.areVolumes && isTiffOfImages(m_File);
        return isOfImages ? FileFormat::IMAGE : format;
    }

    void addScene(GeometryFile file)
    {
        std::uint64_t numPoints = 0;
        for (const Geometry& geometry : file.geometries)
            numPoints += geometry.getNumPoints();
        const std::uint64_t numBad = numNotFinite(file.geometries);
        if (numBad == numPoints)
            throw InputError(m_File, "has no points with finite coordinates");
        const std::uint64_t numFar = numTooFar(file.geometries);
        if (numBad + numFar == numPoints)
            throw InputError(m_File, "has only points with coordinates beyond 1e30");
        SceneExhibit exhibit{m_Name, std::move(file.geometries), Side::TOP, false, std::move(file.remarks)};
        if (!file.leftOut.empty())
            exhibit.remarks.push_back("left out: " + listOf(file.leftOut));
        if (numBad > 0)
            exhibit.remarks.push_back(std::to_string(numBad) + " of " + std::to_string(numPoints) +
                                      " points have no finite coordinates and are left out");
        if (numFar > 0)
            exhibit.remarks.push_back(std::to_string(numFar) + " of " + std::to_string(numPoints) +
                                      " points have coordinates beyond 1e30 and are left out");
        for (std::string& remark : exhibit.remarks)
            remark = printableName(m_File) + ": " + remark;
        addSceneWithCurves(std::move(exhibit));
    }

    void addSceneWithCurves(SceneExhibit exhibit)
    {
        const bool isSeenFromTop = m_Options.up == Axis::Y;
        const bool needsPoints = m_Options.withCurves || !isSeenFromTop;
        const Points3 points = needsPoints ? finitePoints(exhibit.geometries) : Points3();
        exhibit.isTurned = m_Options.up == Axis::X;
        if (!isSeenFromTop && !points.empty()) {
            const Axis right = exhibit.isTurned ? Axis::Z : Axis::Y;
            exhibit.side = longerAxisBeside(m_Options.up, points) == right ? Side::RIGHT : Side::FRONT;
        }
        m_Exhibits.emplace_back(std::move(exhibit));
        if (m_Options.withCurves && !points.empty())
            addCurvesOf(points);
    }

    void addCurvesOf(const Points3& cloud)
    {
        const std::string up = axisName(m_Options.up);
        addCurves("points per " + up, {{"points per " + up, heightHistogram(cloud, m_Options.up)}}, up);
        const Silhouette shape = silhouette(cloud, m_Options.up);
        addCurves(
            "highest and lowest " + up, {{"highest", shape.highest}, {"lowest", shape.lowest}}, axisName(shape.along));
    }

    Volume readScan(const Progress& progress) const
    {
        std::vector<std::filesystem::path> files = m_Options.slices;
        files.insert(files.begin(), m_File);
        return readDicom(files, progress);
    }

    void addVolume(Volume volume)
    {
        const std::array<int, 3>& size = volume.grid.size;
        std::string name = m_Name + " - " + std::to_string(size[0]) + " x " + std::to_string(size[1]) + " x " +
                           std::to_string(size[2]) + " voxels";
        if (volume.times.size() > 1)
            name += ", " + std::to_string(volume.times.size()) + " times";
        const bool hasCurve = m_Options.withCurves && volume.numChannels == 1;
        const Points2 curve = hasCurve ? valueHistogram(volume.times.front()) : Points2();
        std::vector<std::string> remarks;
        for (const std::string& remark : volume.remarks)
            remarks.push_back(printableName(m_File) + ": " + remark);
        m_Exhibits.emplace_back(VolumeExhibit{std::move(name), std::move(volume), std::move(remarks)});
        if (!curve.empty())
            addCurves("voxels per density", {{"log10 of voxels", curve}}, "density");
    }

    // Empty if no number is finite.
    static Points2 valueHistogram(const NumberColumn& samples)
    {
        const Histogram histogram(samples);
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
        case ColumnsAs::POINTS: return addPoints(std::move(table));
        case ColumnsAs::PATH: return addPath(pointsOf(table, "curve in space"));
        default: return addPlot(std::move(table));
        }
    }

    void addPlot(Table table)
    {
        const TablePlot plot = planPlot(m_File, table, m_Options.columns);
        std::vector<std::string> remarks = remarksOn(m_File, table, plot);
        if (const std::string empty = emptyColumnsOf(table); !empty.empty())
            remarks.push_back(printableName(m_File) + ": " + empty);
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

    void addPoints(Table table)
    {
        const std::vector<std::size_t> xyz = coordinates(table, "cloud");
        addScene(pointsOfTable(std::move(table), xyz));
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

const char* nameOf(Side side)
{
    switch (side) {
    case Side::FRONT: return "front";
    case Side::BACK: return "back";
    case Side::RIGHT: return "right";
    default: return "top";
    }
}

const std::string& nameOf(const Exhibit& exhibit)
{
    return std::visit([](const auto& shown) -> const std::string& { return shown.name; }, exhibit);
}

bool isPlotted(const std::filesystem::path& file, const LoadOptions& options)
{
    if (options.raw || options.columnsAs == ColumnsAs::POINTS || options.columnsAs == ColumnsAs::PATH)
        return false;
    std::error_code error;
    if (std::filesystem::exists(file, error) && std::filesystem::file_size(file, error) > 0)
        return formatOf(file, options.columnsAs) == FileFormat::COLUMNS;
    const std::string extension = lowerCaseExtension(file);
    for (const char* const other : {".nii", ".hdr", ".img", ".nrrd", ".nhdr", ".mha", ".mhd", ".tif", ".tiff", ".dcm",
             ".ply", ".off", ".obj", ".stl", ".gltf", ".glb"})
        if (extension == other)
            return false;
    if (hasNameOfImage(file))
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
    if (!plot.withoutAxis.empty())
        lines.push_back(describe(table, plot.withoutAxis.front()) +
                        (plot.withoutAxis.size() > 1 ? " and others have" : " has") +
                        " a third unit, and two have an axis: the left one counts " +
                        (plot.withoutAxis.size() > 1 ? "them, too" : "it, too"));
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
