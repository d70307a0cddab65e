#include "vireo/show/scenes/SceneWalk.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "vireo/show/scenes/SceneView.h"

namespace tavo {

namespace {

constexpr int FRAME = 16;                // in milliseconds
constexpr double LONGEST_STEP = 0.1;     // in seconds, however long a frame takes
constexpr double SECONDS_THROUGH = 8;    // that it takes to walk through the whole scene
constexpr double FASTER = 4;             // with Shift
constexpr double FASTER_BY_WHEEL = 1.25; // each step
constexpr double DEGREES_OF_STEP = 120;  // of the wheel, in eighths
constexpr double DEGREES_PER_PIXEL = 0.25;

// To the right, ahead and up.
std::optional<Vector3d> directionOf(int key)
{
    switch (key) {
    case Qt::Key_W:
    case Qt::Key_Up: return Vector3d(0, 1, 0);
    case Qt::Key_S:
    case Qt::Key_Down: return Vector3d(0, -1, 0);
    case Qt::Key_A:
    case Qt::Key_Left: return Vector3d(-1, 0, 0);
    case Qt::Key_D:
    case Qt::Key_Right: return Vector3d(1, 0, 0);
    case Qt::Key_E: return Vector3d(0, 0, 1);
    case Qt::Key_Q: return Vector3d(0, 0, -1);
    default: return {};
    }
}

} // namespace

SceneWalk::SceneWalk(SceneView& view)
    : m_View(view)
{
    m_View.installEventFilter(this);
    m_Steps.setInterval(FRAME);
    connect(&m_Steps, &QTimer::timeout, this, [this] { step(); });
}

bool SceneWalk::eventFilter(QObject*, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress: return pressKey(static_cast<QKeyEvent&>(*event));
    case QEvent::KeyRelease: return releaseKey(static_cast<QKeyEvent&>(*event));
    case QEvent::FocusOut:
    case QEvent::Hide: m_KeysDown.clear(); return false;
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonPress: return press(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseMove: return move(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseButtonRelease:
        return static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton && std::exchange(m_LookedFrom, {});
    case QEvent::Wheel:
        if (m_IsOn && !static_cast<QWheelEvent*>(event)->modifiers()) {
            m_Speed *= std::pow(FASTER_BY_WHEEL, static_cast<QWheelEvent*>(event)->angleDelta().y() / DEGREES_OF_STEP);
            m_View.update();
            return true;
        }
        return false;
    default: return false;
    }
}

// Where what is far away looks as large as what is near, nobody can walk.
void SceneWalk::switchOn(bool isOn)
{
    m_IsOn = isOn;
    m_IsFast = false;
    m_KeysDown.clear();
    m_LookedFrom.reset();
    if (isOn) {
        const double size = m_View.box().diagonal();
        m_Speed = (size > 0 ? size : m_View.getCamera().getDistance()) / SECONDS_THROUGH;
        if (m_View.getCamera().isOrthographic())
            m_View.switchProjection();
    }
    m_View.update();
}

double SceneWalk::getSpeed() const
{
    return m_Speed * (m_IsFast ? FASTER : 1);
}

bool SceneWalk::pressKey(const QKeyEvent& event)
{
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    if (event.key() == Qt::Key_G && !event.isAutoRepeat()) {
        switchOn(!m_IsOn);
        return true;
    }
    if (!m_IsOn)
        return false;
    if (event.key() == Qt::Key_Escape) {
        switchOn(false);
        return true;
    }
    m_IsFast = event.key() == Qt::Key_Shift || event.modifiers() & Qt::ShiftModifier;
    if (!directionOf(event.key()))
        return false;
    if (m_KeysDown.empty())
        m_SinceStep = {};
    m_KeysDown.insert(event.key());
    m_Steps.start();
    return true;
}

bool SceneWalk::releaseKey(const QKeyEvent& event)
{
    if (event.key() == Qt::Key_Shift)
        m_IsFast = false;
    if (event.isAutoRepeat())
        return m_KeysDown.count(event.key()) != 0;
    return m_KeysDown.erase(event.key()) != 0;
}

void SceneWalk::step()
{
    const double seconds = std::min(m_SinceStep.seconds(), LONGEST_STEP);
    m_SinceStep = {};
    if (m_KeysDown.empty())
        return m_Steps.stop();
    Vector3d way;
    for (const int key : m_KeysDown)
        way += directionOf(key).value();
    if (length(way) == 0)
        return;
    const double distance = seconds * getSpeed();
    m_View.getCamera().walk((distance / length(way)) * way);
    m_View.showChoice();
}

bool SceneWalk::press(const QMouseEvent& event)
{
    if (!m_IsOn || event.button() != Qt::LeftButton || event.modifiers())
        return false;
    m_View.setFocus();
    m_View.hover({});
    m_LookedFrom = event.localPos();
    return true;
}

bool SceneWalk::move(const QMouseEvent& event)
{
    if (!m_LookedFrom)
        return false;
    const QPointF moved = event.localPos() - *m_LookedFrom;
    m_LookedFrom = event.localPos();
    SceneCamera& camera = m_View.getCamera();
    camera.turn(-DEGREES_PER_PIXEL * moved.x(), DEGREES_PER_PIXEL * moved.y(), camera.eye());
    m_View.showChoice();
    return true;
}

void SceneWalk::draw(QPainter& painter, const SceneLook& look) const
{
    if (!m_IsOn)
        return;
    const QString text = tr("Walking: w a s d, e up, q down, Shift faster; wheel: %1 per second; g ends")
                             .arg(QString::number(m_Speed, 'g', 3));
    painter.setFont(look.font);
    const QFontMetricsF metrics(look.font);
    const QRectF room(0, 0, metrics.horizontalAdvance(text) + 12, metrics.height() + 8);
    QColor ground = look.ground;
    ground.setAlphaF(0.7);
    painter.fillRect(room, ground);
    painter.setPen(look.ink);
    painter.drawText(room, Qt::AlignCenter, text);
}

} // namespace tavo
