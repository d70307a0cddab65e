#include "vireo/show/slices/SlicesGestures.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <cmath>

#include "vireo/show/slices/SlicesView.h"

namespace tavo {

namespace {

constexpr int STEP_OF_WHEEL = 120; // in eighths of a degree
constexpr int MANY_SLICES = 10;

} // namespace

SlicesGestures::SlicesGestures(SlicesView& view)
    : m_View(view)
{
    m_View.setMouseTracking(true);
    m_View.installEventFilter(this);
}

bool SlicesGestures::eventFilter(QObject*, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: return press(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseMove: return move(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseButtonRelease: return release(static_cast<QMouseEvent&>(*event));
    case QEvent::Wheel: turnWheel(static_cast<QWheelEvent&>(*event)); return true;
    case QEvent::KeyPress: return pressKey(static_cast<QKeyEvent&>(*event));
    case QEvent::Leave:
        m_Pointer.reset();
        m_View.hover({});
        return false;
    default: return false;
    }
}

bool SlicesGestures::press(const QMouseEvent& event)
{
    const std::optional<std::size_t> plane = m_View.planeAt(event.localPos());
    if (m_Drag || !plane || m_View.getModel().isEmpty())
        return false;
    Aim aim = Aim::Crosshair;
    if (event.button() == Qt::RightButton || event.modifiers() & Qt::ControlModifier)
        aim = Aim::Window;
    else if (event.button() == Qt::MiddleButton || event.modifiers() & Qt::ShiftModifier)
        aim = Aim::Move;
    m_Plane = *plane;
    if (m_View.isMeasuring() && aim == Aim::Crosshair) {
        m_View.clickDistance(*plane, event.localPos());
        return true;
    }
    const ImageLook& look = m_View.getModel().volume().look();
    m_Drag = Drag{event.button(), aim, *plane, event.localPos(), m_View.getSight(), {look.from, look.to}};
    m_View.setFocus();
    follow(event.localPos());
    return true;
}

bool SlicesGestures::move(const QMouseEvent& event)
{
    m_Pointer = event.localPos();
    const std::optional<std::size_t> plane = m_View.planeAt(event.localPos());
    if (plane && !m_Drag)
        m_Plane = *plane;
    if (m_Drag)
        follow(event.localPos());
    if (plane)
        m_View.moveDistance(*plane, event.localPos());
    m_View.hover(
        plane && !m_View.getModel().isEmpty() ? std::optional(m_View.indexAt(*plane, event.localPos())) : std::nullopt);
    return m_Drag.has_value();
}

bool SlicesGestures::release(const QMouseEvent& event)
{
    if (!m_Drag || event.button() != m_Drag->button)
        return false;
    m_Drag.reset();
    return true;
}

void SlicesGestures::follow(const QPointF& place)
{
    if (m_View.getModel().isEmpty())
        return m_Drag.reset();
    switch (m_Drag->aim) {
    case Aim::Crosshair: return m_View.moveTo(m_View.getModel().voxelAt(m_View.indexAt(m_Drag->plane, place)));
    case Aim::Window: return setWindow(place);
    case Aim::Move: return moveVolume(place);
    }
}

void SlicesGestures::moveVolume(const QPointF& place)
{
    const SlicePlane& plane = m_View.getModel().planes()[m_Drag->plane];
    const QPointF moved = m_View.onScreen(place - m_Drag->start);
    SliceSight sight = m_Drag->sight;
    sight.centre[plane.across] -= plane.signAcross() * moved.x() / sight.scale;
    sight.centre[plane.up] += plane.signUp() * moved.y() / sight.scale;
    if (!(sight == m_View.getSight()))
        m_View.setSight(sight);
}

void SlicesGestures::setWindow(const QPointF& place)
{
    constexpr double PIXELS = 200; // to the right, make the window e times as wide
    const QPointF moved = place - m_Drag->start;
    if (moved.isNull())
        return;
    const auto [from, to] = m_Drag->window;
    const double width = to - from;
    const double middle = from + width / 2 - moved.y() / PIXELS * width;
    const double half = width / 2 * std::exp(moved.x() / PIXELS);
    const std::pair<double, double> window(middle - half, middle + half);
    if (window.first < window.second && std::isfinite(window.second - window.first))
        m_View.change([&](SlicesModel& model) {
            SliceSettings choice = model.volume().getChoice();
            choice.window = window;
            model.volume().choose(choice);
        });
}

// A touch pad sends a step in many pieces.
void SlicesGestures::turnWheel(QWheelEvent& event)
{
    event.accept();
    m_Pointer = event.position();
    const std::optional<std::size_t> plane = m_View.planeAt(*m_Pointer);
    m_Turned += event.angleDelta().y() + event.angleDelta().x(); // with Alt, some turn it sideways
    const int steps = m_Turned / STEP_OF_WHEEL;
    m_Turned -= steps * STEP_OF_WHEEL;
    if (!plane || steps == 0)
        return;
    m_Plane = *plane;
    if (event.modifiers() & Qt::ControlModifier)
        zoom(steps);
    else
        step(m_View.getModel().planes()[*plane].through, steps);
}

void SlicesGestures::zoom(int steps)
{
    constexpr double FACTOR = 1.15;
    const QPointF middle = QRectF(m_View.cells().planes[m_Plane]).center();
    const bool isPointed = m_Pointer && m_View.planeAt(*m_Pointer) == m_Plane;
    m_View.zoom(std::pow(FACTOR, steps), m_Plane, isPointed ? m_View.onScreen(*m_Pointer) : middle);
}

void SlicesGestures::step(std::size_t axis, int steps)
{
    const SlicesModel& model = m_View.getModel();
    if (model.isEmpty())
        return;
    const Vector3i& voxel = model.voxel();
    Vector3d index(voxel[0], voxel[1], voxel[2]);
    index[axis] += steps;
    m_View.moveTo(model.voxelAt(index));
    if (m_Pointer && m_View.planeAt(*m_Pointer) == m_Plane)
        m_View.hover(m_View.indexAt(m_Plane, *m_Pointer));
}

bool SlicesGestures::pressArrow(int key)
{
    const SlicePlane& plane = m_View.getModel().planes()[m_Plane];
    const int right = plane.isAcrossReversed ? -1 : 1;
    const int up = plane.isUpReversed ? -1 : 1;
    switch (key) {
    case Qt::Key_Left: step(plane.across, -right); return true;
    case Qt::Key_Right: step(plane.across, right); return true;
    case Qt::Key_Up: step(plane.up, up); return true;
    case Qt::Key_Down: step(plane.up, -up); return true;
    case Qt::Key_PageUp: step(plane.through, MANY_SLICES); return true;
    case Qt::Key_PageDown: step(plane.through, -MANY_SLICES); return true;
    default: return false;
    }
}

bool SlicesGestures::pressKey(const QKeyEvent& event)
{
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier))
        return false;
    const auto turn = [this](bool SliceSides::*side) {
        m_View.change([side](SlicesModel& model) {
            SliceSides sides = model.getSides();
            sides.*side = !(sides.*side);
            model.setSides(sides);
        });
        return true;
    };
    switch (event.key()) {
    case Qt::Key_Home: m_View.showAll(); return true;
    case Qt::Key_Plus: zoom(1); return true;
    case Qt::Key_Minus: zoom(-1); return true;
    case Qt::Key_N: return turn(&SliceSides::isRightOnTheLeft);
    case Qt::Key_F: return turn(&SliceSides::isFrontOnTheLeft);
    case Qt::Key_I:
        m_View.change([](SlicesModel& model) { model.setInterpolated(!model.isInterpolated()); });
        return true;
    case Qt::Key_M: m_View.setMeasuring(!m_View.isMeasuring()); return true;
    case Qt::Key_Escape: m_View.setMeasuring(false); return true;
    case Qt::Key_P: m_View.switchPanel(); return true;
    case Qt::Key_V: m_View.switchVolume(); return true;
    case Qt::Key_R: m_View.change([](SlicesModel& model) { model.refreshWindows(); }); return true;
    default: return pressArrow(event.key());
    }
}

} // namespace tavo
