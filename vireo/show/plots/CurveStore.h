#pragma once

#include <cstddef>
#include <deque>
#include <limits>

#include "vireo/show/plots/PlotUpdate.h"

namespace tavo {

// The smallest interval of the finite numbers that were seen.
struct Extent
{
    double from = std::numeric_limits<double>::infinity();
    double to = -std::numeric_limits<double>::infinity();

    bool isEmpty() const { return from > to; }
    void include(double value);
    void include(const Extent& other);
};

// The samples of one curve: those that were sent, as they came and without a copy, or those that were appended.
class CurveStore
{
public:
    // Takes over what was sent.
    void apply(CurveUpdate& update);

    std::size_t size() const { return m_AppendedX.empty() ? m_Sent.y.size() : m_AppendedX.size(); }
    double x(std::size_t i) const;
    double y(std::size_t i) const;

    // Writes `count` samples from the i-th on, to be read faster than one by one.
    void read(std::size_t i, std::size_t count, double* x, double* y) const;

    // Of the finite samples.
    const Extent& xExtent() const { return m_XExtent; }
    const Extent& yExtent() const { return m_YExtent; }

    // How many samples are infinite. They are neither drawn nor in the extents.
    std::size_t numInfinite() const { return m_NumInfinite; }

    // Whether no x is smaller than the one before it, or NaN.
    bool isSorted() const { return m_IsSorted; }

    // The first sample at x or behind it, of a sorted curve.
    std::size_t lowerBound(double x) const;

private:
    void append(const AppendedSamples& samples);
    void measure();

    CurveSamples m_Sent;
    std::deque<double> m_AppendedX;
    std::deque<double> m_AppendedY;
    std::size_t m_Kept = CurveUpdate::DEFAULT_KEPT;
    Extent m_XExtent;
    Extent m_YExtent;
    std::size_t m_NumInfinite = 0;
    bool m_IsSorted = true;
};

} // namespace tavo
