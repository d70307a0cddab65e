#include "vireo/textures/GLTexture2D.h"

#include <array>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "vireo/context/GLExtensions.h"
#include "vireo/context/classNeeds.h"
#include "vireo/context/nameAccounts.h"
#include "vireo/textures/GLTextureSettings.h"
#include "vireo/textures/imagePixels.h"
#include "vireo/textures/textureFormats.h"
#include "vireo/textures/textureSize.h"

#include <GL/glu.h>

namespace tavo {

namespace {

using Words = std::unique_ptr<std::uint32_t[]>;

// The pixels with their first and third bytes exchanged. Words, and shifts instead of a rotation, are what GCC makes
// vector instructions of.
Words exchangeRedAndBlue(std::span<const RGBAImage::Pixel> pixels)
{
    constexpr auto redAndBlue = std::bit_cast<std::uint32_t>(std::array<unsigned char, 4>{0xFF, 0, 0xFF, 0});
    Words words = std::make_unique_for_overwrite<std::uint32_t[]>(pixels.size());
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        std::uint32_t word = 0;
        std::memcpy(&word, &pixels[i], sizeof word);
        const std::uint32_t exchanged = word & redAndBlue;
        words[i] = (word & ~redAndBlue) | exchanged << 16 | exchanged >> 16;
    }
    return words;
}

} // namespace

GLTexture2D::GLTexture2D(GLContext* context)
    : GLTexture(context)
{
    static const bool isReported = reportMissing("GLTexture2D");
    static_cast<void>(isReported);
    m_TextureTarget = GL_TEXTURE_2D;
}

void GLTexture2D::createFromMemory(
    unsigned int width, unsigned int height, unsigned int components, char* data, bool mipmap)
{
    assert((data || !mipmap) && "mipmaps are made of data");
    m_NumComponents = components;
    format = formatOfComponents(components, format);
    bind(0);
    GLTextureSettings::setDefaults(m_TextureTarget, mipmap);
    setDimensions(width, height, components, mipmap);
    upload(data);
}

void GLTexture2D::createFromRGBA(const RGBAImage& image, bool mipmap)
{
    upload(beginImage(image, mipmap).data());
}

void GLTexture2D::createFromImage(RGBAImage& image, bool mipmap)
{
    upload(exchangeRedAndBlue(beginImage(image, mipmap)).get());
}

std::span<const RGBAImage::Pixel> GLTexture2D::beginImage(const RGBAImage& image, bool mipmap)
{
    m_NumComponents = 4;
    format = GL_RGBA;
    m_Mipmapped = mipmap;
    bind(0);
    GLTextureSettings::setDefaults(m_TextureTarget, mipmap);
    setDimensions(image.getWidth(), image.getHeight(), 4, mipmap);
    const std::size_t count = static_cast<std::size_t>(width) * height;
    return {firstPixels(image, count), count};
}

void GLTexture2D::setDimensions(unsigned int width, unsigned int height, unsigned int components, bool mipmapped)
{
    this->width = width;
    this->height = height;
    numComponents = components;
    this->mipmapped = mipmapped;
    calcSize();
}

void GLTexture2D::calcSize()
{
    m_SizeInBytes =
        mipmapped ? sizeOfMipmaps(width, height, 1, numComponents) : sizeOfLevel(width, height, 1, numComponents);
    noteBytes(NameKind::TEXTURE, m_TextureID, *this, m_SizeInBytes);
}

void GLTexture2D::upload(const void* data)
{
    const auto internalFormat = static_cast<GLint>(format);
    const auto w = static_cast<GLsizei>(width);
    const auto h = static_cast<GLsizei>(height);
    if (mipmapped)
        gluBuild2DMipmaps(GL_TEXTURE_2D, internalFormat, w, h, format, GL_UNSIGNED_BYTE, data);
    else
        glTexImage2D(GL_TEXTURE_2D, 0, internalFormat, w, h, 0, format, GL_UNSIGNED_BYTE, data);
}

} // namespace tavo
