#include "vireo/displayers/cameraFit.h"

#include <algorithm>
#include <cmath>

#include "tavo/base/gui/Camera.h"

namespace tavo {

namespace {

Vector3f viewingDirection(const Camera& camera)
{
    const Vector3f d = camera.getLookAtPoint() - camera.getEyePoint();
    const float squared = dot(d, d);
    return squared > 0.0f ? d * (1.0f / std::sqrt(squared)) : Vector3f(0.0f, 0.0f, 1.0f);
}

} // namespace

CameraFit fitCamera(const Camera& camera, const Box3f& box)
{
    const Vector3f extent = box.getExtent();
    const float largest = std::max({extent[0], extent[1], extent[2]});
    // The eye starts from the old look-at point and goes on along the old direction: deliberate.
    return {
        camera.getLookAtPoint() + viewingDirection(camera) * (2.0f * largest), (box.getMin() + box.getMax()) * 0.5f};
}

} // namespace tavo
