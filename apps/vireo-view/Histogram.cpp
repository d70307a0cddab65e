#include "apps/vireo-view/Histogram.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "apps/vireo-view/NiftiReader.h"

namespace vireo_view {

namespace {

template <typename Visit>
void forEachDensity(const tavo::RegularVolume& volume, Visit visit)
{
    constexpr int all = tavo::RegularVolume::UNRESTRICTED;
    volume.forEachSample<1>(DENSITY, {all, all, all}, {all, all, all},
        [&visit](const tavo::StaticVector<float, 1>& sample, std::size_t, std::size_t) {
            if (std::isfinite(sample[0]))
                visit(sample[0]);
        });
}

// Of numbers that are not large; others need no bins of their own.
bool isWhole(float density)
{
    constexpr float LARGEST = 1 << 24;
    return std::abs(density) < LARGEST && static_cast<float>(static_cast<int>(density)) == density;
}

// The bins that suit a volume's densities.
Bins binsOf(const tavo::RegularVolume& volume)
{
    float min = std::numeric_limits<float>::max();
    float max = std::numeric_limits<float>::lowest();
    bool areWhole = true;
    forEachDensity(volume, [&](float density) {
        min = std::min(min, density);
        max = std::max(max, density);
        areWhole = areWhole && isWhole(density);
    });
    if (min > max)
        return {Span(), 1};
    Span span;
    span.include(double{min});
    span.include(double{max});

    constexpr auto MOST = double{Histogram::MOST_BINS};
    const double numValues = span.getMax() - span.getMin() + 1;
    if (!areWhole || !(numValues < MOST * MOST))
        return {span, Histogram::MOST_BINS};
    return {span, static_cast<std::size_t>(std::ceil(numValues / std::ceil(numValues / MOST)))};
}

} // namespace

Histogram::Histogram()
    : m_Bins(Span(), 1)
    , m_Counts(1)
{}

Histogram::Histogram(const tavo::RegularVolume& volume)
    : m_Bins(binsOf(volume))
    , m_Counts(m_Bins.getCount())
{
    forEachDensity(volume, [this](float density) {
        ++m_Counts[m_Bins.binOf(double{density})];
        m_Sum += double{density};
    });
    m_NumSamples = std::accumulate(m_Counts.begin(), m_Counts.end(), std::size_t{0});
}

std::vector<double> Histogram::getLogCounts() const
{
    std::vector<double> result(m_Counts.size());
    std::transform(m_Counts.begin(), m_Counts.end(), result.begin(),
        [](std::size_t count) { return std::log10(1.0 + static_cast<double>(count)); });
    return result;
}

double Histogram::getMean() const
{
    return m_NumSamples > 0 ? m_Sum / static_cast<double>(m_NumSamples) : 0;
}

double Histogram::getQuantile(double part) const
{
    if (m_NumSamples == 0)
        return 0;
    const double wanted = part * static_cast<double>(m_NumSamples);
    std::size_t numBelow = 0;
    std::size_t bin = 0;
    while (bin < m_Counts.size() && static_cast<double>(numBelow) < wanted)
        numBelow += m_Counts[bin++];
    return m_Bins.reach(static_cast<double>(bin));
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
