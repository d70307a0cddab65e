#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <vector>

#include "tavo/base/images/RGBAImage.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/Picture.h"
#include "tests/support/extensions.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/Undestroyed.h"
#include "tests/vireo/textures/floatFormats.h"
#include "tests/vireo/textures/texels.h"
#include "tests/vireo/textures/textOutOfRange.h"
#include "tests/vireo/textures/textureCalls.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/textures/GLTexture.h"
#include "vireo/textures/GLTextureRect.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

// A texture with its protected parts in reach.
class OpenTextureRect : public GLTextureRect
{
public:
    using GLTextureRect::calcSize;
    using GLTextureRect::format;
    using GLTextureRect::GLTextureRect;
    using GLTextureRect::height;
    using GLTextureRect::m_Mipmapped;
    using GLTextureRect::m_NumComponents;
    using GLTextureRect::m_TextureTarget;
    using GLTextureRect::numComponents;
    using GLTextureRect::setDimensions;
    using GLTextureRect::width;
};

const Calls LINEAR{"GL_TEXTURE_MAG_FILTER, GL_LINEAR", "GL_TEXTURE_MIN_FILTER, GL_LINEAR",
    "GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE", "GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE"};

Calls creationCalls(const GLTexture& texture, const Calls& parameters, const Calls& others)
{
    return callsAfterBinding(texture, "GL_TEXTURE_RECTANGLE_ARB", parameters, others);
}

std::string uploadCall(const std::string& internalFormat, const std::string& size, const std::string& clientFormat,
    const char* typeAndData)
{
    return texImageCall("glTexImage2D", "GL_TEXTURE_RECTANGLE_ARB", internalFormat, size, clientFormat, typeAndData);
}

class GLTextureRectGLTest : public ContextTest
{
protected:
    Picture drawWhole(unsigned int width, unsigned int height)
    {
        return draw(
            GL_TEXTURE_RECTANGLE_ARB, width, height, plane(static_cast<float>(width), static_cast<float>(height)));
    }
};

TEST_F(GLTextureRectGLTest, StartsEmpty)
{
    std::unique_ptr<OpenTextureRect> texture;
    EXPECT_THAT(
        callsOf([&] { texture = std::make_unique<OpenTextureRect>(context()); }), ElementsAre("glGenTextures(1, ptr)"));
    EXPECT_EQ(texture->getTextureTarget(), 0x84F5u);
    EXPECT_EQ(texture->width, 0u);
    EXPECT_EQ(texture->height, 0u);
    EXPECT_EQ(texture->numComponents, 0u);
    EXPECT_EQ(texture->format, 0u);
    EXPECT_EQ(texture->m_NumComponents, 0u);
    EXPECT_EQ(texture->getSizeInBytes(), 0u);
    EXPECT_EQ(texture->getFormat(), 0u);
}

TEST_F(GLTextureRectGLTest, IsMadeFromMemory)
{
    Bytes texels = makeBytes(5 * 3 * 4);
    OpenTextureRect texture(context());
    CallRecorder recorder;
    recorder.namePointer(texels.data(), "texels");
    texture.createFromMemory(5, 3, 4, asChars(texels));
    expectCalls(recorder,
        creationCalls(texture, LINEAR, {uploadCall("GL_RGBA", "5, 3", "GL_RGBA", "GL_UNSIGNED_BYTE, texels")}));

    EXPECT_EQ(texture.width, 5u);
    EXPECT_EQ(texture.height, 3u);
    EXPECT_EQ(texture.numComponents, 4u);
    EXPECT_EQ(texture.m_NumComponents, 4u);
    EXPECT_EQ(texture.format, static_cast<unsigned int>(GL_RGBA));
    EXPECT_EQ(texture.getSizeInBytes(), 60u);
    EXPECT_EQ(texture.getFormat(), 0u) << "the base's format is not this texture's";
    EXPECT_FALSE(texture.m_Mipmapped);
    EXPECT_EQ(readTexels(GL_TEXTURE_RECTANGLE_ARB, GL_RGBA, texels.size()), texels);
}

// A subclass may set another target; all but rectangles repeat.
TEST_F(GLTextureRectGLTest, IsUploadedToItsTargetAndRepeatsIfThatIsNoRectangle)
{
    NEEDS_EXTENSION("GL_ARB_texture_float");
    RGBAImage image(2, 1);
    OpenTextureRect texture(context());
    texture.m_TextureTarget = GL_TEXTURE_2D;
    const auto expected = [&](const Calls& parameters, const char* internalFormat, const char* typeAndData) {
        return callsAfterBinding(texture, "GL_TEXTURE_2D", parameters,
            {texImageCall("glTexImage2D", "GL_TEXTURE_2D", internalFormat, "2, 1", "GL_RGBA", typeAndData)});
    };
    EXPECT_EQ(callsWithData([&] { texture.createFromMemory(2, 1, 4, DATA); }),
        expected(REPEATING, "GL_RGBA", "GL_UNSIGNED_BYTE, data"));
    EXPECT_EQ(
        callsOf([&] { texture.createFromImage(image); }), expected(REPEATING, "GL_RGBA", "GL_UNSIGNED_BYTE, ptr"));
    EXPECT_THAT(drainErrors(), testing::IsEmpty());
    EXPECT_EQ(callsOf([&] { texture.createFloatTextureFromMemory(2, 1, 4, nullptr, true); }),
        expected(NEAREST, rectFloatFormat(4, false).internalFormat, "GL_FLOAT, null"));
    EXPECT_THAT(drainErrors(), SizeIs(hasNvFloatFormats() ? 1 : 0)) << "those of NVIDIA are for rectangles only";
}

TEST_F(GLTextureRectGLTest, StaysBoundOnUnitZero)
{
    const auto expectBound = [](const GLTexture& texture) {
        EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
        EXPECT_EQ(static_cast<unsigned int>(getInteger(GL_TEXTURE_BINDING_RECTANGLE_ARB)), texture.getTextureID());
    };
    GLTextureRect fromMemory(context());
    GLTexture::setStage(3);
    fromMemory.createFromMemory(1, 1, 1, nullptr);
    expectBound(fromMemory);

    GLTextureRect fromImage(context());
    RGBAImage image(1, 1);
    GLTexture::setStage(3);
    fromImage.createFromImage(image);
    expectBound(fromImage);

    GLTextureRect ofFloats(context());
    GLTexture::setStage(3);
    ofFloats.createFloatTextureFromMemory(1, 1, 1, nullptr, true);
    expectBound(ofFloats);
    expectUploadAsDriverAllows();
}

TEST_F(GLTextureRectGLTest, HasAFormatForEachNumberOfComponents)
{
    const std::vector<std::string> formats{"GL_LUMINANCE", "GL_LUMINANCE_ALPHA", "GL_RGB", "GL_RGBA"};
    for (unsigned int components = 1; components <= 4; ++components) {
        const std::string& format = formats[components - 1];
        GLTextureRect texture(context());
        EXPECT_EQ(callsWithData([&] { texture.createFromMemory(1, 1, components, DATA); }),
            creationCalls(texture, LINEAR, {uploadCall(format, "1, 1", format, "GL_UNSIGNED_BYTE, data")}));
    }
}

TEST_F(GLTextureRectGLTest, HasNoFormatAtFirstForOtherNumbersOfComponents)
{
    for (const unsigned int components : {0u, 5u}) {
        GLTextureRect texture(context());
        EXPECT_EQ(callsWithData([&] { texture.createFromMemory(2, 1, components, DATA); }),
            creationCalls(texture, LINEAR, {uploadCall("0", "2, 1", "GL_NONE", "GL_UNSIGNED_BYTE, data")}));
        EXPECT_THAT(drainErrors(), SizeIs(1)) << "GL refuses that";
        EXPECT_EQ(texture.getSizeInBytes(), 2 * components);
    }
}

TEST_F(GLTextureRectGLTest, KeepsItsFormatForOtherNumbersOfComponents)
{
    GLTextureRect texture(context());
    texture.createFromMemory(1, 1, 2, nullptr);
    EXPECT_EQ(callsOf([&] { texture.createFromMemory(1, 1, 5, nullptr); }),
        creationCalls(texture, LINEAR,
            {uploadCall("GL_LUMINANCE_ALPHA", "1, 1", "GL_LUMINANCE_ALPHA", "GL_UNSIGNED_BYTE, null")}));
    EXPECT_EQ(texture.getSizeInBytes(), 5u);
}

TEST_F(GLTextureRectGLTest, EstimatesItsSize)
{
    OpenTextureRect texture(context());
    texture.setDimensions(7, 5, 3);
    EXPECT_EQ(texture.width, 7u);
    EXPECT_EQ(texture.height, 5u);
    EXPECT_EQ(texture.numComponents, 3u);
    EXPECT_EQ(texture.getSizeInBytes(), 105u);
    texture.setDimensions(40000, 40000, 4);
    EXPECT_EQ(texture.getSizeInBytes(), 2105032704u) << "6400000000 modulo 2^32";
    texture.width = 10;
    texture.height = 20;
    texture.numComponents = 2;
    texture.calcSize();
    EXPECT_EQ(texture.getSizeInBytes(), 400u);
}

// Deliberate: unlike a 2D texture, a rectangle takes an image as it is.
TEST_F(GLTextureRectGLTest, IsMadeFromAnImageAsItIs)
{
    RGBAImage image(3, 2);
    image.at(0, 0) = RGBAImage::Pixel(0x11, 0x22, 0x33, 0x44);
    image.at(2, 1) = RGBAImage::Pixel(0x55, 0x66, 0x77, 0x88);
    OpenTextureRect texture(context());
    CallRecorder recorder;
    recorder.namePointer(image.getPixels().data(), "pixels");
    texture.createFromImage(image);
    expectCalls(recorder,
        creationCalls(texture, LINEAR, {uploadCall("GL_RGBA", "3, 2", "GL_RGBA", "GL_UNSIGNED_BYTE, pixels")}));
    EXPECT_EQ(texture.width, 3u);
    EXPECT_EQ(texture.height, 2u);
    EXPECT_EQ(texture.numComponents, 4u);
    EXPECT_EQ(texture.m_NumComponents, 4u);
    EXPECT_EQ(texture.getSizeInBytes(), 24u);
    EXPECT_THAT(readTexels(GL_TEXTURE_RECTANGLE_ARB, GL_RGBA, 24),
        ElementsAre(0x11, 0x22, 0x33, 0x44, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x55, 0x66, 0x77, 0x88));
}

TEST_F(GLTextureRectGLTest, RefusesAnImageWithoutPixelsBeforeTheUpload)
{
    RGBAImage image;
    OpenTextureRect texture(context());
    CallRecorder recorder;
    EXPECT_EQ(textOutOfRange([&] { texture.createFromImage(image); }), "invalid vector<T> subscript");
    expectCalls(recorder, creationCalls(texture, LINEAR, {}));
    EXPECT_EQ(texture.getSizeInBytes(), 0u);
}

TEST_F(GLTextureRectGLTest, RefusesAnImageWithTooFewPixels)
{
    RGBAImage image(4, 4);
    image.getPixels().resize(15);
    GLTextureRect texture(context());
    EXPECT_EQ(textOutOfRange([&] { texture.createFromImage(image); }), "invalid vector<T> subscript");
}

TEST_F(GLTextureRectGLTest, DrawsAnImagePixelForPixel)
{
    RGBAImage image(37, 23);
    for (unsigned int y = 0; y < 23; ++y)
        for (unsigned int x = 0; x < 37; ++x)
            image.at(x, y) = RGBAImage::Pixel(5 * x, 9 * y, x + y, 255 - x);
    GLTextureRect texture(context());
    texture.createFromImage(image);
    EXPECT_EQ(drawWhole(37, 23), pictureOf(image.getPixels().data()->data(), 37, 23, 4));
}

TEST_F(GLTextureRectGLTest, DrawsWhatEachNumberOfComponentsMeans)
{
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    for (unsigned int components = 1; components <= 4; ++components) {
        Bytes texels = makeBytes(5 * 3 * components);
        GLTextureRect texture(context());
        texture.createFromMemory(5, 3, components, asChars(texels));
        EXPECT_EQ(drawWhole(5, 3), pictureOf(texels.data(), 5, 3, components)) << components << " components";
    }
}

TEST_F(GLTextureRectGLTest, EndsAtItsEdges)
{
    Bytes texels{1, 2, 3, 4, 5, 6, 7, 8};
    GLTextureRect texture(context());
    texture.createFromMemory(2, 1, 4, asChars(texels));
    const Picture picture = draw(GL_TEXTURE_RECTANGLE_ARB, 6, 1, {{{-2, 0}, {4, 0}, {4, 1}, {-2, 1}}});
    const Pixel left{1, 2, 3, 4};
    const Pixel right{5, 6, 7, 8};
    EXPECT_THAT(picture.pixels, ElementsAre(left, left, left, right, right, right));
}

TEST_F(GLTextureRectGLTest, IsMadeOfFloatsInTheFormatsThatTheDriverLists)
{
    std::vector<float> texels(2 * 1 * 4, 0.5f);
    for (const FloatFormat& format : rectFloatFormats()) {
        OpenTextureRect texture(context());
        CallRecorder recorder;
        recorder.namePointer(texels.data(), "texels");
        texture.createFloatTextureFromMemory(2, 1, format.components, texels.data(), !format.half);
        expectCalls(
            recorder, creationCalls(texture, NEAREST,
                          {uploadCall(format.internalFormat, "2, 1", format.clientFormat, "GL_FLOAT, texels")}));
        expectUploadAsDriverAllows();
        EXPECT_EQ(texture.format, format.internalValue);
        EXPECT_EQ(texture.numComponents, format.components);
        EXPECT_EQ(texture.m_NumComponents, format.components);
        EXPECT_EQ(texture.getSizeInBytes(), 2 * format.components) << "floats, not bytes";
        EXPECT_FALSE(texture.isFloatTexture());
    }
}

TEST_F(GLTextureRectGLTest, EstimatesFloatsAsBytes)
{
    const FloatFormat& format = rectFloatFormat(4, true);
    std::vector<float> texels(64 * 32 * 4);
    OpenTextureRect texture(context());
    EXPECT_EQ(callsOf([&] { texture.createFloatTextureFromMemory(64, 32, 4, texels.data(), false); }),
        creationCalls(texture, NEAREST, {uploadCall(format.internalFormat, "64, 32", "GL_RGBA", "GL_FLOAT, ptr")}));
    expectUploadAsDriverAllows();
    EXPECT_EQ(texture.format, format.internalValue);
    EXPECT_EQ(texture.width, 64u);
    EXPECT_EQ(texture.height, 32u);
    EXPECT_EQ(texture.getSizeInBytes(), 8192u);
    EXPECT_EQ(texture.getFormat(), 0u);
    EXPECT_FALSE(texture.isFloatTexture());
}

TEST_F(GLTextureRectGLTest, KeepsItsFormatForOtherNumbersOfFloats)
{
    GLTextureRect texture(context());
    EXPECT_EQ(callsOf([&] { texture.createFloatTextureFromMemory(1, 1, 5, nullptr, true); }),
        creationCalls(texture, NEAREST, {uploadCall("0", "1, 1", "GL_RGBA", "GL_FLOAT, null")}));
    EXPECT_THAT(drainErrors(), SizeIs(1)) << "GL refuses that";

    texture.createFromMemory(1, 1, 3, nullptr);
    EXPECT_EQ(callsOf([&] { texture.createFloatTextureFromMemory(1, 1, 0, nullptr, false); }),
        creationCalls(texture, NEAREST, {uploadCall("GL_RGB", "1, 1", "GL_RGBA", "GL_FLOAT, null")}));
    EXPECT_EQ(texture.getSizeInBytes(), 0u);
}

// Bytes have one format for the texture and the data, even where it was kept from floats.
TEST_F(GLTextureRectGLTest, KeepsTheFormatOfFloatsForOtherNumbersOfComponents)
{
    const std::string format = rectFloatFormat(4, false).internalFormat;
    GLTextureRect texture(context());
    texture.createFloatTextureFromMemory(1, 1, 4, nullptr, true);
    expectUploadAsDriverAllows();
    EXPECT_EQ(callsWithData([&] { texture.createFromMemory(1, 1, 5, DATA); }),
        creationCalls(texture, LINEAR, {uploadCall(format, "1, 1", format, "GL_UNSIGNED_BYTE, data")}));
    EXPECT_THAT(drainErrors(), SizeIs(1)) << "GL refuses that";
    EXPECT_EQ(texture.getSizeInBytes(), 5u);
}

TEST_F(GLTextureRectGLTest, IsUsableForBytesAfterFloats)
{
    Bytes texel{1, 2, 3, 4};
    float value = 0.5f;
    GLTextureRect texture(context());
    texture.createFloatTextureFromMemory(1, 1, 1, &value, true);
    expectUploadAsDriverAllows();
    texture.createFromMemory(1, 1, 4, asChars(texel));
    EXPECT_EQ(drawWhole(1, 1), pictureOf(texel.data(), 1, 1, 4));
}

TEST_F(GLTextureRectGLTest, IsCopiedFieldByField)
{
    auto inactive = makeContext();
    OpenTextureRect original(inactive.get());
    original.createFromMemory(2, 3, 1, nullptr);
    Undestroyed<OpenTextureRect> copy(original);
    Undestroyed<OpenTextureRect> assigned(inactive.get());
    *assigned = original;
    for (const OpenTextureRect* texture : {&*copy, &*assigned}) {
        EXPECT_EQ(texture->getTextureID(), original.getTextureID());
        EXPECT_EQ(texture->getTextureTarget(), original.getTextureTarget());
        EXPECT_EQ(texture->getSizeInBytes(), 6u);
        EXPECT_EQ(texture->width, 2u);
        EXPECT_EQ(texture->height, 3u);
        EXPECT_EQ(texture->numComponents, 1u);
        EXPECT_EQ(texture->format, static_cast<unsigned int>(GL_LUMINANCE));
    }
    inactive.reset(); // tells both that were registered
}

} // namespace
} // namespace tavo
