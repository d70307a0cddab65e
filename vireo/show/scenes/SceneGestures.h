#pragma once

#include <QObject>
#include <QPoint>
#include <QTimer>
#include <optional>

#include "tavo/base/math/vectors.h"

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace tavo {

class SceneView;

// What a person does to a scene with mouse and keys.
//
// The left button turns the scene about the middle of the picture; the right and the middle button, or Shift with the
// left one, move it. The wheel zooms to what is under the pointer. A double click brings what it hits to the middle,
// or, on nothing, shows all, as Home does. o switches between the two projections, b shows and hides the bearings; 1, 3
// and 7 look from the front, the right and the top, and with Ctrl from the opposite sides. Alt with the wheel, + and -
// change the size of points; p shows and hides the panel, and Tab colours the selected item by its next field. c shows
// only what is in a box, and x, y and z make that a slab (see ClipHandles); g walks through the scene (see SceneWalk).
//
// Ctrl with the left button changes the range of a volume: to the right it gets wider, and upwards it moves up.
//
// Where the pointer rests, and where it clicks, the view says what is there; Esc takes away what was clicked.
class SceneGestures : public QObject
{
public:
    explicit SceneGestures(SceneView& view);

    bool eventFilter(QObject* object, QEvent* event) override;

    // Something else may be under the pointer now.
    void sceneChanged();

private:
    struct Drag
    {
        Qt::MouseButton button;
        QPoint start;
        QPoint last;
        bool doesPan;
        bool doesWindow; // changes the range of a volume
        bool hasMoved;
        double depth; // of what is panned
    };

    bool press(const QMouseEvent& event);
    bool move(const QMouseEvent& event);
    bool release(const QMouseEvent& event);
    void rest(const QPoint& pixel);
    void leave();
    void turnWheel(QWheelEvent& event);
    void centre(const QPoint& pixel);
    bool pressKey(const QKeyEvent& event);
    bool showNextField(const QKeyEvent& event);

    // What is drawn at the pixel; or else the place there that is as far away as the middle of the scene.
    Vector3d placeAt(const QPointF& pixel);

    SceneView& m_View;
    std::optional<Drag> m_Drag;
    std::optional<Vector3d> m_WheelPlace; // until the pointer moves
    std::optional<QPoint> m_RestingPlace; // none if a button is down, or the pointer elsewhere
    QTimer m_Rest;
};

} // namespace tavo
