#include "vireo/context/PlainPixels.h"

#include "vireo/context/GLExtensions.h"

namespace tavo {

namespace {

// The buffer that was bound there before.
int unbindBuffer(GLenum target, GLenum binding)
{
    GLint buffer = 0;
    if (!isExtensionSupported("GL_ARB_pixel_buffer_object"))
        return buffer;
    glGetIntegerv(binding, &buffer);
    if (buffer)
        glBindBufferARB(target, 0);
    return buffer;
}

void bindBuffer(GLenum target, int buffer)
{
    if (buffer)
        glBindBufferARB(target, static_cast<GLuint>(buffer));
}

void resetTransfer()
{
    glPixelTransferi(GL_MAP_COLOR, GL_FALSE);
    for (const GLenum scale : {GL_RED_SCALE, GL_GREEN_SCALE, GL_BLUE_SCALE, GL_ALPHA_SCALE})
        glPixelTransferf(scale, 1);
    for (const GLenum bias : {GL_RED_BIAS, GL_GREEN_BIAS, GL_BLUE_BIAS, GL_ALPHA_BIAS})
        glPixelTransferf(bias, 0);
}

void resetStorage()
{
    for (const GLenum setting : {GL_PACK_SWAP_BYTES, GL_PACK_ROW_LENGTH, GL_PACK_SKIP_ROWS, GL_PACK_SKIP_PIXELS,
             GL_UNPACK_SWAP_BYTES, GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_ROWS, GL_UNPACK_SKIP_PIXELS})
        glPixelStorei(setting, 0);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
}

} // namespace

PlainPixels::PlainPixels()
    : m_PackBuffer(unbindBuffer(GL_PIXEL_PACK_BUFFER_ARB, GL_PIXEL_PACK_BUFFER_BINDING_ARB))
    , m_UnpackBuffer(unbindBuffer(GL_PIXEL_UNPACK_BUFFER_ARB, GL_PIXEL_UNPACK_BUFFER_BINDING_ARB))
{
    resetTransfer();
    resetStorage();
}

PlainPixels::~PlainPixels()
{
    bindBuffer(GL_PIXEL_PACK_BUFFER_ARB, m_PackBuffer);
    bindBuffer(GL_PIXEL_UNPACK_BUFFER_ARB, m_UnpackBuffer);
}

} // namespace tavo
