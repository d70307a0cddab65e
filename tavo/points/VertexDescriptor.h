#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tavo/points/Export.h"
#include "tavo/points/VertexAttribDescriptor.h"

namespace tavo {

/// The layout of interleaved vertices: their attributes in order, without gaps. If a name occurs twice, operations by
/// name mean the first.
///
///     VertexDescriptor layout;
///     layout.pushAttrib(VertexAttribDescriptor("position", 3, VertexAttribDescriptor::TYPE_FLOAT));
///     layout.pushAttrib(VertexAttribDescriptor("color", 4, VertexAttribDescriptor::TYPE_UNSIGNED_BYTE));
///     const unsigned int stride = layout.getSize(); // 16 bytes
class TAVO_POINTS_EXPORT VertexDescriptor
{
public:
    /// Appends an attribute.
    /// @throws PException If a vertex then has too many bytes to count.
    void pushAttrib(const VertexAttribDescriptor& attribute);

    /// The number of attributes. Both names are in use and mean the same.
    unsigned int getNumAttribs() const { return static_cast<unsigned int>(m_Attributes.size()); }
    unsigned int getNumAttributes() const { return getNumAttribs(); }

    /// Attribute `i`, counted from 0.
    /// @throws std::out_of_range Beyond the last attribute.
    const VertexAttribDescriptor& getAttribute(unsigned int i) const;

    /// The attribute of that name.
    /// @throws PException If there is none.
    const VertexAttribDescriptor& getAttribute(const std::string& name) const;

    /// The distance in bytes from the start of a vertex to its attribute `i`.
    /// @throws std::out_of_range Beyond the last attribute.
    unsigned int getAttributeOffset(unsigned int i) const;

    /// The size of a vertex in bytes, and so the distance from one vertex to the next.
    unsigned int getSize() const { return m_Size; }

    bool providesAttribute(const std::string& name) const;

    /// Whether the attribute of that name has exactly that many components and that type code.
    bool providesAttribute(const std::string& name, unsigned int components, unsigned int typeCode) const;

    /// The index of the attribute of that name.
    /// @throws PException If there is none.
    unsigned int getIndex(const std::string& name) const;

    bool operator==(const VertexDescriptor&) const = default;

    /// Converts `count` vertices at `data` from the layout `source` to the layout `target`. Attributes of the same name
    /// correspond. Each takes as many leading components as the target has; what the source lacks becomes zero. The
    /// result replaces the contents of `converted`; `data` may lie in it.
    /// @throws PException If an attribute has different types in the two layouts (only the application knows whether a
    /// byte of 255 means 255 or 1), or there are vertices to convert but no data. Nothing has changed then.
    static void convertVertices(const VertexDescriptor& target, const VertexDescriptor& source, const void* data,
        unsigned int count, std::vector<unsigned char>& converted);

    /// Does the same into memory of the caller, which must have room for `count` vertices of the target and must not
    /// overlap `data`.
    static void convertVertices(const VertexDescriptor& target, const VertexDescriptor& source, const void* data,
        unsigned int count, unsigned char* converted);

private:
    static constexpr unsigned int NOT_FOUND = ~0u;

    unsigned int find(const std::string& name) const;

    std::vector<VertexAttribDescriptor> m_Attributes;
    std::vector<unsigned int> m_Offsets;
    unsigned int m_Size = 0;
};

} // namespace tavo
