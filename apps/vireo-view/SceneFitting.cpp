#include "apps/vireo-view/SceneFitting.h"

#include <algorithm>
#include <array>

#include "apps/vireo-view/Span.h"

namespace vireo_view {

namespace {

using Spans = std::array<Span, 3>;
using Sizes = std::array<double, 3>;

void include(Spans& spans, const Points3& points)
{
    for (const tavo::Vector3d& point : points)
        for (unsigned int axis = 0; axis < 3; ++axis)
            spans[axis].include(point[axis]);
}

// The sizes that keep the spans' proportions.
Sizes proportionalSizes(const Spans& spans)
{
    double largest = 0;
    for (const Span& span : spans)
        largest = std::max(largest, span.getHalfExtent());
    Sizes sizes{};
    for (unsigned int axis = 0; axis < 3; ++axis)
        sizes[axis] = largest > 0 ? FITTED_EXTENT * (spans[axis].getHalfExtent() / largest) : 0.0;
    return sizes;
}

// Brings the spans' centre to the origin and makes each span as large as its size says.
FittedPoints3 fitted(const Points3& points, const Spans& spans, const Sizes& sizes)
{
    FittedPoints3 result(points.size());
    for (std::size_t i = 0; i < points.size(); ++i)
        for (unsigned int axis = 0; axis < 3; ++axis)
            result[i][axis] = static_cast<float>((spans[axis].partAt(points[i][axis]) - 0.5) * sizes[axis]);
    return result;
}

} // namespace

FittedPoints3 fitPoints(const Points3& points)
{
    Spans spans;
    include(spans, points);
    return fitted(points, spans, proportionalSizes(spans));
}

std::vector<FittedPoints3> fitCurves(const std::vector<Points3>& curves)
{
    Spans spans;
    for (const Points3& curve : curves)
        include(spans, curve);
    const Sizes sizes = proportionalSizes(spans);
    std::vector<FittedPoints3> result(curves.size());
    std::transform(curves.begin(), curves.end(), result.begin(),
        [&](const Points3& curve) { return fitted(curve, spans, sizes); });
    return result;
}

} // namespace vireo_view
