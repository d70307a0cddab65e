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
    EXPECT_EQ(budget.phasesOf(10 * MILLION), 6u);
    EXPECT_EQ(budget.phasesOf(1000 * MILLION), 1u) << "something is always drawn";
    EXPECT_EQ(budget.phasesOf(0), PointPhases::ALL);
}

TEST(PointBudgetTest, BeforeAnyFrameAGuessHoldsTheTime)
{
    EXPECT_EQ(PointBudget().phasesOf(100000), PointPhases::ALL);
    EXPECT_LT(PointBudget().phasesOf(10 * MILLION), 6u);
}

TEST(PointBudgetTest, LaterFramesCountAsMuchAsAllBefore)
{
    PointBudget budget = budgetOf(20, 0);
    budget.measure(MILLION, 0.060, 0);
    EXPECT_EQ(budget.numPointsIn(0.040), MILLION);
    budget.measure(100, 1, 0);
    EXPECT_EQ(budget.numPointsIn(0.040), MILLION) << "few points say nothing";
}

TEST(PointBudgetTest, WhatElseTakesLongLeavesPointsALittleTime)
{
    EXPECT_EQ(budgetOf(20, 1).phasesOf(MILLION), 22u);
}

TEST(PointMotionTest, TheShareStaysDuringAGesture)
{
    PointBudget budget = budgetOf(20, PointBudget::FRAME - 0.020);
    PointMotion motion;
    EXPECT_EQ(motion.numPhases(), PointPhases::ALL);
    motion.move(2 * MILLION, budget);
    EXPECT_EQ(motion.numPhases(), 32u);
    budget = budgetOf(200, 0);
    motion.move(2 * MILLION, budget);
    motion.move(MILLION, budget);
    EXPECT_EQ(motion.numPhases(), 32u);
    motion.rest(false);
    EXPECT_EQ(motion.numPhases(), PointPhases::ALL) << "all, as soon as it rests";
    motion.move(2 * MILLION, budget);
    EXPECT_EQ(motion.numPhases(), 32u) << "the button is still held";
    motion.rest(true);
    motion.move(2 * MILLION, budget);
    EXPECT_LT(motion.numPhases(), 10u);
}

TEST(PointMotionTest, TheShareGetsSmallerWhenFarMorePointsComeIntoView)
{
    const PointBudget budget = budgetOf(20, PointBudget::FRAME - 0.020);
    PointMotion motion;
    motion.move(2 * MILLION, budget);
    motion.move(4 * MILLION, budget);
    EXPECT_EQ(motion.numPhases(), 32u);
    motion.move(8 * MILLION, budget);
    EXPECT_EQ(motion.numPhases(), 8u);
    motion.move(MILLION, budget);
    EXPECT_EQ(motion.numPhases(), 8u) << "and not larger again";
}

} // namespace
} // namespace tavo
