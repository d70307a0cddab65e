#include <QApplication>
#include <QGesture>
#include <QGestureEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QToolButton>
#include <QTouchDevice>
#include <QWheelEvent>
#include <cmath>
#include <functional>
#include <gmock/gmock.h>
#include <utility>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/plots/curves.h"
#include "vireo/show/plots/PlotMeasure.h"
#include "vireo/show/plots/PlotReadout.h"
#include "vireo/show/plots/PlotView.h"

namespace tavo {

namespace {

QWidget* canvasOf(PlotView& view)
{
    for (QWidget* widget : view.findChildren<QWidget*>())
        if (widget->inherits("QwtPlotCanvas"))
            return widget;
    return nullptr;
}

QToolButton* followButtonOf(PlotView& view)
{
    return view.findChild<QToolButton*>("follow");
}

void turnWheel(QWidget* widget, const QPoint& place, int steps, Qt::KeyboardModifiers modifiers = {})
{
    QWheelEvent event(place, widget->mapToGlobal(place), QPoint(), QPoint(0, 120 * steps), Qt::NoButton, modifiers,
        Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

// With a key held from the press to the release.
void dragHolding(
    Qt::KeyboardModifier key, QWidget* widget, Qt::MouseButton button, const QPoint& from, const QPoint& to)
{
    const std::pair<QEvent::Type, QPoint> events[] = {
        {QEvent::MouseButtonPress, from}, {QEvent::MouseMove, to}, {QEvent::MouseButtonRelease, to}};
    for (const auto& [type, place] : events) {
        const bool isMove = type == QEvent::MouseMove;
        const bool isRelease = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type, place, widget->mapToGlobal(place), isMove ? Qt::NoButton : button,
            isRelease ? Qt::NoButton : button, key);
        QApplication::sendEvent(widget, &event);
    }
}

void doubleClick(QWidget* widget)
{
    QMouseEvent event(QEvent::MouseButtonDblClick, widget->rect().center(), Qt::LeftButton, Qt::LeftButton, {});
    QApplication::sendEvent(widget, &event);
}

class PlotGesturesTest : public testing::Test
{
protected:
    PlotGesturesTest()
    {
        m_View.resize(600, 400);
        m_View.show();
        send({0, 10}, {0, 100});
        QApplication::processEvents();
    }

    void send(std::vector<double> x, std::vector<double> y)
    {
        PlotUpdate update;
        update.curve("a") = samples(std::move(x), std::move(y));
        update.curves.front().name = "a";
        m_View.apply(update);
    }

    void append(double x, double y)
    {
        PlotUpdate update;
        update.curve("a").append({x, y});
        m_View.apply(update);
    }

    PlotSight::Range x() { return m_View.getSight().range(PlotSight::X); }
    PlotSight::Range y() { return m_View.getSight().range(PlotSight::Y); }
    double xAt(const QPoint& place) { return m_View.pixelMap(PlotSight::X).toValue(place.x()); }
    double yAt(const QPoint& place) { return m_View.pixelMap(PlotSight::Y).toValue(place.y()); }
    bool isFollowOffered() { return followButtonOf(m_View)->isVisibleTo(m_View.parentWidget()); }
    QString readout() { return static_cast<PlotReadout*>(m_View.findChild<QWidget*>("readout"))->text(); }

    QMenu* menu() { return m_View.findChild<QMenu*>("plotMenu"); }

    void choose(const char* entry)
    {
        dragMouse(m_Canvas, Qt::RightButton, {100, 50}, {100, 50});
        auto* const action = menu()->findChild<QAction*>(entry);
        ASSERT_NE(action, nullptr) << entry;
        EXPECT_TRUE(action->isEnabled()) << entry;
        action->trigger();
        delete menu();
    }

    PlotView m_View{"test"};
    QWidget* m_Canvas = canvasOf(m_View);
};

TEST_F(PlotGesturesTest, TheWheelZoomsAtThePointer)
{
    const QPoint place(150, 120);
    turnWheel(m_Canvas, place, 2); // after which the numbers take the room that they keep
    const double xBefore = xAt(place);
    const double yBefore = yAt(place);
    const double length = x().to - x().from;
    turnWheel(m_Canvas, place, 3);
    EXPECT_NEAR(xAt(place), xBefore, 0.05);
    EXPECT_NEAR(yAt(place), yBefore, 0.5);
    EXPECT_NEAR((x().to - x().from) / length, 0.87 * 0.87 * 0.87, 1e-6);
    turnWheel(m_Canvas, place, -3);
    EXPECT_NEAR(x().to - x().from, length, 1e-6);
}

TEST_F(PlotGesturesTest, APinchZoomsAtThePointer)
{
    const QPoint place(150, 120);
    const auto pinchPad = [&](double value) {
        QNativeGestureEvent event(Qt::ZoomNativeGesture, QTouchDevice::devices().value(0), place, place,
            m_Canvas->mapToGlobal(place), value, 0, 0);
        QApplication::sendEvent(m_Canvas, &event);
    };
    const auto pinchScreen = [&](double factor) {
        QPinchGesture gesture;
        gesture.setScaleFactor(factor);
        gesture.setCenterPoint(m_Canvas->mapToGlobal(place));
        QGestureEvent event({&gesture});
        QApplication::sendEvent(m_Canvas, &event);
    };
    pinchPad(0.1); // after which the numbers take the room that they keep
    const double xBefore = xAt(place);
    const double yBefore = yAt(place);
    const double length = x().to - x().from;
    pinchPad(0.25);
    EXPECT_NEAR((x().to - x().from) / length, 1 / 1.25, 1e-6);
    pinchScreen(2);
    EXPECT_NEAR((x().to - x().from) / length, 1 / 2.5, 1e-6);
    EXPECT_NEAR(xAt(place), xBefore, 0.05);
    EXPECT_NEAR(yAt(place), yBefore, 0.5);
    clickKey(m_Canvas, Qt::Key_Backspace);
    EXPECT_EQ(x().from, 0) << "before all of it";
    EXPECT_EQ(x().to, 10);
}

TEST_F(PlotGesturesTest, OverAnAxisTheWheelZoomsThatAxisAlone)
{
    const PlotSight::Range xBefore = x();
    const PlotSight::Range yBefore = y();
    turnWheel(m_View.axisWidget(PlotSight::Y), {5, 100}, 1);
    EXPECT_EQ(x().to, xBefore.to);
    EXPECT_LT(y().to - y().from, yBefore.to - yBefore.from);
    const PlotSight::Range yAfter = y();
    turnWheel(m_View.axisWidget(PlotSight::X), {100, 5}, 1);
    EXPECT_LT(x().to - x().from, xBefore.to - xBefore.from);
    EXPECT_EQ(y().from, yAfter.from);
}

TEST_F(PlotGesturesTest, ModifiersZoomOrMoveXAlone)
{
    const PlotSight::Range yBefore = y();
    turnWheel(m_Canvas, {100, 100}, 1, Qt::ControlModifier);
    EXPECT_FALSE(m_View.getSight().isChosen(PlotSight::Y));
    const double length = x().to - x().from;
    const double from = x().from;
    turnWheel(m_Canvas, {100, 100}, 1, Qt::ShiftModifier);
    EXPECT_NEAR(x().to - x().from, length, 1e-9);
    EXPECT_LT(x().from, from);
    EXPECT_LE(y().to, yBefore.to);
}

TEST_F(PlotGesturesTest, DraggingMovesWhatIsUnderThePointerWithIt)
{
    turnWheel(m_Canvas, {150, 120}, 2);
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton}) {
        const double xBefore = xAt({200, 100});
        const double yBefore = yAt({200, 100});
        dragMouse(m_Canvas, button, {200, 100}, {260, 150});
        EXPECT_NEAR(xAt({260, 150}), xBefore, 0.1); // the numbers at y may need more room
        EXPECT_NEAR(yAt({260, 150}), yBefore, 0.5);
    }
}

TEST_F(PlotGesturesTest, RightDraggingZoomsIntoABox)
{
    const double left = xAt({100, 0});
    const double right = xAt({300, 0});
    const double top = yAt({0, 50});
    const double bottom = yAt({0, 250});
    dragMouse(m_Canvas, Qt::RightButton, {300, 250}, {100, 50});
    EXPECT_NEAR(x().from, left, 0.05);
    EXPECT_NEAR(x().to, right, 0.05);
    EXPECT_NEAR(y().from, bottom, 0.5);
    EXPECT_NEAR(y().to, top, 0.5);
}

TEST_F(PlotGesturesTest, AltMakesTheBoxAsWideAsThePlotAndShiftAsHigh)
{
    const double top = yAt({0, 50});
    const double bottom = yAt({0, 250});
    dragHolding(Qt::AltModifier, m_Canvas, Qt::RightButton, {100, 50}, {300, 250});
    EXPECT_FALSE(m_View.getSight().isChosen(PlotSight::X));
    EXPECT_NEAR(y().from, bottom, 0.5);
    EXPECT_NEAR(y().to, top, 0.5);
    clickKey(m_Canvas, Qt::Key_Home);
    const double left = xAt({100, 0});
    const double right = xAt({300, 0});
    dragHolding(Qt::ShiftModifier, m_Canvas, Qt::RightButton, {100, 50}, {300, 250});
    EXPECT_FALSE(m_View.getSight().isChosen(PlotSight::Y));
    EXPECT_NEAR(x().from, left, 0.05);
    EXPECT_NEAR(x().to, right, 0.05);
}

TEST_F(PlotGesturesTest, WithShiftTheLeftButtonDrawsABox)
{
    const double left = xAt({100, 0});
    const double right = xAt({300, 0});
    const double top = yAt({0, 50});
    dragHolding(Qt::ShiftModifier, m_Canvas, Qt::LeftButton, {100, 50}, {300, 250});
    EXPECT_NEAR(x().from, left, 0.05);
    EXPECT_NEAR(x().to, right, 0.05);
    EXPECT_NEAR(y().to, top, 0.5);
}

TEST_F(PlotGesturesTest, EscapeGivesTheBoxUp)
{
    pressMouse(m_Canvas, Qt::RightButton, {100, 50});
    moveMouse(m_Canvas, Qt::RightButton, {300, 250});
    clickKey(m_Canvas, Qt::Key_Escape);
    tavo::releaseMouse(m_Canvas, Qt::RightButton, {300, 250});
    EXPECT_FALSE(m_View.getSight().isChosen(PlotSight::X));
}

TEST_F(PlotGesturesTest, AClickMovesNothing)
{
    dragMouse(m_Canvas, Qt::LeftButton, {100, 50}, {101, 51});
    dragMouse(m_Canvas, Qt::RightButton, {100, 50}, {101, 51});
    EXPECT_FALSE(m_View.getSight().isChosen(PlotSight::X));
}

TEST_F(PlotGesturesTest, ADoubleClickShowsAllAgain)
{
    turnWheel(m_Canvas, {100, 100}, 5);
    doubleClick(m_View.axisWidget(PlotSight::Y));
    EXPECT_FALSE(m_View.getSight().isChosen(PlotSight::Y));
    EXPECT_TRUE(m_View.getSight().isChosen(PlotSight::X));
    doubleClick(m_Canvas);
    EXPECT_EQ(x().from, 0);
    EXPECT_EQ(x().to, 10);
}

TEST_F(PlotGesturesTest, ZoomsAreUndoneAndRedone)
{
    dragMouse(m_Canvas, Qt::RightButton, {100, 50}, {300, 250});
    const double zoomed = x().from;
    clickKey(m_Canvas, Qt::Key_Backspace);
    EXPECT_EQ(x().from, 0);
    clickKey(m_Canvas, Qt::Key_Backspace, Qt::ShiftModifier);
    EXPECT_EQ(x().from, zoomed);
    pressMouse(m_Canvas, Qt::BackButton, {1, 1});
    EXPECT_EQ(x().from, 0);
}

TEST_F(PlotGesturesTest, CtrlZUndoesZoomsToo)
{
    dragMouse(m_Canvas, Qt::RightButton, {100, 50}, {300, 250});
    const double zoomed = x().from;
    clickKey(m_Canvas, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(x().from, 0);
    clickKey(m_Canvas, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(x().from, zoomed);
}

TEST_F(PlotGesturesTest, NotchesAreUndoneAtOnceThoughCtrlIsPressedForEach)
{
    for (int notch = 0; notch < 4; ++notch) {
        QKeyEvent control(QEvent::KeyPress, Qt::Key_Control, Qt::ControlModifier);
        QApplication::sendEvent(m_Canvas, &control);
        turnWheel(m_Canvas, {100, 100}, 1, Qt::ControlModifier);
    }
    EXPECT_NEAR(x().to - x().from, 10 * std::pow(0.87, 4), 1e-9);
    clickKey(m_Canvas, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(x().from, 0);
    EXPECT_EQ(x().to, 10);
}

TEST_F(PlotGesturesTest, ARightClickBringsAMenuAndABoxDoesNot)
{
    dragMouse(m_Canvas, Qt::RightButton, {100, 50}, {300, 250});
    EXPECT_EQ(menu(), nullptr);
    dragMouse(m_Canvas, Qt::RightButton, {100, 50}, {102, 51});
    ASSERT_NE(menu(), nullptr);
    EXPECT_TRUE(menu()->isVisible());
}

TEST_F(PlotGesturesTest, TheMenuMovesWhatIsSeen)
{
    dragMouse(m_Canvas, Qt::RightButton, {100, 50}, {300, 250});
    const double zoomed = x().from;
    choose("fit");
    EXPECT_EQ(x().from, 0);
    choose("back");
    EXPECT_EQ(x().from, zoomed);
    choose("forward");
    EXPECT_EQ(x().from, 0);
    append(20, 1);
    choose("followNewest");
    append(30, 1);
    EXPECT_EQ(x().to, 20);
    choose("followNewest");
    EXPECT_EQ(x().to, 30);
}

TEST_F(PlotGesturesTest, TheMenuChangesTheAxes)
{
    send({1, 10}, {1, 100});
    choose("logY");
    EXPECT_TRUE(m_View.isLog(PlotSight::Y));
    EXPECT_FALSE(m_View.isLog(PlotSight::X));
    PlotUpdate update;
    update.y.isLog = false;
    m_View.apply(update);
    EXPECT_TRUE(m_View.isLog(PlotSight::Y)) << "a person has chosen that";
    choose("logX");
    EXPECT_TRUE(m_View.isLog(PlotSight::X));
    choose("logY");
    EXPECT_FALSE(m_View.isLog(PlotSight::Y));
    choose("grid");
    EXPECT_FALSE(m_View.isGridShown());
    choose("measure");
    EXPECT_TRUE(m_View.getMeasure().isOn());
}

TEST_F(PlotGesturesTest, AQuestionMarkListsTheGestures)
{
    for (const Qt::Key key : {Qt::Key_Question, Qt::Key_F1}) {
        clickKey(m_Canvas, key);
        auto* const help = m_View.findChild<QMessageBox*>("gestureHelp");
        ASSERT_NE(help, nullptr);
        EXPECT_TRUE(help->text().contains("wheel"));
        EXPECT_FALSE(help->isModal());
        delete help;
    }
    choose("help");
    EXPECT_NE(m_View.findChild<QMessageBox*>("gestureHelp"), nullptr);
}

TEST_F(PlotGesturesTest, KeysReachAPlotThatIsGivenTheFocus)
{
    m_View.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&m_View));
    m_View.setFocus();
    EXPECT_EQ(QApplication::focusWidget(), m_Canvas);
}

TEST_F(PlotGesturesTest, WhoHasZoomedStaysZoomed)
{
    dragMouse(m_Canvas, Qt::RightButton, {100, 50}, {300, 250});
    const PlotSight::Range before = x();
    send({0, 1000}, {-5000, 5000});
    EXPECT_EQ(x().from, before.from);
    EXPECT_EQ(x().to, before.to);
}

TEST_F(PlotGesturesTest, TheNewestDataAreFollowedAtTheLengthThatTheWheelChooses)
{
    append(20, 1);
    EXPECT_EQ(x().to, 20);
    turnWheel(m_Canvas, {100, 100}, 1, Qt::ControlModifier);
    EXPECT_NEAR(x().to - x().from, 20 * 0.87, 1e-9);
    EXPECT_EQ(x().to, 20);
    append(25, 1);
    EXPECT_EQ(x().to, 25);
    EXPECT_NEAR(x().to - x().from, 20 * 0.87, 1e-9);
    EXPECT_FALSE(isFollowOffered());
}

TEST_F(PlotGesturesTest, ZoomingYFollowsOn)
{
    append(20, 1);
    turnWheel(m_View.axisWidget(PlotSight::Y), {5, 100}, 1);
    append(25, 1);
    EXPECT_EQ(x().to, 25);
}

TEST_F(PlotGesturesTest, WhateverChangesYAloneFollowsOn)
{
    append(20, 1);
    dragMouse(m_Canvas, Qt::LeftButton, {100, 50}, {100, 150});
    EXPECT_TRUE(m_View.getSight().isChosen(PlotSight::Y));
    append(25, 1);
    EXPECT_EQ(x().to, 25);
    dragMouse(m_View.axisWidget(PlotSight::Y), Qt::LeftButton, {5, 50}, {5, 150});
    append(30, 1);
    EXPECT_EQ(x().to, 30);
    dragHolding(Qt::AltModifier, m_Canvas, Qt::RightButton, {100, 50}, {300, 250});
    append(35, 1);
    EXPECT_EQ(x().to, 35);
    EXPECT_FALSE(isFollowOffered());
}

TEST_F(PlotGesturesTest, DraggingTheAxisOfXStopsFollowing)
{
    append(20, 1);
    dragMouse(m_View.axisWidget(PlotSight::X), Qt::LeftButton, {100, 5}, {150, 5});
    const PlotSight::Range before = x();
    append(30, 1);
    EXPECT_EQ(x().to, before.to);
    EXPECT_TRUE(isFollowOffered());
}

TEST_F(PlotGesturesTest, DraggingStopsFollowingAndAButtonLeadsBack)
{
    append(20, 1);
    dragMouse(m_Canvas, Qt::LeftButton, {100, 50}, {150, 50});
    const PlotSight::Range before = x();
    append(30, 1);
    EXPECT_EQ(x().to, before.to);
    EXPECT_TRUE(isFollowOffered());
    tavo::clickMouse(followButtonOf(m_View));
    EXPECT_EQ(x().to, 30);
    EXPECT_FALSE(isFollowOffered());
}

TEST_F(PlotGesturesTest, SpaceStopsFollowingAndStartsItAgain)
{
    append(20, 1);
    clickKey(m_Canvas, Qt::Key_Space);
    append(30, 1);
    EXPECT_EQ(x().to, 20);
    clickKey(m_Canvas, Qt::Key_Space);
    EXPECT_EQ(x().to, 30);
}

TEST_F(PlotGesturesTest, LinkedPlotsShareX)
{
    PlotView other("other");
    PlotUpdate update;
    update.curve("b") = samples({5, 40}, {0, 1});
    update.curves.front().name = "b";
    update.links.emplace_back("test");
    other.apply(update);
    EXPECT_EQ(x().to, 40);
    EXPECT_EQ(other.getSight().range(PlotSight::X).from, 0);
    dragMouse(m_Canvas, Qt::RightButton, {100, 50}, {300, 250});
    EXPECT_EQ(other.getSight().range(PlotSight::X).from, x().from);
    EXPECT_FALSE(other.getSight().isChosen(PlotSight::Y));
}

void expectSameX(PlotView& a, PlotView& b, const PlotSight::Range& expected)
{
    for (PlotView* view : {&a, &b}) {
        EXPECT_DOUBLE_EQ(view->getSight().range(PlotSight::X).from, expected.from);
        EXPECT_DOUBLE_EQ(view->getSight().range(PlotSight::X).to, expected.to);
    }
}

TEST_F(PlotGesturesTest, LinkedPlotsShareTheRangeThatWasAskedForLast)
{
    const auto askFor = [](PlotView& view, double from, double to) {
        PlotUpdate update;
        update.x.range = AxisUpdate::Range{from, to};
        view.apply(update);
    };
    askFor(m_View, 0, 5);
    PlotView other("other");
    askFor(other, 7, 8);
    PlotUpdate update;
    update.curve("b") = samples({0, 20}, {0, 1});
    update.curves.front().name = "b";
    update.links.emplace_back("test");
    other.apply(update);
    expectSameX(m_View, other, {0, 5});
    askFor(other, 2, 3);
    expectSameX(m_View, other, {2, 3});
    askFor(m_View, 1, 4);
    expectSameX(m_View, other, {1, 4});
    send({0, 30}, {0, 1});
    expectSameX(m_View, other, {1, 4});
}

TEST_F(PlotGesturesTest, LinkedPlotsShareTheWindow)
{
    PlotView other("other");
    PlotUpdate update;
    update.curve("b") = samples({0, 4}, {0, 1});
    update.curves.front().name = "b";
    update.links.emplace_back("test");
    other.apply(update);
    PlotUpdate windowed;
    windowed.window = 2;
    m_View.apply(windowed);
    expectSameX(m_View, other, {8, 10});
    append(20, 1);
    expectSameX(m_View, other, {18, 20});
    turnWheel(canvasOf(other), {100, 100}, 1, Qt::ControlModifier);
    append(30, 1);
    expectSameX(m_View, other, {30 - 2 * 0.87, 30});
}

TEST_F(PlotGesturesTest, LinkedPlotsShareWhetherXIsTime)
{
    PlotUpdate time;
    time.x.isTime = true;
    m_View.apply(time);
    PlotView other("other");
    PlotUpdate update;
    update.links.emplace_back("test");
    other.apply(update);
    EXPECT_TRUE(other.isTime(PlotSight::X));
    PlotUpdate numbers;
    numbers.x.isTime = false;
    other.apply(numbers);
    EXPECT_FALSE(m_View.isTime(PlotSight::X)) << "what was asked for last";
}

TEST_F(PlotGesturesTest, LinkedPlotsShareWhetherXIsLogarithmic)
{
    PlotUpdate logarithmic;
    logarithmic.x.isLog = true;
    m_View.apply(logarithmic);
    PlotView other("other");
    PlotUpdate update;
    update.links.emplace_back("test");
    other.apply(update);
    EXPECT_TRUE(other.isLog(PlotSight::X));
    PlotUpdate linear;
    linear.x.isLog = false;
    other.apply(linear);
    EXPECT_FALSE(m_View.isLog(PlotSight::X)) << "what was asked for last";
    choose("logX");
    EXPECT_TRUE(other.isLog(PlotSight::X)) << "what a person has chosen";
    other.apply(linear);
    EXPECT_TRUE(m_View.isLog(PlotSight::X) && other.isLog(PlotSight::X));
    other.setLog(PlotSight::Y, true);
    EXPECT_FALSE(m_View.isLog(PlotSight::Y)) << "x alone";
}

TEST_F(PlotGesturesTest, LinkedPlotsStopFollowingAndFollowAgainTogether)
{
    PlotView other("other");
    other.resize(600, 400);
    other.show();
    double newest = 20;
    const auto appendToBoth = [&](double x) {
        newest = x;
        PlotUpdate update;
        update.curve("b").append({x, 1});
        update.links.emplace_back("test");
        other.apply(update);
        append(x, 1);
    };
    const auto expectOffered = [&](bool isOffered, const char* gesture) {
        for (PlotView* view : {&m_View, &other}) {
            EXPECT_EQ(followButtonOf(*view)->isVisible(), isOffered) << gesture;
            EXPECT_EQ(view->getSight().range(PlotSight::X).to == newest, !isOffered) << gesture;
        }
    };
    const std::pair<const char*, std::function<void(QWidget*)>> gestures[] = {
        {"drag",
            [](QWidget* canvas) {
                dragMouse(canvas, Qt::LeftButton, {100, 50}, {150, 50});
            }},
        {"box",
            [](QWidget* canvas) {
                dragMouse(canvas, Qt::RightButton, {100, 50}, {300, 250});
            }},
        {"space", [](QWidget* canvas) { clickKey(canvas, Qt::Key_Space); }}};
    appendToBoth(20);
    for (const auto& [name, gesture] : gestures)
        for (PlotView* stopped : {&m_View, &other}) {
            expectOffered(false, name);
            gesture(canvasOf(*stopped));
            appendToBoth(newest + 10);
            expectOffered(true, name);
            clickMouse(followButtonOf(stopped == &other ? m_View : other));
            appendToBoth(newest + 10);
        }
    expectOffered(false, "follow");
    turnWheel(other.axisWidget(PlotSight::Y), {5, 100}, 1);
    turnWheel(canvasOf(other), {100, 100}, 1, Qt::ControlModifier);
    appendToBoth(newest + 10);
    expectOffered(false, "wheel");
}

TEST_F(PlotGesturesTest, APlotIsLinkedToWhatAPersonHasChosen)
{
    dragMouse(m_Canvas, Qt::RightButton, {100, 50}, {300, 250});
    const PlotSight::Range chosen = x();
    PlotView other("other");
    PlotUpdate update;
    update.links.emplace_back("test");
    other.apply(update);
    expectSameX(m_View, other, chosen);
}

TEST_F(PlotGesturesTest, ThePointerNamesTheNearestSample)
{
    send({0, 5, 10}, {0, 77.25, 100});
    const QPoint place(
        qRound(m_View.pixelMap(PlotSight::X).toPixel(5)) + 3, qRound(m_View.pixelMap(PlotSight::Y).toPixel(77.25)) - 3);
    moveMouse(m_Canvas, Qt::NoButton, place);
    EXPECT_EQ(readout().toStdString(), "a\n5\n77.25");
    moveMouse(m_Canvas, Qt::NoButton, place + QPoint(0, 40));
    EXPECT_EQ(readout().toStdString(), "");
}

TEST_F(PlotGesturesTest, TheNearestSampleIsMarked)
{
    send({0, 5, 10}, {0, 77.25, 100});
    const QPoint sample(
        qRound(m_View.pixelMap(PlotSight::X).toPixel(5)), qRound(m_View.pixelMap(PlotSight::Y).toPixel(77.25)));
    const QImage before = m_Canvas->grab().toImage();
    moveMouse(m_Canvas, Qt::NoButton, sample + QPoint(5, -5));
    const QImage after = m_Canvas->grab().toImage();
    const QRect mark(sample - QPoint(3, 3), sample + QPoint(2, 2));
    int numChanged = 0;
    for (int y = mark.top(); y <= mark.bottom(); ++y)
        for (int x = mark.left(); x <= mark.right(); ++x)
            numChanged += before.pixel(x, y) != after.pixel(x, y);
    EXPECT_GT(numChanged, 20);
}

TEST_F(PlotGesturesTest, ThePointerThatStandsStillNamesWhatIsBelowItNow)
{
    send({0, 5, 10}, {0, 50, 100});
    append(10, 90);
    const QPoint place(
        qRound(m_View.pixelMap(PlotSight::X).toPixel(5)), qRound(m_View.pixelMap(PlotSight::Y).toPixel(50)));
    moveMouse(m_Canvas, Qt::NoButton, place);
    EXPECT_EQ(readout().toStdString(), "a\n5\n50");
    append(20, 90);
    EXPECT_EQ(readout().toStdString(), "") << "which has moved away";
    send({0, 5, 10}, {0, 50, 100});
    EXPECT_EQ(readout().toStdString(), "a\n5\n50") << "and back";
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(m_Canvas, &leave);
    send({0, 5, 10}, {0, 50, 100});
    EXPECT_EQ(readout().toStdString(), "");
}

// Each curve has a line of its own in the readout.
TEST_F(PlotGesturesTest, WhatThePointerNamesIsReadWhereverItIs)
{
    PlotUpdate update;
    update.remove("a");
    for (int i = 0; i < 9; ++i) {
        const std::string name = "a curve of a long name " + std::to_string(i);
        update.curve(name) = samples({0, 5, 10}, {0, i % 2 ? 8.0 : 10.0, 0});
        update.curves.back().name = name;
    }
    m_View.resize(450, 330);
    m_View.apply(update);
    QApplication::processEvents();
    const QPoint sample(
        qRound(m_View.pixelMap(PlotSight::X).toPixel(5)), qRound(m_View.pixelMap(PlotSight::Y).toPixel(10)));
    moveMouse(m_Canvas, Qt::NoButton, sample);
    auto* const shown = static_cast<PlotReadout*>(m_View.findChild<QWidget*>("readout"));
    EXPECT_EQ(readout().count('\n'), 10);
    EXPECT_TRUE(m_Canvas->rect().contains(shown->placeOfText().toAlignedRect()));
}

TEST_F(PlotGesturesTest, ThePointerNamesAllCurvesAtThatXTheNearestFirst)
{
    PlotUpdate update;
    const auto add = [&update](const std::string& name, double y, const std::string& style) {
        update.curve(name) = samples({0, 5, 10}, {y, y, y});
        update.curves.back().name = name;
        update.curves.back().style = style;
    };
    add("far", 0, "");
    add("near", 60, "");
    add("gap", NAN, "");
    add("named", 80, "");
    add("second axis", 1000, "y2");
    update.curve("elsewhere") = samples({0, 10}, {70, 70});
    update.curves.back().name = "elsewhere";
    update.remove("a");
    m_View.apply(update);
    const auto pixel = [this](double x, double y) {
        return QPoint(
            qRound(m_View.pixelMap(PlotSight::X).toPixel(x)), qRound(m_View.pixelMap(PlotSight::Y).toPixel(y)));
    };
    moveMouse(m_Canvas, Qt::NoButton, pixel(5, 80));
    EXPECT_EQ(readout().section('\n', 0, 2).toStdString(), "named\n5\n80");
    EXPECT_THAT(readout().split('\n').mid(3), testing::UnorderedElementsAre("near: 60", "far: 0", "second axis: 1000"));
    EXPECT_LT(readout().indexOf("near"), readout().indexOf("far"));
}

TEST_F(PlotGesturesTest, ThePointerNamesTheStepThatHolds)
{
    PlotUpdate update;
    update.curve("a") = samples({0, 4, 10}, {10, 90, 50}, CurveKind::Steps);
    update.curves.back().name = "a";
    update.curve("b") = samples({0, 1, 2}, {20, 20, 20}, CurveKind::Steps);
    update.curves.back().name = "b";
    m_View.apply(update);
    const auto pointAt = [this](double x, double y) {
        moveMouse(m_Canvas, Qt::NoButton,
            QPoint(qRound(m_View.pixelMap(PlotSight::X).toPixel(x)), qRound(m_View.pixelMap(PlotSight::Y).toPixel(y))));
        return readout().toStdString();
    };
    EXPECT_EQ(pointAt(7, 90), "a\n4\n90") << "far from any sample";
    EXPECT_EQ(pointAt(9.9, 90), "a\n4\n90") << "near to the end of the step";
    EXPECT_EQ(pointAt(3.95, 50), "a\n0\n10") << "at the jump";
    EXPECT_EQ(pointAt(7, 60), "");
    EXPECT_EQ(pointAt(1.5, 20), "b\n1\n20\na: 10");
}

TEST_F(PlotGesturesTest, TheAxisSaysWhereXGoesToAndFro)
{
    EXPECT_EQ(m_View.axisWidget(PlotSight::X)->toolTip(), "");
    send({0, 2, 1}, {0, 1, 2});
    EXPECT_TRUE(m_View.axisWidget(PlotSight::X)->toolTip().contains("to and fro: a."));
    send({0, 1, 2}, {0, 1, 2});
    EXPECT_EQ(m_View.axisWidget(PlotSight::X)->toolTip(), "");
}

TEST_F(PlotGesturesTest, ABandIsNamedAtBothEdges)
{
    PlotUpdate update;
    update.remove("a");
    update.curve("b") = samples({0, 5, 10}, {8, 8, 8}, CurveKind::Band);
    update.curves.back().name = "b";
    update.curves.back().samples->low = numbers({2, 2, 2});
    m_View.apply(update);
    moveMouse(m_Canvas, Qt::NoButton,
        QPoint(qRound(m_View.pixelMap(PlotSight::X).toPixel(5)), qRound(m_View.pixelMap(PlotSight::Y).toPixel(2))));
    EXPECT_EQ(readout().toStdString(), "b low\n5\n2\nb high: 8");
}

TEST_F(PlotGesturesTest, MMeasuresBetweenTwoCursorsThatAreDragged)
{
    std::vector<double> x(1001);
    std::vector<double> y(1001);
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<double>(i) / 100;
        y[i] = 10 * x[i];
    }
    PlotUpdate update;
    update.curve("a") = samples(x, y);
    update.curves.back().name = "a";
    update.x.name = AxisUpdate::Name{"time", "s"};
    m_View.apply(update);
    PlotMeasure& measure = m_View.getMeasure();
    EXPECT_FALSE(measure.isOn());
    clickKey(m_Canvas, Qt::Key_M);
    ASSERT_TRUE(measure.isOn());

    const auto pixelOf = [this](double x) { return qRound(m_View.pixelMap(PlotSight::X).toPixel(x)); };
    const QPoint first(pixelOf(10 / 3.0), 100);
    const QPoint second(pixelOf(20 / 3.0), 100);
    moveMouse(m_Canvas, Qt::NoButton, first);
    EXPECT_EQ(m_Canvas->cursor().shape(), Qt::SplitHCursor);
    dragMouse(m_Canvas, Qt::LeftButton, first, {pixelOf(9), 100}); // past the other one
    dragMouse(m_Canvas, Qt::LeftButton, second, {pixelOf(2), 100});
    EXPECT_FALSE(m_View.getSight().isChosen(PlotSight::X)) << "what is seen stays where it is";

    const double from = xAt({pixelOf(2), 0});
    const double to = xAt({pixelOf(9), 0});
    const QStringList distance = measure.distance().split(' ', Qt::SkipEmptyParts);
    ASSERT_EQ(distance.size(), 6);
    EXPECT_NEAR(distance[1].toDouble(), to - from, 1e-6);
    EXPECT_EQ(distance[2].toStdString(), "s");
    EXPECT_NEAR(distance[4].toDouble(), 1 / (to - from), 1e-6);
    EXPECT_EQ(distance[5].toStdString(), "Hz");
    ASSERT_EQ(measure.rows().size(), 2u);
    EXPECT_EQ(measure.rows()[0].join(' ').toStdString(), " dy mean minimum maximum rms count");
    const QStringList& row = measure.rows()[1];
    EXPECT_EQ(row[0].toStdString(), "a");
    EXPECT_NEAR(row[1].toDouble(), 10 * (to - from), 0.2);
    EXPECT_NEAR(row[2].toDouble(), 5 * (from + to), 0.2);
    EXPECT_NEAR(row[3].toDouble(), 10 * from, 0.2) << "the minimum";
    EXPECT_NEAR(row[4].toDouble(), 10 * to, 0.2) << "the maximum";
    EXPECT_NEAR(row[5].toDouble(), 10 * std::sqrt((from * from + from * to + to * to) / 3), 0.2) << "rms";
    EXPECT_NEAR(row[6].toInt(), 100 * (to - from), 2);

    send({2, 3, 4}, {7, 7, 7});
    EXPECT_EQ(measure.rows()[1][5].toDouble(), 7) << "of the newest samples";
    clickKey(m_Canvas, Qt::Key_M);
    EXPECT_FALSE(measure.isOn());
}

TEST_F(PlotGesturesTest, ABandIsMeasuredAtBothEdges)
{
    PlotUpdate update;
    update.remove("a");
    update.curve("b") = samples({0, 5, 10}, {3, 4, 5}, CurveKind::Band);
    update.curves.back().name = "b";
    update.curves.back().samples->low = numbers({1, 1, 1});
    m_View.apply(update);
    m_View.setMeasuring(true);
    ASSERT_EQ(m_View.getMeasure().rows().size(), 3u);
    EXPECT_EQ(m_View.getMeasure().rows()[1].join(' ').toStdString(), "b low 0 1 1 1 1 1");
    EXPECT_EQ(m_View.getMeasure().rows()[2].join(' ').toStdString(), "b high 0 4 4 4 4 1");
}

TEST_F(PlotGesturesTest, YFitsWhatIsSeenOfX)
{
    std::vector<double> x(1000);
    std::vector<double> y(1000);
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<double>(i);
        y[i] = i < 500 ? 1 : 1000;
    }
    y[100] = 2;
    send(x, y);
    for (int i = 0; i < 12; ++i)
        turnWheel(m_View.axisWidget(PlotSight::X), {0, 5}, 1);
    EXPECT_NEAR(this->y().to, 2.05, 0.01);
}

} // namespace

} // namespace tavo
