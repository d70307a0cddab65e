#include "vireo/show/volumes/VolumeRay.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tavo {

VolumeRay::VolumeRay(
    const VolumeGrid& grid, const Matrix4& matrix, const Vector3d& start, const Vector3d& direction, bool isCut)
    : m_Size(grid.size)
{
    const auto column = [&](std::size_t i) { return matrix.turned(grid.spacing[i] * grid.axes[i]); };
    const Vector3d x = column(0);
    const Vector3d y = column(1);
    const Vector3d z = column(2);
    const double volume = dot(cross(x, y), z);
    if (!(std::abs(volume) > 0))
        return;
    const auto inSamples = [&](const Vector3d& vector) {
        return (1 / volume) * Vector3d(dot(cross(y, z), vector), dot(cross(z, x), vector), dot(cross(x, y), vector));
    };
    const Vector3d from = inSamples(start - matrix * grid.origin);
    const Vector3d along = inSamples(direction);
    double entry = isCut ? 0 : -std::numeric_limits<double>::infinity();
    double exit = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < 3; ++i) {
        const double one = (-0.5 - from[i]) / along[i];
        const double other = (m_Size[i] - 0.5 - from[i]) / along[i];
        const bool isBeside = along[i] == 0 && !(from[i] >= -0.5 && from[i] <= m_Size[i] - 0.5);
        entry = along[i] != 0 ? std::max(entry, std::min(one, other)) : entry;
        exit = isBeside ? entry : along[i] != 0 ? std::min(exit, std::max(one, other)) : exit;
    }
    const double fastest = std::max({std::abs(along[0]), std::abs(along[1]), std::abs(along[2])});
    if (!(exit > entry) || !std::isfinite(exit - entry) || !(fastest > 0))
        return;
    m_NumPlaces = static_cast<std::size_t>(std::ceil(2 * (exit - entry) * fastest));
    const double step = (exit - entry) / double(m_NumPlaces);
    m_First = from + (entry + 0.5 * step) * along;
    m_Step = step * along;
    m_Start = start + (entry + 0.5 * step) * direction;
    m_Way = step * direction;
    const Vector3d inUnits(m_Step[0] * grid.spacing[0], m_Step[1] * grid.spacing[1], m_Step[2] * grid.spacing[2]);
    m_Thickness = length(inUnits) / grid.smallestSpacing();
}

void VolumeRay::leaveOut(const SceneBox& box)
{
    double entry = 0;
    auto exit = double(m_NumPlaces);
    for (std::size_t i = 0; i < 3; ++i) {
        const double one = (box.getMin()[i] - m_Start[i]) / m_Way[i];
        const double other = (box.getMax()[i] - m_Start[i]) / m_Way[i];
        if (m_Way[i] != 0) {
            entry = std::max(entry, std::min(one, other));
            exit = std::min(exit, std::max(one, other));
        } else if (m_Start[i] < box.getMin()[i] || m_Start[i] > box.getMax()[i]) {
            return;
        }
    }
    m_LeftOut = {entry, exit};
}

void VolumeRay::forEach(const std::function<bool(std::size_t sample)>& use) const
{
    for (std::size_t place = 0; place < m_NumPlaces; ++place) {
        if (m_LeftOut.first <= double(place) && double(place) <= m_LeftOut.second)
            continue;
        std::size_t sample = 0;
        for (std::size_t i = 3; i-- > 0;) {
            const double nearest = std::floor(m_First[i] + double(place) * m_Step[i] + 0.5);
            const auto index = static_cast<std::size_t>(std::clamp(nearest, 0.0, m_Size[i] - 1.0));
            sample = sample * static_cast<std::size_t>(m_Size[i]) + index;
        }
        if (!use(sample))
            return;
    }
}

} // namespace tavo
