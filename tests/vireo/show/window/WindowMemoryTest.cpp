#include <FloatingDockContainer.h>
#include <QDir>
#include <QMenu>
#include <QScreen>
#include <QSettings>
#include <QTemporaryDir>

#include "tests/vireo/show/window/ShowWindowTest.h"

namespace tavo {
namespace {

// With what the window remembers, in a folder of its own.
[[maybe_unused]] const bool isRemembering = qunsetenv("VIREO_SHOW") && qputenv("VIREO_TEST_REMEMBERS", "yes");

class WindowMemoryTest : public ShowWindowTest
{
protected:
    WindowMemoryTest()
    {
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_Folder.path());
        QCoreApplication::setApplicationName("a/program");
    }

    // The window of the program's next run.
    void startAnew(const std::vector<std::string>& views)
    {
        window()->close();
        delete window();
        show(views);
    }

    const QTemporaryDir m_Folder{QDir::temp().filePath("window-memory")}; // the program's name is no file's
    QWidget m_Other;                                                      // the program's own window
};

TEST_F(WindowMemoryTest, BringsTheLayoutBack)
{
    m_Other.show();
    show({"a", "b", "c", "d"});
    manager()->addDockWidgetTabToArea(dock("a"), dock("b")->dockAreaWidget());
    dock("c")->setFloating();
    dock("c")->floatingDockContainer()->setGeometry(50, 60, 333, 222);
    window()->resize(800, 555);
    settle();
    startAnew({"d", "c", "b", "a"});
    EXPECT_EQ(window()->size(), QSize(800, 555));
    EXPECT_EQ(dock("a")->dockAreaWidget(), dock("b")->dockAreaWidget());
    ASSERT_TRUE(dock("c")->isFloating());
    EXPECT_TRUE(viewIn("c")->isVisible());
    EXPECT_EQ(dock("c")->floatingDockContainer()->size(), QSize(333, 222));
    EXPECT_NE(dock("d")->dockAreaWidget(), dock("b")->dockAreaWidget());
}

TEST_F(WindowMemoryTest, OpensWhatWasClosedAndFindsAPlaceForWhatIsNew)
{
    m_Other.show();
    show({"a", "b", "c"});
    manager()->addDockWidgetTabToArea(dock("a"), dock("b")->dockAreaWidget());
    dock("c")->closeDockWidget();
    show({"a", "b", "c"});
    EXPECT_TRUE(dock("c")->isClosed()) << "for this run";
    startAnew({"a", "b", "c", "new"});
    EXPECT_EQ(dock("a")->dockAreaWidget(), dock("b")->dockAreaWidget());
    EXPECT_TRUE(viewIn("c")->isVisible());
    EXPECT_TRUE(viewIn("new")->isVisible());
    EXPECT_GT(viewIn("c")->height(), 80);
}

TEST_F(WindowMemoryTest, PassesOverViewsThatAreNoMore)
{
    m_Other.show();
    show({"a", "b", "c"});
    manager()->addDockWidgetTabToArea(dock("a"), dock("b")->dockAreaWidget());
    settle();
    startAnew({"a", "x"});
    EXPECT_TRUE(viewIn("a")->isVisible());
    EXPECT_TRUE(viewIn("x")->isVisible());
    EXPECT_EQ(dock("b"), nullptr);
}

TEST_F(WindowMemoryTest, BringsBackWhatIsOffEveryScreen)
{
    m_Other.show();
    show({"a", "b"});
    dock("b")->setFloating();
    dock("b")->floatingDockContainer()->setGeometry(9000, 9000, 300, 200);
    window()->move(-9000, -9000);
    QTest::qWait(50);
    startAnew({"a", "b"});
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    EXPECT_TRUE(screen.intersects(onScreen(window())));
    ASSERT_TRUE(dock("b")->isFloating());
    EXPECT_TRUE(screen.intersects(onScreen(viewIn("b"))));
}

TEST_F(WindowMemoryTest, IsResetByTheMenu)
{
    m_Other.show();
    show({"a", "b"});
    dock("b")->setFloating();
    settle();
    menuAction("resetLayout")->trigger();
    EXPECT_FALSE(dock("b")->isFloating());
    startAnew({"a", "b"});
    EXPECT_FALSE(dock("b")->isFloating());
}

TEST_F(WindowMemoryTest, IsInSettingsOfItsOwnByProgram)
{
    m_Other.show();
    show({"a", "b"});
    dock("b")->setFloating();
    window()->close();
    EXPECT_THAT(
        QDir(m_Folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), testing::ElementsAre("vireo"));
    const QSettings settings(m_Folder.filePath("vireo/vireo-show.ini"), QSettings::IniFormat);
    EXPECT_THAT(settings.childGroups(), testing::ElementsAre("a%2Fprogram"));

    QCoreApplication::setApplicationName("another program");
    startAnew({"a", "b"});
    EXPECT_FALSE(dock("b")->isFloating());
}

TEST_F(WindowMemoryTest, IsOfTheExecutableWhereTheApplicationHasNoName)
{
    QCoreApplication::setApplicationName({});
    m_Other.show();
    show({"a", "b", "c"});
    manager()->addDockWidgetTabToArea(dock("a"), dock("b")->dockAreaWidget());
    settle();
    startAnew({"c", "b", "a"});
    EXPECT_EQ(dock("a")->dockAreaWidget(), dock("b")->dockAreaWidget());
    const QSettings settings(m_Folder.filePath("vireo/vireo-show.ini"), QSettings::IniFormat);
    const QString executable = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
    EXPECT_THAT(settings.childGroups(), testing::ElementsAre(executable));
}

TEST_F(WindowMemoryTest, KeepsTheTheme)
{
    m_Other.show();
    show({"a"});
    window()->findChild<QMenu*>("themes")->actions()[2]->trigger();
    startAnew({"a"});
    EXPECT_LT(window()->palette().color(QPalette::Base).lightness(), 100);
}

TEST_F(WindowMemoryTest, SurvivesABrokenFile)
{
    m_Other.show();
    QDir(m_Folder.path()).mkdir("vireo");
    QSettings settings(m_Folder.filePath("vireo/vireo-show.ini"), QSettings::IniFormat);
    settings.setValue("a%2Fprogram/layout", "no layout");
    settings.setValue("a%2Fprogram/geometry", "no geometry");
    settings.setValue("a%2Fprogram/theme", "77");
    settings.sync();
    show({"a", "b"});
    EXPECT_TRUE(viewIn("a")->isVisible());
    EXPECT_TRUE(viewIn("b")->isVisible());
}

TEST_F(WindowMemoryTest, ThePanelOfScenesIsAsItWasLeft)
{
    const auto showScene = [] {
        scene("scene").cloud("points", {0, 0, 0});
        EXPECT_TRUE(QTest::qWaitFor([] { return window() && dock("scene"); }));
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window()));
        settle();
        return viewIn("scene")->findChild<QWidget*>("scenePanel");
    };
    m_Other.show();
    const bool wasShown = showScene()->isVisible();
    clickKey(viewIn("scene"), Qt::Key_P);
    startAnew({"a"});
    EXPECT_EQ(showScene()->isVisible(), !wasShown);
    clickKey(viewIn("scene"), Qt::Key_P);
    startAnew({"a"});
    EXPECT_EQ(showScene()->isVisible(), wasShown);
}

} // namespace
} // namespace tavo
