#include "tavo/base/math/StaticVector.h"

#include <gtest/gtest.h>
#include <type_traits>

#include "tavo/base/math/vectors.h"

namespace tavo {
namespace {

TEST(StaticVectorTest, StartsAtZero)
{
    EXPECT_EQ(Vector3f(), Vector3f(0.0f, 0.0f, 0.0f));
    EXPECT_EQ(NULL_VECTOR4UB, RGBA8(0, 0, 0, 0));
}

TEST(StaticVectorTest, IsNothingButItsValuesInMemory)
{
    static_assert(sizeof(Vector3f) == 3 * sizeof(float));
    static_assert(sizeof(RGBA8) == 4);
    static_assert(std::is_trivially_copyable_v<Vector3f>);
    const Vector3f vectors[2] = {{1.0f, 2.0f, 3.0f}, {4.0f, 5.0f, 6.0f}};
    EXPECT_EQ(vectors[0].data() + 3, vectors[1].data());
    EXPECT_EQ(vectors[1].data()[2], 6.0f);
}

TEST(StaticVectorTest, AddsSubtractsAndScales)
{
    const Vector3f a(1.0f, 2.0f, 3.0f);
    const Vector3f b(10.0f, 20.0f, 30.0f);
    EXPECT_EQ(a + b, Vector3f(11.0f, 22.0f, 33.0f));
    EXPECT_EQ(b - a, Vector3f(9.0f, 18.0f, 27.0f));
    EXPECT_EQ(a * 2.0f, Vector3f(2.0f, 4.0f, 6.0f));
    EXPECT_EQ(2.0f * a, a * 2.0f);
}

TEST(StaticVectorTest, MultipliesTheTwoWays)
{
    const Vector3f x(1.0f, 0.0f, 0.0f);
    const Vector3f y(0.0f, 1.0f, 0.0f);
    EXPECT_EQ(cross(x, y), Vector3f(0.0f, 0.0f, 1.0f));
    EXPECT_EQ(cross(y, x), Vector3f(0.0f, 0.0f, -1.0f));
    EXPECT_EQ(dot(Vector3f(1.0f, 2.0f, 3.0f), Vector3f(4.0f, 5.0f, 6.0f)), 32.0f);
    EXPECT_EQ(length(Vector3f(2.0f, 3.0f, 6.0f)), 7.0f);
}

TEST(StaticVectorTest, OneComponentIsNoImplicitConversion)
{
    static_assert(!std::is_convertible_v<float, StaticVector<float, 1>>);
    EXPECT_EQ((StaticVector<float, 1>(3.0f))[0], 3.0f);
}

} // namespace
} // namespace tavo
