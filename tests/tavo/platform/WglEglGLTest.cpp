#include <EGL/egl.h>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

#include "tavo/platform/nativeHandles.h"
#include "tavo/platform/wgl.h"
#include "tests/tavo/platform/Drawing.h"
#include "tests/tavo/platform/EglHeadlessDisplay.h"

namespace {

using namespace tavo;

class WglEglGLTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_Display = EglHeadlessDisplay::open();
        if (!m_Display)
            GTEST_SKIP() << "needs a surfaceless EGL display with OpenGL";
    }

    void TearDown() override { EXPECT_NE(wglMakeCurrent(nullptr, nullptr), 0); }

    EGLDisplay native() const { return m_Display->getNative(); }

    std::unique_ptr<EglHeadlessDisplay> m_Display;
};

TEST_F(WglEglGLTest, WrapsWhatTheApplicationMade)
{
    const EGLContext context = m_Display->makeContext();
    const EGLSurface surface = m_Display->makePbuffer();
    const HGLRC renderingContext = tavo::wrapEglContext(native(), context);
    const HDC deviceContext = tavo::wrapEglSurface(native(), surface);

    ASSERT_NE(wglMakeCurrent(deviceContext, renderingContext), 0);
    EXPECT_EQ(eglGetCurrentContext(), context);
    EXPECT_EQ(eglGetCurrentSurface(EGL_DRAW), surface);
    EXPECT_EQ(wglGetCurrentContext(), renderingContext);
    EXPECT_EQ(wglGetCurrentDC(), deviceContext);
    EXPECT_TRUE(drawsToSurface());

    ASSERT_TRUE(eglMakeCurrent(native(), surface, surface, context));
    EXPECT_EQ(wglGetCurrentContext(), renderingContext);
    EXPECT_EQ(wglGetCurrentDC(), deviceContext);
}

TEST_F(WglEglGLTest, WrapsTheAbsenceOfASurface)
{
    const EGLContext context = m_Display->makeContext();
    const HDC deviceContext = tavo::wrapEglSurface(native(), EGL_NO_SURFACE);
    ASSERT_NE(deviceContext, nullptr);
    ASSERT_NE(wglMakeCurrent(deviceContext, tavo::wrapEglContext(native(), context)), 0);
    EXPECT_EQ(eglGetCurrentSurface(EGL_DRAW), EGL_NO_SURFACE);
    EXPECT_EQ(wglGetCurrentDC(), deviceContext);
    EXPECT_TRUE(drawsToRenderbuffer());
}

TEST_F(WglEglGLTest, KeepsTheSurfaceToReadFrom)
{
    const EGLSurface draw = m_Display->makePbuffer();
    const EGLSurface read = m_Display->makePbuffer();
    const EGLContext context = m_Display->makeContext();
    ASSERT_TRUE(eglMakeCurrent(native(), draw, read, context));
    const HDC both = wglGetCurrentDC();
    EXPECT_EQ(both, tavo::wrapEglSurfaces(native(), draw, read));

    ASSERT_NE(wglMakeCurrent(tavo::wrapEglSurface(native(), draw), wglGetCurrentContext()), 0);
    EXPECT_EQ(eglGetCurrentSurface(EGL_READ), draw);
    ASSERT_NE(wglMakeCurrent(both, wglGetCurrentContext()), 0);
    EXPECT_EQ(eglGetCurrentSurface(EGL_DRAW), draw);
    EXPECT_EQ(eglGetCurrentSurface(EGL_READ), read);
}

TEST_F(WglEglGLTest, RefusesADestroyedContext)
{
    const EGLContext context = m_Display->makeContext();
    const HGLRC dead = tavo::wrapEglContext(native(), context);
    eglDestroyContext(native(), context);
    EXPECT_EQ(wglMakeCurrent(tavo::wrapEglSurface(native(), EGL_NO_SURFACE), dead), 0);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST_F(WglEglGLTest, RefusesADestroyedSurface)
{
    const EGLSurface surface = m_Display->makePbuffer();
    const HDC dead = tavo::wrapEglSurface(native(), surface);
    const HGLRC context = tavo::wrapEglContext(native(), m_Display->makeContext());
    eglDestroySurface(native(), surface);
    EXPECT_EQ(wglMakeCurrent(dead, context), 0);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST_F(WglEglGLTest, RefusesWhatATerminatedDisplayHad)
{
    const HDC deviceContext = tavo::wrapEglSurface(native(), m_Display->makePbuffer());
    const HGLRC context = tavo::wrapEglContext(native(), m_Display->makeContext());
    m_Display.reset();
    EXPECT_EQ(wglMakeCurrent(deviceContext, context), 0);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST_F(WglEglGLTest, ReleasesAContextWhoseDisplayWasTerminated)
{
    ASSERT_TRUE(eglMakeCurrent(native(), EGL_NO_SURFACE, EGL_NO_SURFACE, m_Display->makeContext()));
    m_Display.reset();
    EXPECT_NE(wglMakeCurrent(nullptr, nullptr), 0);
    EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT);
}

TEST_F(WglEglGLTest, RefusesAContextThatIsCurrentOnAnotherThread)
{
    const HDC deviceContext = tavo::wrapEglSurface(native(), EGL_NO_SURFACE);
    const HGLRC context = tavo::wrapEglContext(native(), m_Display->makeContext());
    ASSERT_NE(wglMakeCurrent(deviceContext, context), 0);
    std::thread([&] {
        EXPECT_EQ(wglGetCurrentContext(), nullptr);
        EXPECT_EQ(wglMakeCurrent(deviceContext, context), 0);
    }).join();
    EXPECT_EQ(wglGetCurrentContext(), context);
}

TEST_F(WglEglGLTest, RefusesAForgottenContextAndGivesItANewHandle)
{
    const HDC deviceContext = tavo::wrapEglSurface(native(), EGL_NO_SURFACE);
    const EGLContext context = m_Display->makeContext();
    const HGLRC forgotten = tavo::wrapEglContext(native(), context);
    tavo::forgetContext(forgotten);
    EXPECT_EQ(wglMakeCurrent(deviceContext, forgotten), 0);

    const HGLRC handle = tavo::wrapEglContext(native(), context);
    EXPECT_NE(handle, forgotten);
    EXPECT_NE(wglMakeCurrent(deviceContext, handle), 0);
}

} // namespace
