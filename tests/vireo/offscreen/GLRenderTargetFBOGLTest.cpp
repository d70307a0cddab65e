#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <vector>

#include "tavo/base/objects/PException.h"
#include "tests/support/CallRecorder.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/offscreen/renderTextures.h"
#include "tests/vireo/offscreen/targetPictures.h"
#include "vireo/offscreen/GLRenderTargetFBO.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class GLRenderTargetFBOGLTest : public ContextTest
{
protected:
    std::unique_ptr<GLRenderTargetFBO> makeTarget(unsigned int width, unsigned int height)
    {
        auto target = std::make_unique<GLRenderTargetFBO>(context());
        EXPECT_TRUE(target->create(width, height));
        return target;
    }
};

Names namesOf(GLRenderTargetFBO& target)
{
    const CallRecorder::Pause ownCalls;
    target.activate();
    const Names names = boundNames();
    target.deactivate();
    return names;
}

// A rectangle at a depth from 0 to 1; GL's matrices are the identity.
void drawRect(const Viewport& where, const Pixel& colour, float depth, const GLRenderTargetFBO& target)
{
    const auto x = [&](int i) { return 2 * static_cast<float>(i) / static_cast<float>(target.getWidth()) - 1; };
    const auto y = [&](int i) { return 2 * static_cast<float>(i) / static_cast<float>(target.getHeight()) - 1; };
    glColor4ubv(colour.data());
    glBegin(GL_QUADS);
    glVertex3f(x(where[0]), y(where[1]), 2 * depth - 1);
    glVertex3f(x(where[0] + where[2]), y(where[1]), 2 * depth - 1);
    glVertex3f(x(where[0] + where[2]), y(where[1] + where[3]), 2 * depth - 1);
    glVertex3f(x(where[0]), y(where[1] + where[3]), 2 * depth - 1);
    glEnd();
}

void clearTarget()
{
    glClearColor(0, 0, 0, 0);
    glClearDepth(1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

std::vector<float> depthsOf(const GLRenderTargetFBO& target)
{
    std::vector<float> depths(target.getWidth() * target.getHeight());
    target.getDepthTexture()->bind(0);
    glGetTexImage(target.getDepthTexture()->getTextureTarget(), 0, GL_DEPTH_COMPONENT, GL_FLOAT, depths.data());
    target.getDepthTexture()->unbind(0);
    return depths;
}

void expectUsable(GLRenderTargetFBO& target)
{
    target.activate();
    EXPECT_EQ(glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT), static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE_EXT));
    clearTarget();
    EXPECT_EQ(readPixels(2, 2), Picture(2, 2));
    target.deactivate();
}

// Creation

TEST_F(GLRenderTargetFBOGLTest, StartsEmptyAndDiesSo)
{
    std::unique_ptr<GLRenderTargetFBO> empty;
    EXPECT_THAT(callsOf([&] { empty = std::make_unique<GLRenderTargetFBO>(context()); }), IsEmpty());
    EXPECT_FALSE(empty->isCreated());
    EXPECT_FALSE(empty->isActive());
    EXPECT_EQ(empty->getColourTexture(), nullptr);
    EXPECT_EQ(empty->getDepthTexture(), nullptr);
    EXPECT_EQ(empty->getWidth(), 0u);
    EXPECT_EQ(empty->getHeight(), 0u);
    EXPECT_THAT(callsOf([&] { empty.reset(); }), IsEmpty());
}

TEST_F(GLRenderTargetFBOGLTest, IsMadeOfTwoRectangles)
{
    const auto target = makeTarget(101, 37);
    EXPECT_TRUE(target->isCreated());
    EXPECT_EQ(target->getWidth(), 101u);
    EXPECT_EQ(target->getHeight(), 37u);
    const Names names = namesOf(*target);
    EXPECT_EQ(names.texture, std::to_string(target->getColourTexture()->getTextureID()));
    EXPECT_EQ(names.depthBuffer, std::to_string(target->getDepthTexture()->getTextureID()));
    EXPECT_EQ(names.stencilBuffer, "0");
    GLTexture* const depth = target->getDepthTexture();
    EXPECT_EQ(depth->getTextureTarget(), static_cast<unsigned int>(GL_TEXTURE_RECTANGLE_ARB));
    depth->bind(0);
    int format = 0;
    glGetTexLevelParameteriv(depth->getTextureTarget(), 0, GL_TEXTURE_INTERNAL_FORMAT, &format);
    EXPECT_EQ(format, GL_DEPTH_COMPONENT24);
    int filter = 0;
    glGetTexParameteriv(depth->getTextureTarget(), GL_TEXTURE_MAG_FILTER, &filter);
    EXPECT_EQ(filter, GL_NEAREST);
    depth->unbind(0);
}

TEST_F(GLRenderTargetFBOGLTest, LeavesTheFramebufferThatWasBound)
{
    const auto outer = makeTarget(8, 8);
    outer->activate();
    const int bound = boundFramebuffer();
    GLTexture::setStage(2);
    const auto inner = makeTarget(4, 4);
    EXPECT_EQ(boundFramebuffer(), bound);
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
    EXPECT_EQ(getInteger(GL_TEXTURE_BINDING_RECTANGLE_ARB), 0);
    outer->deactivate();
}

TEST_F(GLRenderTargetFBOGLTest, RefusesWhatIsNoSize)
{
    GLRenderTargetFBO target(context());
    const auto tooLarge = static_cast<unsigned int>(getInteger(GL_MAX_RECTANGLE_TEXTURE_SIZE_ARB)) + 1;
    EXPECT_FALSE(target.create(0, 5));
    EXPECT_FALSE(target.create(5, 0));
    EXPECT_FALSE(target.create(tooLarge, 1));
    EXPECT_FALSE(target.create(1, tooLarge));
    EXPECT_FALSE(target.isCreated());
    EXPECT_EQ(countNames(), NumNames());
    EXPECT_TRUE(target.create(1, 1));
}

TEST_F(GLRenderTargetFBOGLTest, ReplacesWhatItWasMadeOf)
{
    const auto target = makeTarget(8, 8);
    target->activate();
    EXPECT_TRUE(target->create(20, 10));
    EXPECT_FALSE(target->isActive());
    EXPECT_EQ(boundFramebuffer(), 0);
    EXPECT_EQ(countNames(), (NumNames{2, 1, 0}));
    target->release();
    EXPECT_FALSE(target->isCreated());
    EXPECT_EQ(target->getWidth(), 0u);
    EXPECT_EQ(countNames(), NumNames());
}

// Use

TEST_F(GLRenderTargetFBOGLTest, IsActivatedAndDeactivated)
{
    const auto target = makeTarget(20, 10);
    const std::string framebuffer = namesOf(*target).framebuffer;
    setViewport({3, 4, 50, 40});
    EXPECT_THAT(callsOf([&] { target->activate(); }),
        ElementsAre("glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, ptr)", "glGetIntegerv(GL_VIEWPORT, ptr)",
            "glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, " + framebuffer + ")", "glViewport(0, 0, 20, 10)"));
    EXPECT_TRUE(target->isActive());
    EXPECT_THAT(callsOf([&] { target->activate(); }), IsEmpty());
    EXPECT_THAT(callsOf([&] { target->deactivate(); }), ElementsAre(TO_WINDOW, "glViewport(3, 4, 50, 40)"));
    EXPECT_FALSE(target->isActive());
    EXPECT_THAT(callsOf([&] { target->deactivate(); }), IsEmpty());
}

TEST_F(GLRenderTargetFBOGLTest, IsNested)
{
    const auto outer = makeTarget(20, 10);
    const auto inner = makeTarget(6, 7);
    outer->activate();
    const int bound = boundFramebuffer();
    inner->activate();
    EXPECT_EQ(viewport(), (Viewport{0, 0, 6, 7}));
    inner->deactivate();
    EXPECT_EQ(boundFramebuffer(), bound);
    EXPECT_EQ(viewport(), (Viewport{0, 0, 20, 10}));
    outer->deactivate();
}

TEST_F(GLRenderTargetFBOGLTest, KeepsColoursAndDepths)
{
    const auto target = makeTarget(7, 5);
    target->activate();
    clearTarget();
    glEnable(GL_DEPTH_TEST);
    drawRect({1, 1, 3, 3}, {250, 0, 0, 255}, 0.25f, *target);
    drawRect({0, 0, 7, 4}, {0, 240, 0, 255}, 0.5f, *target);
    glDisable(GL_DEPTH_TEST);
    Picture expected(7, 5);
    paintRect(expected, {0, 0, 7, 4}, {0, 240, 0, 255});
    paintRect(expected, {1, 1, 3, 3}, {250, 0, 0, 255});
    EXPECT_EQ(readPixels(7, 5), expected);
    target->deactivate();

    const std::vector<float> depths = depthsOf(*target);
    for (unsigned int y = 0; y < 5; ++y)
        for (unsigned int x = 0; x < 7; ++x) {
            const float depth = expected.at(x, y)[0] > 0 ? 0.25f : expected.at(x, y)[1] > 0 ? 0.5f : 1.0f;
            EXPECT_NEAR(depths[7 * y + x], depth, 1e-6f) << x << ", " << y;
        }
}

// The textures' own affair is how they are sampled; here each texel is drawn where it was.
TEST_F(GLRenderTargetFBOGLTest, IsTwoTexturesOfWhatWasDrawn)
{
    const auto target = makeTarget(32, 32);
    target->activate();
    clearTarget();
    glEnable(GL_DEPTH_TEST);
    drawQuarters();
    drawRect({8, 8, 16, 16}, QUARTERS[0], 0.2f, *target);
    glDisable(GL_DEPTH_TEST);
    target->deactivate();

    const auto picture = [](GLTexture* texture) {
        texture->bind(0);
        glEnable(texture->getTextureTarget());
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
        const auto corner = [](float x, float y) {
            glTexCoord2f(16 * x + 16, 16 * y + 16);
            glVertex2f(x, y);
        };
        setViewport({0, 0, 32, 32});
        glBegin(GL_QUADS);
        corner(-1, -1);
        corner(1, -1);
        corner(1, 1);
        corner(-1, 1);
        glEnd();
        glDisable(texture->getTextureTarget());
        texture->unbind(0);
        return readPixels(32, 32);
    };
    Picture expected = quarters(32, 32);
    paintRect(expected, {8, 8, 16, 16}, QUARTERS[0]);
    EXPECT_EQ(picture(target->getColourTexture()), expected);
    Picture depths(32, 32, {128, 128, 128, 128});
    paintRect(depths, {8, 8, 16, 16}, {51, 51, 51, 51});
    const Picture seen = picture(target->getDepthTexture());
    for (std::size_t i = 0; i < seen.pixels.size(); ++i)
        for (std::size_t k = 0; k < 4; ++k)
            EXPECT_NEAR(seen.pixels[i][k], depths.pixels[i][k], 1) << i;
}

TEST_F(GLRenderTargetFBOGLTest, IsSharedByTheContextsOfATree)
{
    const auto native = makeSharedContext();
    GLContext child(native->getDC(), native->getRC(), context(), nullptr);
    const auto target = makeTarget(8, 8);
    target->activate();
    glClearDepth(0.5);
    glClear(GL_DEPTH_BUFFER_BIT);
    target->deactivate();
    glFinish();
    EXPECT_TRUE(child.activate());
    EXPECT_NEAR(depthsOf(*target)[0], 0.5f, 1e-6f);
    context()->activate();
}

// Lifetimes

TEST_F(GLRenderTargetFBOGLTest, TakesAllNamesAlong)
{
    for (unsigned int i = 0; i < 100; ++i) {
        GLRenderTargetFBO target(context());
        target.create(i % 9, i % 7);
        if (target.isCreated() && i % 2 == 0)
            target.activate();
    }
    EXPECT_EQ(countNames(), NumNames());
    EXPECT_EQ(boundFramebuffer(), 0);
}

TEST_F(GLRenderTargetFBOGLTest, OutlivesItsContext)
{
    auto target = makeTarget(8, 8);
    target->activate();
    destroyContext();
    EXPECT_FALSE(target->isValid());
    EXPECT_THROW(target->create(4, 4), PException);
    EXPECT_THROW(target->activate(), PException);
    EXPECT_THROW(target->deactivate(), PException);
    EXPECT_THAT(callsOf([&] { target.reset(); }), IsEmpty());
}

TEST_F(GLRenderTargetFBOGLTest, OutlivesTheChildThatItWasMadeIn)
{
    auto native = makeSharedContext();
    auto child = std::make_unique<GLContext>(native->getDC(), native->getRC(), context(), nullptr);
    EXPECT_TRUE(child->activate());
    auto target = std::make_unique<GLRenderTargetFBO>(child.get());
    EXPECT_TRUE(target->create(8, 8));
    context()->activate();
    const auto other = makeTarget(4, 4); // a framebuffer that may have the same name in this context
    child.reset();
    native.reset();
    target.reset();
    EXPECT_EQ(countNames().textures, 2u) << "those of the other one";
    expectUsable(*other);
}

TEST_F(GLRenderTargetFBOGLTest, LeavesFramebuffersOfOtherContextsAlone)
{
    const auto native = makeSharedContext();
    GLContext child(native->getDC(), native->getRC(), context(), nullptr);
    auto target = makeTarget(8, 8);
    EXPECT_TRUE(child.activate());
    const auto inChild = makeTarget(4, 4);
    EXPECT_THAT(callsOf([&] { target.reset(); }), Not(Contains(StartsWith("glDeleteFramebuffersEXT"))));
    EXPECT_EQ(countNames().textures, 2u);
    expectUsable(*inChild);
    inChild->release();
    context()->activate();
}

TEST_F(GLRenderTargetFBOGLTest, NeedsToBeMadeBeforeItIsUsed)
{
    GLRenderTargetFBO target(context());
    EXPECT_THROW(target.activate(), PException);
    EXPECT_THAT(callsOf([&] { target.deactivate(); }), IsEmpty());
    EXPECT_THAT(callsOf([&] { target.release(); }), IsEmpty());
}

} // namespace
} // namespace tavo
