#pragma once

#include "tavo/base/Export.h"
#include "tavo/base/math/vectors.h"

namespace tavo {

/// A point to look from, a point to look at, and the direction that is up. Every camera is usable: its values are
/// finite, eye and look-at point differ, and up is not along the viewing direction.
///
///     Camera camera;
///     camera.setView({0, -500, 0}, {0, 0, 0}, {0, 0, 1});
class TAVO_BASE_EXPORT Camera
{
public:
    /// Looks at the origin from (0, 0, -1), with y up.
    Camera();

    const Vector3f& getEyePoint() const { return m_EyePoint; }
    const Vector3f& getLookAtPoint() const { return m_LookAtPoint; }

    /// Of length 1, and at right angles to the viewing direction.
    const Vector3f& getUpVector() const { return m_UpVector; }

    /// Sets all three. If a value is not finite, leaves the camera as it was and returns false. What else would be
    /// unusable is corrected: if the points (nearly) coincide, the eye backs off along the old viewing direction; if up
    /// is of no use, a vector at right angles replaces it.
    bool setView(const Vector3f& eye, const Vector3f& lookAt, const Vector3f& up);

    bool operator==(const Camera&) const = default;

private:
    Vector3f m_EyePoint;
    Vector3f m_LookAtPoint;
    Vector3f m_UpVector;
};

} // namespace tavo
