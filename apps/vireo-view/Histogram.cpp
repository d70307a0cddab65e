#include "apps/vireo-view/Histogram.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace vireo_view {

namespace {

template <typename Visit>
void forEachFinite(const NumberColumn& samples, Visit visit)
{
    std::visit(
        [&visit](const auto& values) {
            for (const auto value : values)
                if (const auto number = static_cast<double>(value); std::isfinite(number))
                    visit(number);
        },
        samples);
}

// Of numbers that are not large; others need no bins of their own.
bool isWhole(double number)
{
    constexpr double LARGEST = 1 << 24;
    return std::abs(number) < LARGEST && static_cast<double>(static_cast<int>(number)) == number;
}

// The bins that suit the samples.
Bins binsOf(const NumberColumn& samples)
{
    double min = std::numeric_limits<double>::max();
    double max = std::numeric_limits<double>::lowest();
    bool areWhole = true;
    forEachFinite(samples, [&](double number) {
        min = std::min(min, number);
        max = std::max(max, number);
        areWhole = areWhole && isWhole(number);
    });
    if (min > max)
        return {Span(), 1};
    Span span;
    span.include(min);
    span.include(max);

    constexpr auto MOST = double{Histogram::MOST_BINS};
    const double numValues = span.getMax() - span.getMin() + 1;
    if (!areWhole || !(numValues < MOST * MOST))
        return {span, Histogram::MOST_BINS};
    return {span, static_cast<std::size_t>(std::ceil(numValues / std::ceil(numValues / MOST)))};
}

} // namespace

Histogram::Histogram(const NumberColumn& samples)
    : m_Bins(binsOf(samples))
    , m_Counts(m_Bins.getCount())
{
    forEachFinite(samples, [this](double number) { ++m_Counts[m_Bins.binOf(number)]; });
    m_NumSamples = std::accumulate(m_Counts.begin(), m_Counts.end(), std::size_t{0});
}

std::vector<double> Histogram::getLogCounts() const
{
    std::vector<double> result(m_Counts.size());
    std::transform(m_Counts.begin(), m_Counts.end(), result.begin(),
        [](std::size_t count) { return std::log10(1.0 + static_cast<double>(count)); });
    return result;
}

Points2 outlineOf(const Bins& bins, const std::vector<double>& heights)
{
    Points2 outline;
    outline.emplace_back(bins.reach(0), 0.0);
    for (std::size_t i = 0; i < heights.size(); ++i) {
        outline.emplace_back(bins.reach(static_cast<double>(i)), heights[i]);
        outline.emplace_back(bins.reach(static_cast<double>(i + 1)), heights[i]);
    }
    outline.emplace_back(bins.reach(static_cast<double>(heights.size())), 0.0);
    return outline;
}

} // namespace vireo_view
