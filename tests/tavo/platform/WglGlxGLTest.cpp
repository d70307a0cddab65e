#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <vector>

#include "tavo/platform/nativeHandles.h"
#include "tavo/platform/wgl.h"
#include "tests/tavo/platform/Drawing.h"
#include "tests/tavo/platform/GlxDisplay.h"

#include <GL/glx.h>

namespace {

using namespace tavo;

// X errors that would have reached the application's handler. The default one ends the process.
int reportedErrors = 0;

int countError(Display*, XErrorEvent*)
{
    ++reportedErrors;
    return 0;
}

class WglGlxGLTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_Display = GlxDisplay::open();
        if (!m_Display)
            GTEST_SKIP() << "needs an X server with GLX";
        reportedErrors = 0;
        m_PreviousHandler = XSetErrorHandler(countError);
    }

    void TearDown() override
    {
        EXPECT_NE(wglMakeCurrent(nullptr, nullptr), 0);
        if (!m_Display)
            return;
        XSync(native(), False);
        EXPECT_EQ(reportedErrors, m_ExpectedErrors);
        XSetErrorHandler(m_PreviousHandler);
    }

    Display* native() const { return m_Display->getNative(); }

    HDC wrapNewWindow() { return tavo::wrapGlxDrawable(native(), m_Display->makeWindow()); }
    HGLRC wrapNewContext() { return tavo::wrapGlxContext(native(), m_Display->makeContext()); }

    std::unique_ptr<GlxDisplay> m_Display;
    XErrorHandler m_PreviousHandler = nullptr;
    int m_ExpectedErrors = 0;
};

TEST_F(WglGlxGLTest, WrapsWhatTheApplicationMade)
{
    const GLXContext context = m_Display->makeContext();
    const GLXDrawable window = m_Display->makeWindow();
    const HGLRC renderingContext = tavo::wrapGlxContext(native(), context);
    const HDC deviceContext = tavo::wrapGlxDrawable(native(), window);

    ASSERT_NE(wglMakeCurrent(deviceContext, renderingContext), 0);
    EXPECT_EQ(glXGetCurrentContext(), context);
    EXPECT_EQ(glXGetCurrentDrawable(), window);
    EXPECT_EQ(wglGetCurrentContext(), renderingContext);
    EXPECT_EQ(wglGetCurrentDC(), deviceContext);
    EXPECT_TRUE(drawsToSurface());

    ASSERT_TRUE(glXMakeContextCurrent(native(), window, window, context));
    EXPECT_EQ(wglGetCurrentContext(), renderingContext);
    EXPECT_EQ(wglGetCurrentDC(), deviceContext);
}

TEST_F(WglGlxGLTest, KeepsTheDrawableToReadFrom)
{
    const GLXDrawable draw = m_Display->makeWindow();
    const GLXDrawable read = m_Display->makePbuffer();
    const GLXContext context = m_Display->makeContext();
    ASSERT_TRUE(glXMakeContextCurrent(native(), draw, read, context));
    const HDC both = wglGetCurrentDC();
    const HGLRC renderingContext = wglGetCurrentContext();
    EXPECT_EQ(both, tavo::wrapGlxDrawables(native(), draw, read));
    EXPECT_NE(both, tavo::wrapGlxDrawable(native(), draw));

    ASSERT_NE(wglMakeCurrent(tavo::wrapGlxDrawable(native(), draw), renderingContext), 0);
    EXPECT_EQ(glXGetCurrentReadDrawable(), draw);
    ASSERT_NE(wglMakeCurrent(both, renderingContext), 0);
    EXPECT_EQ(glXGetCurrentDrawable(), draw);
    EXPECT_EQ(glXGetCurrentReadDrawable(), read);
}

TEST_F(WglGlxGLTest, RefusesAWindowDestroyedBeforeItWasDrawnTo)
{
    const HGLRC context = wrapNewContext();
    const Window window = m_Display->makeWindow();
    const HDC dead = tavo::wrapGlxDrawable(native(), window);
    m_Display->destroyWindow(window);

    EXPECT_EQ(wglMakeCurrent(dead, context), 0);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);

    ASSERT_NE(wglMakeCurrent(wrapNewWindow(), context), 0);
    EXPECT_TRUE(drawsToSurface());
}

TEST_F(WglGlxGLTest, LeavesNoErrorForLaterBehindWhenItRefusesAWindow)
{
    const GLXContext context = m_Display->makeContext();
    const Window window = m_Display->makeWindow();
    const HDC dead = tavo::wrapGlxDrawable(native(), window);
    m_Display->destroyWindow(window);
    EXPECT_EQ(wglMakeCurrent(dead, tavo::wrapGlxContext(native(), context)), 0);
    m_Display->destroyContext(context);
    EXPECT_EQ(reportedErrors, 0);
}

TEST_F(WglGlxGLTest, SurvivesAWindowDestroyedAfterItWasDrawnTo)
{
    const HGLRC context = wrapNewContext();
    const Window window = m_Display->makeWindow();
    const HDC dead = tavo::wrapGlxDrawable(native(), window);
    ASSERT_NE(wglMakeCurrent(dead, context), 0);
    ASSERT_TRUE(drawsToSurface());
    ASSERT_NE(wglMakeCurrent(nullptr, nullptr), 0);
    m_Display->destroyWindow(window);

    // Mesa takes the window, other drivers need not.
    const bool taken = wglMakeCurrent(dead, context) != 0;
    EXPECT_EQ(wglGetCurrentContext(), taken ? context : nullptr);
    ASSERT_NE(wglMakeCurrent(wrapNewWindow(), context), 0);
    EXPECT_TRUE(drawsToSurface());
}

TEST_F(WglGlxGLTest, ReleasesAContextWhoseWindowWasDestroyed)
{
    const Window window = m_Display->makeWindow();
    ASSERT_NE(wglMakeCurrent(tavo::wrapGlxDrawable(native(), window), wrapNewContext()), 0);
    ASSERT_TRUE(drawsToSurface());
    m_Display->destroyWindow(window);
    EXPECT_NE(wglMakeCurrent(nullptr, nullptr), 0);
    EXPECT_EQ(glXGetCurrentContext(), nullptr);
}

TEST_F(WglGlxGLTest, RefusesWhatNeverWasADrawable)
{
    const HGLRC context = wrapNewContext();
    EXPECT_EQ(wglMakeCurrent(tavo::wrapGlxDrawable(native(), DefaultRootWindow(native()) + 0x7654), context), 0);
    EXPECT_EQ(wglMakeCurrent(tavo::wrapGlxDrawables(native(), m_Display->makeWindow(), None), context), 0);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST_F(WglGlxGLTest, RefusesWhatNeverWasAContext)
{
    int something = 0;
    const HGLRC context = tavo::wrapGlxContext(native(), reinterpret_cast<GLXContext>(&something));
    EXPECT_EQ(wglMakeCurrent(wrapNewWindow(), context), 0);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST_F(WglGlxGLTest, RefusesADestroyedContext)
{
    const HDC window = wrapNewWindow();
    const GLXContext context = m_Display->makeContext();
    const HGLRC dead = tavo::wrapGlxContext(native(), context);
    ASSERT_NE(wglMakeCurrent(window, dead), 0);
    ASSERT_NE(wglMakeCurrent(nullptr, nullptr), 0);
    m_Display->destroyContext(context);

    EXPECT_EQ(wglMakeCurrent(window, dead), 0);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST_F(WglGlxGLTest, KeepsTheHandleOfADestroyedContextWhileItIsCurrent)
{
    const HDC window = wrapNewWindow();
    const GLXContext context = m_Display->makeContext();
    const HGLRC handle = tavo::wrapGlxContext(native(), context);
    ASSERT_NE(wglMakeCurrent(window, handle), 0);
    m_Display->destroyContext(context);
    EXPECT_EQ(wglGetCurrentContext(), handle);

    EXPECT_NE(wglMakeCurrent(nullptr, nullptr), 0);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(wglMakeCurrent(window, handle), 0);
}

TEST_F(WglGlxGLTest, GivesNoNewContextTheHandleOfADestroyedOne)
{
    std::set<HGLRC> handles;
    for (int i = 0; i < 20; ++i) {
        const GLXContext context = m_Display->makeContext();
        handles.insert(tavo::wrapGlxContext(native(), context));
        m_Display->destroyContext(context);
    }
    EXPECT_EQ(handles.size(), 20u);
}

TEST_F(WglGlxGLTest, RefusesTheHandleOfADestroyedContextWhoseAddressIsInUseAgain)
{
    std::vector<HGLRC> dead;
    for (int i = 0; i < 20; ++i) {
        const GLXContext context = m_Display->makeContext();
        dead.push_back(tavo::wrapGlxContext(native(), context));
        m_Display->destroyContext(context);
    }
    for (int i = 0; i < 20; ++i)
        m_Display->makeContext();
    const HDC window = wrapNewWindow();
    for (const HGLRC context : dead)
        EXPECT_EQ(wglMakeCurrent(window, context), 0);
}

TEST_F(WglGlxGLTest, ForgetsTheHandlesOfAClosedDisplay)
{
    auto closing = GlxDisplay::open();
    ASSERT_NE(closing, nullptr);
    const HDC deadWindow = tavo::wrapGlxDrawable(closing->getNative(), closing->makeWindow());
    const HGLRC deadContext = tavo::wrapGlxContext(closing->getNative(), closing->makeContext());
    const HDC window = wrapNewWindow();
    const HGLRC context = wrapNewContext();
    ASSERT_NE(wglMakeCurrent(deadWindow, deadContext), 0);
    ASSERT_NE(wglMakeCurrent(window, context), 0);
    closing.reset();

    EXPECT_EQ(wglMakeCurrent(deadWindow, deadContext), 0);
    EXPECT_EQ(wglGetCurrentContext(), context);
    EXPECT_TRUE(drawsToSurface());
}

TEST_F(WglGlxGLTest, SwitchesBetweenDisplays)
{
    auto other = GlxDisplay::open();
    ASSERT_NE(other, nullptr);
    const HDC otherWindow = tavo::wrapGlxDrawable(other->getNative(), other->makeWindow());
    const HGLRC otherContext = tavo::wrapGlxContext(other->getNative(), other->makeContext());
    const HDC window = wrapNewWindow();
    const HGLRC context = wrapNewContext();
    for (int i = 0; i < 3; ++i) {
        ASSERT_NE(wglMakeCurrent(window, context), 0);
        EXPECT_EQ(glXGetCurrentDisplay(), native());
        EXPECT_TRUE(drawsToSurface());
        ASSERT_NE(wglMakeCurrent(otherWindow, otherContext), 0);
        EXPECT_EQ(glXGetCurrentDisplay(), other->getNative());
        EXPECT_TRUE(drawsToSurface());
    }
    EXPECT_EQ(wglMakeCurrent(window, otherContext), 0);
    EXPECT_EQ(wglMakeCurrent(otherWindow, context), 0);
    EXPECT_EQ(wglGetCurrentContext(), otherContext);
    EXPECT_NE(wglMakeCurrent(nullptr, nullptr), 0);
}

TEST_F(WglGlxGLTest, LeavesTheErrorsOfOtherRequestsToTheApplication)
{
    const HGLRC context = wrapNewContext();
    const Window window = m_Display->makeWindow();
    const HDC dead = tavo::wrapGlxDrawable(native(), window);
    m_Display->destroyWindow(window);

    XMapWindow(native(), window);
    EXPECT_EQ(wglMakeCurrent(dead, context), 0);
    XSync(native(), False);
    EXPECT_EQ(reportedErrors, 1);
    XMapWindow(native(), window);
    m_ExpectedErrors = 2;
}

TEST_F(WglGlxGLTest, DoesNotWaitForTheServerWhenItSwitches)
{
    const HDC windows[] = {wrapNewWindow(), wrapNewWindow()};
    const HGLRC contexts[] = {wrapNewContext(), wrapNewContext()};
    for (int i : {0, 1, 0})
        ASSERT_NE(wglMakeCurrent(windows[i], contexts[i]), 0);

    const unsigned long answered = XLastKnownRequestProcessed(native());
    for (int i : {1, 0, 1})
        ASSERT_NE(wglMakeCurrent(windows[i], contexts[i]), 0);
    EXPECT_EQ(XLastKnownRequestProcessed(native()), answered);
}

} // namespace
