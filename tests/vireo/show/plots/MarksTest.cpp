#include "vireo/show/plots/marks.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <set>

#include "tests/vireo/show/plots/curves.h"

namespace tavo {

namespace {

using Pixels = std::set<std::pair<int, int>>;

constexpr int WIDTH = 100;
constexpr int HEIGHT = 80;

Pixels pixelsOf(const Marks& marks)
{
    Pixels pixels;
    for (const QPointF& point : marks.points)
        pixels.emplace(std::floor(point.x()), std::floor(point.y()));
    for (const QRectF& run : marks.runs)
        for (double y = run.top(); y + 1 < run.bottom(); ++y) // a mark is two pixels high
            pixels.emplace(std::floor(run.left()), std::floor(y));
    return pixels;
}

Pixels within(const Pixels& pixels)
{
    Pixels seen;
    for (const auto& [x, y] : pixels)
        if (x >= 0 && x < WIDTH && y >= 0 && y < HEIGHT)
            seen.emplace(x, y);
    return seen;
}

Pixels ofAllSamples(const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap)
{
    Pixels pixels;
    for (std::size_t i = 0; i < curve.size(); ++i)
        if (xMap.hasPlace(curve.x(i)) && yMap.hasPlace(curve.y(i)))
            pixels.emplace(std::floor(xMap.toPixel(curve.x(i))), std::floor(yMap.toPixel(curve.y(i))));
    return within(pixels);
}

// Noise with gaps, sorted along x or not.
CurveStore makeNoise(std::size_t size, bool isSorted)
{
    std::mt19937 random(3);
    std::normal_distribution<double> noise;
    std::uniform_real_distribution<double> place(0, static_cast<double>(size));
    std::vector<double> x(size);
    std::vector<double> y(size);
    for (std::size_t i = 0; i < size; ++i) {
        x[i] = isSorted ? static_cast<double>(i) : place(random);
        y[i] = i % 1000 < 10 ? NAN : noise(random);
    }
    y[size / 2] = INFINITY;
    y[size / 2 + 1] = 3.9;
    CurveStore curve;
    CurveUpdate update = samples(x, y);
    curve.apply(update);
    return curve;
}

TEST(MarksTest, EveryPixelWithASampleHasAMark)
{
    for (const std::size_t size : {1'000, 100'000})
        for (const bool isSorted : {true, false})
            for (const bool isLog : {false, true}) {
                const CurveStore curve = makeNoise(size, isSorted);
                const auto length = static_cast<double>(size);
                const PixelMap yMap = isLog ? PixelMap{0.001, 4, HEIGHT, 0, true} : PixelMap{-4, 4, HEIGHT, 0};
                // No sample lies on the border of two pixels.
                for (const PixelMap& xMap :
                    {PixelMap{-3.7123, length + 1.3456, 0, WIDTH}, PixelMap{length + 1.3456, -3.7123, 0, WIDTH},
                        PixelMap{0.31 * length, 0.77 * length, 0, WIDTH}}) {
                    const Pixels found = within(pixelsOf(marksOf(curve, xMap, yMap)));
                    EXPECT_EQ(found, ofAllSamples(curve, xMap, yMap))
                        << size << " " << isSorted << " " << isLog << " " << xMap.firstValue;
                    EXPECT_GT(found.size(), 200u);
                }
            }
}

TEST(MarksTest, FewSamplesStayWhereTheyAre)
{
    CurveStore curve;
    CurveUpdate update = samples({0, 1, 2}, {0.5, 0.25, 0.125});
    curve.apply(update);
    const Marks marks = marksOf(curve, {0, 2, 0, WIDTH}, {0, 1, HEIGHT, 0});
    EXPECT_EQ(marks.points, QPolygonF(QVector<QPointF>{{0, 40}, {50, 60}, {100, 70}}));
    EXPECT_TRUE(marks.runs.empty());
}

TEST(MarksTest, TooManyForPointsAreRuns)
{
    const CurveStore curve = makeNoise(1'000'000, true);
    const Marks marks = marksOf(curve, {0, 1e6, 0, 600}, {-4, 4, 400, 0});
    EXPECT_TRUE(marks.points.empty());
    EXPECT_GT(marks.runs.size(), 600u);
    EXPECT_EQ(
        std::count_if(marks.runs.begin(), marks.runs.end(), [](const QRectF& run) { return run.width() != 2; }), 0);
}

} // namespace

} // namespace tavo
