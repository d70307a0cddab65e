#include "apps/vireo-view/CloudCurves.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "apps/vireo-view/Bins.h"
#include "apps/vireo-view/Histogram.h"

namespace vireo_view {

namespace {

double coordinate(const tavo::Vector3d& point, Axis axis)
{
    return point[static_cast<std::size_t>(axis)];
}

Span spanOf(const Points3& cloud, Axis axis)
{
    Span span;
    for (const tavo::Vector3d& point : cloud)
        span.include(coordinate(point, axis));
    return span;
}

// As many intervals along an axis as suit the number of points.
Bins binsOf(const Points3& cloud, Axis axis)
{
    const double root = std::sqrt(static_cast<double>(cloud.size()));
    return {spanOf(cloud, axis), std::clamp<std::size_t>(static_cast<std::size_t>(root), 1, 200)};
}

} // namespace

Points2 heightHistogram(const Points3& cloud, Axis up)
{
    const Bins bins = binsOf(cloud, up);
    std::vector<double> counts(bins.getCount());
    for (const tavo::Vector3d& point : cloud)
        ++counts[bins.binOf(coordinate(point, up))];
    return outlineOf(bins, counts);
}

Axis longerAxisBeside(Axis up, const Points3& cloud)
{
    const Axis first = up == Axis::X ? Axis::Y : Axis::X;
    const Axis second = up == Axis::Z ? Axis::Y : Axis::Z;
    const bool firstIsLonger = spanOf(cloud, first).getHalfExtent() >= spanOf(cloud, second).getHalfExtent();
    return firstIsLonger ? first : second;
}

Silhouette silhouette(const Points3& cloud, Axis up)
{
    const Axis along = longerAxisBeside(up, cloud);
    const Bins bins = binsOf(cloud, along);
    std::vector<Span> heights(bins.getCount());
    for (const tavo::Vector3d& point : cloud)
        heights[bins.binOf(coordinate(point, along))].include(coordinate(point, up));

    constexpr double GAP = std::numeric_limits<double>::quiet_NaN();
    Silhouette result{along, {}, {}};
    for (std::size_t i = 0; i < heights.size(); ++i) {
        const double middle = bins.reach(static_cast<double>(i) + 0.5);
        const Span& span = heights[i];
        result.highest.emplace_back(middle, span.isEmpty() ? GAP : span.getMax());
        result.lowest.emplace_back(middle, span.isEmpty() ? GAP : span.getMin());
    }
    return result;
}

} // namespace vireo_view
