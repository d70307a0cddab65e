#pragma once

#include <array>
#include <gmock/gmock.h>

#include "tests/support/GLTest.h"
#include "tests/support/extensions.h"

#include <GL/gl.h>

namespace tavo {

// The formats of a texture of floats.
struct FloatFormat
{
    unsigned int components;
    bool half;
    const char* internalFormat;
    unsigned int internalValue;
    const char* clientFormat;
};

// For 1 to 4 components of 16 bits, and then of 32.
using FloatFormats = std::array<FloatFormat, 8>;

inline constexpr FloatFormats ARB_FLOAT_FORMATS{{
    {1, true, "GL_LUMINANCE16F_ARB", 0x881E, "GL_LUMINANCE"},
    {2, true, "GL_LUMINANCE_ALPHA16F_ARB", 0x881F, "GL_LUMINANCE_ALPHA"},
    {3, true, "GL_RGB16F_ARB", 0x881B, "GL_RGB"},
    {4, true, "GL_RGBA16F_ARB", 0x881A, "GL_RGBA"},
    {1, false, "GL_LUMINANCE32F_ARB", 0x8818, "GL_LUMINANCE"},
    {2, false, "GL_LUMINANCE_ALPHA32F_ARB", 0x8819, "GL_LUMINANCE_ALPHA"},
    {3, false, "GL_RGB32F_ARB", 0x8815, "GL_RGB"},
    {4, false, "GL_RGBA32F_ARB", 0x8814, "GL_RGBA"},
}};

inline constexpr FloatFormats NV_FLOAT_FORMATS{{
    {1, true, "GL_FLOAT_R16_NV", 0x8884, "GL_LUMINANCE"},
    {2, true, "GL_FLOAT_RG16_NV", 0x8886, "GL_LUMINANCE_ALPHA"},
    {3, true, "GL_FLOAT_RGB16_NV", 0x8888, "GL_RGB"},
    {4, true, "GL_FLOAT_RGBA16_NV", 0x888A, "GL_RGBA"},
    {1, false, "GL_FLOAT_R32_NV", 0x8885, "GL_LUMINANCE"},
    {2, false, "GL_FLOAT_RG32_NV", 0x8887, "GL_LUMINANCE_ALPHA"},
    {3, false, "GL_FLOAT_RGB32_NV", 0x8889, "GL_RGB"},
    {4, false, "GL_FLOAT_RGBA32_NV", 0x888B, "GL_RGBA"},
}};

// Whether the driver has NVIDIA's float formats for rectangle textures, and whether it has any.
inline bool hasNvFloatFormats()
{
    return hasExtension("GL_NV_float_buffer");
}

inline bool hasFloatFormats()
{
    return hasExtension("GL_ARB_texture_float") || hasNvFloatFormats();
}

// The formats that float rectangles then have.
inline const FloatFormats& rectFloatFormats()
{
    return hasNvFloatFormats() ? NV_FLOAT_FORMATS : ARB_FLOAT_FORMATS;
}

inline const FloatFormat& rectFloatFormat(unsigned int components, bool half)
{
    return rectFloatFormats().at(half ? components - 1 : components + 3);
}

// Fails unless the float upload before went as the driver's formats allow.
inline void expectUploadAsDriverAllows()
{
    if (hasFloatFormats())
        EXPECT_THAT(drainErrors(), testing::IsEmpty());
    else
        EXPECT_THAT(drainErrors(), testing::ElementsAre(testing::AnyOf(GL_INVALID_ENUM, GL_INVALID_VALUE)));
}

} // namespace tavo
