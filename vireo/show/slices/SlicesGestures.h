#pragma once

#include <QObject>
#include <QPointF>
#include <optional>
#include <utility>

#include "vireo/show/slices/SliceSight.h"

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace tavo {

class SlicesView;

// What a person does to slices with mouse and keys.
//
// A click or a drag moves the crosshair. The wheel goes through the slices of the plane that it is over, PgUp and PgDn
// by ten, the arrows move the crosshair within the plane; Ctrl and the wheel, + and - zoom, at the pointer; a drag with
// the middle button, or with Shift, moves the volume; a drag with the right button, or with Ctrl, sets the window: to
// the right it gets wider, upwards it moves up. Home shows all; i interpolates or not; n and f turn slices round, left
// to right and front to back; r finds the window afresh; v shows the
// volume beside its slices or hides it; p shows and hides the panel. m measures distances
// by two clicks, up to the next m or Esc.
class SlicesGestures : public QObject
{
public:
    explicit SlicesGestures(SlicesView& view);

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    enum class Aim
    {
        Crosshair,
        Window,
        Move
    };

    struct Drag
    {
        Qt::MouseButton button;
        Aim aim;
        std::size_t plane;
        QPointF start;
        SliceSight sight; // this and the window when it began
        std::pair<double, double> window;
    };

    bool press(const QMouseEvent& event);
    bool move(const QMouseEvent& event);
    bool release(const QMouseEvent& event);
    void follow(const QPointF& place);
    void moveVolume(const QPointF& place);
    void setWindow(const QPointF& place);
    void turnWheel(QWheelEvent& event);
    void zoom(int steps);
    void step(std::size_t axis, int steps);
    bool pressKey(const QKeyEvent& event);
    bool pressArrow(int key);

    SlicesView& m_View;
    std::optional<Drag> m_Drag;
    std::optional<QPointF> m_Pointer;
    std::size_t m_Plane = 0; // that the pointer was on last
    int m_Turned = 0;        // in eighths of a degree, since the last step of the wheel
};

} // namespace tavo
