#pragma once

#include <initializer_list>

#include "tavo/points/VertexDescriptor.h"

namespace tavo {

// The codes of an attribute's type.
constexpr unsigned int BYTE = VertexAttribDescriptor::TYPE_UNSIGNED_BYTE;
constexpr unsigned int FLOAT = VertexAttribDescriptor::TYPE_FLOAT;
constexpr unsigned int INT = VertexAttribDescriptor::TYPE_INT;

inline VertexDescriptor makeLayout(std::initializer_list<VertexAttribDescriptor> attributes)
{
    VertexDescriptor layout;
    for (const VertexAttribDescriptor& attribute : attributes)
        layout.pushAttrib(attribute);
    return layout;
}

} // namespace tavo
