// What graphs and point clouds draw, call by call and as pixels.

#include <algorithm>
#include <gmock/gmock.h>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/gui/Camera.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/GLTest.h"
#include "tests/vireo/displayers/PackedPointSet.h"
#include "tests/vireo/displayers/TestPointSet.h"
#include "vireo/displayers/GLGraphDisplayer.h"
#include "vireo/displayers/GLPointCloudDisplayer.h"
#include "vireo/geometry/GLHelper.h"

#include <GL/gl.h>

namespace tavo {
namespace {

using testing::HasSubstr;

constexpr Pixel BLACK{0, 0, 0, 0};

class DrawingGLTest : public GLTest
{
protected:
    void draw(GLEventObject& object) { object.drawGL(nullptr, m_Camera); }

    // The picture of an object over the square from -1 to 1.
    Picture pictureOf(GLEventObject& object)
    {
        glViewport(0, 0, 64, 64);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        draw(object);
        glLoadIdentity();
        return readPixels();
    }

    // What the axes add to the end of a list of calls.
    static void appendAxes(std::vector<std::string>& calls, const std::string& translate, const std::string& scale)
    {
        calls.push_back("glTranslatef(" + translate + ")");
        calls.push_back("glScalef(" + scale + ")");
        calls.insert(calls.end(), {"glPushAttrib(GL_ALL_ATTRIB_BITS)", "glDisable(GL_LIGHTING)", "glBegin(GL_LINES)"});
        const std::vector<std::string> vertices = callsOf([] {
            glBegin(GL_LINES);
            GLHelper::drawCoordsSendVertices();
            glEnd();
        });
        calls.insert(calls.end(), vertices.begin() + 1, vertices.end() - 1);
        calls.insert(calls.end(), {"glEnd()", "glPopAttrib()"});
    }

    Camera m_Camera;
    int m_NumPointSets = 0;
};

TEST_F(DrawingGLTest, DrawsGraphsAsLineStrips)
{
    GLGraphDisplayer graphs;
    graphs.addGraph(std::vector<float>{5.0f, 7.0f}, RGBA8(255, 0, 0, 255));
    graphs.addGraph(std::vector<float>(), RGBA8(0, 255, 0, 128));
    CallRecorder recorder;
    draw(graphs);
    expectCalls(recorder, {"glPushAttrib(GL_ALL_ATTRIB_BITS)", "glDisable(GL_DEPTH_TEST)", "glDisable(GL_LIGHTING)",
                              "glColor4ubv((255, 0, 0, 255))", "glBegin(GL_LINE_STRIP)", "glVertex3fv((0, 5, 0))",
                              "glVertex3fv((0.5, 7, 0))", "glEnd()", "glColor4ubv((0, 255, 0, 128))",
                              "glBegin(GL_LINE_STRIP)", "glEnd()", "glPopAttrib()"});
}

TEST_F(DrawingGLTest, DrawsGraphsThenTheirAxes)
{
    GLGraphDisplayer graphs;
    graphs.setShowCoords(true);
    graphs.addGraph(std::vector<Vector3f>{{1.0f, 2.0f, 4.0f}, {3.0f, 12.0f, 4.0f}}, RGBA8(1, 2, 3, 4));
    std::vector<std::string> expected{"glPushAttrib(GL_ALL_ATTRIB_BITS)", "glDisable(GL_DEPTH_TEST)",
        "glDisable(GL_LIGHTING)", "glColor4ubv((1, 2, 3, 4))", "glBegin(GL_LINE_STRIP)", "glVertex3fv((1, 2, 4))",
        "glVertex3fv((3, 12, 4))", "glEnd()"};
    // The minimum negated, less a tenth of the extent.
    appendAxes(expected, "-1.2, -3, -4", "2, 10, 0");
    expected.emplace_back("glPopAttrib()");
    glMatrixMode(GL_PROJECTION);
    CallRecorder recorder;
    draw(graphs);
    expectCalls(recorder, expected);
}

TEST_F(DrawingGLTest, ComputesTheAxesOffsetInDoublePrecision)
{
    GLGraphDisplayer graphs;
    graphs.setShowCoords(true);
    graphs.addGraph(std::vector<Vector3f>{{0.1f, 0.0f, 0.0f}, {0.9f, 1.0f, 1.0f}}, RGBA8());
    const float extent = 0.9f - 0.1f;
    const auto exact = static_cast<float>(-double(0.1f) - 0.1 * double(extent));
    ASSERT_NE(exact, -0.1f - 0.1f * extent) << "or this would show nothing";
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    draw(graphs);
    float matrix[16];
    glGetFloatv(GL_PROJECTION_MATRIX, matrix);
    EXPECT_EQ(matrix[12], exact) << "and the translation stays";
    EXPECT_EQ(matrix[0], extent) << "and the scale";
}

TEST_F(DrawingGLTest, LeavesGraphsVisibleInTheirColours)
{
    GLGraphDisplayer graphs;
    graphs.addGraph(std::vector<Vector3f>{{-1.0f, 0.01f, 0.0f}, {1.0f, 0.01f, 0.0f}}, RGBA8(255, 0, 0, 255));
    graphs.addGraph(std::vector<Vector3f>{{-1.0f, 0.51f, 0.0f}, {1.0f, 0.51f, 0.0f}}, RGBA8(0, 0, 255, 255));
    const Picture picture = pictureOf(graphs);
    EXPECT_EQ(picture.at(20, 32), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(picture.at(20, 48), (Pixel{0, 0, 255, 255}));
    EXPECT_EQ(picture.at(20, 20), BLACK);
}

TEST_F(DrawingGLTest, DrawsPointsInWhiteThenTheirAxes)
{
    GLPointCloudDisplayer cloud(new TestPointSet({{1.0f, 2.0f, 4.0f}, {3.0f, 12.0f, 8.0f}}, m_NumPointSets));
    std::vector<std::string> expected{"glEnable(GL_DEPTH_TEST)", "glPushAttrib(GL_ALL_ATTRIB_BITS)",
        "glDisable(GL_LIGHTING)", "glPointSize(1)", "glColor3f(1, 1, 1)", "glBegin(GL_POINTS)",
        "glVertex3fv((1, 2, 4))", "glVertex3fv((3, 12, 8))", "glEnd()", "glPopAttrib()"};
    const std::vector<std::string> withoutAxes = expected;
    appendAxes(expected, "-1.2, -3, -4.4", "2, 10, 4");
    glMatrixMode(GL_PROJECTION);
    {
        CallRecorder recorder;
        draw(cloud);
        expectCalls(recorder, expected);
    }
    cloud.setShowCoords(false);
    CallRecorder recorder;
    draw(cloud);
    expectCalls(recorder, withoutAxes);
}

// A scanner's point: three floats and a byte each of red, green and blue, 15 bytes, so that most positions are not at
// multiples of four.
TEST_F(DrawingGLTest, DrawsPointsAtAnyAddressAsThoseAtMultiplesOfFourBytes)
{
    const std::vector<Vector3f> positions{{1.0f, 2.0f, 4.0f}, {3.0f, 12.0f, 8.0f}, {2.0f, 3.0f, 5.0f}};
    GLPointCloudDisplayer aligned(new TestPointSet(positions, m_NumPointSets));
    GLPointCloudDisplayer coloursBehind(new PackedPointSet({}, positions, {0, 128, 255}));
    GLPointCloudDisplayer flagBefore(new PackedPointSet({7}, positions, {}));
    ASSERT_NE(coloursBehind.getPointSet()->getDescr().getSize() % 4, 0u) << "or this would show nothing";
    const std::vector<std::string> calls = callsOf([&] { draw(aligned); });
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "glVertex3fv((2, 3, 5))"), 1);
    for (GLPointCloudDisplayer* const packed : {&coloursBehind, &flagBefore}) {
        EXPECT_EQ(callsOf([&] { draw(*packed); }), calls);
        EXPECT_EQ(packed->getBoundingBox(), aligned.getBoundingBox()) << "or the camera would look elsewhere";
    }
}

TEST_F(DrawingGLTest, RaisesTheAxesOfAFlatSetToAHundredthOfTheLargest)
{
    GLPointCloudDisplayer cloud(
        new TestPointSet({{0.0f, 0.0f, 5.0f}, {100.0f, 0.5f, 5.0f}, {0.0f, 0.0f, 5.0f}}, m_NumPointSets));
    glMatrixMode(GL_PROJECTION);
    const std::vector<std::string> calls = callsOf([&] { draw(cloud); });
    EXPECT_THAT(calls, testing::Contains("glTranslatef(-10, -0.05, -5)")) << "the offset uses the true extents";
    EXPECT_THAT(calls, testing::Contains("glScalef(100, 1, 1)"));
}

TEST_F(DrawingGLTest, ComputesTheHundredthInFloat)
{
    const float extent = 2.1f;
    ASSERT_NE(extent * 0.01f, static_cast<float>(extent * 0.01)) << "or this would show nothing";
    GLPointCloudDisplayer cloud(new TestPointSet({{0.0f, 0.0f, 0.0f}, {extent, 0.0f, 0.0f}}, m_NumPointSets));
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    draw(cloud);
    float matrix[16];
    glGetFloatv(GL_PROJECTION_MATRIX, matrix);
    EXPECT_EQ(matrix[5], extent * 0.01f);
}

TEST_F(DrawingGLTest, DrawsNothingWithoutASet)
{
    GLPointCloudDisplayer cloud;
    CallRecorder recorder;
    draw(cloud);
    expectCalls(recorder, {"glEnable(GL_DEPTH_TEST)"});
}

TEST_F(DrawingGLTest, WarnsOfASetWithoutPositions)
{
    VertexDescriptor descriptor;
    descriptor.pushAttrib(VertexAttribDescriptor("position", 4, VertexAttribDescriptor::TYPE_FLOAT));
    GLPointCloudDisplayer cloud(new PointSet(descriptor, 2));
    const std::size_t before = debugOutput.getText().size();
    {
        CallRecorder recorder;
        draw(cloud);
        expectCalls(recorder, {"glEnable(GL_DEPTH_TEST)"});
    }
    EXPECT_THAT(debugOutput.getText().substr(before),
        HasSubstr("GLPointCloudDisplayer::drawGL() - position3f channel not found."));
    const std::size_t between = debugOutput.getText().size();
    draw(cloud);
    EXPECT_GT(debugOutput.getText().size(), between) << "on every paint";
}

TEST_F(DrawingGLTest, ShowsPointsAsWhitePixels)
{
    GLPointCloudDisplayer cloud(new TestPointSet({{0.01f, 0.01f, 0.0f}, {-0.49f, 0.51f, 0.0f}}, m_NumPointSets));
    cloud.setShowCoords(false);
    const Picture picture = pictureOf(cloud);
    EXPECT_EQ(picture.at(32, 32), (Pixel{255, 255, 255, 255}));
    EXPECT_EQ(picture.at(16, 48), (Pixel{255, 255, 255, 255}));
    EXPECT_EQ(picture.at(20, 20), BLACK);
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
}

} // namespace
} // namespace tavo
