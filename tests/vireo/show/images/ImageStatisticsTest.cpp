#include "vireo/show/images/imageStatistics.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>

#include "tests/vireo/show/images/images.h"

namespace tavo {
namespace {

const float NAN_F = std::numeric_limits<float>::quiet_NaN();
const float INFINITE = std::numeric_limits<float>::infinity();

TEST(ImageStatisticsTest, LeastAndGreatestAreExactWhereverTheyAre)
{
    for (int channels = 1; channels <= 4; ++channels)
        for (const int place : {0, 1, 40, 101 * channels - 1}) {
            std::vector<float> numbers(static_cast<std::size_t>(101 * channels), 3);
            numbers[static_cast<std::size_t>(place)] = 77.5F;
            const ImagePixels pixels = imageOf(numbers, 101, 1, channels);
            EXPECT_EQ(imageStatistics(pixels, place % channels).greatest, 77.5);
            EXPECT_EQ(imageStatistics(pixels, place % channels).least, 3);
            if (channels > 1) {
                EXPECT_EQ(imageStatistics(pixels, (place + 1) % channels).greatest, 3);
            }
        }
}

TEST(ImageStatisticsTest, AllTogetherAreTheFirstThreeChannels)
{
    const ImagePixels pixels = imageOf<double>({1, 2, 3, 99, -5, 0, 0, -99}, 2, 1, 4);
    EXPECT_EQ(imageStatistics(pixels, -1).least, -5);
    EXPECT_EQ(imageStatistics(pixels, -1).greatest, 3);
    EXPECT_EQ(imageStatistics(pixels, 3).greatest, 99);
}

TEST(ImageStatisticsTest, WhatIsNoNumberIsCountedAndNothingElse)
{
    const ImagePixels pixels = imageOf<float>({NAN_F, 2, INFINITE, -INFINITE, 7, NAN_F}, 3, 2);
    const ImageStatistics statistics = imageStatistics(pixels, 0);
    EXPECT_EQ(statistics.least, 2);
    EXPECT_EQ(statistics.greatest, 7);
    EXPECT_EQ(statistics.numNaN, 2U);
    EXPECT_EQ(statistics.numInfinite, 2U);
    EXPECT_EQ(imageStatistics(imageOf<float>({NAN_F}, 1, 1), 0).greatest, 0);
}

TEST(ImageStatisticsTest, PixelsAndNotNumbersAreCounted)
{
    const ImagePixels pixels = imageOf<float>({NAN_F, NAN_F, 1, INFINITE, 2, 3, 4, 5, 6}, 3, 1, 3);
    EXPECT_EQ(imageStatistics(pixels, -1).numNaN, 1U);
    EXPECT_EQ(imageStatistics(pixels, -1).numInfinite, 1U);
    EXPECT_EQ(imageStatistics(pixels, 1).numInfinite, 0U);
}

TEST(ImageStatisticsTest, PercentilesAreThoseOfAllNumbers)
{
    std::vector<std::int32_t> numbers(101);
    std::iota(numbers.rbegin(), numbers.rend(), 0);
    EXPECT_EQ(percentilesOf(imageOf(numbers, 101, 1), 0, 10, 95), (std::pair<double, double>(10, 95)));
    EXPECT_EQ(percentilesOf(imageOf<float>({INFINITE, 4, NAN_F}, 3, 1), 0, 0, 100), (std::pair<double, double>(4, 4)));
}

TEST(ImageStatisticsTest, RowsThatAreApartHaveNothingBetweenThem)
{
    ImagePixels pixels = imageOf<std::int16_t>({1, 2, 999, 3, 4}, 2, 2);
    pixels.rowStride = 3;
    EXPECT_EQ(imageStatistics(pixels, 0).greatest, 4);
    const ValueCounts counts = countPixels(pixels, 0, imageStatistics(pixels, 0));
    EXPECT_EQ(std::accumulate(counts.counts.begin(), counts.counts.end(), std::size_t(0)), 4U);
    EXPECT_EQ(counts.counts.front(), 1U);
    EXPECT_EQ(counts.counts.back(), 1U);
}

} // namespace
} // namespace tavo
