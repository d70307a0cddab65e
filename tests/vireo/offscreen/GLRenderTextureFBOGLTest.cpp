#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <utility>

#include "tests/support/CallRecorder.h"
#include "tests/support/extensions.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/PrivateMember.h"
#include "tests/vireo/Undestroyed.h"
#include "tests/vireo/offscreen/renderTextures.h"
#include "tests/vireo/textures/floatFormats.h"
#include "tests/vireo/textures/texels.h"
#include "tests/vireo/textures/textureCalls.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {

struct TextureMember
{
    friend auto memberOf(TextureMember);
};
template struct PrivateMember<TextureMember, &GLRenderTextureFBO::m_Texture>;

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// The calls that make a texture.
Calls textureCalls(const std::string& name, const std::string& target, const std::string& filter,
    const std::string& wrap, const std::string& image)
{
    return join({{"glGenTextures(1, ptr)"}, bindCalls("GL_TEXTURE0", target, name),
        {
            "glTexParameteri(" + target + ", GL_TEXTURE_MAG_FILTER, " + filter + ")",
            "glTexParameteri(" + target + ", GL_TEXTURE_MIN_FILTER, " + filter + ")",
            "glTexParameteri(" + target + ", GL_TEXTURE_WRAP_S, " + wrap + ")",
            "glTexParameteri(" + target + ", GL_TEXTURE_WRAP_T, " + wrap + ")",
            "glTexImage2D(" + target + ", 0, " + image + ", null)",
        }});
}

// The calls that make a framebuffer for a texture.
Calls framebufferCalls(const std::string& framebuffer, const std::string& attachment, const std::string& target,
    const std::string& texture)
{
    return {"glGenFramebuffersEXT(1, ptr)", "glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, " + framebuffer + ")",
        "glFramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, " + attachment + ", " + target + ", " + texture + ", 0)"};
}

// The calls that make a buffer of `storage` ("format, width, height") and attach it.
Calls bufferCalls(const std::string& name, const std::string& storage, const std::string& attachment)
{
    return {"glGenRenderbuffersEXT(1, ptr)", "glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, " + name + ")",
        "glRenderbufferStorageEXT(GL_RENDERBUFFER_EXT, " + storage + ")",
        "glFramebufferRenderbufferEXT(GL_FRAMEBUFFER_EXT, " + attachment + ", GL_RENDERBUFFER_EXT, " + name + ")"};
}

const std::string CHECK = "glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT)";

using GLRenderTextureFBOGLTest = ContextTest;

TEST_F(GLRenderTextureFBOGLTest, StartsEmptyAndDiesSo)
{
    std::unique_ptr<GLRenderTextureFBO> empty;
    EXPECT_THAT(callsOf([&] { empty = makeTarget(context()); }), IsEmpty());
    EXPECT_EQ(empty->getContext(), context());
    EXPECT_FALSE(empty->isActive());
    EXPECT_FALSE(empty->isBound());
    EXPECT_FALSE(empty->isPureDepthTexture());
    EXPECT_FALSE(empty->hasDepth());
    EXPECT_FALSE(empty->hasStencil());
    EXPECT_FALSE(empty->isFloat16());
    EXPECT_FALSE(empty->isFloat32());
    EXPECT_FALSE(empty->isRectangle());
    EXPECT_EQ(empty->getWidth(), 0u);
    EXPECT_EQ(empty->getHeight(), 0u);
    EXPECT_EQ(empty->getNumComponents(), 0u);
    EXPECT_THAT(callsOf([&] { empty.reset(); }), IsEmpty());
}

// Creation

TEST_F(GLRenderTextureFBOGLTest, IsMadeOfA2DTexture)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    auto target = makeTarget(context());
    CallRecorder recorder;
    EXPECT_TRUE(target->create(100, 60, 4, 0));
    const Names names = namesOf(*target);
    expectCalls(
        recorder, join({textureCalls(names.texture, "GL_TEXTURE_2D", "GL_LINEAR", "GL_REPEAT",
                            "GL_RGBA, 100, 60, 0, GL_RGBA, GL_UNSIGNED_BYTE"),
                      framebufferCalls(names.framebuffer, "GL_COLOR_ATTACHMENT0_EXT", "GL_TEXTURE_2D", names.texture),
                      {CHECK, TO_WINDOW}}));
    EXPECT_EQ(target->getWidth(), 100u);
    EXPECT_EQ(target->getHeight(), 60u);
    EXPECT_EQ(target->getNumComponents(), 4u);
    EXPECT_EQ(target->getTextureTarget(), static_cast<unsigned int>(GL_TEXTURE_2D));
    EXPECT_FALSE(target->isPureDepthTexture());
    EXPECT_EQ(names.depthBuffer, "0");
    EXPECT_EQ(names.stencilBuffer, "0");
}

TEST_F(GLRenderTextureFBOGLTest, IsMadeOfARectangle)
{
    auto target = makeTarget(context());
    CallRecorder recorder;
    EXPECT_TRUE(target->create(7, 5, 3, RECTANGLE));
    const Names names = namesOf(*target);
    expectCalls(recorder,
        join({textureCalls(
                  names.texture, RECT, "GL_LINEAR", "GL_CLAMP_TO_EDGE", "GL_RGB, 7, 5, 0, GL_RGB, GL_UNSIGNED_BYTE"),
            {"glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)"},
            framebufferCalls(names.framebuffer, "GL_COLOR_ATTACHMENT0_EXT", RECT, names.texture), {CHECK, TO_WINDOW}}));
    EXPECT_EQ(target->getTextureTarget(), static_cast<unsigned int>(GL_TEXTURE_RECTANGLE_ARB));
    EXPECT_EQ(target->getNumComponents(), 3u);
}

TEST_F(GLRenderTextureFBOGLTest, HasADepthBuffer)
{
    auto target = makeTarget(context());
    CallRecorder recorder;
    EXPECT_TRUE(target->create(32, 16, 4, DEPTH));
    const Names names = namesOf(*target);
    expectCalls(
        recorder, join({textureCalls(names.texture, "GL_TEXTURE_2D", "GL_LINEAR", "GL_REPEAT",
                            "GL_RGBA, 32, 16, 0, GL_RGBA, GL_UNSIGNED_BYTE"),
                      framebufferCalls(names.framebuffer, "GL_COLOR_ATTACHMENT0_EXT", "GL_TEXTURE_2D", names.texture),
                      bufferCalls(names.depthBuffer, "GL_DEPTH_COMPONENT24, 32, 16", "GL_DEPTH_ATTACHMENT_EXT"),
                      {CHECK, TO_WINDOW}}));
    EXPECT_NE(names.depthBuffer, "0");
    EXPECT_EQ(std::to_string(getInteger(GL_RENDERBUFFER_BINDING_EXT)), names.depthBuffer) << "it stays bound";
}

TEST_F(GLRenderTextureFBOGLTest, HasAStencilBuffer)
{
    auto target = makeTarget(context());
    CallRecorder recorder;
    EXPECT_TRUE(target->create(32, 16, 4, STENCIL | RECTANGLE));
    const Names names = namesOf(*target);
    expectCalls(recorder, join({textureCalls(names.texture, RECT, "GL_LINEAR", "GL_CLAMP_TO_EDGE",
                                    "GL_RGBA, 32, 16, 0, GL_RGBA, GL_UNSIGNED_BYTE"),
                              {"glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)"},
                              framebufferCalls(names.framebuffer, "GL_COLOR_ATTACHMENT0_EXT", RECT, names.texture),
                              bufferCalls(names.stencilBuffer, "GL_STENCIL_INDEX, 32, 16", "GL_STENCIL_ATTACHMENT_EXT"),
                              {CHECK, TO_WINDOW}}));
    EXPECT_NE(names.stencilBuffer, "0");
    EXPECT_EQ(names.depthBuffer, "0");
}

// Many drivers want both in one buffer and refuse this; what is made is the same.
TEST_F(GLRenderTextureFBOGLTest, MakesTheDepthBufferBeforeTheStencilBuffer)
{
    auto target = makeTarget(context());
    CallRecorder recorder;
    const bool accepted = target->create(8, 4, 4, DEPTH | STENCIL);
    const Names names = accepted ? namesOf(*target) : boundNames();
    expectCalls(
        recorder, join({textureCalls(names.texture, "GL_TEXTURE_2D", "GL_LINEAR", "GL_REPEAT",
                            "GL_RGBA, 8, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE"),
                      framebufferCalls(names.framebuffer, "GL_COLOR_ATTACHMENT0_EXT", "GL_TEXTURE_2D", names.texture),
                      bufferCalls(names.depthBuffer, "GL_DEPTH_COMPONENT24, 8, 4", "GL_DEPTH_ATTACHMENT_EXT"),
                      bufferCalls(names.stencilBuffer, "GL_STENCIL_INDEX, 8, 4", "GL_STENCIL_ATTACHMENT_EXT"),
                      accepted ? Calls{CHECK, TO_WINDOW} : Calls{CHECK}}));
}

TEST_F(GLRenderTextureFBOGLTest, TellsTheFlagsItWasGiven)
{
    for (unsigned int flags = 0; flags < 64; ++flags) {
        auto target = makeTarget(context());
        target->create(0, 0, 4, flags); // the driver refuses all of them alike
        EXPECT_EQ(target->hasDepth(), (flags & 1) != 0);
        EXPECT_EQ(target->hasStencil(), (flags & 2) != 0);
        EXPECT_EQ(target->isFloat16(), (flags & 4) != 0);
        EXPECT_EQ(target->isFloat32(), (flags & 8) != 0);
        EXPECT_EQ(target->isRectangle(), (flags & 16) != 0);
        (void)drainErrors(); // of drivers without the float formats
    }
}

struct FloatRectangle
{
    unsigned int flags;
    unsigned int components;
    bool half;
};

TEST_F(GLRenderTextureFBOGLTest, IsMadeOfARectangleOfFloats)
{
    constexpr FloatRectangle rectangles[] = {
        {FLOAT16, 4, true},
        {FLOAT32, 4, false},
        {FLOAT16 | FLOAT32, 4, false},
        {FLOAT16, 1, true},
        {FLOAT32, 3, false},
    };
    for (const FloatRectangle& rectangle : rectangles) {
        auto target = makeTarget(context());
        CallRecorder recorder;
        const bool accepted = target->create(100, 100, rectangle.components, RECTANGLE | rectangle.flags);
        const Names names = accepted ? namesOf(*target) : boundNames();
        const std::string texture = std::to_string(getInteger(GL_TEXTURE_BINDING_RECTANGLE_ARB));
        const Calls calls = recorder.calls();
        const FloatFormat& format = rectFloatFormat(rectangle.components, rectangle.half);
        EXPECT_EQ(Calls(calls.begin(), calls.begin() + 13),
            join({{"glGenTextures(1, ptr)"}, bindCalls("GL_TEXTURE0", RECT, texture),
                {
                    "glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MAG_FILTER, GL_NEAREST)",
                    "glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MIN_FILTER, GL_NEAREST)",
                    "glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)",
                    "glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)",
                    "glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_WRAP_R, GL_CLAMP_TO_EDGE)",
                    texImageCall(
                        "glTexImage2D", RECT, format.internalFormat, "100, 100", format.clientFormat, "GL_FLOAT, null"),
                    "glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)",
                },
                framebufferCalls(names.framebuffer, "GL_COLOR_ATTACHMENT0_EXT", RECT, texture)}));
        expectUploadAsDriverAllows();
        EXPECT_EQ(accepted, hasFloatFormats()) << format.internalFormat;
    }
}

// Deliberate: only rectangles have floats.
TEST_F(GLRenderTextureFBOGLTest, HasBytesInA2DTextureWhateverTheFlagsSay)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    for (const unsigned int flags : {FLOAT16, FLOAT32, FLOAT16 | FLOAT32}) {
        auto target = makeTarget(context());
        CallRecorder recorder;
        EXPECT_TRUE(target->create(640, 480, 4, flags));
        const Names names = namesOf(*target);
        expectCalls(recorder,
            join({textureCalls(names.texture, "GL_TEXTURE_2D", "GL_LINEAR", "GL_REPEAT",
                      "GL_RGBA, 640, 480, 0, GL_RGBA, GL_UNSIGNED_BYTE"),
                framebufferCalls(names.framebuffer, "GL_COLOR_ATTACHMENT0_EXT", "GL_TEXTURE_2D", names.texture),
                {CHECK, TO_WINDOW}}));
        EXPECT_EQ(getLevelParameter(GL_TEXTURE_2D, GL_TEXTURE_RED_SIZE), 8);
        EXPECT_EQ(getLevelParameter(GL_TEXTURE_2D, GL_TEXTURE_ALPHA_SIZE), 8);
        EXPECT_EQ(target->isFloat16(), (flags & FLOAT16) != 0);
        EXPECT_EQ(target->isFloat32(), (flags & FLOAT32) != 0);
    }
}

TEST_F(GLRenderTextureFBOGLTest, LeavesItsTextureBoundOnUnitZeroAndTheWindowToBeDrawnInto)
{
    GLTexture::setStage(3);
    const auto target = makeTarget(context(), 8, 8, 4, DEPTH);
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
    EXPECT_EQ(boundFramebuffer(), 0);
    EXPECT_EQ(std::to_string(getInteger(GL_TEXTURE_BINDING_2D)), namesOf(*target).texture);
    EXPECT_FALSE(target->isActive());
    EXPECT_FALSE(target->isBound()) << "it does not count as bound";
}

TEST_F(GLRenderTextureFBOGLTest, KeepsEverythingWhenTheDriverRefuses)
{
    auto target = makeTarget(context());
    const Calls calls = callsOf([&] { EXPECT_FALSE(target->create(0, 0, 4, DEPTH)); });
    const Names names = boundNames();
    EXPECT_EQ(
        calls, join({textureCalls(names.texture, "GL_TEXTURE_2D", "GL_LINEAR", "GL_REPEAT",
                         "GL_RGBA, 0, 0, 0, GL_RGBA, GL_UNSIGNED_BYTE"),
                   framebufferCalls(names.framebuffer, "GL_COLOR_ATTACHMENT0_EXT", "GL_TEXTURE_2D", names.texture),
                   bufferCalls(names.depthBuffer, "GL_DEPTH_COMPONENT24, 0, 0", "GL_DEPTH_ATTACHMENT_EXT"), {CHECK}}));
    EXPECT_NE(names.framebuffer, "0") << "the framebuffer stays bound";
    EXPECT_EQ(countNames(), (NumNames{1, 1, 1}));

    EXPECT_THAT(callsOf([&] { target.reset(); }), ElementsAre("glDeleteTextures(1, (" + names.texture + "))",
                                                      "glDeleteFramebuffersEXT(1, (" + names.framebuffer + "))"));
    EXPECT_EQ(countNames(), (NumNames{0, 0, 1}));
    EXPECT_EQ(boundFramebuffer(), 0) << "what GL does about a bound framebuffer";
}

TEST_F(GLRenderTextureFBOGLTest, RefusesComponentsThatAreNoFormat)
{
    auto target = makeTarget(context());
    EXPECT_FALSE(target->create(4, 4, 5, 0));
    EXPECT_THAT(drainErrors(), SizeIs(1)) << "GL's refusal of the texture";
    EXPECT_EQ(target->getNumComponents(), 5u);
}

// Deliberate.
TEST_F(GLRenderTextureFBOGLTest, LeavesTheOldObjectsAloneWhenItIsMadeAgain)
{
    auto target = makeTarget(context(), 8, 8, 4, DEPTH);
    const Names first = namesOf(*target);
    const std::unique_ptr<GLTexture> firstTexture(target.get()->*memberOf(TextureMember()));
    EXPECT_TRUE(target->create(4, 4, 4, RECTANGLE));
    const Names second = namesOf(*target);
    EXPECT_NE(first.framebuffer, second.framebuffer);
    EXPECT_EQ(countNames(), (NumNames{2, 2, 1}));
    EXPECT_EQ(target->getWidth(), 4u);
    EXPECT_FALSE(target->hasDepth());

    EXPECT_THAT(callsOf([&] { target.reset(); }), ElementsAre("glDeleteTextures(1, (" + second.texture + "))",
                                                      "glDeleteFramebuffersEXT(1, (" + second.framebuffer + "))"));
    EXPECT_EQ(countNames(), (NumNames{1, 1, 1})) << "the first ones";
}

// Deliberate, too, whichever of the two comes first.
TEST_F(GLRenderTextureFBOGLTest, LeavesTheOldObjectsAloneWhereDepthTexturesAreMade)
{
    const auto makeAgain = [](GLRenderTextureFBO& target, auto makeIt) {
        const std::unique_ptr<GLTexture> old(target.*memberOf(TextureMember()));
        const Calls calls = callsOf([&] { EXPECT_TRUE(makeIt()); });
        for (const std::string& call : calls)
            EXPECT_FALSE(call.starts_with("glDelete")) << call;
        EXPECT_NE(target.*memberOf(TextureMember()), old.get());
    };
    const auto target = makeTarget(context(), 8, 8, 3, 0);
    makeAgain(*target, [&] { return target->createDepthTexture(4, 4); });
    EXPECT_EQ(target->getNumComponents(), 0u);
    makeAgain(*target, [&] { return target->createDepthTexture(8, 8); });
    makeAgain(*target, [&] { return target->create(4, 4, 4, 0); });
    EXPECT_EQ(target->getNumComponents(), 4u);
}

// Depth textures

TEST_F(GLRenderTextureFBOGLTest, IsMadeOfADepthTexture)
{
    GLTexture::setStage(2);
    auto target = makeTarget(context());
    CallRecorder recorder;
    EXPECT_TRUE(target->createDepthTexture(64, 32));
    const Names names = namesOf(*target);
    const std::string& texture = names.depthBuffer; // it is in the place of a depth buffer
    expectCalls(recorder,
        join({{"glGenTextures(1, ptr)"}, bindCalls("GL_TEXTURE0", "GL_TEXTURE_2D", texture),
            {
                "glTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT, 64, 32, 0, GL_DEPTH_COMPONENT, GL_FLOAT, null)",
                "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST)",
                "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST)",
                "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)",
                "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)",
            },
            bindCalls("GL_TEXTURE0", "GL_TEXTURE_2D", "0"),
            framebufferCalls(names.framebuffer, "GL_DEPTH_ATTACHMENT_EXT", "GL_TEXTURE_2D", texture),
            {"glDrawBuffer(GL_NONE)", "glReadBuffer(GL_NONE)", CHECK, TO_WINDOW}}));
    EXPECT_TRUE(target->isPureDepthTexture());
    EXPECT_TRUE(target->hasDepth());
    EXPECT_FALSE(target->hasStencil());
    EXPECT_FALSE(target->isRectangle());
    EXPECT_EQ(target->getWidth(), 64u);
    EXPECT_EQ(target->getHeight(), 32u);
    EXPECT_EQ(target->getNumComponents(), 0u);
    EXPECT_EQ(target->getTextureTarget(), static_cast<unsigned int>(GL_TEXTURE_2D));
    EXPECT_EQ(names.texture, "0");
    EXPECT_EQ(countNames(), (NumNames{1, 1, 0}));

    target->activate();
    EXPECT_EQ(getInteger(GL_DRAW_BUFFER), GL_NONE) << "stays with the framebuffer";
    EXPECT_EQ(getInteger(GL_READ_BUFFER), GL_NONE);
    target->deactivate();
    EXPECT_NE(getInteger(GL_DRAW_BUFFER), GL_NONE) << "and is not the window's";
}

TEST_F(GLRenderTextureFBOGLTest, RefusesADepthTextureThatIsNoPowerOfTwoBeforeItMakesAnything)
{
    constexpr std::pair<unsigned int, unsigned int> sizes[] = {
        {640, 512}, {512, 640}, {3, 1}, {1, 3}, {6, 6}, {12, 16}, {257, 256}, {0xFFFFFFFF, 1}, {0, 5}};
    for (const auto& [width, height] : sizes) {
        auto target = makeTarget(context());
        EXPECT_THAT(callsOf([&, w = width, h = height] { EXPECT_FALSE(target->createDepthTexture(w, h)); }), IsEmpty());
        EXPECT_TRUE(target->isPureDepthTexture()) << "deliberate: from the call on";
        EXPECT_FALSE(target->hasDepth());
        EXPECT_EQ(target->getWidth(), 0u);
        EXPECT_EQ(target->getHeight(), 0u);
        EXPECT_THAT(callsOf([&] { target.reset(); }), IsEmpty());
    }
}

TEST_F(GLRenderTextureFBOGLTest, AcceptsDepthTexturesOfEveryPowerOfTwo)
{
    for (unsigned int size = 1; size <= 1024; size *= 2) {
        EXPECT_TRUE(makeTarget(context())->createDepthTexture(size, 1));
        EXPECT_TRUE(makeTarget(context())->createDepthTexture(4, size));
    }
}

// Deliberate: 0 passes for a power of two, so that it is the driver that refuses.
TEST_F(GLRenderTextureFBOGLTest, LeavesDepthTexturesOfNoSizeToTheDriver)
{
    auto target = makeTarget(context());
    EXPECT_FALSE(target->createDepthTexture(0, 4));
    EXPECT_TRUE(target->hasDepth());
    EXPECT_EQ(target->getHeight(), 4u);
    EXPECT_EQ(countNames(), (NumNames{1, 1, 0}));
    EXPECT_NE(boundFramebuffer(), 0);
    EXPECT_THAT(callsOf([&] { target.reset(); }), SizeIs(2)) << "the texture and the framebuffer";
    EXPECT_EQ(countNames(), (NumNames{0, 0, 0}));
}

// Deliberate.
TEST_F(GLRenderTextureFBOGLTest, CountsAsADepthTextureForEver)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    const auto target = makeTarget(context());
    EXPECT_FALSE(target->createDepthTexture(3, 3));
    EXPECT_TRUE(target->create(3, 3, 4, 0));
    EXPECT_TRUE(target->isPureDepthTexture());
    EXPECT_EQ(target->getNumComponents(), 4u);
}

TEST_F(GLRenderTextureFBOGLTest, ForgetsItsFlagsWhenADepthTextureIsRefused)
{
    const auto target = makeTarget(context(), 8, 4, 3, STENCIL | FLOAT32);
    EXPECT_FALSE(target->createDepthTexture(3, 3));
    EXPECT_FALSE(target->hasStencil());
    EXPECT_FALSE(target->isFloat32());
    EXPECT_EQ(target->getWidth(), 8u) << "deliberate: only the flags";
    EXPECT_EQ(target->getHeight(), 4u);
    EXPECT_EQ(target->getNumComponents(), 3u);
}

// Lifetimes

TEST_F(GLRenderTextureFBOGLTest, DeletesItsTextureAndThenItsFramebuffer)
{
    auto target = makeTarget(context(), 8, 8, 4, DEPTH);
    const Names names = namesOf(*target);
    EXPECT_THAT(callsOf([&] { target.reset(); }), ElementsAre("glDeleteTextures(1, (" + names.texture + "))",
                                                      "glDeleteFramebuffersEXT(1, (" + names.framebuffer + "))"))
        << "deliberate: the depth buffer stays";
    EXPECT_EQ(countNames(), (NumNames{0, 0, 1}));
}

// The framebuffer deliberately does not wait with the texture.
TEST_F(GLRenderTextureFBOGLTest, DeletesItsFramebufferAtOnceWhileTheTreeIsInactive)
{
    const auto inactive = makeContext();
    auto target = std::make_unique<GLRenderTextureFBO>(inactive.get());
    EXPECT_TRUE(target->create(4, 4, 4, 0));
    const Names names = namesOf(*target);
    EXPECT_THAT(
        callsOf([&] { target.reset(); }), ElementsAre("glDeleteFramebuffersEXT(1, (" + names.framebuffer + "))"));
    EXPECT_THAT(callsOf([&] { inactive->activate(); }),
        ElementsAre("wglGetCurrentContext()", "glDeleteTextures(1, (" + names.texture + "))"));
}

TEST_F(GLRenderTextureFBOGLTest, LeavesItsFramebufferToADyingContext)
{
    auto target = makeTarget(context(), 4, 4, 4, STENCIL);
    const Names names = namesOf(*target);
    EXPECT_THAT(callsOf([&] { destroyContext(); }), ElementsAre("glDeleteTextures(1, (" + names.texture + "))"))
        << "the texture's own affair";
    EXPECT_FALSE(target->isValid());
    EXPECT_THAT(callsOf([&] { target.reset(); }), IsEmpty());
    EXPECT_EQ(countNames(), (NumNames{0, 1, 1}));
}

TEST_F(GLRenderTextureFBOGLTest, LosesNoNamesButItsDepthAndStencilBuffers)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    NumNames expected;
    for (unsigned int i = 0; i < 200; ++i) {
        const unsigned int flags = i % 32 & ~(FLOAT16 | FLOAT32);
        auto target = makeTarget(context());
        target->create(i % 5, i % 7, 1 + i % 4, flags); // refused where a size is 0
        expected.renderbuffers += target->hasDepth() + target->hasStencil();
        if (i % 5 != 0)
            makeTarget(context())->createDepthTexture(1u << i % 7, i % 9);
        if (i % 3 == 0 && boundFramebuffer() == 0)
            delete target->getRGBAImage();
    }
    EXPECT_EQ(countNames(), expected);
}

TEST_F(GLRenderTextureFBOGLTest, IsCopiedFieldByField)
{
    auto inactive = makeContext();
    GLRenderTextureFBO original(inactive.get());
    ASSERT_TRUE(original.create(8, 4, 3, DEPTH | FLOAT16));
    const Names names = namesOf(original);
    original.bind(2);
    const Undestroyed<GLRenderTextureFBO> copy(original);
    const Undestroyed<GLRenderTextureFBO> assigned(inactive.get());
    *assigned = original;
    for (GLRenderTextureFBO* target : {&*copy, &*assigned}) {
        EXPECT_EQ(target->getWidth(), 8u);
        EXPECT_EQ(target->getHeight(), 4u);
        EXPECT_EQ(target->getNumComponents(), 3u);
        EXPECT_TRUE(target->hasDepth());
        EXPECT_TRUE(target->isFloat16());
        EXPECT_TRUE(target->isBound());
        EXPECT_EQ(target->getTextureTarget(), static_cast<unsigned int>(GL_TEXTURE_2D));
        EXPECT_EQ(callsOf([&] { target->unbind(); }), bindCalls("GL_TEXTURE2", "GL_TEXTURE_2D", "0"));
        EXPECT_EQ(namesOf(*target).framebuffer, names.framebuffer);
    }
    inactive.reset(); // tells both that were registered
}

} // namespace
} // namespace tavo
