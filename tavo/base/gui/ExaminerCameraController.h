#pragma once

#include "tavo/base/Export.h"
#include "tavo/base/gui/Camera.h"
#include "tavo/base/gui/GeneralKey.h"
#include "tavo/base/math/vectors.h"

namespace tavo {

/// Lets people examine what a camera looks at with mouse and keys, as if they held it.
///
/// | input | effect |
/// |---|---|
/// | left button | turns about the look-at point: what is under the pointer follows it |
/// | right button | up moves nearer, down moves away |
/// | middle button | shifts: what is as far away as the look-at point follows the pointer |
/// | wheel | forward moves nearer, back moves away |
/// | arrow keys | turn; with shift, they shift |
/// | + and - | move nearer and away |
/// | Home | returns to where the camera was last placed |
///
/// Events are collected, and update() applies them once per frame. Pixels are counted from the upper left.
///
///     ExaminerCameraController controller;
///     controller.setCamera(&camera);
///     controller.setSize(640, 480);
///     controller.mouseWheel(1);
///     controller.update();
class TAVO_BASE_EXPORT ExaminerCameraController
{
public:
    /// The numbers of the buttons in mouse events. Others do nothing. If several are down, the last one pressed counts.
    static constexpr unsigned int LEFT_BUTTON = 1;
    static constexpr unsigned int RIGHT_BUTTON = 2;
    static constexpr unsigned int MIDDLE_BUTTON = 4;

    /// Sets the camera to steer; null for none.
    /// @owns The caller keeps the camera, which must outlive the controller or be replaced before it dies.
    void setCamera(Camera* camera);

    /// The size of the view in pixels.
    void setSize(int width, int height);

    /// A button goes down or up at a pixel of the view. The modifiers are not used.
    void mousePress(int x, int y, unsigned int button, Modifiers modifiers);
    void mouseRelease(int x, int y, unsigned int button, Modifiers modifiers);

    /// The pointer is at that pixel now; with a button down, this is a drag. A left drag along the view's smaller side
    /// turns by half a circle, a right drag along its height moves ten times nearer or farther away.
    void mouseMove(int x, int y);

    /// Turns the wheel by that many notches; forward is positive.
    void mouseWheel(double notches);

    /// A key goes down, or repeats. An arrow key does what a drag along 1/24 of the view's smaller side does; + and -
    /// are a notch of the wheel.
    void keyPress(GeneralKey key);
    /// Does nothing: keys act when they go down.
    void keyRelease(GeneralKey key);

    /// Applies what was collected since the last call to the camera. Whoever draws the view calls this in every frame.
    void update();

    /// Places the camera at once, drops what was collected, and makes this the place that Home returns to. A place that
    /// Camera::setView refuses changes nothing.
    void place(const Vector3f& eye, const Vector3f& lookAt, const Vector3f& up);

private:
    // A movement collected since the last update: a turn and a shift in pixels of the view, right and down positive,
    // and an approach in powers of e. If `home` is set, the camera goes home first.
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
