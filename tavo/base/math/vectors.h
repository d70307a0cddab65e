#pragma once

#include "tavo/base/math/BoundingBox.h"
#include "tavo/base/math/StaticVector.h"

namespace tavo {

/// @file
/// The common types, each under one name: vectors by size and component, boxes in space, and colours of four bytes
/// (red, green, blue, alpha).
///
///     const Vector3f middle(0.5f, 0.5f, 0.5f);
///     const Box3f unitBox({0, 0, 0}, {1, 1, 1});
///     const RGBA8 yellow(255, 200, 0, 255);
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
