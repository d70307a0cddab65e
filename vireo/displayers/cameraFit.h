#pragma once

#include "tavo/base/math/BoundingBox.h"
#include "tavo/base/math/StaticVector.h"

namespace tavo {

class Camera;

// Where a camera goes to show a box. It keeps its up vector.
struct CameraFit
{
    StaticVector<float, 3> eye;
    StaticVector<float, 3> lookAt;
};

// The fit looks at the middle of the box. Its eye is two of the box's largest extents beyond the camera's look-at
// point, along the camera's viewing direction, or along Z where the camera has none.
CameraFit fitCamera(const Camera& camera, const BoundingBox<float, 3>& box);

} // namespace tavo
