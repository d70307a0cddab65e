#include "vireo/show/slices/SlicesGestures.h"

#include <QApplication>
#include <QMessageBox>
#include <QMouseEvent>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/slices/layers.h"
#include "vireo/show/slices/SlicesView.h"

namespace tavo {
namespace {

void turnWheel(QWidget* widget, const QPoint& place, int eighths, Qt::KeyboardModifiers modifiers = {})
{
    QWheelEvent event(place, widget->mapToGlobal(place), QPoint(), QPoint(0, eighths), Qt::NoButton, modifiers,
        Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

void sendMouse(QWidget* widget, QEvent::Type type, const QPoint& place, Qt::KeyboardModifiers modifiers)
{
    QMouseEvent event(type, place, Qt::LeftButton, Qt::LeftButton, modifiers);
    QApplication::sendEvent(widget, &event);
}

void dragWith(QWidget* widget, Qt::KeyboardModifiers modifiers, const QPoint& from, const QPoint& to)
{
    sendMouse(widget, QEvent::MouseButtonPress, from, modifiers);
    sendMouse(widget, QEvent::MouseMove, to, modifiers);
    sendMouse(widget, QEvent::MouseButtonRelease, to, modifiers);
}

class SlicesGesturesTest : public testing::Test
{
protected:
    SlicesGesturesTest()
    {
        m_View.resize(420, 340);
        m_View.show();
        SlicesUpdate update;
        update.volume = layerBy({40, 40, 40}, [](int x, int y, int z) { return x + y + z; });
        update.settings.window = std::pair(0.0, 100.0);
        m_View.apply(update);
        QApplication::processEvents();
    }

    // Of the widget, where a plane shows what it shows of a sample.
    QPoint placeOf(std::size_t plane, const Vector3i& voxel)
    {
        return m_View.getSight()
            .placeOf(m_View.getModel().grid(), m_View.getModel().planes()[plane], m_View.cells().planes[plane],
                Vector3d(voxel[0], voxel[1], voxel[2]))
            .toPoint();
    }

    Vector3i voxel() { return m_View.getModel().voxel(); }
    const ImageLook& look() { return m_View.getModel().volume().look(); }

    SlicesView m_View{"head"};
};

TEST_F(SlicesGesturesTest, AClickMovesTheCrosshairInAllPlanes)
{
    const QPoint axial = placeOf(0, {7, 31, 0});
    pressMouse(&m_View, Qt::LeftButton, axial);
    EXPECT_EQ(voxel(), Vector3i(7, 31, 20)) << "at once";
    releaseMouse(&m_View, Qt::LeftButton, axial);
    clickMouse(&m_View, placeOf(1, {9, 0, 3}));
    EXPECT_EQ(voxel(), Vector3i(9, 31, 3));
    dragMouse(&m_View, Qt::LeftButton, placeOf(2, {0, 12, 12}), placeOf(2, {0, 30, 14}));
    EXPECT_EQ(voxel(), Vector3i(9, 30, 14)) << "and a drag does";
    dragMouse(&m_View, Qt::LeftButton, placeOf(0, {20, 20, 0}), {-5000, 5000});
    EXPECT_EQ(voxel(), Vector3i(0, 0, 14)) << "as far as the volume goes";
}

TEST_F(SlicesGesturesTest, TheWheelGoesThroughTheSlicesOfThePlane)
{
    for (std::size_t plane = 0; plane < 3; ++plane) {
        const std::size_t axis = m_View.getModel().planes()[plane].through;
        turnWheel(&m_View, m_View.cells().planes[plane].center(), 120);
        EXPECT_EQ(voxel()[axis], 21);
        turnWheel(&m_View, m_View.cells().planes[plane].center(), -240);
        EXPECT_EQ(voxel()[axis], 19);
    }
    const QPoint place = m_View.cells().planes[0].center();
    for (int i = 0; i < 8; ++i)
        turnWheel(&m_View, place, 15);
    EXPECT_EQ(voxel()[2], 20) << "pieces of a step are a step together";
    turnWheel(&m_View, place, 120 * 1000);
    EXPECT_EQ(voxel()[2], 39);
    EXPECT_FALSE(m_View.isChosen());
}

TEST_F(SlicesGesturesTest, CtrlAndTheWheelZoomAtThePointer)
{
    const QPoint place = placeOf(1, {10, 0, 30});
    const Vector3d before = m_View.indexAt(1, place);
    const double scale = m_View.getSight().scale;
    turnWheel(&m_View, place, 600, Qt::ControlModifier);
    EXPECT_GT(m_View.getSight().scale, 1.9 * scale);
    const Vector3d after = m_View.indexAt(1, place);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(after[i], before[i], 1e-9);
    EXPECT_EQ(voxel(), Vector3i(20, 20, 20));
    clickKey(&m_View, Qt::Key_Home);
    EXPECT_EQ(m_View.getSight().scale, scale);
    turnWheel(&m_View, place, 120 * 1000, Qt::ControlModifier);
    EXPECT_EQ(m_View.getSight().scale, 256);
    turnWheel(&m_View, place, -120 * 1000, Qt::ControlModifier);
    EXPECT_EQ(m_View.getSight().scale, scale / 16);
    QApplication::processEvents();
}

TEST_F(SlicesGesturesTest, TheMiddleButtonAndShiftMoveTheVolume)
{
    for (const bool isShift : {false, true}) {
        clickKey(&m_View, Qt::Key_Home);
        const QPoint from = placeOf(0, {20, 20, 0});
        const Vector3d before = m_View.indexAt(0, from);
        const QPoint to = from + QPoint(30, -20);
        if (isShift)
            dragWith(&m_View, Qt::ShiftModifier, from, to);
        else
            dragMouse(&m_View, Qt::MiddleButton, from, to);
        const Vector3d after = m_View.indexAt(0, to);
        EXPECT_NEAR(after[0], before[0], 1e-9);
        EXPECT_NEAR(after[1], before[1], 1e-9);
        EXPECT_EQ(voxel(), Vector3i(20, 20, 20));
    }
    dragMouse(&m_View, Qt::MiddleButton, placeOf(0, {20, 20, 0}), {9000, 9000});
    EXPECT_EQ(m_View.getSight().centre[0], -0.5) << "some of the volume stays in view";
}

TEST_F(SlicesGesturesTest, TheRightButtonAndCtrlSetTheWindow)
{
    const QPoint from = placeOf(0, {20, 20, 0});
    dragMouse(&m_View, Qt::RightButton, from, from + QPoint(50, 0));
    EXPECT_NEAR(look().to - look().from, 100 * std::exp(0.25), 1e-6) << "to the right it gets wider";
    EXPECT_NEAR(look().to + look().from, 100, 1e-6);
    clickKey(&m_View, Qt::Key_R);
    EXPECT_EQ(look().to, 100) << "as the program says";
    dragWith(&m_View, Qt::ControlModifier, from, from + QPoint(0, -40));
    EXPECT_NEAR(look().from, 20, 1e-6) << "upwards it moves up";
    EXPECT_NEAR(look().to, 120, 1e-6);
    EXPECT_EQ(voxel(), Vector3i(20, 20, 20));
    SlicesUpdate update;
    update.settings.window = std::pair(0.0, 1.0);
    m_View.apply(update);
    EXPECT_NEAR(look().to, 120, 1e-6) << "what a person has chosen stays";
}

TEST_F(SlicesGesturesTest, KeysMoveTheCrosshairInThePlaneOfThePointer)
{
    moveMouse(&m_View, {}, m_View.cells().planes[1].center()); // x across, z up
    clickKey(&m_View, Qt::Key_Right);
    clickKey(&m_View, Qt::Key_Up);
    clickKey(&m_View, Qt::Key_Up);
    EXPECT_EQ(voxel(), Vector3i(21, 20, 22));
    clickKey(&m_View, Qt::Key_Left);
    clickKey(&m_View, Qt::Key_Down);
    EXPECT_EQ(voxel(), Vector3i(20, 20, 21));
    clickKey(&m_View, Qt::Key_PageUp);
    EXPECT_EQ(voxel(), Vector3i(20, 30, 21));
    clickKey(&m_View, Qt::Key_PageDown);
    clickKey(&m_View, Qt::Key_PageDown);
    EXPECT_EQ(voxel(), Vector3i(20, 10, 21));
}

TEST_F(SlicesGesturesTest, KeysTurnSlicesRoundZoomAndInterpolate)
{
    SlicesUpdate update;
    update.volume = layerBy({40, 40, 40}, [](int x, int, int) { return x; });
    update.volume->isOriented = true;
    m_View.apply(update);
    EXPECT_TRUE(m_View.getModel().planes()[0].isAcrossReversed);
    moveMouse(&m_View, {}, m_View.cells().planes[0].center());
    clickKey(&m_View, Qt::Key_Right);
    EXPECT_EQ(voxel()[0], 19) << "what is on the right";
    clickKey(&m_View, Qt::Key_N);
    EXPECT_FALSE(m_View.getModel().planes()[0].isAcrossReversed);
    EXPECT_FALSE(m_View.getModel().planes()[1].isAcrossReversed);
    EXPECT_TRUE(m_View.getModel().planes()[2].isAcrossReversed);
    clickKey(&m_View, Qt::Key_F);
    EXPECT_FALSE(m_View.getModel().planes()[2].isAcrossReversed);
    const double scale = m_View.getSight().scale;
    clickKey(&m_View, Qt::Key_Plus);
    EXPECT_GT(m_View.getSight().scale, scale);
    clickKey(&m_View, Qt::Key_Minus);
    EXPECT_NEAR(m_View.getSight().scale, scale, 1e-9);
    clickKey(&m_View, Qt::Key_I);
    EXPECT_TRUE(m_View.getModel().isInterpolated());
    clickKey(&m_View, Qt::Key_I);
    EXPECT_FALSE(m_View.getModel().isInterpolated());
}

TEST_F(SlicesGesturesTest, TwoClicksMeasureADistance)
{
    const auto distance = [this] { return m_View.getDistance()->lengthIn(m_View.getModel().grid()); };
    const double pixel = 1 / m_View.getSight().scale;
    const QImage before = m_View.picture({400, 300});
    clickKey(&m_View, Qt::Key_M);
    clickMouse(&m_View, placeOf(0, {10, 10, 0}));
    moveMouse(&m_View, {}, placeOf(0, {10, 20, 0}));
    EXPECT_NEAR(distance(), 10, 2 * pixel) << "the end follows the pointer";
    clickMouse(&m_View, placeOf(0, {13, 14, 0}));
    EXPECT_NEAR(distance(), 5, 2 * pixel);
    moveMouse(&m_View, {}, placeOf(0, {30, 30, 0}));
    EXPECT_NEAR(distance(), 5, 2 * pixel) << "up to the second click";
    EXPECT_EQ(voxel(), Vector3i(20, 20, 20)) << "the crosshair stays";
    EXPECT_NE(m_View.picture({400, 300}), before);
    turnWheel(&m_View, placeOf(0, {10, 10, 0}), 120);
    turnWheel(&m_View, placeOf(0, {10, 10, 0}), -120);
    EXPECT_NEAR(distance(), 5, 2 * pixel);
    clickMouse(&m_View, placeOf(1, {10, 0, 10}));
    EXPECT_EQ(m_View.getDistance()->plane, 1U) << "the next one";
    EXPECT_FALSE(m_View.getDistance()->isDone);
    clickKey(&m_View, Qt::Key_Escape);
    EXPECT_FALSE(m_View.getDistance());
    EXPECT_EQ(m_View.picture({400, 300}), before);
    clickMouse(&m_View, placeOf(0, {7, 31, 0}));
    EXPECT_EQ(voxel(), Vector3i(7, 31, 20));
}

TEST_F(SlicesGesturesTest, ThePointerIsFollowed)
{
    moveMouse(&m_View, {}, placeOf(0, {3, 4, 0}));
    EXPECT_EQ(m_View.textOfPlace().section("  ", 0, 1), "27  voxel 3, 4, 20");
    turnWheel(&m_View, placeOf(0, {3, 4, 0}), 120);
    EXPECT_EQ(m_View.textOfPlace().section("  ", 0, 1), "28  voxel 3, 4, 21") << "also while it rests";
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&m_View, &leave);
    EXPECT_EQ(m_View.textOfPlace().section("  ", 0, 1), "61  voxel 20, 20, 21");
}

TEST_F(SlicesGesturesTest, ThePointerNamesLabelsAndTellsTheOverlay)
{
    SlicesUpdate update;
    update.labels.emplace_back();
    const SliceLayer halves = layerBy({40, 40, 40}, [](int x, int, int) { return x < 20 ? 0 : 17; });
    update.labels.back().samples = {halves.samples.numbers, 1};
    update.labels.back().names = {{17, "hippocampus"}};
    update.overlay = layerBy({20, 20, 20}, [](int x, int, int) { return 10 * x; }, {2, 2, 2}, {0.5, 0.5, 0.5});
    m_View.apply(update);
    for (const std::size_t plane : {0U, 1U}) {
        const auto textAt = [&](const Vector3i& voxel) {
            moveMouse(&m_View, {}, placeOf(plane, voxel));
            return m_View.textOfPlace().section("  ", 3).toStdString();
        };
        EXPECT_EQ(textAt({30, 20, 20}), "overlay 150  hippocampus") << plane;
        EXPECT_EQ(textAt({4, 20, 20}), "overlay 20") << plane << ": 0 is none";
    }
}

// At the middle of each edge, on a black volume.
TEST_F(SlicesGesturesTest, LettersOfSidesTurnWithTheSlices)
{
    const auto edgesOf = [this](std::size_t plane) {
        const QImage picture = m_View.grab().toImage().convertToFormat(QImage::Format_RGB32);
        const QRect cell = m_View.cells().planes[plane];
        const QRect left(cell.left(), cell.center().y() - 10, 16, 20);
        const QRect right(cell.right() - 16, cell.center().y() - 10, 16, 20);
        return std::pair(picture.copy(left), picture.copy(right));
    };
    const auto send = [this](bool isOriented) {
        SlicesUpdate update;
        update.volume = layerBy({40, 40, 40}, [](int, int, int) { return 0; });
        update.volume->isOriented = isOriented;
        m_View.apply(update);
        QApplication::processEvents();
    };
    for (const auto& [plane, key] : {std::pair(0U, Qt::Key_N), std::pair(2U, Qt::Key_F)}) {
        send(false);
        const auto without = edgesOf(plane);
        send(true);
        const auto before = edgesOf(plane);
        EXPECT_NE(before.first, without.first) << plane;
        EXPECT_NE(before.second, without.second) << plane;
        clickKey(&m_View, key);
        const auto turned = edgesOf(plane);
        EXPECT_NE(turned.first, before.first) << plane;
        EXPECT_NE(turned.second, before.second) << plane;
        clickKey(&m_View, key);
        EXPECT_EQ(edgesOf(plane), before) << plane;
    }
}

TEST(SlicesWithoutVolumeTest, GesturesDoNothing)
{
    SlicesView view("nothing");
    view.resize(300, 200);
    view.show();
    QApplication::processEvents();
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton, Qt::RightButton})
        dragMouse(&view, button, {20, 20}, {80, 60});
    turnWheel(&view, {50, 50}, 120);
    turnWheel(&view, {50, 50}, 120, Qt::ControlModifier);
    for (const Qt::Key key :
        {Qt::Key_Up, Qt::Key_PageDown, Qt::Key_N, Qt::Key_I, Qt::Key_R, Qt::Key_Plus, Qt::Key_Home})
        clickKey(&view, key);
    EXPECT_EQ(view.textOfPlace(), "");
}

TEST_F(SlicesGesturesTest, F1AndTheQuestionMarkListMouseAndKeys)
{
    for (const Qt::Key key : {Qt::Key_Question, Qt::Key_F1}) {
        clickKey(&m_View, key);
        const QList<QMessageBox*> lists = m_View.findChildren<QMessageBox*>("gestureHelp");
        ASSERT_EQ(lists.size(), 1);
        for (const char* what : {"moves the crosshair", "this list"})
            EXPECT_TRUE(lists.front()->text().contains(what)) << what;
    }
}

} // namespace
} // namespace tavo
