#include "vireo/show/TextureImage.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "tavo/base/debug/displayException.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/offscreen/GLImage.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"
#include "vireo/show/images/pixelReading.h"
#include "vireo/textures/GLTexture.h"

#include <GL/glext.h>

namespace tavo {

namespace {

constexpr int LARGEST_LEVEL = 31;

// What is asked for the texture that is bound to a target; 0 for targets of which no texels can be read.
GLenum bindingOf(GLenum target)
{
    switch (target) {
    case GL_TEXTURE_1D: return GL_TEXTURE_BINDING_1D;
    case GL_TEXTURE_2D: return GL_TEXTURE_BINDING_2D;
    case GL_TEXTURE_3D: return GL_TEXTURE_BINDING_3D;
    case GL_TEXTURE_CUBE_MAP: return GL_TEXTURE_BINDING_CUBE_MAP;
    case GL_TEXTURE_RECTANGLE_ARB: return GL_TEXTURE_BINDING_RECTANGLE_ARB;
    case GL_TEXTURE_1D_ARRAY: return GL_TEXTURE_BINDING_1D_ARRAY;
    case GL_TEXTURE_2D_ARRAY: return GL_TEXTURE_BINDING_2D_ARRAY;
    case GL_TEXTURE_CUBE_MAP_ARRAY: return GL_TEXTURE_BINDING_CUBE_MAP_ARRAY;
    default: return 0;
    }
}

bool hasSlices(GLenum target)
{
    return target == GL_TEXTURE_3D || target == GL_TEXTURE_2D_ARRAY || target == GL_TEXTURE_CUBE_MAP_ARRAY;
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
    int depth() const { return hasSlices(m_Target) ? get(GL_TEXTURE_DEPTH) : 1; }

    bool areDepths() const { return get(GL_TEXTURE_DEPTH_SIZE) > 0; }

    GLenum format() const
    {
        if (areDepths())
            return GL_DEPTH_COMPONENT;
        const bool hasAlpha = get(GL_TEXTURE_ALPHA_SIZE) > 0;
        if (get(GL_TEXTURE_LUMINANCE_SIZE) > 0)
            return hasAlpha ? GL_LUMINANCE_ALPHA : GL_RED;
        const bool areWhole = areIntegers();
        if (get(GL_TEXTURE_BLUE_SIZE) > 0)
            return hasAlpha ? (areWhole ? GL_RGBA_INTEGER : GL_RGBA) : (areWhole ? GL_RGB_INTEGER : GL_RGB);
        if (get(GL_TEXTURE_GREEN_SIZE) > 0)
            return areWhole ? GL_RG_INTEGER : GL_RG;
        if (hasAlpha && get(GL_TEXTURE_RED_SIZE) == 0)
            return GL_ALPHA;
        return areWhole ? GL_RED_INTEGER : GL_RED;
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

    // Others, such as stencils, are of no format of colours.
    bool areColoursOrDepths() const { return areDepths() || numBits() > 0; }

    // Numbers of floating point, or such that may be below 0.
    bool areFloats() const { return areDepths() || areOfType(GL_FLOAT) || areOfType(GL_SIGNED_NORMALIZED); }

    // Integers as they are, which stand for no colours from 0 to 1.
    bool areIntegers() const { return areOfType(GL_INT) || areOfType(GL_UNSIGNED_INT); }
    bool areOfType(GLint type) const
    {
        if (!isExtensionSupported("GL_ARB_texture_float"))
            return false;
        for (const GLenum component : {GL_TEXTURE_RED_TYPE_ARB, GL_TEXTURE_ALPHA_TYPE_ARB,
                 GL_TEXTURE_LUMINANCE_TYPE_ARB, GL_TEXTURE_INTENSITY_TYPE_ARB})
            if (get(component) == type)
                return true;
        return false;
    }

private:
    GLenum m_Target;
    int m_Level;
};

constexpr int NUM_FACES = 6;
const std::vector<std::string> NAMES_OF_FACES{"+x", "-x", "+y", "-y", "+z", "-z"};

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
    if (read.areOfType(GL_INT))
        return texelsOf<std::int32_t>(target, level, GL_INT);
    if (read.areOfType(GL_UNSIGNED_INT))
        return texelsOf<std::uint32_t>(target, level, GL_UNSIGNED_INT);
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
    const bool isOfCubes = target == GL_TEXTURE_CUBE_MAP || target == GL_TEXTURE_CUBE_MAP_ARRAY;
    glGetIntegerv(target == GL_TEXTURE_3D ? GL_MAX_3D_TEXTURE_SIZE
                  : isOfCubes             ? GL_MAX_CUBE_MAP_TEXTURE_SIZE
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
            refuseReading(name, "there is no " + ofLevel + " and " + ofLayer);
        else if (layer >= numLayers(level))
            refuseReading(name, ofLevel + " of the texture has no " + ofLayer);
        else if (!Level(targetOf(layer), level).areColoursOrDepths())
            refuseReading(name, ofLevel + " of the texture has neither colours nor depths");
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

bool canRead(std::string_view name, const GLTexture& texture)
{
    if (!canReadHere(name))
        return false;
    if (bindingOf(texture.getTextureTarget()) != 0)
        return true;
    refuseReading(name, "textures of its target have no texels that can be read");
    return false;
}

} // namespace

Image image(std::string_view name, const GLTexture& texture, int level, int layer, const Statement&)
{
    if (canRead(name, texture))
        runGuarded([&] { sendTexture(name, texture, level, layer); });
    return image(name);
}

Image imageStackOfLevels(std::string_view name, const GLTexture& texture, int layer, const Statement&)
{
    if (canRead(name, texture))
        runGuarded([&] { sendLevels(name, texture, layer); });
    return image(name);
}

Image imageStackOfLayers(std::string_view name, const GLTexture& texture, int level, const Statement&)
{
    if (canRead(name, texture))
        runGuarded([&] { sendLayers(name, texture, level); });
    return image(name);
}

Image image(std::string_view name, const GLRenderTextureFBO& target, const Statement&)
{
    if (const GLTexture* const texture = target.getTexture())
        return image(name, *texture);
    refuseReading(name, "there is no texture yet");
    return image(name);
}

Image image(std::string_view name, const GLImage& picture, const Statement&)
{
    if (const GLRenderTextureFBO* const target = picture.getRenderTexture())
        return image(name, *target);
    refuseReading(name, "there is no texture yet");
    return image(name);
}

} // namespace tavo
