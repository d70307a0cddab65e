#include "tests/vireo/show/window/ShowWindowTest.h"

#include <QScrollArea>
#include <QScrollBar>

namespace tavo {
namespace {

TEST_F(ShowWindowTest, IsFilledByItsFirstView)
{
    show({"first"});
    EXPECT_GT(viewIn("first")->height(), window()->height() - 80);
    EXPECT_GT(viewIn("first")->width(), window()->width() - 10);
    EXPECT_TRUE(dock("Log")->isClosed());
}

TEST_F(ShowWindowTest, TilesItsViewsInGoodShapes)
{
    std::vector<std::string> names;
    for (const char c : std::string("abcdefg")) {
        names.emplace_back(1, c);
        show(names);
        int smallest = INT_MAX;
        int largest = 0;
        for (const std::string& name : names) {
            const QSize size = dock(QString::fromStdString(name))->dockAreaWidget()->size();
            EXPECT_GT(size.width(), 0.6 * size.height()) << name << " of " << names.size();
            EXPECT_LT(size.width(), 3.2 * size.height()) << name << " of " << names.size();
            smallest = std::min(smallest, size.width() * size.height());
            largest = std::max(largest, size.width() * size.height());
        }
        EXPECT_LT(largest, 2.2 * smallest) << "of " << names.size();
    }
}

TEST_F(ShowWindowTest, StacksViewsThatWouldGetTooSmall)
{
    std::vector<std::string> names;
    for (int i = 0; i < 40; ++i)
        names.push_back("view " + std::to_string(i));
    show(names);
    for (const ads::CDockAreaWidget* area : manager()->openedDockAreas()) {
        EXPECT_GE(area->width(), 150);
        EXPECT_GE(area->height(), 120);
    }
    EXPECT_LE(window()->height(), 720);
}

TEST_F(ShowWindowTest, TheKeyboardStaysWithItsViewWhileOthersCome)
{
    show({"first"});
    const QWidget* const focused = viewIn("first")->focusProxy();
    viewIn("first")->setFocus();
    ASSERT_EQ(window()->focusWidget(), focused);
    show({"second"});
    EXPECT_EQ(window()->focusWidget(), focused);
    show({"third", "fourth"});
    EXPECT_EQ(window()->focusWidget(), focused);
}

TEST_F(ShowWindowTest, TilesAnewWhenAViewGoes)
{
    show({"a", "b"});
    remove("a");
    EXPECT_TRUE(QTest::qWaitFor([] { return !dock("a"); }));
    settle();
    EXPECT_GT(viewIn("b")->width(), window()->width() - 10);
    dock("b")->closeDockWidget();
    show({"b", "c"});
    EXPECT_TRUE(dock("b")->isClosed()) << "until a person opens it";
    EXPECT_GT(viewIn("c")->width(), window()->width() - 10);
    dock("b")->toggleViewAction()->trigger();
    settle();
    EXPECT_FALSE(dock("b")->isClosed());
    EXPECT_LT(viewIn("c")->width(), window()->width());
}

TEST_F(ShowWindowTest, LeavesThingsWhereAPersonHasPutThem)
{
    show({"a", "b", "c"});
    manager()->addDockWidgetTabToArea(dock("a"), dock("b")->dockAreaWidget());
    dock("c")->setFloating();
    settle();
    show({"a", "b", "c", "d"});
    EXPECT_EQ(dock("a")->dockAreaWidget(), dock("b")->dockAreaWidget());
    EXPECT_TRUE(dock("c")->isFloating());
    EXPECT_FALSE(dock("d")->isFloating());
    EXPECT_NE(dock("d")->dockAreaWidget(), dock("b")->dockAreaWidget());

    menuAction("resetLayout")->trigger();
    settle();
    EXPECT_NE(dock("a")->dockAreaWidget(), dock("b")->dockAreaWidget());
    EXPECT_FALSE(dock("c")->isFloating());
}

TEST_F(ShowWindowTest, HasTheLogInADockThatOpensWithItsFirstText)
{
    show({"a"});
    debugOutput << "something has happened\n";
    ASSERT_TRUE(QTest::qWaitFor([] { return !dock("Log")->isClosed(); }));
    settle();
    const auto* const log = window()->findChild<QPlainTextEdit*>("log");
    EXPECT_TRUE(log->isVisible());
    EXPECT_TRUE(log->toPlainText().endsWith("something has happened\n"));
    EXPECT_GT(onScreen(log).top(), onScreen(viewIn("a")).bottom());
    EXPECT_GT(viewIn("a")->height(), 3 * log->height());

    dock("Log")->closeDockWidget();
    debugOutput << "more\n";
    settle();
    EXPECT_TRUE(dock("Log")->isClosed()) << "as a person wants it";
}

TEST_F(ShowWindowTest, GivesTheLogItsPlaceBelowAllViews)
{
    debugOutput << "something has happened\n";
    show({"a", "b"});
    const auto* const log = window()->findChild<QPlainTextEdit*>("log");
    EXPECT_TRUE(log->isVisible());
    EXPECT_TRUE(viewIn("a")->isVisible());
    EXPECT_GT(onScreen(log).top(), onScreen(viewIn("a")).bottom());
    EXPECT_GT(onScreen(log).top(), onScreen(viewIn("b")).bottom());
    EXPECT_GT(viewIn("a")->height(), 3 * log->height());
    EXPECT_NEAR(viewIn("a")->width(), viewIn("b")->width(), 10);
}

TEST_F(ShowWindowTest, HasTheSectionsOfTheDebugOutput)
{
    show({"a plot"});
    DebugWindow* const before = window();
    EXPECT_TRUE(send("an event", "hello"));
    EXPECT_EQ(window(), before);
    settle();
    ASSERT_EQ(window()->getSections().size(), 1u);
    DebugSection* const section = window()->getSections()[0];
    EXPECT_TRUE(section->isVisible());
    EXPECT_TRUE(dock("an event")->isAncestorOf(section));
    EXPECT_FALSE(section->findChild<QLabel*>("title")->isVisible()) << "the dock has one";

    dock("an event")->closeDockWidget();
    EXPECT_TRUE(section->isClosed());
    section->setClosed(false);
    EXPECT_FALSE(dock("an event")->isClosed());
    section->setClosed(true);
    EXPECT_TRUE(dock("an event")->isClosed());
    dock("an event")->toggleViewAction()->trigger();
    EXPECT_FALSE(section->isClosed());
    settle();
    EXPECT_TRUE(section->isVisible());
}

TEST_F(ShowWindowTest, OpensWithTheFirstEvent)
{
    EXPECT_EQ(window(), nullptr);
    EXPECT_TRUE(send("an event", "hello"));
    ASSERT_NE(manager(), nullptr);
    EXPECT_TRUE(window()->isVisible());
    EXPECT_EQ(window()->getSections().size(), 1u);
}

TEST_F(ShowWindowTest, ScrollsWhatIsHigherThanItsDock)
{
    send("tall", "text");
    DebugSection* const section = window()->getSections()[0];
    section->getDisplayerWidget()->setFixedHeight(90);
    settle();
    EXPECT_EQ(section->getDisplayerWidget()->height(), 90);
    EXPECT_LT(section->height(), 100) << "no higher than it says";
    auto* const area = qobject_cast<QScrollArea*>(viewIn("tall"));
    ASSERT_NE(area, nullptr);
    EXPECT_EQ(section->width(), area->viewport()->width());
    EXPECT_FALSE(area->verticalScrollBar()->isVisible());

    section->getDisplayerWidget()->setFixedHeight(1024);
    settle();
    EXPECT_EQ(section->getDisplayerWidget()->height(), 1024);
    EXPECT_TRUE(area->verticalScrollBar()->isVisible());
    EXPECT_LE(window()->height(), 720);
}

} // namespace
} // namespace tavo
