#pragma once

#include "tavo/base/Export.h"
#include "tavo/base/math/vectors.h"

namespace tavo {

// A place to look from, a point to look at and a direction that is up. Every camera can be looked through: the three
// are finite, eye and look-at point differ, and up leaves the viewing direction.
class TAVO_BASE_EXPORT Camera
{
public:
    // Looks at the origin from (0, 0, -1), with y up.
    Camera();

    const Vector3f& getEyePoint() const { return m_EyePoint; }
    const Vector3f& getLookAtPoint() const { return m_LookAtPoint; }

    // Of length 1 and at right angles to the viewing direction.
    const Vector3f& getUpVector() const { return m_UpVector; }

    // Sets all three. Points that are not finite are refused: the camera stays as it was, and the answer is false. What
    // else could not be looked through is mended: points that (nearly) coincide by backing off along the old viewing
    // direction, and an up vector without a use by one at right angles.
    bool setView(const Vector3f& eye, const Vector3f& lookAt, const Vector3f& up);

    bool operator==(const Camera&) const = default;

private:
    Vector3f m_EyePoint;
    Vector3f m_LookAtPoint;
    Vector3f m_UpVector;
};

} // namespace tavo
