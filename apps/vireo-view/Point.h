#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "tavo/base/math/StaticVector.h"

namespace vireo_view {

// Points as they are in files. Floats would lose digits far from the origin.
using Point2 = tavo::StaticVector<double, 2>;
using Point3 = tavo::StaticVector<double, 3>;

using Points2 = std::vector<Point2>;
using Points3 = std::vector<Point3>;

enum class Axis
{
    X,
    Y,
    Z
};

template <unsigned int N>
bool isFinite(const tavo::StaticVector<double, N>& point)
{
    return std::all_of(point.data(), point.data() + N, [](double value) { return std::isfinite(value); });
}

} // namespace vireo_view
