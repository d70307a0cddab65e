#include "tests/tavo/platform/WglGLTest.h"

#include <thread>

#include "tavo/platform/wgl.h"
#include "tests/tavo/platform/Drawing.h"

#include <GL/gl.h>

namespace tavo {

void WglGLTest::SetUp()
{
    m_Contexts = GetParam().make();
    if (!m_Contexts)
        GTEST_SKIP() << "needs " << GetParam().needs;
}

void WglGLTest::TearDown()
{
    EXPECT_NE(wglMakeCurrent(nullptr, nullptr), 0);
    EXPECT_EQ(getNativeCurrentContext(), nullptr);
}

testing::AssertionResult WglGLTest::draws() const
{
    return m_Contexts->hasSurfaces() ? drawsToSurface() : drawsToRenderbuffer();
}

namespace {

// A context with the drawable that it was current with, by their handles.
struct Handles
{
    HDC deviceContext = nullptr;
    HGLRC renderingContext = nullptr;

    static Handles ofCurrent() { return {wglGetCurrentDC(), wglGetCurrentContext()}; }
    bool makeCurrent() const { return wglMakeCurrent(deviceContext, renderingContext) != 0; }
    bool operator==(const Handles&) const = default;
};

TEST_P(WglGLTest, SeesNothingWhileNoContextIsCurrent)
{
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(wglGetCurrentDC(), nullptr);
    EXPECT_EQ(wglGetProcAddress("glGetString"), nullptr);
    EXPECT_EQ(wglGetProcAddress("wglGetExtensionsStringARB"), nullptr);
}

TEST_P(WglGLTest, SeesAContextThatIsCurrent)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    EXPECT_NE(wglGetCurrentContext(), nullptr);
    EXPECT_NE(wglGetCurrentDC(), nullptr);
}

TEST_P(WglGLTest, GivesTheSameHandlesEachTime)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    const auto handles = Handles::ofCurrent();
    EXPECT_EQ(Handles::ofCurrent(), handles);

    ASSERT_TRUE(m_Contexts->makeCurrent(1));
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    EXPECT_EQ(Handles::ofCurrent(), handles);
}

TEST_P(WglGLTest, TellsSharedContextsAndTheirDrawablesApart)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    const auto first = Handles::ofCurrent();
    ASSERT_TRUE(m_Contexts->makeCurrent(1));
    const auto second = Handles::ofCurrent();
    EXPECT_NE(second.renderingContext, first.renderingContext);
    EXPECT_EQ(second.deviceContext != first.deviceContext, m_Contexts->hasSurfaces());
}

TEST_P(WglGLTest, ReleasesTheCurrentContext)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    EXPECT_NE(wglMakeCurrent(nullptr, nullptr), 0);
    EXPECT_EQ(getNativeCurrentContext(), nullptr);
    EXPECT_EQ(Handles::ofCurrent(), Handles());
}

TEST_P(WglGLTest, ReleasesWithAnyDeviceContext)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    EXPECT_NE(wglMakeCurrent(wglGetCurrentDC(), nullptr), 0);
    EXPECT_EQ(getNativeCurrentContext(), nullptr);
}

TEST_P(WglGLTest, ActivatesAReleasedContextAgain)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    const auto handles = Handles::ofCurrent();
    const void* native = getNativeCurrentContext();
    ASSERT_NE(wglMakeCurrent(nullptr, nullptr), 0);

    ASSERT_TRUE(handles.makeCurrent());
    EXPECT_EQ(getNativeCurrentContext(), native);
    EXPECT_EQ(Handles::ofCurrent(), handles);
    EXPECT_TRUE(draws());
}

TEST_P(WglGLTest, KeepsACurrentContextThatIsActivatedAgain)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    const auto handles = Handles::ofCurrent();
    ASSERT_TRUE(handles.makeCurrent());
    EXPECT_EQ(Handles::ofCurrent(), handles);
    EXPECT_TRUE(draws());
}

TEST_P(WglGLTest, SwitchesBetweenContextsThatShareTheirObjects)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    const auto first = Handles::ofCurrent();
    ASSERT_TRUE(m_Contexts->makeCurrent(1));
    const auto second = Handles::ofCurrent();

    ASSERT_TRUE(first.makeCurrent());
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    EXPECT_TRUE(draws());

    ASSERT_TRUE(second.makeCurrent());
    EXPECT_EQ(Handles::ofCurrent(), second);
    EXPECT_TRUE(glIsTexture(texture));
    EXPECT_TRUE(draws());

    ASSERT_TRUE(first.makeCurrent());
    glDeleteTextures(1, &texture);
    EXPECT_TRUE(draws());
}

TEST_P(WglGLTest, RefusesUnknownHandlesAndKeepsWhatIsCurrent)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    const auto handles = Handles::ofCurrent();
    const auto unknownContext = reinterpret_cast<HGLRC>(&m_Contexts);
    const auto unknownDevice = reinterpret_cast<HDC>(&m_Contexts);

    EXPECT_EQ(wglMakeCurrent(nullptr, handles.renderingContext), 0);
    EXPECT_EQ(wglMakeCurrent(unknownDevice, handles.renderingContext), 0);
    EXPECT_EQ(wglMakeCurrent(handles.deviceContext, unknownContext), 0);
    EXPECT_EQ(wglMakeCurrent(nullptr, unknownContext), 0);
    EXPECT_EQ(Handles::ofCurrent(), handles);
    EXPECT_TRUE(draws());
}

TEST_P(WglGLTest, TakesNoHandleOfOneKindForTheOther)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    const auto handles = Handles::ofCurrent();
    EXPECT_EQ(wglMakeCurrent(handles.deviceContext, reinterpret_cast<HGLRC>(handles.deviceContext)), 0);
    EXPECT_EQ(wglMakeCurrent(reinterpret_cast<HDC>(handles.renderingContext), handles.renderingContext), 0);
}

TEST_P(WglGLTest, FindsTheEntryPointsOfTheDriver)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    const auto getString = reinterpret_cast<const GLubyte* (*)(GLenum)>(wglGetProcAddress("glGetString"));
    ASSERT_NE(getString, nullptr);
    EXPECT_EQ(getString(GL_VERSION), glGetString(GL_VERSION));
    EXPECT_NE(wglGetProcAddress("glGenFramebuffersEXT"), nullptr);
    EXPECT_NE(wglGetProcAddress("glBindProgramARB"), nullptr);
}

TEST_P(WglGLTest, HasNoWglExtensionsButTheirListAndPbuffers)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    const auto getExtensions = reinterpret_cast<const char* (*)(HDC)>(wglGetProcAddress("wglGetExtensionsStringARB"));
    ASSERT_NE(getExtensions, nullptr);
    EXPECT_STREQ(getExtensions(wglGetCurrentDC()), "WGL_ARB_extensions_string WGL_ARB_pbuffer");
    EXPECT_EQ(getExtensions(nullptr), nullptr);
    EXPECT_EQ(getExtensions(reinterpret_cast<HDC>(&m_Contexts)), nullptr);

    EXPECT_EQ(wglGetProcAddress("wglChoosePixelFormatARB"), nullptr);
    EXPECT_EQ(wglGetProcAddress("wglAllocateMemoryNV"), nullptr);
    EXPECT_EQ(wglGetProcAddress("wglGetExtensionsString"), nullptr);
    EXPECT_EQ(wglGetProcAddress("wgl"), nullptr);
}

TEST_P(WglGLTest, HasNoEntryPointWithoutAName)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    EXPECT_EQ(wglGetProcAddress(nullptr), nullptr);
}

TEST_P(WglGLTest, KeepsTheContextsOfThreadsApart)
{
    Handles handles[2];
    for (int index : {0, 1}) {
        ASSERT_TRUE(m_Contexts->makeCurrent(index));
        handles[index] = Handles::ofCurrent();
    }
    ASSERT_NE(wglMakeCurrent(nullptr, nullptr), 0);

    const auto activateAndDraw = [this](const Handles& own) {
        for (int i = 0; i < 20; ++i) {
            ASSERT_TRUE(own.makeCurrent());
            ASSERT_EQ(Handles::ofCurrent(), own);
            ASSERT_TRUE(draws());
            ASSERT_NE(wglMakeCurrent(nullptr, nullptr), 0);
            ASSERT_EQ(wglGetCurrentContext(), nullptr);
        }
    };
    std::thread other(activateAndDraw, handles[1]);
    activateAndDraw(handles[0]);
    other.join();
}

} // namespace

} // namespace tavo
