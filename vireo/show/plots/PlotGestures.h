#pragma once

#include <QObject>
#include <QPoint>
#include <optional>
#include <vector>

#include "vireo/show/plots/PlotSight.h"

class QContextMenuEvent;
class QGestureEvent;
class QKeyEvent;
class QMouseEvent;
class QNativeGestureEvent;
class QRubberBand;
class QWheelEvent;
class QWidget;

namespace tavo {

class PlotReadout;
class PlotView;

// What a person does to a plot with mouse and keys.
//
// The wheel, or a pinch on a touch pad or a screen, zooms at the pointer, with Ctrl x alone, and with Shift it moves x;
// over an axis it zooms that axis alone. The left and the middle button drag what is seen; the right button, or Shift
// with the left one, draws a box that is zoomed into, which Alt widens to the whole width and Shift to the whole
// height, and Escape gives up. A double click shows all again, over an axis all along that one. Space stops following
// the newest data and starts it again. M brings two cursors between which is measured, and takes them away again; the
// left button drags them. Backspace, Ctrl+Z or the mouse's back button undo a zoom; with Shift, or with the forward
// button, it is redone. The right button without a movement brings a menu, and "?" or F1 a list of all this.
class PlotGestures : public QObject
{
public:
    explicit PlotGestures(PlotView& view);
    ~PlotGestures() override;

    bool eventFilter(QObject* object, QEvent* event) override;

    // Names what is under the pointer now, where it stands still and what is seen has changed.
    void pointAgain();

private:
    struct Drag
    {
        QPoint last;
        QPoint start;
        bool isBox;
        bool isLeft;
        bool hasMoved;
        std::optional<std::size_t> cursor = {}; // of the measure, that is moved
    };

    // The axis that a widget shows; none for the canvas.
    std::optional<PlotSight::Axis> axisOf(const QObject* widget) const;
    std::vector<PlotSight::Axis> axesOf(const QObject* widget) const;

    void turnWheel(QObject* widget, QWheelEvent& event);
    bool pinch(QObject* widget, const QNativeGestureEvent& event);
    bool pinch(QObject* widget, QGestureEvent& event);
    void rememberOnce();
    void zoomAt(const std::vector<PlotSight::Axis>& axes, double factor, const QPoint& globalPlace);
    bool press(QObject* widget, const QMouseEvent& event);
    bool move(QObject* widget, const QMouseEvent& event);
    bool release(QObject* widget, const QMouseEvent& event);
    void fit(QObject* widget);
    bool pressKey(const QKeyEvent& event);
    bool pressZoomKey(const QKeyEvent& event);
    bool openMenu(QObject* widget, const QContextMenuEvent& event);
    void moveBy(QObject* widget, const QPoint& pixels);
    void zoomInto(const QRect& box);
    QRect boxTo(const QPoint& position) const;
    void point(const QPoint& position);
    void pointNowhere();
    void moveCursor(const QPoint& position);
    std::optional<std::size_t> cursorAt(const QPoint& position) const;

    PlotView& m_View;
    QWidget* m_Canvas;
    PlotReadout* m_Readout;
    QRubberBand* m_Box;
    std::optional<Drag> m_Drag;
    std::optional<QPoint> m_Pointed; // on the canvas
    Qt::KeyboardModifiers m_BoxModifiers;
    bool m_IsZooming = false; // since what was seen has been remembered
};

} // namespace tavo
