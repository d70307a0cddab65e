#include "apps/vireo-view/PlyReader.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <string>
#include <utility>

#include "apps/vireo-view/FaceCollector.h"
#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/PlyHeader.h"
#include "apps/vireo-view/pointFields.h"
#include "apps/vireo-view/words.h"

namespace vireo_view {

namespace {

// The numbers behind a header, one after the other.
class Values
{
public:
    Values(InputBuffer& input, const PlyHeader& header)
        : m_Input(input)
        , m_IsBinary(header.isBinary)
        , m_IsSwapped(header.isBigEndian != (std::endian::native == std::endian::big))
    {}

    // Nothing at the end of the file, and where a word is no such number.
    std::optional<double> read(NumberKind kind)
    {
        if (m_IsBinary)
            return readBytes(kind);
        const std::optional<double> value = numberOf(readWord());
        return value && canHold(kind, *value) ? value : std::nullopt;
    }

    bool skip(const PlyProperty& property)
    {
        const std::optional<double> value = read(property.isList ? property.countType : property.type);
        if (!value || !property.isList)
            return value.has_value();
        return skipItems(property, *value);
    }

    bool skipItems(const PlyProperty& list, double count)
    {
        for (double i = 0; i < count; ++i)
            if (!read(list.type))
                return false;
        return true;
    }

private:
    std::optional<double> readBytes(NumberKind kind)
    {
        char bytes[sizeof(double)];
        const auto size = static_cast<std::streamsize>(sizeInBytes(kind));
        if (m_Input.sgetn(bytes, size) != size)
            return std::nullopt;
        return decodeNumber(kind, bytes, m_IsSwapped);
    }

    const std::string& readWord()
    {
        constexpr int END = InputBuffer::traits_type::eof();
        const auto isBlank = [](int c) { return c == ' ' || (c >= '\t' && c <= '\r'); };
        m_Word.clear();
        int c = m_Input.sgetc();
        while (c != END && isBlank(c))
            c = m_Input.snextc();
        for (; c != END && !isBlank(c); c = m_Input.snextc())
            m_Word += static_cast<char>(c);
        return m_Word;
    }

    InputBuffer& m_Input;
    bool m_IsBinary;
    bool m_IsSwapped;
    std::string m_Word;
};

class Reader
{
public:
    explicit Reader(InputBuffer& input)
        : m_Input(input)
        , m_Header(readPlyHeader(input))
        , m_Values(input, m_Header)
    {
        for (const PlyElement& element : m_Header.elements) {
            m_NumPoints = element.holdsPoints() && m_NumPoints == 0 ? element.count : m_NumPoints;
            m_HasFaces = m_HasFaces || (element.holdsFaces() && cornersOf(element));
        }
        if (m_Header.isBinary)
            input.allowLongLines();
    }

    GeometryFile read()
    {
        for (const PlyElement& element : m_Header.elements)
            readElement(element);
        m_Faces.finish(m_File, m_Geometry);
        finishFaceColumns();
        m_File.geometries.push_back(std::move(m_Geometry));
        return std::move(m_File);
    }

private:
    void readElement(const PlyElement& element)
    {
        if (element.holdsPoints() && m_Geometry.getNumPoints() == 0)
            readPoints(element);
        else if (element.holdsFaces() && !m_HasReadFaces && cornersOf(element))
            readFaces(element);
        else
            skipElement(element);
    }

    // What there is that is no point or no item of an element, or that there is nothing.
    [[noreturn]] void fail(const PlyElement& element, std::uint64_t numRead)
    {
        const std::size_t line = m_Input.getLineNumber();
        const std::string name = quotedText(element.name);
        if (m_Input.isAtEnd())
            throw InputError(m_Input.getFile(),
                "ends after " + std::to_string(numRead) + " of the " + std::to_string(element.count) + " " +
                    (element.holdsPoints() ? "points" : "items of " + name) + " that it promises");
        throw InputError(m_Input.getFile(), line,
            element.holdsPoints() ? "not the numbers of a point" : "not the numbers of an item of " + name);
    }

    // A text may have more digits than the type that its header names.
    NumberColumn columnFor(const PlyProperty& property) const
    {
        const bool isCoordinate = property.name == "x" || property.name == "y" || property.name == "z";
        const bool isExact = !m_Header.isBinary && isCoordinate && property.type == NumberKind::FLOAT;
        return columnOf(isExact ? NumberKind::DOUBLE : property.type);
    }

    void readPoints(const PlyElement& element)
    {
        std::vector<NamedColumn> columns;
        for (const PlyProperty& property : element.properties) {
            columns.push_back({property.name, columnFor(property)});
            if (m_Header.isBinary && !property.isList) // that the file is large enough is known
                std::visit([&](auto& values) { values.reserve(element.count); }, columns.back().values);
            if (property.isList)
                m_File.leftOut.push_back("the list " + quotedText(property.name) + " of the points");
        }
        for (std::uint64_t i = 0; i < element.count; ++i)
            for (std::size_t p = 0; p < columns.size(); ++p)
                if (!readInto(columns[p].values, element.properties[p]))
                    fail(element, i);
        for (std::size_t p = columns.size(); p-- > 0;)
            if (element.properties[p].isList)
                columns.erase(columns.begin() + static_cast<std::ptrdiff_t>(p));
        m_Geometry = geometryOf(std::move(columns));
    }

    bool readInto(NumberColumn& column, const PlyProperty& property)
    {
        if (property.isList)
            return m_Values.skip(property);
        const std::optional<double> value = m_Values.read(property.type);
        if (value)
            append(column, *value);
        return value.has_value();
    }

    static const PlyProperty* cornersOf(const PlyElement& element)
    {
        const auto found =
            std::find_if(element.properties.begin(), element.properties.end(), [](const PlyProperty& property) {
                return property.isList && (property.name == "vertex_indices" || property.name == "vertex_index");
            });
        return found == element.properties.end() ? nullptr : &*found;
    }

    void readFaces(const PlyElement& element)
    {
        m_HasReadFaces = true;
        const PlyProperty* const corners = cornersOf(element);
        for (const PlyProperty& property : element.properties) {
            if (property.isList && &property != corners)
                m_File.leftOut.push_back("the list " + quotedText(property.name) + " of the faces");
            m_FaceColumns.push_back({property.isList ? std::string() : property.name, columnOf(property.type)});
        }
        for (std::uint64_t i = 0; i < element.count; ++i)
            for (std::size_t p = 0; p < element.properties.size(); ++p) {
                const PlyProperty& property = element.properties[p];
                if (!(&property == corners ? readFace(property) : readInto(m_FaceColumns[p].values, property)))
                    return endFaces(element, i);
            }
    }

    // Those of the faces that are kept.
    void finishFaceColumns()
    {
        std::erase_if(m_FaceColumns, [](const NamedColumn& column) { return column.name.empty(); });
        for (NamedColumn& column : m_FaceColumns)
            m_Faces.keepGood(column.values, 1);
        m_Geometry.ofFaces = faceFieldsOf(std::move(m_FaceColumns));
    }

    // Points that are there are shown without the faces that are not.
    void endFaces(const PlyElement& element, std::uint64_t numRead)
    {
        if (m_Geometry.getNumPoints() == 0)
            fail(element, numRead);
        const std::size_t line = m_Input.getLineNumber();
        const std::string where =
            m_Input.isAtEnd() ? "where the file ends" : "which begins in line " + std::to_string(line) + " and is none";
        m_File.leftOut.push_back("the faces from number " + std::to_string(numRead + 1) + " of " +
                                 std::to_string(element.count) + " on, " + where);
    }

    bool readFace(const PlyProperty& list)
    {
        const std::optional<double> count = m_Values.read(list.countType);
        if (!count)
            return false;
        if (*count > static_cast<double>(m_NumPoints)) {
            m_Faces.addBad();
            return m_Values.skipItems(list, *count);
        }
        m_Corners.clear();
        for (double i = 0; i < *count; ++i) {
            const std::optional<double> corner = m_Values.read(list.type);
            if (!corner)
                return false;
            const bool isPoint = *corner >= 0 && *corner < static_cast<double>(m_NumPoints);
            m_Corners.push_back(isPoint ? static_cast<std::uint64_t>(*corner) : UINT64_MAX);
        }
        m_Faces.add(m_Corners);
        return true;
    }

    void skipElement(const PlyElement& element)
    {
        if (element.count > 0)
            m_File.leftOut.push_back("the element " + quotedText(element.name));
        if (element.properties.empty() || !isAwaitingMore())
            return;
        for (std::uint64_t i = 0; i < element.count; ++i)
            for (const PlyProperty& property : element.properties)
                if (!m_Values.skip(property)) {
                    if (m_Geometry.getNumPoints() == 0)
                        fail(element, i);
                    return;
                }
    }

    // Nobody needs what is behind points and faces.
    bool isAwaitingMore() const { return m_Geometry.getNumPoints() == 0 || (m_HasFaces && !m_HasReadFaces); }

    InputBuffer& m_Input;
    PlyHeader m_Header;
    Values m_Values;
    GeometryFile m_File;
    Geometry m_Geometry;
    FaceCollector m_Faces;
    std::uint64_t m_NumPoints = 0;
    bool m_HasFaces = false;
    bool m_HasReadFaces = false;
    std::vector<std::uint64_t> m_Corners;
    std::vector<NamedColumn> m_FaceColumns; // of lists there is none, and no name
};

} // namespace

GeometryFile readPly(InputBuffer& input)
{
    return Reader(input).read();
}

} // namespace vireo_view
