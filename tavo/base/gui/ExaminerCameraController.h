#pragma once

#include "tavo/base/Export.h"
#include "tavo/base/gui/Camera.h"
#include "tavo/base/gui/GeneralKey.h"
#include "tavo/base/math/vectors.h"

namespace tavo {

// Lets a person examine what a camera looks at with mouse and keys, as if holding it.
//
//   left button    turns about the look-at point: what is under the pointer follows it
//   right button   up moves nearer, down farther
//   middle button  shifts: what lies at the look-at point's distance follows the pointer
//   wheel          forward moves nearer, back farther
//   arrow keys     turn; with shift they shift
//   + and -        move nearer and farther
//   Home           goes back to where the camera was placed last
//
// Events are collected and take effect in update(), once per frame. Pixels have their origin at the upper left.
class TAVO_BASE_EXPORT ExaminerCameraController
{
public:
    // The buttons' numbers in mouse events. Any other number does nothing. Of several buttons, the one pressed last
    // counts.
    static constexpr unsigned int LEFT_BUTTON = 1;
    static constexpr unsigned int RIGHT_BUTTON = 2;
    static constexpr unsigned int MIDDLE_BUTTON = 4;

    // The camera to steer, which must outlive the controller or be replaced before it dies; null for none.
    void setCamera(Camera* camera);

    // The view's size in pixels.
    void setSize(int width, int height);

    void mousePress(int x, int y, unsigned int button, Modifiers modifiers);
    void mouseRelease(int x, int y, unsigned int button, Modifiers modifiers);
    void mouseMove(int x, int y);

    // Notches of the wheel, forward positive.
    void mouseWheel(double notches);

    void keyPress(GeneralKey key);
    void keyRelease(GeneralKey key);

    // Lets what was collected since the last call take effect on the camera.
    void update();

    // Puts the camera there at once, drops what was collected, and makes it the place that the Home key goes back to. A
    // place that Camera::setView refuses changes nothing.
    void place(const Vector3f& eye, const Vector3f& lookAt, const Vector3f& up);

private:
    // A movement collected since the last update: a turn and a shift in pixels of the view, right and down positive,
    // and an approach in powers of e, after going home first if asked to.
    struct Movement
    {
        bool home = false;
        Vector2d turn;
        Vector2d shift;
        double approach = 0.0;
    };

    void apply(const Movement& movement);
    double smallerSide() const;

    Camera* m_Camera = nullptr;
    Camera m_Home;
    int m_Width = 1;
    int m_Height = 1;
    unsigned int m_Button = 0;
    StaticVector<int, 2> m_Pointer;
    Movement m_Movement;
};

} // namespace tavo
