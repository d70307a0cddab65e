#include <array>
#include <gmock/gmock.h>
#include <memory>
#include <string>

#include "tests/support/CallRecorder.h"
#include "tests/support/extensions.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/offscreen/renderTextures.h"
#include "tests/vireo/offscreen/targetPictures.h"
#include "tests/vireo/textures/floatFormats.h"
#include "tests/vireo/textures/texels.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {
namespace {

using testing::Each;
using testing::ElementsAre;

using GLRenderTextureFBOUseGLTest = ContextTest;

TEST_F(GLRenderTextureFBOUseGLTest, IsActivatedAndDeactivated)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    const auto target = makeTarget(context(), 20, 10, 4, 0);
    const std::string framebuffer = namesOf(*target).framebuffer;
    setViewport({3, 4, 50, 40});
    EXPECT_THAT(callsOf([&] { target->activate(); }),
        ElementsAre("glGetIntegerv(GL_VIEWPORT, ptr)", "glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, " + framebuffer + ")",
            "glViewport(0, 0, 20, 10)"));
    EXPECT_TRUE(target->isActive());
    EXPECT_FALSE(target->isBound());

    EXPECT_THAT(callsOf([&] { target->deactivate(); }), ElementsAre(TO_WINDOW, "glViewport(3, 4, 50, 40)"));
    EXPECT_FALSE(target->isActive());
    EXPECT_FALSE(target->isBound());
}

TEST_F(GLRenderTextureFBOUseGLTest, IsBoundAndUnbound)
{
    const auto target = makeTarget(context(), 4, 4, 4, RECTANGLE);
    EXPECT_EQ(callsOf([&] { target->bind(3); }), bindCalls("GL_TEXTURE3", RECT, namesOf(*target).texture));
    target->bind(3);
    EXPECT_TRUE(target->isBound());
    EXPECT_FALSE(target->isActive());

    GLTexture::setStage(1);
    EXPECT_EQ(callsOf([&] { target->unbind(); }), bindCalls("GL_TEXTURE3", RECT, "0")) << "the unit of the last bind";
    EXPECT_FALSE(target->isBound());
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE3);
}

// Deliberate: binding does not deactivate.
TEST_F(GLRenderTextureFBOUseGLTest, IsStillDrawnIntoWhenItIsBoundWhileActive)
{
    const auto target = makeTarget(context(), 4, 4, 4, 0);
    const std::string framebuffer = namesOf(*target).framebuffer;
    target->activate();
    target->bind(0);
    EXPECT_FALSE(target->isActive());
    EXPECT_TRUE(target->isBound());
    EXPECT_EQ(std::to_string(boundFramebuffer()), framebuffer);
    EXPECT_EQ(viewport(), (Viewport{0, 0, 4, 4}));
    target->unbind();
    EXPECT_FALSE(target->isActive());
    EXPECT_EQ(std::to_string(boundFramebuffer()), framebuffer);
    target->deactivate();
    EXPECT_EQ(boundFramebuffer(), 0);
}

// Deliberate: not to the framebuffer that was bound before.
TEST_F(GLRenderTextureFBOUseGLTest, LeavesNestedTargetsForTheWindow)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    const auto outer = makeTarget(context(), 20, 10, 4, 0);
    const auto inner = makeTarget(context(), 6, 6, 4, 0);
    setViewport({1, 2, 30, 40});
    outer->activate();
    inner->activate();
    inner->deactivate();
    EXPECT_EQ(boundFramebuffer(), 0);
    EXPECT_EQ(viewport(), (Viewport{0, 0, 20, 10})) << "the outer one's, though";
    EXPECT_TRUE(outer->isActive()) << "it does not know";
    outer->deactivate();
    EXPECT_EQ(viewport(), (Viewport{1, 2, 30, 40}));
}

// What a render texture and GL should be like after any calls in any order.
struct UseModel
{
    void activate()
    {
        saved = viewport;
        state = 1;
        framebuffer = true;
        viewport = {0, 0, 6, 4};
    }

    void deactivate()
    {
        framebuffer = false;
        state = 0;
        viewport = saved;
    }

    void bind(unsigned int newUnit)
    {
        unit = activeUnit = newUnit;
        bound[newUnit] = true;
        state = 2;
    }

    void unbind()
    {
        activeUnit = unit;
        bound[unit] = false;
        state = 0;
    }

    void read()
    {
        const int before = state;
        if (before == 1)
            deactivate();
        if (before != 2) {
            bind(0);
            unbind();
        }
        if (before == 1)
            activate();
    }

    Viewport viewport;
    Viewport saved{};
    int state = 0;
    bool framebuffer = false;
    unsigned int unit = 0;
    unsigned int activeUnit = 0;
    std::array<bool, 3> bound{};
};

constexpr unsigned int NUM_USES = 7;

void use(GLRenderTextureFBO& target, UseModel& model, unsigned int choice)
{
    switch (choice) {
    case 0: target.activate(); return model.activate();
    case 1: target.deactivate(); return model.deactivate();
    case 2: target.bind(0); return model.bind(0);
    case 3: target.bind(2); return model.bind(2);
    case 4: target.unbind(); return model.unbind();
    case 5: delete target.getRGBAImage(); return model.read();
    default: delete target.getRGBAFloat32Image(); return model.read();
    }
}

// Puts GL and the render texture where the model is.
void startOver(GLRenderTextureFBO& target, const Viewport& viewport)
{
    target.activate();
    for (const unsigned int unit : {2u, 1u, 0u}) {
        target.bind(unit);
        target.unbind();
    }
    glViewport(0, 0, 0, 0); // what the render texture has saved
    target.activate();
    target.deactivate();
    glViewport(viewport[0], viewport[1], viewport[2], viewport[3]);
}

TEST_F(GLRenderTextureFBOUseGLTest, DoesWhatItSaysInEveryOrderOfCalls)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    const auto target = makeTarget(context(), 6, 4, 4, 0);
    const std::string texture = namesOf(*target).texture;
    const std::string framebuffer = namesOf(*target).framebuffer;
    constexpr unsigned int length = 4;
    const Viewport start{5, 6, 40, 30};
    for (unsigned int order = 0; order < 7 * 7 * 7 * 7 && !HasFailure(); ++order) {
        startOver(*target, start);
        UseModel model{.viewport = start};
        std::string trace = "calls";
        for (unsigned int i = 0, rest = order; i < length; ++i, rest /= NUM_USES) {
            use(*target, model, rest % NUM_USES);
            trace += ' ' + std::to_string(rest % NUM_USES);
            SCOPED_TRACE(trace);
            EXPECT_EQ(target->isActive(), model.state == 1);
            EXPECT_EQ(target->isBound(), model.state == 2);
            EXPECT_EQ(viewport(), model.viewport);
            EXPECT_EQ(std::to_string(boundFramebuffer()), model.framebuffer ? framebuffer : "0");
            EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), static_cast<int>(GL_TEXTURE0 + model.activeUnit));
            for (unsigned int unit = 0; unit < model.bound.size(); ++unit) {
                GLTexture::setStage(static_cast<int>(unit));
                EXPECT_EQ(std::to_string(getInteger(GL_TEXTURE_BINDING_2D)), model.bound[unit] ? texture : "0");
            }
            GLTexture::setStage(static_cast<int>(model.activeUnit));
        }
    }
    startOver(*target, start);
}

// Reading back

class GLRenderTextureFBOReadBackGLTest : public ContextTest, public testing::WithParamInterface<unsigned int>
{
protected:
    static constexpr unsigned int WIDTH = 14;
    static constexpr unsigned int HEIGHT = 6;

    std::unique_ptr<GLRenderTextureFBO> makePainted()
    {
        auto target = makeTarget(context(), WIDTH, HEIGHT, 4, GetParam());
        glDisable(GL_DEPTH_TEST);
        target->activate();
        drawQuarters();
        target->deactivate();
        return target;
    }

    // The same of bytes and of floats.
    void expectQuarters(GLRenderTextureFBO& target)
    {
        EXPECT_EQ(pictureOf(std::unique_ptr<RGBAImage>(target.getRGBAImage())), quarters(WIDTH, HEIGHT));
        EXPECT_EQ(pictureOf(std::unique_ptr<RGBAFloat32Image>(target.getRGBAFloat32Image())), quarters(WIDTH, HEIGHT));
    }

    static std::string readCall(const std::string& target, const std::string& type)
    {
        return "glGetTexImage(" + target + ", 0, GL_RGBA, " + type + ", ptr)";
    }

    // The calls of one of the two read-backs, which differ in the type alone.
    template <typename Read>
    static Calls callsOfReading(Read read)
    {
        return callsOf([&] { delete read(); });
    }

    // Fails unless both read-backs make the calls before, the read, and the calls after.
    static void expectReadCalls(GLRenderTextureFBO& target, const Calls& before, const Calls& after)
    {
        const std::string name = target.isRectangle() ? RECT : "GL_TEXTURE_2D";
        EXPECT_EQ(callsOfReading([&] { return target.getRGBAImage(); }),
            join({before, {readCall(name, "GL_UNSIGNED_BYTE")}, after}));
        EXPECT_EQ(callsOfReading([&] { return target.getRGBAFloat32Image(); }),
            join({before, {readCall(name, "GL_FLOAT")}, after}));
    }

    std::string targetName() const { return (GetParam() & RECTANGLE) != 0 ? RECT : "GL_TEXTURE_2D"; }
};

TEST_P(GLRenderTextureFBOReadBackGLTest, ReadsWhatWasDrawnWhileIdle)
{
    if ((GetParam() & GLRenderTextureFBO::FLAG_RECTANGLE) == 0)
        NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    const auto target = makePainted();
    const std::string texture = namesOf(*target).texture;
    setViewport({3, 4, 50, 40});
    target->unbind();
    expectReadCalls(
        *target, bindCalls("GL_TEXTURE0", targetName(), texture), bindCalls("GL_TEXTURE0", targetName(), "0"));
    expectQuarters(*target);
    EXPECT_FALSE(target->isActive());
    EXPECT_FALSE(target->isBound());
    EXPECT_EQ(viewport(), (Viewport{3, 4, 50, 40}));
}

TEST_P(GLRenderTextureFBOReadBackGLTest, ReadsWhatWasDrawnWhileActive)
{
    if ((GetParam() & GLRenderTextureFBO::FLAG_RECTANGLE) == 0)
        NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    const auto target = makePainted();
    const Names names = namesOf(*target);
    setViewport({3, 4, 50, 40});
    target->activate();
    expectReadCalls(*target,
        join({{TO_WINDOW, "glViewport(3, 4, 50, 40)"}, bindCalls("GL_TEXTURE0", targetName(), names.texture)}),
        join({bindCalls("GL_TEXTURE0", targetName(), "0"),
            {"glGetIntegerv(GL_VIEWPORT, ptr)", "glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, " + names.framebuffer + ")",
                "glViewport(0, 0, 14, 6)"}}));
    expectQuarters(*target);
    EXPECT_TRUE(target->isActive());
    EXPECT_EQ(viewport(), (Viewport{0, 0, WIDTH, HEIGHT}));
    EXPECT_EQ(std::to_string(boundFramebuffer()), names.framebuffer);
    target->deactivate();
    EXPECT_EQ(viewport(), (Viewport{3, 4, 50, 40}));
}

TEST_P(GLRenderTextureFBOReadBackGLTest, ReadsWhatWasDrawnWhileBound)
{
    if ((GetParam() & GLRenderTextureFBO::FLAG_RECTANGLE) == 0)
        NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    const auto target = makePainted();
    target->bind(2);
    expectReadCalls(*target, {}, {});
    expectQuarters(*target);
    EXPECT_TRUE(target->isBound());
    EXPECT_EQ(std::to_string(
                  getInteger((GetParam() & RECTANGLE) != 0 ? GL_TEXTURE_BINDING_RECTANGLE_ARB : GL_TEXTURE_BINDING_2D)),
        namesOf(*target).texture)
        << "on the unit it was bound on";
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE2);
}

// Deliberate: a viewport that was set since activate is not saved.
TEST_P(GLRenderTextureFBOReadBackGLTest, HasTheWholeViewportAfterReadingWhileActive)
{
    if ((GetParam() & GLRenderTextureFBO::FLAG_RECTANGLE) == 0)
        NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    const auto target = makePainted();
    target->activate();
    setViewport({1, 1, 2, 2});
    expectQuarters(*target);
    EXPECT_EQ(viewport(), (Viewport{0, 0, WIDTH, HEIGHT}));
    target->deactivate();
}

TEST_P(GLRenderTextureFBOReadBackGLTest, ReadsEveryNumberOfComponents)
{
    for (unsigned int components = 1; components <= 4; ++components) {
        const auto target = makeTarget(context(), 4, 4, components, GetParam());
        target->activate();
        glClearColor(0.2f, 0.4f, 0.6f, 0.8f); // 51, 102, 153, 204
        glClear(GL_COLOR_BUFFER_BIT);
        target->deactivate();
        const Picture picture = pictureOf(std::unique_ptr<RGBAImage>(target->getRGBAImage()));
        // GL reads luminance as red.
        const Pixel expected[] = {{51, 0, 0, 255}, {51, 0, 0, 204}, {51, 102, 153, 255}, {51, 102, 153, 204}};
        EXPECT_THAT(picture.pixels, Each(expected[components - 1])) << components << " components";
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, GLRenderTextureFBOReadBackGLTest,
    testing::Values(0u, GLRenderTextureFBO::FLAG_DEPTH, GLRenderTextureFBO::FLAG_RECTANGLE,
        GLRenderTextureFBO::FLAG_RECTANGLE | GLRenderTextureFBO::FLAG_DEPTH),
    [](const auto& info) {
        return std::string(info.param & GLRenderTextureFBO::FLAG_RECTANGLE ? "Rectangle" : "TwoD") +
               (info.param & GLRenderTextureFBO::FLAG_DEPTH ? "WithDepth" : "");
    });

TEST_F(GLRenderTextureFBOUseGLTest, ReadsADepthTextureAsZeros)
{
    const auto target = makeTarget(context());
    EXPECT_TRUE(target->createDepthTexture(4, 2));
    const std::unique_ptr<RGBAImage> image(target->getRGBAImage());
    EXPECT_THAT(drainErrors(), ElementsAre(static_cast<unsigned int>(GL_INVALID_OPERATION)));
    EXPECT_EQ(image->getWidth(), 4u);
    EXPECT_EQ(image->getHeight(), 2u);
    EXPECT_THAT(image->getPixels(), Each(RGBAImage::Pixel(0, 0, 0, 0)));
    EXPECT_FALSE(target->isBound());
}

TEST_F(GLRenderTextureFBOUseGLTest, KeepsFloatsInARectangle)
{
    if (!hasFloatFormats())
        GTEST_SKIP() << "the driver has no float formats for rectangles";
    const auto target = makeTarget(context(), 5, 3, 4, RECTANGLE | FLOAT32);
    target->bind(0);
    auto image = makeImage<RGBAFloat32Image>(5, 3);
    image.at(2, 1) = RGBAFloat32Image::Pixel(-1e6f, 0.123456f, 1e6f, 300.5f);
    glTexSubImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, 0, 0, 5, 3, GL_RGBA, GL_FLOAT, image.getPixels().data());
    const std::unique_ptr<RGBAFloat32Image> read(target->getRGBAFloat32Image());
    EXPECT_EQ(read->getPixels(), image.getPixels());
    target->unbind();
}

TEST_F(GLRenderTextureFBOUseGLTest, KeepsHalfFloatsInARectangle)
{
    if (!hasFloatFormats())
        GTEST_SKIP() << "the driver has no float formats for rectangles";
    const auto target = makeTarget(context(), 5, 3, 4, RECTANGLE | FLOAT16);
    target->bind(0);
    const auto image = makeImage<RGBAFloat32Image>(5, 3); // small integers, which half floats hold as they are
    glTexSubImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, 0, 0, 5, 3, GL_RGBA, GL_FLOAT, image.getPixels().data());
    const std::unique_ptr<RGBAFloat32Image> read(target->getRGBAFloat32Image());
    EXPECT_EQ(read->getPixels(), image.getPixels());
    target->unbind();
}

} // namespace
} // namespace tavo
