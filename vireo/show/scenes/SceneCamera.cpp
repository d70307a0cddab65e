#include "vireo/show/scenes/SceneCamera.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>

namespace tavo {

namespace {

const double HALF_VIEW = std::tan(20 * std::numbers::pi / 180); // half the height of what is seen, at a depth of 1
constexpr double MARGIN = 1.06;                                 // around what is fitted
// More would leave too few bits of a depth buffer of 24 to tell near things apart.
constexpr double MOST_DEPTHS = 4096; // the farthest by the nearest

// Exact at right angles, where the functions of radians are not.
double sine(double degrees)
{
    const double turn = std::remainder(degrees, 360);
    if (std::remainder(turn, 90) == 0)
        return turn == 90 ? 1 : turn == -90 ? -1 : 0;
    return std::sin(turn * std::numbers::pi / 180);
}

double cosine(double degrees)
{
    return sine(degrees + 90);
}

} // namespace

std::optional<SceneCamera::Side> SceneCamera::sideOf(std::string_view name)
{
    constexpr std::string_view NAMES[] = {"front", "back", "left", "right", "top", "bottom"};
    const auto* const found = std::find(std::begin(NAMES), std::end(NAMES), name);
    if (found == std::end(NAMES))
        return {};
    return static_cast<Side>(found - std::begin(NAMES));
}

void SceneCamera::look(Side side)
{
    switch (side) {
    case Side::Front: return setDirection(0, 0);
    case Side::Back: return setDirection(180, 0);
    case Side::Left: return setDirection(-90, 0);
    case Side::Right: return setDirection(90, 0);
    case Side::Top: return setDirection(0, 90);
    case Side::Bottom: return setDirection(0, -90);
    }
}

void SceneCamera::setDirection(double azimuth, double elevation)
{
    m_Azimuth = std::remainder(azimuth, 360);
    m_Elevation = std::clamp(elevation, -90.0, 90.0);
}

Vector3d SceneCamera::toTheRight() const
{
    return {cosine(m_Azimuth), sine(m_Azimuth), 0};
}

Vector3d SceneCamera::towardsEye() const
{
    const double flat = cosine(m_Elevation);
    return {flat * sine(m_Azimuth), -flat * cosine(m_Azimuth), sine(m_Elevation)};
}

Vector3d SceneCamera::upwards() const
{
    return cross(towardsEye(), toTheRight());
}

Vector3d SceneCamera::inEyeDirections(const Vector3d& direction) const
{
    return {dot(toTheRight(), direction), dot(upwards(), direction), dot(towardsEye(), direction)};
}

// The four planes that bound the view are moved until they touch the box. Two that face each other meet in a line at
// the eye, or in an orthographic view have its distance between them.
void SceneCamera::fit(const SceneBox& box, const Size& size, const Margins& margins)
{
    if (box.isEmpty())
        return;
    const double perPixel = HALF_VIEW / MARGIN / (0.5 * size.height);
    const double slopes[2][2] = {
        {perPixel * (0.5 * size.width - margins.right), perPixel * (0.5 * size.width - margins.left)},
        {perPixel * (0.5 * size.height - margins.top), perPixel * (0.5 * size.height - margins.bottom)}};
    double reach[2][2] = {}; // of the box, to both sides
    m_Distance = 0;
    for (std::size_t i = 0; i < 2; ++i) {
        for (const Vector3d& corner : box.corners()) {
            const Vector3d place = inEyeDirections(corner - box.centre());
            const double nearer = m_IsOrthographic ? 0 : place[2];
            reach[i][0] = std::max(reach[i][0], slopes[i][0] * nearer + place[i]);
            reach[i][1] = std::max(reach[i][1], slopes[i][1] * nearer - place[i]);
        }
        m_Distance = std::max(m_Distance, (reach[i][0] + reach[i][1]) / (slopes[i][0] + slopes[i][1]));
    }
    // What is seen of a single point is anything; of a line from its end, the line must be in front of the eye.
    const double least = box.diagonal() > 0 ? box.diagonal() : std::max(1.0, length(box.centre()) * 1e-6);
    m_Distance = std::max(m_Distance, 0.6 * least);
    double offset[2]; // of the eye, to the right and up
    for (std::size_t i = 0; i < 2; ++i)
        offset[i] = 0.5 * (reach[i][0] - reach[i][1] + m_Distance * (slopes[i][1] - slopes[i][0]));
    m_Pivot = box.centre() + offset[0] * toTheRight() + offset[1] * upwards();
}

void SceneCamera::turn(double azimuth, double elevation, const Vector3d& about)
{
    const Vector3d place = inEyeDirections(m_Pivot - about);
    setDirection(m_Azimuth + azimuth, m_Elevation + elevation);
    m_Pivot = about + place[0] * toTheRight() + place[1] * upwards() + place[2] * towardsEye();
}

void SceneCamera::pan(double x, double y, double depth, const Size& size)
{
    const double units = unitsPerPixel(depth, size);
    m_Pivot = m_Pivot - (x * units) * toTheRight() + (y * units) * upwards();
}

void SceneCamera::walk(const Vector3d& way)
{
    const Vector3d ahead = cross({0, 0, 1}, toTheRight());
    m_Pivot = m_Pivot + way[0] * toTheRight() + way[1] * ahead + Vector3d(0, 0, way[2]);
}

void SceneCamera::zoom(double factor, const Vector3d& towards)
{
    const double nearest = std::max(1e-14 * length(m_Pivot), 1e-30); // doubles tell no more apart
    const double distance = std::clamp(m_Distance / factor, nearest, 1e30);
    m_Pivot = towards + (distance / m_Distance) * (m_Pivot - towards);
    m_Distance = distance;
}

Matrix4 SceneCamera::modelView(const Matrix4& model, const Vector3d& origin) const
{
    const Vector3d directions[] = {toTheRight(), upwards(), towardsEye()};
    // Large numbers are subtracted before anything else is done to them.
    const Vector3d fromEye = model * origin - m_Pivot - m_Distance * towardsEye();
    Matrix4 view;
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column)
            view.at(row, column) =
                dot(directions[row], Vector3d(model.at(0, column), model.at(1, column), model.at(2, column)));
        view.at(row, 3) = dot(directions[row], fromEye);
    }
    return view;
}

SceneCamera::Depths SceneCamera::depthsOf(const SceneBox& box) const
{
    Depths depths{m_Distance, m_Distance};
    if (box.isEmpty())
        return {0.5 * m_Distance, 2 * m_Distance};
    for (const Vector3d& corner : box.corners()) {
        const double depth = -dot(towardsEye(), corner - m_Pivot - m_Distance * towardsEye());
        depths.nearest = std::min(depths.nearest, depth);
        depths.farthest = std::max(depths.farthest, depth);
    }
    const double margin = 0.01 * (depths.farthest - depths.nearest) + 1e-3 * m_Distance;
    depths = {depths.nearest - margin, depths.farthest + margin};
    if (!m_IsOrthographic)
        depths.nearest = std::max(depths.nearest, depths.farthest / MOST_DEPTHS);
    return depths;
}

Matrix4 SceneCamera::projection(const SceneBox& box, const Size& size) const
{
    const auto [nearest, farthest] = depthsOf(box);
    const double aspect = size.width / size.height;
    Matrix4 clip;
    if (m_IsOrthographic) {
        clip.at(0, 0) = 1 / (HALF_VIEW * m_Distance * aspect);
        clip.at(1, 1) = 1 / (HALF_VIEW * m_Distance);
        clip.at(2, 2) = -2 / (farthest - nearest);
        clip.at(2, 3) = -(farthest + nearest) / (farthest - nearest);
    } else {
        clip.at(0, 0) = 1 / (HALF_VIEW * aspect);
        clip.at(1, 1) = 1 / HALF_VIEW;
        clip.at(2, 2) = -(farthest + nearest) / (farthest - nearest);
        clip.at(2, 3) = -2 * farthest * nearest / (farthest - nearest);
        clip.at(3, 2) = -1;
        clip.at(3, 3) = 0;
    }
    return clip;
}

double SceneCamera::depthAt(double drawnDepth, const SceneBox& box) const
{
    const auto [nearest, farthest] = depthsOf(box);
    if (m_IsOrthographic)
        return nearest + drawnDepth * (farthest - nearest);
    return farthest * nearest / (farthest - drawnDepth * (farthest - nearest));
}

double SceneCamera::heightSeen() const
{
    return 2 * HALF_VIEW * (m_IsOrthographic ? m_Distance : 1);
}

double SceneCamera::unitsPerPixel(double depth, const Size& size) const
{
    return heightSeen() * (m_IsOrthographic ? 1 : depth) / size.height;
}

SceneCamera::Pixel SceneCamera::project(const Vector3d& point, const Size& size) const
{
    const Vector3d place = inEyeDirections(point - m_Pivot - m_Distance * towardsEye());
    const double units = unitsPerPixel(-place[2], size);
    return {0.5 * size.width + place[0] / units, 0.5 * size.height - place[1] / units, -place[2]};
}

Vector3d SceneCamera::unproject(const Pixel& pixel, const Size& size) const
{
    const double units = unitsPerPixel(pixel.depth, size);
    return m_Pivot + (m_Distance - pixel.depth) * towardsEye() + ((pixel.x - 0.5 * size.width) * units) * toTheRight() +
           ((0.5 * size.height - pixel.y) * units) * upwards();
}

} // namespace tavo
