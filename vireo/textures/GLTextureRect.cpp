#include "vireo/textures/GLTextureRect.h"

#include <cstddef>
#include <cstdint>

#include "vireo/context/GLExtensions.h"
#include "vireo/context/classNeeds.h"
#include "vireo/context/nameAccounts.h"
#include "vireo/textures/GLTextureSettings.h"
#include "vireo/textures/imagePixels.h"
#include "vireo/textures/textureFormats.h"
#include "vireo/textures/textureSize.h"

namespace tavo {

GLTextureRect::GLTextureRect(GLContext* context)
    : GLTexture(context)
{
    static const bool isReported = reportMissing("GLTextureRect");
    static_cast<void>(isReported);
    m_TextureTarget = GL_TEXTURE_RECTANGLE_ARB;
}

void GLTextureRect::createFromMemory(unsigned int width, unsigned int height, unsigned int components, char* data)
{
    m_NumComponents = components;
    format = formatOfComponents(components, format);
    bindWithDefaults();
    setDimensions(width, height, components);
    upload(format, GL_UNSIGNED_BYTE, data);
}

void GLTextureRect::createFromImage(RGBAImage& image)
{
    m_NumComponents = 4;
    format = GL_RGBA;
    bindWithDefaults();
    setDimensions(image.getWidth(), image.getHeight(), 4);
    upload(format, GL_UNSIGNED_BYTE, firstPixels(image, static_cast<std::size_t>(width) * height));
}

void GLTextureRect::createFloatTextureFromMemory(
    unsigned int width, unsigned int height, unsigned int components, float* data, bool use32Bit)
{
    m_NumComponents = components;
    format = rectFloatFormatOfComponents(components, !use32Bit, format);
    bind(0);
    GLTextureSettings::setFloatDefaults(m_TextureTarget);
    setDimensions(width, height, components);
    noteBytes(NameKind::TEXTURE, m_TextureID, *this, std::uint64_t{m_SizeInBytes} * (use32Bit ? 4 : 2));
    upload(formatOfComponents(components, GL_RGBA), GL_FLOAT, data);
}

void GLTextureRect::setDimensions(unsigned int width, unsigned int height, unsigned int components)
{
    this->width = width;
    this->height = height;
    numComponents = components;
    calcSize();
}

void GLTextureRect::calcSize()
{
    m_SizeInBytes = sizeOfLevel(width, height, 1, numComponents);
    noteBytes(NameKind::TEXTURE, m_TextureID, *this, m_SizeInBytes);
}

void GLTextureRect::bindWithDefaults()
{
    bind(0);
    GLTextureSettings::setDefaults(m_TextureTarget, false);
}

void GLTextureRect::upload(unsigned int clientFormat, unsigned int type, const void* data)
{
    glTexImage2D(m_TextureTarget, 0, static_cast<GLint>(format), static_cast<GLsizei>(width),
        static_cast<GLsizei>(height), 0, clientFormat, type, data);
}

} // namespace tavo
