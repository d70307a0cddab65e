#include <array>
#include <cmath>
#include <cstddef>
#include <gmock/gmock.h>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "tavo/base/debug/DebugOutput.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/Picture.h"
#include "tests/support/extensions.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/Undestroyed.h"
#include "tests/vireo/textures/floatFormats.h"
#include "tests/vireo/textures/texels.h"
#include "tests/vireo/textures/textOutOfRange.h"
#include "tests/vireo/textures/textureCalls.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/textures/GLTexture.h"
#include "vireo/textures/GLTexture3D.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::FloatEq;
using testing::SizeIs;

using Floats = std::vector<float>;

// A texture with its protected parts in reach.
class OpenTexture3D : public GLTexture3D
{
public:
    using GLTexture3D::depth;
    using GLTexture3D::format;
    using GLTexture3D::GLTexture3D;
    using GLTexture3D::height;
    using GLTexture3D::m_Mipmapped;
    using GLTexture3D::m_NumComponents;
    using GLTexture3D::mipmapped;
    using GLTexture3D::numComponents;
    using GLTexture3D::texelComponents;
    using GLTexture3D::width;
};

const Calls CLAMPED{"GL_TEXTURE_MAG_FILTER, GL_LINEAR", "GL_TEXTURE_MIN_FILTER, GL_LINEAR",
    "GL_TEXTURE_WRAP_S, GL_CLAMP", "GL_TEXTURE_WRAP_T, GL_CLAMP", "GL_TEXTURE_WRAP_R, GL_CLAMP"};

constexpr const char* NOT_IMPLEMENTED = "Not implemented yet! (Will be done only if it's really necessary)";

Calls creationCalls(const GLTexture& texture, const Calls& parameters, const Calls& others = {})
{
    return callsAfterBinding(texture, "GL_TEXTURE_3D", parameters, others);
}

std::string uploadCall(const std::string& internalFormat, const std::string& size, const std::string& clientFormat,
    const char* typeAndData)
{
    return texImageCall("glTexImage3DEXT", "GL_TEXTURE_3D", internalFormat, size, clientFormat, typeAndData);
}

// The estimate of a texture with mipmaps, for which nothing is uploaded.
unsigned int sizeWithMipmaps(
    GLContext* context, unsigned int width, unsigned int height, unsigned int depth, unsigned int components)
{
    GLTexture3D texture(context);
    texture.createFromMemory(width, height, depth, components, nullptr, true, GL_UNSIGNED_BYTE);
    return texture.getSizeInBytes();
}

// Gives each field a value that the creation of another texture has to replace.
void makeMipmapped(OpenTexture3D& texture)
{
    texture.createFromMemory(9, 9, 9, 7, nullptr, true, GL_UNSIGNED_BYTE);
    texture.format = GL_ALPHA;
}

// Values that neither bytes nor the range from 0 to 1 could hold; half floats hold them exactly if `half`.
Floats makeFloats(std::size_t size, bool half)
{
    Floats values(size);
    for (std::size_t i = 0; i < size; ++i) {
        const auto position = static_cast<float>(i);
        values[i] = half ? position / 4 - 3 : std::ldexp(position / 3 - 2, 20);
    }
    return values;
}

// The middle of slice z as a texture coordinate.
float sliceCoordinate(unsigned int z, unsigned int depth)
{
    return (static_cast<float>(z) + 0.5f) / static_cast<float>(depth);
}

class GLTexture3DGLTest : public ContextTest
{
protected:
    Picture drawSlice(unsigned int z, unsigned int width, unsigned int height, unsigned int depth)
    {
        return draw(GL_TEXTURE_3D, width, height, plane(1, 1, sliceCoordinate(z, depth)));
    }

    // What drawing a slice leaves in a target of floats: red, green, blue and alpha of each texel.
    static Floats drawFloatSlice(unsigned int z, unsigned int width, unsigned int height, unsigned int depth)
    {
        GLuint target = 0;
        glGenTextures(1, &target);
        glBindTexture(GL_TEXTURE_2D, target);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA32F_ARB, static_cast<GLsizei>(width), static_cast<GLsizei>(height), 0,
            GL_RGBA, GL_FLOAT, nullptr);
        GLuint framebuffer = 0;
        glGenFramebuffersEXT(1, &framebuffer);
        glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer);
        glFramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT, GL_TEXTURE_2D, target, 0);
        EXPECT_EQ(glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT), static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE_EXT));

        fill(GL_TEXTURE_3D, width, height, plane(1, 1, sliceCoordinate(z, depth)));
        Floats values(static_cast<std::size_t>(width) * height * 4);
        glReadPixels(0, 0, static_cast<GLsizei>(width), static_cast<GLsizei>(height), GL_RGBA, GL_FLOAT, values.data());

        glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
        glDeleteFramebuffersEXT(1, &framebuffer);
        glDeleteTextures(1, &target);
        return values;
    }

    // What a texel of 1 to 4 floats means.
    static std::array<float, 4> floatColourOf(const float* texel, unsigned int components)
    {
        const float alpha = static_cast<float>(FRAGMENT[3]) / 255;
        switch (components) {
        case 1: return {texel[0], texel[0], texel[0], alpha};
        case 2: return {texel[0], texel[0], texel[0], texel[1]};
        case 3: return {texel[0], texel[1], texel[2], alpha};
        default: return {texel[0], texel[1], texel[2], texel[3]};
        }
    }

    // The ramp's texels side by side.
    static Bytes makeRamp(unsigned int size)
    {
        Bytes texels;
        for (unsigned int z = 0; z < size; ++z)
            for (unsigned int y = 0; y < size; ++y)
                for (unsigned int x = 0; x < size; ++x)
                    texels.push_back(static_cast<unsigned char>((x + y + z) % 256));
        return texels;
    }

    // What GL makes of those where it takes each row to start at a multiple of the alignment: texels from further on
    // in the ramp, and zeroes behind its end.
    static Bytes makeSkewedRamp(unsigned int size, unsigned int alignment)
    {
        const Bytes ramp = makeRamp(size);
        const std::size_t stride = (size + alignment - 1) / alignment * alignment;
        Bytes texels;
        for (std::size_t row = 0; row < size * size; ++row)
            for (std::size_t i = row * stride; i < row * stride + size; ++i)
                texels.push_back(i < ramp.size() ? ramp[i] : 0);
        return texels;
    }
};

TEST_F(GLTexture3DGLTest, StartsEmpty)
{
    std::unique_ptr<OpenTexture3D> texture;
    EXPECT_THAT(
        callsOf([&] { texture = std::make_unique<OpenTexture3D>(context()); }), ElementsAre("glGenTextures(1, ptr)"));
    EXPECT_EQ(texture->getTextureTarget(), 0x806Fu);
    EXPECT_EQ(texture->width, 0u);
    EXPECT_EQ(texture->height, 0u);
    EXPECT_EQ(texture->depth, 0u);
    EXPECT_EQ(texture->numComponents, 0u);
    EXPECT_EQ(texture->texelComponents, 0u);
    EXPECT_EQ(texture->format, 0u);
    EXPECT_FALSE(texture->mipmapped);
    EXPECT_EQ(texture->getSizeInBytes(), 0u);
    EXPECT_EQ(texture->getFormat(), 0u);
}

TEST_F(GLTexture3DGLTest, IsMadeFromMemory)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    Bytes texels = makeBytes(4 * 3 * 2 * 4);
    OpenTexture3D texture(context());
    makeMipmapped(texture);
    CallRecorder recorder;
    recorder.namePointer(texels.data(), "texels");
    texture.createFromMemory(4, 3, 2, 4, asChars(texels), false, GL_UNSIGNED_BYTE);
    expectCalls(recorder,
        creationCalls(texture, CLAMPED, {uploadCall("GL_RGBA", "4, 3, 2", "GL_RGBA", "GL_UNSIGNED_BYTE, texels")}));

    EXPECT_EQ(texture.width, 4u);
    EXPECT_EQ(texture.height, 3u);
    EXPECT_EQ(texture.depth, 2u);
    EXPECT_EQ(texture.numComponents, 4u);
    EXPECT_EQ(texture.texelComponents, 4u);
    EXPECT_FALSE(texture.mipmapped);
    EXPECT_EQ(texture.format, static_cast<unsigned int>(GL_RGBA));
    EXPECT_EQ(texture.getSizeInBytes(), 96u);
    EXPECT_EQ(texture.getFormat(), 0u) << "the base's format is not this texture's";
    EXPECT_EQ(texture.m_NumComponents, 0u);
    EXPECT_FALSE(texture.m_Mipmapped);
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_3D, GL_TEXTURE_WIDTH), 4);
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_3D, GL_TEXTURE_HEIGHT), 3);
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_3D, GL_TEXTURE_DEPTH), 2);
    EXPECT_EQ(readTexels(GL_TEXTURE_3D, GL_RGBA, texels.size()), texels);
}

TEST_F(GLTexture3DGLTest, StaysBoundOnUnitZero)
{
    const auto expectBoundAfter = [this](auto create) {
        GLTexture3D texture(context());
        GLTexture::setStage(3);
        create(texture);
        EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
        EXPECT_EQ(static_cast<unsigned int>(getInteger(GL_TEXTURE_BINDING_3D)), texture.getTextureID());
    };
    expectBoundAfter(
        [](GLTexture3D& texture) { texture.createFromMemory(1, 1, 1, 1, nullptr, false, GL_UNSIGNED_BYTE); });
    expectBoundAfter([](GLTexture3D& texture) { texture.createFloatTexture(1, 1, 1, 1, nullptr, false); });
    expectBoundAfter([](GLTexture3D& texture) { texture.createPerlinNoise(1, 0, 0); });
    expectBoundAfter(
        [](GLTexture3D& texture) { texture.createFloatTextureFromMemory(1, 1, 1, 1, nullptr, false, false); });
    drainErrors();
}

TEST_F(GLTexture3DGLTest, HasAFormatForEachNumberOfComponents)
{
    const std::vector<std::string> formats{"GL_LUMINANCE", "GL_LUMINANCE_ALPHA", "GL_RGB", "GL_RGBA"};
    for (unsigned int components = 1; components <= 4; ++components) {
        const std::string& format = formats[components - 1];
        GLTexture3D texture(context());
        EXPECT_EQ(callsWithData([&] { texture.createFromMemory(1, 1, 1, components, DATA, false, GL_UNSIGNED_BYTE); }),
            creationCalls(texture, CLAMPED, {uploadCall(format, "1, 1, 1", format, "GL_UNSIGNED_BYTE, data")}));
    }
}

TEST_F(GLTexture3DGLTest, HasNoFormatAtFirstForOtherNumbersOfComponents)
{
    for (const unsigned int components : {0u, 5u}) {
        GLTexture3D texture(context());
        EXPECT_EQ(callsWithData([&] { texture.createFromMemory(2, 1, 1, components, DATA, false, GL_UNSIGNED_BYTE); }),
            creationCalls(texture, CLAMPED, {uploadCall("GL_NONE", "2, 1, 1", "GL_NONE", "GL_UNSIGNED_BYTE, data")}));
        EXPECT_THAT(drainErrors(), SizeIs(1)) << "GL refuses that";
        EXPECT_EQ(texture.getSizeInBytes(), 2 * components);
    }
}

TEST_F(GLTexture3DGLTest, KeepsItsFormatForOtherNumbersOfComponents)
{
    GLTexture3D texture(context());
    texture.createFromMemory(1, 1, 1, 3, nullptr, false, GL_UNSIGNED_BYTE);
    EXPECT_EQ(callsOf([&] { texture.createFromMemory(1, 1, 1, 5, nullptr, false, GL_UNSIGNED_BYTE); }),
        creationCalls(texture, CLAMPED, {uploadCall("GL_RGB", "1, 1, 1", "GL_RGB", "GL_UNSIGNED_BYTE, null")}));
    EXPECT_EQ(texture.getSizeInBytes(), 5u);
}

TEST_F(GLTexture3DGLTest, TakesDataOfEveryType)
{
    const std::vector<unsigned short> texels{0x0000, 0x8080, 0xFFFF, 0x1111};
    GLTexture3D texture(context());
    std::vector<unsigned short> data = texels;
    EXPECT_EQ(callsOf([&] {
        texture.createFromMemory(2, 1, 2, 1, reinterpret_cast<char*>(data.data()), false, GL_UNSIGNED_SHORT);
    }),
        creationCalls(
            texture, CLAMPED, {uploadCall("GL_LUMINANCE", "2, 1, 2", "GL_LUMINANCE", "GL_UNSIGNED_SHORT, ptr")}));
    EXPECT_THAT(readTexels(GL_TEXTURE_3D, GL_LUMINANCE, 4), ElementsAre(0x00, 0x80, 0xFF, 0x11));
}

// Deliberate: mipmaps of 3D textures are not built.
TEST_F(GLTexture3DGLTest, UploadsNothingWithMipmaps)
{
    Bytes texels = makeBytes(8 * 8 * 8);
    OpenTexture3D texture(context());
    EXPECT_EQ(callsOf([&] { texture.createFromMemory(8, 8, 8, 1, asChars(texels), true, GL_UNSIGNED_BYTE); }),
        creationCalls(texture, CLAMPED));
    EXPECT_EQ(texture.getSizeInBytes(), 512u + 64 + 8);
    EXPECT_TRUE(texture.mipmapped);
    EXPECT_EQ(texture.format, static_cast<unsigned int>(GL_LUMINANCE));
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_3D, GL_TEXTURE_WIDTH), 0);
}

TEST_F(GLTexture3DGLTest, EstimatesItsSizeWithAllLevelsButTheLast)
{
    EXPECT_EQ(sizeWithMipmaps(context(), 16, 1, 1, 2), 60u);
    EXPECT_EQ(sizeWithMipmaps(context(), 1, 4, 2, 3), 24u + 6) << "1x4x2, 1x2x1";
    EXPECT_EQ(sizeWithMipmaps(context(), 5, 3, 7, 2), 210u + 12) << "5x3x7, 2x1x3, without 1x1x1";
    EXPECT_EQ(sizeWithMipmaps(context(), 1, 1, 1, 4), 0u);
    EXPECT_EQ(sizeWithMipmaps(context(), 0, 5, 5, 1), 0u);
}

TEST_F(GLTexture3DGLTest, EstimatesItsSizeInThirtyTwoBits)
{
    EXPECT_EQ(sizeWithMipmaps(context(), 2000, 2000, 2000, 3), 1658746191u);
    EXPECT_EQ(sizeWithMipmaps(context(), 2048, 2048, 1024, 1), 0u) << "no texels, modulo 2^32";

    GLTexture3D texture(context());
    texture.createFromMemory(40000, 40000, 1, 4, nullptr, false, GL_UNSIGNED_BYTE);
    EXPECT_EQ(texture.getSizeInBytes(), 2105032704u) << "6400000000 modulo 2^32";
    EXPECT_THAT(drainErrors(), SizeIs(1)) << "no driver makes that";
}

TEST_F(GLTexture3DGLTest, DrawsWhatEachNumberOfComponentsMeans)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    for (unsigned int components = 1; components <= 4; ++components) {
        Bytes texels = makeBytes(5 * 3 * 4 * components);
        GLTexture3D texture(context());
        texture.createFromMemory(5, 3, 4, components, asChars(texels), false, GL_UNSIGNED_BYTE);
        for (unsigned int z = 0; z < 4; ++z)
            EXPECT_EQ(drawSlice(z, 5, 3, 4), pictureOf(&texels[5 * 3 * components * z], 5, 3, components))
                << components << " components, slice " << z;
    }
}

TEST_F(GLTexture3DGLTest, FiltersBetweenSlices)
{
    Bytes texels{0, 200};
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    GLTexture3D texture(context());
    texture.createFromMemory(1, 1, 2, 1, asChars(texels), false, GL_UNSIGNED_BYTE);
    // Half a texel inside of GL_CLAMP's borders, whose colour is black.
    EXPECT_NEAR(draw(GL_TEXTURE_3D, 1, 1, plane(1, 1, 0.5f)).at(0, 0)[0], 100, 2);
}

// Deliberate: GL_CLAMP, with which half of what lies at a border is border colour, not GL_CLAMP_TO_EDGE.
TEST_F(GLTexture3DGLTest, MixesTheBorderIn)
{
    Bytes texel{200};
    GLTexture3D texture(context());
    texture.createFromMemory(1, 1, 1, 1, asChars(texel), false, GL_UNSIGNED_BYTE);
    EXPECT_NEAR(draw(GL_TEXTURE_3D, 1, 1, plane(1, 1, 0)).at(0, 0)[0], 100, 2);
    EXPECT_NEAR(draw(GL_TEXTURE_3D, 1, 1, plane(1, 1, 7)).at(0, 0)[0], 100, 2);
}

// Deliberate: the internal format is handed to GL as the client format too, and no driver takes it.
TEST_F(GLTexture3DGLTest, CreatesNothingFromFloatsInMemoryAsDriversRefuseTheFormat)
{
    Floats texels(2 * 3 * 4 * 4, 0.5f);
    for (const FloatFormat& format : ARB_FLOAT_FORMATS) {
        OpenTexture3D texture(context());
        makeMipmapped(texture);
        CallRecorder recorder;
        recorder.namePointer(texels.data(), "texels");
        texture.createFloatTextureFromMemory(
            2, 3, 4, format.components, reinterpret_cast<char*>(texels.data()), format.half, false);
        expectCalls(recorder, creationCalls(texture, NEAREST,
                                  {"glGetError()", uploadCall(format.internalFormat, "2, 3, 4", format.internalFormat,
                                                       "GL_FLOAT, texels")}));
        EXPECT_THAT(drainErrors(), ElementsAre(GL_INVALID_ENUM));
        EXPECT_EQ(getLevelParameter(GL_TEXTURE_3D, GL_TEXTURE_WIDTH), 0);
        EXPECT_EQ(texture.format, format.internalValue);
        EXPECT_EQ(texture.width, 2u);
        EXPECT_EQ(texture.height, 3u);
        EXPECT_EQ(texture.depth, 4u);
        EXPECT_EQ(texture.numComponents, format.components);
        EXPECT_EQ(texture.texelComponents, format.components);
        EXPECT_FALSE(texture.mipmapped);
        EXPECT_EQ(texture.getSizeInBytes(), 24 * format.components) << "floats, not bytes";
        EXPECT_FALSE(texture.isFloatTexture());
    }
}

TEST_F(GLTexture3DGLTest, ReportsTheErrorThatWasPendingBeforeFloats)
{
    GLTexture3D texture(context());
    glClear(~0u);
    const std::size_t before = debugOutput.getText().size();
    texture.createFloatTextureFromMemory(16, 16, 16, 4, nullptr, true, false);
    EXPECT_EQ(debugOutput.getText().substr(before), "before teximage3d errortype = invalid value\n");
    EXPECT_THAT(drainErrors(), ElementsAre(GL_INVALID_ENUM)) << "that of the upload is left";
}

TEST_F(GLTexture3DGLTest, ReportsNothingBeforeFloatsWithoutAnError)
{
    GLTexture3D texture(context());
    const std::string before = debugOutput.getText();
    texture.createFloatTextureFromMemory(1, 1, 1, 1, nullptr, true, false);
    EXPECT_EQ(debugOutput.getText(), before);
    drainErrors();
}

TEST_F(GLTexture3DGLTest, ThrowsATextForFloatsWithMipmaps)
{
    OpenTexture3D texture(context());
    CallRecorder recorder;
    try {
        texture.createFloatTextureFromMemory(8, 8, 8, 2, nullptr, true, true);
        ADD_FAILURE() << "nothing was thrown";
    } catch (char* text) { // which a const char* would pass by
        EXPECT_STREQ(text, NOT_IMPLEMENTED);
    }
    expectCalls(recorder, creationCalls(texture, NEAREST, {"glGetError()"}));
    EXPECT_TRUE(texture.mipmapped);
    EXPECT_EQ(texture.format, static_cast<unsigned int>(GL_LUMINANCE_ALPHA16F_ARB));
    EXPECT_EQ(texture.width, 8u);
    EXPECT_EQ(texture.numComponents, 2u);
    EXPECT_EQ(texture.getSizeInBytes(), 2u * (512 + 64 + 8));
}

TEST_F(GLTexture3DGLTest, ReportsThePendingErrorBeforeItThrows)
{
    GLTexture3D texture(context());
    glClear(~0u);
    const std::size_t before = debugOutput.getText().size();
    EXPECT_THROW(texture.createFloatTextureFromMemory(8, 8, 8, 2, nullptr, true, true), char*);
    EXPECT_EQ(debugOutput.getText().substr(before), "before teximage3d errortype = invalid value\n");
}

TEST_F(GLTexture3DGLTest, KeepsItsFormatForOtherNumbersOfFloats)
{
    NEEDS_EXTENSION("GL_ARB_texture_float");
    GLTexture3D texture(context());
    EXPECT_EQ(callsOf([&] { texture.createFloatTextureFromMemory(1, 1, 1, 5, nullptr, true, false); }),
        creationCalls(
            texture, NEAREST, {"glGetError()", uploadCall("GL_NONE", "1, 1, 1", "GL_NONE", "GL_FLOAT, null")}));
    EXPECT_THAT(drainErrors(), SizeIs(1)) << "GL refuses that";
    EXPECT_EQ(callsOf([&] { texture.createFloatTexture(1, 1, 1, 5, nullptr, true); }),
        creationCalls(texture, NEAREST, {uploadCall("GL_NONE", "1, 1, 1", "GL_RGBA", "GL_FLOAT, null")}));
    EXPECT_THAT(drainErrors(), SizeIs(1));

    texture.createFloatTexture(1, 1, 1, 2, nullptr, true);
    EXPECT_EQ(callsOf([&] { texture.createFloatTexture(1, 1, 1, 0, nullptr, false); }),
        creationCalls(
            texture, NEAREST, {uploadCall("GL_LUMINANCE_ALPHA16F_ARB", "1, 1, 1", "GL_RGBA", "GL_FLOAT, null")}));
    EXPECT_EQ(texture.getSizeInBytes(), 0u);
}

TEST_F(GLTexture3DGLTest, DoesNotNeedItsContextForFloats)
{
    auto dying = makeContext();
    GLTexture3D texture(dying.get());
    dying.reset();
    texture.createFloatTextureFromMemory(1, 1, 1, 1, nullptr, true, false);
    EXPECT_THAT(drainErrors(), ElementsAre(GL_INVALID_ENUM));
    const unsigned int name = texture.getTextureID();
    glDeleteTextures(1, &name);
}

TEST_F(GLTexture3DGLTest, IsMadeOfFloats)
{
    NEEDS_EXTENSION("GL_ARB_texture_float");
    const Floats texels(2 * 3 * 4 * 4, 0.5f);
    for (const FloatFormat& format : ARB_FLOAT_FORMATS) {
        OpenTexture3D texture(context());
        makeMipmapped(texture);
        CallRecorder recorder;
        recorder.namePointer(texels.data(), "texels");
        texture.createFloatTexture(2, 3, 4, format.components, texels.data(), format.half);
        expectCalls(
            recorder, creationCalls(texture, NEAREST,
                          {uploadCall(format.internalFormat, "2, 3, 4", format.clientFormat, "GL_FLOAT, texels")}));
        EXPECT_EQ(getLevelParameter(GL_TEXTURE_3D, GL_TEXTURE_DEPTH), 4);
        EXPECT_EQ(static_cast<unsigned int>(getLevelParameter(GL_TEXTURE_3D, GL_TEXTURE_INTERNAL_FORMAT)),
            format.internalValue);
        EXPECT_EQ(texture.format, format.internalValue);
        EXPECT_EQ(texture.width, 2u);
        EXPECT_EQ(texture.height, 3u);
        EXPECT_EQ(texture.depth, 4u);
        EXPECT_EQ(texture.numComponents, format.components);
        EXPECT_EQ(texture.texelComponents, format.components);
        EXPECT_FALSE(texture.mipmapped);
        EXPECT_EQ(texture.getSizeInBytes(), 24 * format.components);
        EXPECT_FALSE(texture.isFloatTexture()) << "the base's format is not this texture's";
    }
}

TEST_F(GLTexture3DGLTest, DrawsFloatsExactly)
{
    NEEDS_EXTENSION("GL_ARB_texture_float");
    for (const FloatFormat& format : ARB_FLOAT_FORMATS) {
        const Floats texels = makeFloats(3 * 2 * 4 * format.components, format.half);
        GLTexture3D texture(context());
        texture.createFloatTexture(3, 2, 4, format.components, texels.data(), format.half);
        const float* texel = texels.data();
        for (unsigned int z = 0; z < 4; ++z) {
            const Floats drawn = drawFloatSlice(z, 3, 2, 4);
            for (std::size_t i = 0; i < drawn.size(); i += 4, texel += format.components) {
                const std::array<float, 4> expected = floatColourOf(texel, format.components);
                EXPECT_THAT(std::vector<float>(&drawn[i], &drawn[i] + 4),
                    ElementsAre(FloatEq(expected[0]), FloatEq(expected[1]), FloatEq(expected[2]), FloatEq(expected[3])))
                    << format.internalFormat << ", slice " << z << ", texel " << i / 4;
            }
        }
    }
}

TEST_F(GLTexture3DGLTest, KeepsThePrecisionItIsAskedFor)
{
    NEEDS_EXTENSION("GL_ARB_texture_float");
    const float third = 1.0f / 3;
    const auto kept = [&](bool half) {
        GLTexture3D texture(context());
        texture.createFloatTexture(1, 1, 1, 1, &third, half);
        float value = 0;
        glGetTexImage(GL_TEXTURE_3D, 0, GL_LUMINANCE, GL_FLOAT, &value);
        return value;
    };
    EXPECT_EQ(kept(false), third);
    EXPECT_NE(kept(true), third);
    EXPECT_NEAR(kept(true), third, 0.0002);
}

TEST_F(GLTexture3DGLTest, IsFilledWithARamp)
{
    OpenTexture3D texture(context());
    makeMipmapped(texture);
    EXPECT_EQ(callsOf([&] { texture.createPerlinNoise(4, 8, 0.5f); }),
        creationCalls(
            texture, REPEATING, {uploadCall("GL_LUMINANCE", "4, 4, 4", "GL_LUMINANCE", "GL_UNSIGNED_BYTE, ptr")}));
    EXPECT_EQ(texture.width, 4u);
    EXPECT_EQ(texture.height, 4u);
    EXPECT_EQ(texture.depth, 4u);
    EXPECT_EQ(texture.numComponents, 1u);
    EXPECT_EQ(texture.texelComponents, 1u);
    EXPECT_FALSE(texture.mipmapped);
    EXPECT_EQ(texture.format, static_cast<unsigned int>(GL_LUMINANCE));
    EXPECT_EQ(texture.getSizeInBytes(), 64u);

    const Bytes texels = readTexels(GL_TEXTURE_3D, GL_LUMINANCE, 64);
    EXPECT_EQ(texels, makeRamp(4));
    EXPECT_EQ(texels.front(), 0);
    EXPECT_EQ(texels.back(), 9);
}

TEST_F(GLTexture3DGLTest, WrapsTheRampAround)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    GLTexture3D texture(context());
    texture.createPerlinNoise(100, 0, 0);
    const Bytes texels = readTexels(GL_TEXTURE_3D, GL_LUMINANCE, 1000000);
    EXPECT_EQ(texels.back(), 41) << "297 modulo 256";
    EXPECT_EQ(texels, makeRamp(100));
    EXPECT_EQ(texture.getSizeInBytes(), 1000000u);
}

TEST_F(GLTexture3DGLTest, MakesTheSameRampWhateverTheOtherArguments)
{
    constexpr unsigned int size = 8;
    std::vector<unsigned int> seconds{1000, 65536, 0x80000000, 0xFFFFFFFF};
    for (unsigned int second = 0; second <= 257; ++second)
        seconds.push_back(second);
    OpenTexture3D texture(context());
    for (const unsigned int second : seconds)
        for (const float third : {-1.0f, 0.0f, 0.5f, 1.0f, std::numeric_limits<float>::quiet_NaN()}) {
            SCOPED_TRACE(testing::Message() << second << ", " << third);
            EXPECT_EQ(callsOf([&] { texture.createPerlinNoise(size, second, third); }),
                creationCalls(texture, REPEATING,
                    {uploadCall("GL_LUMINANCE", "8, 8, 8", "GL_LUMINANCE", "GL_UNSIGNED_BYTE, ptr")}));
            EXPECT_EQ(readTexels(GL_TEXTURE_3D, GL_LUMINANCE, size * size * size), makeRamp(size));
            EXPECT_EQ(texture.getSizeInBytes(), size * size * size);
            EXPECT_EQ(texture.depth, size);
            EXPECT_EQ(texture.numComponents, 1u);
        }
}

TEST_F(GLTexture3DGLTest, DrawsTheRamp)
{
    GLTexture3D texture(context());
    texture.createPerlinNoise(16, 8, 0.5f);
    const Bytes texels = makeRamp(16);
    for (unsigned int z = 0; z < 16; ++z)
        EXPECT_EQ(drawSlice(z, 16, 16, 16), pictureOf(&texels[256 * z], 16, 16, 1)) << "slice " << z;
}

TEST_F(GLTexture3DGLTest, LeavesTheRampsWrapAlongRAsItWas)
{
    GLTexture3D texture(context());
    texture.createPerlinNoise(4, 8, 0.5f);
    EXPECT_EQ(getParameter(GL_TEXTURE_3D, GL_TEXTURE_WRAP_R), static_cast<GLenum>(GL_REPEAT));
    texture.createFromMemory(1, 1, 1, 1, nullptr, false, GL_UNSIGNED_BYTE);
    texture.createPerlinNoise(4, 8, 0.5f);
    EXPECT_EQ(getParameter(GL_TEXTURE_3D, GL_TEXTURE_WRAP_S), static_cast<GLenum>(GL_REPEAT));
    EXPECT_EQ(getParameter(GL_TEXTURE_3D, GL_TEXTURE_WRAP_R), static_cast<GLenum>(GL_CLAMP));
}

TEST_F(GLTexture3DGLTest, RefusesARampWithoutTexelsBeforeTheUpload)
{
    OpenTexture3D texture(context());
    CallRecorder recorder;
    EXPECT_EQ(textOutOfRange([&] { texture.createPerlinNoise(0, 8, 0.5f); }), "invalid vector<T> subscript");
    expectCalls(recorder, creationCalls(texture, REPEATING));
    EXPECT_EQ(texture.getSizeInBytes(), 0u);
    EXPECT_EQ(texture.numComponents, 1u);
}

TEST_F(GLTexture3DGLTest, TakesRampsOfAnySizeWithRowsThatAreNotPadded)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    GLTexture3D texture(context());
    for (const unsigned int size : {1u, 3u, 5u}) {
        texture.createPerlinNoise(size, 8, 0.5f);
        EXPECT_EQ(readTexels(GL_TEXTURE_3D, GL_LUMINANCE, size * size * size), makeRamp(size));
    }
}

// What follows the ramp in memory is not seen: GL finds zeroes where it reads on.
TEST_F(GLTexture3DGLTest, SkewsRampsWithRowsThatCountAsPadded)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    GLTexture3D texture(context());
    for (const unsigned int alignment : {2u, 4u, 8u}) {
        glPixelStorei(GL_UNPACK_ALIGNMENT, static_cast<GLint>(alignment));
        for (const unsigned int size : {1u, 3u, 9u, 17u}) {
            texture.createPerlinNoise(size, 8, 0.5f);
            EXPECT_EQ(readTexels(GL_TEXTURE_3D, GL_LUMINANCE, size * size * size), makeSkewedRamp(size, alignment))
                << "alignment " << alignment << ", size " << size;
        }
    }
}

TEST_F(GLTexture3DGLTest, IsCopiedFieldByField)
{
    auto inactive = makeContext();
    OpenTexture3D original(inactive.get());
    original.createFromMemory(2, 3, 5, 2, nullptr, true, GL_UNSIGNED_BYTE);
    original.texelComponents = 7;
    Undestroyed<OpenTexture3D> copy(original);
    Undestroyed<OpenTexture3D> assigned(inactive.get());
    *assigned = original;
    for (const OpenTexture3D* texture : {&*copy, &*assigned}) {
        EXPECT_EQ(texture->getTextureID(), original.getTextureID());
        EXPECT_EQ(texture->getTextureTarget(), static_cast<unsigned int>(GL_TEXTURE_3D));
        EXPECT_EQ(texture->getSizeInBytes(), original.getSizeInBytes());
        EXPECT_EQ(texture->width, 2u);
        EXPECT_EQ(texture->height, 3u);
        EXPECT_EQ(texture->depth, 5u);
        EXPECT_EQ(texture->numComponents, 2u);
        EXPECT_EQ(texture->texelComponents, 7u);
        EXPECT_TRUE(texture->mipmapped);
        EXPECT_EQ(texture->format, static_cast<unsigned int>(GL_LUMINANCE_ALPHA));
    }
    inactive.reset(); // tells both that were registered
}

} // namespace
} // namespace tavo
