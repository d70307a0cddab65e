#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "tavo/base/math/vectors.h"

namespace vireo_view {

// Points as they are in files. Floats would lose digits far from the origin.
using Points2 = std::vector<tavo::Vector2d>;
using Points3 = std::vector<tavo::Vector3d>;

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
