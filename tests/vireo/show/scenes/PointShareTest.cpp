#include "vireo/show/scenes/PointShare.h"

#include <gmock/gmock.h>

namespace tavo {
namespace {

using testing::ElementsAre;

constexpr int CHUNK = int(PointOrder::CHUNK);

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
    const PointOrder order(3 * PointOrder::CHUNK + 70);
    const PointShare share = seen(-10, 10);
    const PointRanges ranges = rangesOf(order, chunksInARow(4), share, share.clipSpaceOf({}, 1));
    EXPECT_TRUE(share.isWhole());
    EXPECT_THAT(ranges.firsts, ElementsAre(0));
    EXPECT_THAT(ranges.counts, ElementsAre(3 * CHUNK + 70));
    EXPECT_EQ(ranges.numPoints(), order.numPoints());
}

TEST(PointShareTest, ChunksOutsideTheViewAreLeftOut)
{
    const PointOrder order(6 * PointOrder::CHUNK);
    const PointShare share = seen(2.25, 3.75);
    EXPECT_THAT(rangesOf(order, chunksInARow(6), share, share.clipSpaceOf({}, 1)).firsts, ElementsAre(2 * CHUNK));
    const PointRanges moved = rangesOf(order, chunksInARow(6), share, share.clipSpaceOf(translation({2.5, 0, 0}), 1));
    EXPECT_THAT(moved.firsts, ElementsAre(0)) << "an item that was moved";
    EXPECT_THAT(moved.counts, ElementsAre(2 * CHUNK));
}

TEST(PointShareTest, LargePointsReachIntoTheView)
{
    const PointOrder order(6 * PointOrder::CHUNK);
    const PointShare share = seen(2.05, 2.95);
    EXPECT_THAT(rangesOf(order, chunksInARow(6), share, share.clipSpaceOf({}, 2)).counts, ElementsAre(CHUNK));
    EXPECT_THAT(rangesOf(order, chunksInARow(6), share, share.clipSpaceOf({}, 20)).counts, ElementsAre(3 * CHUNK));
}

TEST(PointShareTest, PhasesAreThoseOfEveryChunkInView)
{
    const PointOrder order(2 * PointOrder::CHUNK + 6400 + 7);
    PointShare share = seen(-10, 10);
    share.firstPhase = 4;
    share.endPhase = 6;
    EXPECT_FALSE(share.isWhole());
    PointRanges ranges = rangesOf(order, chunksInARow(3), share, share.clipSpaceOf({}, 1));
    EXPECT_THAT(ranges.firsts, ElementsAre(4 * 1024, CHUNK + 4 * 1024, 2 * CHUNK + 400));
    EXPECT_THAT(ranges.counts, ElementsAre(2048, 2048, 200));
    share.endPhase = 64;
    ranges = rangesOf(order, chunksInARow(3), share, share.clipSpaceOf({}, 1));
    EXPECT_EQ(ranges.counts.back(), 6007) << "with the points that make no phase";
}

} // namespace
} // namespace tavo
