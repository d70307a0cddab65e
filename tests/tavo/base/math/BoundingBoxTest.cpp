#include "tavo/base/math/BoundingBox.h"

#include <gtest/gtest.h>
#include <limits>

namespace tavo {
namespace {

using Box = BoundingBox<float, 3>;

TEST(BoundingBoxTest, KeepsItsCornersAsGiven)
{
    const Box box({3.0f, 2.0f, 1.0f}, {0.0f, 5.0f, 1.0f});
    EXPECT_EQ(box.getMin(), (StaticVector<float, 3>(3.0f, 2.0f, 1.0f)));
    EXPECT_EQ(box.getMax(), (StaticVector<float, 3>(0.0f, 5.0f, 1.0f)));
    EXPECT_EQ(box.getExtent(), (StaticVector<float, 3>(-3.0f, 3.0f, 0.0f)));
}

TEST(BoundingBoxTest, ComparesExactly)
{
    const Box box({0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f});
    EXPECT_EQ(box, Box({0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f}));
    EXPECT_NE(box, Box({0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0000001f}));
    EXPECT_NE(box, Box({0.0f, -1e-30f, 0.0f}, {1.0f, 1.0f, 1.0f}));
}

TEST(BoundingBoxTest, IsUnlikeItselfWithNotANumber)
{
    const Box box({std::numeric_limits<float>::quiet_NaN(), 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f});
    EXPECT_FALSE(box == box);
}

} // namespace
} // namespace tavo
