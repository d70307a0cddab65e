#include "vireo/show/scenes/valueCounts.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>
#include <vector>

namespace tavo {
namespace {

const double UNBOUNDED = std::numeric_limits<double>::infinity();

NumberArray arrayOf(const std::vector<double>& values)
{
    const auto owner = std::make_shared<const std::vector<double>>(values);
    return {owner, owner->data(), owner->size(), NumberType::Float64};
}

std::size_t sum(const ValueCounts& counts)
{
    return std::accumulate(counts.counts.begin(), counts.counts.end(), std::size_t(0));
}

TEST(ValueCountsTest, CountsWhatIsFinite)
{
    const ValueCounts counts = countValues(arrayOf({0, 1, 1, 2, NAN, UNBOUNDED, -UNBOUNDED}));
    EXPECT_EQ(counts.least, 0);
    EXPECT_EQ(counts.greatest, 2);
    EXPECT_EQ(counts.counts.front(), 1);
    EXPECT_EQ(counts.counts[ValueCounts::SIZE / 2], 2);
    EXPECT_EQ(counts.counts.back(), 1);
    EXPECT_EQ(sum(counts), 4);
    EXPECT_EQ(counts.largest(), 2);
}

TEST(ValueCountsTest, TakesWhatIsHard)
{
    EXPECT_EQ(sum(countValues(arrayOf({}))), 0);
    EXPECT_EQ(sum(countValues(arrayOf({NAN, NAN}))), 0);
    EXPECT_EQ(countValues(arrayOf({7, 7, 7})).counts[ValueCounts::SIZE / 2], 3) << "all alike are in the middle";
    const double largest = std::numeric_limits<double>::max();
    const ValueCounts wide = countValues(arrayOf({-largest, 0, largest}));
    EXPECT_EQ(wide.counts.front(), 1);
    EXPECT_EQ(wide.counts[ValueCounts::SIZE / 2], 1);
    EXPECT_EQ(wide.counts.back(), 1);
}

TEST(ValueCountsTest, FindsQuantiles)
{
    std::vector<double> values(101);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = double(i * 37 % 101);
    values.push_back(NAN);
    EXPECT_EQ(quantiles(arrayOf(values), 0.02, 0.98), std::pair(2.0, 98.0));
    EXPECT_EQ(quantiles(arrayOf({}), 0.02, 0.98), std::pair(0.0, 0.0));
    EXPECT_EQ(quantiles(arrayOf({4}), 0.02, 0.98), std::pair(4.0, 4.0));
}

TEST(ValueCountsTest, LooksAtAnEvenChoiceOfMany)
{
    std::vector<double> values(3'000'000);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = double(i);
    values[1] = -5e5;
    const ValueCounts counts = countValues(arrayOf(values));
    EXPECT_EQ(counts.least, -5e5) << "the ends are exact";
    EXPECT_EQ(sum(counts), 1'000'000);
    EXPECT_NEAR(quantiles(arrayOf(values), 0.02, 0.98).first, 6e4, 100);
}

} // namespace
} // namespace tavo
