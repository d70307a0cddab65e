#include <cstdio>
#include <stdexcept>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/gui/WidgetPicture.h"
#include "tests/support/extensions.h"
#include "tests/vireo/displayers/Failure.h"
#include "tests/vireo/displayers/GLEventDisplayerWidgetGLTest.h"

#include <GL/gl.h>

namespace tavo {
namespace {

using testing::AllOf;
using testing::HasSubstr;

const std::vector<Failure>& failures()
{
    static const std::vector<Failure> all = [] {
        std::vector<Failure> failures = {
            {[] { throw PException("of ours"); }, "error: of ours\n"},
            {[] { throw SE_Exception(0xC0000005u, nullptr); }, "error: operating-system exception 0xC0000005"},
            {[] { throw std::runtime_error("standard"); }, "error: standard\n"},
            {[] { throw 5; }, "error: an exception of unknown type\n"},
        };
        const std::vector<Failure> faults = survivableFaults();
        failures.insert(failures.end(), faults.begin(), faults.end());
        return failures;
    }();
    return all;
}

class GLEventDisplayerWidgetThrowGLTest : public GLEventDisplayerWidgetGLTest,
                                          public testing::WithParamInterface<std::size_t>
{
protected:
    static const Failure& failure() { return failures().at(GetParam()); }
};

INSTANTIATE_TEST_SUITE_P(
    AllKinds, GLEventDisplayerWidgetThrowGLTest, testing::Range(std::size_t{0}, failures().size()));

TEST_P(GLEventDisplayerWidgetThrowGLTest, SurvivesDrawing)
{
    showWidget();
    auto* object = new TestEventObject;
    object->whenDrawn = [] {
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        glPushAttrib(GL_ENABLE_BIT);
        glPushClientAttrib(GL_CLIENT_ALL_ATTRIB_BITS);
        glPushMatrix();
        glMatrixMode(GL_TEXTURE);
        glPushMatrix();
        glMatrixMode(GL_MODELVIEW);
        glPushMatrix();
        glPushMatrix();
        glEnable(GL_LIGHTING);
        glNewList(glGenLists(1), GL_COMPILE);
        glBegin(GL_LINES);
        failure().code();
    };
    int list = -1;
    const std::size_t before = debugOutput.getText().size();
    show(object);
    EXPECT_THAT(newText(before), HasSubstr(failure().report));

    m_View->makeCurrent();
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR)) << "no primitive is left open";
    const auto depth = [](GLenum name) {
        int value = -1;
        glGetIntegerv(name, &value);
        return value;
    };
    EXPECT_EQ(depth(GL_ATTRIB_STACK_DEPTH), 0);
    EXPECT_EQ(depth(GL_CLIENT_ATTRIB_STACK_DEPTH), 0);
    EXPECT_EQ(depth(GL_MODELVIEW_STACK_DEPTH), 1);
    EXPECT_EQ(depth(GL_PROJECTION_STACK_DEPTH), 1);
    EXPECT_EQ(depth(GL_TEXTURE_STACK_DEPTH), 1);
    EXPECT_FALSE(glIsEnabled(GL_LIGHTING));
    glGetIntegerv(GL_LIST_INDEX, &list);
    EXPECT_EQ(list, 0) << "no display list is left open";

    // The window is alive: the next object is drawn, and events work.
    show(new OtherTestEventObject);
    TestEventObject::s_NumDrawn = 0;
    clickMouse(m_View);
    EXPECT_GE(TestEventObject::s_NumDrawn, 1);
}

TEST_P(GLEventDisplayerWidgetThrowGLTest, SurvivesDrawingForAnEvent)
{
    showWidget();
    auto* object = new TestEventObject;
    show(object);
    // Qt makes pictures of a view in a texture of its size.
    m_View->makeCurrent();
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    object->whenDrawn = [] { failure().code(); };
    const std::function<void()> events[] = {
        [this] { pressKey(m_View, Qt::Key_A); },
        [this] { releaseKey(m_View, Qt::Key_A); },
        [this] { pressMouse(m_View, Qt::LeftButton, QPoint(40, 40)); },
        [this] { moveMouse(m_View, Qt::LeftButton, QPoint(50, 50)); },
        [this] { releaseMouse(m_View, Qt::LeftButton, QPoint(50, 50)); },
    };
    for (const auto& event : events) {
        const std::size_t before = debugOutput.getText().size();
        event();
        EXPECT_THAT(newText(before), HasSubstr(failure().report));
    }

    // The window is alive, and so is what it shows.
    object->whenDrawn = [] {
        glClearColor(0.0f, 1.0f, 0.0f, 0.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    };
    TestEventObject::s_NumDrawn = 0;
    pressKey(m_View, Qt::Key_A);
    EXPECT_EQ(TestEventObject::s_NumDrawn, 1);
    EXPECT_EQ(grabPicture(m_Widget.get()).pixelColor(20, 20), QColor(0, 255, 0));
}

TEST_P(GLEventDisplayerWidgetThrowGLTest, SurvivesAskingForTheBox)
{
    showWidget();
    auto* object = new TestEventObject;
    object->whenAskedForBox = [] { failure().code(); };
    const std::size_t before = debugOutput.getText().size();
    show(object);
    EXPECT_THAT(newText(before), HasSubstr(failure().report));
    EXPECT_EQ(TestEventObject::s_NumLiving, 1);
    show(new TestEventObject);
    EXPECT_EQ(TestEventObject::s_NumLiving, 1) << "the sent object is freed though the update failed";
}

TEST_P(GLEventDisplayerWidgetThrowGLTest, SurvivesMakingThePanelAndUpdating)
{
    showWidget();
    auto* object = new TestEventObject;
    object->whenConfigured = [] { failure().code(); };
    object->whenUpdated = [] { failure().code(); };
    std::size_t before = debugOutput.getText().size();
    show(object);
    EXPECT_THAT(newText(before), HasSubstr(failure().report));
    EXPECT_FALSE(button("pbConfigure")->isEnabled());
    EXPECT_EQ(TestEventObject::s_Camera.getLookAtPoint(), Vector3f(0.5f, 0.5f, 0.5f)) << "it is shown all the same";

    before = debugOutput.getText().size();
    show(new TestEventObject);
    EXPECT_THAT(newText(before), HasSubstr(failure().report));
    EXPECT_EQ(TestEventObject::s_NumLiving, 1);
}

// Exceptions never leave destructors, but faults do.
class GLEventDisplayerWidgetFaultGLTest : public GLEventDisplayerWidgetGLTest,
                                          public testing::WithParamInterface<std::size_t>
{
protected:
    static Failure fault() { return survivableFaults().at(GetParam()); }
};

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(GLEventDisplayerWidgetFaultGLTest);
INSTANTIATE_TEST_SUITE_P(
    AllKinds, GLEventDisplayerWidgetFaultGLTest, testing::Range(std::size_t{0}, survivableFaults().size()));

TEST_P(GLEventDisplayerWidgetFaultGLTest, SurvivesTheEndOfAnObjectAndOfItsPanel)
{
    showWidget();
    auto* object = new TestEventObject;
    object->hasPanel = true;
    object->whenPanelIsDestroyed = [] {
        warning("panel");
        fault().code();
    };
    object->whenDestroyed = [] {
        warning("object");
        fault().code();
    };
    show(object);

    const std::size_t before = debugOutput.getText().size();
    show(new OtherTestEventObject);
    const std::string report = fault().report;
    EXPECT_THAT(newText(before), AllOf(HasSubstr("object\n" + report), HasSubstr("panel\n" + report)));
    EXPECT_FALSE(button("pbConfigure")->isEnabled());
    TestEventObject::s_NumDrawn = 0;
    clickMouse(m_View);
    EXPECT_GE(TestEventObject::s_NumDrawn, 1) << "the new object is drawn";
}

TEST_P(GLEventDisplayerWidgetFaultGLTest, SurvivesTheEndOfTheObjectThatAClosedViewShows)
{
    auto* object = new TestEventObject;
    object->whenDestroyed = [] { fault().code(); };
    show(object);
    const std::size_t before = debugOutput.getText().size();
    m_Widget.reset();
    EXPECT_THAT(newText(before), HasSubstr(fault().report));
}

} // namespace
} // namespace tavo
