#pragma once

#include <string>

#include "tavo/base/math/vectors.h"

namespace tavo {

class Camera;

// How far from its eye a view begins and ends to show things.
constexpr double NEAR_PLANE = 0.01;
constexpr double FAR_PLANE = 1000.0;

// One line that says by how much a box is outside of what a view with that camera shows, wholly or partly, and what to
// do; empty where it is not, or where only a part of it is too near.
std::string describeOutOfView(const Box3f& box, const Camera& camera);

} // namespace tavo
