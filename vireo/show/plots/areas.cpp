#include "vireo/show/plots/areas.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace tavo {

namespace {

constexpr double MANY_IN_COLUMN = 4;
constexpr double FARTHEST_PIXEL = 1e6;
constexpr double MOST_INTERVALS = 512;

double pixelAt(const PixelMap& map, double value)
{
    const double pixel = map.toPixel(value);
    return std::isnan(pixel) ? map.firstPixel : std::clamp(pixel, -FARTHEST_PIXEL, FARTHEST_PIXEL);
}

// Calls `visit(first, last)` for the samples that are drawn together: those of a column of pixels where there are many,
// single ones where there are few.
template <typename Visit>
void visitTogether(const CurveStore& curve, const PixelMap& xMap, double margin, const Visit& visit)
{
    std::size_t first = 0;
    std::size_t end = curve.size();
    if (curve.isSorted()) {
        first = curve.lowerBound(std::min(xMap.firstValue, xMap.lastValue) - margin);
        first -= first > 0;
        end = std::min(end, curve.lowerBound(std::max(xMap.firstValue, xMap.lastValue) + margin, first) + 1);
    }
    const double numColumns = std::abs(xMap.lastPixel - xMap.firstPixel) + 1;
    if (!curve.isSorted() || static_cast<double>(end - first) < MANY_IN_COLUMN * numColumns) {
        for (; first < end; ++first)
            visit(first, first + 1);
        return;
    }
    for (double column = std::floor(xMap.firstPixel) + 1; first < end; ++column) {
        const bool isLast = column > xMap.lastPixel;
        const std::size_t last = isLast ? end : std::min(end, curve.lowerBound(xMap.toValue(column), first));
        if (last > first)
            visit(first, last);
        first = last;
    }
}

Extent extentOfSamples(const CurveStore& curve, std::size_t first, std::size_t last)
{
    if (last - first > 1)
        return curve.extremes(first, last).extent;
    Extent extent;
    extent.include(curve.y(first));
    return extent;
}

std::vector<double> sortedXs(const CurveStore& curve)
{
    std::vector<double> sorted;
    for (std::size_t i = 0; i < curve.size(); ++i)
        if (std::isfinite(curve.x(i)))
            sorted.push_back(curve.x(i));
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

struct Intervals
{
    double from;
    double length; // of each
    double number;
};

// As many as Rice's rule says, or fewer. Where all values are whole numbers each interval has as many of these, or a
// die would seem to skip some; one, if there are few.
Intervals intervalsOf(const NumberArray& values)
{
    constexpr double MOST_WHOLE = 1e15; // whose halves are numbers, too
    constexpr double FEW_WHOLE = 50;
    Extent extent;
    double numFinite = 0;
    bool areWhole = true;
    values.visit([&](const auto* numbers, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            const auto value = static_cast<double>(numbers[i]);
            if (!std::isfinite(value))
                continue;
            extent.include(value);
            ++numFinite;
            areWhole = areWhole && value == std::floor(value);
        }
    });
    if (extent.isEmpty())
        return {};
    const double number = std::min(std::ceil(2 * std::cbrt(numFinite)), MOST_INTERVALS);
    if (areWhole && extent.from > -MOST_WHOLE && extent.to < MOST_WHOLE) {
        const double numWhole = extent.to - extent.from + 1;
        const double length = numWhole <= FEW_WHOLE ? 1 : std::ceil(numWhole / number);
        return {extent.from - 0.5, length, std::ceil(numWhole / length)};
    }
    if (extent.from == extent.to)
        return {extent.from - 0.5, 1, 1};
    return {extent.from, extent.to / number - extent.from / number, number};
}

} // namespace

std::vector<QRectF> barsOf(const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap, double width)
{
    std::vector<QRectF> bars;
    const double zero = yMap.isLog ? yMap.firstPixel : pixelAt(yMap, 0);
    visitTogether(curve, xMap, width, [&](std::size_t first, std::size_t last) {
        const Extent extent = extentOfSamples(curve, first, last);
        const double x = curve.x(first);
        if (extent.isEmpty() || !std::isfinite(x) || (yMap.isLog && extent.to <= 0))
            return;
        const double left = pixelAt(xMap, x - width / 2);
        const double right = std::max(pixelAt(xMap, curve.x(last - 1) + width / 2), left + 1);
        const double top = std::min({pixelAt(yMap, extent.to), pixelAt(yMap, extent.from), zero});
        const double bottom = std::max({pixelAt(yMap, extent.to), pixelAt(yMap, extent.from), zero});
        bars.emplace_back(QPointF(left, top), QPointF(right, bottom));
    });
    return bars;
}

std::vector<QPolygonF> bandOf(const CurveStore& low, const CurveStore& high, const PixelMap& xMap, const PixelMap& yMap)
{
    std::vector<QPolygonF> areas;
    QPolygonF upper;
    QPolygonF lower;
    const auto endArea = [&] {
        std::reverse(lower.begin(), lower.end());
        if (upper.size() > 1)
            areas.push_back(upper + lower);
        upper.clear();
        lower.clear();
    };
    visitTogether(high, xMap, 0, [&](std::size_t first, std::size_t last) {
        const Extent above = extentOfSamples(high, first, last);
        const Extent below = extentOfSamples(low, first, last);
        const double x = high.x(first + (last - first) / 2);
        if (above.isEmpty() || below.isEmpty() || !std::isfinite(x))
            return endArea();
        upper.push_back({pixelAt(xMap, x), pixelAt(yMap, above.to)});
        lower.push_back({pixelAt(xMap, x), pixelAt(yMap, below.from)});
    });
    endArea();
    return areas;
}

double leastDistance(const CurveStore& curve)
{
    const std::vector<double> sorted = curve.isSorted() ? std::vector<double>() : sortedXs(curve);
    const std::size_t size = curve.isSorted() ? curve.size() : sorted.size();
    const auto xAt = [&](std::size_t i) { return curve.isSorted() ? curve.x(i) : sorted[i]; };
    double least = INFINITY;
    for (std::size_t i = 1; i < size; ++i) {
        const double distance = xAt(i) - xAt(i - 1);
        least = distance > 0 ? std::min(least, distance) : least;
    }
    return std::isfinite(least) ? least : 1;
}

CurveSamples histogramOf(const NumberArray& values)
{
    CurveSamples samples;
    samples.kind = CurveKind::Histogram;
    const Intervals intervals = intervalsOf(values);
    if (intervals.number == 0)
        return samples;
    const auto middles = std::make_shared<std::vector<double>>(static_cast<std::size_t>(intervals.number));
    const auto counts = std::make_shared<std::vector<double>>(middles->size());
    for (std::size_t i = 0; i < middles->size(); ++i)
        (*middles)[i] = intervals.from + (static_cast<double>(i) + 0.5) * intervals.length;
    values.visit([&](const auto* numbers, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            const double place = (static_cast<double>(numbers[i]) - intervals.from) / intervals.length;
            if (std::isfinite(static_cast<double>(numbers[i])))
                ++(*counts)[static_cast<std::size_t>(std::clamp(place, 0.0, intervals.number - 1))];
        }
    });
    samples.x = NumberArray(middles, middles->data(), middles->size(), NumberType::Float64);
    samples.y = NumberArray(counts, counts->data(), counts->size(), NumberType::Float64);
    return samples;
}

std::size_t numInfiniteOf(const NumberArray& values)
{
    std::size_t number = 0;
    values.visit([&](const auto* numbers, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i)
            number += std::isinf(static_cast<double>(numbers[i]));
    });
    return number;
}

} // namespace tavo
