#pragma once

#include "tavo/base/math/BoundingBox.h"
#include "tavo/base/math/StaticVector.h"

namespace tavo {

// The types that most code needs, each under the one name that it has everywhere: vectors by size and component, boxes
// in space, and colours of four bytes in the order red, green, blue, alpha.
using Vector2f = StaticVector<float, 2>;
using Vector3f = StaticVector<float, 3>;
using Vector4f = StaticVector<float, 4>;
using Vector2d = StaticVector<double, 2>;
using Vector3d = StaticVector<double, 3>;
using Vector3i = StaticVector<int, 3>;

using Box3f = BoundingBox<float, 3>;
using Box3d = BoundingBox<double, 3>;

using RGBA8 = StaticVector<unsigned char, 4>;

} // namespace tavo
