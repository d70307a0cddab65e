#include "vireo/show/scenes/SceneGestures.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <cmath>

#include "vireo/show/scenes/SceneView.h"

namespace tavo {

namespace {

constexpr int LEAST_MOVEMENT = 4; // in pixels, that makes a drag of a click
constexpr double DEGREES_PER_PIXEL = 0.4;
constexpr double WINDOW_PER_PIXEL = 0.005;   // of the range of a volume
constexpr double FACTOR_OF_WHEEL = 1 / 0.87; // of one step
constexpr double DEGREES_OF_STEP = 120;      // in eighths
constexpr int REST = 60;                     // in milliseconds, that the pointer has not moved
constexpr int REST_OF_SCENE = 250;           // and that what is under it counts as the same

} // namespace

SceneGestures::SceneGestures(SceneView& view)
    : m_View(view)
{
    m_View.setMouseTracking(true);
    m_View.installEventFilter(this);
    m_Rest.setSingleShot(true);
    connect(&m_Rest, &QTimer::timeout, this, [this] { m_View.hover(m_RestingPlace); });
}

bool SceneGestures::eventFilter(QObject*, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress: return press(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseMove: return move(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseButtonRelease: return release(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseButtonDblClick: centre(static_cast<QMouseEvent&>(*event).pos()); return true;
    case QEvent::Wheel: turnWheel(static_cast<QWheelEvent&>(*event)); return true;
    case QEvent::Leave: leave(); return false;
    case QEvent::KeyPress: return pressKey(static_cast<QKeyEvent&>(*event));
    default: return false;
    }
}

Vector3d SceneGestures::placeAt(const QPointF& pixel)
{
    if (const std::optional<Vector3d> hit = m_View.hitAt(pixel))
        return *hit;
    const SceneCamera& camera = m_View.getCamera();
    return camera.unproject({pixel.x(), pixel.y(), camera.getDistance()}, m_View.viewSize());
}

bool SceneGestures::press(const QMouseEvent& event)
{
    const Qt::MouseButton button = event.button();
    if (m_Drag || (button != Qt::LeftButton && button != Qt::RightButton && button != Qt::MiddleButton))
        return false;
    const bool doesPan = button != Qt::LeftButton || event.modifiers() & Qt::ShiftModifier;
    const SceneCamera& camera = m_View.getCamera();
    const double depth = doesPan ? camera.project(placeAt(event.pos()), m_View.viewSize()).depth : camera.getDistance();
    const bool doesWindow = !doesPan && event.modifiers() & Qt::ControlModifier;
    m_Drag = Drag{button, event.pos(), event.pos(), doesPan, doesWindow, false, depth};
    leave();
    m_View.setFocus();
    return true;
}

bool SceneGestures::move(const QMouseEvent& event)
{
    m_WheelPlace.reset();
    if (!m_Drag) {
        rest(event.pos());
        return false;
    }
    if (!m_Drag->hasMoved && (event.pos() - m_Drag->start).manhattanLength() < LEAST_MOVEMENT)
        return true;
    m_Drag->hasMoved = true;
    const QPoint moved = event.pos() - m_Drag->last;
    m_Drag->last = event.pos();
    if (m_Drag->doesWindow) {
        m_View.changeWindow(WINDOW_PER_PIXEL * moved.x(), -WINDOW_PER_PIXEL * moved.y());
        return true;
    }
    SceneCamera& camera = m_View.getCamera();
    if (m_Drag->doesPan)
        camera.pan(moved.x(), moved.y(), m_Drag->depth, m_View.viewSize());
    else
        camera.turn(-DEGREES_PER_PIXEL * moved.x(), DEGREES_PER_PIXEL * moved.y(), camera.getPivot());
    m_View.showChoice();
    return true;
}

bool SceneGestures::release(const QMouseEvent& event)
{
    if (!m_Drag || event.button() != m_Drag->button)
        return false;
    const bool isClick = m_Drag->button == Qt::LeftButton && !m_Drag->doesPan && !m_Drag->hasMoved;
    m_Drag.reset();
    if (isClick)
        m_View.click(event.pos());
    rest(event.pos());
    return true;
}

void SceneGestures::rest(const QPoint& pixel)
{
    m_RestingPlace = pixel;
    m_Rest.start(REST);
}

void SceneGestures::leave()
{
    m_RestingPlace.reset();
    m_Rest.stop();
    m_View.hover({});
}

// It is not started again: it would never end where data come all the time.
void SceneGestures::sceneChanged()
{
    if (m_RestingPlace && !m_Rest.isActive())
        m_Rest.start(REST_OF_SCENE);
}

void SceneGestures::turnWheel(QWheelEvent& event)
{
    const QPoint turned = event.angleDelta();
    const double steps = (turned.y() != 0 ? turned.y() : turned.x()) / DEGREES_OF_STEP; // with Alt, Qt has it as x
    event.accept();
    if (event.modifiers() & Qt::AltModifier)
        return m_View.changeSizes(steps);
    if (!m_WheelPlace)
        m_WheelPlace = placeAt(event.position());
    m_View.getCamera().zoom(std::pow(FACTOR_OF_WHEEL, steps), *m_WheelPlace);
    m_View.showChoice();
    if (!m_Drag) {
        leave();
        rest(event.position().toPoint());
    }
}

void SceneGestures::centre(const QPoint& pixel)
{
    m_View.takeBackClick();
    leave();
    const std::optional<Vector3d> hit = m_View.hitAt(pixel);
    if (!hit)
        return m_View.showAll();
    m_View.getCamera().centreOn(*hit);
    m_View.showChoice();
}

// Where there are none, the key moves the focus. Those of the panel are not for the scene.
bool SceneGestures::showNextField(const QKeyEvent& event)
{
    return event.modifiers() == Qt::NoModifier && m_View.focusWidget() == &m_View && m_View.showNextField();
}

bool SceneGestures::pressKey(const QKeyEvent& event)
{
    const bool isOpposite = event.modifiers() & Qt::ControlModifier;
    const auto look = [&](SceneCamera::Side side, SceneCamera::Side opposite) {
        m_View.lookFrom(isOpposite ? opposite : side);
        return true;
    };
    switch (event.key()) {
    case Qt::Key_Escape: return m_View.clearPins();
    case Qt::Key_Home: m_View.showAll(); return true;
    case Qt::Key_B: m_View.switchBearings(); return true;
    case Qt::Key_C: event.modifiers() & Qt::ShiftModifier ? m_View.switchCutOut() : m_View.switchClipBox(); return true;
    case Qt::Key_X: m_View.switchSlab(0); return true;
    case Qt::Key_Y: m_View.switchSlab(1); return true;
    case Qt::Key_Z: m_View.switchSlab(2); return true;
    case Qt::Key_Tab: return showNextField(event);
    case Qt::Key_P: m_View.switchPanel(); return true;
    case Qt::Key_Plus: m_View.changeSizes(1); return true;
    case Qt::Key_Minus: m_View.changeSizes(-1); return true;
    case Qt::Key_O: m_View.switchProjection(); return true;
    case Qt::Key_1: return look(SceneCamera::Side::Front, SceneCamera::Side::Back);
    case Qt::Key_3: return look(SceneCamera::Side::Right, SceneCamera::Side::Left);
    case Qt::Key_7: return look(SceneCamera::Side::Top, SceneCamera::Side::Bottom);
    default: return false;
    }
}

} // namespace tavo
