#pragma once

#include <string>

#include "tavo/points/Export.h"

namespace tavo {

// One attribute of a vertex: its name ("position", "normal", "color" and "texcoord" have a meaning to the libraries,
// others to the application), the number of its components and the code of their type.
class TAVO_POINTS_EXPORT VertexAttribDescriptor
{
public:
    // The type codes. Any other code is kept as it is and means a 32-bit float too.
    static constexpr unsigned int TYPE_UNSIGNED_BYTE = 1;
    static constexpr unsigned int TYPE_FLOAT = 4;
    static constexpr unsigned int TYPE_INT = 20;

    // Throws PException without components, and if their bytes are too many to be counted.
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
