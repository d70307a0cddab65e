#pragma once

#include <vector>

#include "tavo/points/VertexDescriptor.h"
#include "vireo/Export.h"
#include "vireo/geometry/GLBuffer.h"

namespace tavo {

/// Interleaved vertices in a buffer object, laid out by a VertexDescriptor. They come from client memory or from a
/// render target of floats, and are drawn through the fixed-function arrays or through generic vertex attributes:
///
///     #include <tavo/points/PointSet.h>
///     #include <vireo/context/GLExtensions.h>
///
///     GLVertexBuffer buffer(&context, points.getDescr(), GLVertexBuffer::TYPE_DEFAULT);
///     if (!buffer.init(points.getNumPoints(), GL_STATIC_DRAW_ARB))
///         return;
///     buffer.writeToBuffer(points.getData(), 0, points.getNumPoints());
///     buffer.setMappingFlag(true);
///     buffer.bind();
///     buffer.drawArrays(GL_POINTS, 0, points.getNumPoints());
///     buffer.unbind();
///
/// Elements are vertices. GLBuffer says what must be current, and what happens when the context is gone. drawArrays,
/// copyFromRenderTarget and init of TYPE_RENDERED32 do not check that. Without the mapping flag, bind needs
/// GL_ARB_vertex_program. TYPE_RENDERED32 and copyFromRenderTarget need GL_ARB_pixel_buffer_object.
class VIREO_EXPORT GLVertexBuffer : public GLBuffer
{
public:
    /// The fixed-function arrays that the mapping knows.
    static constexpr int MAP_POSITION = 0;
    static constexpr int MAP_COLOR = 1;
    static constexpr int MAP_NORMAL = 2;
    static constexpr int MAP_TEXCOORD0 = 3;

    /// A buffer filled by the application, and one filled by copyFromRenderTarget.
    static constexpr int TYPE_DEFAULT = 0;
    static constexpr int TYPE_RENDERED32 = 1;

    /// Makes the name and copies the layout. The type is one of the two above.
    GLVertexBuffer(GLContext* context, const VertexDescriptor& descriptor, int type);

    /// Makes undefined storage for that many vertices (glBufferDataARB), for a usage such as GL_STATIC_DRAW_ARB.
    /// Returns false on a GL error and for 4 GiB or more. getNumElements() is what was asked for in any case.
    /// @leaves Nothing is bound. On a GL error, a buffer of TYPE_DEFAULT stays bound to GL_ARRAY_BUFFER_ARB and has the
    /// size that was asked for; one of TYPE_RENDERED32 stays bound to GL_PIXEL_PACK_BUFFER_ARB and keeps its size.
    bool init(unsigned int numElements, unsigned int usage);

    /// Binds the buffer, enables the arrays of its attributes and points them into it. With the mapping flag,
    /// attributes feed the fixed-function arrays by name: "position", "normal" (of exactly three components), "color",
    /// and "texcoord" (of the active client texture unit); others are left out (glEnableClientState, glVertexPointer
    /// and its like). Without it, attribute i feeds generic attribute i (glEnableVertexAttribArrayARB,
    /// glVertexAttribPointerARB). Nothing else is disabled.
    void bind();

    /// Disables these arrays, by the mapping flag as it is now, and binds no buffer.
    /// @throws PException Without a context, but only after disabling the arrays: do not call it then.
    void unbind();

    /// Draws primitives of that mode from `count` vertices, beginning with vertex `first`, or from all if `count` is 0
    /// (glDrawArrays). Nothing checks that there are such vertices.
    /// @needs The buffer must be bound.
    void drawArrays(unsigned int mode, unsigned int first, unsigned int count);

    /// Copy whole vertices into and out of the buffer, with the checks of GLBuffer.
    void writeToBuffer(void* data, int firstElement, unsigned int numElements);
    void readFromBuffer(std::vector<unsigned char>& out, int firstElement, unsigned int numElements);

    /// Fills the buffer from its first byte on with what was rendered into a float target (glReadBuffer, glReadPixels).
    /// Each attribute is one pixel of four 32-bit floats; the attributes of a vertex lie side by side. The rectangle is
    /// counted in vertices from the lower left one, (x, y), and read row after row. Neither range nor context is
    /// checked.
    /// @needs The target must be bound as framebuffer and have that read buffer, for example GL_COLOR_ATTACHMENT0_EXT.
    /// All GL_PACK values (glPixelStorei) must be GL's initial ones.
    /// @leaves That read buffer is selected; nothing is bound to GL_PIXEL_PACK_BUFFER_ARB.
    void copyFromRenderTarget(
        unsigned int x, unsigned int y, unsigned int width, unsigned int height, unsigned int readBuffer);

    unsigned int getNumElements() { return m_NumElements; }

    /// Whether attributes feed the fixed-function arrays by name; false by default. Do not change it while the buffer
    /// is bound.
    bool getMappingFlag() const { return m_MappingFlag; }
    void setMappingFlag(bool mappingFlag) { m_MappingFlag = mappingFlag; }

    /// The buffer's own copy of the layout.
    VertexDescriptor* getVertexDescriptor() { return &m_VertexDescriptor; }

private:
    bool initFromPixels(unsigned int sizeInBytes, unsigned int usage);

    VertexDescriptor m_VertexDescriptor;
    unsigned int m_NumElements = 0;
    bool m_MappingFlag = false;
    int m_Type;
};

} // namespace tavo
