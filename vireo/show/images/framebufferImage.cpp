#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "tavo/base/debug/displayException.h"
#include "tavo/platform/wgl.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/show/TextureImage.h"
#include "vireo/show/images/pixelReading.h"

#include <GL/glext.h>

namespace tavo {

namespace {

GLint stateOf(GLenum parameter)
{
    GLint value = 0;
    glGetIntegerv(parameter, &value);
    return value;
}

// What is read of the framebuffer that is drawn to.
struct Area
{
    GLint x;
    GLint y;
    GLint width;
    GLint height;
};

Area areaOfViewport()
{
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    return {viewport[0], viewport[1], viewport[2], viewport[3]};
}

// Pixels are read from what is drawn to, while it lives, whatever the application reads from.
class ReadingWhatIsDrawn
{
public:
    ReadingWhatIsDrawn()
        : m_HasTwoFramebuffers(isExtensionSupported("GL_EXT_framebuffer_blit"))
    {
        if (m_HasTwoFramebuffers) {
            m_Framebuffer = stateOf(GL_READ_FRAMEBUFFER_BINDING_EXT);
            glBindFramebufferEXT(
                GL_READ_FRAMEBUFFER_EXT, static_cast<GLuint>(stateOf(GL_DRAW_FRAMEBUFFER_BINDING_EXT)));
        }
        m_Buffer = stateOf(GL_READ_BUFFER);
        const GLint drawn = stateOf(GL_DRAW_BUFFER);
        if (drawn != m_Buffer && drawn != GL_NONE && drawn != GL_FRONT_AND_BACK)
            glReadBuffer(static_cast<GLenum>(drawn));
    }

    ~ReadingWhatIsDrawn()
    {
        if (stateOf(GL_READ_BUFFER) != m_Buffer)
            glReadBuffer(static_cast<GLenum>(m_Buffer));
        if (m_HasTwoFramebuffers)
            glBindFramebufferEXT(GL_READ_FRAMEBUFFER_EXT, static_cast<GLuint>(m_Framebuffer));
    }
    ReadingWhatIsDrawn(const ReadingWhatIsDrawn&) = delete;
    ReadingWhatIsDrawn& operator=(const ReadingWhatIsDrawn&) = delete;

private:
    bool m_HasTwoFramebuffers;
    GLint m_Framebuffer = 0;
    GLint m_Buffer = GL_NONE;
};

bool isFramebufferObject()
{
    return isExtensionSupported("GL_EXT_framebuffer_object") && stateOf(GL_FRAMEBUFFER_BINDING_EXT) != 0;
}

// Of a framebuffer object OpenGL reads no pixels that have several samples; those of a window it does.
bool hasSeveralSamples()
{
    return isFramebufferObject() && stateOf(GL_SAMPLE_BUFFERS_ARB) > 0;
}

// The function is no part of any extension that the library loads.
PFNGLBLITFRAMEBUFFEREXTPROC blitFunction()
{
    if (!isExtensionSupported("GL_EXT_framebuffer_blit"))
        return nullptr;
    const auto address = reinterpret_cast<void (*)()>(wglGetProcAddress("glBlitFramebufferEXT"));
    return reinterpret_cast<PFNGLBLITFRAMEBUFFEREXTPROC>(address);
}

// A copy, with one sample for each pixel, of a part of what is read from. While it lives, the copy is read from
// instead.
class ResolvedPixels
{
public:
    ResolvedPixels(const Area& area, GLbitfield planes, GLenum format)
        : m_ReadFrom(stateOf(GL_READ_FRAMEBUFFER_BINDING_EXT))
        , m_DrawnTo(stateOf(GL_DRAW_FRAMEBUFFER_BINDING_EXT))
        , m_BoundBuffer(stateOf(GL_RENDERBUFFER_BINDING_EXT))
    {
        const bool areColours = planes == GL_COLOR_BUFFER_BIT;
        glGenRenderbuffersEXT(1, &m_Buffer);
        glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, m_Buffer);
        glRenderbufferStorageEXT(GL_RENDERBUFFER_EXT, format, area.width, area.height);
        glGenFramebuffersEXT(1, &m_Framebuffer);
        glBindFramebufferEXT(GL_DRAW_FRAMEBUFFER_EXT, m_Framebuffer);
        glFramebufferRenderbufferEXT(GL_DRAW_FRAMEBUFFER_EXT,
            areColours ? GL_COLOR_ATTACHMENT0_EXT : GL_DEPTH_ATTACHMENT_EXT, GL_RENDERBUFFER_EXT, m_Buffer);
        glDrawBuffer(areColours ? GL_COLOR_ATTACHMENT0_EXT : GL_NONE);
        copy(area, planes);
        drawWhereTheProgramDoes();
        glBindFramebufferEXT(GL_READ_FRAMEBUFFER_EXT, m_Framebuffer);
        glReadBuffer(areColours ? GL_COLOR_ATTACHMENT0_EXT : GL_NONE);
    }

    ~ResolvedPixels()
    {
        glBindFramebufferEXT(GL_READ_FRAMEBUFFER_EXT, static_cast<GLuint>(m_ReadFrom));
        glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, static_cast<GLuint>(m_BoundBuffer));
        glDeleteFramebuffersEXT(1, &m_Framebuffer);
        glDeleteRenderbuffersEXT(1, &m_Buffer);
    }
    ResolvedPixels(const ResolvedPixels&) = delete;
    ResolvedPixels& operator=(const ResolvedPixels&) = delete;

private:
    static void copy(const Area& area, GLbitfield planes)
    {
        const SavedAttributes scissors(GL_SCISSOR_BIT);
        glDisable(GL_SCISSOR_TEST);
        blitFunction()(area.x, area.y, area.x + area.width, area.y + area.height, 0, 0, area.width, area.height, planes,
            GL_NEAREST);
    }

    // Before pixels are read: Mesa prepares to draw then, and once it has done so without colours, as into a copy of
    // depths, it draws wrong colours with the functions of old.
    void drawWhereTheProgramDoes() const
    {
        glBindFramebufferEXT(GL_DRAW_FRAMEBUFFER_EXT, static_cast<GLuint>(m_DrawnTo));
    }

    GLint m_ReadFrom;
    GLint m_DrawnTo;
    GLint m_BoundBuffer;
    GLuint m_Buffer = 0;
    GLuint m_Framebuffer = 0;
};

// As numbers of this type, of what can be read from.
template <Number T>
void send(std::string_view name, GLenum format, GLenum type, const Area& read, const Area& shown)
{
    const UnreadPixels<T> pixels(countOf(shown.width, shown.height, 1, channelsOf(format)));
    std::fill_n(pixels.data(), pixels.size(), T(0)); // the viewport may be larger than what is drawn to
    {
        const PlainReading plain;
        glReadPixels(read.x, read.y, read.width, read.height, format, type, pixels.data());
    }
    image(name, pixels, shown.width, shown.height, channelsOf(format)).bottomUp();
}

// How many bits the component of a colour has that has most.
GLint numBitsOfColours()
{
    return std::max({stateOf(GL_RED_BITS), stateOf(GL_GREEN_BITS), stateOf(GL_BLUE_BITS)});
}

bool areFloatsDrawn()
{
    return isExtensionSupported("GL_ARB_color_buffer_float") && stateOf(GL_RGBA_FLOAT_MODE_ARB) != 0;
}

GLenum formatOfColours()
{
    return areFloatsDrawn() ? GL_RGBA32F_ARB : numBitsOfColours() > 8 ? GL_RGBA16 : GL_RGBA8;
}

// With the precision that they have.
void sendColours(std::string_view name, const Area& read, const Area& shown)
{
    if (areFloatsDrawn())
        send<float>(name, GL_RGB, GL_FLOAT, read, shown);
    else if (numBitsOfColours() > 8)
        send<std::uint16_t>(name, GL_RGB, GL_UNSIGNED_SHORT, read, shown);
    else
        send<std::uint8_t>(name, GL_RGB, GL_UNSIGNED_BYTE, read, shown);
}

// Of the depths of what is drawn to; nothing if they are in a texture. Depths are copied between the same formats only.
std::optional<GLenum> formatOfDepths()
{
    const auto ask = [](GLenum parameter) {
        GLint value = 0;
        glGetFramebufferAttachmentParameterivEXT(GL_DRAW_FRAMEBUFFER_EXT, GL_DEPTH_ATTACHMENT_EXT, parameter, &value);
        return value;
    };
    if (ask(GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE_EXT) != GL_RENDERBUFFER_EXT)
        return {};
    const GLint before = stateOf(GL_RENDERBUFFER_BINDING_EXT);
    GLint format = 0;
    glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, static_cast<GLuint>(ask(GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME_EXT)));
    glGetRenderbufferParameterivEXT(GL_RENDERBUFFER_EXT, GL_RENDERBUFFER_INTERNAL_FORMAT_EXT, &format);
    glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, static_cast<GLuint>(before));
    return static_cast<GLenum>(format);
}

// Why nothing can be read of what is drawn to; empty if it can.
std::string whyUnreadable(const Area& area)
{
    if (area.width <= 0 || area.height <= 0)
        return "the viewport is empty";
    if (isFramebufferObject() && glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT) != GLenum(GL_FRAMEBUFFER_COMPLETE_EXT))
        return "what is drawn to is not complete";
    if (hasSeveralSamples() && !blitFunction())
        return "what is drawn to has several samples for each pixel";
    return {};
}

void sendColours(std::string_view name)
{
    const Area area = areaOfViewport();
    std::string why = whyUnreadable(area);
    const ReadingWhatIsDrawn reading;
    if (why.empty() && stateOf(GL_READ_BUFFER) == GL_NONE)
        why = "what is drawn to has no colours";
    if (!why.empty())
        return refuseReading(name, why);
    if (!hasSeveralSamples())
        return sendColours(name, area, area);
    const ResolvedPixels resolved(area, GL_COLOR_BUFFER_BIT, formatOfColours());
    sendColours(name, {0, 0, area.width, area.height}, area);
}

void sendDepths(std::string_view name)
{
    const Area area = areaOfViewport();
    std::string why = whyUnreadable(area);
    if (why.empty() && stateOf(GL_DEPTH_BITS) == 0)
        why = "what is drawn to has no depths";
    std::optional<GLenum> format;
    if (why.empty() && hasSeveralSamples() && !(format = formatOfDepths()))
        why = "what is drawn to has a texture of depths with several samples for each pixel";
    if (!why.empty())
        return refuseReading(name, why);
    const ReadingWhatIsDrawn reading;
    if (!format)
        return send<float>(name, GL_DEPTH_COMPONENT, GL_FLOAT, area, area);
    const ResolvedPixels resolved(area, GL_DEPTH_BUFFER_BIT, *format);
    send<float>(name, GL_DEPTH_COMPONENT, GL_FLOAT, {0, 0, area.width, area.height}, area);
}

} // namespace

Image framebufferImage(std::string_view name, const Statement&)
{
    if (canReadHere(name))
        runGuarded([&] { sendColours(name); });
    return image(name);
}

Image depthBufferImage(std::string_view name, const Statement&)
{
    if (canReadHere(name))
        runGuarded([&] { sendDepths(name); });
    return image(name);
}

} // namespace tavo
