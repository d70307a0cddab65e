#include "vireo/show/images/PixelColours.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "tests/vireo/show/images/images.h"

namespace tavo {
namespace {

// How bright numbers are whose range is from the first to the last one.
template <typename T>
std::vector<int> greys(const std::vector<T>& numbers, double from, double to)
{
    ImageLook look;
    look.from = from;
    look.to = to;
    std::vector<QRgb> colours(numbers.size());
    const int width = static_cast<int>(numbers.size());
    PixelColours(look).convert(imageOf(numbers, width, 1), 0, 0, width, colours.data());
    std::vector<int> greys;
    for (const QRgb colour : colours)
        greys.push_back(qRed(colour));
    return greys;
}

const std::vector<int> EVEN{0, 64, 128, 191, 255};

TEST(PixelColoursTest, ARangeMayBeAsWideAsNumbersAre)
{
    constexpr double GREATEST = std::numeric_limits<double>::max();
    EXPECT_EQ(greys<double>({-GREATEST, -GREATEST / 2, 0, GREATEST / 2, GREATEST}, -GREATEST, GREATEST), EVEN);
    EXPECT_EQ(greys<double>({-1.6e308, -0.8e308, 0, 0.8e308, 1.6e308}, -1.6e308, 1.6e308), EVEN);
    constexpr float GREATEST_FLOAT = std::numeric_limits<float>::max();
    EXPECT_EQ(greys<float>({-GREATEST_FLOAT, -GREATEST_FLOAT / 2, 0, GREATEST_FLOAT / 2, GREATEST_FLOAT},
                  -GREATEST_FLOAT, GREATEST_FLOAT),
        EVEN);
    EXPECT_EQ(greys<float>({-3e38F, -1.75e38F, -0.5e38F, 0.75e38F, 2e38F}, -3e38F, 2e38F), EVEN);
}

TEST(PixelColoursTest, ARangeMayBeWiderThanTheNumbersOfThePixels)
{
    EXPECT_EQ(greys<float>({-3.4e38F, 0, 3.4e38F}, -1e39, 1e39), (std::vector<int>{84, 128, 171}));
    EXPECT_EQ(greys<float>({-3.4e38F, 0, 3.4e38F}, -1.7e308, 1.7e308), (std::vector<int>{128, 128, 128}));
    EXPECT_EQ(greys<std::uint8_t>({0, 255}, -1.7e308, 1.7e308), (std::vector<int>{128, 128}));
    EXPECT_EQ(greys<std::int64_t>({-5, 5}, -1.7e308, 1.7e308), (std::vector<int>{128, 128}));
}

TEST(PixelColoursTest, ARangeMayBeAsNarrowAsNumbersAre)
{
    EXPECT_EQ(greys<double>({0, 1e-310, 2e-310, 3e-310, 4e-310}, 0, 4e-310), EVEN);
    constexpr float LEAST_FLOAT = std::numeric_limits<float>::denorm_min();
    EXPECT_EQ(
        greys<float>({0, LEAST_FLOAT, 2 * LEAST_FLOAT, 3 * LEAST_FLOAT, 4 * LEAST_FLOAT}, 0, 4.0 * LEAST_FLOAT), EVEN);
    constexpr double LEAST = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(greys<double>({-1, 0, LEAST, 1e300}, 0, LEAST), (std::vector<int>{0, 0, 255, 255}));
    EXPECT_EQ(greys<float>({-1, 0, 1}, 0, 1e-310), (std::vector<int>{0, 0, 255}));
    EXPECT_EQ(
        greys<double>({-1e300, 1e300, std::nextafter(1e300, 2e300), 1.7e308}, 1e300, std::nextafter(1e300, 2e300)),
        (std::vector<int>{0, 0, 255, 255}));
}

} // namespace
} // namespace tavo
