#include "vireo/textures/GLTextureCube.h"

#include <cstddef>

#include "vireo/context/GLExtensions.h"
#include "vireo/textures/GLTextureSettings.h"
#include "vireo/textures/imagePixels.h"
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

// Null for faces without texels.
const void* facePixels(const RGBAImage& image, unsigned int size)
{
    return size == 0 ? nullptr : firstPixels(image, static_cast<std::size_t>(size) * size);
}

} // namespace

GLTextureCube::GLTextureCube(GLContext* context)
    : GLTexture(context)
{
    m_TextureTarget = GL_TEXTURE_CUBE_MAP;
}

void GLTextureCube::create(unsigned int size, unsigned int components)
{
    this->size = size;
    numComponents = components;
    format = formatOfComponents(components, GL_RGBA);
    bindWithDefaults();
    uploadFaces({});
    calcSize();
}

void GLTextureCube::createFromImage(RGBACubeMap& cubeMap)
{
    numComponents = 4;
    format = GL_RGBA;
    size = cubeMap.getImage(RGBACubeMap::POSITIVE_X).getWidth();
    bindWithDefaults();
    FaceData data{};
    for (std::size_t i = 0; i < FACES.size(); ++i)
        data[i] = facePixels(cubeMap.getImage(FACES[i].image), size);
    uploadFaces(data);
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
}

void GLTextureCube::bindWithDefaults()
{
    bind(0);
    GLTextureSettings::setCubeDefaults();
}

void GLTextureCube::uploadFaces(const FaceData& data)
{
    for (std::size_t i = 0; i < FACES.size(); ++i)
        uploadFace(FACES[i].target, format, data[i]);
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
