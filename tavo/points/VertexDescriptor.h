#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tavo/points/Export.h"
#include "tavo/points/VertexAttribDescriptor.h"

namespace tavo {

// The layout of interleaved vertices: their attributes in order, each right behind the one before, without gaps. Where
// a name occurs twice, operations by name mean the first.
class TAVO_POINTS_EXPORT VertexDescriptor
{
public:
    // Appends an attribute. Throws PException if the bytes of a vertex are then too many to be counted.
    void pushAttrib(const VertexAttribDescriptor& attribute);

    // The number of attributes. The two are the same; both names are in use.
    unsigned int getNumAttribs() const { return static_cast<unsigned int>(m_Attributes.size()); }
    unsigned int getNumAttributes() const { return getNumAttribs(); }

    // Throws std::out_of_range beyond the last attribute.
    const VertexAttribDescriptor& getAttribute(unsigned int i) const;

    // Throws PException if there is none of that name.
    const VertexAttribDescriptor& getAttribute(const std::string& name) const;

    // The bytes between the start of a vertex and its attribute i. Throws std::out_of_range beyond the last attribute.
    unsigned int getAttributeOffset(unsigned int i) const;

    // The bytes of a vertex, which is also the distance of one vertex from the next.
    unsigned int getSize() const { return m_Size; }

    bool providesAttribute(const std::string& name) const;

    // Whether the attribute of that name has exactly that many components and that type code.
    bool providesAttribute(const std::string& name, unsigned int components, unsigned int typeCode) const;

    // The index of the attribute of that name. Throws PException if there is none.
    unsigned int getIndex(const std::string& name) const;

    bool operator==(const VertexDescriptor&) const = default;

    // Converts count vertices at data from the layout source to the layout target, attribute by attribute of the same
    // name. Each takes as many leading components as the target has; components and attributes that the source lacks
    // are zero. The result replaces what converted held; data may lie in it.
    //
    // Throws PException, with converted untouched, if an attribute has one type in the source and another in the target
    // (whether a byte of 255 means 255 or 1 is for the application to say), or if there are vertices to convert but no
    // data.
    static void convertVertices(const VertexDescriptor& target, const VertexDescriptor& source, const void* data,
        unsigned int count, std::vector<unsigned char>& converted);

    // The same into memory of the caller's, which has room for count vertices of the target, and none of the data.
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
