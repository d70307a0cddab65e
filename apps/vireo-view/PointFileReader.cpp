#include "apps/vireo-view/PointFileReader.h"

#include <CGAL/IO/OFF/File_scanner_OFF.h>
#include <CGAL/IO/read_ply_points.h>
#include <CGAL/IO/read_xyz_points.h>
#include <CGAL/Simple_cartesian.h>
#include <CGAL/property_map.h>
#include <charconv>
#include <clocale>
#include <cstdint>
#include <iostream>
#include <istream>
#include <iterator>
#include <new>
#include <optional>
#include <string>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/PlyHeader.h"
#include "apps/vireo-view/tableCells.h"

namespace vireo_view {

namespace {

using Kernel = CGAL::Simple_cartesian<double>;

// Keeps CGAL's own messages from the user, who gets one line of ours.
class MutedErrorStream
{
public:
    MutedErrorStream()
        : m_Buffer(std::cerr.rdbuf(nullptr))
    {}
    ~MutedErrorStream() { std::cerr.rdbuf(m_Buffer); }
    MutedErrorStream(const MutedErrorStream&) = delete;
    MutedErrorStream& operator=(const MutedErrorStream&) = delete;

private:
    std::streambuf* m_Buffer;
};

// CGAL reads some numbers with the C library, which expects the decimal comma of the user's language.
class DecimalPoint
{
public:
    DecimalPoint()
        : m_Locale(std::setlocale(LC_NUMERIC, nullptr))
    {
        std::setlocale(LC_NUMERIC, "C");
    }
    ~DecimalPoint() { std::setlocale(LC_NUMERIC, m_Locale.c_str()); }
    DecimalPoint(const DecimalPoint&) = delete;
    DecimalPoint& operator=(const DecimalPoint&) = delete;

private:
    std::string m_Locale;
};

// Thrown to leave CGAL's reader, which would go on to the file's end.
struct AllPointsRead
{};

// Collects points, up to a number of them.
class PointSink
{
public:
    using iterator_category = std::output_iterator_tag;
    using value_type = Kernel::Point_3;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = void;

    PointSink(Points3& points, std::uint64_t wanted)
        : m_Points(&points)
        , m_Wanted(wanted)
    {}

    PointSink& operator*() { return *this; }
    PointSink& operator++() { return *this; }
    PointSink operator++(int) { return *this; }

    PointSink& operator=(const Kernel::Point_3& point)
    {
        m_Points->emplace_back(point.x(), point.y(), point.z());
        if (m_Points->size() == m_Wanted)
            throw AllPointsRead();
        return *this;
    }

private:
    Points3* m_Points;
    std::uint64_t m_Wanted;
};

[[noreturn]] void failAtLine(const InputBuffer& input, const std::string& reason)
{
    throw InputError(input.getFile(), input.getLineNumber(), reason);
}

[[noreturn]] void failAtPoint(InputBuffer& input, std::size_t numRead, std::uint64_t numPromised)
{
    const std::size_t line = input.getLineNumber();
    if (input.isAtEnd())
        throw InputError(input.getFile(), "ends after " + std::to_string(numRead) + " of the " +
                                              std::to_string(numPromised) + " points that it promises");
    throw InputError(input.getFile(), line, "not the numbers of a point");
}

template <typename Coordinate>
void readPlyPoints(std::istream& stream, PointSink sink)
{
    using Property = CGAL::IO::PLY_property<Coordinate>;
    CGAL::IO::read_PLY_with_properties(stream, sink,
        std::make_tuple(CGAL::Identity_property_map<Kernel::Point_3>(), Kernel::Construct_point_3(), Property("x"),
            Property("y"), Property("z")));
}

using PlyPointsReader = void (*)(std::istream&, PointSink);

// CGAL insists on being asked for the very type that the file has.
PlyPointsReader plyPointsReaderFor(const std::string& coordinateType)
{
    if (coordinateType == "char")
        return readPlyPoints<std::int8_t>;
    if (coordinateType == "uchar")
        return readPlyPoints<std::uint8_t>;
    if (coordinateType == "short")
        return readPlyPoints<std::int16_t>;
    if (coordinateType == "ushort")
        return readPlyPoints<std::uint16_t>;
    if (coordinateType == "int")
        return readPlyPoints<std::int32_t>;
    if (coordinateType == "uint")
        return readPlyPoints<std::uint32_t>;
    return readPlyPoints<double>;
}

Points3 readPly(InputBuffer& input)
{
    const PlyHeader header = readPlyHeader(input);
    input.rewind();
    input.allowLongLines();
    Points3 points;
    points.reserve(header.numPoints);
    std::istream stream(&input);
    try {
        plyPointsReaderFor(header.coordinateType)(stream, PointSink(points, header.numPoints));
    } catch (const AllPointsRead&) {
        return points;
    }
    failAtPoint(input, points.size(), header.numPoints);
}

Points3 readXyz(InputBuffer& input)
{
    Points3 points;
    std::istream stream(&input);
    if (!CGAL::IO::read_XYZ(stream, PointSink(points, UINT64_MAX)))
        failAtLine(input, "not a point: three numbers, or six with its normal");
    if (stream.bad())
        throw std::bad_alloc(); // which the stream has swallowed
    if (points.empty())
        throw InputError(input.getFile(), "has no points");
    return points;
}

// The coordinates that begin a line; nothing if it does not begin with three numbers.
std::optional<tavo::Vector3d> pointOf(const Cells& cells)
{
    if (cells.size() < 3)
        return std::nullopt;
    double xyz[3];
    for (std::size_t i = 0; i < 3; ++i) {
        const auto [end, error] = std::from_chars(cells[i].data(), cells[i].data() + cells[i].size(), xyz[i]);
        if (error != std::errc() || end != cells[i].data() + cells[i].size())
            return std::nullopt;
    }
    return tavo::Vector3d(xyz[0], xyz[1], xyz[2]);
}

// A line for each point, which may have more numbers behind its coordinates; the number of points may come first.
Points3 readPts(InputBuffer& input)
{
    Points3 points;
    std::istream stream(&input);
    Cells cells;
    for (std::string line; std::getline(stream, line);) {
        const std::string_view text = trimmed(withoutComment(line));
        if (text.empty())
            continue;
        const char separator = separatorOf(text);
        splitCells(text, separator == '\t' ? BLANKS_SEPARATE : separator, cells);
        if (points.empty() && cells.size() == 1)
            continue;
        const std::optional<tavo::Vector3d> point = pointOf(cells);
        if (!point)
            failAtLine(input, "not a point: it does not begin with three numbers");
        points.push_back(*point);
    }
    if (stream.bad())
        throw std::bad_alloc(); // which the stream has swallowed
    if (points.empty())
        throw InputError(input.getFile(), "has no points");
    return points;
}

std::uint64_t checkedNumPoints(const CGAL::File_scanner_OFF& scanner, const InputBuffer& input)
{
    constexpr std::uint64_t SHORTEST_POINT = 6; // three digits, each with a blank
    const std::uint64_t numPoints = scanner.size_of_vertices();
    if (numPoints == 0)
        throw InputError(input.getFile(), "has no points");
    if (numPoints > input.getFileSize() / SHORTEST_POINT)
        throw InputError(
            input.getFile(), "is too short for the " + std::to_string(numPoints) + " points that it promises");
    return numPoints;
}

Points3 readOff(InputBuffer& input)
{
    std::istream stream(&input);
    CGAL::File_scanner_OFF scanner(stream);
    if (!stream)
        failAtLine(input, "not the header of an OFF file");
    if (scanner.binary())
        input.allowLongLines();
    const std::uint64_t numPoints = checkedNumPoints(scanner, input);
    Points3 points;
    points.reserve(numPoints);
    while (points.size() < numPoints) {
        double x = 0, y = 0, z = 0;
        scanner.scan_vertex(x, y, z);
        if (!stream)
            failAtPoint(input, points.size(), numPoints);
        points.emplace_back(x, y, z);
    }
    return points;
}

Points3 readPoints(InputBuffer& input, FileFormat format)
{
    switch (format) {
    case FileFormat::PLY: return readPly(input);
    case FileFormat::OFF: return readOff(input);
    case FileFormat::PTS: return readPts(input);
    default: return readXyz(input);
    }
}

} // namespace

Points3 readPointFile(const std::filesystem::path& file, FileFormat format, const Progress& progress)
{
    const bool isText = format == FileFormat::XYZ || format == FileFormat::PTS;
    const auto lineEnds = isText ? InputBuffer::LineEnds::UNIVERSAL : InputBuffer::LineEnds::AS_THEY_ARE;
    InputBuffer input(file, lineEnds, progress);
    const MutedErrorStream muted;
    const DecimalPoint decimalPoint;
    try {
        Points3 points = readPoints(input, format);
        input.checkEnd();
        return points;
    } catch (const std::bad_alloc&) {
        throw InputError(file, "does not fit into memory");
    } catch (const InputError&) {
        input.checkEnd(); // a line that was cut off is not the file's fault
        throw;
    } catch (const std::exception&) {
        failAtLine(input, "cannot be read");
    }
}

} // namespace vireo_view
