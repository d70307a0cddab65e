#include "vireo/textures/GLTexture3D.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tavo/base/math/checkedAt.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/classNeeds.h"
#include "vireo/context/nameAccounts.h"
#include "vireo/textures/GLTextureSettings.h"
#include "vireo/textures/textureFormats.h"
#include "vireo/textures/textureParameters.h"
#include "vireo/textures/textureSize.h"

namespace tavo {

namespace {

// Texels side by side, slice after slice. Behind them there are zeroes for what GL skips where its unpack alignment,
// which is 8 at most, does not divide the size.
std::vector<unsigned char> makeRamp(unsigned int size)
{
    constexpr std::size_t maxPadding = 7;
    std::vector<unsigned char> texels((size + maxPadding) * size * size);
    std::size_t i = 0;
    for (unsigned int z = 0; z < size; ++z)
        for (unsigned int y = 0; y < size; ++y)
            for (unsigned int x = 0; x < size; ++x)
                checkedAt(texels, i++) = static_cast<unsigned char>(x + y + z);
    return texels;
}

} // namespace

GLTexture3D::GLTexture3D(GLContext* context)
    : GLTexture(context)
{
    static const bool isReported = reportMissing("GLTexture3D");
    static_cast<void>(isReported);
    m_TextureTarget = GL_TEXTURE_3D;
}

void GLTexture3D::createFromMemory(unsigned int width, unsigned int height, unsigned int depth, unsigned int components,
    char* data, bool mipmap, unsigned int type)
{
    setDimensions(width, height, depth, components, mipmap);
    format = formatOfComponents(components, format);
    bind(0);
    setFilterAndWrapEverywhere(m_TextureTarget, GL_LINEAR, GL_CLAMP);
    if (!mipmap)
        upload(format, type, data);
}

void GLTexture3D::createFloatTexture(
    unsigned int width, unsigned int height, unsigned int depth, unsigned int components, const float* data, bool half)
{
    beginFloatTexture(width, height, depth, components, half, false);
    upload(formatOfComponents(components, GL_RGBA), GL_FLOAT, data);
}

void GLTexture3D::createFloatTextureFromMemory(unsigned int width, unsigned int height, unsigned int depth,
    unsigned int components, char* data, bool half, bool mipmap)
{
    // What is thrown is deliberately a plain char*.
    static char notImplemented[] = "Not implemented yet! (Will be done only if it's really necessary)";

    beginFloatTexture(width, height, depth, components, half, mipmap);
    // Textures do not mind that their context is gone.
    if (GLContext* const context = getContext())
        context->debug("before teximage3d");
    if (mipmap)
        throw static_cast<char*>(notImplemented);
    upload(format, GL_FLOAT, data); // deliberately no client format
}

void GLTexture3D::createPerlinNoise(unsigned int size, unsigned int, float)
{
    setDimensions(size, size, size, 1, false);
    format = GL_LUMINANCE;
    bind(0);
    GLTextureSettings::setDefaults(m_TextureTarget, false);
    const std::vector<unsigned char> texels = makeRamp(size);
    upload(GL_LUMINANCE, GL_UNSIGNED_BYTE, &checkedAt(texels, 0));
}

void GLTexture3D::setDimensions(
    unsigned int width, unsigned int height, unsigned int depth, unsigned int components, bool mipmapped)
{
    this->width = width;
    this->height = height;
    this->depth = depth;
    numComponents = components;
    texelComponents = components;
    this->mipmapped = mipmapped;
    m_SizeInBytes = mipmapped ? sizeOfMipmaps(width, height, depth, texelComponents)
                              : sizeOfLevel(width, height, depth, texelComponents);
    noteBytes(NameKind::TEXTURE, m_TextureID, *this, m_SizeInBytes);
}

// All of a float texture but its upload.
void GLTexture3D::beginFloatTexture(
    unsigned int width, unsigned int height, unsigned int depth, unsigned int components, bool half, bool mipmapped)
{
    setDimensions(width, height, depth, components, mipmapped);
    noteBytes(NameKind::TEXTURE, m_TextureID, *this, std::uint64_t{m_SizeInBytes} * (half ? 2 : 4));
    format = arbFloatFormatOfComponents(components, half, format);
    bind(0);
    GLTextureSettings::setFloatDefaults(m_TextureTarget);
}

void GLTexture3D::upload(unsigned int clientFormat, unsigned int type, const void* data)
{
    glTexImage3DEXT(m_TextureTarget, 0, format, static_cast<GLsizei>(width), static_cast<GLsizei>(height),
        static_cast<GLsizei>(depth), 0, clientFormat, type, data);
}

} // namespace tavo
