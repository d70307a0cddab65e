#include <QApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QToolButton>
#include <functional>
#include <gtest/gtest.h>
#include <qwt_legend_label.h>
#include <qwt_plot.h>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugWindow.h"
#include "tests/support/userEvents.h"
#include "vireo/show/plots/PlotCurve.h"
#include "vireo/show/plots/PlotView.h"
#include "vireo/show/show.h"

namespace tavo {

namespace {

// A plot in the window of the front door, and a person whose pointer and keys come from the X server.
class PlotPointerTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (QStandardPaths::findExecutable("xdotool").isEmpty())
            GTEST_SKIP() << "there is no xdotool";
        plot("p").curve("a", {0, 10}, {0, 100}).curve("b", {0, 10}, {100, 0});
        EXPECT_TRUE(QTest::qWaitFor([this] { return (m_View = findView()) && m_View->isVisible(); }));
        ASSERT_TRUE(m_View && QTest::qWaitForWindowExposed(m_View->window()));
        m_View->window()->activateWindow(); // there may be no window manager, whose work that is
        ASSERT_TRUE(QTest::qWaitForWindowActive(m_View->window()));
        m_Canvas = m_View->getPlot().canvas();
    }

    void TearDown() override
    {
        clear();
        delete debugOutput.getWindow();
    }

    // Has xdotool do something, and waits until what shall come of it has come.
    static void use(const QString& arguments, const std::function<bool()>& hasCome)
    {
        QProcess xdotool;
        xdotool.start("xdotool", arguments.split(' ', Qt::SkipEmptyParts));
        EXPECT_TRUE(QTest::qWaitFor([&xdotool] { return xdotool.state() == QProcess::NotRunning; }));
        EXPECT_EQ(xdotool.exitCode(), 0) << arguments.toStdString();
        EXPECT_TRUE(QTest::qWaitFor(hasCome)) << arguments.toStdString();
    }

    static QString moveTo(const QWidget* widget, const QPoint& place)
    {
        const QPoint onScreen = widget->mapToGlobal(place);
        return QString("mousemove %1 %2 ").arg(onScreen.x()).arg(onScreen.y());
    }

    // Over the canvas, by so many pixels.
    QString drag(int button, const QPoint& from, const QPoint& to) const
    {
        return moveTo(m_Canvas, from) + QString("mousedown %1 ").arg(button) + moveTo(m_Canvas, (from + to) / 2) +
               moveTo(m_Canvas, to) + QString("mouseup %1").arg(button);
    }

    QwtLegendLabel* legendOf(const QString& curve) const
    {
        for (auto* label : m_View->findChildren<QwtLegendLabel*>())
            if (label->text().text() == curve)
                return label;
        return nullptr;
    }

    // The names of the curves that are drawn.
    QString shownCurves() const
    {
        QStringList names;
        for (QwtPlotItem* item : m_View->getPlot().itemList())
            if (const auto* curve = dynamic_cast<PlotCurve*>(item); curve && curve->isVisible())
                names += QString::fromStdString(curve->getName());
        return names.join(' ');
    }

    PlotSight::Range x() const { return m_View->getSight().range(PlotSight::X); }
    PlotSight::Range y() const { return m_View->getSight().range(PlotSight::Y); }
    bool isAllSeen() const { return x().from == 0 && x().to == 10; }

    PlotView* m_View = nullptr;
    QWidget* m_Canvas = nullptr;

private:
    static PlotView* findView()
    {
        for (QWidget* widget : QApplication::allWidgets())
            if (auto* view = dynamic_cast<PlotView*>(widget))
                return view;
        return nullptr;
    }
};

TEST_F(PlotPointerTest, TheWheelZoomsThePlotAndOverAnAxisThatAlone)
{
    const double yLength = y().to - y().from;
    const QWidget* axis = m_View->axisWidget(PlotSight::X);
    use(moveTo(axis, {axis->width() / 2, 5}) + "click 4", [this] { return x().to - x().from < 9; });
    EXPECT_NEAR(x().to - x().from, 10 * 0.87, 1e-9);
    EXPECT_FALSE(m_View->getSight().isChosen(PlotSight::Y));
    use(moveTo(m_Canvas, m_Canvas->rect().center()) + "click 4", [this] { return x().to - x().from < 8; });
    EXPECT_LT(y().to - y().from, 0.9 * yLength);
    use("click 5 click 5", [this] { return x().to - x().from > 9; });
}

TEST_F(PlotPointerTest, DraggingMovesAndTheButtonsAtTheSideGoBackAndForward)
{
    const double perPixel = 10.0 / m_Canvas->width();
    use(drag(1, {200, 100}, {100, 100}), [&] { return x().from > 80 * perPixel; });
    EXPECT_NEAR(x().from, 100 * perPixel, 2 * perPixel);
    const double moved = x().from;
    use("click 8", [this] { return isAllSeen(); });
    use("click 9", [&] { return x().from == moved; });
}

TEST_F(PlotPointerTest, RightDraggingZoomsIntoABoxAndADoubleClickShowsAllAgain)
{
    const PixelMap before = m_View->pixelMap(PlotSight::X);
    use(drag(3, {100, 50}, {300, 200}), [this] { return m_View->getSight().isChosen(PlotSight::X); });
    EXPECT_NEAR(x().from, before.toValue(100), 0.05);
    EXPECT_NEAR(x().to, before.toValue(300), 0.05);
    EXPECT_TRUE(m_View->getSight().isChosen(PlotSight::Y));
    use("click --repeat 2 --delay 20 1", [this] { return isAllSeen(); });
    EXPECT_FALSE(m_View->getSight().isChosen(PlotSight::Y));
}

TEST_F(PlotPointerTest, SpaceStopsFollowingAndTheButtonLeadsBack)
{
    plot("p").append("a", 20, 1);
    EXPECT_TRUE(QTest::qWaitFor([this] { return x().to == 20; }));
    const auto* const button = m_View->findChild<QToolButton*>("follow");
    use(moveTo(m_Canvas, {100, 100}) + "click 1 key space", [&] { return button->isVisible(); });
    plot("p").append("a", 30, 1).append("b", 30, 2);
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_View->getSight().fitted(PlotSight::X).to == 30; }));
    EXPECT_EQ(x().to, 20);
    use(moveTo(button, button->rect().center()) + "click 1", [this] { return x().to == 30; });
    EXPECT_FALSE(button->isVisible());
}

TEST_F(PlotPointerTest, ClicksInTheLegendHideACurveOrShowItAlone)
{
    ASSERT_TRUE(legendOf("a") && legendOf("b"));
    const auto clickOn = [this](const QString& curve, const QString& click, const QString& shown) {
        const QwtLegendLabel* const label = legendOf(curve);
        use(moveTo(label, label->rect().center()) + click, [&] { return shownCurves() == shown; });
    };
    clickOn("a", "click 1", "b");
    QTest::qWait(QApplication::doubleClickInterval() + 100); // or it were a double click
    clickOn("a", "click 1", "a b");
    QTest::qWait(QApplication::doubleClickInterval() + 100);
    clickOn("b", "click --repeat 2 --delay 20 1", "b");
    QTest::qWait(QApplication::doubleClickInterval() + 100);
    clickOn("b", "click --repeat 2 --delay 20 1", "a b");
}

} // namespace

} // namespace tavo
