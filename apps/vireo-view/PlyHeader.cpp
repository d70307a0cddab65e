#include "apps/vireo-view/PlyHeader.h"

#include <algorithm>
#include <array>
#include <limits>
#include <sstream>
#include <string_view>
#include <utility>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

struct Type
{
    std::string_view name;
    std::string_view sizedName;
    NumberKind kind;
};

constexpr std::array<Type, 8> TYPES = {{{"char", "int8", NumberKind::INT8}, {"uchar", "uint8", NumberKind::UINT8},
    {"short", "int16", NumberKind::INT16}, {"ushort", "uint16", NumberKind::UINT16},
    {"int", "int32", NumberKind::INT32}, {"uint", "uint32", NumberKind::UINT32},
    {"float", "float32", NumberKind::FLOAT}, {"double", "float64", NumberKind::DOUBLE}}};

// Reads the header's lines into elements.
class HeaderParser
{
public:
    explicit HeaderParser(InputBuffer& input)
        : m_Input(input)
        , m_Stream(&input)
    {}

    PlyHeader parse()
    {
        expectLine("ply");
        parseFormat();
        while (parseLine()) {
        }
        return std::move(m_Header);
    }

private:
    [[noreturn]] void fail(const std::string& reason) const
    {
        throw InputError(m_Input.getFile(), m_Input.getLineNumber(), reason);
    }

    std::istringstream nextLine()
    {
        std::string line;
        if (!std::getline(m_Stream, line))
            fail("the header does not end");
        return std::istringstream(line);
    }

    void expectLine(const std::string& expected)
    {
        std::string word;
        nextLine() >> word;
        if (word != expected)
            fail("expected '" + expected + "', not " + quotedText(word));
    }

    void parseFormat()
    {
        std::string keyword, format, version;
        nextLine() >> keyword >> format >> version;
        if (keyword != "format" || version.empty())
            fail("expected the format, such as 'format ascii 1.0'");
        if (format != "ascii" && format != "binary_little_endian" && format != "binary_big_endian")
            fail("unknown format " + quotedText(format));
        m_Header.isBinary = format != "ascii";
        m_Header.isBigEndian = format == "binary_big_endian";
    }

    // False at the header's end.
    bool parseLine()
    {
        std::istringstream line = nextLine();
        std::string keyword;
        line >> keyword;
        if (keyword == "element")
            parseElement(line);
        else if (keyword == "property")
            parseProperty(line);
        else if (keyword != "comment" && keyword != "obj_info" && keyword != "end_header")
            fail("unknown keyword " + quotedText(keyword));
        return keyword != "end_header";
    }

    void parseElement(std::istringstream& line)
    {
        PlyElement element;
        std::string count;
        line >> element.name >> count;
        std::istringstream number(count);
        if (count.starts_with('-') || !(number >> element.count) || !number.eof())
            fail("expected an element's name and count");
        m_Header.elements.push_back(element);
    }

    void parseProperty(std::istringstream& line)
    {
        PlyProperty property{};
        std::string type = wordOf(line);
        property.isList = type == "list";
        if (property.isList) {
            property.countType = typeNamed(wordOf(line));
            type = wordOf(line);
        }
        property.type = typeNamed(type);
        line >> property.name;
        if (property.name.empty())
            fail("expected a property's type and name");
        if (m_Header.elements.empty())
            fail("property " + quotedText(property.name) + " belongs to no element");
        m_Header.elements.back().properties.push_back(property);
    }

    static std::string wordOf(std::istringstream& line)
    {
        std::string word;
        line >> word;
        return word;
    }

    NumberKind typeNamed(const std::string& name) const
    {
        const auto found = std::find_if(TYPES.begin(), TYPES.end(),
            [&name](const Type& type) { return type.name == name || type.sizedName == name; });
        if (found == TYPES.end())
            fail("unknown type " + quotedText(name));
        return found->kind;
    }

    InputBuffer& m_Input;
    std::istream m_Stream;
    PlyHeader m_Header;
};

// Takes what the elements need from the bytes that there are.
class Room
{
public:
    Room(std::uintmax_t size, bool isBinary)
        : m_Size(size)
        , m_IsBinary(isBinary)
    {}

    // False if there is not enough.
    bool take(const PlyElement& element)
    {
        std::uintmax_t itemSize = 0;
        for (const PlyProperty& property : element.properties)
            itemSize +=
                m_IsBinary ? sizeInBytes(property.isList ? property.countType : property.type) : SHORTEST_NUMBER;
        if (itemSize > 0 && element.count > m_Size / itemSize)
            return false;
        m_Size -= element.count * itemSize;
        return true;
    }

private:
    static constexpr std::uintmax_t SHORTEST_NUMBER = 2; // a digit and a blank

    std::uintmax_t m_Size;
    bool m_IsBinary;
};

bool hasNumber(const PlyElement& element, std::string_view name)
{
    return std::any_of(element.properties.begin(), element.properties.end(),
        [name](const PlyProperty& property) { return !property.isList && property.name == name; });
}

// Why the points cannot be read because of this element, which is theirs or comes before it; empty if they can.
std::string objectionTo(const PlyElement& element, Room& room)
{
    if (element.holdsPoints() && element.count == 0)
        return "has no points";
    if (element.count > 0 && element.properties.empty())
        return "the element " + quotedText(element.name) + " has no properties";
    if (!room.take(element))
        return "is too short for the " + std::to_string(element.count) + " items of " + quotedText(element.name) +
               " that it promises";
    if (element.holdsPoints() && element.count > std::numeric_limits<std::uint32_t>::max())
        return "has too many points";
    if (element.holdsPoints() && !(hasNumber(element, "x") && hasNumber(element, "y") && hasNumber(element, "z")))
        return "its points do not have numbers x, y and z";
    return {};
}

} // namespace

PlyHeader readPlyHeader(InputBuffer& input)
{
    PlyHeader header = HeaderParser(input).parse();
    // A last number in a text needs no blank behind it.
    Room room(input.getRemainingSize() + (header.isBinary ? 0 : 1), header.isBinary);
    for (const PlyElement& element : header.elements) {
        const std::string objection = objectionTo(element, room);
        if (!objection.empty())
            throw InputError(input.getFile(), objection);
        if (element.holdsPoints())
            return header;
    }
    throw InputError(input.getFile(), "has no points");
}

} // namespace vireo_view
