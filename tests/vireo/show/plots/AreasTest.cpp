#include "vireo/show/plots/areas.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numeric>

#include "tests/vireo/show/plots/curves.h"

namespace tavo {

namespace {

CurveStore storeOf(std::vector<double> x, std::vector<double> y)
{
    CurveUpdate update = samples(std::move(x), std::move(y));
    CurveStore store;
    store.apply(update);
    return store;
}

std::vector<double> values(const NumberArray& array)
{
    std::vector<double> all;
    for (std::size_t i = 0; i < array.size(); ++i)
        all.push_back(array[i]);
    return all;
}

TEST(AreasTest, BarsStandOnZero)
{
    const std::vector<QRectF> bars = barsOf(storeOf({0, 1, 2}, {5, -5, NAN}), {-1, 3, 0, 400}, {-10, 10, 200, 0}, 0.5);
    ASSERT_EQ(bars.size(), 2u);
    EXPECT_EQ(bars[0], QRectF(QPointF(75, 50), QPointF(125, 100)));
    EXPECT_EQ(bars[1], QRectF(QPointF(175, 100), QPointF(225, 150)));
}

TEST(AreasTest, TheHighestOfManyBarsIsSeen)
{
    std::vector<double> y(1'000'000, 1.0);
    y[777'777] = 9;
    y[333'333] = -9;
    const std::vector<QRectF> bars = barsOf(storeOf({}, y), {0, 1e6, 0, 500}, {-10, 10, 200, 0}, 0.8);
    EXPECT_LE(bars.size(), 503u);
    double top = 200;
    double bottom = 0;
    for (const QRectF& bar : bars) {
        top = std::min(top, bar.top());
        bottom = std::max(bottom, bar.bottom());
    }
    EXPECT_DOUBLE_EQ(top, 10);
    EXPECT_DOUBLE_EQ(bottom, 190);
}

TEST(AreasTest, ABandLiesBetweenItsEdgesAndHasGaps)
{
    const CurveStore low = storeOf({0, 1, 2, 3, 4}, {0, 0, 0, 0, 0});
    const CurveStore high = storeOf({0, 1, 2, 3, 4}, {1, 1, NAN, 2, 2});
    const std::vector<QPolygonF> areas = bandOf(low, high, {0, 4, 0, 400}, {0, 2, 200, 0});
    ASSERT_EQ(areas.size(), 2u);
    EXPECT_EQ(areas[0], QPolygonF(QVector<QPointF>{{0, 100}, {100, 100}, {100, 200}, {0, 200}}));
    EXPECT_EQ(areas[1], QPolygonF(QVector<QPointF>{{300, 0}, {400, 0}, {400, 200}, {300, 200}}));
}

TEST(AreasTest, ABandOfManySamplesHasTheHighestAndTheLowest)
{
    std::vector<double> low(1'000'000, 0.0);
    std::vector<double> high(1'000'000, 1.0);
    low[400'000] = -1;
    high[600'000] = 2;
    const std::vector<QPolygonF> areas = bandOf(storeOf({}, low), storeOf({}, high), {0, 1e6, 0, 400}, {-1, 2, 300, 0});
    ASSERT_EQ(areas.size(), 1u);
    EXPECT_LE(areas[0].size(), 806);
    EXPECT_EQ(areas[0].boundingRect().top(), 0);
    EXPECT_EQ(areas[0].boundingRect().bottom(), 300);
}

TEST(AreasTest, AHistogramCountsEachFiniteValueOnce)
{
    const CurveSamples counted = histogramOf(numbers({0.5, 1.5, 2.5, 3.5, 4.5, 5.5, 6.5, 7.5, NAN, INFINITY}));
    const std::vector<double> counts = values(counted.y);
    EXPECT_EQ(counts, std::vector<double>({2, 2, 2, 2}));
    EXPECT_EQ(counted.x[0], 1.375);
    EXPECT_EQ(values(histogramOf(numbers({5, 5, 5})).y), std::vector<double>({3}));
    EXPECT_EQ(histogramOf(numbers({5, 5, 5})).x[0], 5);
    EXPECT_TRUE(histogramOf(numbers({NAN})).y.isEmpty());
    EXPECT_TRUE(histogramOf({}).y.isEmpty());
    const std::vector<double> wide = values(histogramOf(numbers({-1.7e308, 1.7e308})).y);
    EXPECT_EQ(std::accumulate(wide.begin(), wide.end(), 0.0), 2);
}

TEST(AreasTest, IntervalsOfWholeNumbersHaveAsManyOfThemEach)
{
    std::vector<double> throws;
    for (int i = 0; i < 600; ++i)
        throws.push_back(i % 6 + 1);
    const CurveSamples dice = histogramOf(numbers(throws));
    EXPECT_EQ(values(dice.x), std::vector<double>({1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(values(dice.y), std::vector<double>(6, 100));
    EXPECT_EQ(values(histogramOf(numbers({1, 6, 6, 2})).y), std::vector<double>({1, 1, 0, 0, 0, 2})) << "also of a few";
    throws.clear();
    for (int i = 0; i < 640; ++i) // Rice would have 18 intervals of 3 and of 4 numbers
        throws.push_back(i % 64 - 32);
    const CurveSamples even = histogramOf(numbers(throws));
    EXPECT_EQ(values(even.y), std::vector<double>(16, 40));
    EXPECT_EQ(even.x[0], -30.5);
    EXPECT_EQ(values(histogramOf(numbers({-1e300, 1e300})).y), std::vector<double>({1, 0, 1})) << "has no halves";
}

TEST(AreasTest, BarsThatAreNotAboveZeroHaveNoPlaceOnALogarithmicAxis)
{
    const PixelMap xMap{-1, 3, 0, 100};
    EXPECT_EQ(barsOf(storeOf({0, 1, 2}, {10, 0, -5}), xMap, {1, 100, 100, 0, true}, 0.8).size(), 1u);
    EXPECT_EQ(barsOf(storeOf({0, 1, 2}, {10, 0, -5}), xMap, {-10, 100, 100, 0}, 0.8).size(), 3u);
}

TEST(AreasTest, BarsAreAsWideAsTheNearestNeighboursAllow)
{
    EXPECT_EQ(leastDistance(storeOf({0, 2, 2, 2.5}, {0, 0, 0, 0})), 0.5);
    EXPECT_EQ(leastDistance(storeOf({3}, {0})), 1);
    EXPECT_EQ(leastDistance(storeOf({3, 1, 2.5, 1}, {0, 0, 0, 0})), 0.5);
    EXPECT_EQ(leastDistance(storeOf({1, 3, NAN, 3.25, INFINITY}, {0, 0, 0, 0, 0})), 0.25);
    EXPECT_EQ(leastDistance(storeOf({NAN, 7, NAN}, {0, 0, 0})), 1);
}

} // namespace

} // namespace tavo
