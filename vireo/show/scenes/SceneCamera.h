#pragma once

#include <optional>
#include <string_view>

#include "vireo/show/scenes/Matrix4.h"
#include "vireo/show/scenes/SceneBox.h"

namespace tavo {

// From where a scene is seen. The camera turns about a pivot, in the middle of the picture, and stays upright: z points
// up, also where it looks straight down. All is computed in double precision, so that data may be of any size and
// anywhere.
//
// Eye space is OpenGL's: x to the right, y up, z towards the eye. Pixels are counted from the top left corner, y down.
class SceneCamera
{
public:
    enum class Side
    {
        Front, // from where y is smallest, with x to the right
        Back,
        Left,
        Right,
        Top, // with y up
        Bottom
    };

    // By its name, "front" for example.
    static std::optional<Side> sideOf(std::string_view name);

    struct Size
    {
        double width;
        double height;
    };

    struct Pixel
    {
        double x;
        double y;
        double depth; // in front of the eye
    };

    // Looks from that side.
    void look(Side side);

    // Looks from that direction, in degrees: around the up axis, 0 from the front and 90 from the right, and up.
    void setDirection(double azimuth, double elevation);
    double getAzimuth() const { return m_Azimuth; }
    double getElevation() const { return m_Elevation; }

    void setOrthographic(bool isOrthographic) { m_IsOrthographic = isOrthographic; }
    bool isOrthographic() const { return m_IsOrthographic; }

    const Vector3d& getPivot() const { return m_Pivot; }
    double getDistance() const { return m_Distance; }
    Vector3d eye() const { return m_Pivot + m_Distance * towardsEye(); }

    // What is left free at the edges of the picture, in pixels; less than half of it at each.
    struct Margins
    {
        double left = 0;
        double top = 0;
        double right = 0;
        double bottom = 0;
    };

    // Backs off, in the direction from which it looks, until the whole box is seen between the margins.
    void fit(const SceneBox& box, const Size& size, const Margins& margins);
    void fit(const SceneBox& box, const Size& size) { fit(box, size, {}); }

    // Turns by degrees about a point, which stays where it is in the picture.
    void turn(double azimuth, double elevation, const Vector3d& about);

    // Moves so that what is at that depth moves by as many pixels.
    void pan(double x, double y, double depth, const Size& size);

    // Moves, in units of the scene: to the right, ahead without climbing, and up.
    void walk(const Vector3d& way);

    // Makes everything look that many times as large, and leaves a point where it is in the picture.
    void zoom(double factor, const Vector3d& towards);

    // Moves so that a point is in the middle of the picture.
    void centreOn(const Vector3d& point) { m_Pivot = point; }

    // From the coordinates of an object, which are counted from `origin`, to eye space.
    Matrix4 modelView(const Matrix4& model = {}, const Vector3d& origin = {}) const;

    // From eye space to OpenGL's clip space, for what is in that box.
    Matrix4 projection(const SceneBox& box, const Size& size) const;

    // The planes in front of the eye between which that projection draws.
    struct Depths
    {
        double nearest;
        double farthest;
    };
    Depths depthsOf(const SceneBox& box) const;

    // The height of what is seen, at a depth of 1 in perspective.
    double heightSeen() const;

    // How far in front of the eye that is which is drawn, with that projection, at a depth of OpenGL's between 0 and 1.
    double depthAt(double drawnDepth, const SceneBox& box) const;

    // Where a point is in the picture. Its depth is negative, and the rest means nothing, behind the eye of a
    // perspective view.
    Pixel project(const Vector3d& point, const Size& size) const;

    // The point that is there.
    Vector3d unproject(const Pixel& pixel, const Size& size) const;

    // How much of the scene, at that depth, a pixel shows.
    double unitsPerPixel(double depth, const Size& size) const;

    bool operator==(const SceneCamera&) const = default;

private:
    Vector3d toTheRight() const;
    Vector3d upwards() const;
    Vector3d towardsEye() const;
    Vector3d inEyeDirections(const Vector3d& direction) const;

    Vector3d m_Pivot;
    double m_Distance = 1;
    double m_Azimuth = 30;
    double m_Elevation = 25;
    bool m_IsOrthographic = false;
};

} // namespace tavo
