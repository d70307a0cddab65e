#include "vireo/show/plots/Pyramid.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace tavo {

namespace {

// Of numbers one by one.
Extent extentByOne(const std::vector<double>& numbers, std::size_t first, std::size_t last)
{
    Extent extent;
    for (std::size_t i = first; i < last; ++i)
        extent.include(numbers[i]);
    return extent;
}

std::vector<double> randomNumbers(std::size_t count, bool areHostile)
{
    constexpr double UNBOUNDED = std::numeric_limits<double>::infinity();
    constexpr double HOSTILE[] = {std::numeric_limits<double>::quiet_NaN(), UNBOUNDED, -UNBOUNDED};
    std::mt19937 random(1);
    std::normal_distribution<double> number;
    std::vector<double> numbers(count);
    for (double& value : numbers)
        value = areHostile && random() % 3 == 0 ? HOSTILE[random() % 3] : number(random);
    // More than a block without a number.
    for (std::size_t i = 1000; areHostile && i < std::min<std::size_t>(count, 1400); ++i)
        numbers[i] = HOSTILE[0];
    return numbers;
}

void expectExtremes(const Pyramid& pyramid, const std::vector<double>& numbers, std::size_t first, std::size_t last)
{
    const Extremes found = pyramid.extremes(numbers.data(), first, last);
    const Extent expected = extentByOne(numbers, first, last);
    ASSERT_EQ(found.extent.isEmpty(), expected.isEmpty()) << first << " to " << last;
    if (expected.isEmpty())
        return;
    ASSERT_EQ(found.extent.from, expected.from) << first << " to " << last;
    ASSERT_EQ(found.extent.to, expected.to) << first << " to " << last;
    ASSERT_TRUE(found.lowest >= first && found.lowest < last && found.highest >= first && found.highest < last);
    ASSERT_EQ(numbers[found.lowest], expected.from);
    ASSERT_EQ(numbers[found.highest], expected.to);
}

class PyramidTest : public testing::TestWithParam<bool>
{};

TEST_P(PyramidTest, FindsTheExtremesOfAnyStretch)
{
    const std::vector<double> numbers = randomNumbers(50'003, GetParam());
    Pyramid pyramid;
    pyramid.extend(numbers.data(), numbers.size());
    std::mt19937 random(2);
    for (int i = 0; i < 3000; ++i) {
        const std::size_t a = random() % (numbers.size() + 1);
        const std::size_t b = random() % (numbers.size() + 1);
        expectExtremes(pyramid, numbers, std::min(a, b), std::max(a, b));
    }
    expectExtremes(pyramid, numbers, 0, numbers.size());
    expectExtremes(pyramid, numbers, 1000, 1399);
}

TEST_P(PyramidTest, FindsThemWhileNumbersComeAndGo)
{
    const std::vector<double> numbers = randomNumbers(30'000, GetParam());
    Pyramid pyramid;
    std::mt19937 random(3);
    std::size_t first = 0;
    std::size_t last = 0;
    while (last < numbers.size()) {
        last = std::min<std::size_t>(numbers.size(), last + random() % 500);
        pyramid.extend(numbers.data(), last);
        if (last > 3000)
            first = last - 3000;
        pyramid.drop(first);
        for (int i = 0; i < 20; ++i) {
            const std::size_t a = first + random() % (last - first + 1);
            const std::size_t b = first + random() % (last - first + 1);
            expectExtremes(pyramid, numbers, std::min(a, b), std::max(a, b));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, PyramidTest, testing::Bool(),
    [](const testing::TestParamInfo<bool>& info) { return info.param ? "WithGaps" : "WithoutGaps"; });

TEST(PyramidVisitTest, SkipsWhatIsNotWanted)
{
    std::vector<double> numbers(100'000, 1.0);
    numbers[77'777] = 5;
    Pyramid pyramid;
    pyramid.extend(numbers.data(), numbers.size());
    std::size_t numVisited = 0;
    bool isFound = false;
    pyramid.visit(
        3, numbers.size() - 3, [](const Extent& extent) { return extent.to > 4; },
        [&](std::size_t first, std::size_t last) {
            numVisited += last - first;
            isFound = isFound || (first <= 77'777 && last > 77'777);
        });
    EXPECT_TRUE(isFound);
    EXPECT_LT(numVisited, 300u);
}

} // namespace

} // namespace tavo
