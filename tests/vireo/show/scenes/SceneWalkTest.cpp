#include "vireo/show/scenes/SceneWalk.h"

#include <QApplication>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/scenes/sceneUpdates.h"

// A person on the way through a scene.
namespace tavo {
namespace {

class SceneWalkTest : public testing::Test
{
protected:
    SceneWalkTest()
    {
        m_View.resize(400, 300);
        m_View.show();
        send(m_View, "points", item(ItemKind::Cloud, {-1, -1, -1, 1, 1, 1}));
        QApplication::processEvents();
        camera().setDirection(30, 10);
        m_View.showChoice();
    }

    SceneCamera& camera() { return m_View.getCamera(); }

    // Where the eye has moved to: to the right, ahead and up.
    Vector3d way()
    {
        const Vector3d moved = camera().eye() - m_Start;
        const Matrix4 view = camera().modelView();
        const Vector3d right(view.at(0, 0), view.at(0, 1), view.at(0, 2));
        return {dot(moved, right), dot(moved, cross(Vector3d(0, 0, 1), right)), moved[2]};
    }

    // Holds a key until the eye has moved so far.
    Vector3d walk(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, double least = 0.05)
    {
        m_Start = camera().eye();
        pressKey(&m_View, key, modifiers);
        EXPECT_TRUE(QTest::qWaitFor([&] { return length(way()) > least; }));
        releaseKey(&m_View, key, modifiers);
        return (1 / length(way())) * way();
    }

    void expectWay(const Vector3d& way, const Vector3d& expected)
    {
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(way[i], expected[i], 1e-6) << i;
    }

    Vector3d m_Start;
    SceneView m_View{"test"};
};

TEST_F(SceneWalkTest, KeysMoveTheEyeWhileTheyAreDown)
{
    clickKey(&m_View, Qt::Key_G);
    ASSERT_TRUE(m_View.getWalk().isOn());
    const double azimuth = camera().getAzimuth();
    const double distance = camera().getDistance();
    const std::vector<std::pair<Qt::Key, Vector3d>> ways{{Qt::Key_W, {0, 1, 0}}, {Qt::Key_S, {0, -1, 0}},
        {Qt::Key_A, {-1, 0, 0}}, {Qt::Key_D, {1, 0, 0}}, {Qt::Key_E, {0, 0, 1}}, {Qt::Key_Q, {0, 0, -1}},
        {Qt::Key_Up, {0, 1, 0}}, {Qt::Key_Down, {0, -1, 0}}, {Qt::Key_Left, {-1, 0, 0}}, {Qt::Key_Right, {1, 0, 0}}};
    for (const auto& [key, way] : ways)
        expectWay(walk(key), way);
    EXPECT_EQ(camera().getAzimuth(), azimuth);
    EXPECT_NEAR(camera().getDistance(), distance, 1e-12);
    const Vector3d eye = camera().eye();
    QTest::qWait(50);
    EXPECT_EQ(camera().eye(), eye) << "no key is down";
}

TEST_F(SceneWalkTest, TwoKeysGoSlantwise)
{
    clickKey(&m_View, Qt::Key_G);
    pressKey(&m_View, Qt::Key_W);
    const Vector3d way = walk(Qt::Key_D, {}, 0.1);
    EXPECT_GT(way[0], 0.1);
    EXPECT_GT(way[1], 0.1);
    releaseKey(&m_View, Qt::Key_W);
}

TEST_F(SceneWalkTest, WithoutWalkingKeysDoNothing)
{
    m_Start = camera().eye();
    pressKey(&m_View, Qt::Key_W);
    QTest::qWait(50);
    releaseKey(&m_View, Qt::Key_W);
    EXPECT_EQ(camera().eye(), m_Start);
}

TEST_F(SceneWalkTest, ADragLooksAround)
{
    clickKey(&m_View, Qt::Key_G);
    const Vector3d eye = camera().eye();
    const double azimuth = camera().getAzimuth();
    const Vector3d rightBefore = camera().unproject({300, 150, 1}, m_View.viewSize());
    dragMouse(&m_View, Qt::LeftButton, {200, 150}, {240, 150});
    EXPECT_NEAR(length(camera().eye() - eye), 0, 1e-12);
    EXPECT_NE(camera().getAzimuth(), azimuth);
    EXPECT_LT(camera().project(rightBefore, m_View.viewSize()).x, 300)
        << "what was at the right is nearer to the middle";
    const Vector3d above = camera().unproject({200, 50, 1}, m_View.viewSize());
    dragMouse(&m_View, Qt::LeftButton, {200, 150}, {200, 130});
    EXPECT_GT(camera().project(above, m_View.viewSize()).y, 50);
}

TEST_F(SceneWalkTest, TheWheelChangesTheSpeed)
{
    clickKey(&m_View, Qt::Key_G);
    const double speed = m_View.getWalk().getSpeed();
    EXPECT_NEAR(speed, std::sqrt(12.0) / 8, 1e-9) << "of the size of the scene";
    const SceneCamera before = camera();
    QWheelEvent event(QPointF(200, 150), m_View.mapToGlobal(QPoint(200, 150)), QPoint(), QPoint(0, 240), Qt::NoButton,
        {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&m_View, &event);
    EXPECT_GT(m_View.getWalk().getSpeed(), 1.2 * speed);
    EXPECT_TRUE(camera() == before) << "it does not zoom";
}

TEST_F(SceneWalkTest, TheCameraStaysWhereTheWayEnds)
{
    clickKey(&m_View, Qt::Key_G);
    walk(Qt::Key_W);
    const SceneCamera end = camera();
    clickKey(&m_View, Qt::Key_Escape);
    EXPECT_FALSE(m_View.getWalk().isOn());
    send(m_View, "more", item(ItemKind::Cloud, {50, 50, 50, -50, -50, -50}));
    EXPECT_TRUE(camera() == end);
    dragMouse(&m_View, Qt::LeftButton, {200, 150}, {240, 150});
    EXPECT_GT(length(camera().eye() - end.eye()), 0.01) << "it turns about the middle again";
}

// In others, what is ahead does not come nearer.
TEST_F(SceneWalkTest, OnlyPerspectiveViewsAreWalkedIn)
{
    clickKey(&m_View, Qt::Key_O);
    ASSERT_TRUE(camera().isOrthographic());
    clickKey(&m_View, Qt::Key_G);
    EXPECT_FALSE(camera().isOrthographic());
}

TEST_F(SceneWalkTest, ItEndsNowhereWithoutTheKeyboard)
{
    clickKey(&m_View, Qt::Key_G);
    pressKey(&m_View, Qt::Key_W);
    QFocusEvent gone(QEvent::FocusOut);
    QApplication::sendEvent(&m_View, &gone);
    QTest::qWait(50);
    const Vector3d eye = camera().eye();
    QTest::qWait(50);
    EXPECT_EQ(camera().eye(), eye) << "although no key was released here";
}

TEST_F(SceneWalkTest, WhileWalkingTheViewSaysHow)
{
    const QImage before = m_View.grab().toImage();
    clickKey(&m_View, Qt::Key_G);
    EXPECT_NE(m_View.grab().toImage(), before);
    clickKey(&m_View, Qt::Key_G);
    EXPECT_EQ(m_View.grab().toImage(), before);
}

TEST_F(SceneWalkTest, ShiftIsFaster)
{
    clickKey(&m_View, Qt::Key_G);
    const double speed = m_View.getWalk().getSpeed();
    pressKey(&m_View, Qt::Key_Shift);
    EXPECT_EQ(m_View.getWalk().getSpeed(), 4 * speed);
    expectWay(walk(Qt::Key_W, Qt::ShiftModifier), {0, 1, 0});
    releaseKey(&m_View, Qt::Key_Shift);
    EXPECT_EQ(m_View.getWalk().getSpeed(), speed);
}

} // namespace
} // namespace tavo
