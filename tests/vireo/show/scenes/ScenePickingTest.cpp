#include <QApplication>
#include <QFontMetricsF>
#include <QMouseEvent>
#include <QWheelEvent>
#include <gmock/gmock.h>
#include <stdexcept>
#include <thread>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/scenes/sceneUpdates.h"
#include "vireo/show/delivery/FrontDoor.h"
#include "vireo/show/show.h"

// What a person is told of what the pointer is on and of what they click, and what the program is told.
namespace tavo {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::size_t> indicesOf(const std::vector<ScenePick>& picks)
{
    std::vector<std::size_t> indices;
    for (const ScenePick& pick : picks)
        indices.push_back(pick.picked.index);
    return indices;
}

class ScenePickingTest : public testing::Test
{
protected:
    ScenePickingTest()
    {
        m_View.resize(400, 300);
        m_View.show();
        ItemUpdate points = item(ItemKind::Cloud, {-1, -1, -1, 1, -1, -1, -1, 1, 1, 0.3, -0.2, 0.4});
        points.size = 5;
        send(m_View, "points", points);
        QApplication::processEvents();
    }

    QPoint pixelOf(const Vector3d& point)
    {
        const SceneCamera::Pixel pixel = m_View.getCamera().project(point, m_View.viewSize());
        return QPointF(pixel.x, pixel.y).toPoint();
    }

    // Rests there until whatever comes of it has come.
    void rest(const QPoint& pixel)
    {
        moveMouse(&m_View, Qt::NoButton, pixel);
        QTest::qWait(200);
    }

    void doubleClick(const QPoint& pixel)
    {
        clickMouse(&m_View, pixel);
        QMouseEvent second(QEvent::MouseButtonDblClick, pixel, Qt::LeftButton, Qt::LeftButton, {});
        QApplication::sendEvent(&m_View, &second);
        releaseMouse(&m_View, Qt::LeftButton, pixel);
    }

    bool isHovering() const { return m_View.getMarks().hovered().has_value(); }
    std::vector<std::size_t> pins() const { return indicesOf(m_View.getMarks().pins()); }

    void receive(PickReceiver::Callback callback, PickReceiver::Executor executor = {})
    {
        SceneUpdate scene;
        scene.pickReceiver.emplace();
        if (callback)
            *scene.pickReceiver = std::make_shared<PickReceiver>(PickReceiver{callback, executor});
        m_View.apply(scene);
    }

    const std::vector<Vector3d> m_Points{{-1, -1, -1}, {1, -1, -1}, {-1, 1, 1}, {0.3, -0.2, 0.4}};
    SceneView m_View{"test"};
};

TEST_F(ScenePickingTest, WhereThePointerRestsTheViewSaysWhatIsThere)
{
    const QImage before = m_View.grab().toImage();
    rest(pixelOf(m_Points[3]));
    ASSERT_TRUE(isHovering());
    EXPECT_EQ(m_View.getMarks().hovered()->picked.index, 3U);
    EXPECT_NE(m_View.grab().toImage(), before);
    rest({3, 3});
    EXPECT_FALSE(isHovering());
    EXPECT_EQ(m_View.grab().toImage(), before);
}

TEST_F(ScenePickingTest, NothingIsLookedForWhileAButtonIsDownOrThePointerMoves)
{
    moveMouse(&m_View, Qt::NoButton, pixelOf(m_Points[3]));
    EXPECT_FALSE(isHovering()) << "it has not rested";
    rest(pixelOf(m_Points[3]));
    pressMouse(&m_View, Qt::LeftButton, pixelOf(m_Points[3]));
    EXPECT_FALSE(isHovering());
    moveMouse(&m_View, Qt::LeftButton, pixelOf(m_Points[3]) + QPoint(1, 0));
    QTest::qWait(200);
    EXPECT_FALSE(isHovering());
    releaseMouse(&m_View, Qt::LeftButton, pixelOf(m_Points[3]));
    QTest::qWait(200);
    EXPECT_TRUE(isHovering());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&m_View, &leave);
    EXPECT_FALSE(isHovering());
}

TEST_F(ScenePickingTest, WhatComesUnderARestingPointerIsSaid)
{
    m_View.showChoice(); // what comes moves it no more
    rest(pixelOf(m_Points[3]));
    ASSERT_TRUE(isHovering());
    send(m_View, "points", item(ItemKind::Cloud, {m_Points[3]}));
    QTest::qWait(500);
    ASSERT_TRUE(isHovering());
    EXPECT_EQ(m_View.getMarks().hovered()->picked.index, 0U) << "of what was sent since";
    SceneUpdate removed;
    removed.remove("points");
    m_View.apply(removed);
    EXPECT_FALSE(isHovering());
}

TEST_F(ScenePickingTest, AClickPinsAndEscTakesAway)
{
    const QImage before = m_View.grab().toImage();
    clickMouse(&m_View, pixelOf(m_Points[1]));
    EXPECT_THAT(pins(), ElementsAre(1U));
    const QImage one = m_View.grab().toImage();
    EXPECT_NE(one, before);
    clickMouse(&m_View, {3, 3});
    EXPECT_THAT(pins(), ElementsAre(1U)) << "where nothing is, nothing is pinned";
    clickMouse(&m_View, pixelOf(m_Points[3]));
    EXPECT_THAT(pins(), ElementsAre(1U, 3U));
    EXPECT_NE(m_View.grab().toImage(), one);
    clickMouse(&m_View, pixelOf(m_Points[0]));
    EXPECT_THAT(pins(), ElementsAre(3U, 0U)) << "the distance is that of the last two";
    clickKey(&m_View, Qt::Key_Escape);
    EXPECT_THAT(pins(), IsEmpty());
    moveMouse(&m_View, Qt::NoButton, {3, 3});
    EXPECT_EQ(m_View.grab().toImage(), before);
}

TEST_F(ScenePickingTest, TextsArePicked)
{
    std::vector<Picked> told;
    receive([&told](const Picked& picked) { told.push_back(picked); });
    ItemUpdate text = item(ItemKind::Text, {0.25, 0.5, 5500000.125});
    text.shape->text = "a text";
    Matrix4 down;
    down.at(2, 3) = -5500000.125;
    SceneUpdate moved;
    moved.items["texts/one"] = text;
    moved.transforms["texts"] = down;
    m_View.apply(moved);
    const QPoint letters = pixelOf({0.25, 0.5, 0}) + QPoint(12, 0);
    rest(letters);
    ASSERT_TRUE(isHovering());
    EXPECT_THAT(m_View.getMarks().hovered()->lines,
        ElementsAre("texts/one", "text", "x 0.25", "y 0.5", "z 5500000.125", "in the scene 0.25, 0.5, 0"));
    clickMouse(&m_View, letters);
    QApplication::processEvents();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0].path, "texts/one");
    EXPECT_EQ(told[0].position, Vector3d(0.25, 0.5, 5500000.125));
    rest(letters + QPoint(0, 40));
    EXPECT_FALSE(isHovering()) << "below it";
    doubleClick(letters);
    EXPECT_EQ(m_View.getCamera().getPivot(), Vector3d(0.25, 0.5, 0));
}

TEST_F(ScenePickingTest, WhatALargeRoundPointLeavesFreeIsNotThePoint)
{
    ItemUpdate large = item(ItemKind::Cloud, {0, 0, 0});
    large.size = 60;
    send(m_View, "large", large);
    const auto pathAt = [this](const QPoint& pixel) {
        m_View.hover(pixel);
        return isHovering() ? m_View.getMarks().hovered()->picked.path : std::string();
    };
    const QPoint middle = pixelOf({0, 0, 0});
    EXPECT_EQ(pathAt(middle), "large");
    EXPECT_EQ(pathAt(middle + QPoint(-22, 2)), "large");
    EXPECT_NE(pathAt(middle + QPoint(-27, 27)), "large") << "the corner of a square";
}

TEST_F(ScenePickingTest, ADragAndOtherButtonsPinNothing)
{
    const QPoint pixel = pixelOf(m_Points[3]);
    dragMouse(&m_View, Qt::LeftButton, pixel, pixel + QPoint(30, 0));
    dragMouse(&m_View, Qt::LeftButton, pixelOf(m_Points[3]) + QPoint(30, 0), pixelOf(m_Points[3]));
    pressMouse(&m_View, Qt::RightButton, pixelOf(m_Points[3]));
    releaseMouse(&m_View, Qt::RightButton, pixelOf(m_Points[3]));
    EXPECT_THAT(pins(), IsEmpty());
}

TEST_F(ScenePickingTest, ADoubleClickReplacesTheClick)
{
    clickMouse(&m_View, pixelOf(m_Points[0]));
    clickMouse(&m_View, pixelOf(m_Points[1]));
    doubleClick(pixelOf(m_Points[3]));
    EXPECT_THAT(pins(), ElementsAre(0U, 1U));
    EXPECT_LT(length(m_View.getCamera().getPivot() - m_Points[3]), 0.05);
    doubleClick({3, 3});
    EXPECT_THAT(pins(), ElementsAre(0U, 1U));
}

TEST_F(ScenePickingTest, PinsStayOnWhatTheyMark)
{
    clickMouse(&m_View, pixelOf(m_Points[3]));
    SceneUpdate moved;
    moved.transforms["points"] = translation({1, 0, 0});
    m_View.apply(moved);
    EXPECT_EQ(m_View.getMarks().pins()[0].picked.place, Vector3d(1.3, -0.2, 0.4));
    send(m_View, "points", item(ItemKind::Cloud, {5, 5, 5, 6, 6, 6}));
    EXPECT_EQ(m_View.getMarks().pins()[0].picked.place, Vector3d(1.3, -0.2, 0.4));
    send(m_View, "other", item(ItemKind::Cloud, {0, 0, 0}));
    SceneUpdate removed;
    removed.remove("points");
    m_View.apply(removed);
    EXPECT_THAT(pins(), IsEmpty());
}

TEST_F(ScenePickingTest, PinsTurnWithTheScene)
{
    clickMouse(&m_View, pixelOf(m_Points[1]));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&m_View, &leave);
    const auto pinPixels = [this] {
        const QImage pinned = m_View.grab().toImage();
        QRect seen;
        clickKey(&m_View, Qt::Key_Escape);
        const QImage plain = m_View.grab().toImage();
        for (int y = 0; y < plain.height(); ++y)
            for (int x = 0; x < plain.width(); ++x)
                if (plain.pixel(x, y) != pinned.pixel(x, y))
                    seen |= QRect(x, y, 1, 1);
        return seen;
    };
    EXPECT_TRUE(pinPixels().contains(pixelOf(m_Points[1]) - QPoint(4, 0)));
    clickMouse(&m_View, pixelOf(m_Points[1]));
    QApplication::sendEvent(&m_View, &leave);
    const QPoint before = pixelOf(m_Points[1]);
    dragMouse(&m_View, Qt::LeftButton, {200, 290}, {260, 290});
    QApplication::sendEvent(&m_View, &leave);
    ASSERT_GT((pixelOf(m_Points[1]) - before).manhattanLength(), 20);
    EXPECT_TRUE(pinPixels().contains(pixelOf(m_Points[1]) - QPoint(4, 0)));
}

TEST_F(ScenePickingTest, PicturesHavePinsAndNothingElse)
{
    const QImage plain = m_View.picture({400, 300});
    rest(pixelOf(m_Points[3]));
    ASSERT_TRUE(isHovering());
    EXPECT_EQ(m_View.picture({400, 300}), plain);
    clickMouse(&m_View, pixelOf(m_Points[3]));
    EXPECT_NE(m_View.picture({400, 300}), plain);
}

TEST_F(ScenePickingTest, LabelsAreLegibleOnBothGrounds)
{
    for (const bool isDark : {false, true}) {
        QPalette palette;
        palette.setColor(QPalette::Base, isDark ? QColor(20, 20, 20) : QColor(250, 250, 250));
        palette.setColor(QPalette::Text, isDark ? QColor(230, 230, 230) : QColor(10, 10, 10));
        m_View.setPalette(palette);
        clickKey(&m_View, Qt::Key_Escape);
        ItemUpdate surface = item(ItemKind::Mesh, {-9, -9, -2, 9, -9, -2, 0, 9, -2}, {}, {0, 1, 2});
        surface.colour = RGBA8(128, 128, 128, 255); // under the label
        send(m_View, "surface", surface);
        const QImage before = m_View.grab().toImage();
        clickMouse(&m_View, pixelOf(m_Points[3]));
        ASSERT_THAT(pins(), ElementsAre(3U));
        const QImage picture = m_View.grab().toImage();
        for (const QPalette::ColorRole role : {QPalette::Text, QPalette::Base})
            EXPECT_GT(numPixels(picture, palette.color(role)), numPixels(before, palette.color(role)) + 20);
    }
}

TEST_F(ScenePickingTest, TheProgramIsToldOfAClick)
{
    std::vector<Picked> received;
    receive([&](const Picked& picked) { received.push_back(picked); });
    clickMouse(&m_View, pixelOf(m_Points[3]));
    clickMouse(&m_View, {3, 3});
    EXPECT_THAT(received, IsEmpty()) << "between two events";
    QApplication::processEvents();
    ASSERT_EQ(received.size(), 1U);
    EXPECT_EQ(received[0].path, "points");
    EXPECT_EQ(received[0].position, m_Points[3]);
    receive({});
    clickMouse(&m_View, pixelOf(m_Points[3]));
    QApplication::processEvents();
    EXPECT_EQ(received.size(), 1U) << "an empty function takes it away";
}

TEST_F(ScenePickingTest, AClickIsNotToldToWhomWasTakenAway)
{
    int numCalls = 0;
    receive([&](const Picked&) { ++numCalls; });
    clickMouse(&m_View, pixelOf(m_Points[3]));
    receive({});
    QApplication::processEvents();
    EXPECT_EQ(numCalls, 0);
}

TEST_F(ScenePickingTest, WhatAFunctionThrowsIsReported)
{
    testing::internal::CaptureStderr();
    receive([](const Picked&) { throw std::runtime_error("no such point"); });
    clickMouse(&m_View, pixelOf(m_Points[3]));
    QApplication::processEvents();
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("no such point"));
}

TEST_F(ScenePickingTest, AFunctionMayReplaceItself)
{
    std::vector<int> calls;
    const auto held = std::make_shared<int>(1);
    receive([this, &calls, held](const Picked&) {
        receive([&calls](const Picked&) { calls.push_back(2); });
        calls.push_back(*held); // it is alive still
    });
    clickMouse(&m_View, pixelOf(m_Points[3]));
    QApplication::processEvents();
    EXPECT_EQ(held.use_count(), 1) << "and has gone";
    clickMouse(&m_View, pixelOf(m_Points[3]));
    QApplication::processEvents();
    EXPECT_THAT(calls, ElementsAre(1, 2));
}

TEST_F(ScenePickingTest, TheProgramChoosesTheThread)
{
    std::vector<std::function<void()>> works;
    int numCalls = 0;
    receive(
        [&](const Picked&) { ++numCalls; }, [&works](std::function<void()> work) { works.push_back(std::move(work)); });
    for (int i = 0; i < 2; ++i)
        clickMouse(&m_View, pixelOf(m_Points[3]));
    QApplication::processEvents();
    ASSERT_EQ(works.size(), 2U);
    EXPECT_EQ(numCalls, 0);
    std::thread(works[0]).join();
    EXPECT_EQ(numCalls, 1);
    receive({});
    works[1]();
    EXPECT_EQ(numCalls, 1) << "it was taken away";
}

TEST_F(ScenePickingTest, AViewThatGoesTellsNothingMore)
{
    int numCalls = 0;
    const auto held = std::make_shared<int>();
    std::vector<std::function<void()>> works;
    {
        SceneView view("other");
        view.resize(400, 300);
        send(view, "points", item(ItemKind::Cloud, {0, 0, 0}));
        SceneUpdate scene;
        scene.pickReceiver =
            std::make_shared<PickReceiver>(PickReceiver{[&numCalls, held](const Picked&) { ++numCalls; },
                [&works](std::function<void()> work) { works.push_back(std::move(work)); }});
        view.apply(scene);
        scene.pickReceiver.reset();
        clickMouse(&view);
        QApplication::processEvents();
        EXPECT_EQ(works.size(), 1U);
        clickMouse(&view);
    }
    QApplication::processEvents();
    ASSERT_EQ(works.size(), 1U);
    works[0]();
    EXPECT_EQ(numCalls, 0);
    EXPECT_EQ(held.use_count(), 1);
}

SceneView* findView()
{
    for (QWidget* widget : QApplication::allWidgets())
        if (auto* const view = dynamic_cast<SceneView*>(widget))
            return view;
    return nullptr;
}

// Of the scene, beside which there is a panel.
void clickMiddle(SceneView* view)
{
    const SceneCamera::Size size = view->viewSize();
    clickMouse(view, QPointF(size.width / 2, size.height / 2).toPoint());
}

TEST(OnPickTest, AFunctionMaySendAndRemoveItsScene)
{
    std::vector<std::string> paths;
    const auto held = std::make_shared<int>();
    scene("front").cloud("a/b", {0, 0, 0}).size(9);
    scene("front").onPick([&paths, held](const Picked& picked) {
        paths.push_back(picked.path);
        tavo::remove("front");
        plot("clicks").append("number", 1, 1);
        FrontDoor::get()->showWaiting(); // as what waits for the window has it do, such as savePicture
        EXPECT_EQ(findView(), nullptr);
        EXPECT_EQ(held.use_count(), 2) << "it is alive still";
    });
    FrontDoor::get()->showWaiting();
    SceneView* const view = findView();
    ASSERT_NE(view, nullptr);
    QApplication::processEvents();
    clickMiddle(view);
    QApplication::processEvents();
    EXPECT_THAT(paths, ElementsAre("a/b"));
    EXPECT_EQ(held.use_count(), 1);
    tavo::clear();
    FrontDoor::get()->showWaiting();
}

TEST(OnPickTest, TheLastFunctionCounts)
{
    int older = 0;
    int newer = 0;
    const auto click = [] {
        FrontDoor::get()->showWaiting();
        QApplication::processEvents();
        ASSERT_NE(findView(), nullptr);
        clickMiddle(findView());
        QApplication::processEvents();
    };
    const Scene front = scene("front").onPick([&](const Picked&) { ++older; });
    front.cloud("a", {0, 0, 0});
    front.bearings(false); // the point is in the middle
    front.onPick([&](const Picked&) { ++newer; }).orthographic();
    click();
    EXPECT_EQ(older, 0);
    EXPECT_EQ(newer, 1);
    front.onPick([&](const Picked&) { ++older; }, [](std::function<void()> work) { work(); });
    click();
    EXPECT_EQ(older, 1);
    front.onPick({});
    click();
    EXPECT_EQ(older, 1);
    EXPECT_EQ(newer, 1);
    tavo::clear();
    FrontDoor::get()->showWaiting();
}

TEST(SceneMarksTest, LabelsAreWithinTheView)
{
    const QRectF view(0, 0, 400, 300);
    const QSizeF size(150, 100);
    for (double x = 0; x <= 400; x += 8)
        for (double y = 0; y <= 300; y += 6)
            EXPECT_TRUE(view.contains(placeOfLabel(size, {x, y}, view, {})));
    EXPECT_EQ(placeOfLabel(size, {100, 100}, view, {}).topLeft(), QPointF(110, 110));
}

TEST(SceneMarksTest, LabelsLeaveOthersFree)
{
    const QRectF view(0, 0, 400, 300);
    const QRectF other(150, 110, 50, 50);
    EXPECT_FALSE(placeOfLabel({80, 60}, {145, 100}, view, {other}).intersects(other));
}

TEST(SceneMarksTest, LinesThatAreTooLongOrTooManyAreCut)
{
    const QFontMetricsF metrics{QApplication::font()};
    const std::vector<std::string> lines{std::string(500, 'm'), "two", "three", "four"};
    const QStringList fitted = fittedLines(lines, metrics, {200, 3.5 * metrics.lineSpacing()});
    ASSERT_EQ(fitted.size(), 3);
    EXPECT_LE(metrics.horizontalAdvance(fitted[0]), 200);
    EXPECT_TRUE(fitted[0].endsWith(QStringLiteral("…")));
    EXPECT_EQ(fitted[1], "two");
    EXPECT_EQ(fitted[2], QStringLiteral("… and 2 more"));
    EXPECT_EQ(fittedLines({"one", "two"}, metrics, {200, 2 * metrics.lineSpacing()}), QStringList({"one", "two"}));
    EXPECT_THAT(fittedLines(lines, metrics, {200, 2}), IsEmpty());
}

TEST(SceneMarksTest, DistancesAreWholeAndByAxes)
{
    EXPECT_THAT(distanceLines({1, 2, 3}, {4, 6, 3}), ElementsAre("distance 5", "dx 3", "dy 4", "dz 0"));
    EXPECT_EQ(distanceLines({5.5e6, 0, 0}, {5.5e6 + 0.25, 0, 0})[0], "distance 0.25");
}

TEST_F(ScenePickingTest, PinsKnowHowFarRoundingMayHaveMovedThem)
{
    clickMouse(&m_View, pixelOf(m_Points[3]));
    const std::vector<float> sent{-1, -1, -1, 1, -1, -1, -1, 1, 1, 0.3F, -0.2F, 0.4F};
    ItemUpdate points = item(ItemKind::Cloud, sent);
    points.size = 5;
    send(m_View, "points", points);
    QApplication::processEvents();
    clickMouse(&m_View, pixelOf(m_Points[3]));
    const std::vector<ScenePick>& pins = m_View.getMarks().pins();
    ASSERT_EQ(pins.size(), 2U);
    EXPECT_LT(pins[0].uncertainty, 1e-15) << "doubles";
    EXPECT_NEAR(pins[1].uncertainty, 0.4 * 6e-8, 1e-9) << "floats";
}

TEST(SceneMarksTest, DistancesHaveNoDigitsThatRoundingMade)
{
    const Vector3d from(-5.9F, 1e5F, 0.3F);
    const Vector3d to(5.0F, 1e5F + 0.25F, 0.3F);
    EXPECT_THAT(distanceLines(to, from, 5.9 * 6e-8), ElementsAre(testing::_, "dx -10.9", "dy -0.25", "dz 0"));
    EXPECT_EQ(distanceLines({0, 0, 0}, {1e-9, 0, 0}, 1e-8)[1], "dx 0") << "there may be no distance";
    EXPECT_EQ(distanceLines({0, 0, 0}, {1e-9, 0, 0})[1], "dx 1e-09");
}

} // namespace
} // namespace tavo
