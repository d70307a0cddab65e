#include "apps/vireo-view/CloudCurves.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace vireo_view {
namespace {

using tavo::Vector2d;
using tavo::Vector3d;
using testing::ElementsAre;
using testing::IsNan;

// Sixteen points have four bins.
Points3 sixteenPoints()
{
    Points3 cloud(7, Vector3d(0, 0, 0));
    cloud.insert(cloud.end(), 5, Vector3d(0, 0, 1));
    cloud.insert(cloud.end(), 4, Vector3d(0, 0, 4));
    return cloud;
}

TEST(CloudCurvesTest, CountsPointsByHeight)
{
    EXPECT_THAT(heightHistogram(sixteenPoints(), Axis::Z),
        ElementsAre(Vector2d(0, 0), Vector2d(0, 7), Vector2d(1, 7), Vector2d(1, 5), Vector2d(2, 5), Vector2d(2, 0),
            Vector2d(3, 0), Vector2d(3, 4), Vector2d(4, 4), Vector2d(4, 0)));
}

TEST(CloudCurvesTest, CountsAllPointsOfAFlatCloudAtItsHeight)
{
    EXPECT_THAT(heightHistogram(sixteenPoints(), Axis::Y),
        ElementsAre(Vector2d(0, 0), Vector2d(0, 16), Vector2d(0, 16), Vector2d(0, 0)));
    EXPECT_THAT(heightHistogram({{1, 2, 3}}, Axis::Z),
        ElementsAre(Vector2d(3, 0), Vector2d(3, 1), Vector2d(3, 1), Vector2d(3, 0)));
}

TEST(CloudCurvesTest, CountsPointsInAnExtentThatIsNoDouble)
{
    constexpr double LARGEST = std::numeric_limits<double>::max();
    EXPECT_THAT(heightHistogram({{-LARGEST, 0, 0}, {LARGEST, 0, 0}, {LARGEST, 0, 0}, {0, 0, 0}}, Axis::X),
        ElementsAre(Vector2d(-LARGEST, 0), Vector2d(-LARGEST, 1), Vector2d(0, 1), Vector2d(0, 3), Vector2d(LARGEST, 3),
            Vector2d(LARGEST, 0)));
}

TEST(CloudCurvesTest, DrawsTheSilhouetteAlongTheLongerAxis)
{
    const Silhouette shape = silhouette({{0, 0, 5}, {0, 1, 9}, {1, 4, -3}, {1, 3, 2}}, Axis::Z);
    EXPECT_EQ(shape.along, Axis::Y);
    EXPECT_THAT(shape.highest, ElementsAre(Vector2d(1, 9), Vector2d(3, 2)));
    EXPECT_THAT(shape.lowest, ElementsAre(Vector2d(1, 5), Vector2d(3, -3)));

    EXPECT_EQ(silhouette({{0, 0, 0}, {2, 9, 1}}, Axis::Y).along, Axis::X);
    EXPECT_EQ(silhouette({{9, 1, 0}, {0, 0, 2}}, Axis::X).along, Axis::Z);
}

TEST(CloudCurvesTest, LeavesAGapInTheSilhouetteWhereThereAreNoPoints)
{
    Points3 cloud(8, Vector3d(0, 1, 0));
    cloud.push_back(Vector3d(6, 2, 0));
    const Silhouette shape = silhouette(cloud, Axis::Y);
    ASSERT_EQ(shape.highest.size(), 3u);
    EXPECT_EQ(shape.highest[0], Vector2d(1, 1));
    EXPECT_THAT(shape.highest[1][1], IsNan());
    EXPECT_EQ(shape.highest[2], Vector2d(5, 2));
    EXPECT_THAT(shape.lowest[1][1], IsNan());
}

} // namespace
} // namespace vireo_view
