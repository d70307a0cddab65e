#include "apps/vireo-view/Histogram.h"

#include <cmath>
#include <gmock/gmock.h>
#include <limits>

namespace vireo_view {
namespace {

using tavo::Vector2d;
using testing::DoubleEq;
using testing::ElementsAre;
using testing::SizeIs;

Histogram histogramOf(const std::vector<float>& densities)
{
    return Histogram(NumberColumn(densities));
}

TEST(BinsTest, AreEqualAndTheLastHasTheLargestValue)
{
    Span span;
    span.include(-1);
    span.include(3);
    const Bins bins(span, 4);
    EXPECT_EQ(bins.getCount(), 4u);
    EXPECT_EQ(bins.binOf(-1), 0u);
    EXPECT_EQ(bins.binOf(-0.01), 0u);
    EXPECT_EQ(bins.binOf(0), 1u);
    EXPECT_EQ(bins.binOf(2.5), 3u);
    EXPECT_EQ(bins.binOf(3), 3u);
    EXPECT_EQ(bins.reach(0), -1);
    EXPECT_EQ(bins.reach(2.5), 1.5);
}

TEST(BinsTest, AreOneWithoutAnExtent)
{
    Span span;
    span.include(7);
    const Bins bins(span, 4);
    EXPECT_EQ(bins.getCount(), 1u);
    EXPECT_EQ(bins.binOf(7), 0u);
}

TEST(HistogramTest, HasABinForEveryWholeNumber)
{
    const Histogram histogram = histogramOf({3, -1, 3, 0, 3});
    EXPECT_EQ(histogram.getSpan().getMin(), -1);
    EXPECT_EQ(histogram.getSpan().getMax(), 3);
    EXPECT_THAT(histogram.getCounts(), ElementsAre(1, 1, 0, 0, 3));
    EXPECT_EQ(histogram.getNumSamples(), 5u);
    EXPECT_THAT(histogram.getLogCounts(),
        ElementsAre(DoubleEq(std::log10(2)), DoubleEq(std::log10(2)), 0, 0, DoubleEq(std::log10(4))));
}

TEST(HistogramTest, HasBinsOfEquallyManyWholeNumbers)
{
    std::vector<float> densities(512);
    for (std::size_t i = 0; i < densities.size(); ++i)
        densities[i] = static_cast<float>(i);
    EXPECT_THAT(histogramOf(densities).getCounts(), SizeIs(256));
    EXPECT_THAT(histogramOf(densities).getCounts(), testing::Each(2));
}

TEST(HistogramTest, HasTheMostBinsForOtherNumbers)
{
    EXPECT_THAT(histogramOf({0.5f, 1, 2}).getCounts(), SizeIs(Histogram::MOST_BINS));
    EXPECT_THAT(histogramOf({0, 1e30f}).getCounts(), SizeIs(Histogram::MOST_BINS));
    EXPECT_THAT(histogramOf({-3e38f, 3e38f}).getCounts(), SizeIs(Histogram::MOST_BINS));
}

TEST(HistogramTest, LeavesOutWhatIsNoNumber)
{
    constexpr float INF = std::numeric_limits<float>::infinity();
    const Histogram histogram = histogramOf({NAN, 1, INF, 2, -INF});
    EXPECT_THAT(histogram.getCounts(), ElementsAre(1, 1));
}

TEST(HistogramTest, MayHaveNoSample)
{
    for (const Histogram& histogram : {histogramOf({}), histogramOf({NAN})}) {
        EXPECT_TRUE(histogram.getSpan().isEmpty());
        EXPECT_EQ(histogram.getNumSamples(), 0u);
        EXPECT_THAT(histogram.getLogCounts(), ElementsAre(0));
    }
}

TEST(HistogramTest, MayHaveOneValue)
{
    const Histogram histogram = histogramOf({7, 7});
    EXPECT_THAT(histogram.getCounts(), ElementsAre(2));
}

TEST(HistogramTest, HasAnOutlineThatBeginsAndEndsAtZero)
{
    const Histogram histogram = histogramOf({0, 1, 1});
    EXPECT_THAT(outlineOf(histogram.getBins(), {5, 8}), ElementsAre(Vector2d(0, 0), Vector2d(0, 5), Vector2d(0.5, 5),
                                                            Vector2d(0.5, 8), Vector2d(1, 8), Vector2d(1, 0)));
}

} // namespace
} // namespace vireo_view
