#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "tests/support/GLTest.h"
#include "tests/support/Picture.h"
#include "vireo/context/GLExtensions.h"

namespace tavo {

using Bytes = std::vector<unsigned char>;

// Texture coordinates of the corners of a rectangle: lower left, lower right, upper right, upper left.
using Corners = std::array<std::array<float, 3>, 4>;

// The colour of fragments before they are textured.
inline constexpr Pixel FRAGMENT{10, 20, 30, 40};

// Bytes that differ from their neighbours near and far.
inline Bytes makeBytes(std::size_t size)
{
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>(37 * i + 11);
    return bytes;
}

inline char* asChars(Bytes& bytes)
{
    return reinterpret_cast<char*>(bytes.data());
}

inline GLint getInteger(GLenum name)
{
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

// Of a level of the texture that is bound to the target, or to the target of the cube's face.
inline GLint getLevelParameter(GLenum target, GLenum name, GLint level = 0)
{
    GLint value = 0;
    glGetTexLevelParameteriv(target, level, name, &value);
    return value;
}

inline GLenum getParameter(GLenum target, GLenum name)
{
    GLint value = 0;
    glGetTexParameteriv(target, name, &value);
    return static_cast<GLenum>(value);
}

// The texels of the first level of the bound texture, rows without padding.
inline Bytes readTexels(GLenum target, GLenum format, std::size_t sizeInBytes)
{
    Bytes texels(sizeInBytes);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(target, 0, format, GL_UNSIGNED_BYTE, texels.data());
    return texels;
}

inline Corners plane(float maxS, float maxT, float r = 0)
{
    return {{{0, 0, r}, {maxS, 0, r}, {maxS, maxT, r}, {0, maxT, r}}};
}

// Fills width x height pixels with the texture that is bound to the target; the fragments are of the colour FRAGMENT,
// of which textures without an alpha component keep the alpha.
inline void fill(GLenum target, unsigned int width, unsigned int height, const Corners& corners)
{
    constexpr std::array<std::array<float, 2>, 4> positions{{{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}};
    glViewport(0, 0, static_cast<GLsizei>(width), static_cast<GLsizei>(height));
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glColor4ubv(FRAGMENT.data());
    glEnable(target);
    glBegin(GL_QUADS);
    for (std::size_t i = 0; i < corners.size(); ++i) {
        glTexCoord3fv(corners[i].data());
        glVertex2fv(positions[i].data());
    }
    glEnd();
    glDisable(target);
}

inline Picture draw(GLenum target, unsigned int width, unsigned int height, const Corners& corners)
{
    fill(target, width, height, corners);
    return readPixels(width, height);
}

// What a texel of 1 to 4 components means.
inline Pixel colourOf(const unsigned char* texel, unsigned int components)
{
    switch (components) {
    case 1: return {texel[0], texel[0], texel[0], FRAGMENT[3]};
    case 2: return {texel[0], texel[0], texel[0], texel[1]};
    case 3: return {texel[0], texel[1], texel[2], FRAGMENT[3]};
    default: return {texel[0], texel[1], texel[2], texel[3]};
    }
}

// The picture of texels that lie side by side.
inline Picture pictureOf(const unsigned char* texels, unsigned int width, unsigned int height, unsigned int components)
{
    Picture picture(width, height);
    for (Pixel& pixel : picture.pixels) {
        pixel = colourOf(texels, components);
        texels += components;
    }
    return picture;
}

} // namespace tavo
