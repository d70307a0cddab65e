#pragma once

#include "tavo/base/math/StaticVector.h"

namespace tavo {

// An axis-aligned box given by its two corners, which are stored as they are given: nothing puts them in order.
// A default box has both corners at the origin.
template <typename T, unsigned int N>
class BoundingBox
{
public:
    BoundingBox() = default;
    BoundingBox(const StaticVector<T, N>& min, const StaticVector<T, N>& max)
        : m_Min(min)
        , m_Max(max)
    {}

    const StaticVector<T, N>& getMin() const { return m_Min; }
    const StaticVector<T, N>& getMax() const { return m_Max; }
    StaticVector<T, N> getExtent() const { return m_Max - m_Min; }

    bool operator==(const BoundingBox&) const = default;

private:
    StaticVector<T, N> m_Min;
    StaticVector<T, N> m_Max;
};

} // namespace tavo
