#pragma once

#include "tavo/base/math/vectors.h"

namespace tavo {

// Draws the coordinate frame of GLHelper, moved to the box and scaled. Multiplies the current matrix and leaves it so.
void drawFittedAxes(const Box3f& box, const Vector3f& scale);

} // namespace tavo
