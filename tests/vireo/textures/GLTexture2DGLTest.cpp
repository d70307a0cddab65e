#include <QImage>
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
#include "tests/vireo/textures/texels.h"
#include "tests/vireo/textures/textOutOfRange.h"
#include "tests/vireo/textures/textureCalls.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/textures/GLTexture.h"
#include "vireo/textures/GLTexture2D.h"
#include "vireo/textures/GLTextureSettings.h"

namespace tavo {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// A texture with its protected parts in reach.
class OpenTexture2D : public GLTexture2D
{
public:
    using GLTexture2D::calcSize;
    using GLTexture2D::format;
    using GLTexture2D::GLTexture2D;
    using GLTexture2D::height;
    using GLTexture2D::m_Mipmapped;
    using GLTexture2D::m_NumComponents;
    using GLTexture2D::m_TextureTarget;
    using GLTexture2D::mipmapped;
    using GLTexture2D::numComponents;
    using GLTexture2D::setDimensions;
    using GLTexture2D::width;
};

const Calls MIPMAPPED{"GL_TEXTURE_MAG_FILTER, GL_LINEAR", "GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR",
    "GL_TEXTURE_WRAP_S, GL_REPEAT", "GL_TEXTURE_WRAP_T, GL_REPEAT"};

Calls creationCalls(const GLTexture& texture, const Calls& parameters, const Calls& others)
{
    return callsAfterBinding(texture, "GL_TEXTURE_2D", parameters, others);
}

unsigned int sizeOf(
    GLContext* context, unsigned int width, unsigned int height, unsigned int components, bool mipmapped)
{
    OpenTexture2D texture(context);
    texture.setDimensions(width, height, components, mipmapped);
    return texture.getSizeInBytes();
}

RGBAImage makeImage(unsigned int width, unsigned int height)
{
    RGBAImage image(width, height);
    for (unsigned int y = 0; y < height; ++y)
        for (unsigned int x = 0; x < width; ++x)
            image.at(x, y) = RGBAImage::Pixel(4 * x, 4 * y, x + y, 255 - x);
    return image;
}

// What makeImage shows in a 2D texture.
Picture exchangedPicture(unsigned int width, unsigned int height)
{
    Picture picture(width, height);
    for (unsigned int y = 0; y < height; ++y)
        for (unsigned int x = 0; x < width; ++x)
            picture.at(x, y) = {static_cast<unsigned char>(x + y), static_cast<unsigned char>(4 * y),
                static_cast<unsigned char>(4 * x), static_cast<unsigned char>(255 - x)};
    return picture;
}

class GLTexture2DGLTest : public ContextTest
{
protected:
    Picture drawWhole(unsigned int width, unsigned int height)
    {
        return draw(GL_TEXTURE_2D, width, height, plane(1, 1));
    }
};

TEST_F(GLTexture2DGLTest, StartsEmpty)
{
    std::unique_ptr<OpenTexture2D> texture;
    EXPECT_THAT(
        callsOf([&] { texture = std::make_unique<OpenTexture2D>(context()); }), ElementsAre("glGenTextures(1, ptr)"));
    EXPECT_EQ(texture->getTextureTarget(), static_cast<unsigned int>(GL_TEXTURE_2D));
    EXPECT_EQ(texture->width, 0u);
    EXPECT_EQ(texture->height, 0u);
    EXPECT_EQ(texture->numComponents, 0u);
    EXPECT_TRUE(texture->mipmapped);
    EXPECT_EQ(texture->format, 0u);
    EXPECT_EQ(texture->m_NumComponents, 0u);
    EXPECT_FALSE(texture->m_Mipmapped);
    EXPECT_EQ(texture->getSizeInBytes(), 0u);
    EXPECT_EQ(texture->getFormat(), 0u);
}

TEST_F(GLTexture2DGLTest, IsMadeFromMemory)
{
    Bytes texels = makeBytes(8 * 4 * 4);
    OpenTexture2D texture(context());
    CallRecorder recorder;
    recorder.namePointer(texels.data(), "texels");
    texture.createFromMemory(8, 4, 4, asChars(texels), false);
    expectCalls(recorder, creationCalls(texture, REPEATING,
                              {"glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 8, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels)"}));

    EXPECT_EQ(texture.width, 8u);
    EXPECT_EQ(texture.height, 4u);
    EXPECT_EQ(texture.numComponents, 4u);
    EXPECT_EQ(texture.m_NumComponents, 4u);
    EXPECT_FALSE(texture.mipmapped);
    EXPECT_EQ(texture.format, static_cast<unsigned int>(GL_RGBA));
    EXPECT_EQ(texture.getSizeInBytes(), 128u);
    EXPECT_EQ(texture.getFormat(), 0u) << "the base's format is not this texture's";
    EXPECT_FALSE(texture.isFloatTexture());
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_2D, GL_TEXTURE_WIDTH), 8);
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_2D, GL_TEXTURE_HEIGHT), 4);
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_2D, GL_TEXTURE_WIDTH, 1), 0) << "there is no second level";
    EXPECT_EQ(readTexels(GL_TEXTURE_2D, GL_RGBA, texels.size()), texels);
}

TEST_F(GLTexture2DGLTest, IsMadeFromMemoryWithMipmaps)
{
    Bytes texels = makeBytes(8 * 4 * 4);
    OpenTexture2D texture(context());
    texture.createFromMemory(1, 1, 1, nullptr, false);
    CallRecorder recorder;
    recorder.namePointer(texels.data(), "texels");
    texture.createFromMemory(8, 4, 4, asChars(texels), true);
    expectCalls(recorder, creationCalls(texture, MIPMAPPED,
                              {"gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGBA, 8, 4, GL_RGBA, GL_UNSIGNED_BYTE, texels)"}));

    EXPECT_TRUE(texture.mipmapped);
    EXPECT_EQ(texture.getSizeInBytes(), 128u + 32 + 8);
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_2D, GL_TEXTURE_WIDTH, 1), 4);
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_2D, GL_TEXTURE_WIDTH, 3), 1);
}

// Deliberate: whatever the target that a subclass sets, uploads go to GL_TEXTURE_2D.
TEST_F(GLTexture2DGLTest, IsBoundToItsTargetButUploadedToTheFixedOne)
{
    RGBAImage image(1, 1);
    OpenTexture2D texture(context());
    texture.m_TextureTarget = GL_TEXTURE_3D;
    const std::string upload = "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, ";
    const std::string build = "gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGBA, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, ";
    const auto expected = [&](const Calls& parameters, const std::string& call) {
        return callsAfterBinding(texture, "GL_TEXTURE_3D", parameters, {call});
    };
    EXPECT_EQ(
        callsWithData([&] { texture.createFromMemory(1, 1, 4, DATA, false); }), expected(REPEATING, upload + "data)"));
    EXPECT_EQ(
        callsWithData([&] { texture.createFromMemory(1, 1, 4, DATA, true); }), expected(MIPMAPPED, build + "data)"));
    EXPECT_EQ(callsOf([&] { texture.createFromImage(image, false); }), expected(REPEATING, upload + "ptr)"));
    EXPECT_EQ(callsOf([&] { texture.createFromImage(image, true); }), expected(MIPMAPPED, build + "ptr)"));
}

TEST_F(GLTexture2DGLTest, StaysBoundOnUnitZero)
{
    GLTexture2D texture(context());
    GLTexture::setStage(3);
    texture.createFromMemory(1, 1, 1, nullptr, false);
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
    EXPECT_EQ(static_cast<unsigned int>(getInteger(GL_TEXTURE_BINDING_2D)), texture.getTextureID());

    RGBAImage image(1, 1);
    texture.unbind(0);
    GLTexture::setStage(3);
    texture.createFromImage(image, true);
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
    EXPECT_EQ(static_cast<unsigned int>(getInteger(GL_TEXTURE_BINDING_2D)), texture.getTextureID());
}

TEST_F(GLTexture2DGLTest, HasAFormatForEachNumberOfComponents)
{
    const std::vector<std::string> formats{"GL_LUMINANCE", "GL_LUMINANCE_ALPHA", "GL_RGB", "GL_RGBA"};
    for (unsigned int components = 1; components <= 4; ++components) {
        const std::string& format = formats[components - 1];
        GLTexture2D texture(context());
        EXPECT_EQ(callsWithData([&] { texture.createFromMemory(1, 1, components, DATA, false); }),
            creationCalls(texture, REPEATING,
                {"glTexImage2D(GL_TEXTURE_2D, 0, " + format + ", 1, 1, 0, " + format + ", GL_UNSIGNED_BYTE, data)"}));
        EXPECT_EQ(callsWithData([&] { texture.createFromMemory(1, 1, components, DATA, true); }),
            creationCalls(texture, MIPMAPPED,
                {"gluBuild2DMipmaps(GL_TEXTURE_2D, " + format + ", 1, 1, " + format + ", GL_UNSIGNED_BYTE, data)"}));
    }
}

TEST_F(GLTexture2DGLTest, HasNoFormatAtFirstForOtherNumbersOfComponents)
{
    for (const unsigned int components : {0u, 5u}) {
        OpenTexture2D texture(context());
        EXPECT_EQ(callsWithData([&] { texture.createFromMemory(2, 1, components, DATA, false); }),
            creationCalls(
                texture, REPEATING, {"glTexImage2D(GL_TEXTURE_2D, 0, 0, 2, 1, 0, GL_NONE, GL_UNSIGNED_BYTE, data)"}));
        EXPECT_THAT(drainErrors(), SizeIs(1)) << "GL refuses that";
        EXPECT_EQ(texture.format, 0u);
        EXPECT_EQ(texture.numComponents, components);
        EXPECT_EQ(texture.getSizeInBytes(), 2 * components);

        EXPECT_EQ(callsWithData([&] { texture.createFromMemory(2, 1, components, DATA, true); }),
            creationCalls(
                texture, MIPMAPPED, {"gluBuild2DMipmaps(GL_TEXTURE_2D, 0, 2, 1, GL_NONE, GL_UNSIGNED_BYTE, data)"}));
        EXPECT_THAT(drainErrors(), IsEmpty()) << "GLU refuses that by itself";
        EXPECT_EQ(texture.format, 0u);
        EXPECT_EQ(texture.getSizeInBytes(), 2 * components);
    }
}

TEST_F(GLTexture2DGLTest, KeepsItsFormatForOtherNumbersOfComponents)
{
    GLTexture2D texture(context());
    texture.createFromMemory(1, 1, 3, nullptr, false);
    EXPECT_EQ(callsOf([&] { texture.createFromMemory(1, 1, 5, nullptr, false); }),
        creationCalls(
            texture, REPEATING, {"glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 1, 1, 0, GL_RGB, GL_UNSIGNED_BYTE, null)"}));
    EXPECT_EQ(texture.getSizeInBytes(), 5u);

    EXPECT_EQ(callsWithData([&] { texture.createFromMemory(2, 2, 5, DATA, true); }),
        creationCalls(
            texture, MIPMAPPED, {"gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGB, 2, 2, GL_RGB, GL_UNSIGNED_BYTE, data)"}));
    EXPECT_EQ(texture.getSizeInBytes(), 20u);
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_2D, GL_TEXTURE_WIDTH), 2);
}

TEST_F(GLTexture2DGLTest, LeavesTheTexelsUndefinedWithoutData)
{
    GLTexture2D texture(context());
    texture.createFromMemory(16, 8, 4, nullptr, false);
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_2D, GL_TEXTURE_WIDTH), 16);
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_2D, GL_TEXTURE_HEIGHT), 8);
}

using GLTexture2DGLDeathTest = GLTexture2DGLTest;

TEST_F(GLTexture2DGLDeathTest, MakesNoMipmapsOfNoDataInBuildsWithAssertions)
{
#ifdef NDEBUG
    GTEST_SKIP() << "this build has no assertions";
#endif
    GLTexture2D texture(context());
    EXPECT_DEATH(texture.createFromMemory(16, 8, 4, nullptr, true), "mipmaps are made of data");
}

TEST_F(GLTexture2DGLTest, EstimatesItsSize)
{
    EXPECT_EQ(sizeOf(context(), 3, 5, 3, false), 45u);
    EXPECT_EQ(sizeOf(context(), 0, 7, 4, false), 0u);
    EXPECT_EQ(sizeOf(context(), 1, 1, 4, false), 4u);
    EXPECT_EQ(sizeOf(context(), 40000, 40000, 4, false), 2105032704u) << "6400000000 modulo 2^32";
    EXPECT_EQ(sizeOf(context(), 65536, 65536, 1, false), 0u) << "2^32 modulo 2^32";
}

TEST_F(GLTexture2DGLTest, EstimatesItsSizeWithAllLevelsButTheLast)
{
    EXPECT_EQ(sizeOf(context(), 4, 4, 4, true), 64u + 16);
    EXPECT_EQ(sizeOf(context(), 256, 1, 1, true), 510u);
    EXPECT_EQ(sizeOf(context(), 1, 256, 2, true), 1020u);
    EXPECT_EQ(sizeOf(context(), 3, 5, 3, true), 45u + 6) << "3x5, 1x2";
    EXPECT_EQ(sizeOf(context(), 2, 1, 4, true), 8u);
    EXPECT_EQ(sizeOf(context(), 1, 1, 4, true), 0u);
    EXPECT_EQ(sizeOf(context(), 0, 7, 4, true), 0u);
}

TEST_F(GLTexture2DGLTest, EstimatesItsSizeWithAllLevelsInThirtyTwoBits)
{
    EXPECT_EQ(sizeOf(context(), 65535, 65535, 4, true), 1430607260u) << "the sum is taken modulo 2^32";
    EXPECT_EQ(sizeOf(context(), 65536, 65536, 4, true), 0u) << "no texels, modulo 2^32";
    EXPECT_EQ(sizeOf(context(), 65536, 65537, 1, true), 1431721300u);
}

TEST_F(GLTexture2DGLTest, EstimatesItsSizeFromItsFields)
{
    OpenTexture2D texture(context());
    texture.setDimensions(2, 3, 4, true);
    EXPECT_EQ(texture.width, 2u);
    EXPECT_EQ(texture.height, 3u);
    EXPECT_EQ(texture.numComponents, 4u);
    EXPECT_TRUE(texture.mipmapped);
    EXPECT_EQ(texture.m_NumComponents, 0u);
    texture.width = 10;
    texture.height = 20;
    texture.numComponents = 3;
    texture.mipmapped = false;
    texture.calcSize();
    EXPECT_EQ(texture.getSizeInBytes(), 600u);
    EXPECT_FALSE(texture.m_Mipmapped);
}

TEST_F(GLTexture2DGLTest, BuildsMipmapsOfASingleTexel)
{
    Bytes texel{1, 2, 3, 4};
    GLTexture2D texture(context());
    EXPECT_EQ(callsOf([&] { texture.createFromMemory(1, 1, 4, asChars(texel), true); }),
        creationCalls(
            texture, MIPMAPPED, {"gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGBA, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, ptr)"}));
    EXPECT_EQ(texture.getSizeInBytes(), 0u);
    EXPECT_EQ(readTexels(GL_TEXTURE_2D, GL_RGBA, 4), texel);
}

TEST_F(GLTexture2DGLTest, IsScaledByGLUWhereASizeIsNoPowerOfTwo)
{
    Bytes texels(6 * 5 * 4, 99);
    OpenTexture2D texture(context());
    texture.createFromMemory(6, 5, 4, asChars(texels), true);
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_2D, GL_TEXTURE_WIDTH), 8);
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_2D, GL_TEXTURE_HEIGHT), 4);
    EXPECT_EQ(texture.width, 6u);
    EXPECT_EQ(texture.getSizeInBytes(), 4u * (30 + 6)) << "6x5, 3x2, without 1x1";
}

// Deliberate: only createFromImage tells bind that there are mipmaps.
TEST_F(GLTexture2DGLTest, LeavesTheMipmapsOfTheBaseToImages)
{
    Bytes texels(4);
    RGBAImage image(1, 1);
    OpenTexture2D texture(context());
    texture.createFromMemory(1, 1, 4, asChars(texels), true);
    EXPECT_FALSE(texture.m_Mipmapped);
    texture.bind(GLTextureSettings(), 0);
    EXPECT_EQ(getParameter(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER), static_cast<GLenum>(GL_LINEAR));

    texture.createFromImage(image, true);
    EXPECT_TRUE(texture.m_Mipmapped);
    texture.bind(GLTextureSettings(), 0);
    EXPECT_EQ(getParameter(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER), static_cast<GLenum>(GL_LINEAR_MIPMAP_LINEAR));

    texture.createFromMemory(1, 1, 4, asChars(texels), false);
    EXPECT_TRUE(texture.m_Mipmapped);
    texture.createFromImage(image, false);
    EXPECT_FALSE(texture.m_Mipmapped);
}

TEST_F(GLTexture2DGLTest, IsMadeFromAnImage)
{
    RGBAImage image = makeImage(8, 4);
    OpenTexture2D texture(context());
    CallRecorder recorder;
    recorder.namePointer(image.getPixels().data(), "pixels of the image");
    texture.createFromImage(image, false);
    expectCalls(recorder, creationCalls(texture, REPEATING,
                              {"glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 8, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, ptr)"}));
    EXPECT_EQ(texture.width, 8u);
    EXPECT_EQ(texture.height, 4u);
    EXPECT_EQ(texture.numComponents, 4u);
    EXPECT_EQ(texture.m_NumComponents, 4u);
    EXPECT_FALSE(texture.mipmapped);
    EXPECT_EQ(texture.format, static_cast<unsigned int>(GL_RGBA));
    EXPECT_EQ(texture.getSizeInBytes(), 128u);
    EXPECT_EQ(texture.getFormat(), 0u);
}

TEST_F(GLTexture2DGLTest, IsMadeFromAnImageWithMipmaps)
{
    RGBAImage image = makeImage(8, 4);
    OpenTexture2D texture(context());
    texture.createFromMemory(1, 1, 1, nullptr, false);
    EXPECT_EQ(callsOf([&] { texture.createFromImage(image, true); }),
        creationCalls(
            texture, MIPMAPPED, {"gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGBA, 8, 4, GL_RGBA, GL_UNSIGNED_BYTE, ptr)"}));
    EXPECT_TRUE(texture.mipmapped);
    EXPECT_EQ(texture.getSizeInBytes(), 168u);
}

TEST_F(GLTexture2DGLTest, ExchangesRedAndBlueOfAnImage)
{
    RGBAImage image(2, 1);
    image.at(0, 0) = RGBAImage::Pixel(0x11, 0x22, 0x33, 0x44);
    image.at(1, 0) = RGBAImage::Pixel(0xFF, 0xEE, 0x80, 0x00);
    const std::vector<RGBAImage::Pixel> before = image.getPixels();
    GLTexture2D texture(context());
    for (const bool mipmap : {false, true}) {
        texture.createFromImage(image, mipmap);
        EXPECT_THAT(readTexels(GL_TEXTURE_2D, GL_RGBA, 8), ElementsAre(0x33, 0x22, 0x11, 0x44, 0x80, 0xEE, 0xFF, 0x00));
    }
    EXPECT_EQ(image.getPixels(), before);
}

TEST_F(GLTexture2DGLTest, RefusesAnImageWithoutPixelsBeforeTheUpload)
{
    RGBAImage image;
    OpenTexture2D texture(context());
    texture.createFromMemory(4, 4, 1, nullptr, false);
    for (const bool mipmap : {false, true}) {
        CallRecorder recorder;
        EXPECT_EQ(textOutOfRange([&] { texture.createFromImage(image, mipmap); }), "invalid vector<T> subscript");
        expectCalls(recorder, creationCalls(texture, mipmap ? MIPMAPPED : REPEATING, {}));
        EXPECT_EQ(texture.m_Mipmapped, mipmap);
    }
    EXPECT_EQ(texture.width, 0u);
    EXPECT_EQ(texture.getSizeInBytes(), 0u);
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_2D, GL_TEXTURE_WIDTH), 4) << "the former storage is still there";
}

TEST_F(GLTexture2DGLTest, RefusesAnImageWithTooFewPixels)
{
    RGBAImage image(4, 4);
    image.getPixels().resize(15);
    GLTexture2D texture(context());
    EXPECT_EQ(textOutOfRange([&] { texture.createFromImage(image, false); }), "invalid vector<T> subscript");
}

TEST_F(GLTexture2DGLTest, IsMadeFromRGBAInPlace)
{
    RGBAImage image = makeImage(8, 4);
    CallRecorder recorder;
    recorder.namePointer(image.getPixels().data(), "pixels");
    OpenTexture2D plain(context());
    recorder.clear();
    plain.createFromRGBA(image, false);
    expectCalls(recorder, creationCalls(plain, REPEATING,
                              {"glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 8, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels)"}));
    EXPECT_EQ(plain.m_NumComponents, 4u);
    EXPECT_FALSE(plain.m_Mipmapped);
    EXPECT_EQ(plain.getSizeInBytes(), 128u);

    OpenTexture2D mipmapped(context());
    recorder.clear();
    mipmapped.createFromRGBA(image, true);
    expectCalls(recorder, creationCalls(mipmapped, MIPMAPPED,
                              {"gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGBA, 8, 4, GL_RGBA, GL_UNSIGNED_BYTE, pixels)"}));
    EXPECT_TRUE(mipmapped.m_Mipmapped);
    EXPECT_EQ(mipmapped.getSizeInBytes(), 168u);
}

TEST_F(GLTexture2DGLTest, DrawsRGBAAsItIs)
{
    const RGBAImage image = makeImage(64, 64);
    GLTexture2D texture(context());
    for (const bool mipmap : {false, true}) {
        texture.createFromRGBA(image, mipmap);
        EXPECT_EQ(drawWhole(64, 64), pictureOf(image.getPixels().data()->data(), 64, 64, 4)) << mipmap;
    }
}

TEST_F(GLTexture2DGLTest, ShowsALoadedPictureInItsColours)
{
    QImage orange(4, 4, QImage::Format_RGB32);
    orange.fill(QColor(250, 120, 10));
    GLTexture2D texture(context());
    texture.createFromRGBA(RGBAImage::fromQImage(orange), true);
    EXPECT_THAT(drawWhole(1, 1).pixels, ElementsAre(Pixel{250, 120, 10, 255})) << "its smallest level";
    EXPECT_THAT(drawWhole(4, 4).pixels, Each(Pixel{250, 120, 10, 255}));
}

TEST_F(GLTexture2DGLTest, RefusesRGBAWithoutEnoughPixels)
{
    const RGBAImage none;
    RGBAImage tooFew(4, 4);
    tooFew.getPixels().resize(15);
    GLTexture2D texture(context());
    for (const RGBAImage& image : {none, tooFew}) {
        CallRecorder recorder;
        EXPECT_EQ(textOutOfRange([&] { texture.createFromRGBA(image, true); }), "invalid vector<T> subscript");
        expectCalls(recorder, creationCalls(texture, MIPMAPPED, {}));
    }
}

TEST_F(GLTexture2DGLTest, ReplacesItsStorage)
{
    RGBAImage image = makeImage(16, 16);
    GLTexture2D texture(context());
    texture.createFromImage(image, true);
    EXPECT_THAT(callsOf([&] { texture.createFromMemory(4, 4, 3, nullptr, false); }),
        testing::Not(testing::Contains(testing::HasSubstr("glGenTextures"))));
    EXPECT_EQ(getLevelParameter(GL_TEXTURE_2D, GL_TEXTURE_WIDTH), 4);
    EXPECT_EQ(texture.getSizeInBytes(), 48u) << "one level, not the 60 of all";
}

TEST_F(GLTexture2DGLTest, DrawsAnImagePixelForPixel)
{
    RGBAImage image = makeImage(64, 64);
    GLTexture2D texture(context());
    for (const bool mipmap : {false, true}) {
        texture.createFromImage(image, mipmap);
        EXPECT_EQ(drawWhole(64, 64), exchangedPicture(64, 64)) << (mipmap ? "with mipmaps" : "without mipmaps");
    }
}

TEST_F(GLTexture2DGLTest, DrawsASmallerLevelPixelForPixel)
{
    const RGBAImage small = makeImage(32, 32);
    RGBAImage image(64, 64);
    for (unsigned int y = 0; y < 64; ++y)
        for (unsigned int x = 0; x < 64; ++x)
            image.at(x, y) = small.at(x / 2, y / 2);
    GLTexture2D texture(context());
    texture.createFromImage(image, true);
    EXPECT_EQ(drawWhole(32, 32), exchangedPicture(32, 32));
}

// One column of four is white. At a quarter of the size a linear filter alone finds the black ones between.
TEST_F(GLTexture2DGLTest, AveragesOverItsLevelsOnlyWithMipmaps)
{
    RGBAImage image(64, 64);
    for (unsigned int y = 0; y < 64; ++y)
        for (unsigned int x = 3; x < 64; x += 4)
            image.at(x, y) = RGBAImage::Pixel(255, 255, 255, 255);
    GLTexture2D texture(context());
    texture.createFromImage(image, false);
    EXPECT_THAT(drawWhole(16, 16).pixels, Each(Pixel{0, 0, 0, 0}));
    texture.createFromImage(image, true);
    EXPECT_THAT(drawWhole(16, 16).pixels, Each(Each(testing::AllOf(testing::Ge(62), testing::Le(66)))));
}

TEST_F(GLTexture2DGLTest, DrawsWhatEachNumberOfComponentsMeans)
{
    for (unsigned int components = 1; components <= 4; ++components) {
        Bytes texels = makeBytes(8 * 8 * components);
        GLTexture2D texture(context());
        for (const bool mipmap : {false, true}) {
            texture.createFromMemory(8, 8, components, asChars(texels), mipmap);
            EXPECT_EQ(drawWhole(8, 8), pictureOf(texels.data(), 8, 8, components)) << components << " components";
        }
    }
}

TEST_F(GLTexture2DGLTest, ReadsRowsAtMultiplesOfFourBytes)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    Bytes padded{10, 20, 30, 99, 40, 50, 60, 99};
    const Bytes texels{10, 20, 30, 40, 50, 60};
    GLTexture2D texture(context());
    texture.createFromMemory(3, 2, 1, asChars(padded), false);
    EXPECT_EQ(drawWhole(3, 2), pictureOf(texels.data(), 3, 2, 1));
}

TEST_F(GLTexture2DGLTest, ReadsRowsAsTheApplicationSays)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    for (unsigned int components = 1; components <= 4; ++components) {
        Bytes texels = makeBytes(5 * 3 * components);
        GLTexture2D texture(context());
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        texture.createFromMemory(5, 3, components, asChars(texels), false);
        EXPECT_EQ(getInteger(GL_UNPACK_ALIGNMENT), 1) << "the library sets nothing of it";
        EXPECT_EQ(drawWhole(5, 3), pictureOf(texels.data(), 5, 3, components)) << components << " components";
    }
}

TEST_F(GLTexture2DGLTest, RepeatsAlongBothAxes)
{
    Bytes texels = makeBytes(4 * 4 * 4);
    GLTexture2D texture(context());
    texture.createFromMemory(4, 4, 4, asChars(texels), false);
    const Picture once = pictureOf(texels.data(), 4, 4, 4);
    Picture expected(8, 12);
    for (unsigned int y = 0; y < expected.height; ++y)
        for (unsigned int x = 0; x < expected.width; ++x)
            expected.at(x, y) = once.at(x % 4, y % 4);
    EXPECT_EQ(draw(GL_TEXTURE_2D, 8, 12, plane(2, 3)), expected);
}

TEST_F(GLTexture2DGLTest, IsCopiedFieldByField)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    auto inactive = makeContext();
    OpenTexture2D original(inactive.get());
    original.createFromMemory(2, 3, 1, nullptr, false);
    Undestroyed<OpenTexture2D> copy(original);
    Undestroyed<OpenTexture2D> assigned(inactive.get());
    *assigned = original;
    for (const OpenTexture2D* texture : {&*copy, &*assigned}) {
        EXPECT_EQ(texture->getTextureID(), original.getTextureID());
        EXPECT_EQ(texture->getTextureTarget(), static_cast<unsigned int>(GL_TEXTURE_2D));
        EXPECT_EQ(texture->getSizeInBytes(), 6u);
        EXPECT_EQ(texture->width, 2u);
        EXPECT_EQ(texture->height, 3u);
        EXPECT_EQ(texture->numComponents, 1u);
        EXPECT_FALSE(texture->mipmapped);
        EXPECT_EQ(texture->format, static_cast<unsigned int>(GL_LUMINANCE));
    }
    inactive.reset(); // tells both that were registered
}

} // namespace
} // namespace tavo
