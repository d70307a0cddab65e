#include "vireo/show/scenes/finiteBox.h"

#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "tavo/base/math/vectors.h"

namespace tavo {

namespace {

constexpr double NAN_VALUE = std::numeric_limits<double>::quiet_NaN();
constexpr double UNBOUNDED = std::numeric_limits<double>::infinity();

std::optional<Box3d> boxOf(const std::vector<Vector3d>& points)
{
    return finiteBox(std::span<const Vector3d>(points));
}

TEST(FiniteBoxTest, HoldsAllPoints)
{
    EXPECT_EQ(boxOf({{1, 5, -3}, {-2, 6, 9}, {0, 4, 0}}), Box3d({-2, 4, -3}, {1, 6, 9}));
    EXPECT_EQ(boxOf({{5.5e6, 1, 2}}), Box3d({5.5e6, 1, 2}, {5.5e6, 1, 2}));
}

TEST(FiniteBoxTest, LeavesOutWhatIsNowhere)
{
    EXPECT_EQ(boxOf({{NAN_VALUE, -9, 0}, {1, 2, 3}, {0, UNBOUNDED, 9}, {2, 3, 4}, {9, 9, -UNBOUNDED}}),
        Box3d({1, 2, 3}, {2, 3, 4}));
    EXPECT_FALSE(boxOf({{NAN_VALUE, 0, 0}, {0, UNBOUNDED, 0}}).has_value());
    EXPECT_FALSE(boxOf({}).has_value());
}

} // namespace

} // namespace tavo
