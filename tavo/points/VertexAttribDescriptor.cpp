#include "tavo/points/VertexAttribDescriptor.h"

#include <limits>
#include <utility>

#include "tavo/base/objects/PException.h"

namespace tavo {

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
