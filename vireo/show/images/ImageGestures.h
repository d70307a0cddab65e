#pragma once

#include <QObject>
#include <QPoint>
#include <optional>

#include "vireo/show/images/ImageSight.h"

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace tavo {

class ImageView;

// What a person does to an image with mouse and keys.
//
// The wheel, + and - zoom, at the pointer; a drag moves the image. A double click, or Home, shows all of it; 1 shows
// its pixels as large as those of the screen. A drag with Shift draws the line of a profile, which Esc takes away. c
// shows the next channel alone, and then all of them; r finds the range afresh; p shows and hides the panel. Page Up
// and Page Down step through a stack. Ctrl+Z and Backspace go back to what was seen before, and with Shift forward
// again, as the buttons of the mouse do that are called so.
class ImageGestures : public QObject
{
public:
    explicit ImageGestures(ImageView& view);

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    struct Drag
    {
        Qt::MouseButton button;
        QPointF start;
        ImageSight sight;              // when it began
        std::optional<QPoint> profile; // the pixel where it begins, of a drag that draws one
        bool isMoving = false;
    };

    bool press(const QMouseEvent& event);
    bool move(const QMouseEvent& event);
    bool release(const QMouseEvent& event);
    void turnWheel(QWheelEvent& event);
    void zoom(int steps);
    void showAsItIs();
    void drawProfile(const QPointF& place);
    void showAll();
    bool pressHistoryKey(const QKeyEvent& event);
    bool pressKey(const QKeyEvent& event);
    QPointF place() const; // of the pointer, or else the middle

    ImageView& m_View;
    std::optional<Drag> m_Drag;
    std::optional<QPointF> m_Pointer;
    int m_Turned = 0; // in eighths of a degree, since the last step of the wheel
};

} // namespace tavo
