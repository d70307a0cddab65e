#include "tests/support/GLTest.h"

#include <gmock/gmock.h>

#include <GL/gl.h>

namespace tavo {

class GLTestGLTest : public GLTest
{};

TEST_F(GLTestGLTest, StartsWithACurrentCompatibilityContext)
{
    EXPECT_EQ(wglGetCurrentContext(), getRC());
    EXPECT_EQ(wglGetCurrentDC(), getDC());
    EXPECT_NE(getRC(), nullptr);
    glBegin(GL_TRIANGLES);
    glEnd();
    EXPECT_THAT(drainErrors(), testing::IsEmpty()) << "immediate mode is there";
}

TEST_F(GLTestGLTest, DrawsToARGBADrawableWithDepthAndStencil)
{
    GLint alpha = 0;
    GLint depth = 0;
    GLint stencil = 0;
    glGetIntegerv(GL_ALPHA_BITS, &alpha);
    glGetIntegerv(GL_DEPTH_BITS, &depth);
    glGetIntegerv(GL_STENCIL_BITS, &stencil);
    EXPECT_EQ(alpha, 8);
    EXPECT_GE(depth, 24);
    EXPECT_EQ(stencil, 8);
}

TEST_F(GLTestGLTest, ReadsPixelsFromTheLowerLeftUpwards)
{
    glClear(GL_COLOR_BUFFER_BIT);
    glEnable(GL_SCISSOR_TEST);
    glScissor(2, 1, 1, 1);
    glClearColor(0, 1, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glPixelStorei(GL_PACK_ROW_LENGTH, 100);
    const Picture picture = readPixels(4, 3);
    Picture expected(4, 3);
    expected.at(2, 1) = {0, 255, 0, 255};
    EXPECT_EQ(picture, expected);

    GLint rowLength = 0;
    glGetIntegerv(GL_PACK_ROW_LENGTH, &rowLength);
    EXPECT_EQ(rowLength, 100);
}

TEST_F(GLTestGLTest, SharedContextsShareNames)
{
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);

    const auto shared = makeSharedContext();
    EXPECT_EQ(wglGetCurrentContext(), getRC()) << "what is current stays current";
    EXPECT_NE(shared->getRC(), getRC());
    EXPECT_NE(shared->getDC(), getDC());
    shared->makeCurrent();
    EXPECT_EQ(wglGetCurrentContext(), shared->getRC());
    EXPECT_TRUE(glIsTexture(texture));

    const auto unshared = makeUnsharedContext();
    unshared->makeCurrent();
    EXPECT_FALSE(glIsTexture(texture));
    unshared->release();
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST_F(GLTestGLTest, DrainsErrorsInTheirOrder)
{
    glEnable(0x1234);
    EXPECT_THAT(drainErrors(), testing::ElementsAre(GL_INVALID_ENUM));
    EXPECT_THAT(drainErrors(), testing::IsEmpty());
}

class LaterContextGLTest : public GLTest
{
protected:
    LaterContextGLTest()
        : GLTest(Start::WITHOUT_CONTEXT)
    {}
};

TEST_F(LaterContextGLTest, HasNoContextUntilItMakesOne)
{
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    if (!makeMainContext())
        return;
    EXPECT_NE(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(wglGetCurrentContext(), getRC());
}

} // namespace tavo
