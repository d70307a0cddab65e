#include "apps/vireo-view/OffReader.h"

#include <bit>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "apps/vireo-view/FaceCollector.h"
#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/TextLines.h"
#include "apps/vireo-view/pointFields.h"
#include "apps/vireo-view/words.h"

namespace vireo_view {

namespace {

// What the letters before OFF say that a point has besides x, y and z.
struct Keyword
{
    bool hasTexture = false;
    bool hasColour = false;
    bool hasNormal = false;
    bool isHomogeneous = false; // a fourth coordinate by which the others are divided
    bool hasDimension = false;  // the header says how many coordinates there are
    bool isBinary = false;
};

Keyword keywordOf(std::string_view word)
{
    Keyword keyword;
    const auto take = [&word](std::string_view prefix) {
        const bool has = word.starts_with(prefix);
        word.remove_prefix(has ? prefix.size() : 0);
        return has;
    };
    keyword.hasTexture = take("ST");
    keyword.hasColour = take("C");
    keyword.hasNormal = take("N");
    keyword.isHomogeneous = take("4");
    keyword.hasDimension = take("n");
    return keyword;
}

class Reader
{
public:
    explicit Reader(InputBuffer& input)
        : m_Input(input)
        , m_Lines(input)
    {}

    GeometryFile read()
    {
        readHeader();
        if (m_Keyword.isBinary)
            readBinary();
        else
            readText();
        finish();
        return std::move(m_File);
    }

private:
    void readHeader()
    {
        if (!m_Lines.next())
            m_Lines.fail("not the header of an OFF file");
        m_Rest = m_Lines.get();
        m_Keyword = keywordOf(takeWord(m_Rest));
        if (std::string_view behind = m_Rest; takeWord(behind) == "BINARY") {
            m_Keyword.isBinary = true;
            m_Input.allowLongLines();
            m_NumPoints = readBinaryCount();
            m_NumFaces = readBinaryCount();
            readBinaryCount();
        } else {
            if (m_Keyword.hasDimension && readCount() != 3)
                m_Lines.fail("the points do not have three coordinates");
            m_NumPoints = readCount();
            m_NumFaces = readCount();
        }
        checkNumPoints();
    }

    // In the line of the keyword, or behind it.
    std::uint64_t readCount()
    {
        for (std::string_view word = takeWord(m_Rest); true; word = takeWord(m_Rest)) {
            const std::optional<double> count = numberOf(word);
            if (count && *count >= 0 && *count <= 1e15)
                return static_cast<std::uint64_t>(*count);
            if (!word.empty() || !m_Lines.next())
                m_Lines.fail("not the header of an OFF file");
            m_Rest = m_Lines.get();
        }
    }

    std::optional<double> readBinaryNumber(NumberKind kind)
    {
        char bytes[4];
        if (m_Input.sgetn(bytes, sizeof bytes) != sizeof bytes)
            return std::nullopt;
        return decodeNumber(kind, bytes, std::endian::native == std::endian::little);
    }

    std::uint64_t readBinaryCount()
    {
        const std::optional<double> count = readBinaryNumber(NumberKind::INT32);
        if (!count || *count < 0)
            m_Lines.fail("not the header of an OFF file");
        return static_cast<std::uint64_t>(*count);
    }

    void checkNumPoints() const
    {
        constexpr std::uint64_t SHORTEST_POINT = 6; // three digits, each with a blank
        if (m_NumPoints == 0)
            throw InputError(m_Input.getFile(), "has no points");
        if (m_NumPoints > m_Input.getFileSize() / SHORTEST_POINT)
            throw InputError(
                m_Input.getFile(), "is too short for the " + std::to_string(m_NumPoints) + " points that it promises");
        if (m_NumPoints > std::numeric_limits<std::uint32_t>::max())
            throw InputError(m_Input.getFile(), "has too many points");
    }

    [[noreturn]] void failAtPoint(std::uint64_t numRead)
    {
        const std::size_t line = m_Input.getLineNumber();
        if (m_Input.isAtEnd())
            throw InputError(m_Input.getFile(), "ends after " + std::to_string(numRead) + " of the " +
                                                    std::to_string(m_NumPoints) + " points that it promises");
        throw InputError(m_Input.getFile(), line, "not the numbers of a point");
    }

    // The numbers of a line; false if there is something else.
    bool readNumbers()
    {
        m_Numbers.clear();
        std::string_view text = m_Lines.get();
        for (std::string_view word = takeWord(text); !word.empty(); word = takeWord(text)) {
            const std::optional<double> number = numberOf(word);
            if (!number)
                return false;
            m_Numbers.push_back(*number);
        }
        return true;
    }

    void readText()
    {
        for (std::uint64_t i = 0; i < m_NumPoints; ++i) {
            const bool hasLine = m_Lines.next();
            if (!hasLine || !readNumbers() || m_Numbers.size() < numNeeded())
                failAtPoint(i);
            addPoint(i);
        }
        for (std::uint64_t i = 0; i < m_NumFaces; ++i)
            if (!m_Lines.next() || !readNumbers() || !addTextFace())
                return endFaces(i);
    }

    std::size_t numNeeded() const { return 3 + m_Keyword.isHomogeneous + 3 * m_Keyword.hasNormal; }

    // Behind the coordinates and the normal comes the colour, and then the place in a texture.
    void addPoint(std::uint64_t index)
    {
        const double weight = m_Keyword.isHomogeneous ? m_Numbers[3] : 1;
        for (std::size_t i = 0; i < 3; ++i)
            m_Positions.push_back(m_Numbers[i] / weight);
        if (m_Keyword.hasNormal)
            m_Normals.insert(m_Normals.end(), m_Numbers.begin() + numNeeded() - 3, m_Numbers.begin() + numNeeded());
        std::size_t numExtra = m_Numbers.size() - numNeeded();
        numExtra -= std::min<std::size_t>(numExtra, m_Keyword.hasTexture ? 2 : 0);
        if (index == 0 && (numExtra == 3 || numExtra == 4))
            m_NumChannels = static_cast<unsigned int>(numExtra);
        if (m_NumChannels == 0 || numExtra < m_NumChannels) {
            m_HasOtherNumbers = m_HasOtherNumbers || numExtra > 0;
            return;
        }
        const auto colour = m_Numbers.begin() + static_cast<std::ptrdiff_t>(numNeeded());
        m_Colours.insert(m_Colours.end(), colour, colour + m_NumChannels);
    }

    bool addTextFace()
    {
        if (m_Numbers.empty() || m_Numbers[0] < 0 || m_Numbers[0] > static_cast<double>(m_Numbers.size() - 1))
            return false;
        const auto count = static_cast<std::size_t>(m_Numbers[0]);
        m_Corners.clear();
        for (std::size_t i = 1; i <= count; ++i)
            m_Corners.push_back(cornerOf(m_Numbers[i]));
        m_Faces.add(m_Corners);
        m_Numbers.erase(m_Numbers.begin(), m_Numbers.begin() + static_cast<std::ptrdiff_t>(count) + 1);
        addFaceColour();
        return true;
    }

    // Which is what is in m_Numbers. A single number is one of a table that is not in the file.
    void addFaceColour()
    {
        const std::size_t numChannels = m_Numbers.size();
        if (numChannels == 0)
            return;
        m_HaveFacesColours = true;
        if (m_NumFaceChannels == 0 && (numChannels == 3 || numChannels == 4))
            m_NumFaceChannels = static_cast<unsigned int>(numChannels);
        if (numChannels == m_NumFaceChannels)
            m_FaceColours.insert(m_FaceColours.end(), m_Numbers.begin(), m_Numbers.end());
    }

    std::uint64_t cornerOf(double number) const
    {
        return number >= 0 && number < static_cast<double>(m_NumPoints) ? static_cast<std::uint64_t>(number)
                                                                        : UINT64_MAX;
    }

    void readBinary()
    {
        const std::size_t numNumbers = numNeeded() + (m_Keyword.hasColour ? 4 : 0) + (m_Keyword.hasTexture ? 2 : 0);
        for (std::uint64_t i = 0; i < m_NumPoints; ++i) {
            m_Numbers.clear();
            while (m_Numbers.size() < numNumbers) {
                const std::optional<double> number = readBinaryNumber(NumberKind::FLOAT);
                if (!number)
                    failAtPoint(i);
                m_Numbers.push_back(*number);
            }
            addPoint(i);
        }
        for (std::uint64_t i = 0; i < m_NumFaces; ++i)
            if (!readBinaryFace())
                return endFaces(i);
    }

    bool readBinaryFace()
    {
        const std::optional<double> count = readBinaryNumber(NumberKind::INT32);
        if (!count || *count < 0)
            return false;
        const bool isSane = *count <= static_cast<double>(m_NumPoints);
        m_Corners.clear();
        for (double i = 0; i < *count; ++i) {
            const std::optional<double> corner = readBinaryNumber(NumberKind::INT32);
            if (!corner)
                return false;
            if (isSane)
                m_Corners.push_back(cornerOf(*corner));
        }
        m_Faces.add(m_Corners);
        const std::optional<double> numColours = readBinaryNumber(NumberKind::INT32);
        if (!numColours)
            return false;
        m_Numbers.clear();
        for (double i = 0; i < *numColours; ++i) {
            const std::optional<double> number = readBinaryNumber(NumberKind::FLOAT);
            if (!number)
                return false;
            if (i <= MOST_CHANNELS)
                m_Numbers.push_back(*number);
        }
        addFaceColour();
        return true;
    }

    // Points that are there are shown without the faces that are not.
    void endFaces(std::uint64_t numRead)
    {
        const std::size_t line = m_Input.getLineNumber();
        const std::string where = m_Input.isAtEnd() || m_Keyword.isBinary
                                      ? "where the file ends"
                                      : "which is none in line " + std::to_string(line);
        m_File.leftOut.push_back("the faces from number " + std::to_string(numRead + 1) + " of " +
                                 std::to_string(m_NumFaces) + " on, " + where);
    }

    void finish()
    {
        Geometry geometry;
        geometry.positions = std::move(m_Positions);
        geometry.normals = std::move(m_Normals);
        if (m_NumChannels > 0 && m_Colours.size() == m_NumPoints * m_NumChannels)
            setColours(geometry, std::move(m_Colours), m_NumChannels);
        else if (m_NumChannels > 0)
            m_File.leftOut.emplace_back("colours, which not every point has");
        if (m_Keyword.hasTexture)
            m_File.leftOut.emplace_back("places in textures");
        if (m_HasOtherNumbers && m_NumChannels == 0)
            m_File.leftOut.emplace_back("further numbers of the points");
        const std::size_t numFaces = m_Faces.getNumAdded();
        m_Faces.finish(m_File, geometry);
        if (m_NumFaceChannels > 0 && m_FaceColours.size() == numFaces * m_NumFaceChannels)
            setFaceColours(geometry);
        else if (m_HaveFacesColours)
            m_File.leftOut.emplace_back("colours of the faces, which not every face has");
        m_File.geometries.push_back(std::move(geometry));
    }

    void setFaceColours(Geometry& geometry)
    {
        Geometry coloured;
        setColours(coloured, std::move(m_FaceColours), m_NumFaceChannels);
        geometry.ofFaces.colours = std::move(coloured.colours);
        m_Faces.keepGood(geometry.ofFaces.colours, m_NumFaceChannels);
    }

    static constexpr double MOST_CHANNELS = 4;

    InputBuffer& m_Input;
    TextLines m_Lines;
    std::string_view m_Rest;
    Keyword m_Keyword;
    std::uint64_t m_NumPoints = 0;
    std::uint64_t m_NumFaces = 0;
    std::vector<double> m_Numbers; // of a point or a face
    std::vector<double> m_Positions;
    std::vector<double> m_Normals;
    std::vector<double> m_Colours;
    unsigned int m_NumChannels = 0;
    bool m_HasOtherNumbers = false;
    std::vector<double> m_FaceColours;
    unsigned int m_NumFaceChannels = 0;
    bool m_HaveFacesColours = false;
    FaceCollector m_Faces;
    std::vector<std::uint64_t> m_Corners;
    GeometryFile m_File;
};

} // namespace

GeometryFile readOff(InputBuffer& input)
{
    return Reader(input).read();
}

} // namespace vireo_view
