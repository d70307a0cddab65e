#include "vireo/show/scenes/PointOrder.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numeric>
#include <vector>

namespace tavo {

namespace {

// Of all sizes around those where the order changes.
const std::vector<std::size_t> SIZES{
    0, 1, 63, 64, 65, 127, 128, 1000, 65535, 65536, 65537, 65536 + 63, 65536 + 64, 2 * 65536 - 1, 2 * 65536, 200000};

TEST(PointOrderTest, EveryPointHasOnePlaceInItsChunk)
{
    for (const std::size_t size : SIZES) {
        const PointOrder order(size);
        std::vector<bool> isTaken(size);
        for (std::size_t point = 0; point < size; ++point) {
            const std::size_t place = order.placeOf(point);
            ASSERT_LT(place, size);
            ASSERT_EQ(place / PointOrder::CHUNK, point / PointOrder::CHUNK);
            ASSERT_FALSE(isTaken[place]);
            isTaken[place] = true;
            ASSERT_EQ(order.pointAt(place), point) << "of " << size;
        }
    }
}

TEST(PointOrderTest, ChunksAreOf65536)
{
    const PointOrder order(2 * 65536 + 70);
    EXPECT_EQ(order.numChunks(), 3u);
    EXPECT_EQ(order.sizeOfChunk(1), 65536u);
    EXPECT_EQ(order.sizeOfChunk(2), 70u);
    EXPECT_EQ(order.sizeOfPhases(1, 4), 4096u);
    EXPECT_EQ(order.sizeOfPhases(2, 63), 63u);
    EXPECT_EQ(order.sizeOfPhases(2, 64), 70u) << "the last points go last";
    EXPECT_EQ(PointOrder(0).numChunks(), 0u);
    EXPECT_EQ(PointOrder(10).sizeOfPhases(0, 63), 0u);
}

TEST(PointOrderTest, IsWrittenFromTheFirstPlaceOn)
{
    for (const std::size_t size : SIZES) {
        const PointOrder order(size);
        std::size_t place = 0;
        for (std::size_t chunk = 0; chunk < order.numChunks(); ++chunk)
            order.forEachPlace(chunk, [&](std::size_t point) { ASSERT_EQ(order.pointAt(place++), point); });
        EXPECT_EQ(place, size);
    }
}

// The longest way between neighbours among the points of the first phases.
std::size_t longestGap(const PointOrder& order, std::size_t numPhases)
{
    std::vector<std::size_t> points;
    for (std::size_t place = 0; place < order.sizeOfPhases(0, numPhases); ++place)
        points.push_back(order.pointAt(place));
    std::sort(points.begin(), points.end());
    std::vector<std::size_t> gaps(points.size());
    std::adjacent_difference(points.begin(), points.end(), gaps.begin());
    return *std::max_element(gaps.begin(), gaps.end());
}

TEST(PointOrderTest, EveryPrefixCoversTheChunk)
{
    const PointOrder order(PointOrder::CHUNK);
    for (std::size_t numPhases = 1; numPhases <= PointOrder::PHASES; ++numPhases) {
        std::size_t evenly = 1; // the power of two of phases that are evenly spread
        while (2 * evenly <= numPhases)
            evenly *= 2;
        const std::size_t apart = PointOrder::PHASES / evenly;
        EXPECT_LT(longestGap(order, numPhases), 2 * apart) << numPhases;
    }
}

// How many points of the first phases fall into each cell of an organised cloud of one chunk.
std::vector<int> pointsInCells(std::size_t width, std::size_t cell, std::size_t numPhases)
{
    const PointOrder order(PointOrder::CHUNK);
    const std::size_t numAcross = width / cell;
    const std::size_t numDown = PointOrder::CHUNK / width / cell;
    std::vector<int> counts(numAcross * numDown);
    for (std::size_t place = 0; place < order.sizeOfPhases(0, numPhases); ++place) {
        const std::size_t x = order.pointAt(place) % width / cell;
        const std::size_t y = order.pointAt(place) / width / cell;
        if (x < numAcross && y < numDown)
            ++counts[y * numAcross + x];
    }
    return counts;
}

// The standard deviation of the counts, in means.
double spreadOf(const std::vector<int>& counts)
{
    const double mean = std::accumulate(counts.begin(), counts.end(), 0.0) / static_cast<double>(counts.size());
    double sum = 0;
    for (const int count : counts)
        sum += (count - mean) * (count - mean);
    return std::sqrt(sum / static_cast<double>(counts.size())) / mean;
}

TEST(PointOrderTest, LeavesNoHolesInOrganisedClouds)
{
    for (const std::size_t width : {64, 100, 256, 320, 480, 512, 640, 720, 1000, 1024, 1280, 1920, 2048}) {
        const std::vector<int> counts = pointsInCells(width, 8, 4); // the first 16th; four in the mean
        EXPECT_GT(*std::min_element(counts.begin(), counts.end()), 0) << width;
        EXPECT_LT(spreadOf(counts), 0.35) << width << "; shuffled clouds have 0.48";
    }
}

} // namespace

} // namespace tavo
