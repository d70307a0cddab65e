#include "apps/vireo-view/PlyHeader.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>
#include <vector>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

struct Type
{
    std::string_view name;
    std::string_view sizedName;
    unsigned int size;
};

constexpr std::array<Type, 8> TYPES = {
    {{"char", "int8", 1}, {"uchar", "uint8", 1}, {"short", "int16", 2}, {"ushort", "uint16", 2}, {"int", "int32", 4},
        {"uint", "uint32", 4}, {"float", "float32", 4}, {"double", "float64", 8}}};

struct Property
{
    std::string name;
    const Type* type; // of a list, its elements' type
    bool isList;
};

struct Element
{
    std::string name;
    std::uint64_t count = 0;
    std::vector<Property> properties = {};

    bool holdsPoints() const { return name == "vertex" || name == "vertices"; }
};

// Reads the header's lines into elements.
class HeaderParser
{
public:
    explicit HeaderParser(InputBuffer& input)
        : m_Input(input)
        , m_Stream(&input)
    {}

    void parse()
    {
        expectLine("ply");
        parseFormat();
        while (parseLine()) {
        }
    }

    bool isBinary() const { return m_IsBinary; }
    const std::vector<Element>& getElements() const { return m_Elements; }

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
        m_IsBinary = format != "ascii";
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
        Element element;
        std::string count;
        line >> element.name >> count;
        std::istringstream number(count);
        if (count.starts_with('-') || !(number >> element.count) || !number.eof())
            fail("expected an element's name and count");
        m_Elements.push_back(element);
    }

    void parseProperty(std::istringstream& line)
    {
        Property property{};
        std::string type;
        line >> type;
        property.isList = type == "list";
        if (property.isList) {
            typeNamed(wordOf(line));
            type = wordOf(line);
        }
        property.type = typeNamed(type);
        line >> property.name;
        if (property.name.empty())
            fail("expected a property's type and name");
        if (m_Elements.empty())
            fail("property " + quotedText(property.name) + " belongs to no element");
        m_Elements.back().properties.push_back(property);
    }

    static std::string wordOf(std::istringstream& line)
    {
        std::string word;
        line >> word;
        return word;
    }

    const Type* typeNamed(const std::string& name) const
    {
        const auto found = std::find_if(TYPES.begin(), TYPES.end(),
            [&name](const Type& type) { return type.name == name || type.sizedName == name; });
        if (found == TYPES.end())
            fail("unknown type " + quotedText(name));
        return &*found;
    }

    InputBuffer& m_Input;
    std::istream m_Stream;
    bool m_IsBinary = false;
    std::vector<Element> m_Elements;
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
    bool take(const Element& element)
    {
        std::uintmax_t itemSize = 0;
        for (const Property& property : element.properties)
            itemSize += m_IsBinary ? property.type->size : SHORTEST_NUMBER;
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

const Property* findProperty(const Element& element, std::string_view name)
{
    const auto found = std::find_if(element.properties.begin(), element.properties.end(),
        [name](const Property& property) { return property.name == name; });
    return found == element.properties.end() ? nullptr : &*found;
}

// Empty if the element lacks a coordinate or they cannot be read as one type.
std::string coordinateTypeOf(const Element& points)
{
    std::vector<std::string_view> types;
    for (const char* const coordinate : {"x", "y", "z"}) {
        const Property* const property = findProperty(points, coordinate);
        if (property == nullptr)
            return {};
        types.push_back(property->type->name == "float" ? "double" : property->type->name);
    }
    return types[0] == types[1] && types[0] == types[2] ? std::string(types[0]) : std::string();
}

// Why the points cannot be read because of this element, which is theirs or comes before it; empty if they can.
std::string objectionTo(const Element& element, Room& room)
{
    if (element.holdsPoints() && element.count == 0)
        return "has no points";
    for (const Property& property : element.properties)
        if (property.isList)
            return "the list " + quotedText(property.name) + " comes before the end of the points; this cannot be read";
    if (element.count > 0 && element.properties.empty())
        return "the element " + quotedText(element.name) + " has no properties";
    if (!room.take(element))
        return "is too short for the " + std::to_string(element.count) + " items of " + quotedText(element.name) +
               " that it promises";
    if (element.holdsPoints() && coordinateTypeOf(element).empty())
        return "its points do not have numbers x, y and z of one type";
    return {};
}

} // namespace

PlyHeader readPlyHeader(InputBuffer& input)
{
    HeaderParser parser(input);
    parser.parse();
    // A last number in a text needs no blank behind it.
    Room room(input.getRemainingSize() + (parser.isBinary() ? 0 : 1), parser.isBinary());
    for (const Element& element : parser.getElements()) {
        const std::string objection = objectionTo(element, room);
        if (!objection.empty())
            throw InputError(input.getFile(), objection);
        if (element.holdsPoints())
            return {element.count, coordinateTypeOf(element)};
    }
    throw InputError(input.getFile(), "has no points");
}

} // namespace vireo_view
