#include "tavo/base/gui/ExaminerCameraController.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace tavo {
namespace {

void expectNear(const Vector3f& actual, const Vector3f& expected, float tolerance = 1e-4f)
{
    for (unsigned int axis = 0; axis < 3; ++axis)
        EXPECT_NEAR(actual[axis], expected[axis], tolerance) << "axis " << axis;
}

// A view of 200 x 100 pixels whose camera looks at (1, 0, 0) from 10 units in front of it.
class ExaminerCameraControllerTest : public testing::Test
{
protected:
    ExaminerCameraControllerTest()
    {
        m_Controller.setCamera(&m_Camera);
        m_Controller.setSize(200, 100);
        m_Controller.place(EYE, LOOK_AT, UP);
    }

    void drag(unsigned int button, int dx, int dy)
    {
        m_Controller.mousePress(50, 50, button, Modifiers());
        m_Controller.mouseMove(50 + dx / 2, 50 + dy / 2);
        m_Controller.mouseMove(50 + dx, 50 + dy);
        m_Controller.mouseRelease(50 + dx, 50 + dy, button, Modifiers());
        m_Controller.update();
    }

    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        m_Controller.keyPress(GeneralKey(key, Modifiers(modifiers)));
        m_Controller.keyRelease(GeneralKey(key, Modifiers(modifiers)));
        m_Controller.update();
    }

    float distance() const { return length(m_Camera.getEyePoint() - m_Camera.getLookAtPoint()); }

    const Vector3f EYE{1.0f, 0.0f, 10.0f};
    const Vector3f LOOK_AT{1.0f, 0.0f, 0.0f};
    const Vector3f UP{0.0f, 1.0f, 0.0f};
    Camera m_Camera;
    ExaminerCameraController m_Controller;
};

TEST_F(ExaminerCameraControllerTest, PlacesTheCameraAtOnce)
{
    EXPECT_EQ(m_Camera.getEyePoint(), EYE);
    EXPECT_EQ(m_Camera.getLookAtPoint(), LOOK_AT);
    EXPECT_EQ(m_Camera.getUpVector(), UP);
}

TEST_F(ExaminerCameraControllerTest, TurnsByHalfACircleAlongTheSmallerSide)
{
    drag(ExaminerCameraController::LEFT_BUTTON, 50, 0);
    // Held and drawn to the right by a quarter turn, the object shows what was on its left: the camera went to the
    // left.
    expectNear(m_Camera.getEyePoint(), {-9.0f, 0.0f, 0.0f});
    expectNear(m_Camera.getLookAtPoint(), LOOK_AT);
    expectNear(m_Camera.getUpVector(), UP);
}

TEST_F(ExaminerCameraControllerTest, TurnsTheObjectTowardsThePersonWhenDraggedDown)
{
    drag(ExaminerCameraController::LEFT_BUTTON, 0, 25);
    // Its top comes forward: the camera has climbed.
    expectNear(m_Camera.getEyePoint(), {1.0f, 10.0f * std::sqrt(0.5f), 10.0f * std::sqrt(0.5f)});
    EXPECT_NEAR(distance(), 10.0f, 1e-4f);
}

TEST_F(ExaminerCameraControllerTest, TurnsOverThePolesWithoutLosingItsWay)
{
    for (int i = 0; i < 40; ++i)
        drag(ExaminerCameraController::LEFT_BUTTON, 0, 10);
    // Forty drags of 18 degrees are two whole turns.
    expectNear(m_Camera.getEyePoint(), EYE, 1e-3f);
    expectNear(m_Camera.getUpVector(), UP, 1e-3f);
}

TEST_F(ExaminerCameraControllerTest, MovesNearerAndFartherWithTheRightButton)
{
    drag(ExaminerCameraController::RIGHT_BUTTON, 0, -50);
    EXPECT_LT(distance(), 9.9f);
    expectNear(m_Camera.getLookAtPoint(), LOOK_AT);
    drag(ExaminerCameraController::RIGHT_BUTTON, 0, 50);
    EXPECT_NEAR(distance(), 10.0f, 1e-3f);
    drag(ExaminerCameraController::RIGHT_BUTTON, 0, 50);
    EXPECT_GT(distance(), 10.1f);
}

TEST_F(ExaminerCameraControllerTest, ShiftsByWhatThePointerPassesOver)
{
    drag(ExaminerCameraController::MIDDLE_BUTTON, 0, 100);
    // The view is 2 * 10 * tan(22.5 degrees) units high where the look-at point is; the object went down by that much.
    const float height = 20.0f * std::tan(0.39269908f);
    expectNear(m_Camera.getLookAtPoint(), {1.0f, height, 0.0f});
    expectNear(m_Camera.getEyePoint(), {1.0f, height, 10.0f});
    drag(ExaminerCameraController::MIDDLE_BUTTON, 100, 0);
    expectNear(m_Camera.getLookAtPoint(), {1.0f - height, height, 0.0f});
}

TEST_F(ExaminerCameraControllerTest, MovesWithTheWheel)
{
    m_Controller.mouseWheel(1.0);
    m_Controller.update();
    EXPECT_NEAR(distance(), 10.0f / 1.15f, 1e-4f);
    m_Controller.mouseWheel(-1.0);
    m_Controller.update();
    EXPECT_NEAR(distance(), 10.0f, 1e-4f);
}

TEST_F(ExaminerCameraControllerTest, DoesNothingWithoutAButtonOrWithOneItDoesNotKnow)
{
    const Camera before = m_Camera;
    m_Controller.mouseMove(80, 80);
    m_Controller.update();
    EXPECT_EQ(m_Camera, before);
    drag(0, 30, 30);
    drag(8, 30, 30);
    EXPECT_EQ(m_Camera, before);
}

TEST_F(ExaminerCameraControllerTest, StopsWhenTheButtonIsReleased)
{
    drag(ExaminerCameraController::LEFT_BUTTON, 10, 0);
    const Camera after = m_Camera;
    m_Controller.mouseMove(90, 90);
    m_Controller.update();
    EXPECT_EQ(m_Camera, after);
}

TEST_F(ExaminerCameraControllerTest, WaitsForTheNextFrame)
{
    m_Controller.mousePress(0, 0, ExaminerCameraController::LEFT_BUTTON, Modifiers());
    m_Controller.mouseMove(30, 0);
    EXPECT_EQ(m_Camera.getEyePoint(), EYE);
    m_Controller.update();
    EXPECT_NE(m_Camera.getEyePoint(), EYE);
}

TEST_F(ExaminerCameraControllerTest, TurnsWithTheArrowKeys)
{
    press(Qt::Key_Right);
    EXPECT_LT(m_Camera.getEyePoint()[0], EYE[0]);
    press(Qt::Key_Left);
    expectNear(m_Camera.getEyePoint(), EYE);
    press(Qt::Key_Down);
    EXPECT_GT(m_Camera.getEyePoint()[1], 0.0f);
    press(Qt::Key_Up);
    expectNear(m_Camera.getEyePoint(), EYE);
}

TEST_F(ExaminerCameraControllerTest, ShiftsWithTheArrowKeysAndShift)
{
    press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_LT(m_Camera.getLookAtPoint()[0], LOOK_AT[0]);
    EXPECT_NEAR(distance(), 10.0f, 1e-4f);
}

TEST_F(ExaminerCameraControllerTest, MovesWithPlusAndMinusAndTheirKeysUnshifted)
{
    for (int key : {Qt::Key_Plus, Qt::Key_Equal}) {
        press(key);
        EXPECT_NEAR(distance(), 10.0f / 1.15f, 1e-4f);
        press(Qt::Key_Minus);
        EXPECT_NEAR(distance(), 10.0f, 1e-4f);
    }
    press(Qt::Key_Underscore);
    EXPECT_NEAR(distance(), 11.5f, 1e-4f);
}

TEST_F(ExaminerCameraControllerTest, GoesHomeToWhereItWasPlaced)
{
    drag(ExaminerCameraController::LEFT_BUTTON, 33, 12);
    drag(ExaminerCameraController::MIDDLE_BUTTON, 33, 12);
    drag(ExaminerCameraController::RIGHT_BUTTON, 33, 12);
    press(Qt::Key_Home);
    EXPECT_EQ(m_Camera.getEyePoint(), EYE);
    EXPECT_EQ(m_Camera.getLookAtPoint(), LOOK_AT);
    EXPECT_EQ(m_Camera.getUpVector(), UP);
}

TEST_F(ExaminerCameraControllerTest, KeepsItsHomeWhenAPlaceIsRefused)
{
    drag(ExaminerCameraController::LEFT_BUTTON, 33, 12);
    const Camera turned = m_Camera;
    m_Controller.place({std::numeric_limits<float>::quiet_NaN(), 0.0f, 0.0f}, LOOK_AT, UP);
    EXPECT_EQ(m_Camera, turned);
    press(Qt::Key_Home);
    EXPECT_EQ(m_Camera.getEyePoint(), EYE);
}

TEST_F(ExaminerCameraControllerTest, KeepsTurningWhenAnUnknownButtonComesIn)
{
    m_Controller.mousePress(0, 0, ExaminerCameraController::LEFT_BUTTON, Modifiers());
    m_Controller.mousePress(0, 0, 0, Modifiers());
    m_Controller.mouseMove(30, 0);
    m_Controller.update();
    EXPECT_NE(m_Camera.getEyePoint(), EYE);
}

TEST_F(ExaminerCameraControllerTest, NeverReachesTheLookAtPointNorTheEndOfTheNumbers)
{
    m_Controller.mouseWheel(1e9);
    m_Controller.update();
    EXPECT_GT(distance(), 0.0f);
    for (int i = 0; i < 100; ++i) {
        m_Controller.mouseWheel(-1e9);
        m_Controller.update();
    }
    EXPECT_TRUE(std::isfinite(distance()));
    m_Controller.mouseWheel(std::numeric_limits<double>::quiet_NaN());
    m_Controller.mouseWheel(std::numeric_limits<double>::infinity());
    m_Controller.update();
    EXPECT_TRUE(std::isfinite(distance()));
}

TEST_F(ExaminerCameraControllerTest, WorksWithoutACamera)
{
    m_Controller.setCamera(nullptr);
    drag(ExaminerCameraController::LEFT_BUTTON, 33, 12);
    press(Qt::Key_Home);
    m_Controller.place(EYE, LOOK_AT, UP);
    m_Controller.setCamera(&m_Camera);
    EXPECT_EQ(m_Camera.getEyePoint(), EYE);
}

TEST_F(ExaminerCameraControllerTest, KeepsTheCameraUsableWhateverIsSent)
{
    std::mt19937 random(1);
    const int extremes[] = {INT_MIN, INT_MAX, -1, 0, 1, 100, -100000};
    const float floats[] = {0.0f, 1.0f, -1e-30f, 1e30f, std::numeric_limits<float>::quiet_NaN(),
        std::numeric_limits<float>::infinity(), std::numeric_limits<float>::max()};
    const auto pick = [&](const auto& values) { return values[random() % std::size(values)]; };
    const auto vector = [&] { return Vector3f(pick(floats), pick(floats), pick(floats)); };

    for (int i = 0; i < 20000; ++i) {
        switch (random() % 8) {
        case 0: m_Controller.mousePress(pick(extremes), pick(extremes), random() % 6, Modifiers()); break;
        case 1: m_Controller.mouseRelease(pick(extremes), pick(extremes), random() % 6, Modifiers()); break;
        case 2: m_Controller.mouseMove(pick(extremes), pick(extremes)); break;
        case 3: m_Controller.mouseWheel(pick(floats)); break;
        case 4: m_Controller.setSize(pick(extremes), pick(extremes)); break;
        case 5: m_Controller.keyPress(GeneralKey(Qt::Key_Home + random() % 8, Modifiers())); break;
        case 6: m_Controller.place(vector(), vector(), vector()); break;
        default: m_Controller.update(); break;
        }
        for (unsigned int axis = 0; axis < 3; ++axis) {
            ASSERT_TRUE(std::isfinite(m_Camera.getEyePoint()[axis])) << "step " << i;
            ASSERT_TRUE(std::isfinite(m_Camera.getLookAtPoint()[axis])) << "step " << i;
            ASSERT_NEAR(length(m_Camera.getUpVector()), 1.0f, 1e-4f) << "step " << i;
        }
        ASSERT_NE(m_Camera.getEyePoint(), m_Camera.getLookAtPoint()) << "step " << i;
    }
}

} // namespace
} // namespace tavo
