#pragma once

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

#include "tavo/base/math/BoundingBox.h"

namespace tavo {

// The smallest box around points, without those that have a coordinate that is no finite number; none if there is none.
template <typename T>
std::optional<BoundingBox<T, 3>> finiteBox(std::span<const StaticVector<T, 3>> points)
{
    const auto isFinite = [](const StaticVector<T, 3>& point) {
        return std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]);
    };
    const auto first = std::find_if(points.begin(), points.end(), isFinite);
    if (first == points.end())
        return std::nullopt;
    StaticVector<T, 3> least = *first;
    StaticVector<T, 3> greatest = *first;
    for (const StaticVector<T, 3>& point : points.subspan(static_cast<std::size_t>(first - points.begin())))
        if (isFinite(point))
            for (std::size_t i = 0; i < 3; ++i) {
                least[i] = std::min(least[i], point[i]);
                greatest[i] = std::max(greatest[i], point[i]);
            }
    return BoundingBox<T, 3>(least, greatest);
}

} // namespace tavo
