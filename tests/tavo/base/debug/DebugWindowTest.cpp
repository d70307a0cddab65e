#include "tavo/base/debug/DebugWindow.h"

#include <QApplication>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QTimer>
#include <QToolButton>
#include <gmock/gmock.h>
#include <thread>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugSection.h"
#include "tavo/base/debug/displayException.h"
#include "tavo/base/gui/WidgetPicture.h"
#include "tests/support/fullDevice.h"
#include "tests/support/userEvents.h"
#include "tests/tavo/base/debug/TextDisplayer.h"

namespace tavo {
namespace {

using testing::HasSubstr;

// A second displayer class.
class OtherDisplayer : public TextDisplayer
{
public:
    static const MetaClass* getClass()
    {
        static MetaClass* record = nullptr;
        return createClassRecord<OtherDisplayer>(
            record, "OtherDisplayer", [] { return static_cast<Object*>(new OtherDisplayer); });
    }
};

// A displayer whose view says nothing.
class BlankDisplayer : public TextDisplayer
{
public:
    void displayEvent(const EventDisplayerEvent*, const char*) override {}

    static const MetaClass* getClass()
    {
        static MetaClass* record = nullptr;
        return createClassRecord<BlankDisplayer>(
            record, "BlankDisplayer", [] { return static_cast<Object*>(new BlankDisplayer); });
    }
};

class DebugWindowTest : public testing::Test
{
protected:
    DebugWindowTest()
    {
        TextDisplayer::init(EventDisplayer::getClass());
        TextDisplayer::s_NumWidgets = 0;
        TextDisplayer::s_Refuses = false;
    }

    ~DebugWindowTest() override { delete debugOutput.getWindow(); }

    static bool send(
        const std::string& name, const std::string& text, const MetaClass* displayer = TextDisplayer::getClass())
    {
        const TextEvent event(text);
        return debugOutput.displayEvent(displayer, name, &event);
    }

    static void sendName(const std::string& name) { send(name, "", BlankDisplayer::getClass()); }

    static DebugSection* section(std::size_t i) { return debugOutput.getWindow()->getSections().at(i); }
    static QString labelOf(DebugSection* section)
    {
        return qobject_cast<QLabel*>(section->getDisplayerWidget())->text();
    }
    static QLabel* titleOf(DebugSection* section) { return section->findChild<QLabel*>("title"); }
    static QString logText() { return debugOutput.getWindow()->findChild<QPlainTextEdit*>("log")->toPlainText(); }

    static void click(DebugSection* section, const char* button)
    {
        clickMouse(section->findChild<QToolButton*>(button));
    }

    static void waitForExposure() { ASSERT_TRUE(QTest::qWaitForWindowExposed(debugOutput.getWindow())); }
};

TEST_F(DebugWindowTest, OpensWithTheFirstEvent)
{
    EXPECT_EQ(debugOutput.getWindow(), nullptr);
    EXPECT_TRUE(send("first", "hello"));
    ASSERT_NE(debugOutput.getWindow(), nullptr);
    EXPECT_TRUE(debugOutput.getWindow()->isVisible());
    EXPECT_EQ(labelOf(section(0)), "first: hello");
}

// A window of a library: its log and its sections stand side by side.
class OwnWindow : public DebugWindow
{
public:
    OwnWindow()
        : DebugWindow(OwnLayout())
        , m_Layout(new QHBoxLayout(this))
    {
        m_Layout->addWidget(getLog());
    }

protected:
    void place(DebugSection* section) override
    {
        section->setTitleBarVisible(false);
        m_Layout->addWidget(section);
    }

private:
    QHBoxLayout* m_Layout;
};

TEST_F(DebugWindowTest, IsOneThatALibraryMakes)
{
    DebugOutput::setWindowMaker([]() -> DebugWindow* { return new OwnWindow; });
    debugOutput << "before\n";
    EXPECT_FALSE(debugOutput.requireWindow().isVisible());
    EXPECT_EQ(debugOutput.getWindow(), &debugOutput.requireWindow());
    EXPECT_TRUE(logText().endsWith("before\n"));
    send("name", "text");
    DebugOutput::setWindowMaker(nullptr);

    EXPECT_NE(dynamic_cast<OwnWindow*>(debugOutput.getWindow()), nullptr);
    waitForExposure();
    EXPECT_EQ(section(0)->parentWidget(), debugOutput.getWindow());
    EXPECT_GT(section(0)->x(), debugOutput.getWindow()->findChild<QPlainTextEdit*>("log")->x());
    EXPECT_FALSE(titleOf(section(0))->isVisible());
    EXPECT_TRUE(section(0)->getDisplayerWidget()->isVisible());
    debugOutput << "after\n";
    EXPECT_TRUE(logText().endsWith("after\n"));
}

TEST_F(DebugWindowTest, IsAPlainOneWhereTheLibraryMakesNone)
{
    DebugOutput::setWindowMaker([]() -> DebugWindow* { return nullptr; });
    send("name", "text");
    DebugOutput::setWindowMaker(nullptr);
    EXPECT_TRUE(titleOf(section(0))->isVisible());
}

TEST_F(DebugWindowTest, TakesNothingButLineFeedsForEndsOfLines)
{
    send("first", "hello");
    const int before = debugOutput.getWindow()->findChild<QPlainTextEdit*>("log")->blockCount();
    debugOutput << "a\u2028b\u2029c\uFDD0d\uFDD1e\n";
    const auto* const log = debugOutput.getWindow()->findChild<QPlainTextEdit*>("log");
    EXPECT_EQ(log->blockCount(), before + 1);
    EXPECT_THAT(log->toPlainText().toStdString(), HasSubstr("a\uFFFDb\uFFFDc\uFFFDd\uFFFDe"));
}

TEST_F(DebugWindowTest, DoesNotOpenForText)
{
    debugOutput << "only text\n";
    EXPECT_EQ(debugOutput.getWindow(), nullptr);
}

TEST_F(DebugWindowTest, HasASectionForEveryClassAndNameInOrderOfArrival)
{
    send("b", "1");
    send("a", "2");
    send("b", "3", OtherDisplayer::getClass());
    send("b", "4");
    ASSERT_EQ(debugOutput.getWindow()->getSections().size(), 3u);
    EXPECT_EQ(section(0)->getName(), "b");
    EXPECT_EQ(section(1)->getName(), "a");
    EXPECT_EQ(section(2)->getName(), "b");
    EXPECT_EQ(section(2)->getDisplayerClass(), OtherDisplayer::getClass());
    EXPECT_EQ(labelOf(section(0)), "b: 4");
    EXPECT_EQ(labelOf(section(2)), "b: 3");
    waitForExposure();
    EXPECT_LT(section(0)->y(), section(1)->y());
    EXPECT_LT(section(1)->y(), section(2)->y());
}

TEST_F(DebugWindowTest, AsksADisplayerForItsWidgetOnce)
{
    for (int i = 0; i < 5; ++i)
        send("name", std::to_string(i));
    EXPECT_EQ(TextDisplayer::s_NumWidgets, 1);
}

TEST_F(DebugWindowTest, CollapsesAndExpands)
{
    send("name", "text");
    waitForExposure();
    click(section(0), "collapse");
    EXPECT_TRUE(section(0)->isCollapsed());
    EXPECT_FALSE(section(0)->getDisplayerWidget()->isVisible());
    EXPECT_TRUE(section(0)->isVisible());
    click(section(0), "collapse");
    EXPECT_FALSE(section(0)->isCollapsed());
    EXPECT_TRUE(section(0)->getDisplayerWidget()->isVisible());
}

TEST_F(DebugWindowTest, ClosesASectionThatGoesOnReceivingAndReopensFromTheMenu)
{
    send("kept", "1");
    send("closed", "1");
    waitForExposure();
    auto* const button = debugOutput.getWindow()->findChild<QToolButton*>("closedSections");
    EXPECT_FALSE(button->isVisible());

    click(section(1), "close");
    EXPECT_TRUE(section(1)->isClosed());
    EXPECT_FALSE(section(0)->isClosed());
    EXPECT_TRUE(button->isVisible());
    send("closed", "2");
    EXPECT_TRUE(section(1)->isClosed()) << "an event does not bring it back";
    EXPECT_EQ(labelOf(section(1)), "closed: 2");

    ASSERT_EQ(button->menu()->actions().size(), 1);
    EXPECT_EQ(button->menu()->actions()[0]->text(), "closed");
    button->menu()->actions()[0]->trigger();
    EXPECT_TRUE(section(1)->isVisible());
    EXPECT_FALSE(button->isVisible());
}

TEST_F(DebugWindowTest, StaysClosedUntilANewSectionComes)
{
    send("old", "1");
    debugOutput.getWindow()->close();
    send("old", "2");
    EXPECT_FALSE(debugOutput.getWindow()->isVisible());
    send("new", "1");
    EXPECT_TRUE(debugOutput.getWindow()->isVisible());
    EXPECT_EQ(labelOf(section(0)), "old: 2");
}

TEST_F(DebugWindowTest, SavesAPictureWhereThePersonSays)
{
    // In Qt's own dialog: a system's has no parts that a test could use.
    QTemporaryDir folder;
    send("name", "text");
    waitForExposure();
    click(section(0), "save");
    auto* const dialog = section(0)->findChild<QFileDialog*>();
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<QLineEdit*>()->setText(folder.filePath("picture"));
    static_cast<QDialog*>(dialog)->accept();
    const QImage picture(folder.filePath("picture.png"));
    EXPECT_EQ(picture.size(), section(0)->getDisplayerWidget()->size());
}

TEST_F(DebugWindowTest, ReportsAPictureThatCannotBeWritten)
{
    send("name", "text");
    EXPECT_FALSE(section(0)->savePicture("/nowhere/at/all.png"));
    EXPECT_THAT(
        debugOutput.getText(), HasSubstr("error: DebugSection::savePicture() - cannot write /nowhere/at/all.png: "));
}

TEST_F(DebugWindowTest, ReportsAPictureOnAFullDevice)
{
    const QTemporaryDir folder;
    const QString picture = folder.filePath("picture.png");
    if (!makeFullDevice(picture.toStdString()))
        GTEST_SKIP() << "this process may not make a device that is full";
    send("name", "text");
    EXPECT_FALSE(section(0)->savePicture(picture));
    EXPECT_THAT(debugOutput.getText(), HasSubstr("error: DebugSection::savePicture() - cannot write " +
                                                 picture.toStdString() + ": is not a regular file\n"));
}

TEST_F(DebugWindowTest, TakesThePictureFromTheSourceOfTheView)
{
    send("name", "text");
    QImage expected(7, 5, QImage::Format_RGB32);
    expected.fill(Qt::red);
    auto* const view = new QWidget(section(0)->getDisplayerWidget());
    setPictureSource(view, [expected] { return expected; });
    EXPECT_EQ(section(0)->getPicture(), expected);
    EXPECT_EQ(section(0)->getPicture({14, 10}).size(), QSize(14, 10)) << "scaled";
    setSizedPictureSource(view, [](const QSize& size) { return QImage(size, QImage::Format_RGB32); });
    EXPECT_EQ(section(0)->getPicture({7, 5}).size(), QSize(7, 5));
    EXPECT_EQ(section(0)->getPicture().size(), view->size());
    EXPECT_TRUE(section(0)->getPicture({0, 5}).isNull());
    setPictureSource(view, nullptr);
    EXPECT_EQ(section(0)->getPicture({7, 5}).size(), QSize(7, 5)) << "of what Qt paints";
    EXPECT_EQ(section(0)->getPicture().size(), section(0)->getDisplayerWidget()->size());
}

TEST_F(DebugWindowTest, SurvivesAPictureSourceThatThrows)
{
    send("name", "text");
    setPictureSource(section(0)->getDisplayerWidget(), []() -> QImage { throw PException("no picture"); });
    EXPECT_TRUE(section(0)->getPicture().isNull());
    EXPECT_FALSE(section(0)->savePicture("/tmp/never-written.png"));
}

TEST_F(DebugWindowTest, LogsTextFromBeforeAndAfterItOpened)
{
    debugOutput << "before\n";
    send("name", "text");
    EXPECT_TRUE(logText().endsWith("before\n"));
    debugOutput << "after, "
                << "in two pieces\n";
    EXPECT_TRUE(logText().endsWith("before\nafter, in two pieces\n"));
}

TEST_F(DebugWindowTest, LogsTextFromOtherThreads)
{
    send("name", "text");
    std::thread([] { debugOutput << "from afar\n"; }).join();
    QCoreApplication::processEvents();
    EXPECT_TRUE(logText().endsWith("from afar\n"));
}

TEST_F(DebugWindowTest, RefusesEventsFromOtherThreads)
{
    bool delivered = true;
    std::thread([&] { delivered = send("name", "text"); }).join();
    EXPECT_FALSE(delivered);
    EXPECT_EQ(debugOutput.getWindow(), nullptr);
    EXPECT_THAT(debugOutput.getText(),
        HasSubstr(
            "warning: DebugOutput::displayEvent() - events can only be sent from the thread of the QApplication.\n"));
}

TEST_F(DebugWindowTest, ReportsADisplayerThatThrowsAndGoesOn)
{
    send("good", "1");
    EXPECT_TRUE(send("bad", "throw"));
    EXPECT_TRUE(logText().endsWith("error: TextDisplayer - asked to throw\n"));
    send("good", "2");
    send("bad", "3");
    EXPECT_EQ(labelOf(section(0)), "good: 2");
    EXPECT_EQ(labelOf(section(1)), "bad: 3");
}

TEST_F(DebugWindowTest, LeavesNoSectionOfADisplayerThatCannotBeMade)
{
    TextDisplayer::s_Refuses = true;
    EXPECT_FALSE(send("name", "1"));
    EXPECT_TRUE(debugOutput.getWindow()->getSections().empty());
    EXPECT_THAT(debugOutput.getText(), HasSubstr("error: TextDisplayer - no widget today\n"));
    TextDisplayer::s_Refuses = false;
    EXPECT_TRUE(send("name", "2"));
    EXPECT_EQ(labelOf(section(0)), "name: 2");
}

TEST_F(DebugWindowTest, RefusesClassesThatMakeNoDisplayers)
{
    EXPECT_FALSE(send("name", "1", nullptr));
    EXPECT_THAT(debugOutput.getText(), HasSubstr("error: DebugOutput::displayEvent() - no displayer class\n"));
    EXPECT_FALSE(send("name", "1", EventDisplayer::getClass()));
    EXPECT_THAT(debugOutput.getText(),
        HasSubstr("error: DebugOutput::displayEvent() - the class EventDisplayer is abstract\n"));
    EXPECT_TRUE(debugOutput.getWindow()->getSections().empty());
}

TEST_F(DebugWindowTest, FreesItsDisplayers)
{
    send("a", "1");
    send("b", "1");
    EXPECT_EQ(TextDisplayer::s_NumDisplayers, 2);
    delete debugOutput.getWindow();
    EXPECT_EQ(TextDisplayer::s_NumDisplayers, 0);
    EXPECT_EQ(debugOutput.getWindow(), nullptr);
    EXPECT_TRUE(send("a", "2")) << "and opens again";
    EXPECT_EQ(labelOf(section(0)), "a: 2");
}

TEST_F(DebugWindowTest, FitsTheScreenAndGivesItsSectionsTheWholeWidth)
{
    send("name", "text");
    waitForExposure();
    const DebugWindow* window = debugOutput.getWindow();
    EXPECT_LE(window->width(), QGuiApplication::primaryScreen()->availableSize().width());
    EXPECT_LE(window->height(), QGuiApplication::primaryScreen()->availableSize().height());
    EXPECT_GT(section(0)->width(), window->width() - 40);
    debugOutput.getWindow()->resize(300, 300);
    QCoreApplication::processEvents();
    EXPECT_LT(section(0)->width(), 300);
    EXPECT_EQ(window->size(), QSize(300, 300)) << "however much it shows";
    for (int i = 0; i < 30; ++i)
        send("section " + std::to_string(i), "text");
    QCoreApplication::processEvents();
    EXPECT_EQ(window->size(), QSize(300, 300));
}

TEST_F(DebugWindowTest, StacksItsSectionsAtTheTop)
{
    send("first", "text");
    send("second", "text");
    waitForExposure();
    EXPECT_LE(section(0)->height(), section(0)->sizeHint().height());
    EXPECT_LT(section(0)->y(), 10);
    EXPECT_LT(section(1)->geometry().top() - section(0)->geometry().bottom(), 20);
}

TEST_F(DebugWindowTest, CutsALongNameInTheTitleAndHasItInTheToolTip)
{
    const std::string name = "the beginning" + std::string(2000, 'n') + "the end";
    sendName(name);
    waitForExposure();
    DebugWindow* const window = debugOutput.getWindow();
    EXPECT_EQ(window->size(), QSize(640, 720).boundedTo(QGuiApplication::primaryScreen()->availableSize()));
    EXPECT_LT(section(0)->width(), window->width()) << "the view is no wider than the window shows";
    EXPECT_EQ(section(0)->getPicture().width(), section(0)->width() - 2 * section(0)->frameWidth());
    EXPECT_EQ(section(0)->getName(), name);

    const QString title = titleOf(section(0))->text();
    EXPECT_TRUE(title.startsWith("the beginning"));
    EXPECT_TRUE(title.endsWith(QChar(0x2026)));
    EXPECT_LE(titleOf(section(0))->fontMetrics().horizontalAdvance(title), titleOf(section(0))->width());
    QTextDocument toolTip;
    toolTip.setHtml(titleOf(section(0))->toolTip());
    EXPECT_EQ(toolTip.toPlainText().remove('\n').toStdString(), name + "BlankDisplayer");
    EXPECT_LT(toolTip.idealWidth(), 1000) << "in lines";

    click(section(0), "close");
    const auto* const button = window->findChild<QToolButton*>("closedSections");
    EXPECT_LT(button->menu()->sizeHint().width(), 500);
}

TEST_F(DebugWindowTest, MakesMoreRoomForTheNameAsTheWindowGrows)
{
    sendName(std::string(2000, 'n'));
    waitForExposure();
    const int before = titleOf(section(0))->text().size();
    debugOutput.getWindow()->resize(900, 300);
    QCoreApplication::processEvents();
    EXPECT_GT(titleOf(section(0))->text().size(), before);
    debugOutput.getWindow()->resize(300, 300);
    QCoreApplication::processEvents();
    EXPECT_LT(titleOf(section(0))->text().size(), before);
    EXPECT_EQ(debugOutput.getWindow()->size(), QSize(300, 300));
}

TEST_F(DebugWindowTest, ShowsAShortNameAsItIs)
{
    sendName("a <b>name</b> & more");
    waitForExposure();
    EXPECT_EQ(titleOf(section(0))->text(), "a <b>name</b> & more");
    QTextDocument toolTip;
    toolTip.setHtml(titleOf(section(0))->toolTip());
    EXPECT_EQ(toolTip.toPlainText(), "a <b>name</b> & more\nBlankDisplayer");
    click(section(0), "close");
    const auto* const button = debugOutput.getWindow()->findChild<QToolButton*>("closedSections");
    EXPECT_EQ(button->menu()->actions()[0]->text(), "a <b>name</b> && more") << "where & alone would mark a key";
}

TEST_F(DebugWindowTest, WritesControlCharactersOfANameOut)
{
    const std::string name("line\n\x1B[31mred\0", 14);
    sendName(name);
    waitForExposure();
    EXPECT_EQ(section(0)->getName(), name);
    EXPECT_EQ(titleOf(section(0))->text(), "line\\x0a\\x1b[31mred\\x00");
    EXPECT_THAT(titleOf(section(0))->toolTip().toStdString(), HasSubstr("line\\x0a\\x1b[31mred\\x00\n"));
    click(section(0), "close");
    const auto* const button = debugOutput.getWindow()->findChild<QToolButton*>("closedSections");
    EXPECT_EQ(button->menu()->actions()[0]->text(), "line\\x0a\\x1b[31mred\\x00");
}

TEST_F(DebugWindowTest, ShowsTheBeginningOfAHugeName)
{
    sendName(std::string(15000000, 'n'));
    waitForExposure();
    EXPECT_TRUE(titleOf(section(0))->text().endsWith(QChar(0x2026)));
    EXPECT_LT(titleOf(section(0))->toolTip().size(), 5000);
    EXPECT_FALSE(section(0)->getPicture().isNull());
}

TEST_F(DebugWindowTest, DoesNotKeepTheApplicationRunning)
{
    send("name", "text");
    QWidget applicationWindow;
    applicationWindow.show();
    QTimer::singleShot(0, &applicationWindow, &QWidget::close);
    QTimer::singleShot(5000, qApp, [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QCoreApplication::exec(), 0);
}

TEST_F(DebugWindowTest, EndsTheApplicationWhenItIsClosedAsTheLastWindow)
{
    send("name", "text");
    QTimer::singleShot(0, debugOutput.getWindow(), &QWidget::close);
    QTimer::singleShot(5000, qApp, [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QCoreApplication::exec(), 0);
}

TEST_F(DebugWindowTest, LeavesAnApplicationWithOtherWindowsRunning)
{
    send("name", "text");
    QWidget applicationWindow;
    applicationWindow.show();
    QTimer::singleShot(0, debugOutput.getWindow(), &QWidget::close);
    QTimer::singleShot(200, qApp, [] { QCoreApplication::exit(2); });
    EXPECT_EQ(QCoreApplication::exec(), 2);
}

} // namespace
} // namespace tavo
