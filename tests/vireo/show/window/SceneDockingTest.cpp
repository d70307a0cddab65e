#include <DockAreaWidget.h>
#include <functional>

#include "tests/vireo/show/window/ShowWindowTest.h"

namespace tavo {
namespace {

// A scene that is moved about many times shows the same picture each time, turned as the user has turned it.
class SceneDockingTest : public ShowWindowTest
{
protected:
    SceneDockingTest()
    {
        const double points[] = {-1, -1, -1, 1, 1, 1, 0, 1, 0};
        scene("s").cloud("points", points, 3).colour({255, 0, 0, 255}).size(9);
        scene("s").mesh("mesh", points, {0, 1, 2}).colour({0, 0, 255, 255});
        show({"b"});
        EXPECT_TRUE(QTest::qWaitFor([] { return dock("s") != nullptr; }));
        m_View = viewIn("s");
        m_View->setFixedSize(300, 200);
        settle();
        dragMouse(m_View, Qt::LeftButton, {100, 100}, {150, 90});
        QEvent leave(QEvent::Leave); // so that nothing is said of what the pointer is on
        QApplication::sendEvent(m_View, &leave);
        m_Picture = m_View->grab().toImage();
        EXPECT_GT(numRed(), 100);
    }

    int numRed() const
    {
        int number = 0;
        for (int y = 0; y < m_Picture.height(); ++y)
            for (int x = 0; x < m_Picture.width(); ++x)
                number += m_Picture.pixelColor(x, y) == QColor(255, 0, 0);
        return number;
    }

    void repeat(const std::function<void()>& there, const std::function<void()>& back)
    {
        for (int i = 0; i < 20; ++i) {
            for (const auto& move : {there, back}) {
                move();
                settle();
                ASSERT_FALSE(m_View.isNull()) << i;
                ASSERT_EQ(m_View->grab().toImage(), m_Picture) << i;
            }
        }
    }

    QPointer<QWidget> m_View;
    QImage m_Picture;
};

TEST_F(SceneDockingTest, DetachingLosesNothing)
{
    repeat([] { dock("s")->setFloating(); }, [] { manager()->addDockWidget(ads::RightDockWidgetArea, dock("s")); });
}

TEST_F(SceneDockingTest, DockingLosesNothing)
{
    repeat([] { manager()->addDockWidget(ads::LeftDockWidgetArea, dock("s")); },
        [] { manager()->addDockWidget(ads::BottomDockWidgetArea, dock("s"), dock("b")->dockAreaWidget()); });
}

TEST_F(SceneDockingTest, TabsLoseNothing)
{
    repeat(
        [] {
            manager()->addDockWidgetTabToArea(dock("s"), dock("b")->dockAreaWidget());
            dock("b")->setAsCurrentTab();
            settle();
            dock("s")->setAsCurrentTab();
        },
        [] { manager()->addDockWidget(ads::RightDockWidgetArea, dock("s")); });
}

TEST_F(SceneDockingTest, FullScreenLosesNothing)
{
    const auto toggle = [this] {
        action("s", "fullScreen")->trigger();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(m_View->window()));
    };
    repeat(toggle, toggle);
}

TEST_F(SceneDockingTest, ClosingLosesNothing)
{
    repeat(
        [] {
            dock("s")->closeDockWidget();
            settle();
            dock("s")->toggleView(true);
        },
        [] {
            window()->close();
            window()->show();
        });
}

TEST_F(SceneDockingTest, ThePanelGoesWithIt)
{
    m_View->setFixedSize(600, 400);
    clickKey(m_View, Qt::Key_P);
    auto* const panel = m_View->findChild<QWidget*>("scenePanel");
    const auto scenePart = [this, panel] { return m_View->grab({0, 0, 600 - panel->width(), 400}).toImage(); };
    settle();
    const QImage before = scenePart();
    const QRect place = panel->geometry();
    const auto expectAsBefore = [&] {
        settle();
        EXPECT_TRUE(panel->isVisible());
        EXPECT_EQ(panel->geometry(), place);
        EXPECT_EQ(scenePart(), before);
    };
    for (int i = 0; i < 20; ++i) {
        dock("s")->setFloating();
        expectAsBefore();
        manager()->addDockWidget(ads::RightDockWidgetArea, dock("s"));
        expectAsBefore();
    }
}

} // namespace
} // namespace tavo
