#include "apps/vireo-view/SceneFitting.h"

#include <algorithm>
#include <array>

#include "apps/vireo-view/Span.h"

namespace vireo_view {

namespace {

template <unsigned int N>
using Curve = std::vector<tavo::StaticVector<double, N>>;

template <unsigned int N>
using FittedCurve = std::vector<tavo::StaticVector<float, N>>;

template <unsigned int N>
using Spans = std::array<Span, N>;

template <unsigned int N>
void include(Spans<N>& spans, const Curve<N>& curve)
{
    for (const auto& point : curve)
        for (unsigned int axis = 0; axis < N; ++axis)
            spans[axis].include(point[axis]);
}

template <unsigned int N>
Spans<N> spansOf(const std::vector<Curve<N>>& curves)
{
    Spans<N> spans;
    for (const Curve<N>& curve : curves)
        include<N>(spans, curve);
    return spans;
}

// Brings the spans' centre to the origin and makes each span as large as its size says.
template <unsigned int N>
FittedCurve<N> fitted(const Curve<N>& curve, const Spans<N>& spans, const std::array<double, N>& sizes)
{
    FittedCurve<N> result(curve.size());
    for (std::size_t i = 0; i < curve.size(); ++i)
        for (unsigned int axis = 0; axis < N; ++axis)
            result[i][axis] = static_cast<float>((spans[axis].partAt(curve[i][axis]) - 0.5) * sizes[axis]);
    return result;
}

// The sizes that keep the spans' proportions.
std::array<double, 3> proportionalSizes(const Spans<3>& spans)
{
    double largest = 0;
    for (const Span& span : spans)
        largest = std::max(largest, span.getHalfExtent());
    std::array<double, 3> sizes{};
    for (unsigned int axis = 0; axis < 3; ++axis)
        sizes[axis] = largest > 0 ? FITTED_EXTENT * (spans[axis].getHalfExtent() / largest) : 0.0;
    return sizes;
}

template <unsigned int N>
std::vector<FittedCurve<N>> allFitted(
    const std::vector<Curve<N>>& curves, const Spans<N>& spans, const std::array<double, N>& sizes)
{
    std::vector<FittedCurve<N>> result(curves.size());
    std::transform(curves.begin(), curves.end(), result.begin(),
        [&](const Curve<N>& curve) { return fitted<N>(curve, spans, sizes); });
    return result;
}

} // namespace

FittedPoints3 fitPoints(const Points3& points)
{
    Spans<3> spans;
    include<3>(spans, points);
    return fitted<3>(points, spans, proportionalSizes(spans));
}

std::vector<FittedPoints3> fitCurves(const std::vector<Points3>& curves)
{
    const Spans<3> spans = spansOf<3>(curves);
    return allFitted<3>(curves, spans, proportionalSizes(spans));
}

std::vector<FittedPoints2> fitCurves(const std::vector<Points2>& curves)
{
    return allFitted<2>(curves, spansOf<2>(curves), {FITTED_WIDTH, FITTED_HEIGHT});
}

} // namespace vireo_view
