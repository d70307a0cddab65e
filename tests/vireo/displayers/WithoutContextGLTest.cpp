#include <QGLWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugSection.h"
#include "tavo/base/debug/DebugWindow.h"
#include "tavo/base/gui/WidgetPicture.h"
#include "tavo/base/objects/PException.h"
#include "tests/support/userEvents.h"
#include "tests/vireo/displayers/TestEventObject.h"
#include "vireo/displayers/GLEventDisplayer.h"
#include "vireo/displayers/GLEventDisplayerWidget.h"

namespace tavo {
namespace {

// Before Qt and the driver look: in this program there is no driver to be found.
const bool DRIVER_IS_HIDDEN = qputenv("LIBGL_DRIVERS_PATH", "/nonexistent");

const std::string MESSAGE =
    "GLEventDisplayerWidget::paintGL() - the view has no GL context: the OpenGL driver makes none";

class WithoutContextGLTest : public testing::Test
{
protected:
    WithoutContextGLTest()
    {
        EXPECT_TRUE(DRIVER_IS_HIDDEN);
        GLEventObject::init(Object::getClass());
        GLEventDisplayer::init(EventDisplayer::getClass());
    }

    ~WithoutContextGLTest() override
    {
        delete debugOutput.getWindow();
        EXPECT_EQ(TestEventObject::s_NumLiving, 0);
    }

    std::string newText() const { return debugOutput.getText().substr(m_Before); }

    const std::size_t m_Before = debugOutput.getText().size();
};

TEST_F(WithoutContextGLTest, SaysWhyOnceForEachView)
{
    sendGLEventObject("first", new TestEventObject);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(debugOutput.getWindow()));
    QTest::qWait(50);
    sendGLEventObject("first", new TestEventObject);
    debugOutput.getWindow()->repaint();
    EXPECT_EQ(newText(), "error: " + MESSAGE + "\n");
    sendGLEventObject("second", new TestEventObject);
    QTest::qWait(50);
    EXPECT_EQ(newText(), "error: " + MESSAGE + "\nerror: " + MESSAGE + "\n");
}

TEST_F(WithoutContextGLTest, SaysWhyInPlaceOfTheView)
{
    sendGLEventObject("view", new TestEventObject);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(debugOutput.getWindow()));
    const QWidget* const view = debugOutput.getWindow()->findChild<QGLWidget*>();
    const QImage picture =
        debugOutput.getWindow()->grab(QRect(view->mapTo(view->window(), QPoint()), view->size())).toImage();
    int numWhite = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            numWhite += picture.pixelColor(x, y) == QColor(Qt::white);
    EXPECT_GT(numWhite, 20) << "there is a text";
}

TEST_F(WithoutContextGLTest, LivesOn)
{
    TestEventObject::s_NumDrawn = 0;
    TestEventObject::s_NumUpdates = 0;
    auto* const object = new TestEventObject;
    object->hasPanel = true;
    sendGLEventObject("view", object);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(debugOutput.getWindow()));
    DebugSection* const section = debugOutput.getWindow()->getSections().at(0);
    auto* const view = section->findChild<QGLWidget*>();
    view->repaint();
    view->updateGL();
    dragMouse(view, Qt::LeftButton, QPoint(20, 20), QPoint(40, 30));
    clickKey(view, Qt::Key_Left);
    clickMouse(section->findChild<QPushButton*>("pbIncreaseSize"));
    EXPECT_EQ(view->height(), 128);
    clickMouse(section->findChild<QPushButton*>("pbConfigure"));
    sendGLEventObject("view", new TestEventObject);
    EXPECT_EQ(TestEventObject::s_NumUpdates, 1);
    sendGLEventObject("view", new OtherTestEventObject);
    QTest::qWait(50);
    EXPECT_EQ(TestEventObject::s_NumDrawn, 0);
    EXPECT_EQ(newText(), "error: " + MESSAGE + "\n");
}

TEST_F(WithoutContextGLTest, RefusesPicturesWithTheReason)
{
    sendGLEventObject("view", new TestEventObject);
    DebugSection* const section = debugOutput.getWindow()->getSections().at(0);
    try {
        grabPicture(section->getDisplayerWidget());
        ADD_FAILURE() << "there is no picture";
    } catch (const PException& exception) {
        EXPECT_EQ(exception.getMessage(), MESSAGE);
    }
    EXPECT_TRUE(section->getPicture().isNull());
    EXPECT_EQ(newText(), "error: " + MESSAGE + "\nerror: " + MESSAGE + "\n") << "by the view, then for the picture";
    const QTemporaryDir directory;
    EXPECT_FALSE(section->savePicture(directory.filePath("picture.png")));
    EXPECT_FALSE(QFile::exists(directory.filePath("picture.png")));
}

} // namespace
} // namespace tavo
