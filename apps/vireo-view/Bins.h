#pragma once

#include <algorithm>
#include <cstddef>

#include "apps/vireo-view/Span.h"

namespace vireo_view {

// Equal intervals of a span, from its smallest value to its largest, which belongs to the last; one if the span has no
// extent.
class Bins
{
public:
    Bins(const Span& span, std::size_t count)
        : m_Span(span)
        , m_Count(span.getHalfExtent() > 0 ? count : 1)
    {}

    const Span& getSpan() const { return m_Span; }
    std::size_t getCount() const { return m_Count; }

    // The bin of a value in the span.
    std::size_t binOf(double value) const
    {
        const double bins = m_Span.partAt(value) * static_cast<double>(m_Count);
        return std::min(m_Count - 1, static_cast<std::size_t>(bins));
    }

    // The value that a number of bins, whole or not, reaches to.
    double reach(double bins) const { return m_Span.valueAt(bins / static_cast<double>(m_Count)); }

private:
    Span m_Span;
    std::size_t m_Count;
};

} // namespace vireo_view
