#include "apps/vireo-view/DicomHeader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/tableCells.h"
#include "apps/vireo-view/words.h"

namespace vireo_view {

namespace {

constexpr std::string_view MARK = "DICM";
constexpr std::uint64_t PLACE_OF_MARK = 128;
constexpr std::uint32_t NO_LENGTH = 0xFFFFFFFF; // a mark behind it says where a field ends
constexpr std::uint64_t UNTIL_MARK = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint32_t LONGEST_FIELD = 1024; // of those that are kept

constexpr std::uint32_t ITEM = 0xFFFEE000;
constexpr std::uint32_t END_OF_ITEM = 0xFFFEE00D;
constexpr std::uint32_t END_OF_SEQUENCE = 0xFFFEE0DD;

constexpr std::array<DicomTag, 21> KEPT = {DicomTag::TRANSFER_SYNTAX, DicomTag::DESCRIPTION, DicomTag::THICKNESS,
    DicomTag::DISTANCE, DicomTag::SERIES, DicomTag::NUMBER, DicomTag::POSITION, DicomTag::DIRECTIONS,
    DicomTag::NUM_CHANNELS, DicomTag::MEANING, DicomTag::PLANES, DicomTag::NUM_FRAMES, DicomTag::NUM_ROWS,
    DicomTag::NUM_COLUMNS, DicomTag::PIXEL_SPACING, DicomTag::BITS_ALLOCATED, DicomTag::BITS_STORED,
    DicomTag::HIGHEST_BIT, DicomTag::IS_SIGNED, DicomTag::INTERCEPT, DicomTag::SLOPE};

constexpr const char* IMPLICIT = "1.2.840.10008.1.2";
constexpr const char* EXPLICIT = "1.2.840.10008.1.2.1";
constexpr const char* EXPLICIT_BIG_ENDIAN = "1.2.840.10008.1.2.2";

// Ways of compression that are met, by how their names begin.
constexpr std::array<std::pair<std::string_view, std::string_view>, 7> COMPRESSIONS = {{
    {"1.2.840.10008.1.2.1.99", "Deflate"},
    {"1.2.840.10008.1.2.4.8", "JPEG-LS"},
    {"1.2.840.10008.1.2.4.9", "JPEG 2000"},
    {"1.2.840.10008.1.2.4.10", "MPEG"},
    {"1.2.840.10008.1.2.4.20", "JPEG 2000"},
    {"1.2.840.10008.1.2.4.", "JPEG"},
    {"1.2.840.10008.1.2.5", "run lengths"},
}};

bool hasLongLength(std::string_view type)
{
    for (const char* const known : {"OB", "OD", "OF", "OL", "OV", "OW", "SQ", "SV", "UC", "UN", "UR", "UT", "UV"})
        if (type == known)
            return true;
    return false;
}

std::string withoutFill(std::string_view value)
{
    return std::string(trimmed(value.substr(0, value.find('\0'))));
}

// Numbers that backslashes separate.
std::vector<double> numbersIn(std::string text, std::size_t count)
{
    std::replace(text.begin(), text.end(), '\\', ' ');
    std::string_view rest = text;
    std::vector<double> numbers;
    for (std::string_view word = takeWord(rest); !word.empty(); word = takeWord(rest)) {
        const std::optional<double> number = numberOf(word);
        if (!number || !std::isfinite(*number))
            return {};
        numbers.push_back(*number);
    }
    return numbers.size() == count ? numbers : std::vector<double>();
}

} // namespace

// Goes through the fields of a file up to the pixels. What lies in others is passed through without going down: a file
// may have it as deep as it is long.
class DicomHeaderReader
{
public:
    DicomHeaderReader(DicomHeader& header, const std::filesystem::path& file)
        : m_Header(header)
        , m_Stream(file, std::ios::binary)
    {
        std::error_code error;
        m_FileSize = std::filesystem::file_size(file, error);
        if (!m_Stream || error)
            throw InputError(file, "cannot be opened");
    }

    void read()
    {
        m_Position = PLACE_OF_MARK + MARK.size();
        seek(m_Position);
        while (m_Position < m_FileSize && isOfMeta())
            readField();
        takeSyntax();
        while (m_Position < m_FileSize && m_Header.m_PixelsStart == 0)
            readField();
    }

private:
    [[noreturn]] void endsTooSoon() const { throw InputError(m_Header.m_File, "ends before its pixels"); }

    void seek(std::uint64_t position)
    {
        m_Position = position;
        m_Stream.seekg(static_cast<std::streamoff>(position));
    }

    // The first group says how all others are written, and is written in one way itself.
    bool isOfMeta()
    {
        const std::uint64_t start = m_Position;
        const bool isOfMeta = readNumber(2) == 2;
        seek(start);
        return isOfMeta;
    }

    void takeSyntax()
    {
        const std::string syntax = m_Header.text(DicomTag::TRANSFER_SYNTAX);
        for (const auto& [name, compression] : COMPRESSIONS)
            if (syntax.starts_with(name))
                throw InputError(m_Header.m_File, "has compressed pixels (" + std::string(compression) +
                                                      "), which are not read; \"gdcmconv --raw\" takes that away");
        if (syntax != IMPLICIT && syntax != EXPLICIT && syntax != EXPLICIT_BIG_ENDIAN)
            throw InputError(m_Header.m_File, "is written in the unknown way " + quotedText(syntax));
        m_IsExplicit = syntax != IMPLICIT;
        m_Header.m_IsBigEndian = syntax == EXPLICIT_BIG_ENDIAN;
    }

    std::string readBytes(std::uint64_t count)
    {
        if (count > m_FileSize - m_Position)
            endsTooSoon();
        std::string bytes(count, '\0');
        m_Stream.read(bytes.data(), static_cast<std::streamsize>(count));
        if (!m_Stream)
            endsTooSoon();
        m_Position += count;
        return bytes;
    }

    std::uint32_t readNumber(std::size_t size)
    {
        std::string bytes = readBytes(size);
        if (!m_Header.m_IsBigEndian)
            std::reverse(bytes.begin(), bytes.end());
        std::uint32_t number = 0;
        for (const char byte : bytes)
            number = number << 8u | static_cast<unsigned char>(byte);
        return number;
    }

    void skip(std::uint64_t count)
    {
        if (count > m_FileSize - m_Position)
            endsTooSoon();
        seek(m_Position + count);
    }

    void readField()
    {
        const std::uint32_t group = readNumber(2);
        const std::uint32_t tag = group << 16u | readNumber(2);
        if (group == 0xFFFE)
            return readMark(tag, readNumber(4));
        const std::string type = m_IsExplicit && !isImplicitHere() ? readBytes(2) : "";
        std::uint32_t length = 0;
        if (type.empty() || hasLongLength(type)) {
            skip(type.empty() ? 0 : 2);
            length = readNumber(4);
        } else {
            length = readNumber(2);
        }
        readValue(static_cast<DicomTag>(tag), type, length);
    }

    // What begins and ends within a field that has others.
    void readMark(std::uint32_t tag, std::uint32_t length)
    {
        if (tag == ITEM && length == NO_LENGTH)
            ++m_Depth;
        else if (tag == ITEM && !isOfFrames())
            skip(length);
        else if ((tag == END_OF_ITEM || tag == END_OF_SEQUENCE) && m_Depth > 0)
            --m_Depth;
        if (m_Depth < m_ImplicitFrom)
            m_ImplicitFrom = 0;
        if (m_Depth == 0 && m_FramesEnd == UNTIL_MARK)
            m_FramesEnd = 0;
    }

    void readValue(DicomTag tag, const std::string& type, std::uint32_t length)
    {
        const bool isAtTop = m_Depth == 0 && m_Position >= m_FramesEnd;
        if (isAtTop)
            m_FramesEnd = 0;
        if (isAtTop && tag == DicomTag::PIXELS)
            return takePixels(length);
        const bool isSequenceOfFrames = isAtTop && (tag == DicomTag::FRAMES_TOGETHER || tag == DicomTag::FRAMES_EACH);
        if (isSequenceOfFrames)
            m_FramesEnd = length == NO_LENGTH ? UNTIL_MARK : m_Position + length;
        if (length == NO_LENGTH) {
            ++m_Depth;
            if (type == "UN" && m_ImplicitFrom == 0)
                m_ImplicitFrom = m_Depth;
        } else if (isSequenceOfFrames || (isOfFrames() && isSequence(type, length))) {
            // Its items come next.
        } else if ((isAtTop || isOfFrames()) && length <= LONGEST_FIELD &&
                   std::find(KEPT.begin(), KEPT.end(), tag) != KEPT.end()) {
            keep(tag, readBytes(length));
        } else {
            skip(length);
        }
    }

    // Without types, by how it begins.
    bool isSequence(const std::string& type, std::uint32_t length)
    {
        if (!type.empty() || length < 8)
            return type == "SQ";
        const std::uint64_t start = m_Position;
        const std::uint32_t group = readNumber(2);
        const bool isItem = (group << 16u | readNumber(2)) == ITEM;
        seek(start);
        return isItem;
    }

    void keep(DicomTag tag, std::string value)
    {
        if (tag == DicomTag::POSITION && isOfFrames()) {
            if (const std::vector<double> xyz = numbersIn(withoutFill(value), 3); !xyz.empty())
                m_Header.m_FramePositions.emplace_back(xyz[0], xyz[1], xyz[2]);
            return;
        }
        m_Header.m_Fields.emplace(tag, std::move(value)); // the first one, of what frames say, too
    }

    void takePixels(std::uint32_t length)
    {
        if (length == NO_LENGTH)
            throw InputError(m_Header.m_File, "has compressed pixels, and says that they are not");
        if (length > m_FileSize - m_Position)
            throw InputError(m_Header.m_File, "ends before its last voxel");
        m_Header.m_PixelsStart = m_Position;
        m_Header.m_PixelsSize = length;
    }

    bool isOfFrames() const { return m_FramesEnd > 0; }
    bool isImplicitHere() const { return m_ImplicitFrom > 0; }

    DicomHeader& m_Header;
    std::ifstream m_Stream;
    std::uint64_t m_FileSize = 0;
    std::uint64_t m_Position = 0;
    bool m_IsExplicit = true;
    std::uint64_t m_Depth = 0;        // of fields and items whose end a mark says
    std::uint64_t m_ImplicitFrom = 0; // the depth from which on fields have no types; 0 if they have
    std::uint64_t m_FramesEnd = 0;    // of what is said of frames, while that is read; else 0
};

DicomHeader::DicomHeader(const std::filesystem::path& file)
    : m_File(file)
{
    if (!isDicom(file))
        throw InputError(file, "is no DICOM file: it has not \"DICM\" behind its first 128 bytes");
    DicomHeaderReader(*this, file).read();
}

std::string DicomHeader::text(DicomTag tag) const
{
    const auto found = m_Fields.find(tag);
    return found == m_Fields.end() ? std::string() : withoutFill(found->second);
}

std::vector<double> DicomHeader::numbers(DicomTag tag, std::size_t count) const
{
    return numbersIn(text(tag), count);
}

double DicomHeader::number(DicomTag tag, double otherwise) const
{
    const std::vector<double> found = numbers(tag, 1);
    return found.empty() ? otherwise : found.front();
}

int DicomHeader::integer(DicomTag tag, int otherwise) const
{
    const auto found = m_Fields.find(tag);
    if (found == m_Fields.end() || found->second.size() != 2)
        return otherwise;
    const int first = static_cast<unsigned char>(found->second[0]);
    const int second = static_cast<unsigned char>(found->second[1]);
    return m_IsBigEndian ? first << 8 | second : second << 8 | first;
}

bool isDicom(const std::filesystem::path& file)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return false; // to open anything else might wait for ever
    std::ifstream stream(file, std::ios::binary);
    std::array<char, MARK.size()> bytes{};
    stream.seekg(PLACE_OF_MARK);
    stream.read(bytes.data(), bytes.size());
    return stream && std::string_view(bytes.data(), bytes.size()) == MARK;
}

} // namespace vireo_view
