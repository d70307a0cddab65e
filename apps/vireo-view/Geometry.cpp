#include "apps/vireo-view/Geometry.h"

namespace vireo_view {

tavo::Vector3d Placement::apply(const tavo::Vector3d& point) const
{
    if (!matrix)
        return point;
    const std::array<double, 16>& m = *matrix;
    tavo::Vector3d moved;
    for (unsigned int i = 0; i < 3; ++i)
        moved[i] = m[i] * point[0] + m[4 + i] * point[1] + m[8 + i] * point[2] + m[12 + i];
    return moved;
}

} // namespace vireo_view
