#include <QApplication>
#include <QCursor>
#include <QMetaMethod>
#include <QPushButton>
#include <QScrollArea>
#include <gmock/gmock.h>
#include <memory>
#include <thread>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugSection.h"
#include "tavo/base/debug/DebugWindow.h"
#include "tests/support/userEvents.h"
#include "tests/vireo/displayers/TestEventObject.h"
#include "vireo/displayers/GLEventDisplayer.h"
#include "vireo/displayers/GLEventDisplayerWidget.h"

namespace tavo {
namespace {

// With the protected operation in reach.
class OpenDisplayer : public GLEventDisplayer
{
public:
    using GLEventDisplayer::createSpecialWidget;
};

class ForeignEvent : public EventDisplayerEvent
{};

class GLEventDisplayerGLTest : public testing::Test
{
protected:
    GLEventDisplayerGLTest()
    {
        GLEventObject::init(Object::getClass());
        GLEventDisplayer::init(EventDisplayer::getClass());
    }

    ~GLEventDisplayerGLTest() override
    {
        delete debugOutput.getWindow();
        EXPECT_EQ(TestEventObject::s_NumLiving, 0);
    }
};

TEST_F(GLEventDisplayerGLTest, HasOneClassRecord)
{
    const MetaClass* record = GLEventDisplayer::getClass();
    EXPECT_EQ(GLEventDisplayer::getClass(), record);
    EXPECT_STREQ(record->getName(), "GLEventDisplayer");
    EXPECT_STREQ(record->getDescription(), "no description.");
    EXPECT_EQ(record->getInstanceSize(), sizeof(GLEventDisplayer));
    EXPECT_EQ(record->getVersion(), 1000u);
    EXPECT_EQ(record->getParent(), EventDisplayer::getClass());
    EXPECT_FALSE(record->isAbstract());
    const std::unique_ptr<Object> instance(record->newInstance());
    EXPECT_EQ(instance->getInstanceClass(), record);
    EXPECT_NE(dynamic_cast<GLEventDisplayer*>(instance.get()), nullptr);
    GLEventDisplayer::initMetaClass();
    EXPECT_EQ(GLEventDisplayer::getClass(), record);
}

TEST_F(GLEventDisplayerGLTest, DescribesTheAbstractClassOfItsObjectsWithoutAFactory)
{
    const MetaClass* record = GLEventObject::getClass();
    EXPECT_EQ(GLEventObject::getClass(), record);
    EXPECT_STREQ(record->getName(), "GLEventObject");
    EXPECT_STREQ(record->getDescription(), "no description.");
    EXPECT_EQ(record->getInstanceSize(), sizeof(GLEventObject));
    EXPECT_EQ(record->getParent(), Object::getClass());
    EXPECT_EQ(record->getVersion(), 1000u);
    EXPECT_TRUE(record->isAbstract());
    GLEventObject::initMetaClass();
    EXPECT_EQ(GLEventObject::getClass(), record);
}

TEST_F(GLEventDisplayerGLTest, IgnoresEventsBeforeItHasAWidget)
{
    OpenDisplayer displayer;
    TestEventObject object;
    const GLEventDisplayer::SetNewGLEventObject event(&object, true);
    displayer.displayEvent(&event, "name");
    EXPECT_EQ(TestEventObject::s_NumLiving, 1) << "neither shown nor freed";
}

TEST_F(GLEventDisplayerGLTest, ShowsTheObjectOfItsEvent)
{
    QWidget parent;
    OpenDisplayer displayer;
    QWidget* const widget = displayer.createSpecialWidget(&parent);
    EXPECT_EQ(widget->parentWidget(), &parent);
    EXPECT_NE(qobject_cast<GLEventDisplayerWidget*>(widget), nullptr);
    {
        const GLEventDisplayer::SetNewGLEventObject event(new TestEventObject, true);
        displayer.displayEvent(&event, "name");
    }
    EXPECT_EQ(TestEventObject::s_NumLiving, 1) << "the event's end does not free it";
}

TEST_F(GLEventDisplayerGLTest, PassesOnWhetherToUpdate)
{
    QWidget parent;
    OpenDisplayer displayer;
    displayer.createSpecialWidget(&parent);
    TestEventObject::s_NumUpdates = 0;
    for (bool updateExisting : {true, false, true}) {
        const GLEventDisplayer::SetNewGLEventObject event(new TestEventObject, updateExisting);
        displayer.displayEvent(&event, "name");
    }
    EXPECT_EQ(TestEventObject::s_NumUpdates, 1);
    EXPECT_EQ(TestEventObject::s_NumLiving, 1);
}

TEST_F(GLEventDisplayerGLTest, IgnoresForeignEventsAndNull)
{
    QWidget parent;
    OpenDisplayer displayer;
    displayer.createSpecialWidget(&parent);
    const GLEventDisplayer::SetNewGLEventObject event(new TestEventObject, true);
    displayer.displayEvent(&event, "name");
    displayer.displayEvent(nullptr, "name");
    const ForeignEvent foreign;
    displayer.displayEvent(&foreign, "name");
    const GLEventDisplayer::SetNewGLEventObject empty(nullptr, true);
    displayer.displayEvent(&empty, "name");
    EXPECT_EQ(TestEventObject::s_NumLiving, 1);
}

TEST_F(GLEventDisplayerGLTest, SharesItsWidgetWithItsCopies)
{
    QWidget parent;
    OpenDisplayer displayer;
    displayer.createSpecialWidget(&parent);
    const GLEventDisplayer::SetNewGLEventObject event(new TestEventObject, true);
    GLEventDisplayer copy(displayer);
    copy.displayEvent(&event, "name");
    EXPECT_EQ(TestEventObject::s_NumLiving, 1) << "shown by the one widget there is";
    GLEventDisplayer assigned;
    assigned = displayer;
    const GLEventDisplayer::SetNewGLEventObject replacement(new TestEventObject, false);
    assigned.displayEvent(&replacement, "name");
    EXPECT_EQ(TestEventObject::s_NumLiving, 1);
}

TEST_F(GLEventDisplayerGLTest, ReachesTheDebugWindow)
{
    TestEventObject::s_NumUpdates = 0;
    sendGLEventObject("mine", new TestEventObject);
    sendGLEventObject("mine", new TestEventObject);
    EXPECT_EQ(TestEventObject::s_NumUpdates, 1) << "the second one updates the first";
    ASSERT_EQ(debugOutput.getWindow()->getSections().size(), 1u);
    const DebugSection* section = debugOutput.getWindow()->getSections()[0];
    EXPECT_EQ(section->getName(), "mine");
    EXPECT_NE(qobject_cast<GLEventDisplayerWidget*>(section->getDisplayerWidget()), nullptr);
    EXPECT_EQ(TestEventObject::s_NumLiving, 1);
}

// The pointer moves down with the button, but not sideways; nothing else may come to lie under it.
TEST_F(GLEventDisplayerGLTest, KeepsTheButtonsUnderThePointerWhenItsSectionsOutgrowTheWindow)
{
    sendGLEventObject("upper", new TestEventObject);
    sendGLEventObject("lower", new TestEventObject);
    DebugWindow* const window = debugOutput.getWindow();
    const auto widgetOf = [window](std::size_t section) {
        return qobject_cast<GLEventDisplayerWidget*>(window->getSections().at(section)->getDisplayerWidget());
    };
    widgetOf(1)->setSizeIndex(9);
    window->move(100, 50);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    QTest::qWait(20);
    GLEventDisplayerWidget* const widget = widgetOf(0);
    const auto* const scrollArea = window->findChild<QScrollArea*>();
    const auto fit = [scrollArea] { return scrollArea->widget()->height() <= scrollArea->viewport()->height(); };
    ASSERT_TRUE(fit());

    auto* const button = widget->findChild<QPushButton*>("pbIncreaseSize");
    QCursor::setPos(button->mapToGlobal(button->rect().center()));
    const auto cursorOnButton = [button] { return button->mapFromGlobal(QCursor::pos()); };
    const int y = cursorOnButton().y();
    while (fit()) {
        ASSERT_EQ(QApplication::widgetAt(QCursor::pos()), button);
        const unsigned int before = widget->getSizeIndex();
        clickMouse(button);
        ASSERT_EQ(widget->getSizeIndex(), before + 1);
        EXPECT_TRUE(QTest::qWaitFor([&] { return cursorOnButton().y() == y; })) << "the button follows";
        QTest::qWait(50); // and the scroll bar may
    }
    EXPECT_EQ(QApplication::widgetAt(QCursor::pos()), button);
}

TEST_F(GLEventDisplayerGLTest, FreesWhatIsNotDelivered)
{
    std::thread([] { sendGLEventObject("from afar", new TestEventObject); }).join();
    EXPECT_EQ(TestEventObject::s_NumLiving, 0);
}

TEST_F(GLEventDisplayerGLTest, SurvivesTheDeathOfItsWidget)
{
    OpenDisplayer displayer;
    delete displayer.createSpecialWidget(nullptr);
    TestEventObject object;
    const GLEventDisplayer::SetNewGLEventObject event(&object, true);
    displayer.displayEvent(&event, "name");
    EXPECT_EQ(TestEventObject::s_NumLiving, 1);
}

TEST_F(GLEventDisplayerGLTest, ItsPanelsHaveOneSignal)
{
    TestEventObject object;
    GLEventConfiguration panel(nullptr, &object);
    const QMetaObject* meta = panel.metaObject();
    EXPECT_STREQ(meta->className(), "tavo::GLEventConfiguration");
    ASSERT_EQ(meta->methodCount() - meta->methodOffset(), 1);
    EXPECT_EQ(meta->method(meta->methodOffset()).methodSignature(), "changed()");
    EXPECT_EQ(meta->method(meta->methodOffset()).methodType(), QMetaMethod::Signal);
    EXPECT_EQ(meta->propertyCount(), meta->propertyOffset());
    EXPECT_NE(panel.qt_metacast("tavo::GLEventConfiguration"), nullptr);
    EXPECT_NE(panel.qt_metacast("tavo::PopupWindow"), nullptr);
    EXPECT_EQ(panel.qt_metacast("tavo::Somewhere"), nullptr);
}

} // namespace
} // namespace tavo
