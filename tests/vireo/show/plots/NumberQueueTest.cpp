#include "vireo/show/plots/NumberQueue.h"

#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <vector>

namespace tavo {

namespace {

TEST(NumberQueueTest, HasWhatCameAndHasNotGone)
{
    std::mt19937 random(7);
    std::uniform_int_distribution<std::size_t> count(0, 9000);
    NumberQueue queue;
    std::deque<double> expected;
    for (int i = 0; i < 200; ++i) {
        std::vector<float> added(count(random));
        std::iota(added.begin(), added.end(), static_cast<float>(i));
        queue.append(added.data(), added.size());
        expected.insert(expected.end(), added.begin(), added.end());
        const std::size_t numGoing = i % 20 == 19 ? expected.size() : std::min(count(random), expected.size());
        queue.drop(numGoing);
        expected.erase(expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(numGoing));
        ASSERT_EQ(queue.size(), expected.size());
        ASSERT_EQ(queue.empty(), expected.empty());
        const std::size_t first = expected.size() / 3;
        std::vector<double> read(expected.size() - first);
        queue.read(first, read.size(), read.data());
        ASSERT_TRUE(std::equal(read.begin(), read.end(), expected.begin() + static_cast<std::ptrdiff_t>(first)));
        for (std::size_t j = 0; j < expected.size(); j += 997)
            ASSERT_EQ(queue[j], expected[j]);
    }
}

TEST(NumberQueueTest, TakesOneAtATime)
{
    NumberQueue queue;
    for (int i = 0; i < 100'000; ++i) {
        queue.push_back(i);
        if (i >= 10)
            queue.drop(1);
        ASSERT_EQ(queue[0], std::max(i - 9, 0));
        ASSERT_EQ(queue[queue.size() - 1], i);
    }
    EXPECT_EQ(queue.size(), 10u);
}

} // namespace

} // namespace tavo
