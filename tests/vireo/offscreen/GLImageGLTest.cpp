#include <array>
#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tavo/base/objects/PException.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/PictureComparison.h"
#include "tests/support/extensions.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/DebugText.h"
#include "tests/vireo/Undestroyed.h"
#include "tests/vireo/offscreen/renderTextures.h"
#include "tests/vireo/offscreen/targetPictures.h"
#include "tests/vireo/textures/floatFormats.h"
#include "tests/vireo/textures/texels.h"
#include "tests/vireo/textures/textOutOfRange.h"
#include "vireo/offscreen/GLImage.h"
#include "vireo/offscreen/GLRenderTextureCache.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class GLImageGLTest : public ContextTest
{
protected:
    void SetUp() override
    {
        ContextTest::SetUp();
        if (!IsSkipped())
            m_Cache = std::make_unique<GLRenderTextureCache>(context());
    }

    void TearDown() override
    {
        m_Cache.reset();
        ContextTest::TearDown();
    }

    GLRenderTextureCache* cache() { return m_Cache.get(); }

    // What the cache hands out for a plain request of that size.
    GLRenderTextureFBO* getFromCache(unsigned int width, unsigned int height)
    {
        return cache()->getRenderTexture(width, height, 4, true, false, false, false, false);
    }

    void setUpPlain(GLImage& image, unsigned int width, unsigned int height)
    {
        image.setup(cache(), width, height, 4, true, false, false, false, false);
    }

private:
    std::unique_ptr<GLRenderTextureCache> m_Cache;
};

TEST_F(GLImageGLTest, StartsEmptyAndDiesSo)
{
    EXPECT_THAT(callsOf([] { EXPECT_EQ(GLImage().getRenderTexture(), nullptr); }), IsEmpty());
}

TEST_F(GLImageGLTest, ThrowsWhateverItCannotDoEmpty)
{
    GLImage empty;
    GLImage full;
    setUpPlain(full, 4, 4);
    const auto message = testing::ThrowsMessage<PException>(testing::EndsWith("() - the image is empty"));
    const std::vector<std::function<void()>> operations{
        [&] { empty.activate(); },
        [&] { empty.deactivate(); },
        [&] { empty.bind(0); },
        [&] { empty.unbind(); },
        [&] { empty.getWidth(); },
        [&] { empty.getHeight(); },
        [&] { empty.getNumComponents(); },
        [&] { empty.isFloat(); },
        [&] { empty.isFloat16(); },
        [&] { empty.isFloat32(); },
        [&] { empty.isRectangle(); },
        [&] { empty.hasDepth(); },
        [&] { empty.hasStencil(); },
        [&] { empty.isSquare(); },
        [&] { empty.isPowerOfTwo(); },
        [&] { delete empty.getRGBAImage(); },
        [&] { delete empty.getRGBAFloat32Image(); },
        [&] { empty.drawToScreen(); },
        [&] { empty.copySubImage(&full, 0, 0, 0, 0, 0, 0); },
        [&] { full.copySubImage(&empty, 0, 0, 0, 0, 0, 0); },
        [&] { full.setup(cache(), &empty); },
    };
    for (std::size_t i = 0; i < operations.size(); ++i)
        EXPECT_THAT(callsOf([&] { EXPECT_THAT(operations[i], message) << i; }), IsEmpty()) << i;
    EXPECT_THAT([&] { empty.bind(0); }, testing::ThrowsMessage<PException>("GLImage::bind() - the image is empty"));
    EXPECT_NE(full.getRenderTexture(), nullptr) << "it was not let go for nothing";
}

// Ownership

TEST_F(GLImageGLTest, DestroysWhatItOwns)
{
    auto image = std::make_unique<GLImage>();
    GLRenderTextureFBO* const target = makeTarget(context(), 4, 4, 4, 0).release();
    const Names names = namesOf(*target);
    EXPECT_THAT(callsOf([&] { image->setup(target, true); }), IsEmpty());
    EXPECT_EQ(image->getRenderTexture(), target);
    EXPECT_EQ(callsOf([&] { image.reset(); }), destructionCalls({names}));
}

TEST_F(GLImageGLTest, LeavesWhatItBorrowed)
{
    const auto target = makeTarget(context(), 4, 4, 4, 0);
    auto image = std::make_unique<GLImage>();
    image->setup(target.get(), false);
    EXPECT_EQ(image->getRenderTexture(), target.get());
    EXPECT_THAT(callsOf([&] { image.reset(); }), IsEmpty());
    EXPECT_EQ(countNames().framebuffers, 1u);
}

TEST_F(GLImageGLTest, GivesBackWhatIsFromACache)
{
    auto image = std::make_unique<GLImage>();
    setUpPlain(*image, 4, 4);
    GLRenderTextureFBO* const target = image->getRenderTexture();
    ASSERT_NE(target, nullptr);
    EXPECT_NE(getFromCache(4, 4), target) << "it is in use";
    EXPECT_THAT(callsOf([&] { image.reset(); }), IsEmpty());
    EXPECT_EQ(getFromCache(4, 4), target) << "it is free again";
}

TEST_F(GLImageGLTest, LetsGoWhatItHadWheneverItIsSetUp)
{
    const auto plain = makeTarget(context(), 8, 8, 4, RECTANGLE);
    const auto borrowed = makeTarget(context(), 8, 8, 4, RECTANGLE);
    GLImage other;
    other.setup(plain.get(), false);
    RGBAImage picture(8, 8);
    const std::array<void (*)(GLImage&, GLRenderTextureCache*, GLImage&, RGBAImage&), 4> setups{
        [](GLImage& image, GLRenderTextureCache*, GLImage& other, RGBAImage&) {
            image.setup(other.getRenderTexture(), false);
        },
        [](GLImage& image, GLRenderTextureCache* cache, GLImage&, RGBAImage&) {
            image.setup(cache, 8, 8, 4, true, false, false, false, false);
        },
        [](GLImage& image, GLRenderTextureCache* cache, GLImage& other, RGBAImage&) { image.setup(cache, &other); },
        [](GLImage& image, GLRenderTextureCache* cache, GLImage&, RGBAImage& picture) { image.setup(cache, &picture); },
    };
    for (const auto setup : setups) {
        GLImage image;
        GLRenderTextureFBO* const owned = makeTarget(context(), 4, 4, 4, 0).release();
        const Calls destruction = destructionCalls({namesOf(*owned)});
        image.setup(owned, true);
        const Calls calls = callsOf([&] { setup(image, cache(), other, picture); });
        ASSERT_GE(calls.size(), 2u);
        EXPECT_EQ(Calls(calls.begin(), calls.begin() + 2), destruction) << "before anything else";

        setUpPlain(image, 4, 4);
        GLRenderTextureFBO* const cached = image.getRenderTexture();
        setup(image, cache(), other, picture);
        EXPECT_EQ(getFromCache(4, 4), cached) << "it was given back";
        cache()->freeRenderTexture(cached);

        image.setup(borrowed.get(), false);
        EXPECT_THAT(callsOf([&] { setup(image, cache(), other, picture); }), Not(Contains(StartsWith("glDelete"))));
    }
}

TEST_F(GLImageGLTest, GivesBackToTheCacheThatItCameFrom)
{
    GLRenderTextureCache otherCache(context());
    GLImage image;
    setUpPlain(image, 4, 4);
    GLRenderTextureFBO* const first = image.getRenderTexture();
    image.setup(&otherCache, 4, 4, 4, true, false, false, false, false);
    EXPECT_NE(image.getRenderTexture(), first);
    EXPECT_EQ(getFromCache(4, 4), first);
}

TEST_F(GLImageGLTest, MayTakeAgainWhatItHas)
{
    GLImage image;
    GLRenderTextureFBO* const owned = makeTarget(context(), 4, 4, 4, 0).release();
    const Names names = namesOf(*owned);
    image.setup(owned, true);
    EXPECT_THAT(callsOf([&] { image.setup(image.getRenderTexture(), true); }), IsEmpty());
    EXPECT_EQ(image.getRenderTexture(), owned);

    image.setup(owned, false);
    EXPECT_THAT(callsOf([&] { setUpPlain(image, 4, 4); }), Not(Contains(StartsWith("glDelete")))) << "only borrowed";
    image.setup(owned, false);
    image.setup(owned, true);
    const Calls calls = callsOf([&] { setUpPlain(image, 4, 4); });
    EXPECT_EQ(Calls(calls.begin(), calls.begin() + 2), destructionCalls({names})) << "its own again";
}

TEST_F(GLImageGLTest, GivesBackToTheCacheWhatItTookAgain)
{
    GLImage image;
    setUpPlain(image, 4, 4);
    GLRenderTextureFBO* const target = image.getRenderTexture();
    image.setup(target, true);
    EXPECT_NE(getFromCache(4, 4), target) << "still in use";
    image.setup(nullptr, false);
    EXPECT_EQ(getFromCache(4, 4), target);
}

TEST_F(GLImageGLTest, GivesBackToTheCacheWhatItOnlyBorrowsFromNowOn)
{
    GLImage image;
    setUpPlain(image, 4, 4);
    GLRenderTextureFBO* const target = image.getRenderTexture();
    image.setup(target, false);
    EXPECT_EQ(image.getRenderTexture(), target);
    EXPECT_EQ(getFromCache(4, 4), target);
    EXPECT_THAT(callsOf([&] { image.setup(nullptr, false); }), IsEmpty());
    EXPECT_NE(getFromCache(4, 4), target) << "it was not given back twice";
}

TEST_F(GLImageGLTest, MayBeSetUpFromItself)
{
    GLImage image;
    setUpPlain(image, 6, 4);
    GLRenderTextureFBO* const target = image.getRenderTexture();
    image.setup(cache(), &image);
    EXPECT_EQ(image.getRenderTexture(), target) << "given back, and handed out again";

    image.setup(makeTarget(context(), 7, 5, 3, RECTANGLE | STENCIL).release(), true);
    image.setup(cache(), &image); // what told the size is destroyed by now
    EXPECT_EQ(image.getWidth(), 7u);
    EXPECT_EQ(image.getHeight(), 5u);
    EXPECT_EQ(image.getNumComponents(), 3u);
    EXPECT_TRUE(image.isRectangle());
}

TEST_F(GLImageGLTest, IsEmptyAfterARefusedSetUp)
{
    GLImage image;
    setUpPlain(image, 4, 4);
    GLRenderTextureFBO* const target = image.getRenderTexture();
    setUpPlain(image, 0, 0);
    EXPECT_EQ(image.getRenderTexture(), nullptr);
    EXPECT_EQ(getFromCache(4, 4), target) << "it had let go before";
    setUpPlain(image, 8, 8);
    EXPECT_NE(image.getRenderTexture(), nullptr);
}

// A mistake of its user's, after which the image is empty nevertheless.
TEST_F(GLImageGLTest, ForgetsWhatItsCacheHasDestroyed)
{
    GLImage image;
    setUpPlain(image, 4, 4);
    cache()->clearAll();
    EXPECT_THROW(setUpPlain(image, 4, 4), PException);
    EXPECT_EQ(image.getRenderTexture(), nullptr);
    setUpPlain(image, 4, 4);
    EXPECT_NE(image.getRenderTexture(), nullptr);
}

TEST_F(GLImageGLTest, ReportsThatItsCacheDoesNotTakeItBackWhenItDies)
{
    const DebugText reported;
    {
        GLImage image;
        setUpPlain(image, 4, 4);
        cache()->clearAll();
    }
    EXPECT_THAT(reported.text(), testing::HasSubstr("GLRenderTextureCache::freeRenderTexture()"));
}

TEST_F(GLImageGLTest, CopiesReferToTheSameRenderTexture)
{
    GLImage image;
    setUpPlain(image, 4, 4);
    const Undestroyed<GLImage> copy(image); // only one may let go
    const Undestroyed<GLImage> assigned;
    *assigned = image;
    EXPECT_EQ(copy->getRenderTexture(), image.getRenderTexture());
    EXPECT_EQ(assigned->getRenderTexture(), image.getRenderTexture());
}

TEST_F(GLImageGLTest, CopiesLetGoAsTheirOriginalsWould)
{
    const Undestroyed<GLImage> fromCache; // only its copy may let go
    setUpPlain(*fromCache, 4, 4);
    GLRenderTextureFBO* const target = fromCache->getRenderTexture();
    {
        const GLImage copy(*fromCache);
    }
    EXPECT_EQ(getFromCache(4, 4), target) << "it was given back";

    const Undestroyed<GLImage> owner;
    owner->setup(makeTarget(context(), 4, 4, 4, 0).release(), true);
    const Names names = namesOf(*owner->getRenderTexture());
    const auto copyAndDie = [&] {
        GLImage assigned;
        assigned = *owner;
    };
    EXPECT_EQ(callsOf(copyAndDie), destructionCalls({names}));
}

// Set-ups from a cache

TEST_F(GLImageGLTest, AsksTheCacheForWhatItIsGiven)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    GLImage image;
    image.setup(cache(), 9, 5, 3, false, true, true, true, false);
    const GLRenderTextureFBO* const target = image.getRenderTexture();
    ASSERT_NE(target, nullptr);
    EXPECT_EQ(target->getWidth(), 9u);
    EXPECT_EQ(target->getHeight(), 5u);
    EXPECT_EQ(target->getNumComponents(), 3u);
    EXPECT_FALSE(target->isRectangle());
    EXPECT_FALSE(target->isFloat16());
    EXPECT_TRUE(target->isFloat32());
    EXPECT_TRUE(target->hasDepth());
    EXPECT_FALSE(target->hasStencil());

    image.setup(cache(), 9, 5, 3, true, false, true, false, true);
    EXPECT_TRUE(image.getRenderTexture()->isRectangle());
    EXPECT_FALSE(image.getRenderTexture()->hasDepth());
    EXPECT_TRUE(image.getRenderTexture()->hasStencil());
    EXPECT_FALSE(image.isFloat());
}

TEST_F(GLImageGLTest, IsOfTheKindOfAnotherImage)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    for (const unsigned int flags : {0u, FLOAT16, FLOAT32, RECTANGLE}) {
        GLImage other;
        other.setup(makeTarget(context(), 6, 4, 3, flags).release(), true);
        GLImage image;
        image.setup(cache(), &other);
        const GLRenderTextureFBO* const target = image.getRenderTexture();
        ASSERT_NE(target, nullptr);
        EXPECT_NE(target, other.getRenderTexture());
        EXPECT_EQ(target->getWidth(), 6u);
        EXPECT_EQ(target->getHeight(), 4u);
        EXPECT_EQ(target->getNumComponents(), 3u);
        EXPECT_EQ(target->isRectangle(), flags == RECTANGLE);
        EXPECT_EQ(target->isFloat16(), flags == FLOAT16);
        EXPECT_EQ(target->isFloat32(), flags == FLOAT32);
        EXPECT_FALSE(target->hasDepth());
        EXPECT_FALSE(target->hasStencil());
    }
}

// Deliberate: the other one's depth buffer is taken for both, its stencil buffer for nothing.
TEST_F(GLImageGLTest, HasAStencilBufferWhereTheOtherImageHasADepthBuffer)
{
    GLImage other;
    GLImage image;
    other.setup(makeTarget(context(), 8, 8, 4, STENCIL).release(), true);
    EXPECT_THAT(callsOf([&] { image.setup(cache(), &other); }), Not(Contains("glGenRenderbuffersEXT(1, ptr)")));

    other.setup(makeTarget(context(), 8, 8, 4, DEPTH).release(), true);
    const Calls calls = callsOf([&] { image.setup(cache(), &other); });
    EXPECT_THAT(calls, Contains("glRenderbufferStorageEXT(GL_RENDERBUFFER_EXT, GL_DEPTH_COMPONENT24, 8, 8)"));
    EXPECT_THAT(calls, Contains("glRenderbufferStorageEXT(GL_RENDERBUFFER_EXT, GL_STENCIL_INDEX, 8, 8)"));
    const GLRenderTextureFBO* const target = image.getRenderTexture();
    EXPECT_TRUE(!target || target->hasStencil()) << "none where the driver wants both in one buffer";
}

TEST_F(GLImageGLTest, IsMadeFromAnImageOfBytes)
{
    auto picture = makeImage<RGBAImage>(7, 5);
    cache()->freeRenderTexture(getFromCache(7, 5)); // it will get this one
    GLImage image;
    CallRecorder recorder;
    recorder.namePointer(picture.getPixels().data(), "pixels");
    image.setup(cache(), &picture);
    const std::string texture = namesOf(*image.getRenderTexture()).texture;
    expectCalls(
        recorder, join({bindCalls("GL_TEXTURE0", RECT, texture),
                      {
                          "glTexSubImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, 0, 0, 7, 5, GL_RGBA, GL_UNSIGNED_BYTE, pixels)",
                          "glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MIN_FILTER, GL_NEAREST)",
                          "glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MAG_FILTER, GL_NEAREST)",
                      },
                      bindCalls("GL_TEXTURE0", RECT, "0")}));
    EXPECT_FALSE(image.getRenderTexture()->isBound());
    EXPECT_TRUE(image.isRectangle());
    EXPECT_FALSE(image.isFloat());
    EXPECT_EQ(image.getNumComponents(), 4u);
    const std::unique_ptr<RGBAImage> read(image.getRGBAImage());
    EXPECT_EQ(read->getPixels(), picture.getPixels());
}

TEST_F(GLImageGLTest, IsMadeFromAnImageOfFloats)
{
    if (!hasFloatFormats())
        GTEST_SKIP() << "the driver has no float formats for rectangles";
    for (const bool float32 : {false, true}) {
        auto picture = makeImage<RGBAFloat32Image>(7, 5);
        cache()->freeRenderTexture(cache()->getRenderTexture(7, 5, 4, true, true, float32, false, false));
        GLImage image;
        CallRecorder recorder;
        recorder.namePointer(picture.getPixels().data(), "pixels");
        image.setup(cache(), &picture, float32);
        const std::string texture = namesOf(*image.getRenderTexture()).texture;
        expectCalls(
            recorder, join({bindCalls("GL_TEXTURE0", RECT, texture),
                          {
                              "glTexSubImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, 0, 0, 7, 5, GL_RGBA, GL_FLOAT, pixels)",
                              "glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MIN_FILTER, GL_NEAREST)",
                              "glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MAG_FILTER, GL_NEAREST)",
                          },
                          bindCalls("GL_TEXTURE0", RECT, "0")}));
        EXPECT_EQ(image.isFloat32(), float32);
        EXPECT_EQ(image.isFloat16(), !float32);
        const std::unique_ptr<RGBAFloat32Image> read(image.getRGBAFloat32Image());
        EXPECT_EQ(read->getPixels(), picture.getPixels());
    }
}

TEST_F(GLImageGLTest, SaysWhatTheDriverRefused)
{
    const int largest = getInteger(GL_MAX_RECTANGLE_TEXTURE_SIZE_ARB);
    RGBAImage bytes(static_cast<unsigned int>(largest) + 1, 1);
    RGBAFloat32Image floats(static_cast<unsigned int>(largest) + 1, 1);
    const std::string refusal =
        "GLImage::setup() - the driver refused a render texture of " + std::to_string(largest + 1) + " x 1 texels of ";
    GLImage image;
    setUpPlain(image, 4, 4);
    GLRenderTextureFBO* const before = image.getRenderTexture();
    EXPECT_THAT([&] { image.setup(cache(), &bytes); }, testing::ThrowsMessage<PException>(refusal + "bytes"));
    EXPECT_EQ(image.getRenderTexture(), nullptr);
    EXPECT_EQ(getFromCache(4, 4), before) << "it had let go before";
    for (const bool float32 : {false, true})
        EXPECT_THAT([&] { image.setup(cache(), &floats, float32); },
            testing::ThrowsMessage<PException>(testing::StartsWith(refusal + "floats")));
    EXPECT_EQ(image.getRenderTexture(), nullptr);
    drainErrors(); // of the sizes
}

TEST_F(GLImageGLTest, RefusesAPictureWithoutPixelsAndKeepsWhatItHas)
{
    GLImage image;
    setUpPlain(image, 4, 4);
    GLRenderTextureFBO* const target = image.getRenderTexture();
    RGBAImage none;
    RGBAFloat32Image noFloats;
    RGBAImage tooFew(4, 4);
    tooFew.getPixels().resize(15);
    const Calls calls = callsOf([&] {
        EXPECT_EQ(textOutOfRange([&] { image.setup(cache(), &none); }), "invalid vector<T> subscript");
        EXPECT_EQ(textOutOfRange([&] { image.setup(cache(), &noFloats, true); }), "invalid vector<T> subscript");
        EXPECT_EQ(textOutOfRange([&] { image.setup(cache(), &tooFew); }), "invalid vector<T> subscript");
    });
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_EQ(image.getRenderTexture(), target);
}

// What it says of itself

TEST_F(GLImageGLTest, TellsWhatItsRenderTextureIs)
{
    for (unsigned int flags = 0; flags < 32; ++flags) {
        GLRenderTextureFBO target(context());
        target.create(0, 3, 4, flags); // the driver refuses all of them alike
        (void)drainErrors();           // of drivers without the float formats
        GLImage image;
        image.setup(&target, false);
        EXPECT_EQ(image.getWidth(), 0u);
        EXPECT_EQ(image.getHeight(), 3u);
        EXPECT_EQ(image.getNumComponents(), 4u);
        EXPECT_EQ(image.isFloat16(), (flags & 4) != 0);
        EXPECT_EQ(image.isFloat32(), (flags & 8) != 0);
        EXPECT_EQ(image.isFloat(), (flags & 12) != 0);
        EXPECT_EQ(image.isRectangle(), (flags & 16) != 0);
        EXPECT_EQ(image.hasDepth(), (flags & 1) != 0);
        EXPECT_EQ(image.hasStencil(), (flags & 1) != 0) << "deliberate: the depth buffer's";
    }
}

struct Shape
{
    unsigned int width;
    unsigned int height;
    bool square;
    bool powerOfTwo;
};

TEST_F(GLImageGLTest, KnowsSquaresAndPowersOfTwo)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    const Shape shapes[] = {{512, 256, false, true}, {64, 64, true, true}, {1, 1, true, true}, {0, 0, true, false},
        {0, 4, false, false}, {4, 0, false, false}, {3, 3, true, false}, {4, 6, false, false}, {6, 4, false, false}};
    for (const Shape& shape : shapes) {
        GLRenderTextureFBO target(context());
        target.create(shape.width, shape.height, 4, 0);
        GLImage image;
        image.setup(&target, false);
        EXPECT_EQ(image.isSquare(), shape.square) << shape.width << " x " << shape.height;
        EXPECT_EQ(image.isPowerOfTwo(), shape.powerOfTwo) << shape.width << " x " << shape.height;
    }
}

// Use

TEST_F(GLImageGLTest, PassesItsUseOnToTheRenderTexture)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    const auto target = makeTarget(context(), 6, 4, 4, 0);
    GLImage image;
    image.setup(target.get(), false);
    const auto expectSame = [&](auto ofImage, auto ofTarget) {
        const Calls calls = callsOf(ofImage);
        EXPECT_THAT(calls, Not(IsEmpty()));
        const bool active = target->isActive();
        const bool bound = target->isBound();
        EXPECT_EQ(calls, callsOf(ofTarget));
        EXPECT_EQ(target->isActive(), active);
        EXPECT_EQ(target->isBound(), bound);
    };
    expectSame([&] { image.activate(); }, [&] { target->activate(); });
    expectSame([&] { image.deactivate(); }, [&] { target->deactivate(); });
    expectSame([&] { image.bind(2); }, [&] { target->bind(2); });
    expectSame([&] { image.unbind(); }, [&] { target->unbind(); });
}

// Deliberate.
TEST_F(GLImageGLTest, CopiesNothingOfAnotherImage)
{
    auto picture = makeImage<RGBAImage>(8, 4);
    auto otherPicture = RGBAImage(8, 4);
    GLImage source;
    GLImage image;
    source.setup(cache(), &picture);
    image.setup(cache(), &otherPicture);
    const Names names = namesOf(*image.getRenderTexture());
    const std::string sourceTexture = namesOf(*source.getRenderTexture()).texture;
    setViewport({1, 2, 30, 40});
    EXPECT_EQ(callsOf([&] { image.copySubImage(&source, 1, 1, 0, 0, 4, 4); }),
        join({{"glGetIntegerv(GL_VIEWPORT, ptr)", "glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, " + names.framebuffer + ")",
                  "glViewport(0, 0, 8, 4)"},
            bindCalls("GL_TEXTURE0", RECT, sourceTexture), bindCalls("GL_TEXTURE0", RECT, "0"),
            {TO_WINDOW, "glViewport(1, 2, 30, 40)"}}));
    const std::unique_ptr<RGBAImage> read(image.getRGBAImage());
    EXPECT_EQ(read->getPixels(), otherPicture.getPixels());
    image.copySubImage(&image, 0, 0, 0, 0, 1, 1); // as well
    EXPECT_FALSE(image.getRenderTexture()->isActive());
}

TEST_F(GLImageGLTest, IsReadBack)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    for (const unsigned int flags : {0u, RECTANGLE}) {
        GLImage image;
        image.setup(makeTarget(context(), 14, 6, 4, flags).release(), true);
        const std::string texture = namesOf(*image.getRenderTexture()).texture;
        const std::string target = flags == RECTANGLE ? RECT : "GL_TEXTURE_2D";
        image.activate();
        drawQuarters();
        image.deactivate();
        const auto expectReading = [&](auto read, const std::string& type) {
            const Calls expected = join({bindCalls("GL_TEXTURE0", target, texture),
                {"glGetTexImage(" + target + ", 0, GL_RGBA, " + type + ", ptr)"},
                bindCalls("GL_TEXTURE0", target, "0")});
            EXPECT_EQ(callsOf([&] { delete read(); }), expected);
            image.bind(2);
            EXPECT_EQ(callsOf([&] { delete read(); }), expected) << "also while it is bound elsewhere";
            EXPECT_FALSE(image.getRenderTexture()->isBound());
        };
        expectReading([&] { return image.getRGBAImage(); }, "GL_UNSIGNED_BYTE");
        expectReading([&] { return image.getRGBAFloat32Image(); }, "GL_FLOAT");
        EXPECT_EQ(pictureOf(std::unique_ptr<RGBAImage>(image.getRGBAImage())), quarters(14, 6));
        EXPECT_EQ(pictureOf(std::unique_ptr<RGBAFloat32Image>(image.getRGBAFloat32Image())), quarters(14, 6));
        GLTexture::setStage(2);
        glBindTexture(image.getRenderTexture()->getTextureTarget(), 0);
    }
}

// Deliberate: unlike a render texture's read-back.
TEST_F(GLImageGLTest, IsNotDeactivatedToBeReadBack)
{
    GLImage image;
    image.setup(makeTarget(context(), 8, 8, 4, RECTANGLE).release(), true);
    setViewport({1, 2, 3, 4});
    image.activate();
    const int framebuffer = boundFramebuffer();
    drawQuarters();
    EXPECT_EQ(pictureOf(std::unique_ptr<RGBAImage>(image.getRGBAImage())), quarters(8, 8));
    EXPECT_EQ(boundFramebuffer(), framebuffer);
    EXPECT_EQ(viewport(), (Viewport{0, 0, 8, 8}));
    EXPECT_FALSE(image.getRenderTexture()->isActive()) << "it does not count as active";
    image.deactivate();
    EXPECT_EQ(viewport(), (Viewport{1, 2, 3, 4}));
}

// Drawing

TEST_F(GLImageGLTest, DrawsAQuadOfTheViewportsSizeLessItsPosition)
{
    GLImage image;
    setUpPlain(image, 7, 5);
    const std::string texture = namesOf(*image.getRenderTexture()).texture;
    setViewport({10, 20, 300, 200});
    EXPECT_EQ(callsOf([&] { image.drawToScreen(); }),
        join({{"glGetIntegerv(GL_VIEWPORT, ptr)", "glPushAttrib(GL_ALL_ATTRIB_BITS)"},
            {"glMatrixMode(GL_PROJECTION)", "glPushMatrix()", "glMatrixMode(GL_MODELVIEW)", "glPushMatrix()",
                "glMatrixMode(GL_PROJECTION)", "glLoadIdentity()", "gluOrtho2D(0, 290, 0, 180)",
                "glMatrixMode(GL_MODELVIEW)", "glLoadIdentity()"},
            bindCalls("GL_TEXTURE0", RECT, texture),
            {"glEnable(GL_TEXTURE_RECTANGLE_ARB)", "glDisable(GL_DEPTH_TEST)", "glBegin(GL_QUADS)",
                "glColor3f(1, 1, 1)", "glTexCoord2f(0, 0)", "glVertex2f(0, 0)", "glTexCoord2f(7, 0)",
                "glVertex2f(290, 0)", "glTexCoord2f(7, 5)", "glVertex2f(290, 180)", "glTexCoord2f(0, 5)",
                "glVertex2f(0, 180)", "glEnd()"},
            bindCalls("GL_TEXTURE0", RECT, "0"),
            {"glMatrixMode(GL_MODELVIEW)", "glPopMatrix()", "glMatrixMode(GL_PROJECTION)", "glPopMatrix()",
                "glMatrixMode(GL_MODELVIEW)", "glPopAttrib()"}}));
}

// Deliberate: texture coordinates count texels, also of 2D textures, which repeat.
TEST_F(GLImageGLTest, DrawsA2DTextureOncePerTexel)
{
    GLImage image;
    image.setup(makeTarget(context(), 2, 2, 4, 0).release(), true);
    image.activate();
    drawQuarters();
    image.deactivate();
    image.bind(0);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    image.unbind();
    setViewport({0, 0, 4, 4});
    EXPECT_THAT(callsOf([&] { image.drawToScreen(); }), Contains("glEnable(GL_TEXTURE_2D)"));
    Picture twoByTwo(4, 4);
    for (unsigned int y = 0; y < 4; ++y)
        for (unsigned int x = 0; x < 4; ++x)
            twoByTwo.at(x, y) = QUARTERS[x % 2 + 2 * (y % 2)];
    EXPECT_EQ(readPixels(4, 4), twoByTwo);
}

// A letter that no reflection or turn of it is alike, on a field that shades from left to right and from top to bottom.
RGBAImage makeLetter()
{
    constexpr unsigned int width = 40;
    constexpr unsigned int height = 50;
    RGBAImage picture(width, height);
    const auto fill = [&picture](unsigned int left, unsigned int bottom, unsigned int w, unsigned int h) {
        for (unsigned int y = bottom; y < bottom + h; ++y)
            for (unsigned int x = left; x < left + w; ++x)
                picture.at(x, y) = RGBAImage::Pixel(250, 240, 60, 255);
    };
    for (unsigned int y = 0; y < height; ++y)
        for (unsigned int x = 0; x < width; ++x)
            picture.at(x, y) = RGBAImage::Pixel(20 + 4 * x, 40, 20 + 4 * y, 255);
    fill(10, 8, 6, 34);
    fill(16, 36, 16, 6);
    fill(16, 22, 10, 6);
    return picture;
}

// Draws into a larger target, whose picture is compared.
TEST_F(GLImageGLTest, FillsTheViewport)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    RGBAImage letter = makeLetter();
    GLImage image;
    image.setup(cache(), &letter);
    const auto screen = makeTarget(context(), 200, 160, 4, DEPTH);
    screen->activate();
    glClearColor(0.9f, 0.9f, 0.9f, 1);
    glClearDepth(0); // nothing that is tested would be seen
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    setViewport({10, 20, 80, 100});
    image.drawToScreen();
    setViewport({100, 10, 40, 50});
    image.drawToScreen();
    setViewport({150, 60, 45, 90});
    image.drawToScreen();
    screen->deactivate();
    EXPECT_TRUE(matchesReference(pictureOf(std::unique_ptr<RGBAImage>(screen->getRGBAImage())), "GLImage/drawToScreen",
        {.perChannel = 4, .differingPixels = 0.02}));
}

TEST_F(GLImageGLTest, DrawsTexelForPixelWhatItHolds)
{
    auto picture = makeImage<RGBAImage>(60, 40);
    GLImage image;
    image.setup(cache(), &picture);
    setViewport({0, 0, 60, 40});
    image.drawToScreen();
    EXPECT_EQ(readPixels(60, 40), pictureOf(picture));
}

TEST_F(GLImageGLTest, LeavesTheStateAsItWasWhenItDraws)
{
    GLImage image;
    setUpPlain(image, 4, 4);
    glEnable(GL_DEPTH_TEST);
    glColor4f(0.25f, 0.5f, 0.75f, 1);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glScalef(0.5f, 0.25f, 1);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatef(1, 2, 3);
    glMatrixMode(GL_TEXTURE);
    GLTexture::setStage(3);
    using Matrix = std::array<float, 16>;
    const auto matrix = [](GLenum name) {
        Matrix values{};
        glGetFloatv(name, values.data());
        return values;
    };
    const Matrix projection = matrix(GL_PROJECTION_MATRIX);
    const Matrix modelview = matrix(GL_MODELVIEW_MATRIX);

    image.drawToScreen();
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_RECTANGLE_ARB));
    std::array<float, 4> colour{};
    glGetFloatv(GL_CURRENT_COLOR, colour.data());
    EXPECT_THAT(colour, ElementsAre(0.25f, 0.5f, 0.75f, 1));
    EXPECT_EQ(matrix(GL_PROJECTION_MATRIX), projection);
    EXPECT_EQ(matrix(GL_MODELVIEW_MATRIX), modelview);
    EXPECT_EQ(getInteger(GL_MATRIX_MODE), GL_TEXTURE);
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE3);
    EXPECT_EQ(getInteger(GL_ATTRIB_STACK_DEPTH), 0);
    EXPECT_FALSE(image.getRenderTexture()->isBound());
}

// Deliberate: what is drawn then is as wide as nothing.
TEST_F(GLImageGLTest, DrawsNothingInAViewportAsWideAsFarToTheRight)
{
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    RGBAImage letter = makeLetter();
    GLImage image;
    image.setup(cache(), &letter);
    setViewport({20, 0, 20, 30});
    image.drawToScreen();
    EXPECT_THAT(drainErrors(), ElementsAre(static_cast<unsigned int>(GL_INVALID_VALUE))) << "of the projection";
    EXPECT_THAT(readPixels().pixels, Each(Pixel{0, 0, 0, 0}));
    EXPECT_EQ(getInteger(GL_ATTRIB_STACK_DEPTH), 0);
}

TEST_F(GLImageGLTest, LosesNoNames)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    RGBAImage picture(3, 3);
    auto lender = makeTarget(context(), 2, 2, 4, 0);
    {
        GLImage images[4];
        for (unsigned int i = 0; i < 400; ++i) {
            GLImage& image = images[i % 4];
            switch (i % 7) {
            case 0: image.setup(makeTarget(context(), 1 + i % 5, 3, 4, 0).release(), true); break;
            case 1: image.setup(cache(), 1 + i % 5, 4, 3, i % 2 != 0, false, false, false, false); break;
            case 2: image.setup(lender.get(), false); break;
            case 3: image.setup(nullptr, true); break;
            default: image.setup(cache(), &picture); break;
            }
            if (image.getRenderTexture() && i % 3 == 0)
                delete image.getRGBAFloat32Image();
        }
    }
    lender.reset();
    cache()->clearUnused();
    EXPECT_EQ(countNames(), NumNames());
}

} // namespace
} // namespace tavo
