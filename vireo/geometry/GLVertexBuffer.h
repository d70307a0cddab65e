#pragma once

#include <vector>

#include "tavo/points/VertexDescriptor.h"
#include "vireo/Export.h"
#include "vireo/geometry/GLBuffer.h"

namespace tavo {

// Interleaved vertices in a buffer object, whose layout is a VertexDescriptor. Filled from client memory or from a
// render target of floats, and drawn through the fixed-function arrays or through generic vertex attributes:
//
//     GLVertexBuffer buffer(context, layout, GLVertexBuffer::TYPE_DEFAULT);
//     if (!buffer.init(count, GL_STATIC_DRAW_ARB))
//         ...
//     buffer.writeToBuffer(vertices.data(), 0, count);
//     buffer.setMappingFlag(true);
//     buffer.bind();
//     buffer.drawArrays(GL_TRIANGLES, 0, count);
//     buffer.unbind();
//
// Elements are vertices. What must be current, and what happens once the context is gone, is said at GLBuffer;
// drawArrays, copyFromRenderTarget and the init of TYPE_RENDERED32 do not check that the context lives. Binding without
// the mapping flag needs GL_ARB_vertex_program, TYPE_RENDERED32 and copyFromRenderTarget need
// GL_ARB_pixel_buffer_object.
class VIREO_EXPORT GLVertexBuffer : public GLBuffer
{
public:
    // The fixed-function arrays that the mapping knows.
    static constexpr int MAP_POSITION = 0;
    static constexpr int MAP_COLOR = 1;
    static constexpr int MAP_NORMAL = 2;
    static constexpr int MAP_TEXCOORD0 = 3;

    // Filled by the application, and by copyFromRenderTarget.
    static constexpr int TYPE_DEFAULT = 0;
    static constexpr int TYPE_RENDERED32 = 1;

    // Copies the layout. The type is one of the two above.
    GLVertexBuffer(GLContext* context, const VertexDescriptor& descriptor, int type);

    // Makes storage for so many vertices, their content undefined, for a usage such as GL_STATIC_DRAW_ARB. False on a
    // GL error; a buffer of TYPE_DEFAULT then stays bound to GL_ARRAY_BUFFER_ARB and has the size that was asked for,
    // one of TYPE_RENDERED32 stays bound to GL_PIXEL_PACK_BUFFER_ARB and has the size that it had. False, with nothing
    // bound and the size that it had, for 4 GiB or more. The number of elements is what was asked for in any case.
    bool init(unsigned int numElements, unsigned int usage);

    // Binds the buffer and enables and points the arrays of its attributes into it. With the mapping flag, attributes
    // feed the fixed-function arrays by their names "position", "normal" (with exactly three components), "color" and
    // "texcoord" (of the active client texture unit); others are left out. Without it, attribute i feeds generic
    // attribute i. Nothing else is disabled.
    void bind();

    // Disables these arrays, by the mapping flag as it is now, and binds no buffer. Throws as GLBuffer::unbind does,
    // but only after the arrays were disabled: not to be called without a context.
    void unbind();

    // Draws count vertices from the first one on, or as many as the buffer has if count is 0, as primitives of a mode
    // such as GL_TRIANGLES. The buffer must be bound; it is not checked that it has these vertices.
    void drawArrays(unsigned int mode, unsigned int first, unsigned int count);

    // Copy whole vertices into and out of the buffer, by the range checks of GLBuffer.
    void writeToBuffer(void* data, int firstElement, unsigned int numElements);
    void readFromBuffer(std::vector<unsigned char>& out, int firstElement, unsigned int numElements);

    // Fills the buffer, from its first byte on, with what was rendered into a float target: each attribute is one pixel
    // of four 32-bit floats, the attributes of a vertex lie side by side. The rectangle is in vertices: (x, y) is its
    // lower left one, row after row is read. The target must be bound as framebuffer, and have that read buffer, for
    // example GL_COLOR_ATTACHMENT0_EXT, which stays selected. Nothing is bound to GL_PIXEL_PACK_BUFFER_ARB afterwards.
    // GL writes the pixels as its pixel storage says: all GL_PACK_ values (glPixelStorei) must be as they are at first.
    // Neither the range nor the context is checked here.
    void copyFromRenderTarget(
        unsigned int x, unsigned int y, unsigned int width, unsigned int height, unsigned int readBuffer);

    unsigned int getNumElements() { return m_NumElements; }

    // Whether attributes feed the fixed-function arrays by name; at first they do not. Not to be changed while bound.
    bool getMappingFlag() const { return m_MappingFlag; }
    void setMappingFlag(bool mappingFlag) { m_MappingFlag = mappingFlag; }

    // The buffer's own copy of the layout.
    VertexDescriptor* getVertexDescriptor() { return &m_VertexDescriptor; }

private:
    bool initFromPixels(unsigned int sizeInBytes, unsigned int usage);

    VertexDescriptor m_VertexDescriptor;
    unsigned int m_NumElements = 0;
    bool m_MappingFlag = false;
    int m_Type;
};

} // namespace tavo
