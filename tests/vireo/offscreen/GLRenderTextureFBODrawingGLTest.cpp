#include <array>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <utility>

#include "tests/support/PictureComparison.h"
#include "tests/support/extensions.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/offscreen/renderTextures.h"
#include "tests/vireo/offscreen/targetPictures.h"
#include "tests/vireo/textures/texels.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"

#include <GL/glu.h>

namespace tavo {
namespace {

using testing::Each;

using GLRenderTextureFBODrawingGLTest = ContextTest;

// A near red square, then a far green one that covers all. With a depth buffer the near one stays in front.
void drawNearThenFar()
{
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    const auto drawSquare = [](float halfSize, float z) {
        glBegin(GL_QUADS);
        glVertex3f(-halfSize, -halfSize, z);
        glVertex3f(halfSize, -halfSize, z);
        glVertex3f(halfSize, halfSize, z);
        glVertex3f(-halfSize, halfSize, z);
        glEnd();
    };
    glColor4ub(255, 0, 0, 255);
    drawSquare(0.5f, -0.5f);
    glColor4ub(0, 255, 0, 255);
    drawSquare(1, 0.5f);
    glDisable(GL_DEPTH_TEST);
}

TEST_F(GLRenderTextureFBODrawingGLTest, HidesWhatIsFartherOnlyWithADepthBuffer)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    const Pixel red{255, 0, 0, 255};
    const Pixel green{0, 255, 0, 255};
    for (const unsigned int flags : {0u, DEPTH, RECTANGLE, RECTANGLE | DEPTH}) {
        const auto target = makeTarget(context(), 16, 12, 4, flags);
        target->activate();
        drawNearThenFar();
        target->deactivate();
        Picture expected(16, 12, green);
        if ((flags & DEPTH) != 0)
            paintRect(expected, {4, 3, 8, 6}, red);
        EXPECT_EQ(pictureOf(std::unique_ptr<RGBAImage>(target->getRGBAImage())), expected);
    }
}

TEST_F(GLRenderTextureFBODrawingGLTest, DrawsThroughAStencil)
{
    const auto target = makeTarget(context(), 8, 8, 4, STENCIL);
    target->activate();
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    glEnable(GL_STENCIL_TEST);
    glStencilFunc(GL_ALWAYS, 1, 1);
    glStencilOp(GL_REPLACE, GL_REPLACE, GL_REPLACE);
    glColor4ub(0, 0, 0, 0);
    glRectf(-1, -1, 0, 1);
    glStencilFunc(GL_EQUAL, 1, 1);
    glColor4ub(9, 8, 7, 6);
    glRectf(-1, -1, 1, 1);
    glDisable(GL_STENCIL_TEST);
    target->deactivate();
    Picture expected(8, 8);
    paintRect(expected, {0, 0, 4, 8}, {9, 8, 7, 6});
    EXPECT_EQ(pictureOf(std::unique_ptr<RGBAImage>(target->getRGBAImage())), expected);
}

TEST_F(GLRenderTextureFBODrawingGLTest, LeavesTheWindowAloneInAViewportThatIsNotAtTheOrigin)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    const Pixel background{1, 2, 3, 4};
    const Pixel inside{90, 91, 92, 93};
    glClearColor(1 / 255.f, 2 / 255.f, 3 / 255.f, 4 / 255.f);
    glClear(GL_COLOR_BUFFER_BIT);
    setViewport({10, 20, 30, 16});
    const auto target = makeTarget(context(), 40, 40, 4, DEPTH);
    target->activate();
    drawQuarters();
    target->deactivate();
    EXPECT_THAT(readPixels().pixels, Each(background)) << "nothing of it was drawn into the window";

    glColor4ubv(inside.data());
    glRectf(-1, -1, 1, 1); // fills the viewport as it was before
    Picture expected(64, 64, background);
    paintRect(expected, {10, 20, 30, 16}, inside);
    EXPECT_EQ(readPixels(), expected);
    EXPECT_EQ(pictureOf(std::unique_ptr<RGBAImage>(target->getRGBAImage())), quarters(40, 40));
}

TEST_F(GLRenderTextureFBODrawingGLTest, IsATextureOfWhatWasDrawn)
{
    for (const unsigned int flags : {0u, RECTANGLE}) {
        const auto target = makeTarget(context(), 32, 32, 4, flags);
        target->activate();
        drawQuarters();
        target->deactivate();
        target->bind(0);
        const float texels = flags == RECTANGLE ? 32 : 1;
        EXPECT_EQ(draw(target->getTextureTarget(), 32, 32, plane(texels, texels)), quarters(32, 32));
        target->unbind();
    }
}

// The picture of a depth texture: a lamp sees a floor with a box and a ball on it, and the depths that it sees tell
// what is in its light. What lies behind them is drawn black.
class ShadowGLTest : public ContextTest
{
protected:
    static constexpr int SIZE = 256;

    static void drawScene()
    {
        glColor3f(0.75f, 0.7f, 0.6f);
        glBegin(GL_QUADS);
        for (const auto& corner : {std::pair{-4.f, -4.f}, {4.f, -4.f}, {4.f, 4.f}, {-4.f, 4.f}})
            glVertex3f(corner.first, corner.second, 0);
        glEnd();
        glColor3f(0.9f, 0.3f, 0.2f);
        drawBox();
        glColor3f(0.2f, 0.5f, 0.9f);
        drawBall();
    }

    static void lookFromLamp()
    {
        gluPerspective(60, 1, 2, 15);
        gluLookAt(5, -3, 6, 0, 0, 0, 0, 0, 1);
    }

    static void lookFromEye()
    {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        gluPerspective(50, 1, 1, 30);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        gluLookAt(-3, -9, 6, 0, 0, 0.5, 0, 0, 1);
    }

    static void drawDepths(GLRenderTextureFBO& depths)
    {
        glEnable(GL_DEPTH_TEST);
        depths.activate();
        glClear(GL_DEPTH_BUFFER_BIT);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        lookFromLamp();
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(2, 4); // so that nothing shades itself
        drawScene();
        glDisable(GL_POLYGON_OFFSET_FILL);
        depths.deactivate();
    }

    // Each fragment looks up the depth in its direction from the lamp, and compares its own with that.
    static void drawShaded(GLRenderTextureFBO& depths)
    {
        glClearColor(0.15f, 0.2f, 0.3f, 1);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        lookFromEye();
        depths.bind(0);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_MODE, GL_COMPARE_R_TO_TEXTURE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_FUNC, GL_LEQUAL);
        makeWorldCoordinatesOfTexture();
        glMatrixMode(GL_TEXTURE);
        glTranslatef(0.5f, 0.5f, 0.5f);
        glScalef(0.5f, 0.5f, 0.5f);
        lookFromLamp();
        glEnable(GL_TEXTURE_2D);
        drawScene();
        glDisable(GL_TEXTURE_2D);
        depths.unbind();
    }

private:
    static void drawBox()
    {
        constexpr int faces[6][4] = {
            {0, 1, 3, 2}, {4, 6, 7, 5}, {0, 4, 5, 1}, {2, 3, 7, 6}, {0, 2, 6, 4}, {1, 5, 7, 3}};
        glBegin(GL_QUADS);
        for (const auto& face : faces)
            for (const int corner : face)
                glVertex3f((corner & 1) ? -0.3f : -2.f, (corner & 2) ? 1.f : -0.7f, (corner & 4) ? 1.8f : 0.f);
        glEnd();
    }

    static void drawBall()
    {
        glMatrixMode(GL_MODELVIEW);
        glPushMatrix();
        glTranslatef(1.4f, -0.6f, 0.8f);
        GLUquadric* const quadric = gluNewQuadric();
        gluSphere(quadric, 0.8, 48, 24);
        gluDeleteQuadric(quadric);
        glPopMatrix();
    }

    // GL takes planes that are given now back through the modelview matrix, the eye's.
    static void makeWorldCoordinatesOfTexture()
    {
        for (unsigned int axis = 0; axis < 4; ++axis) {
            std::array<float, 4> plane{};
            plane[axis] = 1;
            glTexGeni(GL_S + axis, GL_TEXTURE_GEN_MODE, GL_EYE_LINEAR);
            glTexGenfv(GL_S + axis, GL_EYE_PLANE, plane.data());
            glEnable(GL_TEXTURE_GEN_S + axis);
        }
    }
};

TEST_F(ShadowGLTest, ADepthTextureTellsWhatIsInTheShade)
{
    const auto depths = makeTarget(context());
    ASSERT_TRUE(depths->createDepthTexture(1024, 1024));
    const auto target = makeTarget(context(), SIZE, SIZE, 4, DEPTH);
    drawDepths(*depths);
    target->activate();
    drawShaded(*depths);
    target->deactivate();
    EXPECT_TRUE(matchesReference(pictureOf(std::unique_ptr<RGBAImage>(target->getRGBAImage())),
        "GLRenderTextureFBO/shadow", {.perChannel = 8, .differingPixels = 0.01}));
}

} // namespace
} // namespace tavo
