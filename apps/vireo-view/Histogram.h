#pragma once

#include <cstddef>
#include <vector>

#include "apps/vireo-view/Bins.h"
#include "apps/vireo-view/NumberColumn.h"
#include "apps/vireo-view/Point.h"

namespace vireo_view {

// How many samples of a volume have which value. Those that are not finite are left out. Where all are whole numbers,
// the bins take equally many of them, as far as they can.
class Histogram
{
public:
    static constexpr std::size_t MOST_BINS = 256;

    explicit Histogram(const NumberColumn& samples);

    // The samples' values; empty if there are none that are finite.
    const Span& getSpan() const { return m_Bins.getSpan(); }
    const Bins& getBins() const { return m_Bins; }

    // The number of samples in each bin.
    const std::vector<std::size_t>& getCounts() const { return m_Counts; }
    std::size_t getNumSamples() const { return m_NumSamples; }

    // log10(1 + the number) of each bin: most of a volume is air, beside which nothing else would be seen.
    std::vector<double> getLogCounts() const;

private:
    Bins m_Bins;
    std::vector<std::size_t> m_Counts;
    std::size_t m_NumSamples = 0;
};

// The outline of columns as high as the heights, one over each bin. It begins and ends at y = 0.
Points2 outlineOf(const Bins& bins, const std::vector<double>& heights);

} // namespace vireo_view
