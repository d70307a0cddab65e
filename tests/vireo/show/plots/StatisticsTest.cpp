#include "vireo/show/plots/statistics.h"

#include <cmath>
#include <gtest/gtest.h>

#include "tests/vireo/show/plots/curves.h"

namespace tavo {

namespace {

CurveStore curveOf(std::vector<double> x, std::vector<double> y)
{
    CurveStore curve;
    CurveUpdate update = samples(std::move(x), std::move(y));
    curve.apply(update);
    return curve;
}

TEST(StatisticsTest, AreOfTheSamplesBetweenBothEndsIncluded)
{
    const Statistics found = statisticsBetween(curveOf({0, 1, 2, 3, 4}, {100, 3, -4, 5, 100}), 1, 3);
    EXPECT_EQ(found.count, 3u);
    EXPECT_EQ(found.difference, 2);
    EXPECT_DOUBLE_EQ(found.mean, 4.0 / 3);
    EXPECT_EQ(found.minimum, -4);
    EXPECT_EQ(found.maximum, 5);
    EXPECT_DOUBLE_EQ(found.rms, std::sqrt(50.0 / 3));
}

TEST(StatisticsTest, LeaveOutWhatIsNotFinite)
{
    const Statistics found = statisticsBetween(curveOf({0, 1, 2, 3, 4}, {NAN, 1, INFINITY, 3, NAN}), 0, 4);
    EXPECT_EQ(found.count, 2u);
    EXPECT_EQ(found.mean, 2);
    EXPECT_EQ(found.difference, 2);
}

TEST(StatisticsTest, AreNoneWhereNoSampleIs)
{
    const Statistics found = statisticsBetween(curveOf({0, 1}, {5, 6}), 0.2, 0.8);
    EXPECT_EQ(found.count, 0u);
    EXPECT_TRUE(std::isnan(found.mean));
    EXPECT_TRUE(std::isnan(found.rms));
}

TEST(StatisticsTest, FindTheSamplesWhereXGoesToAndFro)
{
    const Statistics found = statisticsBetween(curveOf({5, 0, 4, 1, 9}, {1, 2, 4, 8, 16}), 1, 5);
    EXPECT_EQ(found.count, 3u);
    EXPECT_DOUBLE_EQ(found.mean, 13.0 / 3);
}

TEST(StatisticsTest, HoldForManySamplesAndTheLargest)
{
    constexpr std::size_t SIZE = 100'000;
    std::vector<double> x(SIZE);
    std::vector<double> y(SIZE);
    for (std::size_t i = 0; i < SIZE; ++i) {
        x[i] = static_cast<double>(i);
        y[i] = i % 2 ? 1e300 : -1e300;
    }
    const Statistics found = statisticsBetween(curveOf(x, y), 0, SIZE);
    EXPECT_EQ(found.count, SIZE);
    EXPECT_EQ(found.mean, 0);
    EXPECT_DOUBLE_EQ(found.rms, 1e300);
}

} // namespace

} // namespace tavo
