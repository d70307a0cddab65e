#pragma once

#include <array>
#include <cstddef>
#include <gmock/gmock.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/CallRecorder.h"
#include "tests/support/Picture.h"
#include "tests/vireo/ContextTest.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {

using Bytes = std::vector<unsigned char>;

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

// What tests of textures draw and read.
class TextureTest : public ContextTest
{
protected:
    // Texture coordinates of the corners of a rectangle: lower left, lower right, upper right, upper left.
    using Corners = std::array<std::array<float, 3>, 4>;

    // A root of its own for the main context, current, but in a tree that is not active.
    std::unique_ptr<GLContext> makeContext() { return std::make_unique<GLContext>(getDC(), getRC(), nullptr, nullptr); }

    static GLint getInteger(GLenum name)
    {
        GLint value = 0;
        glGetIntegerv(name, &value);
        return value;
    }

    // Of a level of the texture that is bound to the target, or to the target of the cube's face.
    static GLint getLevelParameter(GLenum target, GLenum name, GLint level = 0)
    {
        GLint value = 0;
        glGetTexLevelParameteriv(target, level, name, &value);
        return value;
    }

    static GLenum getParameter(GLenum target, GLenum name)
    {
        GLint value = 0;
        glGetTexParameteriv(target, name, &value);
        return static_cast<GLenum>(value);
    }

    // The texels of the first level of the bound texture, rows without padding.
    static Bytes readTexels(GLenum target, GLenum format, std::size_t sizeInBytes)
    {
        Bytes texels(sizeInBytes);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glGetTexImage(target, 0, format, GL_UNSIGNED_BYTE, texels.data());
        return texels;
    }

    static Corners plane(float maxS, float maxT, float r = 0)
    {
        return {{{0, 0, r}, {maxS, 0, r}, {maxS, maxT, r}, {0, maxT, r}}};
    }

    // Fills width x height pixels with the texture that is bound to the target; the fragments' own colour, of which
    // textures without an alpha component keep the alpha, is FRAGMENT.
    static void fill(GLenum target, unsigned int width, unsigned int height, const Corners& corners)
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

    Picture draw(GLenum target, unsigned int width, unsigned int height, const Corners& corners)
    {
        fill(target, width, height, corners);
        return readPixels(width, height);
    }

    // What a texel of 1 to 4 components means.
    static Pixel colourOf(const unsigned char* texel, unsigned int components)
    {
        switch (components) {
        case 1: return {texel[0], texel[0], texel[0], FRAGMENT[3]};
        case 2: return {texel[0], texel[0], texel[0], texel[1]};
        case 3: return {texel[0], texel[1], texel[2], FRAGMENT[3]};
        default: return {texel[0], texel[1], texel[2], texel[3]};
        }
    }

    // The picture of texels that lie side by side.
    static Picture pictureOf(
        const unsigned char* texels, unsigned int width, unsigned int height, unsigned int components)
    {
        Picture picture(width, height);
        for (Pixel& pixel : picture.pixels) {
            pixel = colourOf(texels, components);
            texels += components;
        }
        return picture;
    }

    // Whether the driver has float formats for rectangle textures, and whether those are NVIDIA's.
    static bool hasFloatFormats() { return lists("GL_ARB_texture_float") || hasNvFloatFormats(); }
    static bool hasNvFloatFormats() { return lists("GL_NV_float_buffer"); }

    // The formats that float rectangles then have.
    static const FloatFormats& rectFloatFormats() { return hasNvFloatFormats() ? NV_FLOAT_FORMATS : ARB_FLOAT_FORMATS; }

    static const FloatFormat& rectFloatFormat(unsigned int components, bool half)
    {
        return rectFloatFormats().at(half ? components - 1 : components + 3);
    }

    // Fails unless the float upload before went as the driver's formats allow.
    void expectUploadAsDriverAllows()
    {
        if (hasFloatFormats())
            EXPECT_THAT(drainErrors(), testing::IsEmpty());
        else
            EXPECT_THAT(drainErrors(), testing::ElementsAre(testing::AnyOf(GL_INVALID_ENUM, GL_INVALID_VALUE)));
    }

    static constexpr Pixel FRAGMENT{10, 20, 30, 40};

private:
    static bool lists(const char* extension)
    {
        const CallRecorder::Pause ownCalls;
        const auto* const extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
        return std::string(extensions).find(extension) != std::string::npos;
    }
};

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

// Data of a few texels, named "data" in recorded calls.
inline char DATA[64] = {};

template <typename Operation>
Calls callsWithData(Operation operation)
{
    CallRecorder recorder;
    recorder.namePointer(DATA, "data");
    operation();
    return recorder.calls();
}

// What textures are told about their sampling: filters, and what lies beyond their edges.
inline const Calls REPEATING{"GL_TEXTURE_MAG_FILTER, GL_LINEAR", "GL_TEXTURE_MIN_FILTER, GL_LINEAR",
    "GL_TEXTURE_WRAP_S, GL_REPEAT", "GL_TEXTURE_WRAP_T, GL_REPEAT"};
inline const Calls NEAREST{"GL_TEXTURE_MAG_FILTER, GL_NEAREST", "GL_TEXTURE_MIN_FILTER, GL_NEAREST",
    "GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE", "GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE",
    "GL_TEXTURE_WRAP_R, GL_CLAMP_TO_EDGE"};

// The calls that select unit 0, bind the texture and write its parameters, and those that follow.
inline Calls callsAfterBinding(
    const GLTexture& texture, const std::string& target, const Calls& parameters, const Calls& others = {})
{
    Calls calls{"glActiveTextureARB(GL_TEXTURE0)",
        "glBindTexture(" + target + ", " + std::to_string(texture.getTextureID()) + ")"};
    for (const std::string& parameter : parameters)
        calls.push_back("glTexParameteri(" + target + ", " + parameter + ")");
    calls.insert(calls.end(), others.begin(), others.end());
    return calls;
}

// The call of glTexImage2D or glTexImage3DEXT for the first level; the size is such as "4, 3".
inline std::string texImageCall(const std::string& function, const std::string& target,
    const std::string& internalFormat, const std::string& size, const std::string& clientFormat,
    const std::string& typeAndData)
{
    return function + "(" + target + ", 0, " + internalFormat + ", " + size + ", 0, " + clientFormat + ", " +
           typeAndData + ")";
}

// The text of the std::out_of_range that the operation throws.
template <typename Operation>
std::string textOutOfRange(Operation operation)
{
    try {
        operation();
    } catch (const std::out_of_range& error) {
        return error.what();
    }
    return "nothing was thrown";
}

} // namespace tavo
