#include "vireo/show/scenes/PointBudget.h"

#include <gtest/gtest.h>

namespace tavo {
namespace {

constexpr std::size_t MILLION = 1000000;

PointBudget budgetOf(double nanosecondsPerPoint, double secondsOfRest)
{
    PointBudget budget;
    budget.measure(MILLION, nanosecondsPerPoint * 1e-9 * MILLION, secondsOfRest);
    return budget;
}

TEST(PointBudgetTest, AsManyPhasesAsAFrameHasTimeFor)
{
    // 20 ms for points, of 20 ns each.
    const PointBudget budget = budgetOf(20, PointBudget::FRAME - 0.020);
    EXPECT_EQ(budget.phasesOf(900000), PointPhases::ALL);
    EXPECT_EQ(budget.phasesOf(2 * MILLION), PointPhases::ALL / 2);
    EXPECT_EQ(budget.phasesOf(10 * MILLION), 409u);
    EXPECT_EQ(budget.phasesOf(100000 * MILLION), 1u) << "something is always drawn";
    EXPECT_EQ(budget.phasesOf(0), PointPhases::ALL);
}

TEST(PointBudgetTest, BeforeAnyFrameAGuessHoldsTheTime)
{
    EXPECT_EQ(PointBudget().phasesOf(100000), PointPhases::ALL);
    EXPECT_LT(PointBudget().phasesOf(10 * MILLION), 409u);
}

TEST(PointBudgetTest, LaterFramesCountAsMuchAsAllBefore)
{
    PointBudget budget = budgetOf(20, 0);
    budget.measure(MILLION, 0.060, 0);
    EXPECT_EQ(budget.numPointsIn(0.040), MILLION);
    budget.measure(100, 1, 0);
    EXPECT_EQ(budget.numPointsIn(0.040), MILLION) << "few points say nothing";
}

// Otherwise one slow frame would go on for ever.
TEST(PointBudgetTest, AlwaysSoManyThatTheirTimeIsMeasured)
{
    const PointBudget budget = budgetOf(1e5, 0);
    const std::size_t numPhases = budget.phasesOf(10 * MILLION);
    EXPECT_GE(10 * MILLION * numPhases / PointPhases::ALL, 20000u);
    EXPECT_LT(10 * MILLION * numPhases / PointPhases::ALL, 50000u);
    EXPECT_EQ(budget.phasesOf(30000), PointPhases::ALL);
}

TEST(PointBudgetTest, WhatElseTakesLongLeavesPointsALittleTime)
{
    EXPECT_EQ(budgetOf(20, 1).phasesOf(MILLION), 1433u);
}

TEST(PointMotionTest, TheShareStaysDuringAGesture)
{
    PointBudget budget = budgetOf(20, PointBudget::FRAME - 0.020);
    PointMotion motion;
    EXPECT_EQ(motion.numPhases(), PointPhases::ALL);
    motion.move(2 * MILLION, budget);
    EXPECT_EQ(motion.numPhases(), 2048u);
    budget = budgetOf(200, 0);
    motion.move(2 * MILLION, budget);
    motion.move(MILLION, budget);
    EXPECT_EQ(motion.numPhases(), 2048u);
    motion.rest(false);
    EXPECT_EQ(motion.numPhases(), PointPhases::ALL) << "all, as soon as it rests";
    motion.move(2 * MILLION, budget);
    EXPECT_EQ(motion.numPhases(), 2048u) << "the button is still held";
    motion.rest(true);
    motion.move(2 * MILLION, budget);
    EXPECT_LT(motion.numPhases(), 640u);
}

TEST(PointMotionTest, TheShareGetsSmallerWhenFarMorePointsComeIntoView)
{
    const PointBudget budget = budgetOf(20, PointBudget::FRAME - 0.020);
    PointMotion motion;
    motion.move(2 * MILLION, budget);
    motion.move(4 * MILLION, budget);
    EXPECT_EQ(motion.numPhases(), 2048u);
    motion.move(8 * MILLION, budget);
    EXPECT_EQ(motion.numPhases(), 512u);
    motion.move(MILLION, budget);
    EXPECT_EQ(motion.numPhases(), 512u) << "and not larger again";
}

} // namespace
} // namespace tavo
