#include "vireo/show/plots/PlotGestures.h"

#include <QContextMenuEvent>
#include <QGestureEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QRubberBand>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <qwt_plot.h>
#include <qwt_scale_widget.h>

#include "vireo/show/plots/PlotMeasure.h"
#include "vireo/show/plots/PlotReadout.h"
#include "vireo/show/plots/PlotView.h"
#include "vireo/show/plots/plotMenu.h"

namespace tavo {

namespace {

constexpr int LEAST_MOVEMENT = 4; // in pixels, that makes a drag of a click
constexpr double CATCH_RADIUS = 8;
constexpr double FACTOR_OF_WHEEL = 0.87; // of one step
constexpr double DEGREES_OF_STEP = 120;  // in eighths
constexpr double PART_OF_WHEEL = 0.1;    // by which it moves x

bool isModifier(int key)
{
    return key == Qt::Key_Control || key == Qt::Key_Shift || key == Qt::Key_Alt || key == Qt::Key_Meta;
}

// Keys that only change what the wheel does do not.
bool endsZooming(const QEvent& event)
{
    if (event.type() == QEvent::KeyPress)
        return !isModifier(static_cast<const QKeyEvent&>(event).key());
    return event.type() == QEvent::MouseButtonPress || event.type() == QEvent::Leave;
}

} // namespace

PlotGestures::PlotGestures(PlotView& view)
    : m_View(view)
    , m_Canvas(view.getPlot().canvas())
    , m_Readout(new PlotReadout(m_Canvas))
    , m_Box(new QRubberBand(QRubberBand::Rectangle, m_Canvas))
{
    m_Readout->hide();
    m_Canvas->setMouseTracking(true);
    m_Canvas->setFocusPolicy(Qt::StrongFocus);
    m_Canvas->grabGesture(Qt::PinchGesture);
    m_Canvas->installEventFilter(this);
    for (const PlotSight::Axis axis : {PlotSight::X, PlotSight::Y, PlotSight::Y2})
        m_View.axisWidget(axis)->installEventFilter(this);
}

PlotGestures::~PlotGestures() = default;

std::optional<PlotSight::Axis> PlotGestures::axisOf(const QObject* widget) const
{
    for (const PlotSight::Axis axis : {PlotSight::X, PlotSight::Y, PlotSight::Y2})
        if (widget == m_View.axisWidget(axis))
            return axis;
    return {};
}

std::vector<PlotSight::Axis> PlotGestures::axesOf(const QObject* widget) const
{
    if (const std::optional<PlotSight::Axis> axis = axisOf(widget))
        return {*axis};
    return {PlotSight::X, PlotSight::Y, PlotSight::Y2};
}

bool PlotGestures::eventFilter(QObject* object, QEvent* event)
{
    if (endsZooming(*event))
        m_IsZooming = false;
    switch (event->type()) {
    case QEvent::Wheel: turnWheel(object, static_cast<QWheelEvent&>(*event)); return true;
    case QEvent::NativeGesture: return pinch(object, static_cast<QNativeGestureEvent&>(*event));
    case QEvent::Gesture: return pinch(object, static_cast<QGestureEvent&>(*event));
    case QEvent::MouseButtonPress: return press(object, static_cast<QMouseEvent&>(*event));
    case QEvent::MouseMove: return move(object, static_cast<QMouseEvent&>(*event));
    case QEvent::MouseButtonRelease: return release(object, static_cast<QMouseEvent&>(*event));
    case QEvent::MouseButtonDblClick: fit(object); return true;
    case QEvent::KeyPress: return pressKey(static_cast<QKeyEvent&>(*event));
    case QEvent::ContextMenu: return openMenu(object, static_cast<QContextMenuEvent&>(*event));
    case QEvent::Leave: pointNowhere(); return false;
    default: return false;
    }
}

void PlotGestures::turnWheel(QObject* widget, QWheelEvent& event)
{
    rememberOnce();
    const QPoint turned = event.angleDelta();
    const double steps = (turned.y() != 0 ? turned.y() : turned.x()) / DEGREES_OF_STEP; // with Alt it turns x
    const bool isXAlone = event.modifiers() & Qt::ControlModifier && !axisOf(widget);
    if (event.modifiers() & Qt::ShiftModifier)
        m_View.getSight().move(PlotSight::X, -steps * PART_OF_WHEEL);
    else
        zoomAt(isXAlone ? std::vector{PlotSight::X} : axesOf(widget), std::pow(FACTOR_OF_WHEEL, steps),
            event.globalPosition().toPoint());
    m_View.showChoice();
    event.accept();
}

bool PlotGestures::pinch(QObject* widget, const QNativeGestureEvent& event)
{
    if (event.gestureType() != Qt::ZoomNativeGesture || !(event.value() > -1))
        return false;
    rememberOnce();
    zoomAt(axesOf(widget), 1 / (1 + event.value()), event.globalPos());
    m_View.showChoice();
    return true;
}

// Before, the first of the two fingers has begun to drag.
bool PlotGestures::pinch(QObject* widget, QGestureEvent& event)
{
    const auto* const gesture = static_cast<QPinchGesture*>(event.gesture(Qt::PinchGesture));
    if (!gesture || !(gesture->scaleFactor() > 0))
        return false;
    m_Drag.reset();
    rememberOnce();
    zoomAt(axesOf(widget), 1 / gesture->scaleFactor(), gesture->centerPoint().toPoint());
    m_View.showChoice();
    return true;
}

void PlotGestures::rememberOnce()
{
    if (!m_IsZooming)
        m_View.getSight().remember();
    m_IsZooming = true;
}

void PlotGestures::zoomAt(const std::vector<PlotSight::Axis>& axes, double factor, const QPoint& globalPlace)
{
    const QPoint place = m_Canvas->mapFromGlobal(globalPlace);
    for (const PlotSight::Axis axis : axes)
        m_View.getSight().zoom(
            axis, factor, m_View.pixelMap(axis).toValue(axis == PlotSight::X ? place.x() : place.y()));
}

bool PlotGestures::press(QObject* widget, const QMouseEvent& event)
{
    m_Canvas->setFocus();
    PlotSight& sight = m_View.getSight();
    if (event.button() == Qt::BackButton || event.button() == Qt::ForwardButton) {
        event.button() == Qt::BackButton ? sight.back() : sight.forward();
        m_View.showChoice();
        return true;
    }
    const bool isShift = event.modifiers() & Qt::ShiftModifier;
    const bool isBox = event.button() == Qt::RightButton || (event.button() == Qt::LeftButton && isShift);
    if (isBox && axisOf(widget))
        return false;
    m_Drag = Drag{event.pos(), event.pos(), isBox, event.button() == Qt::LeftButton, false};
    if (widget == m_Canvas && event.button() == Qt::LeftButton && !isBox)
        m_Drag->cursor = cursorAt(event.pos());
    m_BoxModifiers = Qt::NoModifier;
    return true;
}

bool PlotGestures::move(QObject* widget, const QMouseEvent& event)
{
    if (!m_Drag) {
        if (widget == m_Canvas)
            point(event.pos());
        return false;
    }
    if (!m_Drag->hasMoved && (event.pos() - m_Drag->start).manhattanLength() < LEAST_MOVEMENT)
        return true;
    if (!m_Drag->hasMoved && !m_Drag->cursor)
        m_View.getSight().remember();
    m_Drag->hasMoved = true;
    pointNowhere();
    m_BoxModifiers = event.modifiers();
    if (m_Drag->isLeft)
        m_BoxModifiers &= ~Qt::ShiftModifier; // which is what makes it a box
    if (m_Drag->isBox) {
        m_Box->setGeometry(boxTo(event.pos()));
        m_Box->show();
    } else if (m_Drag->cursor) {
        moveCursor(event.pos());
    } else {
        moveBy(widget, event.pos() - m_Drag->last);
    }
    m_Drag->last = event.pos();
    return true;
}

bool PlotGestures::release(QObject* widget, const QMouseEvent& event)
{
    if (!m_Drag)
        return false;
    const QRect box = boxTo(event.pos());
    const bool isBoxDrawn = m_Drag->isBox && m_Drag->hasMoved;
    const bool isMenuWanted = widget == m_Canvas && event.button() == Qt::RightButton && !m_Drag->hasMoved;
    m_Drag.reset();
    m_Box->hide();
    if (isBoxDrawn)
        zoomInto(box);
    if (isMenuWanted)
        openPlotMenu(m_View, event.globalPos());
    return true;
}

// With the mouse it comes when the button is released over the canvas, where a box might have been drawn.
bool PlotGestures::openMenu(QObject* widget, const QContextMenuEvent& event)
{
    if (widget != m_Canvas || event.reason() != QContextMenuEvent::Mouse)
        openPlotMenu(m_View, event.globalPos());
    return true;
}

void PlotGestures::fit(QObject* widget)
{
    m_Drag.reset();
    PlotSight& sight = m_View.getSight();
    sight.remember();
    if (const std::optional<PlotSight::Axis> axis = axisOf(widget))
        sight.fit(*axis);
    else
        sight.fit();
    m_View.showChoice();
}

bool PlotGestures::pressKey(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_M: m_View.setMeasuring(!m_View.getMeasure().isOn()); return true;
    case Qt::Key_Home: fit(m_Canvas); return true;
    case Qt::Key_Escape:
        m_Drag.reset();
        m_Box->hide();
        return true;
    default: return pressZoomKey(event);
    }
}

bool PlotGestures::pressZoomKey(const QKeyEvent& event)
{
    PlotSight& sight = m_View.getSight();
    const bool isShift = event.modifiers() & Qt::ShiftModifier;
    if (event.key() == Qt::Key_Space)
        sight.setFrozen(!sight.isChosen(PlotSight::X));
    else if (event.matches(QKeySequence::Redo) || (event.key() == Qt::Key_Backspace && isShift))
        sight.forward();
    else if (event.matches(QKeySequence::Undo) || event.key() == Qt::Key_Backspace)
        sight.back();
    else
        return false;
    m_View.showChoice();
    return true;
}

void PlotGestures::moveBy(QObject* widget, const QPoint& pixels)
{
    PlotSight& sight = m_View.getSight();
    for (const PlotSight::Axis axis : axesOf(widget)) {
        const PixelMap map = m_View.pixelMap(axis);
        const int moved = axis == PlotSight::X ? pixels.x() : pixels.y();
        if (moved != 0)
            sight.move(axis, -moved / (map.lastPixel - map.firstPixel));
    }
    m_View.showChoice();
}

QRect PlotGestures::boxTo(const QPoint& position) const
{
    QRect box = QRect(m_Drag->start, position).normalized();
    if (m_BoxModifiers & Qt::AltModifier) {
        box.setLeft(0);
        box.setRight(m_Canvas->width() - 1);
    }
    if (m_BoxModifiers & Qt::ShiftModifier) {
        box.setTop(0);
        box.setBottom(m_Canvas->height() - 1);
    }
    return box & m_Canvas->rect();
}

void PlotGestures::zoomInto(const QRect& box)
{
    if (box.width() < LEAST_MOVEMENT || box.height() < LEAST_MOVEMENT)
        return;
    PlotSight& sight = m_View.getSight();
    if (!(m_BoxModifiers & Qt::AltModifier)) {
        const PixelMap map = m_View.pixelMap(PlotSight::X);
        sight.choose(PlotSight::X, {map.toValue(box.left()), map.toValue(box.right())});
    }
    if (!(m_BoxModifiers & Qt::ShiftModifier))
        for (const PlotSight::Axis axis : {PlotSight::Y, PlotSight::Y2}) {
            const PixelMap map = m_View.pixelMap(axis);
            sight.choose(axis, {map.toValue(box.bottom()), map.toValue(box.top())});
        }
    m_View.showChoice();
}

std::optional<std::size_t> PlotGestures::cursorAt(const QPoint& position) const
{
    return m_View.getMeasure().cursorAt(position.x(), m_View.pixelMap(PlotSight::X));
}

void PlotGestures::moveCursor(const QPoint& position)
{
    const int pixel = std::clamp(position.x(), 0, m_Canvas->width() - 1);
    m_View.getMeasure().moveCursor(*m_Drag->cursor, m_View.pixelMap(PlotSight::X).toValue(pixel));
    m_View.showMeasure();
}

void PlotGestures::pointAgain()
{
    if (m_Pointed && !m_Drag)
        point(*m_Pointed);
}

void PlotGestures::pointNowhere()
{
    m_Pointed.reset();
    m_Readout->clear();
}

void PlotGestures::point(const QPoint& position)
{
    m_Pointed = position;
    m_Canvas->setCursor(cursorAt(position) ? Qt::SplitHCursor : Qt::CrossCursor);
    const std::optional<PlotView::NamedSample> sample = m_View.sampleAt(position, CATCH_RADIUS);
    if (sample)
        m_Readout->show(sample->pixel, sample->colour, sample->text);
    else
        m_Readout->clear();
}

} // namespace tavo
