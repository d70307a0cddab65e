#pragma once

#include <vector>

#include "vireo/Export.h"
#include "vireo/geometry/GLBuffer.h"

namespace tavo {

// Indices of the type T, unsigned short or unsigned int, in a buffer object, which choose and order the vertices of an
// indexed drawing:
//
//     GLTemplatedIndexBuffer<unsigned short> indices(context);
//     indices.init(count, GL_STATIC_DRAW_ARB);
//     indices.writeToBuffer(data, 0, count);
//     vertices.bind();
//     indices.bind();
//     indices.drawElements(GL_TRIANGLES, 0, count);
//     indices.unbind();
//     vertices.unbind();
//
// The target is GL_ELEMENT_ARRAY_BUFFER_ARB. What must be current, and what happens once the context is gone, is said
// at GLBuffer; drawElements does not check that the context lives.
template <typename T>
class VIREO_EXPORT GLTemplatedIndexBuffer : public GLBuffer
{
public:
    explicit GLTemplatedIndexBuffer(GLContext* context);

    // Makes storage for so many indices, their content undefined, for a usage such as GL_STATIC_DRAW_ARB. False on a GL
    // error; the buffer then stays bound and has the size that was asked for. False, with nothing bound and the size
    // that it had, for 4 GiB or more. The number of indices is what was asked for in any case.
    bool init(unsigned int numIndices, unsigned int usage);

    // Copy indices into and out of the buffer, by the range checks of GLBuffer. out has exactly numIndices * sizeof(T)
    // bytes afterwards.
    void writeToBuffer(const T* indices, int firstIndex, unsigned int numIndices);
    void readFromBuffer(std::vector<unsigned char>& out, int firstIndex, unsigned int numIndices);

    // Draws the vertices that count indices from the first one on stand for, or as many as the buffer has if count is
    // 0, as primitives of a mode such as GL_TRIANGLES. This buffer and the vertices' must be bound; it is not checked
    // that they have these indices and vertices.
    void drawElements(unsigned int mode, unsigned int first, unsigned int count);

    unsigned int getNumIndices() const;

private:
    unsigned int m_NumIndices = 0;
};

extern template class GLTemplatedIndexBuffer<unsigned short>;
extern template class GLTemplatedIndexBuffer<unsigned int>;

} // namespace tavo
