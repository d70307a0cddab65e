#include "tavo/base/gui/Camera.h"

#include <algorithm>
#include <cmath>

namespace tavo {

namespace {

// Coordinates beyond this are brought back to it, so that sums and products of a few of them stay finite floats.
constexpr float FARTHEST = 1e18f;

// Points nearer than this coincide: the square of their distance is still a float of full precision.
constexpr double NEAREST = 1e-15;

bool isFinite(const Vector3f& v)
{
    return std::isfinite(v[0]) && std::isfinite(v[1]) && std::isfinite(v[2]);
}

Vector3f broughtNear(Vector3f v)
{
    for (unsigned int i = 0; i < 3; ++i)
        v[i] = std::clamp(v[i], -FARTHEST, FARTHEST);
    return v;
}

Vector3d widened(const Vector3f& v)
{
    return {v[0], v[1], v[2]};
}

Vector3f narrowed(const Vector3d& v)
{
    return {v[0], v[1], v[2]};
}

double largest(const Vector3d& v)
{
    return std::max({std::abs(v[0]), std::abs(v[1]), std::abs(v[2])});
}

// Scaled first, so that neither the tiniest nor the largest floats are lost in their squares.
Vector3d normalised(const Vector3d& v)
{
    const Vector3d scaled = v * (1.0 / largest(v));
    return scaled * (1.0 / length(scaled));
}

// The axis along which v is shortest: the one that is surest not to be parallel to it.
Vector3d axisAcross(const Vector3d& v)
{
    unsigned int shortest = 0;
    for (unsigned int i = 1; i < 3; ++i)
        if (std::abs(v[i]) < std::abs(v[shortest]))
            shortest = i;
    Vector3d axis;
    axis[shortest] = 1.0;
    return axis;
}

// The part of v at right angles to the direction, of length 1.
Vector3d perpendicular(const Vector3d& v, const Vector3d& direction)
{
    return normalised(v - direction * dot(v, direction));
}

Vector3f usableUp(const Vector3f& up, const Vector3d& direction)
{
    constexpr double NEARLY_PARALLEL = 1e-6;
    const Vector3d wanted = isFinite(up) ? widened(up) : Vector3d();
    const bool useful = largest(wanted) > 0.0 && length(cross(normalised(wanted), direction)) > NEARLY_PARALLEL;
    return narrowed(perpendicular(useful ? wanted : axisAcross(direction), direction));
}

} // namespace

Camera::Camera()
    : m_EyePoint(0.0f, 0.0f, -1.0f)
    , m_LookAtPoint(0.0f, 0.0f, 0.0f)
    , m_UpVector(0.0f, 1.0f, 0.0f)
{}

bool Camera::setView(const Vector3f& eye, const Vector3f& lookAt, const Vector3f& up)
{
    if (!isFinite(eye) || !isFinite(lookAt))
        return false;

    const Vector3d oldDirection = normalised(widened(m_LookAtPoint) - widened(m_EyePoint));
    m_EyePoint = broughtNear(eye);
    m_LookAtPoint = broughtNear(lookAt);
    if (largest(widened(m_LookAtPoint) - widened(m_EyePoint)) < NEAREST) {
        // Far enough that the step is not lost in the digits of a point far from the origin.
        const double distance = std::max(1.0, 1e-3 * largest(widened(m_LookAtPoint)));
        m_EyePoint = narrowed(widened(m_LookAtPoint) - oldDirection * distance);
    }
    m_UpVector = usableUp(up, normalised(widened(m_LookAtPoint) - widened(m_EyePoint)));
    return true;
}

} // namespace tavo
