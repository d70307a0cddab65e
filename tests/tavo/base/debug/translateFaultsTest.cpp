#include "tavo/base/debug/translateFaults.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace tavo {
namespace {

TEST(TranslateFaultsTest, RunsTheCodeOnce)
{
    int numRuns = 0;
    translateFaults([&] { ++numRuns; });
    EXPECT_EQ(numRuns, 1);
}

TEST(TranslateFaultsTest, ThrowsOnWhatTheCodeThrowsThroughItsDestructors)
{
    bool isDestroyed = false;
    struct Guard
    {
        bool& isDestroyed;
        ~Guard() { isDestroyed = true; }
    };
    EXPECT_THROW(translateFaults([&] {
        const Guard guard{isDestroyed};
        throw std::runtime_error("on purpose");
    }),
        std::runtime_error);
    EXPECT_TRUE(isDestroyed);
    EXPECT_THROW(translateFaults([] { throw 5; }), int);
}

} // namespace
} // namespace tavo
