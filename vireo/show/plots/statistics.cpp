#include "vireo/show/plots/statistics.h"

#include <algorithm>
#include <cmath>

namespace tavo {

namespace {

constexpr std::size_t BLOCK = 512;

class Summary
{
public:
    void add(double y)
    {
        if (m_Count++ == 0)
            m_First = y;
        m_Last = y;
        m_Extent.include(y);
        m_Sum += y;
        m_SumOfSquares += static_cast<long double>(y) * y; // beyond the largest double
    }

    Statistics make() const
    {
        if (m_Count == 0)
            return {0, NAN, NAN, NAN, NAN, NAN};
        const auto count = static_cast<long double>(m_Count);
        return {m_Count, m_Last - m_First, static_cast<double>(m_Sum / count), m_Extent.from, m_Extent.to,
            static_cast<double>(std::sqrt(m_SumOfSquares / count))};
    }

private:
    std::size_t m_Count = 0;
    double m_First = 0;
    double m_Last = 0;
    Extent m_Extent;
    long double m_Sum = 0;
    long double m_SumOfSquares = 0;
};

} // namespace

Statistics statisticsBetween(const CurveStore& curve, double from, double to)
{
    std::size_t first = 0;
    std::size_t last = curve.size();
    if (curve.isSorted()) {
        first = curve.lowerBound(from);
        last = curve.lowerBound(std::nextafter(to, INFINITY), first);
    }
    Summary summary;
    double x[BLOCK];
    double y[BLOCK];
    for (; first < last; first += BLOCK) {
        const std::size_t count = std::min(BLOCK, last - first);
        curve.read(first, count, x, y);
        for (std::size_t i = 0; i < count; ++i)
            if (x[i] >= from && x[i] <= to && std::isfinite(y[i]))
                summary.add(y[i]);
    }
    return summary.make();
}

} // namespace tavo
