#include <algorithm>
#include <array>
#include <cstring>
#include <gmock/gmock.h>
#include <optional>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/objects/PException.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/Picture.h"
#include "tests/support/extensions.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/geometry/vertexPrograms.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/geometry/GLGeometryList.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::Ge;
using testing::IsEmpty;
using testing::SizeIs;
using testing::ThrowsMessage;

class GLGeometryListGLTest : public ContextTest
{
protected:
    // What compiling makes, and executing between binding and unbinding.
    Calls compilingCalls(bool mappingFlag = false)
    {
        return callsOf([&] { m_List.compile(context(), mappingFlag); });
    }

    Calls drawingCalls()
    {
        Calls calls = callsOf([&] { m_List.execute(context()); });
        std::erase_if(calls, [](const std::string& call) { return !call.starts_with("glDrawArrays"); });
        return calls;
    }

    // The arrays that a compiled list binds, "pointer(components, stride, offset)" of each.
    Calls boundArrays()
    {
        Calls calls = callsOf([&] { m_List.execute(context()); });
        std::erase_if(calls, [](const std::string& call) { return call.find("Pointer") == std::string::npos; });
        return calls;
    }

    // The floats in the compiled buffer, the only one whose name the list's binding names.
    std::vector<float> compiledFloats()
    {
        const Calls calls = callsOf([&] { m_List.execute(context()); });
        const std::string& bind = calls.front();
        glBindBufferARB(GL_ARRAY_BUFFER_ARB, static_cast<unsigned int>(std::stoul(bind.substr(bind.find(',') + 1))));
        int size = 0;
        glGetBufferParameterivARB(GL_ARRAY_BUFFER_ARB, GL_BUFFER_SIZE_ARB, &size);
        std::vector<float> floats(static_cast<std::size_t>(size) / sizeof(float));
        glGetBufferSubDataARB(GL_ARRAY_BUFFER_ARB, 0, size, floats.data());
        glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0);
        return floats;
    }

    void recordVertices(unsigned int count)
    {
        for (unsigned int i = 0; i < count; ++i)
            m_List.vertex3f(static_cast<float>(i), 0, 0);
    }

    template <typename Draw>
    Picture picture(Draw draw)
    {
        glClear(GL_COLOR_BUFFER_BIT);
        draw();
        return readPixels();
    }

    GLGeometryList m_List{nullptr};
};

TEST_F(GLGeometryListGLTest, RecordsWithoutGL)
{
    const auto record = [&] {
        m_List.begin(GL_TRIANGLES);
        m_List.color3f(1, 0, 0);
        m_List.normal3f(0, 0, 1);
        m_List.texCoord2f(0, 0);
        m_List.vertex3f(0, 0, 0);
        m_List.end();
    };
    EXPECT_THAT(callsOf(record), IsEmpty());
}

TEST_F(GLGeometryListGLTest, CompilesPositionsAlone)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    m_List.begin(GL_POINTS);
    m_List.vertex3f(1, 2, 3);
    const std::array<float, 3> second{4, 5, 6};
    m_List.vertex3fv(second.data());
    m_List.end();
    const Calls calls = compilingCalls();
    ASSERT_THAT(calls, SizeIs(Ge(3u)));
    EXPECT_EQ(calls[2], "glBufferDataARB(GL_ARRAY_BUFFER_ARB, 24, null, GL_STATIC_DRAW_ARB)");
    EXPECT_THAT(calls, testing::Contains("glBufferSubDataARB(GL_ARRAY_BUFFER_ARB, 0, 24, ptr)"));
    EXPECT_THAT(compiledFloats(), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST_F(GLGeometryListGLTest, OrdersUsedAttributesAsPositionNormalColourTextureCoordinate)
{
    m_List.texCoord2f(0, 0);
    m_List.color4f(0, 0, 0, 0);
    m_List.normal3f(0, 0, 0);
    m_List.begin(GL_POINTS);
    m_List.vertex3f(0, 0, 0);
    m_List.end();
    m_List.compile(context(), true);
    EXPECT_THAT(
        boundArrays(), ElementsAre("glVertexPointer(3, GL_FLOAT, 48, null)", "glNormalPointer(GL_FLOAT, 48, 12)",
                           "glColorPointer(4, GL_FLOAT, 48, 24)", "glTexCoordPointer(2, GL_FLOAT, 48, 40)"));
}

TEST_F(GLGeometryListGLTest, FeedsGenericAttributesWithoutTheMappingFlag)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    m_List.texCoord4f(0, 0, 0, 0);
    m_List.vertex3f(0, 0, 0);
    m_List.end();
    m_List.compile(context(), false);
    EXPECT_THAT(boundArrays(), ElementsAre("glVertexAttribPointerARB(0, 3, GL_FLOAT, GL_FALSE, 28, null)",
                                   "glVertexAttribPointerARB(1, 4, GL_FLOAT, GL_FALSE, 28, 12)"));
}

TEST_F(GLGeometryListGLTest, LeavesOutAttributesThatWereNotUsed)
{
    m_List.color3f(1, 0, 0);
    m_List.vertex3f(0, 0, 0);
    m_List.end();
    m_List.compile(context(), true);
    EXPECT_THAT(
        boundArrays(), ElementsAre("glVertexPointer(3, GL_FLOAT, 24, null)", "glColorPointer(3, GL_FLOAT, 24, 12)"));
}

TEST_F(GLGeometryListGLTest, ExchangesColoursAndNormals)
{
    m_List.color4f(0.1f, 0.2f, 0.3f, 0.4f);
    m_List.normal3f(5, 6, 7);
    m_List.vertex3f(1, 2, 3);
    m_List.end();
    m_List.compile(context(), true);
    EXPECT_THAT(compiledFloats(), ElementsAre(1, 2, 3, 0.1f, 0.2f, 0.3f, 5, 6, 7, 0));
}

TEST_F(GLGeometryListGLTest, HasZerosForColoursWithoutNormals)
{
    m_List.color3f(0.1f, 0.2f, 0.3f);
    m_List.vertex3f(1, 2, 3);
    m_List.end();
    m_List.compile(context(), true);
    EXPECT_THAT(compiledFloats(), ElementsAre(1, 2, 3, 0, 0, 0));
}

// The recorded values, with colours where the buffer has normals and the reverse.
TEST_F(GLGeometryListGLTest, TakesWhatIsCurrentForEachVertex)
{
    constexpr std::array<float, 4> values{9, 8, 7, 6};
    m_List.vertex3f(0, 0, 0); // before anything is current
    m_List.color3fv(values.data());
    m_List.normal3fv(values.data());
    m_List.texCoord2fv(values.data());
    m_List.vertex3f(1, 0, 0);
    m_List.color4fv(values.data());
    m_List.texCoord4fv(values.data());
    m_List.vertex3f(2, 0, 0);
    m_List.color3f(1, 2, 3);
    m_List.normal3f(4, 5, 6);
    m_List.texCoord2f(7, 8);
    m_List.vertex3f(3, 0, 0);
    m_List.end();
    m_List.compile(context(), true);
    // Position and normal of 3, colour and texture coordinate of 4 components each.
    const std::vector<float> expected{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, //
        1, 0, 0, 9, 8, 7, 9, 8, 7, 0, 9, 8, 0, 0,                               //
        2, 0, 0, 9, 8, 7, 9, 8, 7, 0, 9, 8, 7, 6,                               //
        3, 0, 0, 1, 2, 3, 4, 5, 6, 0, 7, 8, 0, 0};
    EXPECT_EQ(compiledFloats(), expected);
}

// Its colour is recorded before anything needs it: the buffer has it where normals are.
TEST_F(GLGeometryListGLTest, KeepsWhatWasCurrentBeforeItWasUsed)
{
    m_List.color3f(0.1f, 0.2f, 0.3f);
    m_List.vertex3f(1, 2, 3);
    m_List.normal3f(5, 6, 7);
    m_List.end();
    m_List.compile(context(), true);
    EXPECT_THAT(compiledFloats(), ElementsAre(1, 2, 3, 0.1f, 0.2f, 0.3f, 0, 0, 0));
}

TEST_F(GLGeometryListGLTest, NeverLowersTheNumberOfComponents)
{
    m_List.texCoord4f(1, 2, 3, 4);
    m_List.texCoord2f(5, 6);
    m_List.vertex3f(0, 0, 0);
    m_List.end();
    m_List.compile(context(), true);
    EXPECT_THAT(compiledFloats(), ElementsAre(0, 0, 0, 5, 6, 0, 0));
}

TEST_F(GLGeometryListGLTest, DrawsItsPrimitivesInTheirOrder)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    m_List.begin(GL_TRIANGLES);
    recordVertices(3);
    m_List.end();
    m_List.begin(GL_QUADS);
    recordVertices(4);
    m_List.end();
    m_List.compile(context(), false);
    const Calls calls = callsOf([&] { m_List.execute(nullptr); });
    ASSERT_THAT(calls, SizeIs(7u));
    EXPECT_EQ(calls[3], "glDrawArrays(GL_TRIANGLES, 0, 3)");
    EXPECT_EQ(calls[4], "glDrawArrays(GL_QUADS, 3, 4)");
    EXPECT_EQ(calls[5], "glDisableVertexAttribArrayARB(0)");
    EXPECT_EQ(calls[6], "glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0)");
}

TEST_F(GLGeometryListGLTest, KeepsAnyNumberOfVerticesInTheirOrder)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    constexpr unsigned int COUNT = 5'000;
    for (unsigned int i = 0; i < COUNT; ++i) {
        m_List.vertex3f(static_cast<float>(i), -1, 2);
        if (i % 1'024 == 1'023)
            m_List.end();
    }
    m_List.end();
    compilingCalls();

    std::vector<float> expected;
    for (unsigned int i = 0; i < COUNT; ++i)
        expected.insert(expected.end(), {static_cast<float>(i), -1, 2});
    EXPECT_EQ(compiledFloats(), expected);
    EXPECT_THAT(drawingCalls(), ElementsAre("glDrawArrays(GL_POINTS, 0, 1024)", "glDrawArrays(GL_POINTS, 1024, 1024)",
                                    "glDrawArrays(GL_POINTS, 2048, 1024)", "glDrawArrays(GL_POINTS, 3072, 1024)",
                                    "glDrawArrays(GL_POINTS, 4096, 904)"));
}

TEST_F(GLGeometryListGLTest, CountsVerticesBetweenPrimitivesToTheNext)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    recordVertices(2);
    m_List.begin(GL_LINE_STRIP);
    recordVertices(1);
    m_List.end();
    recordVertices(1);
    m_List.begin(GL_POINTS);
    m_List.begin(GL_LINES);
    recordVertices(1);
    m_List.end();
    recordVertices(5); // never ended
    m_List.compile(context(), false);
    EXPECT_THAT(drawingCalls(), ElementsAre("glDrawArrays(GL_LINE_STRIP, 0, 3)", "glDrawArrays(GL_LINES, 3, 2)"));
}

// Which reaches beyond the buffer; deliberately.
TEST_F(GLGeometryListGLTest, DrawsAsManyVerticesAsThereAreForAnEmptyPrimitive)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    m_List.begin(GL_POINTS);
    recordVertices(5);
    m_List.end();
    m_List.end();
    m_List.compile(context(), false);
    EXPECT_THAT(drawingCalls(), ElementsAre("glDrawArrays(GL_POINTS, 0, 5)", "glDrawArrays(GL_POINTS, 5, 5)"));
}

TEST_F(GLGeometryListGLTest, OnlyBindsAndUnbindsWithoutPrimitives)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    recordVertices(2);
    m_List.compile(context(), false);
    EXPECT_THAT(callsOf([&] { m_List.execute(context()); }), SizeIs(5u));
    EXPECT_THAT(drawingCalls(), IsEmpty());
}

TEST_F(GLGeometryListGLTest, CompilesToNothingWithoutVertices)
{
    m_List.begin(GL_POINTS);
    m_List.color3f(1, 0, 0);
    m_List.end();
    EXPECT_THAT(compilingCalls(), IsEmpty());
    EXPECT_THAT(callsOf([&] { m_List.execute(context()); }), IsEmpty());
}

TEST_F(GLGeometryListGLTest, RefusesToDrawWhatIsNotCompiled)
{
    recordVertices(1);
    m_List.end();
    EXPECT_THAT(
        [&] { m_List.execute(context()); }, ThrowsMessage<PException>("GLGeometryList::execute() - not compiled"));
}

TEST_F(GLGeometryListGLTest, RefusesToDrawWhatWasRecordedAfterCompilingNothing)
{
    m_List.compile(context(), false);
    recordVertices(1);
    m_List.end();
    EXPECT_THAT(
        [&] { m_List.execute(context()); }, ThrowsMessage<PException>("GLGeometryList::execute() - not compiled"));
}

class GrownGeometryListGLTest : public GLGeometryListGLTest
{
protected:
    void SetUp() override
    {
        GLGeometryListGLTest::SetUp();
        if (IsSkipped())
            return;
        NEEDS_EXTENSION("GL_ARB_vertex_program");
        recordPrimitive(GL_POINTS, 3);
        recordPrimitive(GL_LINES, 2);
        m_List.compile(context(), false);
    }

    void recordPrimitive(unsigned int mode, unsigned int count)
    {
        m_List.begin(mode);
        recordVertices(count);
        m_List.end();
    }

    std::string outputOfDrawing() { return outputOfDrawing(m_List); }

    std::string outputOfDrawing(GLGeometryList& list)
    {
        const std::size_t before = debugOutput.getText().size();
        list.execute(context());
        return debugOutput.getText().substr(before);
    }

    const std::vector<std::string> m_CompiledDrawing{"glDrawArrays(GL_POINTS, 0, 3)", "glDrawArrays(GL_LINES, 3, 2)"};
};

TEST_F(GrownGeometryListGLTest, DrawsAsBeforeWhileVerticesAreRecorded)
{
    recordVertices(4);
    EXPECT_EQ(outputOfDrawing(), "");
    EXPECT_EQ(drawingCalls(), m_CompiledDrawing);
}

TEST_F(GrownGeometryListGLTest, LeavesOutPrimitivesBeyondTheBuffer)
{
    recordPrimitive(GL_TRIANGLES, 3);
    recordPrimitive(GL_QUADS, 0);
    EXPECT_EQ(drawingCalls(), m_CompiledDrawing);
    EXPECT_THAT(drainErrors(), IsEmpty());
}

TEST_F(GrownGeometryListGLTest, LeavesOutAPrimitiveThatIsOnlyPartlyInTheBuffer)
{
    recordVertices(1);
    const GLGeometryList first(m_List); // destroys the first buffer
    m_List.compile(context(), false);
    recordVertices(2);
    m_List.end();
    EXPECT_EQ(drawingCalls(), m_CompiledDrawing);
}

TEST_F(GrownGeometryListGLTest, DrawsThemOnceTheyAreCompiledToo)
{
    recordPrimitive(GL_TRIANGLES, 3);
    m_List.execute(context());
    const GLGeometryList first(m_List); // destroys the first buffer
    m_List.compile(context(), false);
    Calls expected = m_CompiledDrawing;
    expected.push_back("glDrawArrays(GL_TRIANGLES, 5, 3)");
    EXPECT_EQ(drawingCalls(), expected);
}

TEST_F(GrownGeometryListGLTest, DrawsAnEmptyPrimitiveAsManyVerticesAsWereCompiled)
{
    m_List.end();
    recordPrimitive(GL_TRIANGLES, 3);
    Calls expected = m_CompiledDrawing;
    expected.push_back("glDrawArrays(GL_LINES, 5, 5)"); // the mode is that of the last begin
    EXPECT_EQ(drawingCalls(), expected);
}

TEST_F(GrownGeometryListGLTest, ReportsOnceForEachListWhatItLeavesOut)
{
    const std::string line =
        "GLGeometryList::execute() - primitives with vertices recorded after compile() are left out\n";
    EXPECT_EQ(outputOfDrawing(), "");
    recordPrimitive(GL_TRIANGLES, 3);
    recordPrimitive(GL_QUADS, 4);
    EXPECT_EQ(outputOfDrawing(), line);
    EXPECT_EQ(outputOfDrawing(), "");

    GLGeometryList other(nullptr);
    other.vertex3f(0, 0, 0);
    other.compile(context(), false);
    other.vertex3f(1, 0, 0);
    other.end();
    EXPECT_EQ(outputOfDrawing(other), line);
}

TEST_F(GLGeometryListGLTest, TakesAnErrorFromTheQueueWhenItCompiles)
{
    recordVertices(1);
    glEnable(0xFFFFFFFF);
    m_List.compile(context(), false);
    EXPECT_THAT(drainErrors(), IsEmpty());
}

TEST_F(GLGeometryListGLTest, DestroysTheLastBufferItCompiled)
{
    std::optional<GLGeometryList> list(context());
    list->vertex3f(0, 0, 0);
    list->compile(context(), false);
    const GLGeometryList first(*list); // shares the first buffer, and destroys it at the end
    const Calls second = callsOf([&] { list->compile(context(), false); });
    EXPECT_EQ(second.front(), "glGenBuffersARB(1, ptr)") << "and the first stays";
    EXPECT_EQ(std::count_if(second.begin(), second.end(),
                  [](const std::string& call) { return call.starts_with("glDeleteBuffersARB"); }),
        0);
    const std::string name = second[1].substr(second[1].find(',') + 2);
    EXPECT_THAT(callsOf([&] { list.reset(); }),
        ElementsAre("glDeleteBuffersARB(1, (" + name.substr(0, name.size() - 1) + "))"));
}

TEST_F(GLGeometryListGLTest, PassesOnThatTheContextHasDied)
{
    recordVertices(1);
    m_List.compile(context(), false);
    destroyContext();
    EXPECT_THAT([&] { m_List.execute(nullptr); }, ThrowsMessage<PException>("GLBuffer::bind() - invalid context"));
}

constexpr std::array<std::array<float, 3>, 4> TRAPEZIUM{
    {{-0.8f, -0.7f, 0}, {0.8f, -0.9f, 0}, {0.5f, 0.6f, 0}, {-0.4f, 0.9f, 0}}};

TEST_F(GLGeometryListGLTest, DrawsTexturedGeometryAsImmediateModeDoes)
{
    const std::array<unsigned char, 16> texels{255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 0, 255};
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glEnable(GL_TEXTURE_2D);

    const auto immediate = [] {
        glBegin(GL_QUADS);
        for (const auto& corner : TRAPEZIUM) {
            glTexCoord2f(3 * corner[0], 2 * corner[1]);
            glVertex3fv(corner.data());
        }
        glEnd();
        glBegin(GL_LINES);
        glTexCoord2f(0.3f, 0.3f);
        glVertex3f(-1, 0.1f, 0);
        glVertex3f(1, -0.3f, 0);
        glEnd();
    };

    m_List.begin(GL_QUADS);
    for (const auto& corner : TRAPEZIUM) {
        m_List.texCoord2f(3 * corner[0], 2 * corner[1]);
        m_List.vertex3fv(corner.data());
    }
    m_List.end();
    m_List.begin(GL_LINES);
    m_List.texCoord2f(0.3f, 0.3f);
    m_List.vertex3f(-1, 0.1f, 0);
    m_List.vertex3f(1, -0.3f, 0);
    m_List.end();
    m_List.compile(context(), true);

    const Picture expected = picture(immediate);
    EXPECT_EQ(picture([&] { m_List.execute(context()); }), expected);
    EXPECT_NE(expected, Picture(64, 64)) << "something was drawn";
}

TEST_F(GLGeometryListGLTest, DrawsNormalsAsColours)
{
    const auto immediate = [] {
        glBegin(GL_QUADS);
        for (const auto& corner : TRAPEZIUM) {
            glColor4f(0.5f + corner[0] / 2, 0.5f + corner[1] / 2, 1, 0);
            glVertex3fv(corner.data());
        }
        glEnd();
    };

    m_List.color4f(1, 0, 0, 1); // what is drawn has the components of the colour, but the values of the normal
    m_List.begin(GL_QUADS);
    for (const auto& corner : TRAPEZIUM) {
        m_List.normal3f(0.5f + corner[0] / 2, 0.5f + corner[1] / 2, 1);
        m_List.vertex3fv(corner.data());
    }
    m_List.end();
    m_List.compile(context(), true);
    const Picture expected = picture(immediate);
    EXPECT_EQ(picture([&] { m_List.execute(context()); }), expected);
    EXPECT_NE(expected, Picture(64, 64)) << "something was drawn";
}

TEST_F(GLGeometryListGLTest, LightsByColoursInsteadOfNormals)
{
    constexpr std::array<float, 4> white{1, 1, 1, 1};
    glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, white.data());
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0); // from positive Z

    const auto immediate = [] {
        glNormal3f(0, 0, 0.5f);
        glBegin(GL_QUADS);
        for (const auto& corner : TRAPEZIUM)
            glVertex3fv(corner.data());
        glEnd();
    };

    m_List.color3f(0, 0, 0.5f);
    m_List.normal3f(0, 0, -1);
    m_List.begin(GL_QUADS);
    for (const auto& corner : TRAPEZIUM)
        m_List.vertex3fv(corner.data());
    m_List.end();
    m_List.compile(context(), true);
    const Picture expected = picture(immediate);
    EXPECT_EQ(picture([&] { m_List.execute(context()); }), expected);
    EXPECT_NE(expected, Picture(64, 64)) << "something was drawn";
}

TEST_F(GLGeometryListGLTest, FeedsAVertexProgram)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    useVertexProgram(PROGRAM_OF_ATTRIBUTES);
    m_List.texCoord4f(0, 1, 0, 1); // attribute 1: there are no normals and no colours
    m_List.begin(GL_QUADS);
    for (const auto& corner : TRAPEZIUM)
        m_List.vertex3fv(corner.data());
    m_List.end();
    m_List.compile(context(), false);
    const auto immediate = [] {
        glBegin(GL_QUADS);
        glVertexAttrib4fARB(1, 0, 1, 0, 1);
        for (const auto& corner : TRAPEZIUM)
            glVertexAttrib3fvARB(0, corner.data());
        glEnd();
    };
    const Picture expected = picture(immediate);
    EXPECT_EQ(picture([&] { m_List.execute(context()); }), expected);
    EXPECT_EQ(expected.at(32, 32), (Pixel{0, 255, 0, 255}));
}

} // namespace
} // namespace tavo
