#include "vireo/displayers/outOfView.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <sstream>

#include "tavo/base/gui/Camera.h"

namespace tavo {

namespace {

// What lies within so much of the origin along each axis ends before the far plane of a new view: the eye is at most
// four times as far away.
constexpr int SHOWN_REACH = 150;

struct DepthRange
{
    double min;
    double max;
};

Vector3d widened(const Vector3f& v)
{
    return {v[0], v[1], v[2]};
}

// How far a box reaches along the viewing direction.
DepthRange depthsOf(const Box3f& box, const Camera& camera)
{
    const Vector3d eye = widened(camera.getEyePoint());
    Vector3d direction = widened(camera.getLookAtPoint()) - eye;
    direction *= 1.0 / length(direction);
    const Vector3d min = widened(box.getMin());
    const Vector3d max = widened(box.getMax());
    const double middle = dot((min + max) * 0.5 - eye, direction);
    double reach = 0.0;
    for (unsigned int axis = 0; axis < 3; ++axis)
        reach += std::abs(direction[axis]) * (max[axis] - min[axis]) / 2;
    return {middle - reach, middle + reach};
}

// With as many digits as tell it from others: those of a time stamp, say.
std::string textOf(float number)
{
    constexpr std::size_t MOST_CHARACTERS = 32;
    char text[MOST_CHARACTERS];
    return {text, std::to_chars(text, text + MOST_CHARACTERS, number).ptr};
}

std::ostream& operator<<(std::ostream& stream, const Vector3f& point)
{
    return stream << '(' << textOf(point[0]) << ", " << textOf(point[1]) << ", " << textOf(point[2]) << ')';
}

} // namespace

std::string describeOutOfView(const Box3f& box, const Camera& camera)
{
    const DepthRange depths = depthsOf(box, camera);
    const bool isTooNear = depths.max < NEAR_PLANE;
    if (!isTooNear && !(depths.max > FAR_PLANE))
        return {};
    std::ostringstream text;
    text << "the data, from " << box.getMin() << " to " << box.getMax() << ", lie "
         << (isTooNear || depths.min > FAR_PLANE ? "" : "partly ") << "outside what this view shows: ";
    if (isTooNear)
        text << "they end " << NEAR_PLANE - depths.max << " before the near plane, which is " << NEAR_PLANE;
    else
        text << "they reach " << depths.max - FAR_PLANE << " beyond the far plane, which is " << FAR_PLANE;
    text << " from the eye at " << camera.getEyePoint() << ". A new view shows ";
    if (isTooNear)
        text << "nothing that extends less than " << NEAR_PLANE << " along every axis: enlarge them";
    else
        text << "data from " << -SHOWN_REACH << " to " << SHOWN_REACH
             << " along each axis: scale or shift them to there";
    text << ", or, if they are curves, send them to tavo::plot (vireo/show/show.h), which shows any range.";
    return text.str();
}

} // namespace tavo
