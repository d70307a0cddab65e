#include "vireo/show/images/ImageGestures.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <utility>

#include "vireo/show/images/ImageView.h"

namespace tavo {

namespace {

constexpr int STEP_OF_WHEEL = 120; // in eighths of a degree

} // namespace

ImageGestures::ImageGestures(ImageView& view)
    : m_View(view)
{
    m_View.setMouseTracking(true);
    m_View.installEventFilter(this);
}

bool ImageGestures::eventFilter(QObject*, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress: return press(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseMove: return move(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseButtonRelease: return release(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseButtonDblClick: showAll(); return true;
    case QEvent::Wheel: turnWheel(static_cast<QWheelEvent&>(*event)); return true;
    case QEvent::KeyPress: return pressKey(static_cast<QKeyEvent&>(*event));
    case QEvent::Leave:
        m_Pointer.reset();
        m_View.hover({});
        return false;
    default: return false;
    }
}

bool ImageGestures::press(const QMouseEvent& event)
{
    if (event.button() == Qt::BackButton || event.button() == Qt::ForwardButton) {
        event.button() == Qt::BackButton ? m_View.goBack() : m_View.goForward();
        return true;
    }
    if (m_Drag || (event.button() != Qt::LeftButton && event.button() != Qt::MiddleButton))
        return false;
    m_Drag = Drag{event.button(), event.localPos(), m_View.getSight(), {}, false};
    if (event.button() == Qt::LeftButton && event.modifiers() & Qt::ShiftModifier) {
        m_Drag->profile = m_View.pixelAt(event.localPos());
        if (!m_Drag->profile)
            m_Drag.reset();
    }
    m_View.setFocus();
    return true;
}

bool ImageGestures::move(const QMouseEvent& event)
{
    m_Pointer = event.localPos();
    m_View.hover(m_View.pixelAt(event.localPos()));
    if (!m_Drag)
        return false;
    if (m_Drag->profile) {
        drawProfile(event.localPos());
        return true;
    }
    ImageSight sight = m_Drag->sight;
    sight.centre -= m_View.onScreen(event.localPos() - m_Drag->start) / sight.scale;
    if (sight == m_View.getSight())
        return true;
    if (!std::exchange(m_Drag->isMoving, true))
        m_View.remember(ImageHistory::Gesture::Move);
    m_View.setSight(sight);
    return true;
}

bool ImageGestures::release(const QMouseEvent& event)
{
    if (!m_Drag || event.button() != m_Drag->button)
        return false;
    m_Drag.reset();
    return true;
}

void ImageGestures::drawProfile(const QPointF& place)
{
    if (const std::optional<QPoint> pixel = m_View.pixelAt(place); pixel && *pixel != *m_Drag->profile)
        m_View.showProfile(*m_Drag->profile, *pixel);
}

QPointF ImageGestures::place() const
{
    const QSize size = m_View.sightSize();
    return m_Pointer ? m_View.onScreen(*m_Pointer) : QPointF(size.width(), size.height()) / 2;
}

void ImageGestures::zoom(int steps)
{
    if (steps == 0)
        return;
    ImageSight sight = m_View.getSight();
    sight.zoom(steps, place(), m_View.sightSize());
    m_View.remember(ImageHistory::Gesture::Zoom);
    m_View.setSight(sight);
    if (m_Drag)
        m_Drag.reset();
    if (m_Pointer)
        m_View.hover(m_View.pixelAt(*m_Pointer));
}

// A touch pad sends a step in many pieces.
void ImageGestures::turnWheel(QWheelEvent& event)
{
    event.accept();
    m_Pointer = event.position();
    m_Turned += event.angleDelta().y();
    const int steps = m_Turned / STEP_OF_WHEEL;
    m_Turned -= steps * STEP_OF_WHEEL;
    zoom(steps);
}

void ImageGestures::showAsItIs()
{
    ImageSight sight = m_View.getSight();
    sight.zoomTo(1, place(), m_View.sightSize());
    m_View.remember(ImageHistory::Gesture::Zoom);
    m_View.setSight(sight);
}

void ImageGestures::showAll()
{
    m_View.remember(ImageHistory::Gesture::ShowAll);
    m_View.showAll();
}

// Ctrl+Z and Backspace, with Shift the other way; whether it is one of these.
bool ImageGestures::pressHistoryKey(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::ShiftModifier;
    const bool isUndo = event.key() == Qt::Key_Z && modifiers == Qt::ControlModifier;
    if (!isUndo && (event.key() != Qt::Key_Backspace || modifiers != Qt::NoModifier))
        return false;
    event.modifiers() & Qt::ShiftModifier ? m_View.goForward() : m_View.goBack();
    return true;
}

bool ImageGestures::pressKey(const QKeyEvent& event)
{
    if (pressHistoryKey(event))
        return true;
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier))
        return false;
    switch (event.key()) {
    case Qt::Key_Home: showAll(); return true;
    case Qt::Key_1: showAsItIs(); return true;
    case Qt::Key_Plus: zoom(1); return true;
    case Qt::Key_Minus: zoom(-1); return true;
    case Qt::Key_C: m_View.showNextChannel(); return true;
    case Qt::Key_P: m_View.switchPanel(); return true;
    case Qt::Key_Escape: return m_View.endProfile();
    case Qt::Key_PageUp: m_View.stepLayer(-1); return true;
    case Qt::Key_PageDown: m_View.stepLayer(1); return true;
    case Qt::Key_R: m_View.refreshRange(); return true;
    default: return false;
    }
}

} // namespace tavo
