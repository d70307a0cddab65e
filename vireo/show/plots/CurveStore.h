#pragma once

#include <cstddef>
#include <limits>
#include <optional>

#include "vireo/show/plots/Extent.h"
#include "vireo/show/plots/NumberQueue.h"
#include "vireo/show/plots/PlotUpdate.h"
#include "vireo/show/plots/Pyramid.h"

namespace tavo {

// The samples of one curve: those that were sent, as they came and without a copy, or those that were appended.
class CurveStore
{
public:
    // Takes over what was sent.
    void apply(CurveUpdate& update);
    void replace(CurveSamples samples);

    // Frees them. How many appended ones are kept stays.
    void clear();

    std::size_t size() const { return isAppended() ? m_AppendedX.size() : m_Sent.y.size(); }
    double x(std::size_t i) const;
    double y(std::size_t i) const;

    // Writes `count` samples from the i-th on, to be read faster than one by one.
    void read(std::size_t i, std::size_t count, double* x, double* y) const;

    // Of the finite samples.
    const Extent& xExtent() const { return m_XExtent; }
    const Extent& yExtent() const { return m_YExtent; }

    // The lowest and the highest of the samples from `first` up to and without `last`.
    Extremes extremes(std::size_t first, std::size_t last) const;

    // Of the samples between two xs; of the two around them, if only the line between these is seen; of all, if x is
    // not sorted.
    Extent yExtentWithin(double firstX, double lastX) const;

    // Calls `visit(first, last)` for those pieces of a stretch whose extent along y is wanted, as Pyramid does.
    template <typename IsWanted, typename Visit>
    void visit(std::size_t first, std::size_t last, const IsWanted& isWanted, const Visit& visit) const
    {
        m_Pyramid.visit(m_NumDropped + first, m_NumDropped + last, isWanted,
            [&](std::size_t from, std::size_t to) { visit(from - m_NumDropped, to - m_NumDropped); });
    }

    // How many y and how many x are infinite. Such samples are neither drawn nor in the extents.
    std::size_t numInfinite() const { return m_NumInfinite; }
    std::size_t numInfiniteX() const { return m_NumInfiniteX; }

    // What a logarithmic axis begins with: the smallest number above zero, infinite if there is none.
    double smallestPositiveX() const;
    double smallestPositiveY() const;

    // How many finite samples have no place on logarithmic axes.
    std::size_t numNotPositive(bool isXLog, bool isYLog) const;

    // Whether samples have been appended.
    bool isAppended() const { return !m_AppendedX.empty(); }

    // Whether older ones than are kept have gone.
    bool hasDropped() const { return isAppended() && m_NumDropped > 0; }

    // Whether no x is smaller than the one before it, and all are finite.
    bool isSorted() const { return m_IsSorted; }

    // The first sample at x or behind it, of a sorted curve. It is looked for around a guess first.
    std::size_t lowerBound(double x, std::size_t guess = 0) const;

private:
    void take(CurveSamples&& samples);
    void append(const AppendedSamples& samples);
    void continueSent();
    void dropOldSamples(std::size_t numNew = 0);
    void measureX(std::size_t first);
    void measureY(std::size_t first);
    void measureExtents();
    void measureSortedExtents();

    // Calls `visit(x, y)` for the samples of a stretch.
    template <typename Visit>
    void visitEach(std::size_t first, std::size_t last, const Visit& visit) const;

    // The same for those that are finite.
    template <typename Visit>
    void visitFinite(std::size_t first, std::size_t last, const Visit& visit) const;

    struct Positive
    {
        double smallest = std::numeric_limits<double>::infinity();
        std::size_t numOthers = 0;
    };

    // Of y in a stretch. Blocks whose numbers are all above zero are not looked at.
    Positive positiveYs(std::size_t first, std::size_t last) const;

    // The first sample above zero, of a sorted curve.
    std::size_t firstPositive() const;

    CurveSamples m_Sent;
    NumberQueue m_AppendedX;
    NumberQueue m_AppendedY;
    std::size_t m_NumDropped = 0;
    std::size_t m_Kept = CurveUpdate::DEFAULT_KEPT;
    Pyramid m_Pyramid; // of y; counts dropped samples, too
    Extent m_XExtent;
    Extent m_YExtent;
    std::size_t m_NumInfinite = 0;  // of y
    std::size_t m_NumInfiniteX = 0; // where x is sorted, all are finite
    bool m_IsSorted = true;

    // Looked for when it is asked for, and known until something comes or goes.
    mutable std::optional<double> m_SmallestPositiveX;
    mutable std::optional<double> m_SmallestPositiveY;
};

} // namespace tavo
