#include <array>
#include <gmock/gmock.h>
#include <string>
#include <vector>

#include "tavo/base/objects/PException.h"
#include "tavo/points/VertexDescriptor.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/PictureComparison.h"
#include "tests/support/extensions.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/geometry/vertexPrograms.h"
#include "tests/vireo/vertexLayouts.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/geometry/GLHelper.h"

namespace tavo {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

// What binding vertices makes, in which the pointer to them appears as "data".
std::vector<std::string> bindingCalls(const VertexDescriptor& source, const VertexDescriptor& target)
{
    static const std::array<char, 128> data{};
    CallRecorder recorder;
    recorder.namePointer(data.data(), "data", data.size());
    GLHelper::bindSoftwareVertexBuffer(data.data(), &source, &target);
    return recorder.calls();
}

// What drawing so many bytes of zeros makes.
std::vector<std::string> drawingCalls(unsigned int sizeInBytes, const VertexDescriptor& layout, unsigned int mode)
{
    const std::vector<char> data(sizeInBytes);
    CallRecorder recorder;
    recorder.namePointer(data.data(), "data", data.size());
    GLHelper::drawBuffer(data.data(), sizeInBytes, &layout, &layout, mode);
    return recorder.calls();
}

const std::vector<std::string> AXES_ALONE{
    "glColor4f(1, 0.5, 0.5, 0.1)",
    "glVertex3f(0, 0, 0)",
    "glVertex3f(1, 0, 0)",
    "glColor4f(0.5, 1, 0.5, 0.1)",
    "glVertex3f(0, 0, 0)",
    "glVertex3f(0, 1, 0)",
    "glColor4f(0.5, 0.5, 1, 0.1)",
    "glVertex3f(0, 0, 0)",
    "glVertex3f(0, 0, 1)",
};

const std::vector<std::string> AXES_WITH_ARROWS{
    "glColor4f(1, 0.5, 0.5, 0.1)",
    "glVertex3f(0, 0, 0)",
    "glVertex3f(1, 0, 0)",
    "glVertex3f(0.95, 0.05, 0)",
    "glVertex3f(1, 0, 0)",
    "glVertex3f(0.95, -0.05, 0)",
    "glVertex3f(1, 0, 0)",
    "glColor4f(0.5, 1, 0.5, 0.1)",
    "glVertex3f(0, 0, 0)",
    "glVertex3f(0, 1, 0)",
    "glVertex3f(0.05, 0.95, 0)",
    "glVertex3f(0, 1, 0)",
    "glVertex3f(-0.05, 0.95, 0)",
    "glVertex3f(0, 1, 0)",
    "glColor4f(0.5, 0.5, 1, 0.1)",
    "glVertex3f(0, 0, 0)",
    "glVertex3f(0, 0, 1)",
    "glVertex3f(0.05, 0, 0.95)",
    "glVertex3f(0, 0, 1)",
    "glVertex3f(-0.05, 0, 0.95)",
    "glVertex3f(0, 0, 1)",
};

const std::vector<std::string> AXES_WITH_ARROWS_AND_LETTERS{
    "glColor4f(1, 0.5, 0.5, 0.1)",
    "glVertex3f(0, 0, 0)",
    "glVertex3f(1, 0, 0)",
    "glVertex3f(0.95, 0.05, 0)",
    "glVertex3f(1, 0, 0)",
    "glVertex3f(0.95, -0.05, 0)",
    "glVertex3f(1, 0, 0)",
    "glVertex3f(0.94, -0.1, 0)",
    "glVertex3f(1, -0.2, 0)",
    "glVertex3f(1, -0.1, 0)",
    "glVertex3f(0.94, -0.2, 0)",
    "glColor4f(0.5, 1, 0.5, 0.1)",
    "glVertex3f(0, 0, 0)",
    "glVertex3f(0, 1, 0)",
    "glVertex3f(0.05, 0.95, 0)",
    "glVertex3f(0, 1, 0)",
    "glVertex3f(-0.05, 0.95, 0)",
    "glVertex3f(0, 1, 0)",
    "glVertex3f(-0.15, 0.97, 0)",
    "glVertex3f(-0.1, 1, 0)",
    "glVertex3f(-0.1, 0.94, 0)",
    "glVertex3f(-0.15, 0.97, 0)",
    "glVertex3f(-0.15, 0.97, 0)",
    "glVertex3f(-0.2, 0.97, 0)",
    "glColor4f(0.5, 0.5, 1, 0.1)",
    "glVertex3f(0, 0, 0)",
    "glVertex3f(0, 0, 1)",
    "glVertex3f(0.05, 0, 0.95)",
    "glVertex3f(0, 0, 1)",
    "glVertex3f(-0.05, 0, 0.95)",
    "glVertex3f(0, 0, 1)",
    "glVertex3f(-0.2, 0, 1)",
    "glVertex3f(-0.2, 0, 0.94)",
    "glVertex3f(-0.2, 0, 0.94)",
    "glVertex3f(-0.1, 0, 1)",
    "glVertex3f(-0.1, 0, 1)",
    "glVertex3f(-0.1, 0, 0.94)",
};

using Matrix = std::array<float, 16>;

Matrix currentMatrix(unsigned int name)
{
    Matrix matrix{};
    glGetFloatv(name, matrix.data());
    return matrix;
}

int currentInteger(unsigned int name)
{
    int value = 0;
    glGetIntegerv(name, &value);
    return value;
}

bool isArrayEnabled(unsigned int index)
{
    int enabled = 0;
    tavo::glGetVertexAttribivARB(index, GL_VERTEX_ATTRIB_ARRAY_ENABLED_ARB, &enabled);
    return enabled != 0;
}

} // namespace

using GLHelperGLTest = ContextTest;

TEST_F(GLHelperGLTest, PointsTheTargetsArraysIntoTheSourcesBytes)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    const VertexDescriptor source = makeLayout({{"normal", 3, FLOAT}, {"color", 4, FLOAT}, {"position", 3, FLOAT}});
    const VertexDescriptor target = makeLayout({{"position", 2, FLOAT}, {"color", 4, FLOAT}});
    EXPECT_THAT(bindingCalls(source, target),
        ElementsAre("glEnableVertexAttribArrayARB(0)",
            "glVertexAttribPointerARB(0, 2, GL_FLOAT, GL_FALSE, 40, data+28)", "glEnableVertexAttribArrayARB(1)",
            "glVertexAttribPointerARB(1, 4, GL_FLOAT, GL_FALSE, 40, data+12)"));
    EXPECT_TRUE(isArrayEnabled(0));
    EXPECT_TRUE(isArrayEnabled(1));
    EXPECT_FALSE(isArrayEnabled(2));
}

TEST_F(GLHelperGLTest, LeavesOutTargetAttributesThatAreNotFloat)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    const VertexDescriptor source = makeLayout({{"position", 3, FLOAT}, {"color", 4, BYTE}, {"index", 1, INT}});
    const VertexDescriptor target =
        makeLayout({{"color", 4, BYTE}, {"index", 1, INT}, {"position", 3, FLOAT}, {"color", 4, 5}});
    EXPECT_THAT(bindingCalls(source, target),
        ElementsAre("glEnableVertexAttribArrayARB(2)", "glVertexAttribPointerARB(2, 3, GL_FLOAT, GL_FALSE, 20, data)"));
    EXPECT_FALSE(isArrayEnabled(0));
    EXPECT_FALSE(isArrayEnabled(1));
    EXPECT_FALSE(isArrayEnabled(3));
}

TEST_F(GLHelperGLTest, GoesByTheTargetsTypeAloneEvenWhereTheSourceHasAnother)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    const VertexDescriptor source = makeLayout({{"color", 4, BYTE}});
    const VertexDescriptor target = makeLayout({{"color", 4, FLOAT}});
    EXPECT_THAT(bindingCalls(source, target),
        ElementsAre("glEnableVertexAttribArrayARB(0)", "glVertexAttribPointerARB(0, 4, GL_FLOAT, GL_FALSE, 4, data)"));
}

TEST_F(GLHelperGLTest, LeavesOutTargetAttributesThatTheSourceLacks)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    const VertexDescriptor source = makeLayout({{"position", 3, FLOAT}});
    const VertexDescriptor target = makeLayout({{"normal", 3, FLOAT}, {"position", 3, FLOAT}, {"texcoord", 2, FLOAT}});
    EXPECT_THAT(bindingCalls(source, target),
        ElementsAre("glEnableVertexAttribArrayARB(1)", "glVertexAttribPointerARB(1, 3, GL_FLOAT, GL_FALSE, 12, data)"));
    EXPECT_FALSE(isArrayEnabled(0));
    EXPECT_FALSE(isArrayEnabled(2));
}

TEST_F(GLHelperGLTest, UnbindsEveryAttributeOfTheTarget)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    const VertexDescriptor source = makeLayout({{"position", 3, FLOAT}});
    const VertexDescriptor target = makeLayout({{"position", 3, FLOAT}, {"color", 4, BYTE}, {"normal", 3, FLOAT}});
    bindingCalls(source, target);
    EXPECT_THAT(callsOf([&] { GLHelper::unbindSoftwareVertexBuffer(&source, &target); }),
        ElementsAre("glDisableVertexAttribArrayARB(0)", "glDisableVertexAttribArrayARB(1)",
            "glDisableVertexAttribArrayARB(2)"));
    EXPECT_FALSE(isArrayEnabled(0));
    EXPECT_THAT(callsOf([&] { GLHelper::unbindSoftwareVertexBuffer(nullptr, &source); }),
        ElementsAre("glDisableVertexAttribArrayARB(0)"))
        << "the source is not used";
}

TEST_F(GLHelperGLTest, DrawsTheWholeVerticesThatTheBytesHold)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    const VertexDescriptor layout = makeLayout({{"position", 3, FLOAT}});
    EXPECT_THAT(drawingCalls(100, layout, GL_POINTS),
        ElementsAre("glEnableVertexAttribArrayARB(0)", "glVertexAttribPointerARB(0, 3, GL_FLOAT, GL_FALSE, 12, data)",
            "glDrawArrays(GL_POINTS, 0, 8)", "glDisableVertexAttribArrayARB(0)"));
    EXPECT_FALSE(isArrayEnabled(0));
}

TEST_F(GLHelperGLTest, DrawsNothingOfLessBytesThanAVertexHas)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    const VertexDescriptor layout = makeLayout({{"position", 3, FLOAT}});
    EXPECT_THAT(drawingCalls(11, layout, GL_TRIANGLES), Contains("glDrawArrays(GL_TRIANGLES, 0, 0)"));
}

TEST_F(GLHelperGLTest, RefusesToDrawVerticesWithoutBytes)
{
    const VertexDescriptor empty;
    const VertexDescriptor target = makeLayout({{"position", 3, FLOAT}});
    const auto draw = [&] { GLHelper::drawBuffer(nullptr, 100, &empty, &target, GL_POINTS); };
    EXPECT_THAT(callsOf([&] { EXPECT_THROW(draw(), PException); }), IsEmpty());
}

TEST_F(GLHelperGLTest, DrawsClientVerticesUnderAProgram)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    struct Vertex
    {
        std::array<float, 4> colour;
        std::array<float, 3> position;
    };
    constexpr std::array<float, 4> red{1, 0, 0, 1};
    // The lower left quarter of the drawable.
    const std::array<Vertex, 4> vertices{{{red, {-1, -1, 0}}, {red, {0, -1, 0}}, {red, {0, 0, 0}}, {red, {-1, 0, 0}}}};
    const VertexDescriptor source = makeLayout({{"color", 4, FLOAT}, {"position", 3, FLOAT}});
    const VertexDescriptor target = makeLayout({{"position", 3, FLOAT}, {"color", 4, FLOAT}});

    useVertexProgram(PROGRAM_OF_ATTRIBUTES);
    glClear(GL_COLOR_BUFFER_BIT);
    GLHelper::drawBuffer(reinterpret_cast<const char*>(vertices.data()), sizeof vertices, &source, &target, GL_QUADS);

    Picture expected(64, 64);
    for (unsigned int y = 0; y < 32; ++y) {
        for (unsigned int x = 0; x < 32; ++x)
            expected.at(x, y) = {255, 0, 0, 255};
    }
    EXPECT_EQ(readPixels(), expected);
}

TEST_F(GLHelperGLTest, SendsAxesArrowsAndLetters)
{
    glBegin(GL_LINES);
    EXPECT_EQ(callsOf(GLHelper::drawCoordsSendVertices), AXES_WITH_ARROWS_AND_LETTERS);
    glEnd();
    EXPECT_EQ(AXES_WITH_ARROWS_AND_LETTERS.size(), 3u + 34u);
}

TEST_F(GLHelperGLTest, SendsAxesAndArrowsWithoutLetters)
{
    glBegin(GL_LINES);
    EXPECT_EQ(callsOf(GLHelper::drawCoordsSendVerticesNoXYZ), AXES_WITH_ARROWS);
    glEnd();
    EXPECT_EQ(AXES_WITH_ARROWS.size(), 3u + 18u);
}

TEST_F(GLHelperGLTest, SendsAxesAlone)
{
    glBegin(GL_LINES);
    EXPECT_EQ(callsOf(GLHelper::drawCoordsSendVerticesNoXYZNoArrows), AXES_ALONE);
    glEnd();
    EXPECT_EQ(AXES_ALONE.size(), 3u + 6u);
}

TEST_F(GLHelperGLTest, DrawsTheCoordinateFrameUnlitAsLines)
{
    std::vector<std::string> expected{
        "glPushAttrib(GL_ALL_ATTRIB_BITS)", "glDisable(GL_LIGHTING)", "glBegin(GL_LINES)"};
    expected.insert(expected.end(), AXES_WITH_ARROWS_AND_LETTERS.begin(), AXES_WITH_ARROWS_AND_LETTERS.end());
    expected.insert(expected.end(), {"glEnd()", "glPopAttrib()"});
    EXPECT_EQ(callsOf(GLHelper::drawCoords), expected);
}

TEST_F(GLHelperGLTest, LeavesTheStateAsItWasAfterTheCoordinateFrame)
{
    glEnable(GL_LIGHTING);
    glColor4f(0.25f, 0.5f, 0.75f, 1);
    GLHelper::drawCoords();
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
    std::array<float, 4> colour{};
    glGetFloatv(GL_CURRENT_COLOR, colour.data());
    EXPECT_THAT(colour, ElementsAre(0.25f, 0.5f, 0.75f, 1));
    EXPECT_EQ(currentInteger(GL_ATTRIB_STACK_DEPTH), 0);
}

TEST_F(GLHelperGLTest, ShowsTheCoordinateFrame)
{
    glClear(GL_COLOR_BUFFER_BIT);
    glOrtho(-0.7, 1.3, -0.7, 1.3, -2, 2);
    glRotatef(20, 1, 0, 0);
    glRotatef(-30, 0, 1, 0);
    glLineWidth(2);
    GLHelper::drawCoords();
    EXPECT_TRUE(matchesReference(readPixels(), "GLHelper/coordinateFrame", {.perChannel = 2, .differingPixels = 0.01}));
}

TEST_F(GLHelperGLTest, PushesBothMatrices)
{
    EXPECT_THAT(callsOf(GLHelper::pushMVP),
        ElementsAre("glMatrixMode(GL_PROJECTION)", "glPushMatrix()", "glMatrixMode(GL_MODELVIEW)", "glPushMatrix()"));
    EXPECT_EQ(currentInteger(GL_PROJECTION_STACK_DEPTH), 2);
    EXPECT_EQ(currentInteger(GL_MODELVIEW_STACK_DEPTH), 2);
}

TEST_F(GLHelperGLTest, PopsBothMatricesUnderEitherName)
{
    for (const auto pop : {GLHelper::popMVP, GLHelper::end2D}) {
        GLHelper::pushMVP();
        EXPECT_THAT(callsOf(pop), ElementsAre("glMatrixMode(GL_MODELVIEW)", "glPopMatrix()",
                                      "glMatrixMode(GL_PROJECTION)", "glPopMatrix()", "glMatrixMode(GL_MODELVIEW)"));
        EXPECT_EQ(currentInteger(GL_PROJECTION_STACK_DEPTH), 1);
        EXPECT_EQ(currentInteger(GL_MODELVIEW_STACK_DEPTH), 1);
    }
}

TEST_F(GLHelperGLTest, SetsUpAProjectionOfPixels)
{
    EXPECT_THAT(callsOf([] { GLHelper::begin2D(64, 32.5f); }),
        ElementsAre("glMatrixMode(GL_PROJECTION)", "glPushMatrix()", "glMatrixMode(GL_MODELVIEW)", "glPushMatrix()",
            "glMatrixMode(GL_PROJECTION)", "glLoadIdentity()", "gluOrtho2D(0, 64, 0, 32.5)",
            "glMatrixMode(GL_MODELVIEW)", "glLoadIdentity()"));
}

TEST_F(GLHelperGLTest, PutsAPixelWhereItsCoordinatesSay)
{
    glClear(GL_COLOR_BUFFER_BIT);
    GLHelper::begin2D(64, 64);
    glRectf(10, 20, 11, 21);
    GLHelper::end2D();
    Picture expected(64, 64);
    expected.at(10, 20) = {255, 255, 255, 255};
    EXPECT_EQ(readPixels(), expected);
}

TEST_F(GLHelperGLTest, LeavesBothMatrixStacksAsTheyWereAfter2D)
{
    glMatrixMode(GL_PROJECTION);
    glFrustum(-1, 1, -1, 1, 1, 10);
    const Matrix projection = currentMatrix(GL_PROJECTION_MATRIX);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(1, 2, 3);
    const Matrix modelview = currentMatrix(GL_MODELVIEW_MATRIX);

    glMatrixMode(GL_TEXTURE);
    GLHelper::begin2D(64, 64);
    EXPECT_NE(currentMatrix(GL_PROJECTION_MATRIX), projection);
    EXPECT_NE(currentMatrix(GL_MODELVIEW_MATRIX), modelview);
    EXPECT_EQ(currentInteger(GL_MATRIX_MODE), GL_MODELVIEW);
    GLHelper::end2D();

    EXPECT_EQ(currentMatrix(GL_PROJECTION_MATRIX), projection);
    EXPECT_EQ(currentMatrix(GL_MODELVIEW_MATRIX), modelview);
    EXPECT_EQ(currentInteger(GL_PROJECTION_STACK_DEPTH), 1);
    EXPECT_EQ(currentInteger(GL_MODELVIEW_STACK_DEPTH), 1);
    EXPECT_EQ(currentInteger(GL_MATRIX_MODE), GL_MODELVIEW) << "the modelview matrix is selected, whatever was before";
}

TEST_F(GLHelperGLTest, RefusesToDrawTextWithoutAWidget)
{
    EXPECT_THROW(GLHelper::drawText(context(), {0, 0, 0}, "text"), PException);
}

} // namespace tavo
