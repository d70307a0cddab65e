#include <EGL/egl.h>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

#include "tavo/platform/nativeHandles.h"
#include "tavo/platform/wgl.h"
#include "tests/tavo/platform/Drawing.h"
#include "tests/tavo/platform/EglHeadlessDisplay.h"
#include "tests/tavo/platform/GlxDisplay.h"

#include <GL/glx.h>

namespace {

using namespace tavo;

// GLX and EGL in one process.
class WglSwitchGLTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_X = GlxDisplay::open();
        m_Headless = EglHeadlessDisplay::open();
        if (!m_X || !m_Headless)
            GTEST_SKIP() << "needs an X server with GLX and a surfaceless EGL display with OpenGL";
        m_Window = tavo::wrapGlxDrawable(m_X->getNative(), m_X->makeWindow());
        m_GlxContext = tavo::wrapGlxContext(m_X->getNative(), m_X->makeContext());
        m_Pbuffer = tavo::wrapEglSurface(m_Headless->getNative(), m_Headless->makePbuffer());
        m_EglContext = tavo::wrapEglContext(m_Headless->getNative(), m_Headless->makeContext());
    }

    void TearDown() override { EXPECT_NE(wglMakeCurrent(nullptr, nullptr), 0); }

    std::unique_ptr<GlxDisplay> m_X;
    std::unique_ptr<EglHeadlessDisplay> m_Headless;
    HDC m_Window = nullptr;
    HGLRC m_GlxContext = nullptr;
    HDC m_Pbuffer = nullptr;
    HGLRC m_EglContext = nullptr;
};

TEST_F(WglSwitchGLTest, SwitchesBackAndForth)
{
    for (int i = 0; i < 3; ++i) {
        ASSERT_NE(wglMakeCurrent(m_Window, m_GlxContext), 0);
        EXPECT_EQ(wglGetCurrentContext(), m_GlxContext);
        EXPECT_EQ(wglGetCurrentDC(), m_Window);
        EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT);
        EXPECT_TRUE(drawsToSurface());

        ASSERT_NE(wglMakeCurrent(m_Pbuffer, m_EglContext), 0);
        EXPECT_EQ(wglGetCurrentContext(), m_EglContext);
        EXPECT_EQ(wglGetCurrentDC(), m_Pbuffer);
        EXPECT_EQ(glXGetCurrentContext(), nullptr);
        EXPECT_TRUE(drawsToSurface());
    }
}

TEST_F(WglSwitchGLTest, ReleasesWhicheverIsCurrent)
{
    ASSERT_NE(wglMakeCurrent(m_Window, m_GlxContext), 0);
    EXPECT_NE(wglMakeCurrent(nullptr, nullptr), 0);
    EXPECT_EQ(glXGetCurrentContext(), nullptr);
    ASSERT_NE(wglMakeCurrent(m_Pbuffer, m_EglContext), 0);
    EXPECT_NE(wglMakeCurrent(nullptr, nullptr), 0);
    EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT);
}

TEST_F(WglSwitchGLTest, RefusesADrawableOfTheOtherKind)
{
    ASSERT_NE(wglMakeCurrent(m_Window, m_GlxContext), 0);
    EXPECT_EQ(wglMakeCurrent(m_Window, m_EglContext), 0);
    EXPECT_EQ(wglMakeCurrent(m_Pbuffer, m_GlxContext), 0);
    EXPECT_EQ(wglGetCurrentContext(), m_GlxContext);
    EXPECT_TRUE(drawsToSurface());
}

TEST_F(WglSwitchGLTest, GoesOnAfterASwitchThatFailed)
{
    ASSERT_NE(wglMakeCurrent(m_Window, m_GlxContext), 0);
    const EGLContext dead = m_Headless->makeContext();
    const HGLRC deadHandle = tavo::wrapEglContext(m_Headless->getNative(), dead);
    eglDestroyContext(m_Headless->getNative(), dead);
    EXPECT_EQ(wglMakeCurrent(m_Pbuffer, deadHandle), 0);
    EXPECT_NE(wglGetCurrentContext(), deadHandle);

    ASSERT_NE(wglMakeCurrent(m_Window, m_GlxContext), 0);
    EXPECT_TRUE(drawsToSurface());
}

TEST_F(WglSwitchGLTest, FindsTheEntryPointsOfEither)
{
    ASSERT_NE(wglMakeCurrent(m_Window, m_GlxContext), 0);
    EXPECT_NE(wglGetProcAddress("glXGetCurrentContext"), nullptr);
    EXPECT_NE(wglGetProcAddress("glGenFramebuffers"), nullptr);
    ASSERT_NE(wglMakeCurrent(m_Pbuffer, m_EglContext), 0);
    EXPECT_NE(wglGetProcAddress("eglGetCurrentContext"), nullptr);
    EXPECT_NE(wglGetProcAddress("glGenFramebuffers"), nullptr);
}

TEST_F(WglSwitchGLTest, LetsThreadsUseDifferentWindowSystems)
{
    const auto activateAndDraw = [](HDC deviceContext, HGLRC context) {
        for (int i = 0; i < 20; ++i) {
            ASSERT_NE(wglMakeCurrent(deviceContext, context), 0);
            ASSERT_EQ(wglGetCurrentContext(), context);
            ASSERT_TRUE(drawsToSurface());
            ASSERT_NE(wglMakeCurrent(nullptr, nullptr), 0);
        }
    };
    std::thread other(activateAndDraw, m_Pbuffer, m_EglContext);
    activateAndDraw(m_Window, m_GlxContext);
    other.join();
}

} // namespace
