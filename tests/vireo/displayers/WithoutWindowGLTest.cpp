#include <QGLWidget>
#include <gmock/gmock.h>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugSection.h"
#include "tavo/base/debug/DebugWindow.h"
#include "tavo/base/objects/PException.h"
#include "tavo/platform/wgl.h"
#include "tests/support/QtMessages.h"
#include "tests/support/userEvents.h"
#include "tests/vireo/displayers/TestEventObject.h"
#include "vireo/displayers/GLEventDisplayer.h"

#include <GL/gl.h>

namespace tavo {
namespace {

// Before Qt looks: where there is an X server, its platform without windows asks that for contexts.
const bool DISPLAY_IS_HIDDEN = qunsetenv("DISPLAY");

// Qt has no GL for the windows of this program: its platform shows them nowhere.
class WithoutWindowGLTest : public testing::Test
{
protected:
    WithoutWindowGLTest()
    {
        EXPECT_TRUE(DISPLAY_IS_HIDDEN);
        GLEventObject::init(Object::getClass());
        GLEventDisplayer::init(EventDisplayer::getClass());
    }

    ~WithoutWindowGLTest() override
    {
        delete debugOutput.getWindow();
        EXPECT_EQ(TestEventObject::s_NumLiving, 0);
    }

    static DebugSection& send(const std::string& name, TestEventObject* object)
    {
        sendGLEventObject(name, object);
        for (DebugSection* section : debugOutput.getWindow()->getSections())
            if (section->getName() == name)
                return *section;
        throw PException("there is no section");
    }

    // Of its windows, whose places it does not keep.
    ExpectedQtWarning m_PlatformsWords{"This plugin does not support"};
    const std::size_t m_Before = debugOutput.getText().size();
};

TestEventObject* makeRed()
{
    auto* const object = new TestEventObject;
    object->whenDrawn = [] {
        glClearColor(1, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
    };
    return object;
}

TEST_F(WithoutWindowGLTest, HasPicturesOfAContextOfItsOwn)
{
    DebugSection& section = send("view", makeRed());
    EXPECT_FALSE(section.findChild<QGLWidget*>()->isValid());
    for (int i = 0; i < 2; ++i) {
        const QImage picture = section.getPicture();
        ASSERT_FALSE(picture.isNull());
        EXPECT_EQ(picture.size(), section.findChild<QGLWidget*>()->size());
        EXPECT_EQ(picture.pixelColor(0, 0), QColor(Qt::red));
        EXPECT_EQ(picture.pixelColor(picture.width() - 1, picture.height() - 1), QColor(Qt::red));
    }
    EXPECT_EQ(debugOutput.getText().substr(m_Before), "") << "nothing is missing";
}

// What people would see.
QColor shownBy(const QGLWidget& view)
{
    return view.window()->grab().toImage().pixelColor(view.mapTo(view.window(), view.rect().center()));
}

TEST_F(WithoutWindowGLTest, ShowsThePictureInTheWindow)
{
    auto* const object = makeRed();
    DebugSection& section = send("view", object);
    auto* const view = section.findChild<QGLWidget*>();
    EXPECT_EQ(shownBy(*view), QColor(Qt::red));
    object->whenDrawn = [] {
        glClearColor(0, 0, 1, 1);
        glClear(GL_COLOR_BUFFER_BIT);
    };
    clickKey(view, Qt::Key_Left);
    EXPECT_EQ(shownBy(*view), QColor(Qt::blue));
    view->updateGL();
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(debugOutput.getText().substr(m_Before), "");
}

TEST_F(WithoutWindowGLTest, IsBlackWhereTheObjectFails)
{
    auto* const object = new TestEventObject;
    object->whenDrawn = [] { throw PException("failed"); };
    const DebugSection& section = send("view", object);
    EXPECT_EQ(shownBy(*section.findChild<QGLWidget*>()), QColor(Qt::black));
    EXPECT_THAT(debugOutput.getText().substr(m_Before), testing::HasSubstr("failed"));
}

// Red on the left, green on the right, and a thick blue cross in the middle, somewhere in front of the camera.
void drawColours()
{
    const auto rectangle = [](double left, double right, double bottom, double top) {
        glRectd(left, bottom, right, top);
    };
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslated(0, 0, -10);
    glColor3f(1, 0, 0);
    rectangle(-100, 0, -100, 100);
    glColor3f(0, 1, 0);
    rectangle(0, 100, -100, 100);
    glTranslated(0, 0, 0.01);
    glColor3f(0, 0, 1);
    rectangle(-0.5, 0.5, -3, 3);
    rectangle(-3, 3, -0.5, 0.5);
}

TEST_F(WithoutWindowGLTest, DrawsPicturesInAnySizeTileByTile)
{
    auto* const object = new TestEventObject;
    object->whenDrawn = drawColours;
    DebugSection& section = send("view", object);
    const QSize small(500, 200);
    const QImage expected = section.getPicture(small);
    ASSERT_EQ(expected.size(), small);
    EXPECT_EQ(expected.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(expected.pixelColor(499, 199), QColor(0, 255, 0));
    EXPECT_EQ(expected.pixelColor(250, 100), QColor(Qt::blue));
    for (const QSize& size : {small * 3, small * 17}) {
        const QImage large = section.getPicture(size);
        ASSERT_EQ(large.size(), size);
        const int factor = size.width() / small.width();
        int numDifferent = 0;
        for (int y = 0; y < small.height(); ++y)
            for (int x = 0; x < small.width(); ++x)
                numDifferent += large.pixel(x * factor + factor / 2, y * factor + factor / 2) != expected.pixel(x, y);
        EXPECT_LT(numDifferent, 300) << "at edges alone";
    }
    EXPECT_EQ(section.getPicture().size(), section.findChild<QGLWidget*>()->size());
    EXPECT_TRUE(section.getPicture(QSize(0, 5)).isNull());
    EXPECT_EQ(debugOutput.getText().substr(m_Before), "");
}

TEST_F(WithoutWindowGLTest, LeavesNothingCurrent)
{
    EXPECT_FALSE(send("view", makeRed()).getPicture().isNull());
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST_F(WithoutWindowGLTest, GivesEachViewAContext)
{
    HGLRC contexts[2] = {};
    for (int i = 0; i < 2; ++i) {
        auto* const object = new TestEventObject;
        object->whenDrawn = [&contexts, i] { contexts[i] = wglGetCurrentContext(); };
        EXPECT_FALSE(send("view " + std::to_string(i), object).getPicture().isNull());
    }
    EXPECT_NE(contexts[0], nullptr);
    EXPECT_NE(contexts[0], contexts[1]);
}

TEST_F(WithoutWindowGLTest, SendsTheObjectAwayWithItsContextCurrent)
{
    auto* const object = makeRed();
    HGLRC drawnIn = nullptr;
    HGLRC destroyedIn = nullptr;
    object->whenDrawn = [&drawnIn] { drawnIn = wglGetCurrentContext(); };
    object->whenDestroyed = [&destroyedIn] { destroyedIn = wglGetCurrentContext(); };
    EXPECT_FALSE(send("view", object).getPicture().isNull());
    delete debugOutput.getWindow();
    EXPECT_NE(drawnIn, nullptr);
    EXPECT_EQ(destroyedIn, drawnIn);
}

} // namespace
} // namespace tavo
