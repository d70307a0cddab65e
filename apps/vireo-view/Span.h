#pragma once

#include <algorithm>
#include <limits>

namespace vireo_view {

// From the smallest to the largest of some finite coordinates. It is kept in halves, since the extent of all doubles is
// no double.
class Span
{
public:
    void include(double value)
    {
        m_HalfMin = std::min(m_HalfMin, value / 2);
        m_HalfMax = std::max(m_HalfMax, value / 2);
    }

    bool isEmpty() const { return m_HalfMin > m_HalfMax; }
    double getMin() const { return 2 * m_HalfMin; }
    double getMax() const { return 2 * m_HalfMax; }
    double getHalfExtent() const { return m_HalfMax - m_HalfMin; }

    // Where a value lies between the smallest, 0, and the largest, 1; in the middle if they are the same.
    double partAt(double value) const { return getHalfExtent() > 0 ? (value / 2 - m_HalfMin) / getHalfExtent() : 0.5; }

    double valueAt(double part) const { return 2 * (m_HalfMin + part * getHalfExtent()); }

private:
    double m_HalfMin = std::numeric_limits<double>::infinity();
    double m_HalfMax = -std::numeric_limits<double>::infinity();
};

} // namespace vireo_view
