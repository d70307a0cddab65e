// Graphs that debugOutputGraph and debugOutputGraphs send, as the debug window draws them.

#include <QApplication>
#include <QCheckBox>
#include <QGLWidget>
#include <QTimer>
#include <gmock/gmock.h>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugSection.h"
#include "tavo/base/debug/DebugWindow.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/extensions.h"
#include "vireo/displayers/GLEventDisplayer.h"
#include "vireo/displayers/GLGraphDisplayer.h"

namespace tavo {
namespace {

using testing::ElementsAre;

const RGBA8 RED(255, 0, 0, 255);
const RGBA8 GREEN(0, 255, 0, 255);
const RGBA8 BLUE(0, 0, 255, 255);

class DebugOutputGraphGLTest : public testing::Test
{
protected:
    DebugOutputGraphGLTest()
    {
        GLEventObject::init(Object::getClass());
        GLEventDisplayer::init(EventDisplayer::getClass());
        GLGraphDisplayer::init(GLEventObject::getClass());
    }
    ~DebugOutputGraphGLTest() override { delete debugOutput.getWindow(); }

    static constexpr char DRAWN_RED[] = "glColor4ubv((255, 0, 0, 255))";
    static constexpr char DRAWN_GREEN[] = "glColor4ubv((0, 255, 0, 255))";

    // The colours and vertices of the last paint for a section's picture.
    static std::vector<std::string> drawn(std::size_t section)
    {
        CallRecorder recorder;
        debugOutput.getWindow()->getSections().at(section)->getPicture();
        std::vector<std::string> calls;
        for (const std::string& call : recorder.calls()) {
            if (call.starts_with("glClear("))
                calls.clear();
            if (call.starts_with("glColor4ubv") || call.starts_with("glVertex3fv"))
                calls.push_back(call);
        }
        return calls;
    }

    static std::vector<std::string> sections()
    {
        std::vector<std::string> names;
        for (const DebugSection* section : debugOutput.getWindow()->getSections())
            names.push_back(section->getName());
        return names;
    }
};

TEST_F(DebugOutputGraphGLTest, ShowsOneGraphOfEachKind)
{
    debugOutputGraph("1D", std::vector<float>{1.0f, 2.0f}, RED);
    debugOutputGraph("2D", std::vector<Vector2f>{{1.0f, 2.0f}}, GREEN);
    debugOutputGraph("3D", std::vector<Vector3f>{{1.0f, 2.0f, 3.0f}}, BLUE);
    EXPECT_THAT(sections(), ElementsAre("1D", "2D", "3D"));
    EXPECT_EQ(debugOutput.getWindow()->getSections()[0]->getDisplayerClass(), GLEventDisplayer::getClass());
    EXPECT_THAT(drawn(0), ElementsAre(DRAWN_RED, "glVertex3fv((0, 1, 0))", "glVertex3fv((0.5, 2, 0))"));
    EXPECT_THAT(drawn(1), ElementsAre(DRAWN_GREEN, "glVertex3fv((1, 2, 0))"));
    EXPECT_THAT(drawn(2), ElementsAre("glColor4ubv((0, 0, 255, 255))", "glVertex3fv((1, 2, 3))"));

    debugOutputGraph("1D", std::vector<float>{7.0f}, GREEN);
    EXPECT_EQ(sections().size(), 3u);
    EXPECT_THAT(drawn(0), ElementsAre(DRAWN_GREEN, "glVertex3fv((0, 7, 0))"));
}

TEST_F(DebugOutputGraphGLTest, ShowsSeveralGraphsOfEachKind)
{
    debugOutputGraphs("1D", std::vector<std::vector<float>>{{1.0f}, {2.0f}}, {RED, GREEN});
    debugOutputGraphs("2D", std::vector<std::vector<Vector2f>>{{{1.0f, 2.0f}}, {{3.0f, 4.0f}}}, {RED, GREEN});
    debugOutputGraphs(
        "3D", std::vector<std::vector<Vector3f>>{{{1.0f, 2.0f, 3.0f}}, {{4.0f, 5.0f, 6.0f}}}, {RED, GREEN});
    EXPECT_THAT(sections(), ElementsAre("1D", "2D", "3D"));
    EXPECT_THAT(drawn(0), ElementsAre(DRAWN_RED, "glVertex3fv((0, 1, 0))", DRAWN_GREEN, "glVertex3fv((0, 2, 0))"));
    EXPECT_THAT(drawn(1), ElementsAre(DRAWN_RED, "glVertex3fv((1, 2, 0))", DRAWN_GREEN, "glVertex3fv((3, 4, 0))"));
    EXPECT_THAT(drawn(2), ElementsAre(DRAWN_RED, "glVertex3fv((1, 2, 3))", DRAWN_GREEN, "glVertex3fv((4, 5, 6))"));
}

TEST_F(DebugOutputGraphGLTest, ChangesThePictureWithTheCheckBox)
{
    debugOutputGraph("curve", std::vector<Vector3f>{{-1.0f, -1.0f, -1.0f}, {1.0f, 1.0f, 1.0f}}, RED);
    DebugSection* const section = debugOutput.getWindow()->getSections()[0];
    auto* const checkBox = section->findChild<QCheckBox*>("cbShowCoords");
    // Qt makes pictures of a view in a texture of its size.
    section->findChild<QGLWidget*>()->makeCurrent();
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    const QImage withoutAxes = section->getPicture();
    checkBox->click(); // off, as it was
    EXPECT_EQ(section->getPicture(), withoutAxes);
    checkBox->click();
    EXPECT_NE(section->getPicture(), withoutAxes);
    checkBox->click();
    EXPECT_EQ(section->getPicture(), withoutAxes);
}

TEST_F(DebugOutputGraphGLTest, LeavesTheApplicationFreeToQuitWithTheWindowOpen)
{
    debugOutputGraph("curve", std::vector<float>{1.0f, 2.0f}, RED);
    QTimer::singleShot(50, qApp, &QCoreApplication::quit);
    EXPECT_EQ(QCoreApplication::exec(), 0);
    EXPECT_NE(debugOutput.getWindow(), nullptr);
}

} // namespace
} // namespace tavo
