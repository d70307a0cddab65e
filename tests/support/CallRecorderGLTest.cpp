#define GL_GLEXT_PROTOTYPES
#include <array>
#include <gmock/gmock.h>
#include <stdexcept>
#include <thread>

#include "tests/support/CallFormats.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/EntryPoints.h"
#include "tests/support/GLTest.h"
#include "tests/support/libraryFunction.h"

#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glu.h>

namespace tavo {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

template <typename Function>
Function* fetch(const char* name, Function*)
{
    return reinterpret_cast<Function*>(reinterpret_cast<AnyFunction>(wglGetProcAddress(name)));
}

#define FETCH(function) fetch(#function, static_cast<decltype(&::function)>(nullptr))

} // namespace

class CallRecorderGLTest : public GLTest
{};

TEST_F(CallRecorderGLTest, WritesCallsDownInOrder)
{
    CallRecorder recorder;
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    EXPECT_THAT(
        recorder.calls(), ElementsAre("glMatrixMode(GL_PROJECTION)", "glLoadIdentity()", "glMatrixMode(GL_MODELVIEW)"));
}

TEST_F(CallRecorderGLTest, PassesCallsOnToTheDriver)
{
    const CallRecorder recorder;
    glClearColor(1, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(readPixels(), Picture(64, 64, {255, 0, 0, 255}));
    EXPECT_EQ(glIsEnabled(GL_BLEND), GL_FALSE);
    glEnable(GL_BLEND);
    EXPECT_EQ(glIsEnabled(GL_BLEND), GL_TRUE);
}

TEST_F(CallRecorderGLTest, HearsNothingOutsideItsLife)
{
    glEnable(GL_BLEND);
    CallRecorder recorder;
    EXPECT_THAT(recorder.calls(), IsEmpty());
    glDisable(GL_BLEND);
    {
        const CallRecorder::Pause pause;
        glEnable(GL_DEPTH_TEST);
    }
    EXPECT_THAT(recorder.calls(), ElementsAre("glDisable(GL_BLEND)"));
    EXPECT_EQ(glIsEnabled(GL_DEPTH_TEST), GL_TRUE);
}

TEST_F(CallRecorderGLTest, HearsItsOwnThreadOnly)
{
    const CallRecorder recorder;
    std::thread([] { (void)wglGetCurrentContext(); }).join();
    EXPECT_THAT(recorder.calls(), IsEmpty());
}

TEST_F(CallRecorderGLTest, RefusesToBeNested)
{
    {
        const CallRecorder recorder;
        EXPECT_THROW(CallRecorder(), std::logic_error);
        glEnd();
        EXPECT_THAT(recorder.calls(), ElementsAre("glEnd()"));
    }
    EXPECT_THAT(drainErrors(), ElementsAre(GL_INVALID_OPERATION));
    EXPECT_NO_THROW(CallRecorder());
}

TEST_F(CallRecorderGLTest, StartsAfreshWhenCleared)
{
    CallRecorder recorder;
    glEnable(GL_BLEND);
    recorder.clear();
    glPushMatrix();
    glPopMatrix();
    EXPECT_THAT(recorder.calls(), ElementsAre("glPushMatrix()", "glPopMatrix()"));
}

TEST_F(CallRecorderGLTest, LetsATestLookBeforeEachCall)
{
    CallRecorder recorder;
    std::vector<bool> wasEnabled;
    recorder.beforeEachCall([&] { wasEnabled.push_back(glIsEnabled(GL_BLEND) == GL_TRUE); });
    glEnable(GL_BLEND);
    glDisable(GL_BLEND);
    EXPECT_THAT(wasEnabled, ElementsAre(false, true));
    EXPECT_THAT(recorder.calls(), ElementsAre("glEnable(GL_BLEND)", "glDisable(GL_BLEND)"));
}

TEST_F(CallRecorderGLTest, NamesEnumerantsByTheirParametersMeaning)
{
    const auto calls = callsOf([] {
        glBlendFunc(GL_ONE, GL_ZERO);
        glBegin(GL_LINES);
        glEnd();
        glBegin(GL_POINTS);
        glEnd();
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
        glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, GL_FALSE);
        glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_PRIORITY, 0.5f);
        glDepthMask(GL_TRUE);
        glBindTexture(0x1234, 0);
    });
    EXPECT_THAT(calls, ElementsAre("glBlendFunc(GL_ONE, GL_ZERO)", "glBegin(GL_LINES)", "glEnd()", "glBegin(GL_POINTS)",
                           "glEnd()", "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP)",
                           "glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, 0)",
                           "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)",
                           "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_PRIORITY, 0.5)", "glDepthMask(GL_TRUE)",
                           "glBindTexture(0x1234, 0)"));
    EXPECT_THAT(drainErrors(), ElementsAre(GL_INVALID_ENUM));
}

TEST_F(CallRecorderGLTest, SpellsBitMasksOut)
{
    const auto calls = callsOf([] {
        glClear(GL_DEPTH_BUFFER_BIT | GL_COLOR_BUFFER_BIT);
        glClear(0);
        glPushAttrib(0x000FFFFF);
        glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT);
    });
    EXPECT_THAT(calls, ElementsAre("glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)", "glClear(0)",
                           "glPushAttrib(GL_ALL_ATTRIB_BITS)", "glPushAttrib(GL_CURRENT_BIT | GL_ENABLE_BIT)"));
}

TEST(CallFormatsTest, TellsNumbersThatDifferApart)
{
    using namespace format;
    // GL_ALL_ATTRIB_BITS on Windows, and in Mesa's header.
    EXPECT_EQ(attribBitsText(0x000FFFFF), "GL_ALL_ATTRIB_BITS");
    EXPECT_NE(attribBitsText(0xFFFFFFFF), attribBitsText(0x000FFFFF));
    EXPECT_NE(attribBitsText(0x001FFFFF), attribBitsText(0x000FFFFF));
    EXPECT_NE(attribBitsText(0x0007FFFF), attribBitsText(0x000FFFFF));
    EXPECT_NE(clientAttribBitsText(0xFFFFFFFF), clientAttribBitsText(3));
    EXPECT_EQ(booleanText(0), "GL_FALSE");
    EXPECT_EQ(booleanText(1), "GL_TRUE");
    EXPECT_EQ(booleanText(2), "2");
}

TEST_F(CallRecorderGLTest, WritesVectorsByTheirValues)
{
    const std::array<float, 3> position{1, 2.5f, -3};
    const std::array<unsigned char, 4> colour{255, 0, 0, 128};
    const std::array<GLuint, 2> names{40, 50};
    const std::array<float, 4> border{0, 0.25f, 0.5f, 1};
    const auto calls = callsOf([&] {
        glVertex3fv(position.data());
        glColor4ubv(colour.data());
        glDeleteTextures(2, names.data());
        glDeleteTextures(0, nullptr);
        glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, border.data());
    });
    EXPECT_THAT(calls, ElementsAre("glVertex3fv((1, 2.5, -3))", "glColor4ubv((255, 0, 0, 128))",
                           "glDeleteTextures(2, (40, 50))", "glDeleteTextures(0, null)",
                           "glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, (0, 0.25, 0.5, 1))"));
}

TEST_F(CallRecorderGLTest, WritesPointersByWhatIsKnownOfThem)
{
    const std::array<float, 8> vertices{};
    CallRecorder recorder;
    recorder.namePointer(vertices.data(), "vertices", sizeof vertices);
    glVertexPointer(2, GL_FLOAT, 16, nullptr);
    glVertexPointer(2, GL_FLOAT, 16, reinterpret_cast<const void*>(12));
    glVertexPointer(2, GL_FLOAT, 16, vertices.data());
    glVertexPointer(2, GL_FLOAT, 16, &vertices[2]);
    const std::array<float, 2> others{};
    glVertexPointer(2, GL_FLOAT, 16, others.data());
    EXPECT_THAT(
        recorder.calls(), ElementsAre("glVertexPointer(2, GL_FLOAT, 16, null)", "glVertexPointer(2, GL_FLOAT, 16, 12)",
                              "glVertexPointer(2, GL_FLOAT, 16, vertices)",
                              "glVertexPointer(2, GL_FLOAT, 16, vertices+8)", "glVertexPointer(2, GL_FLOAT, 16, ptr)"));
}

TEST_F(CallRecorderGLTest, RecordsEntryPointsThatAreFetched)
{
    CallRecorder recorder;
    const auto bindBuffer = FETCH(glBindBufferARB);
    const auto deletePrograms = FETCH(glDeleteProgramsARB);
    const auto enableArray = FETCH(glEnableVertexAttribArrayARB);
    ASSERT_TRUE(bindBuffer && deletePrograms && enableArray);
    bindBuffer(GL_ARRAY_BUFFER_ARB, 7);
    const GLuint program = 9;
    deletePrograms(1, &program);
    enableArray(3);
    EXPECT_THAT(recorder.calls(),
        ElementsAre("wglGetProcAddress(\"glBindBufferARB\")", "wglGetProcAddress(\"glDeleteProgramsARB\")",
            "wglGetProcAddress(\"glEnableVertexAttribArrayARB\")", "glBindBufferARB(GL_ARRAY_BUFFER_ARB, 7)",
            "glDeleteProgramsARB(1, (9))", "glEnableVertexAttribArrayARB(3)"));

    GLint bound = 0;
    glGetIntegerv(GL_ARRAY_BUFFER_BINDING_ARB, &bound);
    EXPECT_EQ(bound, 7) << "the call has reached the driver";
    bindBuffer(GL_ARRAY_BUFFER_ARB, 0);
}

TEST_F(CallRecorderGLTest, HandsOutTheDriversEntryPointsThatItDoesNotKnow)
{
    const auto getInteger64v = FETCH(glGetInteger64v);
    ASSERT_TRUE(getInteger64v);
    GLint64 size = 0;
    EXPECT_THAT(callsOf([&] { getInteger64v(GL_MAX_TEXTURE_SIZE, &size); }), IsEmpty());
    EXPECT_GT(size, 0);
}

TEST_F(CallRecorderGLTest, WithholdsEntryPointsFromATestThatAsksForIt)
{
    {
        const WithheldEntryPoint withheld("glBindBufferARB");
        EXPECT_THAT(callsOf([] { EXPECT_EQ(wglGetProcAddress("glBindBufferARB"), nullptr); }),
            ElementsAre("wglGetProcAddress(\"glBindBufferARB\")"));
        EXPECT_NE(wglGetProcAddress("glGenBuffersARB"), nullptr);
    }
    EXPECT_NE(wglGetProcAddress("glBindBufferARB"), nullptr);
}

TEST_F(CallRecorderGLTest, QuotesCountedStrings)
{
    const auto programString = FETCH(glProgramStringARB);
    ASSERT_TRUE(programString);
    const char program[] = "!!ARBvp1.0\nEND and what is behind it";
    EXPECT_THAT(callsOf([&] { programString(GL_VERTEX_PROGRAM_ARB, GL_PROGRAM_FORMAT_ASCII_ARB, 14, program); }),
        ElementsAre(
            "glProgramStringARB(GL_VERTEX_PROGRAM_ARB, GL_PROGRAM_FORMAT_ASCII_ARB, 14, \"!!ARBvp1.0\\nEND\")"));
    EXPECT_THAT(drainErrors(), IsEmpty());
}

TEST_F(CallRecorderGLTest, LeavesOutWhatACallMakesItself)
{
    const std::array<unsigned char, 16> pixels{};
    const auto calls = callsOf([&] {
        glMatrixMode(GL_PROJECTION);
        gluOrtho2D(0, 64, 0, 64);
        gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGBA, 2, 2, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    });
    EXPECT_THAT(calls, ElementsAre("glMatrixMode(GL_PROJECTION)", "gluOrtho2D(0, 64, 0, 64)",
                           "gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGBA, 2, 2, GL_RGBA, GL_UNSIGNED_BYTE, ptr)"));
    GLint width = 0;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 1, GL_TEXTURE_WIDTH, &width);
    EXPECT_EQ(width, 1) << "GLU's own calls have reached the driver";
}

TEST_F(CallRecorderGLTest, RecordsTheWindowSystemsCalls)
{
    const auto calls = callsOf([this] {
        const HDC dc = wglGetCurrentDC();
        const HGLRC rc = wglGetCurrentContext();
        wglMakeCurrent(nullptr, nullptr);
        wglMakeCurrent(dc, rc);
        EXPECT_EQ(rc, getRC());
    });
    EXPECT_THAT(calls, ElementsAre("wglGetCurrentDC()", "wglGetCurrentContext()", "wglMakeCurrent(null, null)",
                           "wglMakeCurrent(ptr, ptr)"));
}

TEST(CallFormatsTest, WritesNumbersInTheShortestWayThatReadsBack)
{
    using format::numberText;
    EXPECT_EQ(numberText(0.05f), "0.05");
    EXPECT_EQ(numberText(1.0f), "1");
    EXPECT_EQ(numberText(-0.0f), "-0");
    EXPECT_EQ(numberText(100000.0), "100000");
    EXPECT_EQ(numberText(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(numberText(1.0f / 3.0f), "0.33333334");
    EXPECT_EQ(numberText(1e-20), "1e-20");
    EXPECT_EQ(numberText(static_cast<unsigned char>(65)), "65");
    EXPECT_EQ(numberText(-7), "-7");
}

} // namespace tavo
