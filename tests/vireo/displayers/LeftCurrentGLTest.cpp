#include <QApplication>
#include <QPushButton>
#include <QWheelEvent>
#include <gmock/gmock.h>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugSection.h"
#include "tavo/base/debug/DebugWindow.h"
#include "tavo/base/gui/WidgetPicture.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/userEvents.h"
#include "tests/vireo/CurrentState.h"
#include "tests/vireo/displayers/TestEventObject.h"
#include "vireo/context/CurrentContextGuard.h"
#include "vireo/context/GLContext.h"
#include "vireo/displayers/GLEventDisplayer.h"
#include "vireo/displayers/GLEventDisplayerWidget.h"
#include "vireo/displayers/GLGraphDisplayer.h"
#include "vireo/textures/GLTexture2D.h"

#include <GL/gl.h>

namespace tavo {
namespace {

// What an application has current stays so, whatever it has the displayers do.
class LeftCurrentGLTest : public testing::Test
{
protected:
    LeftCurrentGLTest()
    {
        GLEventObject::init(Object::getClass());
        GLEventDisplayer::init(EventDisplayer::getClass());
        GLGraphDisplayer::init(GLEventObject::getClass());
    }

    ~LeftCurrentGLTest() override
    {
        delete debugOutput.getWindow();
        m_Application.make(Made::NOTHING);
        EXPECT_EQ(TestEventObject::s_NumLiving, 0);
    }

    // Lets all paints happen that were asked for.
    static void settle() { QTest::qWait(50); }

    static DebugSection& section() { return *debugOutput.getWindow()->getSections().back(); }
    static QGLWidget& view() { return *section().findChild<QGLWidget*>(); }

    // Shows an object, and lets it be painted.
    static TestEventObject& show()
    {
        auto* const object = new TestEventObject;
        sendGLEventObject("object", object);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(debugOutput.getWindow()));
        settle();
        EXPECT_GE(TestEventObject::s_NumDrawn, 1);
        return *object;
    }

    Application m_Application;
};

class LeftCurrentOfAllGLTest : public LeftCurrentGLTest, public testing::WithParamInterface<Made>
{
protected:
    // Does that with the application's context current, and checks that it stays so.
    template <typename Action>
    void act(const std::string& what, Action action)
    {
        SCOPED_TRACE(what);
        m_Application.make(GetParam());
        const CurrentState before;
        action();
        EXPECT_EQ(CurrentState(), before);
    }
};

INSTANTIATE_TEST_SUITE_P(Made, LeftCurrentOfAllGLTest, testing::ValuesIn(ALL_MADE));

TEST_P(LeftCurrentOfAllGLTest, BySending)
{
    const std::vector<float> values{1.0f, 2.0f};
    act("the first curve", [&] { debugOutputGraph("curve", values, {255, 0, 0, 255}); });
    act("the event loop", settle);
    act("an update", [&] { debugOutputGraph("curve", values, {255, 0, 0, 255}); });
    act("another object", [&] { sendGLEventObject("curve", new TestEventObject); });
    act("another name", [&] { debugOutputGraph("another", values, {255, 0, 0, 255}); });
    act("the event loop again", settle);
}

TEST_P(LeftCurrentOfAllGLTest, ByPaintingAndEvents)
{
    show();
    act("a paint now", [] { view().repaint(); });
    act("Qt's own paint", [] { view().updateGL(); });
    act("a drag", [] { dragMouse(&view(), Qt::LeftButton, QPoint(20, 20), QPoint(40, 30)); });
    act("a key", [] { clickKey(&view(), Qt::Key_Left); });
    act("the wheel", [] {
        const QPointF position(40, 40);
        QWheelEvent event(position, view().mapToGlobal(position.toPoint()), QPoint(), QPoint(0, 120), Qt::NoButton,
            Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&view(), &event);
    });
    act("another height", [] { clickMouse(section().findChild<QPushButton*>("pbIncreaseSize")); });
    act("a collapse", [] { section().setCollapsed(true); });
    act("an expansion", [] { section().setCollapsed(false); });
    act("the event loop", settle);
    act("another window around it", [] {
        QWidget* const widget = section().getDisplayerWidget();
        widget->setParent(nullptr);
        widget->show();
        settle();
        widget->setParent(&section());
    });
}

TEST_P(LeftCurrentOfAllGLTest, ByPictures)
{
    TestEventObject& object = show();
    act("a picture", [] { EXPECT_FALSE(section().getPicture().isNull()); });
    object.whenDrawn = [] { wglMakeCurrent(nullptr, nullptr); };
    act("a picture of one that releases what is current", [] { section().getPicture(); });
    object.whenDrawn = [this] { m_Application.make(Made::OWN); };
    act("a picture of one that makes another current", [] { section().getPicture(); });
}

TEST_P(LeftCurrentOfAllGLTest, ByObjectsThatThrow)
{
    TestEventObject& object = show();
    object.whenDrawn = [] { throw 1; };
    act("a paint", [] { view().repaint(); });
    act("a picture", [] { section().getPicture(); });
    act("a key", [] { clickKey(&view(), Qt::Key_Left); });
    object.whenUpdated = [] {
        view().makeCurrent();
        throw 1;
    };
    act("an update", [] { sendGLEventObject("object", new TestEventObject); });
}

TEST_P(LeftCurrentOfAllGLTest, ByMakingAndDestroyingWidgets)
{
    show();
    std::unique_ptr<GLEventDisplayerWidget> widget;
    act("making one", [&] { widget = std::make_unique<GLEventDisplayerWidget>(nullptr, Qt::WindowFlags()); });
    act("an object for it", [&] { widget->setGLEventObject(new TestEventObject, true); });
    act("a picture", [&] { grabPicture(widget.get()); });
    act("its end", [&] { widget.reset(); });
    act("the debug window's end", [] { delete debugOutput.getWindow(); });
    act("its making anew", [] { sendGLEventObject("object", new TestEventObject); });
    act("its end, never painted", [] { delete debugOutput.getWindow(); });
}

std::unique_ptr<GLTexture2D> makeTexture(GLContext* context)
{
    auto texture = std::make_unique<GLTexture2D>(context);
    texture->createFromMemory(1, 1, 4, nullptr, false);
    return texture;
}

// An object with a texture in a tree of its own, in the view's context.
class TexturedObject : public TestEventObject
{
public:
    TexturedObject()
    {
        whenDrawn = [this] {
            if (m_Context)
                return;
            m_Context = std::make_unique<GLContext>(wglGetCurrentDC(), wglGetCurrentContext(), nullptr, nullptr);
            m_Context->activate();
            m_Texture = makeTexture(m_Context.get());
        };
    }

    unsigned int getName() const { return m_Texture->getTextureID(); }

private:
    std::unique_ptr<GLContext> m_Context;
    std::unique_ptr<GLTexture2D> m_Texture;
};

// A tree of the application's and one of a shown object's, with a texture of the same number in each.
class TwoTreesGLTest : public LeftCurrentGLTest
{
protected:
    TwoTreesGLTest()
    {
        m_Application.context().makeCurrent();
        m_Context = std::make_unique<GLContext>(wglGetCurrentDC(), wglGetCurrentContext(), nullptr, nullptr);
        m_Context->activate();
        TestEventObject::s_NumUpdates = 0;
        auto* const object = new TexturedObject;
        sendGLEventObject("object", object);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(debugOutput.getWindow()));
        settle();
        m_Name = object->getName();
        while (m_Textures.empty() || m_Textures.back()->getTextureID() < m_Name)
            m_Textures.push_back(makeTexture(m_Context.get()));
        EXPECT_EQ(m_Textures.back()->getTextureID(), m_Name);
    }

    bool isInApplication() { return m_Context->activate() && glIsTexture(m_Name); }
    bool isInView() const
    {
        const CurrentContextGuard guard;
        view().makeCurrent();
        return glIsTexture(m_Name);
    }

    std::unique_ptr<GLContext> m_Context;
    std::vector<std::unique_ptr<GLTexture2D>> m_Textures;
    unsigned int m_Name = 0;
};

TEST_F(TwoTreesGLTest, DeletesOfTheApplicationHitItsOwnNames)
{
    view().repaint();
    m_Textures.clear();
    EXPECT_TRUE(isInView());
    EXPECT_FALSE(isInApplication());
}

TEST_F(TwoTreesGLTest, DeletesOfAnObjectThatIsReplacedHitItsOwnNames)
{
    sendGLEventObject("object", new OtherTestEventObject);
    EXPECT_FALSE(isInView());
    EXPECT_TRUE(isInApplication());
}

TEST_F(TwoTreesGLTest, UpdatesMakeNothingCurrent)
{
    m_Context->activate();
    EXPECT_THAT(callsOf([] { sendGLEventObject("object", new TestEventObject); }),
        testing::Each(testing::StartsWith("wglGetCurrent")));
    EXPECT_EQ(TestEventObject::s_NumUpdates, 1);
}

TEST_F(TwoTreesGLTest, DeletesOfAnObjectWhoseWindowDiesHitItsOwnNames)
{
    delete debugOutput.getWindow();
    EXPECT_TRUE(isInApplication());
}

} // namespace
} // namespace tavo
