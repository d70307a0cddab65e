#pragma once

#include <vector>

#include "apps/vireo-view/Point.h"
#include "tavo/base/math/vectors.h"

namespace vireo_view {

// The view clips what is nearer than 0.01 or farther than 1000, and floats lose digits far from the origin. So what is
// shown is brought to the origin and scaled, in double precision, before it becomes floats.
//
// All coordinates must be finite. Curves that are given together are fitted together.

using FittedPoints3 = std::vector<tavo::Vector3f>;

// In space proportions are kept: the centre of the points' box comes to the origin, and its largest extent becomes
// this.
constexpr double FITTED_EXTENT = 1.0;

FittedPoints3 fitPoints(const Points3& points);
std::vector<FittedPoints3> fitCurves(const std::vector<Points3>& curves);

} // namespace vireo_view
