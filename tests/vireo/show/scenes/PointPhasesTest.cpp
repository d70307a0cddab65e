#include "vireo/show/scenes/PointPhases.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numeric>
#include <vector>

namespace tavo {

namespace {

std::vector<std::size_t> pointsOf(const PointPhases& phases, std::size_t chunk, std::size_t numPhases)
{
    std::vector<std::size_t> points;
    phases.forEachPoint(chunk, numPhases, [&](std::size_t point) { points.push_back(point); });
    return points;
}

constexpr std::size_t SIZE = 65536; // of clouds of several chunks

std::vector<std::size_t> pointsOf(const PointPhases& phases, std::size_t numPhases)
{
    std::vector<std::size_t> points;
    for (std::size_t chunk = 0; chunk < phases.numChunks(); ++chunk)
        for (const std::size_t point : pointsOf(phases, chunk, numPhases))
            points.push_back(point);
    return points;
}

// The longest way between neighbours among the points of the first phases.
std::size_t longestGap(const PointPhases& phases, std::size_t numPhases)
{
    const std::vector<std::size_t> points = pointsOf(phases, numPhases);
    std::vector<std::size_t> gaps(points.size());
    std::adjacent_difference(points.begin(), points.end(), gaps.begin());
    return *std::max_element(gaps.begin(), gaps.end());
}

// Of all sizes around those where something changes.
TEST(PointPhasesTest, AllPhasesHaveAllPointsInTheirOrder)
{
    for (const std::size_t size :
        {0, 1, 63, 64, 65, 127, 128, 1000, 4095, 4096, 4097, 4096 + 63, 4096 + 64, 2 * 4096 - 1, 2 * 4096, 200000}) {
        const PointPhases phases(size);
        std::size_t next = 0;
        for (std::size_t chunk = 0; chunk < phases.numChunks(); ++chunk)
            for (const std::size_t point : pointsOf(phases, chunk, PointPhases::ALL))
                ASSERT_EQ(point, next++) << "of " << size;
        EXPECT_EQ(next, size);
    }
}

TEST(PointPhasesTest, ChunksAreOf4096)
{
    const PointPhases phases(2 * 4096 + 70);
    EXPECT_EQ(phases.numChunks(), 3u);
    EXPECT_EQ(phases.sizeOfChunk(1), 4096u);
    EXPECT_EQ(phases.sizeOfChunk(2), 70u);
    EXPECT_EQ(phases.sizeOfPhases(1, 256), 256u);
    EXPECT_EQ(phases.sizeOfPhases(1, 3), 3u);
    EXPECT_EQ(phases.sizeOfPhases(2, 63 * 64), 63u);
    EXPECT_EQ(phases.sizeOfPhases(2, PointPhases::ALL), 70u) << "the last points are of the last phase";
    EXPECT_EQ(phases.sizeOfPhases(2, 1), 1u) << "of what is left there is always some";
    EXPECT_EQ(PointPhases(0).numChunks(), 0u);
    EXPECT_EQ(PointPhases(10).sizeOfPhases(0, PointPhases::ALL - 1), 0u);
}

// And what fewer have is among what more have.
TEST(PointPhasesTest, EveryPhaseAddsOnePointOfAChunk)
{
    const PointPhases phases(3 * PointPhases::CHUNK);
    std::vector<std::size_t> last;
    for (std::size_t numPhases = 1; numPhases <= 200; ++numPhases) {
        const std::vector<std::size_t> points = pointsOf(phases, 1, numPhases);
        ASSERT_EQ(points.size(), numPhases);
        ASSERT_EQ(phases.sizeOfPhases(1, numPhases), numPhases);
        ASSERT_TRUE(std::includes(points.begin(), points.end(), last.begin(), last.end()));
        last = points;
    }
}

// The rows of chunks that they are in are evenly spread, from the first one on.
TEST(PointPhasesTest, FewerThanOneOfARowCoverTheCloudToo)
{
    const PointPhases phases(SIZE);
    for (std::size_t numPhases = 1; numPhases <= 64; numPhases *= 2)
        EXPECT_LT(longestGap(phases, numPhases), 2 * PointPhases::CHUNK / numPhases + 128) << numPhases;
}

// One of every 64 points each.
TEST(PointPhasesTest, Every64PhasesAddOneOf64Points)
{
    const PointPhases phases(PointPhases::CHUNK + 1000);
    for (const std::size_t chunk : {0, 1}) {
        std::vector<std::size_t> last;
        for (std::size_t numOfRow = 1; numOfRow < 64; ++numOfRow) {
            const std::vector<std::size_t> points = pointsOf(phases, chunk, 64 * numOfRow);
            ASSERT_EQ(points.size(), phases.sizeOfPhases(chunk, 64 * numOfRow));
            ASSERT_TRUE(std::is_sorted(points.begin(), points.end()));
            ASSERT_TRUE(std::includes(points.begin(), points.end(), last.begin(), last.end()));
            for (std::size_t i = 0; i < points.size(); ++i)
                ASSERT_EQ(points[i] / 64, (PointPhases::CHUNK * chunk) / 64 + i / numOfRow);
            last = points;
        }
    }
}

TEST(PointPhasesTest, TheFirstOnesCoverTheCloud)
{
    const PointPhases phases(SIZE);
    for (std::size_t numOfRow = 1; numOfRow <= 64; ++numOfRow) {
        std::size_t evenly = 1; // the power of two of them that are evenly spread
        while (2 * evenly <= numOfRow)
            evenly *= 2;
        EXPECT_LT(longestGap(phases, 64 * numOfRow), 2 * 64 / evenly) << numOfRow;
    }
}

// How many points of the first phases fall into each cell of an organised cloud.
std::vector<int> pointsInCells(std::size_t width, std::size_t cell, std::size_t numPhases)
{
    const std::size_t numAcross = width / cell;
    const std::size_t numDown = SIZE / width / cell;
    std::vector<int> counts(numAcross * numDown);
    for (const std::size_t point : pointsOf(PointPhases(SIZE), numPhases)) {
        const std::size_t x = point % width / cell;
        const std::size_t y = point / width / cell;
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

TEST(PointPhasesTest, LeavesNoHolesInOrganisedClouds)
{
    for (const std::size_t width : {64, 100, 256, 320, 480, 512, 640, 720, 1000, 1024, 1280, 1920, 2048}) {
        const std::vector<int> counts = pointsInCells(width, 8, 4 * 64); // the first 16th; four in the mean
        EXPECT_GT(*std::min_element(counts.begin(), counts.end()), 0) << width;
        EXPECT_LT(spreadOf(counts), 0.35) << width << "; shuffled clouds have 0.48";
    }
}

} // namespace

} // namespace tavo
