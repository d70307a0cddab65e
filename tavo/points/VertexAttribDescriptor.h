#pragma once

#include <string>

#include "tavo/points/Export.h"

namespace tavo {

/// One attribute of a vertex: its name, the number of its components, and the code of their type. The libraries know
/// the names "position", "normal", "color" and "texcoord"; others mean something to the application only.
///
///     const VertexAttribDescriptor colour("color", 4, VertexAttribDescriptor::TYPE_UNSIGNED_BYTE);
class TAVO_POINTS_EXPORT VertexAttribDescriptor
{
public:
    /// The type codes. Any other code is kept as it is and also means a 32-bit float.
    static constexpr unsigned int TYPE_UNSIGNED_BYTE = 1;
    static constexpr unsigned int TYPE_FLOAT = 4;
    static constexpr unsigned int TYPE_INT = 20;

    /// Names and sizes the attribute.
    /// @throws PException If there are no components, or too many to count their bytes.
    VertexAttribDescriptor(std::string name, unsigned int components, unsigned int typeCode);

    const std::string& getName() const { return m_Name; }
    unsigned int getNumComponents() const { return m_NumComponents; }
    unsigned int getType() const { return m_Type; }

    bool isFloat() const { return m_Type != TYPE_UNSIGNED_BYTE && m_Type != TYPE_INT; }

    unsigned int getComponentSizeInBytes() const { return m_Type == TYPE_UNSIGNED_BYTE ? 1 : 4; }
    unsigned int getSizeInBytes() const { return m_NumComponents * getComponentSizeInBytes(); }

    bool operator==(const VertexAttribDescriptor&) const = default;

private:
    std::string m_Name;
    unsigned int m_NumComponents;
    unsigned int m_Type;
};

} // namespace tavo
