#pragma once

#include "tavo/base/math/vectors.h"

namespace tavo {

class Camera;

// Where a camera goes to show a box. It keeps its up vector.
struct CameraFit
{
    Vector3f eye;
    Vector3f lookAt;
};

// The fit looks at the middle of the box. Its eye is two of the box's largest extents beyond the camera's look-at
// point, along the camera's viewing direction, or along Z where the camera has none.
CameraFit fitCamera(const Camera& camera, const Box3f& box);

} // namespace tavo
