#pragma once

#include <vector>

#include "vireo/Export.h"
#include "vireo/geometry/GLBuffer.h"

namespace tavo {

/// Indices of type `unsigned short` or `unsigned int` in a buffer object (GL_ELEMENT_ARRAY_BUFFER_ARB). They choose and
/// order the vertices of an indexed drawing:
///
///     #include <vireo/context/GLExtensions.h>
///
///     const std::vector<unsigned short> triangle{0, 1, 2};
///     GLTemplatedIndexBuffer<unsigned short> indices(&context);
///     indices.init(3, GL_STATIC_DRAW_ARB);
///     indices.writeToBuffer(triangle.data(), 0, 3);
///     vertices.bind();
///     indices.bind();
///     indices.drawElements(GL_TRIANGLES, 0, 3);
///     indices.unbind();
///     vertices.unbind();
///
/// GLBuffer says what must be current, and what happens when the context is gone. drawElements does not check that.
template <typename T>
class VIREO_EXPORT GLTemplatedIndexBuffer : public GLBuffer
{
public:
    explicit GLTemplatedIndexBuffer(GLContext* context);

    /// Makes undefined storage for that many indices (glBufferDataARB), for a usage such as GL_STATIC_DRAW_ARB. Returns
    /// false on a GL error and for 4 GiB or more. getNumIndices() is what was asked for in any case.
    /// @leaves Nothing is bound. On a GL error the buffer stays bound and has the size that was asked for.
    bool init(unsigned int numIndices, unsigned int usage);

    /// Copy indices into and out of the buffer, with the checks of GLBuffer. `out` then holds exactly numIndices *
    /// sizeof(T) bytes.
    void writeToBuffer(const T* indices, int firstIndex, unsigned int numIndices);
    void readFromBuffer(std::vector<unsigned char>& out, int firstIndex, unsigned int numIndices);

    /// Draws primitives of that mode from `count` indices, beginning with index `first`, or from as many as the buffer
    /// has if `count` is 0 (glDrawElements). Nothing checks that there are such indices and vertices.
    /// @needs This buffer and that of the vertices must be bound.
    void drawElements(unsigned int mode, unsigned int first, unsigned int count);

    unsigned int getNumIndices() const;

private:
    unsigned int m_NumIndices = 0;
};

extern template class GLTemplatedIndexBuffer<unsigned short>;
extern template class GLTemplatedIndexBuffer<unsigned int>;

} // namespace tavo
