#include "vireo/show/images/pixelReading.h"

#include "tavo/base/debug/displayException.h"
#include "tavo/base/text/printable.h"
#include "tavo/platform/wgl.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/hasFixedFunctions.h"
#include "vireo/show/delivery/sayOnce.h"

#include <GL/glext.h>

namespace tavo {

namespace {

bool isCompilingList()
{
    GLint list = 0;
    glGetIntegerv(GL_LIST_INDEX, &list);
    return list != 0;
}

bool hasRoom(GLenum depth, GLenum most)
{
    constexpr GLint NEEDED = 2;
    GLint taken = 0;
    GLint all = 0;
    glGetIntegerv(depth, &taken);
    glGetIntegerv(most, &all);
    return all - taken >= NEEDED;
}

bool canSaveState()
{
    return hasRoom(GL_ATTRIB_STACK_DEPTH, GL_MAX_ATTRIB_STACK_DEPTH) &&
           hasRoom(GL_CLIENT_ATTRIB_STACK_DEPTH, GL_MAX_CLIENT_ATTRIB_STACK_DEPTH);
}

} // namespace

void refuseReading(std::string_view name, const std::string& why) noexcept
{
    if (isShowOff())
        return;
    runGuarded([&] { sayOnce("image(\"" + printable(name, 80) + "\"): " + why + "; what was shown stays"); });
}

bool canReadHere(std::string_view name) noexcept
{
    if (isShowOff())
        return false;
    if (!wglGetCurrentContext())
        refuseReading(name, "no context is current that it could be read in");
    else if (!hasFixedFunctions())
        refuseReading(name, "the context has the core profile of OpenGL, in which nothing is read");
    else if (isCompilingList())
        refuseReading(name, "a display list is being compiled, to which reading would be added");
    else if (!canSaveState())
        refuseReading(name, "the stacks of attributes are full, so that its state could not be as before");
    else {
        initGLExtensions(); // the program may have no GLContext
        return true;
    }
    return false;
}

PlainReading::PlainReading()
    : m_Storage(GL_CLIENT_PIXEL_STORE_BIT)
    , m_Transfer(GL_PIXEL_MODE_BIT)
    , m_HasPixelBuffers(isExtensionSupported("GL_ARB_pixel_buffer_object"))
{
    if (m_HasPixelBuffers) {
        glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING_ARB, &m_PixelBuffer);
        glBindBufferARB(GL_PIXEL_PACK_BUFFER_ARB, 0);
    }
    for (const GLenum zero : {GL_PACK_SWAP_BYTES, GL_PACK_LSB_FIRST, GL_PACK_ROW_LENGTH, GL_PACK_SKIP_ROWS,
             GL_PACK_SKIP_PIXELS, GL_PACK_IMAGE_HEIGHT, GL_PACK_SKIP_IMAGES})
        glPixelStorei(zero, 0);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glPixelTransferi(GL_MAP_COLOR, 0);
    for (const GLenum one : {GL_RED_SCALE, GL_GREEN_SCALE, GL_BLUE_SCALE, GL_ALPHA_SCALE, GL_DEPTH_SCALE})
        glPixelTransferf(one, 1);
    for (const GLenum zero : {GL_RED_BIAS, GL_GREEN_BIAS, GL_BLUE_BIAS, GL_ALPHA_BIAS, GL_DEPTH_BIAS})
        glPixelTransferf(zero, 0);
}

PlainReading::~PlainReading()
{
    if (m_HasPixelBuffers)
        glBindBufferARB(GL_PIXEL_PACK_BUFFER_ARB, static_cast<GLuint>(m_PixelBuffer));
}

int channelsOf(GLenum format)
{
    switch (format) {
    case GL_RGBA:
    case GL_RGBA_INTEGER: return 4;
    case GL_RGB:
    case GL_RGB_INTEGER: return 3;
    case GL_RG:
    case GL_RG_INTEGER:
    case GL_LUMINANCE_ALPHA: return 2;
    default: return 1;
    }
}

std::size_t countOf(int width, int height, int depth, int channels)
{
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * static_cast<std::size_t>(depth) *
           static_cast<std::size_t>(channels);
}

} // namespace tavo
