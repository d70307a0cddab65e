#include "apps/vireo-view/SceneFitting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace vireo_view {
namespace {

using tavo::Vector3f;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double LARGEST = std::numeric_limits<double>::max();

TEST(SceneFittingTest, CentresPointsAndKeepsTheirProportions)
{
    EXPECT_THAT(fitPoints({{0, 0, 0}, {10, 4, 2}}), ElementsAre(Vector3f(-0.5, -0.2, -0.1), Vector3f(0.5, 0.2, 0.1)));
}

TEST(SceneFittingTest, KeepsTheDigitsOfPointsFarFromTheOrigin)
{
    const double far = 5e9;
    EXPECT_THAT(fitPoints({{far, far, far}, {far + 0.5, far, far}, {far + 1, far, far}}),
        ElementsAre(Vector3f(-0.5, 0, 0), Vector3f(0, 0, 0), Vector3f(0.5, 0, 0)));
}

TEST(SceneFittingTest, FitsTheLargestAndTheSmallestExtents)
{
    EXPECT_THAT(fitPoints({{-LARGEST, 0, 0}, {LARGEST, LARGEST, 0}}),
        ElementsAre(Vector3f(-0.5, -0.25, 0), Vector3f(0.5, 0.25, 0)));
    EXPECT_THAT(fitPoints({{1e-300, 0, 0}, {3e-300, 0, 0}}), ElementsAre(Vector3f(-0.5, 0, 0), Vector3f(0.5, 0, 0)));
}

TEST(SceneFittingTest, BringsPointsWithoutExtentToTheOrigin)
{
    EXPECT_THAT(fitPoints({{7, 8, 9}, {7, 8, 9}}), ElementsAre(Vector3f(0, 0, 0), Vector3f(0, 0, 0)));
    EXPECT_THAT(fitPoints({}), IsEmpty());
}

TEST(SceneFittingTest, FitsCurvesInSpaceTogether)
{
    EXPECT_THAT(fitCurves(std::vector<Points3>{{{0, 0, 0}, {1, 0, 0}}, {{4, 2, 0}}}),
        ElementsAre(
            ElementsAre(Vector3f(-0.5, -0.25, 0), Vector3f(-0.25, -0.25, 0)), ElementsAre(Vector3f(0.5, 0.25, 0))));
}

} // namespace
} // namespace vireo_view
