#include "apps/vireo-view/CloudCurves.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "apps/vireo-view/Span.h"

namespace vireo_view {

namespace {

double coordinate(const Point3& point, Axis axis)
{
    return point[static_cast<std::size_t>(axis)];
}

Span spanOf(const Points3& cloud, Axis axis)
{
    Span span;
    for (const Point3& point : cloud)
        span.include(coordinate(point, axis));
    return span;
}

// Equal intervals along an axis of a cloud, as many as suit the number of points; one if the cloud has no extent there.
class Bins
{
public:
    Bins(const Points3& cloud, Axis axis)
        : m_Axis(axis)
        , m_Span(spanOf(cloud, axis))
        , m_Count(m_Span.getHalfExtent() > 0 ? suitableCount(cloud.size()) : 1)
    {}

    std::size_t getCount() const { return m_Count; }

    std::size_t binOf(const Point3& point) const
    {
        const double bins = m_Span.partAt(coordinate(point, m_Axis)) * static_cast<double>(m_Count);
        return std::min(m_Count - 1, static_cast<std::size_t>(bins));
    }

    // The coordinate that a number of bins, whole or not, reaches to.
    double reach(double bins) const { return m_Span.valueAt(bins / static_cast<double>(m_Count)); }

private:
    static std::size_t suitableCount(std::size_t numPoints)
    {
        const double root = std::sqrt(static_cast<double>(numPoints));
        return std::clamp<std::size_t>(static_cast<std::size_t>(root), 1, 200);
    }

    Axis m_Axis;
    Span m_Span;
    std::size_t m_Count;
};

} // namespace

Points2 heightHistogram(const Points3& cloud, Axis up)
{
    const Bins bins(cloud, up);
    std::vector<double> counts(bins.getCount());
    for (const Point3& point : cloud)
        ++counts[bins.binOf(point)];

    Points2 outline;
    outline.emplace_back(bins.reach(0), 0.0);
    for (std::size_t i = 0; i < counts.size(); ++i) {
        outline.emplace_back(bins.reach(static_cast<double>(i)), counts[i]);
        outline.emplace_back(bins.reach(static_cast<double>(i + 1)), counts[i]);
    }
    outline.emplace_back(bins.reach(static_cast<double>(counts.size())), 0.0);
    return outline;
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
    const Bins bins(cloud, along);
    std::vector<Span> heights(bins.getCount());
    for (const Point3& point : cloud)
        heights[bins.binOf(point)].include(coordinate(point, up));

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
