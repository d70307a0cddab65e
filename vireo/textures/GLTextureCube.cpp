#include "vireo/textures/GLTextureCube.h"

#include <array>
#include <cstddef>
#include <vector>

#include "vireo/context/GLExtensions.h"
#include "vireo/context/classNeeds.h"
#include "vireo/context/nameAccounts.h"
#include "vireo/textures/GLTextureSettings.h"
#include "vireo/textures/textureFormats.h"

namespace tavo {

namespace {

struct CubeFace
{
    unsigned int target;
    RGBACubeMap::Face image;
};

// In the order in which faces are uploaded, which is not that of the cube map.
constexpr std::array<CubeFace, RGBACubeMap::NUM_FACES> FACES{{
    {GL_TEXTURE_CUBE_MAP_POSITIVE_X, RGBACubeMap::POSITIVE_X},
    {GL_TEXTURE_CUBE_MAP_POSITIVE_Y, RGBACubeMap::POSITIVE_Y},
    {GL_TEXTURE_CUBE_MAP_POSITIVE_Z, RGBACubeMap::POSITIVE_Z},
    {GL_TEXTURE_CUBE_MAP_NEGATIVE_X, RGBACubeMap::NEGATIVE_X},
    {GL_TEXTURE_CUBE_MAP_NEGATIVE_Y, RGBACubeMap::NEGATIVE_Y},
    {GL_TEXTURE_CUBE_MAP_NEGATIVE_Z, RGBACubeMap::NEGATIVE_Z},
}};

bool isTooLarge(unsigned int size)
{
    GLint largest = 0;
    glGetIntegerv(GL_MAX_CUBE_MAP_TEXTURE_SIZE, &largest);
    return size > static_cast<unsigned int>(largest);
}

// What is uploaded of a face: the image's pixels, null if it has none. Too few of them are copied, with zeros behind,
// but not for a size that the driver refuses: there may be no memory for so many.
const void* facePixels(const RGBAImage& image, unsigned int size, std::vector<RGBAImage::Pixel>& copy)
{
    const std::size_t count = static_cast<std::size_t>(size) * size;
    const std::vector<RGBAImage::Pixel>& pixels = image.getPixels();
    if (pixels.size() >= count && !pixels.empty())
        return pixels.data();
    if (pixels.empty() || isTooLarge(size))
        return nullptr;
    copy = pixels;
    copy.resize(count);
    return copy.data();
}

} // namespace

GLTextureCube::GLTextureCube(GLContext* context)
    : GLTexture(context)
{
    static const bool isReported = reportMissing("GLTextureCube");
    static_cast<void>(isReported);
    m_TextureTarget = GL_TEXTURE_CUBE_MAP;
}

void GLTextureCube::create(unsigned int size, unsigned int components)
{
    this->size = size;
    numComponents = components;
    format = formatOfComponents(components, GL_RGBA);
    bindWithDefaults();
    for (const CubeFace& face : FACES)
        uploadFace(face.target, format, nullptr);
    calcSize();
}

void GLTextureCube::createFromImage(RGBACubeMap& cubeMap)
{
    numComponents = 4;
    format = GL_RGBA;
    size = cubeMap.getImage(RGBACubeMap::POSITIVE_X).getWidth();
    bindWithDefaults();
    std::vector<RGBAImage::Pixel> copy;
    for (const CubeFace& face : FACES)
        uploadFace(face.target, format, facePixels(cubeMap.getImage(face.image), size, copy));
    calcSize();
}

void GLTextureCube::setPositiveX(char* data, bool bgra)
{
    replaceFace(GL_TEXTURE_CUBE_MAP_POSITIVE_X, data, bgra);
}

void GLTextureCube::setNegativeX(char* data, bool bgra)
{
    replaceFace(GL_TEXTURE_CUBE_MAP_NEGATIVE_X, data, bgra);
}

void GLTextureCube::setPositiveY(char* data, bool bgra)
{
    replaceFace(GL_TEXTURE_CUBE_MAP_POSITIVE_Y, data, bgra);
}

void GLTextureCube::setNegativeY(char* data, bool bgra)
{
    replaceFace(GL_TEXTURE_CUBE_MAP_NEGATIVE_Y, data, bgra);
}

void GLTextureCube::setPositiveZ(char* data, bool bgra)
{
    replaceFace(GL_TEXTURE_CUBE_MAP_POSITIVE_Z, data, bgra);
}

void GLTextureCube::setNegativeZ(char* data, bool bgra)
{
    replaceFace(GL_TEXTURE_CUBE_MAP_NEGATIVE_Z, data, bgra);
}

void GLTextureCube::calcSize()
{
    m_SizeInBytes = numComponents * size * size * RGBACubeMap::NUM_FACES;
    noteBytes(NameKind::TEXTURE, m_TextureID, *this, m_SizeInBytes);
}

void GLTextureCube::bindWithDefaults()
{
    bind(0);
    GLTextureSettings::setCubeDefaults();
}

void GLTextureCube::uploadFace(unsigned int face, unsigned int clientFormat, const void* data)
{
    const auto edge = static_cast<GLsizei>(size);
    glTexImage2D(face, 0, static_cast<GLint>(format), edge, edge, 0, clientFormat, GL_UNSIGNED_BYTE, data);
}

void GLTextureCube::replaceFace(unsigned int face, const void* data, bool bgra)
{
    uploadFace(face, bgra ? GL_BGRA : format, data);
}

} // namespace tavo
