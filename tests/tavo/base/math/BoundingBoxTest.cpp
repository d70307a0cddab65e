#include "tavo/base/math/BoundingBox.h"

#include <gtest/gtest.h>
#include <limits>

#include "tavo/base/math/vectors.h"

namespace tavo {
namespace {

TEST(BoundingBoxTest, KeepsItsCornersAsGiven)
{
    const Box3f box({3.0f, 2.0f, 1.0f}, {0.0f, 5.0f, 1.0f});
    EXPECT_EQ(box.getMin(), Vector3f(3.0f, 2.0f, 1.0f));
    EXPECT_EQ(box.getMax(), Vector3f(0.0f, 5.0f, 1.0f));
    EXPECT_EQ(box.getExtent(), Vector3f(-3.0f, 3.0f, 0.0f));
}

TEST(BoundingBoxTest, ComparesExactly)
{
    const Box3f box({0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f});
    EXPECT_EQ(box, Box3f({0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f}));
    EXPECT_NE(box, Box3f({0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0000001f}));
    EXPECT_NE(box, Box3f({0.0f, -1e-30f, 0.0f}, {1.0f, 1.0f, 1.0f}));
}

TEST(BoundingBoxTest, IsUnlikeItselfWithNotANumber)
{
    const Box3f box({std::numeric_limits<float>::quiet_NaN(), 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f});
    EXPECT_FALSE(box == box);
}

} // namespace
} // namespace tavo
