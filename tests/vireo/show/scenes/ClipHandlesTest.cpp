#include "vireo/show/scenes/ClipHandles.h"

#include <QApplication>
#include <QCheckBox>
#include <QPushButton>
#include <QTimer>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/scenes/sceneUpdates.h"

// What a person does to the clip box of a scene.
namespace tavo {
namespace {

void turnWheelWithShift(QWidget* widget, int steps)
{
    const QPoint place(200, 150);
    QWheelEvent event(place, widget->mapToGlobal(place), QPoint(), QPoint(0, 120 * steps), Qt::NoButton,
        Qt::ShiftModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

class ClipHandlesTest : public testing::TestWithParam<Vector3d>
{
protected:
    ClipHandlesTest()
    {
        m_View.resize(400, 300);
        m_View.show();
        ItemUpdate points =
            item(ItemKind::Cloud, std::vector<Vector3d>{m_Centre - Vector3d(1, 1, 1), m_Centre + Vector3d(1, 1, 1)});
        send(m_View, "points", points);
        QApplication::processEvents();
    }

    const std::optional<SceneBox>& box() const { return m_View.getModel().getClipBox().shown(); }

    QPoint pixelOf(const Vector3d& point)
    {
        const SceneCamera::Pixel pixel = m_View.getCamera().project(point, m_View.viewSize());
        return QPointF(pixel.x, pixel.y).toPoint();
    }

    QPoint handleOf(std::size_t face) { return pixelOf(middleOfFace(*box(), face)); }

    const Vector3d m_Centre = GetParam();
    SceneView m_View{"test"};
};

TEST_P(ClipHandlesTest, AKeyShowsAndHidesTheBox)
{
    clickKey(&m_View, Qt::Key_C);
    ASSERT_TRUE(box());
    EXPECT_LT(box()->getMin()[0], m_Centre[0] - 1);
    clickKey(&m_View, Qt::Key_C);
    EXPECT_FALSE(box());
}

TEST_P(ClipHandlesTest, AFaceFollowsThePointer)
{
    clickKey(&m_View, Qt::Key_C);
    const SceneCamera camera = m_View.getCamera();
    for (std::size_t face = 0; face < ClipBox::NUM_FACES; ++face) {
        const SceneBox before = *box();
        Vector3d to = middleOfFace(before, face);
        to[face / 2] = m_Centre[face / 2] + (face % 2 ? 0.5 : -0.5);
        dragMouse(&m_View, Qt::LeftButton, handleOf(face), pixelOf(to));
        EXPECT_NEAR(middleOfFace(*box(), face)[face / 2], to[face / 2], 0.05) << face;
        EXPECT_EQ(middleOfFace(*box(), face ^ 1U)[face / 2], middleOfFace(before, face ^ 1U)[face / 2]) << face;
        EXPECT_LE((handleOf(face) - pixelOf(to)).manhattanLength(), 2) << face;
    }
    EXPECT_TRUE(m_View.getCamera() == camera) << "the scene does not turn";
}

TEST_P(ClipHandlesTest, BesideTheHandlesTheSceneTurns)
{
    clickKey(&m_View, Qt::Key_C);
    const SceneBox before = *box();
    const double azimuth = m_View.getCamera().getAzimuth();
    dragMouse(&m_View, Qt::LeftButton, {5, 5}, {60, 5});
    EXPECT_NE(m_View.getCamera().getAzimuth(), azimuth);
    EXPECT_EQ(box()->getMin(), before.getMin());
    clickKey(&m_View, Qt::Key_C);
    dragMouse(&m_View, Qt::LeftButton, pixelOf(middleOfFace(before, 1)), {60, 5});
    EXPECT_FALSE(box());
}

// The pointer cannot say where on the axis it is: it moves the face up and down.
TEST_P(ClipHandlesTest, AFaceThatOneLooksStraightAtMovesToo)
{
    m_View.lookFrom(SceneCamera::Side::Top);
    m_View.switchProjection();
    clickKey(&m_View, Qt::Key_C);
    const double before = box()->getMax()[2];
    const QPoint handle = handleOf(5);
    dragMouse(&m_View, Qt::LeftButton, handle, handle + QPoint(0, 30));
    EXPECT_NEAR(before - box()->getMax()[2], 30 * m_View.getCamera().unitsPerPixel(1, m_View.viewSize()), 1e-6);
}

TEST_P(ClipHandlesTest, ASlabMovesWithTheWheelAndAsAWhole)
{
    clickKey(&m_View, Qt::Key_Z);
    ASSERT_EQ(m_View.getModel().getClipBox().slabAxis(), 2U);
    const double thickness = m_View.getModel().getClipBox().thicknessOf(2);
    const SceneCamera camera = m_View.getCamera();
    turnWheelWithShift(&m_View, 2);
    EXPECT_NEAR(box()->centre()[2], m_Centre[2] + thickness, 1e-6);
    EXPECT_TRUE(m_View.getCamera() == camera);

    Vector3d to = middleOfFace(*box(), 5);
    to[2] += 0.6;
    dragMouse(&m_View, Qt::LeftButton, handleOf(5), pixelOf(to));
    EXPECT_NEAR(box()->centre()[2], m_Centre[2] + thickness + 0.6, 0.03);
    EXPECT_NEAR(m_View.getModel().getClipBox().thicknessOf(2), thickness, 1e-6);

    clickKey(&m_View, Qt::Key_Z);
    EXPECT_GT(m_View.getModel().getClipBox().thicknessOf(2), 2);
    turnWheelWithShift(&m_View, 2);
    EXPECT_FALSE(m_View.getCamera() == camera) << "without a slab it zooms";
}

TEST_P(ClipHandlesTest, ThePanelHasABoxToCheckAndThreeButtons)
{
    m_View.resize(1000, 500);
    m_View.switchPanel();
    if (!m_View.isPanelShown())
        m_View.switchPanel();
    auto* const check = m_View.findChild<QCheckBox*>("clipBox");
    auto* const slab = m_View.findChild<QPushButton*>("slabY");
    ASSERT_TRUE(check && slab && check->isVisible() && slab->isVisible());
    clickMouse(slab);
    EXPECT_EQ(m_View.getModel().getClipBox().slabAxis(), 1U);
    const auto* const timer = m_View.findChild<QTimer*>("followSoon");
    EXPECT_TRUE(QTest::qWaitFor([timer] { return !timer->isActive(); }));
    EXPECT_TRUE(check->isChecked());
    clickMouse(check, QPoint(8, check->height() / 2));
    EXPECT_FALSE(box());
    EXPECT_TRUE(QTest::qWaitFor([timer] { return !timer->isActive(); }));
    EXPECT_FALSE(slab->isChecked());
}

TEST_P(ClipHandlesTest, TheNearestCornerIsCutOutAndDragged)
{
    m_View.resize(1000, 500);
    if (!m_View.isPanelShown())
        m_View.switchPanel();
    auto* const check = m_View.findChild<QCheckBox*>("cutOut");
    ASSERT_TRUE(check && check->isVisible());
    clickMouse(check, QPoint(8, check->height() / 2));
    const ClipBox& clip = m_View.getModel().getClipBox();
    ASSERT_TRUE(clip.isCutOut());
    EXPECT_FALSE(clip.isSeen(m_Centre + Vector3d(0.5, -0.5, 0.5))) << "nearest to the eye";
    EXPECT_TRUE(clip.isSeen(m_Centre - Vector3d(0.5, 0.5, 0.5)));
    EXPECT_TRUE(clip.isSeen(m_Centre + Vector3d(0.5, 0.5, 0.5)));
    Vector3d to = middleOfFace(*box(), 0);
    to[0] = m_Centre[0] + 0.6;
    dragMouse(&m_View, Qt::LeftButton, handleOf(0), pixelOf(to));
    EXPECT_TRUE(clip.isSeen(m_Centre + Vector3d(0.5, -0.5, 0.5)));
    clickKey(&m_View, Qt::Key_C, Qt::ShiftModifier);
    EXPECT_FALSE(box()) << "as it was before";
    clickKey(&m_View, Qt::Key_C);
    const SceneBox all = *box();
    m_View.changeClipBox([](ClipBox& changed, const SceneBox&) { changed.moveFace(0, changed.shown()->centre()[0]); });
    clickKey(&m_View, Qt::Key_C, Qt::ShiftModifier);
    EXPECT_TRUE(clip.isCutOut()) << "a box that is there already";
    EXPECT_EQ(box()->getMax(), all.getMax());
}

// Whatever the program sends.
TEST_P(ClipHandlesTest, TheBoxOfAPersonStays)
{
    clickKey(&m_View, Qt::Key_X);
    const Vector3d low = box()->getMin();
    SceneUpdate update;
    update.clipBox.emplace();
    m_View.apply(update);
    ASSERT_TRUE(box());
    EXPECT_EQ(box()->getMin(), low);
}

TEST_P(ClipHandlesTest, TheBoxIsSeenInTheViewAndNotInPictures)
{
    const QImage before = m_View.grab().toImage();
    const QImage pictureBefore = m_View.picture({400, 300});
    clickKey(&m_View, Qt::Key_C);
    QApplication::processEvents();
    EXPECT_NE(m_View.grab().toImage(), before);
    EXPECT_EQ(m_View.picture({400, 300}), pictureBefore);
}

INSTANTIATE_TEST_SUITE_P(NearAndFar, ClipHandlesTest, testing::Values(Vector3d(), Vector3d(5.5e6, -3e6, 120)));

} // namespace
} // namespace tavo
