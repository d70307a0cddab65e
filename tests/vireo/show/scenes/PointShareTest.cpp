#include "vireo/show/scenes/PointShare.h"

#include <gmock/gmock.h>

namespace tavo {
namespace {

using testing::ElementsAre;

constexpr int CHUNK = int(PointPhases::CHUNK);

// Chunks side by side along x, one unit each.
std::vector<SceneBox> chunksInARow(std::size_t number)
{
    std::vector<SceneBox> chunks(number);
    for (std::size_t i = 0; i < number; ++i) {
        chunks[i].extend(Vector3d(double(i), 0, 0));
        chunks[i].extend(Vector3d(double(i) + 1, 1, 1));
    }
    return chunks;
}

// What is seen is from `from` to `to` along x.
PointShare seen(double from, double to)
{
    PointShare share;
    share.projection.at(0, 0) = 2 / (to - from);
    share.projection.at(0, 3) = -(to + from) / (to - from);
    share.width = share.height = 100;
    return share;
}

TEST(PointShareTest, AllPointsAreOneRange)
{
    const PointPhases phases(3 * PointPhases::CHUNK + 70);
    const PointShare share = seen(-10, 10);
    const PointRanges ranges = rangesOf(phases, chunksInARow(4), share, share.clipSpaceOf({}, 1));
    EXPECT_TRUE(share.hasAllPhases());
    EXPECT_THAT(ranges.firsts, ElementsAre(0));
    EXPECT_THAT(ranges.counts, ElementsAre(3 * CHUNK + 70));
    EXPECT_EQ(ranges.numPoints(), phases.numPoints());
}

TEST(PointShareTest, ChunksOutsideTheViewAreLeftOut)
{
    const PointPhases phases(6 * PointPhases::CHUNK);
    const PointShare share = seen(2.25, 3.75);
    EXPECT_THAT(rangesOf(phases, chunksInARow(6), share, share.clipSpaceOf({}, 1)).firsts, ElementsAre(2 * CHUNK));
    const PointRanges moved = rangesOf(phases, chunksInARow(6), share, share.clipSpaceOf(translation({2.5, 0, 0}), 1));
    EXPECT_THAT(moved.firsts, ElementsAre(0)) << "an item that was moved";
    EXPECT_THAT(moved.counts, ElementsAre(2 * CHUNK));
}

TEST(PointShareTest, LargePointsReachIntoTheView)
{
    const PointPhases phases(6 * PointPhases::CHUNK);
    const PointShare share = seen(2.05, 2.95);
    EXPECT_THAT(rangesOf(phases, chunksInARow(6), share, share.clipSpaceOf({}, 2)).counts, ElementsAre(CHUNK));
    EXPECT_THAT(rangesOf(phases, chunksInARow(6), share, share.clipSpaceOf({}, 20)).counts, ElementsAre(3 * CHUNK));
}

TEST(PointShareTest, PhasesAreThoseOfEveryChunkInView)
{
    const PointPhases phases(2 * PointPhases::CHUNK + 640 + 7);
    PointShare share = seen(-10, 10);
    share.numPhases = 2 * 64; // of each 64 points two
    EXPECT_FALSE(share.hasAllPhases());
    PointRanges ranges = rangesOf(phases, chunksInARow(3), share, share.clipSpaceOf({}, 1));
    EXPECT_THAT(ranges.firsts, ElementsAre(0));
    EXPECT_THAT(ranges.counts, ElementsAre(2 * 128 + 20)) << "those of one chunk stand behind those of the other";
    share = seen(1.25, 9);
    share.numPhases = 2 * 64; // of each 64 points two
    ranges = rangesOf(phases, chunksInARow(3), share, share.clipSpaceOf({}, 1));
    EXPECT_THAT(ranges.firsts, ElementsAre(128));
    EXPECT_THAT(ranges.counts, ElementsAre(128 + 20));
}

TEST(PointShareTest, SomePointsAreThoseInView)
{
    const PointPhases phases(3 * PointPhases::CHUNK);
    PointShare share = seen(-10, 10);
    share.beginPoint = PointPhases::CHUNK + 10;
    share.endPoint = 2 * PointPhases::CHUNK + 5;
    PointRanges ranges = rangesOf(phases, chunksInARow(3), share, share.clipSpaceOf({}, 1));
    EXPECT_THAT(ranges.firsts, ElementsAre(CHUNK + 10));
    EXPECT_THAT(ranges.counts, ElementsAre(CHUNK - 5));
    share.numPhases = 64;
    ranges = rangesOf(phases, chunksInARow(3), share, share.clipSpaceOf({}, 1));
    EXPECT_THAT(ranges.firsts, ElementsAre(64)) << "a few have all chunks in which there are any of them";
    EXPECT_THAT(ranges.counts, ElementsAre(128));
}

TEST(PointShareTest, PointsAreCountedThroughSeveralClouds)
{
    PointShare share;
    share.beginPoint = 100;
    EXPECT_EQ(share.behind(30).beginPoint, 70u);
    EXPECT_EQ(share.behind(200).beginPoint, 0u);
    share.endPoint = 150;
    EXPECT_EQ(share.behind(30).endPoint, 120u);
    EXPECT_EQ(share.behind(200).endPoint, 0u) << "none";
}

TEST(PointRangesTest, KnowWhatIsAmongThem)
{
    PointRanges ranges;
    ranges.add(10, 5);
    ranges.add(15, 5);
    ranges.add(30, 0);
    ranges.add(40, 2);
    EXPECT_THAT(ranges.firsts, ElementsAre(10, 40));
    EXPECT_THAT(ranges.within(0, 11).counts, ElementsAre(1));
    EXPECT_THAT(ranges.within(0, 10).firsts, ElementsAre());
    EXPECT_THAT(ranges.within(12, 41).firsts, ElementsAre(0, 28));
    EXPECT_THAT(ranges.within(12, 41).counts, ElementsAre(8, 1));
    EXPECT_THAT(ranges.within(20, 40).firsts, ElementsAre());
    EXPECT_THAT(ranges.within(41, 100).counts, ElementsAre(1));
    EXPECT_THAT(ranges.within(42, 100).firsts, ElementsAre());
}

} // namespace
} // namespace tavo
