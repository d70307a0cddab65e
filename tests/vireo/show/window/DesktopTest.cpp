#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <functional>

#include "tests/vireo/show/window/ShowWindowTest.h"
#include "tests/vireo/show/window/forgetWindowManager.h"

namespace tavo {
namespace {

// The window on a desktop: under a window manager, and a person whose pointer and keys come from the X server.
class DesktopTest : public ShowWindowTest
{
protected:
    void SetUp() override
    {
        for (const char* program : {"openbox", "xdotool"})
            if (QStandardPaths::findExecutable(program).isEmpty())
                GTEST_SKIP() << "there is no " << program;
        const QString started = m_Folder.filePath("started");
        m_Manager.start("openbox", {"--sm-disable", "--startup", "touch " + started});
        ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(started); }));
    }

    void TearDown() override
    {
        m_Manager.terminate();
        m_Manager.waitForFinished();
        forgetWindowManager();
    }

    // Has xdotool do something, and waits until what shall come of it has come.
    static void use(const QString& arguments, const std::function<bool()>& hasCome)
    {
        QProcess xdotool;
        xdotool.start("xdotool", arguments.split(' '));
        EXPECT_TRUE(QTest::qWaitFor([&xdotool] { return xdotool.state() == QProcess::NotRunning; }));
        EXPECT_EQ(xdotool.exitCode(), 0) << arguments.toStdString();
        EXPECT_TRUE(QTest::qWaitFor(hasCome)) << arguments.toStdString();
    }

    static void click(const QWidget* widget, const QPoint& place, const std::function<bool()>& hasCome)
    {
        const QPoint onScreen = widget->mapToGlobal(place);
        use(QString("mousemove %1 %2 click 1").arg(onScreen.x()).arg(onScreen.y()), hasCome);
    }

    // Opens the menus on the way, from the menu bar on, and clicks the last entry.
    static void choose(const QList<QAction*>& way)
    {
        const auto* const bar = window()->findChild<QMenuBar*>();
        QRect place = bar->actionGeometry(way.front());
        const QWidget* menu = bar;
        for (const QAction* action : way) {
            if (action != way.front())
                place = qobject_cast<const QMenu*>(menu)->actionGeometry(const_cast<QAction*>(action));
            const auto isOpen = [action] { return action->menu()->isVisible(); };
            const auto areAllClosed = [] { return !QApplication::activePopupWidget(); };
            click(menu, place.center(), action->menu() ? std::function<bool()>(isOpen) : areAllClosed);
            menu = action->menu();
        }
    }

    static QAction* menuOf(const char* name) { return window()->findChild<QMenu*>(name)->menuAction(); }
    static QAction* windowMenu() { return window()->findChild<QMenuBar*>()->actions().at(1); }

    QTemporaryDir m_Folder;
    QProcess m_Manager;
};

TEST_F(DesktopTest, F11FillsTheScreenAndLeavesIt)
{
    show({"a", "b"});
    QWidget* const view = viewIn("a");
    const QSize before = view->size();
    click(view, view->rect().center(), [view] { return view->isActiveWindow() && view->hasFocus(); });
    for (const char* leave : {"key F11", "key Escape"}) {
        use("key F11", [view] {
            return view->window() != window() && view->isActiveWindow() && onScreen(view) == view->screen()->geometry();
        });
        EXPECT_TRUE(view->window()->isFullScreen());
        use(leave, [view] { return view->window() == window() && view->isActiveWindow(); });
        EXPECT_TRUE(QTest::qWaitFor([&] { return view->size() == before; })) << leave;
    }
}

TEST_F(DesktopTest, TheMenuClosesAndOpensViews)
{
    show({"a", "b"});
    for (const bool isClosed : {true, false}) {
        choose({menuOf("views"), dock("b")->toggleViewAction()});
        EXPECT_TRUE(QTest::qWaitFor([=] { return dock("b")->isClosed() == isClosed; }));
        settle();
    }
}

TEST_F(DesktopTest, TheMenuSavesAllPicturesAndClears)
{
    show({"a", "b"});
    ASSERT_TRUE(QDir(m_Folder.path()).mkpath("all"));
    choose({windowMenu(), menuAction("savePictures")});
    ASSERT_TRUE(QTest::qWaitFor([] { return qobject_cast<QFileDialog*>(QApplication::activeModalWidget()); }));
    auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    emit dialog->fileSelected(m_Folder.filePath("all"));
    dialog->close();
    EXPECT_THAT(QDir(m_Folder.filePath("all")).entryList(QDir::Files), testing::ElementsAre("a.png", "b.png"));

    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
    choose({windowMenu(), menuAction("clear")});
    EXPECT_TRUE(QTest::qWaitFor([] { return !dock("a") && !dock("b"); }));
}

TEST_F(DesktopTest, TheMenuChangesTheTheme)
{
    show({"a"});
    const auto isDark = [] { return viewIn("a")->palette().color(QPalette::Base).lightness() < 100; };
    QAction* const themes = menuOf("themes");
    choose({windowMenu(), themes, themes->menu()->actions().at(2)});
    EXPECT_TRUE(QTest::qWaitFor(isDark));
    choose({windowMenu(), themes, themes->menu()->actions().at(1)});
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isDark(); }));
}

} // namespace
} // namespace tavo
