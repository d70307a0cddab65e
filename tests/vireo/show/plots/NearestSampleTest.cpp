#include "vireo/show/plots/nearestSample.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "tests/vireo/show/plots/curves.h"

namespace tavo {

namespace {

constexpr double RADIUS = 8;

double distanceByOne(const CurveStore& store, const PixelMap& xMap, const PixelMap& yMap, const QPointF& place)
{
    double least = INFINITY;
    for (std::size_t i = 0; i < store.size(); ++i) {
        const double distance = std::hypot(xMap.toPixel(store.x(i)) - place.x(), yMap.toPixel(store.y(i)) - place.y());
        least = distance < least ? distance : least;
    }
    return least;
}

TEST(NearestSampleTest, IsTheNearestOfAllInPixels)
{
    std::mt19937 random(5);
    std::normal_distribution<double> noise;
    std::uniform_real_distribution<double> part(0, 1);
    for (const bool isSorted : {true, false}) {
        std::vector<double> x(20'000);
        std::vector<double> y(x.size());
        for (std::size_t i = 0; i < x.size(); ++i) {
            x[i] = isSorted ? static_cast<double>(i) : part(random) * 20'000;
            y[i] = random() % 50 == 0 ? NAN : noise(random);
        }
        CurveUpdate update = samples(x, y);
        CurveStore store;
        store.apply(update);
        const PixelMap xMap{0, 20'000, 0, 500};
        const PixelMap yMap{-4, 4, 300, 0};
        for (int i = 0; i < 200; ++i) {
            const QPointF place(part(random) * 500, part(random) * 300);
            const double expected = distanceByOne(store, xMap, yMap, place);
            const std::optional<NearestSample> found = nearestSample(store, xMap, yMap, place, RADIUS);
            ASSERT_EQ(found.has_value(), expected <= RADIUS) << place.x() << ", " << place.y();
            if (found) {
                ASSERT_DOUBLE_EQ(found->distance, expected);
            }
        }
    }
}

} // namespace

} // namespace tavo
