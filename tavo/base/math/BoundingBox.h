#pragma once

#include "tavo/base/math/StaticVector.h"

namespace tavo {

/// An axis-aligned box, given by two corners. The corners are stored as they are given; nothing puts them in order. A
/// default box has both at the origin.
///
///     const BoundingBox<float, 3> box({0, 0, 0}, {181, 217, 181});
///     const float depth = box.getExtent()[2];
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
    /// The maximum minus the minimum.
    StaticVector<T, N> getExtent() const { return m_Max - m_Min; }

    bool operator==(const BoundingBox&) const = default;

private:
    StaticVector<T, N> m_Min;
    StaticVector<T, N> m_Max;
};

} // namespace tavo
