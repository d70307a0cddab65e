#include "vireo/show/TextureImage.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/text/printable.h"
#include "tavo/platform/wgl.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/SavedState.h"
#include "vireo/offscreen/GLImage.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"
#include "vireo/show/delivery/sayOnce.h"
#include "vireo/textures/GLTexture.h"

#include <GL/gl.h>
#include <GL/glext.h>

namespace tavo {

namespace {

constexpr int LARGEST_LEVEL = 31;

void refuse(std::string_view name, const std::string& why) noexcept
{
    if (isShowOff())
        return;
    runGuarded([&] { sayOnce("image(\"" + printable(name, 80) + "\"): " + why + "; what was shown stays"); });
}

bool isAnyContextCurrent(std::string_view name) noexcept
{
    if (isShowOff())
        return false;
    if (wglGetCurrentContext())
        return true;
    refuse(name, "no context is current that it could be read in");
    return false;
}

// Pixels are written as they are, one after the other, while it lives.
class PlainReading
{
public:
    PlainReading()
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

    ~PlainReading()
    {
        if (m_HasPixelBuffers)
            glBindBufferARB(GL_PIXEL_PACK_BUFFER_ARB, static_cast<GLuint>(m_PixelBuffer));
    }
    PlainReading(const PlainReading&) = delete;
    PlainReading& operator=(const PlainReading&) = delete;

private:
    SavedClientAttributes m_Storage;
    SavedAttributes m_Transfer;
    bool m_HasPixelBuffers;
    GLint m_PixelBuffer = 0;
};

GLenum bindingOf(GLenum target)
{
    switch (target) {
    case GL_TEXTURE_1D: return GL_TEXTURE_BINDING_1D;
    case GL_TEXTURE_3D: return GL_TEXTURE_BINDING_3D;
    case GL_TEXTURE_CUBE_MAP: return GL_TEXTURE_BINDING_CUBE_MAP;
    case GL_TEXTURE_RECTANGLE_ARB: return GL_TEXTURE_BINDING_RECTANGLE_ARB;
    default: return GL_TEXTURE_BINDING_2D;
    }
}

// A texture on the unit that is active.
class BoundTexture
{
public:
    explicit BoundTexture(const GLTexture& texture)
        : m_Target(texture.getTextureTarget())
    {
        glGetIntegerv(bindingOf(m_Target), &m_Before);
        glBindTexture(m_Target, texture.getTextureID());
    }
    ~BoundTexture() { glBindTexture(m_Target, static_cast<GLuint>(m_Before)); }
    BoundTexture(const BoundTexture&) = delete;
    BoundTexture& operator=(const BoundTexture&) = delete;

private:
    GLenum m_Target;
    GLint m_Before = 0;
};

// A level of the texture that is bound.
class Level
{
public:
    Level(GLenum target, int level)
        : m_Target(target)
        , m_Level(level)
    {}

    int get(GLenum parameter) const
    {
        GLint value = 0;
        glGetTexLevelParameteriv(m_Target, m_Level, parameter, &value);
        return value;
    }

    int width() const { return get(GL_TEXTURE_WIDTH); }
    int height() const { return get(GL_TEXTURE_HEIGHT); }
    int depth() const { return m_Target == GL_TEXTURE_3D ? get(GL_TEXTURE_DEPTH) : 1; }

    bool areDepths() const { return get(GL_TEXTURE_DEPTH_SIZE) > 0; }

    GLenum format() const
    {
        if (areDepths())
            return GL_DEPTH_COMPONENT;
        const bool hasAlpha = get(GL_TEXTURE_ALPHA_SIZE) > 0;
        if (get(GL_TEXTURE_LUMINANCE_SIZE) > 0)
            return hasAlpha ? GL_LUMINANCE_ALPHA : GL_RED;
        if (get(GL_TEXTURE_BLUE_SIZE) > 0)
            return hasAlpha ? GL_RGBA : GL_RGB;
        if (get(GL_TEXTURE_GREEN_SIZE) > 0)
            return GL_RG;
        return hasAlpha && get(GL_TEXTURE_RED_SIZE) == 0 ? GL_ALPHA : GL_RED;
    }

    // Of the largest component.
    int numBits() const
    {
        int bits = 0;
        for (const GLenum size : {GL_TEXTURE_RED_SIZE, GL_TEXTURE_GREEN_SIZE, GL_TEXTURE_BLUE_SIZE,
                 GL_TEXTURE_ALPHA_SIZE, GL_TEXTURE_LUMINANCE_SIZE, GL_TEXTURE_INTENSITY_SIZE})
            bits = std::max(bits, get(size));
        return bits;
    }

    bool areFloats() const
    {
        if (areDepths())
            return true;
        if (!isExtensionSupported("GL_ARB_texture_float"))
            return false;
        for (const GLenum type : {GL_TEXTURE_RED_TYPE_ARB, GL_TEXTURE_ALPHA_TYPE_ARB, GL_TEXTURE_LUMINANCE_TYPE_ARB,
                 GL_TEXTURE_INTENSITY_TYPE_ARB})
            if (get(type) == GL_FLOAT)
                return true;
        return false;
    }

private:
    GLenum m_Target;
    int m_Level;
};

int channelsOf(GLenum format)
{
    switch (format) {
    case GL_RGBA: return 4;
    case GL_RGB: return 3;
    case GL_RG:
    case GL_LUMINANCE_ALPHA: return 2;
    default: return 1;
    }
}

std::size_t countOf(int width, int height, int depth, int channels)
{
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * static_cast<std::size_t>(depth) *
           static_cast<std::size_t>(channels);
}

constexpr int NUM_FACES = 6;
const std::vector<std::string> NAMES_OF_FACES{"+x", "-x", "+y", "-y", "+z", "-z"};

// Pixels that are to be read. Their memory is not filled before, which would take about as long as reading them does.
template <Number T>
class UnreadPixels : public Pixels
{
public:
    explicit UnreadPixels(std::size_t count)
        : m_Numbers(new T[count])
    {
        NumberArray::operator=(NumberArray(m_Numbers, m_Numbers.get(), count, numberTypeOf<T>()));
    }

    T* data() const { return m_Numbers.get(); }

private:
    std::shared_ptr<T[]> m_Numbers;
};

// The texels of a level: all its slices, one after the other.
template <Number T>
Pixels texelsOf(GLenum target, int level, GLenum type)
{
    const Level read(target, level);
    const GLenum format = read.format();
    const UnreadPixels<T> texels(countOf(read.width(), read.height(), read.depth(), channelsOf(format)));
    const PlainReading plain;
    glGetTexImage(target, level, format, type, texels.data());
    return texels;
}

Pixels texelsOf(GLenum target, int level)
{
    const Level read(target, level);
    if (read.areFloats())
        return texelsOf<float>(target, level, GL_FLOAT);
    if (read.numBits() > 8)
        return texelsOf<std::uint16_t>(target, level, GL_UNSIGNED_SHORT);
    return texelsOf<std::uint8_t>(target, level, GL_UNSIGNED_BYTE);
}

// One of the slices.
Pixels sliceOf(const Pixels& texels, std::size_t size, int layer)
{
    return texels.visit([&](const auto* numbers, std::size_t) {
        const auto* const first = numbers + size * static_cast<std::size_t>(layer);
        return Pixels(first, size);
    });
}

// The last level that textures of a target may have: OpenGL takes what asks for others for an error.
int lastLevelOf(GLenum target)
{
    if (target == GL_TEXTURE_RECTANGLE_ARB)
        return 0;
    GLint largest = 1;
    glGetIntegerv(target == GL_TEXTURE_3D         ? GL_MAX_3D_TEXTURE_SIZE
                  : target == GL_TEXTURE_CUBE_MAP ? GL_MAX_CUBE_MAP_TEXTURE_SIZE
                                                  : GL_MAX_TEXTURE_SIZE,
        &largest);
    return std::bit_width(static_cast<unsigned int>(largest)) - 1;
}

// Where a texture is bound, and which of its levels and layers there are.
class ReadTexture
{
public:
    explicit ReadTexture(const GLTexture& texture)
        : m_Bound(texture)
        , m_Target(texture.getTextureTarget())
    {}

    bool isCube() const { return m_Target == GL_TEXTURE_CUBE_MAP; }

    // That glGetTexImage() takes.
    GLenum targetOf(int layer) const
    {
        return isCube() ? GL_TEXTURE_CUBE_MAP_POSITIVE_X + static_cast<GLenum>(layer) : m_Target;
    }

    int numLayers(int level) const
    {
        if (level > lastLevelOf(m_Target))
            return 0;
        const Level read(targetOf(0), level);
        if (read.width() <= 0 || read.height() <= 0)
            return 0;
        return isCube() ? NUM_FACES : read.depth();
    }

    // Whether there is one; what is missing is said.
    bool has(std::string_view name, int level, int layer) const
    {
        const std::string ofLevel = "level " + std::to_string(level);
        const std::string ofLayer = "layer " + std::to_string(layer);
        if (level < 0 || level > LARGEST_LEVEL || layer < 0 || (isCube() && layer >= NUM_FACES))
            refuse(name, "there is no " + ofLevel + " and " + ofLayer);
        else if (layer >= numLayers(level))
            refuse(name, ofLevel + " of the texture has no " + ofLayer);
        else
            return true;
        return false;
    }

    Pixels read(int level, int layer) const
    {
        const GLenum target = targetOf(layer);
        const Level read(target, level);
        const Pixels texels = texelsOf(target, level);
        if (isCube() || read.depth() == 1)
            return texels;
        return sliceOf(texels, countOf(read.width(), read.height(), 1, channelsOf(read.format())), layer);
    }

private:
    BoundTexture m_Bound;
    GLenum m_Target;
};

void sendTexture(std::string_view name, const GLTexture& texture, int level, int layer)
{
    const ReadTexture read(texture);
    if (!read.has(name, level, layer))
        return;
    const Level sent(read.targetOf(layer), level);
    image(name, read.read(level, layer), sent.width(), sent.height(), channelsOf(sent.format())).bottomUp();
}

void sendLevels(std::string_view name, const GLTexture& texture, int layer)
{
    const ReadTexture read(texture);
    if (!read.has(name, 0, layer))
        return;
    const Statement together;
    std::vector<std::string> names;
    for (int level = 0; level <= LARGEST_LEVEL && layer < read.numLayers(level); ++level) {
        const Level sent(read.targetOf(layer), level);
        const int channels = channelsOf(sent.format());
        if (level == 0)
            image(name, read.read(level, layer), sent.width(), sent.height(), channels).bottomUp();
        else
            image(name).layer(level, read.read(level, layer), sent.width(), sent.height(), channels);
        names.push_back("level " + std::to_string(level));
    }
    image(name).layerNames(names);
}

void sendLayers(std::string_view name, const GLTexture& texture, int level)
{
    const ReadTexture read(texture);
    if (!read.has(name, level, 0))
        return;
    const Statement together;
    const Level sent(read.targetOf(0), level);
    const int channels = channelsOf(sent.format());
    if (!read.isCube()) {
        imageStack(name, texelsOf(read.targetOf(0), level), sent.width(), sent.height(), sent.depth(), channels)
            .bottomUp()
            .layerNames({});
        return;
    }
    image(name, read.read(level, 0), sent.width(), sent.height(), channels).bottomUp().layerNames(NAMES_OF_FACES);
    for (int face = 1; face < NUM_FACES; ++face)
        image(name).layer(face, read.read(level, face), sent.width(), sent.height(), channels);
}

// Pixels are read from what is drawn to, while it lives, whatever the application reads from.
class ReadingWhatIsDrawn
{
public:
    ReadingWhatIsDrawn()
        : m_HasTwoFramebuffers(isExtensionSupported("GL_EXT_framebuffer_blit"))
    {
        if (m_HasTwoFramebuffers) {
            GLint drawn = 0;
            glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING_EXT, &m_Framebuffer);
            glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING_EXT, &drawn);
            glBindFramebufferEXT(GL_READ_FRAMEBUFFER_EXT, static_cast<GLuint>(drawn));
        }
        GLint drawn = GL_NONE;
        glGetIntegerv(GL_READ_BUFFER, &m_Buffer);
        glGetIntegerv(GL_DRAW_BUFFER, &drawn);
        if (drawn != m_Buffer && drawn != GL_NONE && drawn != GL_FRONT_AND_BACK)
            glReadBuffer(static_cast<GLenum>(drawn));
    }

    ~ReadingWhatIsDrawn()
    {
        GLint buffer = GL_NONE;
        glGetIntegerv(GL_READ_BUFFER, &buffer);
        if (buffer != m_Buffer)
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

template <Number T>
void sendFramebuffer(std::string_view name, GLenum format, GLenum type)
{
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    const UnreadPixels<T> pixels(countOf(viewport[2], viewport[3], 1, channelsOf(format)));
    {
        const PlainReading plain;
        const ReadingWhatIsDrawn reading;
        glReadPixels(viewport[0], viewport[1], viewport[2], viewport[3], format, type, pixels.data());
    }
    image(name, pixels, viewport[2], viewport[3], channelsOf(format)).bottomUp();
}

} // namespace

Image image(std::string_view name, const GLTexture& texture, int level, int layer, const Statement&)
{
    if (isAnyContextCurrent(name))
        runGuarded([&] { sendTexture(name, texture, level, layer); });
    return image(name);
}

Image imageStackOfLevels(std::string_view name, const GLTexture& texture, int layer, const Statement&)
{
    if (isAnyContextCurrent(name))
        runGuarded([&] { sendLevels(name, texture, layer); });
    return image(name);
}

Image imageStackOfLayers(std::string_view name, const GLTexture& texture, int level, const Statement&)
{
    if (isAnyContextCurrent(name))
        runGuarded([&] { sendLayers(name, texture, level); });
    return image(name);
}

Image image(std::string_view name, const GLRenderTextureFBO& target, const Statement&)
{
    if (const GLTexture* const texture = target.getTexture())
        return image(name, *texture);
    refuse(name, "there is no texture yet");
    return image(name);
}

Image image(std::string_view name, const GLImage& picture, const Statement&)
{
    if (const GLRenderTextureFBO* const target = picture.getRenderTexture())
        return image(name, *target);
    refuse(name, "there is no texture yet");
    return image(name);
}

Image framebufferImage(std::string_view name, const Statement&)
{
    if (isAnyContextCurrent(name))
        runGuarded([&] { sendFramebuffer<std::uint8_t>(name, GL_RGB, GL_UNSIGNED_BYTE); });
    return image(name);
}

Image depthBufferImage(std::string_view name, const Statement&)
{
    if (!isAnyContextCurrent(name))
        return image(name);
    GLint numBits = 0;
    glGetIntegerv(GL_DEPTH_BITS, &numBits);
    if (numBits == 0)
        refuse(name, "what is drawn to has no depths");
    else
        runGuarded([&] { sendFramebuffer<float>(name, GL_DEPTH_COMPONENT, GL_FLOAT); });
    return image(name);
}

} // namespace tavo
