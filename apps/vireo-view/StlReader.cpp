#include "apps/vireo-view/StlReader.h"

#include <array>
#include <bit>
#include <limits>
#include <numeric>
#include <optional>
#include <string>
#include <utility>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/TextLines.h"
#include "apps/vireo-view/words.h"

namespace vireo_view {

namespace {

constexpr std::size_t HEADER_SIZE = 80;
constexpr std::size_t COUNT_SIZE = 4;
constexpr std::size_t TRIANGLE_SIZE = 50; // a normal and three points of floats, and two bytes that each program uses

std::string numbered(std::uint64_t number)
{
    return std::to_string(number) + (number == 1 ? " triangle" : " triangles");
}

// Each three points are a triangle.
void addTriangles(GeometryFile& file, NumberColumn positions)
{
    Geometry geometry;
    geometry.positions = std::move(positions);
    geometry.faces.resize(geometry.getNumPoints());
    std::iota(geometry.faces.begin(), geometry.faces.end(), 0u);
    file.geometries.push_back(std::move(geometry));
}

bool isBinary(InputBuffer& input)
{
    std::array<char, HEADER_SIZE + COUNT_SIZE> beginning{};
    const auto numRead = input.sgetn(beginning.data(), beginning.size());
    input.rewind();
    const bool saysText = std::string_view(beginning.data(), 5) == "solid";
    if (numRead < static_cast<std::streamsize>(beginning.size()))
        return !saysText;
    const double count =
        decodeNumber(NumberKind::UINT32, beginning.data() + HEADER_SIZE, std::endian::native == std::endian::big);
    const bool fits = static_cast<double>(input.getFileSize()) == beginning.size() + count * TRIANGLE_SIZE;
    return fits || !saysText;
}

GeometryFile readBinary(InputBuffer& input)
{
    constexpr bool IS_SWAPPED = std::endian::native == std::endian::big;
    input.allowLongLines();
    std::array<char, HEADER_SIZE + COUNT_SIZE> header{};
    if (input.sgetn(header.data(), header.size()) != static_cast<std::streamsize>(header.size()))
        throw InputError(input.getFile(), "is not an STL file: it has no header");
    const auto count =
        static_cast<std::uint64_t>(decodeNumber(NumberKind::UINT32, header.data() + HEADER_SIZE, IS_SWAPPED));
    if (count == 0)
        throw InputError(input.getFile(), "has no triangles");
    if (count > input.getRemainingSize() / TRIANGLE_SIZE)
        throw InputError(input.getFile(), "is too short for the " + numbered(count) + " that it promises");
    if (count > std::numeric_limits<std::uint32_t>::max() / 3)
        throw InputError(input.getFile(), "has too many points");

    GeometryFile file;
    std::vector<float> positions;
    positions.reserve(9 * count);
    std::array<char, TRIANGLE_SIZE> triangle{};
    bool hasAttributes = false;
    for (std::uint64_t i = 0; i < count; ++i) {
        if (input.sgetn(triangle.data(), triangle.size()) != static_cast<std::streamsize>(triangle.size()))
            throw InputError(input.getFile(),
                "ends after " + std::to_string(i) + " of the " + numbered(count) + " that it promises");
        for (std::size_t number = 3; number < 12; ++number)
            positions.push_back(
                static_cast<float>(decodeNumber(NumberKind::FLOAT, triangle.data() + 4 * number, IS_SWAPPED)));
        hasAttributes = hasAttributes || triangle[48] != 0 || triangle[49] != 0;
    }
    if (hasAttributes)
        file.leftOut.emplace_back("colours or other attributes of the triangles");
    addTriangles(file, std::move(positions));
    return file;
}

class TextReader
{
public:
    explicit TextReader(InputBuffer& input)
        : m_Input(input)
        , m_Lines(input)
    {}

    GeometryFile read()
    {
        while (m_Lines.next())
            readLine();
        if (m_NumCorners != 0)
            throw InputError(m_Input.getFile(), "ends within a triangle");
        if (m_Positions.empty())
            throw InputError(m_Input.getFile(), "has no triangles");
        if (m_Positions.size() / 3 > std::numeric_limits<std::uint32_t>::max())
            throw InputError(m_Input.getFile(), "has too many points");
        GeometryFile file;
        addTriangles(file, std::move(m_Positions));
        return file;
    }

private:
    void readLine()
    {
        std::string_view text = m_Lines.get();
        const std::string_view word = takeWord(text);
        if (word == "vertex") {
            addPoint(text);
        } else if (word == "endloop") {
            if (m_NumCorners != 3)
                m_Lines.fail("the triangle has " + std::to_string(m_NumCorners) + " points");
            m_NumCorners = 0;
        } else if (word != "solid" && word != "endsolid" && word != "facet" && word != "outer" && word != "endfacet") {
            m_Lines.fail("not a line of an STL file: " + quotedText(word));
        }
    }

    void addPoint(std::string_view text)
    {
        for (int i = 0; i < 3; ++i) {
            const std::optional<double> number = numberOf(takeWord(text));
            if (!number)
                m_Lines.fail("not the numbers of a point");
            m_Positions.push_back(*number);
        }
        ++m_NumCorners;
    }

    InputBuffer& m_Input;
    TextLines m_Lines;
    std::vector<double> m_Positions;
    unsigned int m_NumCorners = 0; // of the triangle that has not ended
};

} // namespace

GeometryFile readStl(InputBuffer& input)
{
    return isBinary(input) ? readBinary(input) : TextReader(input).read();
}

} // namespace vireo_view
