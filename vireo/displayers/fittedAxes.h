#pragma once

#include "tavo/base/math/BoundingBox.h"

namespace tavo {

// Draws the coordinate frame of GLHelper, moved to the box and scaled. Multiplies the current matrix and leaves it so.
void drawFittedAxes(const BoundingBox<float, 3>& box, const StaticVector<float, 3>& scale);

} // namespace tavo
