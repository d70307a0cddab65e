#include "tests/vireo/displayers/GLEventDisplayerWidgetGLTest.h"

#include <QApplication>
#include <QPointer>
#include <QResizeEvent>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>
#include <utility>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/gui/WidgetPicture.h"
#include "tavo/platform/wgl.h"
#include "tests/support/extensions.h"
#include "vireo/context/GLContext.h"
#include "vireo/displayers/GLGraphDisplayer.h"
#include "vireo/displayers/loadCamera.h"

#include <GL/gl.h>

namespace tavo {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

const auto ONLY_CLEARS = ElementsAre("glClearColor(0, 0, 0, 0)", "glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)");

TEST_F(GLEventDisplayerWidgetGLTest, PaintsInAFixedOrder)
{
    showWidget();
    show(new TestEventObject);
    const std::vector<std::string> calls = callsOfPaint();
    const std::string w = std::to_string(m_View->width());
    ASSERT_EQ(calls.size(), 9u);
    EXPECT_EQ(calls[0], "glClearColor(0, 0, 0, 0)");
    EXPECT_EQ(calls[1], "glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)");
    EXPECT_EQ(calls[2], "glMatrixMode(GL_PROJECTION)");
    EXPECT_EQ(calls[3], "glLoadIdentity()");
    EXPECT_EQ(calls[4], "glViewport(0, 0, " + w + ", 90)");
    double aspect = 0;
    int length = 0;
    std::sscanf(calls[5].c_str(), "gluPerspective(45, %lf, 0.01, 1000)%n", &aspect, &length);
    EXPECT_EQ(length, static_cast<int>(calls[5].size())) << calls[5];
    EXPECT_NEAR(aspect, double(m_View->width()) / 90, 1e-12) << "the real quotient";
    EXPECT_EQ(calls[6], "glMatrixMode(GL_MODELVIEW)");
    EXPECT_EQ(calls[7], "glLoadIdentity()");
    // The up vector is widened to double.
    std::vector<double> look(9);
    ASSERT_EQ(std::sscanf(calls[8].c_str(), "gluLookAt(%lf, %lf, %lf, %lf, %lf, %lf, %lf, %lf, %lf)", &look[0],
                  &look[1], &look[2], &look[3], &look[4], &look[5], &look[6], &look[7], &look[8]),
        9);
    const Vector3f up = TestEventObject::s_Camera.getUpVector();
    EXPECT_THAT(look, ElementsAre(0, 0, 2, 0.5, 0.5, 0.5, up[0], up[1], up[2]));
}

TEST_F(GLEventDisplayerWidgetGLTest, DrawsTheObjectWithTheProjectionSelectedAndTheLastPaintsCamera)
{
    showWidget();
    int matrixMode = 0;
    float modelView[16] = {};
    auto* object = new TestEventObject;
    object->whenDrawn = [&] {
        glGetIntegerv(GL_MATRIX_MODE, &matrixMode);
        glGetFloatv(GL_MODELVIEW_MATRIX, modelView);
    };
    m_Widget->setGLEventObject(object, true);
    m_View->updateGL();
    EXPECT_EQ(matrixMode, GL_PROJECTION);
    EXPECT_EQ(modelView[0], 1.0f) << "nothing was painted before";
    EXPECT_EQ(modelView[14], 0.0f);
    m_View->updateGL();
    EXPECT_LT(modelView[14], -1.5f) << "the camera of the paint before";
}

TEST_F(GLEventDisplayerWidgetGLTest, DrawsAnObjectThatLoadsItsCameraRightAtOnce)
{
    showWidget();
    float modelView[16] = {};
    auto* object = new TestEventObject;
    object->whenDrawn = [&] {
        loadCamera(TestEventObject::s_Camera);
        glGetFloatv(GL_MODELVIEW_MATRIX, modelView);
    };
    m_Widget->setGLEventObject(object, true);
    m_View->updateGL();
    EXPECT_LT(modelView[14], -1.5f) << "the camera that the object's box is fitted to";
}

TEST_F(GLEventDisplayerWidgetGLTest, PaintsAgainUntilThePictureShowsTheCamera)
{
    showWidget();
    m_Widget->setGLEventObject(new TestEventObject, true);
    TestEventObject::s_NumDrawn = 0;
    settle(); // which also waits for the painting to end
    EXPECT_GE(TestEventObject::s_NumDrawn, 2);
    float modelView[16] = {};
    m_View->makeCurrent();
    glGetFloatv(GL_MODELVIEW_MATRIX, modelView);
    EXPECT_LT(modelView[14], -1.5f) << "the matrix of the new camera, which the last paint was made with";
}

TEST_F(GLEventDisplayerWidgetGLTest, OnlyClearsWithoutAnObject)
{
    showWidget();
    EXPECT_THAT(callsOfPaint(), ONLY_CLEARS);
}

TEST_F(GLEventDisplayerWidgetGLTest, OnlyClearsAnEmptyView)
{
    showWidget();
    show(new TestEventObject);
    m_View->setFixedWidth(0);
    settle();
    TestEventObject::s_NumDrawn = 0;
    EXPECT_THAT(callsOfPaint(), ONLY_CLEARS);
    EXPECT_EQ(TestEventObject::s_NumDrawn, 0);
    EXPECT_TRUE(grabPicture(m_Widget.get()).isNull());
}

TEST_F(GLEventDisplayerWidgetGLTest, IgnoresNull)
{
    showWidget();
    show(new TestEventObject);
    show(nullptr);
    EXPECT_EQ(TestEventObject::s_NumLiving, 1);
}

TEST_F(GLEventDisplayerWidgetGLTest, FitsTheCameraToANewObject)
{
    showWidget();
    show(new TestEventObject({{-1.0f, 2.0f, 0.0f}, {3.0f, 3.0f, 1.0f}}));
    // The largest extent is 4. The camera starts at (0, 0, -1), looking at the origin.
    EXPECT_EQ(TestEventObject::s_Camera.getEyePoint(), Vector3f(0.0f, 0.0f, 8.0f));
    EXPECT_EQ(TestEventObject::s_Camera.getLookAtPoint(), Vector3f(1.0f, 2.5f, 0.5f));
}

TEST_F(GLEventDisplayerWidgetGLTest, UpdatesInPlaceAndKeepsTheCameraAndThePanel)
{
    showWidget();
    auto* object = new TestEventObject;
    object->hasPanel = true;
    show(object);
    const Camera camera = TestEventObject::s_Camera;
    const QPointer<GLEventConfiguration> panel = m_Widget->findChild<GLEventConfiguration*>();
    ASSERT_TRUE(panel);

    show(new TestEventObject);
    EXPECT_EQ(TestEventObject::s_NumUpdates, 1);
    EXPECT_EQ(TestEventObject::s_NumLiving, 1) << "the sent one was freed";
    EXPECT_EQ(TestEventObject::s_Camera, camera);
    EXPECT_TRUE(panel);
}

TEST_F(GLEventDisplayerWidgetGLTest, RefitsTheCameraWhenTheBoxIsAnotherOne)
{
    showWidget();
    show(new TestEventObject);
    const Vector3f oldEye = TestEventObject::s_Camera.getEyePoint();
    const Vector3f oldLookAt = TestEventObject::s_Camera.getLookAtPoint();

    show(new TestEventObject({{0.0f, 0.0f, 0.0f}, {1.0f, 3.0f, 2.0f}}));
    const Vector3f direction = (oldLookAt - oldEye) * (1.0f / length(oldLookAt - oldEye));
    const Vector3f expected = oldLookAt + direction * 6.0f;
    for (unsigned int axis = 0; axis < 3; ++axis)
        EXPECT_NEAR(TestEventObject::s_Camera.getEyePoint()[axis], expected[axis], 1e-5f);
    EXPECT_EQ(TestEventObject::s_Camera.getLookAtPoint(), Vector3f(0.5f, 1.5f, 1.0f));
    EXPECT_EQ(TestEventObject::s_NumUpdates, 1);
}

TEST_F(GLEventDisplayerWidgetGLTest, RefitsFromADefaultDirectionWhereTheEyeIsTheLookAtPoint)
{
    showWidget();
    // A box of one point, then one whose refit starts from an eye on its look-at point.
    show(new TestEventObject({{0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 0.0f}}));
    show(new TestEventObject({{5.0f, 5.0f, 5.0f}, {5.0f, 5.0f, 5.0f}}));
    show(new TestEventObject({{0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f}}));
    for (unsigned int axis = 0; axis < 3; ++axis)
        EXPECT_TRUE(std::isfinite(TestEventObject::s_Camera.getEyePoint()[axis]));
    EXPECT_NE(TestEventObject::s_Camera.getEyePoint(), TestEventObject::s_Camera.getLookAtPoint());
}

TEST_F(GLEventDisplayerWidgetGLTest, SurvivesABoxThatIsNotANumber)
{
    showWidget();
    show(new TestEventObject);
    const Camera before = TestEventObject::s_Camera;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::size_t textBefore = debugOutput.getText().size();
    show(new TestEventObject({{nan, 0.0f, 0.0f}, {1.0f, nan, 1.0f}}));
    EXPECT_EQ(TestEventObject::s_Camera, before);
    EXPECT_THAT(newText(textBefore), HasSubstr("the object's box is not finite"));
    show(new TestEventObject({{0.0f, 0.0f, 0.0f}, {2.0f, 2.0f, 2.0f}}));
    EXPECT_NE(TestEventObject::s_Camera, before);
}

TEST_F(GLEventDisplayerWidgetGLTest, SaysOfAGraphBeyondTheFarPlaneThatAndHowFarItIsOutOfView)
{
    std::vector<Vector2f> samples;
    for (int i = 0; i <= 5000; ++i)
        samples.emplace_back(i, 0);
    auto* const graph = new GLGraphDisplayer;
    graph->addGraph(samples, {255, 255, 255, 255});
    showWidget();
    const std::size_t textBefore = debugOutput.getText().size();
    show(graph);
    // The eye, at twice the extent, is 10,307.8 from the middle, and 606.3 more from the farther end.
    EXPECT_EQ(newText(textBefore),
        "warning: GLEventDisplayerWidget::setGLEventObject() - the data, from (0, 0, 0) to (5000, 0, 0), lie outside "
        "what this view shows: they reach 9914.1 beyond the far plane, which is 1000 from the eye at (0, 0, 10000). A "
        "new view "
        "shows data from -150 to 150 along each axis: scale or shift them to there, or, if they "
        "are curves, send them to tavo::plot (vireo/show/show.h), which shows any range.\n");
    const QImage picture = grabPicture(m_Widget.get()).copy(m_View->geometry());
    QImage black = picture;
    black.fill(Qt::black);
    EXPECT_EQ(picture, black) << "or the line would be wrong";
}

TEST_F(GLEventDisplayerWidgetGLTest, SaysOnceOfAnObjectThatItIsOutOfView)
{
    showWidget();
    const auto numLines = [](const std::string& text) { return std::count(text.begin(), text.end(), '\n'); };
    const std::size_t textBefore = debugOutput.getText().size();
    show(new TestEventObject);
    EXPECT_EQ(numLines(newText(textBefore)), 0);
    show(new TestEventObject({{0.0f, 101225.0f, 0.0f}, {1.0f, 101425.0f, 0.0f}}));
    EXPECT_EQ(numLines(newText(textBefore)), 1) << "since it has been updated to be";
    show(new TestEventObject({{0.0f, 1.7e9f, 0.0f}, {1.0f, 1.8e9f, 0.0f}}));
    EXPECT_EQ(numLines(newText(textBefore)), 1) << "it is the same object that is shown";
    show(new TestEventObject({{0.0f, 1e5f, 0.0f}, {1.0f, 1.1e5f, 0.0f}}), false);
    EXPECT_EQ(numLines(newText(textBefore)), 2) << "another one";
}

TEST_F(GLEventDisplayerWidgetGLTest, SaysWhichViewItIsAndAllDigits)
{
    m_Widget->setAccessibleName("inlet\npressure");
    showWidget();
    const std::size_t textBefore = debugOutput.getText().size();
    show(new TestEventObject({{0.0f, 101325.0f, 0.0f}, {1.0f, 101325.0625f, 0.0f}}));
    EXPECT_THAT(
        newText(textBefore), HasSubstr(R"(setGLEventObject() - "inlet\x0apressure": the data, from (0, 101325, 0) to )"
                                       "(1, 101325.06, 0), lie outside "));
}

TEST_F(GLEventDisplayerWidgetGLTest, SaysOfDataThatAreTooNearThatTheyAre)
{
    showWidget();
    const std::size_t textBefore = debugOutput.getText().size();
    show(new TestEventObject({{0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 0.0009765625f}}));
    EXPECT_THAT(newText(textBefore),
        HasSubstr(
            "lie outside what this view shows: they end 0.00804688 before the near plane, which is 0.01 from "
            "the eye at (0, 0, 0.001953125). A new view shows nothing that extends less than 0.01 along every axis: "
            "enlarge them, or, if they are curves, send them to tavo::plot"));
}

TEST_F(GLEventDisplayerWidgetGLTest, SaysOfDataThatReachBeyondTheFarPlaneThatTheyArePartlyOutOfView)
{
    showWidget();
    const std::size_t textBefore = debugOutput.getText().size();
    show(new TestEventObject({{-200.0f, -200.0f, -300.0f}, {200.0f, 200.0f, 100.0f}}));
    EXPECT_THAT(newText(textBefore),
        HasSubstr("lie partly outside what this view shows: they reach 100 beyond the far plane, which is 1000 from"));
}

TEST_F(GLEventDisplayerWidgetGLTest, SaysNothingOfDataInViewNorOfAPoint)
{
    std::minstd_rand random; // NOLINT(cert-msc32-c,cert-msc51-cpp): the same each time
    std::uniform_real_distribution<float> coordinate(-150.0f, 150.0f);
    const std::size_t textBefore = debugOutput.getText().size();
    const auto showInNewView = [](const Box3f& box) {
        GLEventDisplayerWidget(nullptr, Qt::WindowFlags()).setGLEventObject(new TestEventObject(box), true);
    };
    showInNewView({{-150.0f, -150.0f, -150.0f}, {150.0f, 150.0f, 150.0f}});
    showInNewView({{0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 0.0f}});
    for (int i = 0; i < 50; ++i) {
        Vector3f min;
        Vector3f max;
        for (unsigned int axis = 0; axis < 3; ++axis)
            std::tie(min[axis], max[axis]) = std::minmax({coordinate(random), coordinate(random)});
        showInNewView({min, max});
    }
    EXPECT_EQ(newText(textBefore), "");
}

TEST_F(GLEventDisplayerWidgetGLTest, ReplacesAnObjectOfAnotherClassAndItsPanel)
{
    showWidget();
    auto* first = new TestEventObject;
    first->hasPanel = true;
    show(first);
    const QPointer<GLEventConfiguration> panel = m_Widget->findChild<GLEventConfiguration*>();
    EXPECT_TRUE(button("pbConfigure")->isEnabled());

    show(new OtherTestEventObject);
    EXPECT_EQ(TestEventObject::s_NumLiving, 1);
    EXPECT_EQ(TestEventObject::s_NumUpdates, 0);
    EXPECT_FALSE(panel);
    EXPECT_FALSE(button("pbConfigure")->isEnabled());
}

// Objects of classes without a record of their own, and so with GLEventObject's.
class Kettle : public TestEventObject
{
public:
    using TestEventObject::TestEventObject;
    const MetaClass* getInstanceClass() const override { return GLEventObject::getInstanceClass(); }
};

class Teapot : public Kettle
{
public:
    using Kettle::Kettle;
};

TEST_F(GLEventDisplayerWidgetGLTest, ReplacesAnObjectOfAnotherTypeWhereNeitherHasAClassRecord)
{
    showWidget();
    show(new Kettle);
    auto* const teapot = new Teapot;
    teapot->hasPanel = true;
    const std::size_t textBefore = debugOutput.getText().size();
    TestEventObject::s_NumDrawn = 0;
    int numTeapotsDrawn = 0;
    teapot->whenDrawn = [&numTeapotsDrawn] { ++numTeapotsDrawn; };
    show(teapot);
    EXPECT_EQ(TestEventObject::s_NumUpdates, 0) << "a kettle does not know what to make of a teapot";
    EXPECT_EQ(TestEventObject::s_NumLiving, 1);
    EXPECT_TRUE(button("pbConfigure")->isEnabled());
    EXPECT_GT(numTeapotsDrawn, 0);
    EXPECT_EQ(numTeapotsDrawn, TestEventObject::s_NumDrawn);
    EXPECT_THAT(newText(textBefore),
        AllOf(HasSubstr("Kettle and "), HasSubstr("Teapot have no class records of their own (see getInstanceClass), "
                                                  "so the newer object replaces the shown one.\n")));
}

TEST_F(GLEventDisplayerWidgetGLTest, UpdatesAnObjectOfTheSameTypeWithoutAClassRecord)
{
    showWidget();
    show(new Kettle);
    const std::size_t textBefore = debugOutput.getText().size();
    show(new Kettle);
    EXPECT_EQ(TestEventObject::s_NumUpdates, 1);
    show(new Teapot, false);
    EXPECT_EQ(newText(textBefore), "") << "it was to be replaced";
}

TEST_F(GLEventDisplayerWidgetGLTest, UpdatesAnObjectOfAnotherTypeWithTheSameClassRecord)
{
    struct Derived : TestEventObject
    {};
    showWidget();
    show(new TestEventObject);
    const std::size_t textBefore = debugOutput.getText().size();
    show(new Derived);
    EXPECT_EQ(TestEventObject::s_NumUpdates, 1);
    show(new OtherTestEventObject);
    show(new Kettle);
    EXPECT_EQ(newText(textBefore), "") << "records that differ say enough";
}

TEST_F(GLEventDisplayerWidgetGLTest, ReplacesWhereItShallNotUpdate)
{
    showWidget();
    show(new TestEventObject, false);
    auto* second = new TestEventObject;
    second->hasPanel = true;
    show(second, false);
    EXPECT_EQ(TestEventObject::s_NumUpdates, 0);
    EXPECT_EQ(TestEventObject::s_NumLiving, 1);
    EXPECT_TRUE(button("pbConfigure")->isEnabled());
}

TEST_F(GLEventDisplayerWidgetGLTest, OnlyRepaintsTheObjectThatItShows)
{
    showWidget();
    auto* object = new TestEventObject;
    show(object);
    for (bool updateExisting : {true, false}) {
        TestEventObject::s_NumDrawn = 0;
        show(object, updateExisting);
        EXPECT_GE(TestEventObject::s_NumDrawn, 1);
        EXPECT_EQ(TestEventObject::s_NumLiving, 1);
    }
    EXPECT_EQ(TestEventObject::s_NumUpdates, 0);
}

TEST_F(GLEventDisplayerWidgetGLTest, PopsUpThePanelAtTheButton)
{
    showWidget();
    auto* object = new TestEventObject;
    object->hasPanel = true;
    show(object);
    auto* const panel = m_Widget->findChild<GLEventConfiguration*>();
    EXPECT_FALSE(panel->isVisible());
    click("pbConfigure");
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(panel->x(), button("pbConfigure")->mapToGlobal(QPoint(0, 0)).x());
    panel->hide();
}

TEST_F(GLEventDisplayerWidgetGLTest, RepaintsWhenThePanelSaysSo)
{
    showWidget();
    auto* object = new TestEventObject;
    object->hasPanel = true;
    show(object);
    TestEventObject::s_NumDrawn = 0;
    emit m_Widget->findChild<GLEventConfiguration*>()->changed();
    settle();
    EXPECT_GE(TestEventObject::s_NumDrawn, 1);
}

TEST_F(GLEventDisplayerWidgetGLTest, TurnsMovesAndShiftsWithTheMouse)
{
    showWidget();
    show(new TestEventObject);
    const Camera start = TestEventObject::s_Camera;
    const auto drag = [&](Qt::MouseButton mouseButton) {
        dragMouse(m_View, mouseButton, QPoint(40, 40), QPoint(60, 60));
        settle();
        return TestEventObject::s_Camera;
    };
    const auto distance = [](const Camera& camera) { return length(camera.getEyePoint() - camera.getLookAtPoint()); };

    const Camera turned = drag(Qt::LeftButton);
    EXPECT_EQ(turned.getLookAtPoint(), start.getLookAtPoint());
    EXPECT_NE(turned.getEyePoint(), start.getEyePoint());
    EXPECT_NEAR(distance(turned), distance(start), 1e-4f);

    const Camera moved = drag(Qt::RightButton);
    EXPECT_EQ(moved.getLookAtPoint(), start.getLookAtPoint());
    EXPECT_GT(distance(moved), distance(start) * 1.1f);

    const Camera shifted = drag(Qt::MiddleButton);
    EXPECT_NE(shifted.getLookAtPoint(), start.getLookAtPoint());
    EXPECT_NEAR(distance(shifted), distance(moved), 1e-3f);

    EXPECT_EQ(drag(Qt::BackButton), shifted);
}

TEST_F(GLEventDisplayerWidgetGLTest, MovesWithTheWheel)
{
    showWidget();
    show(new TestEventObject);
    const Camera start = TestEventObject::s_Camera;
    const QPointF position(40, 40);
    QWheelEvent event(position, m_View->mapToGlobal(position.toPoint()), QPoint(), QPoint(0, 120), Qt::NoButton,
        Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(m_View, &event);
    settle();
    EXPECT_LT(length(TestEventObject::s_Camera.getEyePoint() - start.getLookAtPoint()),
        length(start.getEyePoint() - start.getLookAtPoint()));
}

TEST_F(GLEventDisplayerWidgetGLTest, FollowsTheKeysAndGoesHome)
{
    showWidget();
    show(new TestEventObject);
    const Camera start = TestEventObject::s_Camera;
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Up, Qt::Key_Plus, Qt::Key_Minus}) {
        const Camera before = TestEventObject::s_Camera;
        clickKey(m_View, key);
        settle();
        EXPECT_NE(TestEventObject::s_Camera, before) << key;
    }
    clickKey(m_View, Qt::Key_Home);
    settle();
    EXPECT_EQ(TestEventObject::s_Camera, start);

    clickKey(m_View, Qt::Key_Right, Qt::ShiftModifier);
    settle();
    EXPECT_NE(TestEventObject::s_Camera.getLookAtPoint(), start.getLookAtPoint()) << "with shift, arrows shift";
}

TEST_F(GLEventDisplayerWidgetGLTest, RepaintsAtOnceOnEveryEvent)
{
    showWidget();
    show(new TestEventObject);
    const auto paintsOf = [](auto event) {
        TestEventObject::s_NumDrawn = 0;
        event();
        return TestEventObject::s_NumDrawn;
    };
    EXPECT_EQ(paintsOf([&] { pressMouse(m_View, Qt::LeftButton, QPoint(40, 40)); }), 1);
    EXPECT_EQ(paintsOf([&] { moveMouse(m_View, Qt::LeftButton, QPoint(50, 50)); }), 1);
    EXPECT_EQ(paintsOf([&] { releaseMouse(m_View, Qt::LeftButton, QPoint(50, 50)); }), 1);
    EXPECT_EQ(paintsOf([&] {
        QResizeEvent resize(QSize(50, 50), m_View->size());
        QApplication::sendEvent(m_View, &resize);
    }),
        0);
    EXPECT_EQ(paintsOf([&] { pressKey(m_View, Qt::Key_A); }), 1);
    EXPECT_EQ(paintsOf([&] { releaseKey(m_View, Qt::Key_A); }), 1);
}

TEST_F(GLEventDisplayerWidgetGLTest, DrawsWithTheViewsNewShapeAfterResizing)
{
    showWidget();
    show(new TestEventObject);
    m_Widget->resize(300, 200);
    settle();
    CallRecorder recorder;
    m_View->updateGL();
    EXPECT_THAT(recorder.calls(), Contains("glViewport(0, 0, " + std::to_string(m_View->width()) + ", " +
                                           std::to_string(m_View->height()) + ")"));
}

TEST_F(GLEventDisplayerWidgetGLTest, MakesItsOwnContextOnTheFirstPaint)
{
    // Contexts are numbered, so the next number tells how many were made.
    const auto nextNumber = [] { return GLContext(nullptr, nullptr, nullptr, nullptr).getContextNumber(); };
    const std::uint64_t before = nextNumber();
    {
        CallRecorder recorder;
        grabPicture(m_Widget.get());
        EXPECT_THAT(recorder.calls(), Contains("wglGetCurrentDC()"));
        EXPECT_THAT(recorder.calls(), Contains("wglGetCurrentContext()"));
    }
    EXPECT_EQ(nextNumber(), before + 2) << "one by the paint, one by this test";
    grabPicture(m_Widget.get());
    EXPECT_EQ(nextNumber(), before + 3);
}

TEST_F(GLEventDisplayerWidgetGLTest, SaysOnceThatItsContextCannotBeMadeCurrent)
{
    const std::string message =
        "GLEventDisplayerWidget::paintGL() - the view has no GL context: it cannot be made current";
    m_View->windowHandle()->destroy();
    const std::size_t before = debugOutput.getText().size();
    callsOfPaint();
    callsOfPaint();
    EXPECT_EQ(newText(before), "error: " + message + "\n");
    try {
        grabPicture(m_Widget.get());
        ADD_FAILURE() << "there is no picture";
    } catch (const PException& exception) {
        EXPECT_EQ(exception.getMessage(), message);
    }
}

TEST_F(GLEventDisplayerWidgetGLTest, WaitsWhileTheShownObjectDrawsToReplaceIt)
{
    showWidget();
    bool hasSent = false;
    auto* object = new TestEventObject;
    object->whenDrawn = [&] {
        if (std::exchange(hasSent, true))
            return;
        m_Widget->setGLEventObject(new OtherTestEventObject, true);
        m_Widget->setGLEventObject(new OtherTestEventObject, true);
        EXPECT_EQ(TestEventObject::s_NumLiving, 3) << "nothing is freed while it draws";
    };
    show(object);
    EXPECT_TRUE(hasSent);
    EXPECT_EQ(TestEventObject::s_NumLiving, 1);
    EXPECT_EQ(TestEventObject::s_NumUpdates, 1) << "the second updated the first";
}

TEST_F(GLEventDisplayerWidgetGLTest, FreesWhatWaitsWhenItDies)
{
    showWidget();
    auto* object = new TestEventObject;
    object->whenUpdated = [&] { m_Widget->setGLEventObject(new OtherTestEventObject, true); };
    m_Widget->setGLEventObject(object, true);
    m_Widget->setGLEventObject(new TestEventObject, true);
    m_Widget.reset();
    EXPECT_EQ(TestEventObject::s_NumLiving, 0);
}

TEST_F(GLEventDisplayerWidgetGLTest, SurvivesAPanelThatGoesByItself)
{
    showWidget();
    auto* object = new TestEventObject;
    object->hasPanel = true;
    show(object);
    delete m_Widget->findChild<GLEventConfiguration*>();
    click("pbConfigure");
    show(new OtherTestEventObject);
    EXPECT_EQ(TestEventObject::s_NumLiving, 1);
}

TEST_F(GLEventDisplayerWidgetGLTest, GivesAPictureEvenWhereItsWindowIsCovered)
{
    showWidget();
    auto* object = new TestEventObject;
    object->whenDrawn = [] {
        glClearColor(1.0f, 0.0f, 0.0f, 0.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    };
    show(object);
    // Qt makes pictures of a view in a texture of its size.
    m_View->makeCurrent();
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    m_Widget->move(-1000, -1000);
    settle();
    const QImage picture = grabPicture(m_Widget.get());
    EXPECT_EQ(picture.size(), m_View->size());
    EXPECT_EQ(picture.pixelColor(20, 20), QColor(255, 0, 0));
}

TEST_F(GLEventDisplayerWidgetGLTest, DiesInEveryOrder)
{
    // Window first, with an object and a panel that pops up.
    showWidget();
    auto* object = new TestEventObject;
    object->hasPanel = true;
    show(object);
    click("pbConfigure");
    m_Widget.reset();
    EXPECT_EQ(TestEventObject::s_NumLiving, 0);

    // Before it was ever shown.
    GLEventDisplayerWidget unshown(nullptr, Qt::WindowFlags());
    unshown.setGLEventObject(new TestEventObject, true);

    // The parent first.
    auto parent = std::make_unique<QWidget>();
    auto* child = new GLEventDisplayerWidget(parent.get(), Qt::WindowFlags());
    child->setGLEventObject(new TestEventObject, true);
    parent->show();
    settle();
    parent.reset();
    EXPECT_EQ(TestEventObject::s_NumLiving, 1);
    unshown.setGLEventObject(new OtherTestEventObject, true);
}

} // namespace
} // namespace tavo
