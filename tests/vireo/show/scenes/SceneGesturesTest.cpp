#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QMouseEvent>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/scenes/sceneUpdates.h"

namespace tavo {
namespace {

void turnWheel(QWidget* widget, const QPoint& place, int steps)
{
    QWheelEvent event(place, widget->mapToGlobal(place), QPoint(), QPoint(0, 120 * steps), Qt::NoButton, {},
        Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

void doubleClick(QWidget* widget, const QPoint& place)
{
    QMouseEvent event(QEvent::MouseButtonDblClick, place, Qt::LeftButton, Qt::LeftButton, {});
    QApplication::sendEvent(widget, &event);
}

void dragWithShift(QWidget* widget, const QPoint& from, const QPoint& to)
{
    QMouseEvent press(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton, Qt::ShiftModifier);
    QApplication::sendEvent(widget, &press);
    moveMouse(widget, Qt::LeftButton, to);
    releaseMouse(widget, Qt::LeftButton, to);
}

class SceneGesturesTest : public testing::Test
{
protected:
    SceneGesturesTest()
    {
        m_View.resize(400, 300);
        m_View.show();
        ItemUpdate points = item(ItemKind::Cloud, {-1, -1, -1, 1, -1, -1, -1, 1, 1, 0.3, -0.2, 0.4});
        points.size = 7;
        send(m_View, "points", points);
        QApplication::processEvents();
    }

    SceneCamera& camera() { return m_View.getCamera(); }

    QPoint pixelOf(const Vector3d& point)
    {
        const SceneCamera::Pixel pixel = camera().project(point, m_View.viewSize());
        return QPointF(pixel.x, pixel.y).toPoint();
    }

    void expectAt(const QPoint& expected, int within = 1)
    {
        EXPECT_NEAR(pixelOf(m_Hit).x(), expected.x(), within);
        EXPECT_NEAR(pixelOf(m_Hit).y(), expected.y(), within);
    }

    SceneView m_View{"test"};
    const Vector3d m_Hit{0.3, -0.2, 0.4};
};

TEST_F(SceneGesturesTest, TheLeftButtonTurnsAboutTheMiddle)
{
    const SceneCamera before = camera();
    dragMouse(&m_View, Qt::LeftButton, {200, 150}, {250, 160});
    EXPECT_NEAR(camera().getAzimuth(), before.getAzimuth() - 20, 1e-9);
    EXPECT_NEAR(camera().getElevation(), before.getElevation() + 4, 1e-9);
    EXPECT_EQ(camera().getPivot(), before.getPivot());
    dragMouse(&m_View, Qt::LeftButton, {200, 10}, {200, 900});
    EXPECT_EQ(camera().getElevation(), 90) << "up stays up";
}

TEST_F(SceneGesturesTest, F1AndTheQuestionMarkListMouseAndKeys)
{
    for (const Qt::Key key : {Qt::Key_Question, Qt::Key_F1, Qt::Key_F1}) {
        clickKey(&m_View, key);
        const QList<QMessageBox*> lists = m_View.findChildren<QMessageBox*>("gestureHelp");
        ASSERT_EQ(lists.size(), 1);
        EXPECT_TRUE(lists.front()->isVisible());
        EXPECT_FALSE(lists.front()->isModal());
        for (const char* what : {"zooms to what is under the pointer", "walks through the scene", "this list"})
            EXPECT_TRUE(lists.front()->text().contains(what)) << what;
    }
}

TEST_F(SceneGesturesTest, OtherButtonsMoveWhatIsUnderThePointerWithIt)
{
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        const QPoint from = pixelOf(m_Hit);
        dragMouse(&m_View, button, from, from + QPoint(30, -20));
        expectAt(from + QPoint(30, -20));
    }
    const QPoint from = pixelOf(m_Hit);
    dragWithShift(&m_View, from, from + QPoint(-25, 15));
    expectAt(from + QPoint(-25, 15));
    EXPECT_EQ(camera().getElevation(), 25);
}

TEST_F(SceneGesturesTest, ATremblingClickMovesNothing)
{
    const SceneCamera before = camera();
    dragMouse(&m_View, Qt::LeftButton, {200, 150}, {202, 151});
    EXPECT_EQ(camera(), before);
    EXPECT_FALSE(m_View.isChosen());
}

TEST_F(SceneGesturesTest, TheWheelZoomsToWhatIsUnderThePointer)
{
    const QPoint place = pixelOf(m_Hit);
    const double before = camera().project(m_Hit, m_View.viewSize()).depth;
    turnWheel(&m_View, place, 3);
    expectAt(place);
    EXPECT_NEAR(camera().project(m_Hit, m_View.viewSize()).depth / before, 0.87 * 0.87 * 0.87, 0.02);
    turnWheel(&m_View, place, -3);
    EXPECT_NEAR(camera().project(m_Hit, m_View.viewSize()).depth / before, 1, 0.02);
}

TEST_F(SceneGesturesTest, TheWheelZoomsWhereThereIsNothing)
{
    const double before = camera().getDistance();
    turnWheel(&m_View, {2, 2}, 1);
    EXPECT_NEAR(camera().getDistance() / before, 0.87, 1e-9);
}

TEST_F(SceneGesturesTest, ADoubleClickCentresWhatItHits)
{
    const SceneCamera before = camera();
    doubleClick(&m_View, pixelOf(m_Hit) + QPoint(1, 2));
    expectAt({200, 150}, 3);
    EXPECT_LT(length(camera().getPivot() - m_Hit), 0.05);
    EXPECT_TRUE(m_View.isChosen());
    doubleClick(&m_View, {2, 2});
    EXPECT_FALSE(m_View.isChosen()) << "on nothing it shows all";
    EXPECT_EQ(camera(), before);
}

TEST_F(SceneGesturesTest, HomeShowsAll)
{
    const SceneCamera before = camera();
    dragMouse(&m_View, Qt::RightButton, {200, 150}, {290, 160});
    turnWheel(&m_View, {100, 100}, 5);
    clickKey(&m_View, Qt::Key_Home);
    EXPECT_EQ(camera(), before);
    EXPECT_FALSE(m_View.isChosen());
}

TEST_F(SceneGesturesTest, KeysLookFromTheSides)
{
    const auto expect = [this](Qt::Key key, Qt::KeyboardModifiers modifiers, double azimuth, double elevation) {
        clickKey(&m_View, key, modifiers);
        EXPECT_EQ(std::abs(camera().getAzimuth() - azimuth), 0) << key << ' ' << modifiers;
        EXPECT_EQ(camera().getElevation(), elevation) << key << ' ' << modifiers;
    };
    expect(Qt::Key_1, {}, 0, 0);
    expect(Qt::Key_1, Qt::ControlModifier, 180, 0);
    expect(Qt::Key_3, {}, 90, 0);
    expect(Qt::Key_3, Qt::ControlModifier, -90, 0);
    expect(Qt::Key_7, {}, 0, 90);
    expect(Qt::Key_7, Qt::ControlModifier, 0, -90);
    EXPECT_TRUE(m_View.isChosen());
}

TEST_F(SceneGesturesTest, OSwitchesTheProjection)
{
    clickKey(&m_View, Qt::Key_O);
    EXPECT_TRUE(camera().isOrthographic());
    SceneUpdate update = seenFrom("front", false);
    m_View.apply(update);
    EXPECT_TRUE(camera().isOrthographic()) << "as the user chose";
    clickKey(&m_View, Qt::Key_O);
    EXPECT_FALSE(camera().isOrthographic());
}

TEST_F(SceneGesturesTest, NobodysViewMovesWhenDataCome)
{
    dragMouse(&m_View, Qt::LeftButton, {200, 150}, {250, 160});
    const SceneCamera chosen = camera();
    send(m_View, "more", item(ItemKind::Cloud, {100, 100, 100}));
    EXPECT_EQ(camera(), chosen);
    m_View.resize(500, 200);
    QApplication::processEvents();
    EXPECT_EQ(camera(), chosen);
}

} // namespace
} // namespace tavo
