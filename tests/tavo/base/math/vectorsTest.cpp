#include "tavo/base/math/vectors.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace tavo {
namespace {

// A name is the type that signatures had before, and no type of its own.
TEST(VectorsTest, AreNamesOfTheSameTypes)
{
    static_assert(std::is_same_v<Vector2f, StaticVector<float, 2>>);
    static_assert(std::is_same_v<Vector3f, StaticVector<float, 3>>);
    static_assert(std::is_same_v<Vector4f, StaticVector<float, 4>>);
    static_assert(std::is_same_v<Vector2d, StaticVector<double, 2>>);
    static_assert(std::is_same_v<Vector3d, StaticVector<double, 3>>);
    static_assert(std::is_same_v<Vector3i, StaticVector<int, 3>>);
    static_assert(std::is_same_v<Box3f, BoundingBox<float, 3>>);
    static_assert(std::is_same_v<Box3d, BoundingBox<double, 3>>);
    static_assert(std::is_same_v<RGBA8, StaticVector<unsigned char, 4>>);
}

} // namespace
} // namespace tavo
