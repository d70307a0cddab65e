#pragma once

#include "tavo/base/Export.h"
#include "tavo/base/math/StaticVector.h"

namespace tavo {

// A place to look from, a point to look at and a direction that is up. Every camera can be looked through: the three
// are finite, eye and look-at point differ, and up leaves the viewing direction.
class TAVO_BASE_EXPORT Camera
{
public:
    // Looks at the origin from (0, 0, -1), with y up.
    Camera();

    const StaticVector<float, 3>& getEyePoint() const { return m_EyePoint; }
    const StaticVector<float, 3>& getLookAtPoint() const { return m_LookAtPoint; }

    // Of length 1 and at right angles to the viewing direction.
    const StaticVector<float, 3>& getUpVector() const { return m_UpVector; }

    // Sets all three. Points that are not finite are refused: the camera stays as it was, and the answer is false. What
    // else could not be looked through is mended: points that (nearly) coincide by backing off along the old viewing
    // direction, and an up vector without a use by one at right angles.
    bool setView(
        const StaticVector<float, 3>& eye, const StaticVector<float, 3>& lookAt, const StaticVector<float, 3>& up);

    bool operator==(const Camera&) const = default;

private:
    StaticVector<float, 3> m_EyePoint;
    StaticVector<float, 3> m_LookAtPoint;
    StaticVector<float, 3> m_UpVector;
};

} // namespace tavo
