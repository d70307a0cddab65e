#include "tavo/base/gui/ExaminerCameraController.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tavo {

// Defined here as well as in the class: a DLL exports only what is defined in one of its sources.
constexpr unsigned int ExaminerCameraController::LEFT_BUTTON;
constexpr unsigned int ExaminerCameraController::RIGHT_BUTTON;
constexpr unsigned int ExaminerCameraController::MIDDLE_BUTTON;

namespace {

// A drag along the view's smaller side turns by half a circle.
constexpr double TURN_PER_SIDE = std::numbers::pi;
// A drag along the view's height brings ten times nearer.
const double APPROACH_PER_HEIGHT = std::log(10.0);
const double APPROACH_PER_STEP = std::log(1.15);
// An arrow key moves as a drag along this part of the view's smaller side does.
constexpr double KEY_DRAG = 1.0 / 24.0;
// The vertical angle of view for which a shift follows the pointer.
constexpr double FIELD_OF_VIEW = std::numbers::pi / 4.0;
// One update approaches or leaves by this power of e at most, so that exp stays finite.
constexpr double LARGEST_APPROACH = 20.0;
constexpr double SMALLEST_DISTANCE = 1e-5;
constexpr double LARGEST_DISTANCE = 1e15;

Vector3d widened(const Vector3f& v)
{
    return {v[0], v[1], v[2]};
}

Vector3f narrowed(const Vector3d& v)
{
    return {v[0], v[1], v[2]};
}

// v turned about a unit axis (Rodrigues).
Vector3d turned(const Vector3d& v, const Vector3d& axis, double angle)
{
    return v * std::cos(angle) + cross(axis, v) * std::sin(angle) + axis * (dot(axis, v) * (1.0 - std::cos(angle)));
}

// No nearer than the digits of the look-at point's coordinates can tell from it.
double smallestDistance(const Vector3d& lookAt)
{
    const double largest = std::max({std::abs(lookAt[0]), std::abs(lookAt[1]), std::abs(lookAt[2])});
    return std::max(SMALLEST_DISTANCE, 1e-5 * largest);
}

} // namespace

void ExaminerCameraController::setCamera(Camera* camera)
{
    m_Camera = camera;
    if (camera)
        m_Home = *camera;
}

void ExaminerCameraController::setSize(int width, int height)
{
    m_Width = std::max(width, 1);
    m_Height = std::max(height, 1);
}

void ExaminerCameraController::mousePress(int x, int y, unsigned int button, Modifiers)
{
    m_Pointer = {x, y};
    if (button == LEFT_BUTTON || button == RIGHT_BUTTON || button == MIDDLE_BUTTON)
        m_Button = button;
}

void ExaminerCameraController::mouseRelease(int x, int y, unsigned int button, Modifiers)
{
    mouseMove(x, y);
    if (button == m_Button)
        m_Button = 0;
}

void ExaminerCameraController::mouseMove(int x, int y)
{
    const Vector2d drag(double(x) - m_Pointer[0], double(y) - m_Pointer[1]);
    m_Pointer = {x, y};
    if (m_Button == LEFT_BUTTON)
        m_Movement.turn += drag;
    else if (m_Button == MIDDLE_BUTTON)
        m_Movement.shift += drag;
    else if (m_Button == RIGHT_BUTTON)
        m_Movement.approach -= drag[1] / m_Height * APPROACH_PER_HEIGHT;
}

void ExaminerCameraController::mouseWheel(double notches)
{
    if (std::isfinite(notches))
        m_Movement.approach += notches * APPROACH_PER_STEP;
}

void ExaminerCameraController::keyPress(GeneralKey key)
{
    auto& drag = key.getModifiers().isShift() ? m_Movement.shift : m_Movement.turn;
    const double step = KEY_DRAG * smallerSide();
    switch (key.getKey()) {
    case Qt::Key_Left: drag[0] -= step; break;
    case Qt::Key_Right: drag[0] += step; break;
    case Qt::Key_Up: drag[1] -= step; break;
    case Qt::Key_Down: drag[1] += step; break;
    // The plus sign shares its key with the equals sign on many keyboards, the minus sign with the underscore.
    case Qt::Key_Plus:
    case Qt::Key_Equal: mouseWheel(1.0); break;
    case Qt::Key_Minus:
    case Qt::Key_Underscore: mouseWheel(-1.0); break;
    case Qt::Key_Home:
        m_Movement = Movement();
        m_Movement.home = true;
        break;
    default: break;
    }
}

// Keys act when they are pressed, and again as they repeat.
void ExaminerCameraController::keyRelease(GeneralKey) {}

void ExaminerCameraController::update()
{
    const Movement movement = m_Movement;
    m_Movement = Movement();
    if (!m_Camera)
        return;
    if (movement.home)
        *m_Camera = m_Home;
    apply(movement);
}

void ExaminerCameraController::place(const Vector3f& eye, const Vector3f& lookAt, const Vector3f& up)
{
    Camera& placed = m_Camera ? *m_Camera : m_Home;
    if (!placed.setView(eye, lookAt, up))
        return;
    m_Home = placed;
    m_Movement = Movement();
}

void ExaminerCameraController::apply(const Movement& movement)
{
    if (movement.turn == Vector2d() && movement.shift == Vector2d() && movement.approach == 0.0)
        return;

    Vector3d lookAt = widened(m_Camera->getLookAtPoint());
    Vector3d up = widened(m_Camera->getUpVector());
    Vector3d offset = widened(m_Camera->getEyePoint()) - lookAt;
    Vector3d right = cross(up, offset);
    right *= 1.0 / length(right);

    const double pixels = length(movement.turn);
    if (pixels > 0.0) {
        // What is looked at turns with the pointer, so the camera turns the other way.
        const Vector3d axis = (up * movement.turn[0] + right * movement.turn[1]) * (1.0 / pixels);
        const double angle = -pixels * TURN_PER_SIDE / smallerSide();
        offset = turned(offset, axis, angle);
        up = turned(up, axis, angle);
        right = turned(right, axis, angle);
    }

    const double distance = length(offset);
    const double approach = std::clamp(movement.approach, -LARGEST_APPROACH, LARGEST_APPROACH);
    const double newDistance = std::clamp(distance * std::exp(-approach), std::min(distance, smallestDistance(lookAt)),
        std::max(distance, LARGEST_DISTANCE));
    offset *= newDistance / distance;

    const double unitsPerPixel = 2.0 * newDistance * std::tan(FIELD_OF_VIEW / 2.0) / m_Height;
    lookAt += (up * movement.shift[1] - right * movement.shift[0]) * unitsPerPixel;

    m_Camera->setView(narrowed(lookAt + offset), narrowed(lookAt), narrowed(up));
}

double ExaminerCameraController::smallerSide() const
{
    return std::min(m_Width, m_Height);
}

} // namespace tavo
