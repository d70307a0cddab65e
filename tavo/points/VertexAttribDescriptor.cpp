#include "tavo/points/VertexAttribDescriptor.h"

#include <limits>
#include <utility>

#include "tavo/base/objects/PException.h"

namespace tavo {

// Defined here as well as in the class: a DLL exports only what is defined in one of its sources.
constexpr unsigned int VertexAttribDescriptor::TYPE_UNSIGNED_BYTE;
constexpr unsigned int VertexAttribDescriptor::TYPE_FLOAT;
constexpr unsigned int VertexAttribDescriptor::TYPE_INT;

VertexAttribDescriptor::VertexAttribDescriptor(std::string name, unsigned int components, unsigned int typeCode)
    : m_Name(std::move(name))
    , m_NumComponents(components)
    , m_Type(typeCode)
{
    if (components == 0)
        throw PException("VertexAttribDescriptor::VertexAttribDescriptor() - '" + m_Name + "' has no components");
    if (components > std::numeric_limits<unsigned int>::max() / getComponentSizeInBytes())
        throw PException("VertexAttribDescriptor::VertexAttribDescriptor() - '" + m_Name + "' has too many components");
}

} // namespace tavo
