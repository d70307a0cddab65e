#pragma once

#include "tavo/base/images/TemplatedImage.h"
#include "vireo/context/GLExtensions.h"

namespace tavo {

// GL's name of an image's components.
template <typename Component>
constexpr unsigned int COMPONENT_TYPE = 0;
template <>
inline constexpr unsigned int COMPONENT_TYPE<unsigned char> = GL_UNSIGNED_BYTE;
template <>
inline constexpr unsigned int COMPONENT_TYPE<float> = GL_FLOAT;

// Fills an image, which has the size of the texture that is bound to the target on the active unit, with its texels.
template <typename Component>
void readTexels(unsigned int target, TemplatedImage<Component>& image)
{
    glGetTexImage(target, 0, GL_RGBA, COMPONENT_TYPE<Component>, image.getPixels().data());
}

// Replaces the texels of such a texture by an image's pixels.
template <typename Component>
void writeTexels(unsigned int target, const TemplatedImage<Component>& image)
{
    glTexSubImage2D(target, 0, 0, 0, static_cast<GLsizei>(image.getWidth()), static_cast<GLsizei>(image.getHeight()),
        GL_RGBA, COMPONENT_TYPE<Component>, image.getPixels().data());
}

} // namespace tavo
