#include "vireo/show/plots/PlotSight.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace tavo {

namespace {

#define EXPECT_RANGE(range, first, last)                                                                               \
    do {                                                                                                               \
        EXPECT_DOUBLE_EQ((range).from, first);                                                                         \
        EXPECT_DOUBLE_EQ((range).to, last);                                                                            \
    } while (false)

class PlotSightTest : public testing::Test
{
protected:
    PlotSightTest()
    {
        m_Sight.setFitted(PlotSight::X, {0, 10});
        m_Sight.setFitted(PlotSight::Y, {-1, 1});
    }

    PlotSight m_Sight;
};

TEST_F(PlotSightTest, WhatIsWantedGoesBeforeWhatFits)
{
    EXPECT_RANGE(m_Sight.range(PlotSight::X), 0, 10);
    m_Sight.setWanted(PlotSight::X, PlotSight::Range{2, 3});
    EXPECT_RANGE(m_Sight.range(PlotSight::X), 2, 3);
}

TEST_F(PlotSightTest, NoDataMoveWhatAPersonHasChosen)
{
    m_Sight.zoom(PlotSight::X, 0.5, 10);
    EXPECT_RANGE(m_Sight.range(PlotSight::X), 5, 10);
    m_Sight.setFitted(PlotSight::X, {0, 100});
    m_Sight.setWanted(PlotSight::X, PlotSight::Range{2, 3});
    EXPECT_RANGE(m_Sight.range(PlotSight::X), 5, 10);
    EXPECT_RANGE(m_Sight.range(PlotSight::Y), -1, 1);
    m_Sight.fit();
    EXPECT_RANGE(m_Sight.range(PlotSight::X), 2, 3);
}

TEST_F(PlotSightTest, ZoomingXWhileFollowingChangesTheLengthAlone)
{
    m_Sight.setLive(true);
    m_Sight.zoom(PlotSight::X, 0.5, 3);
    EXPECT_TRUE(m_Sight.isFollowing());
    EXPECT_DOUBLE_EQ(m_Sight.followedLength().value(), 5);
}

TEST_F(PlotSightTest, ZoomingYNeverStopsFollowing)
{
    m_Sight.setLive(true);
    m_Sight.zoom(PlotSight::Y, 0.5, 0);
    m_Sight.move(PlotSight::Y, 0.5);
    EXPECT_TRUE(m_Sight.isFollowing());
    EXPECT_FALSE(m_Sight.isBehind());
}

TEST_F(PlotSightTest, MovingXStopsFollowingUntilItIsThawed)
{
    m_Sight.setLive(true);
    m_Sight.move(PlotSight::X, -0.1);
    EXPECT_RANGE(m_Sight.range(PlotSight::X), -1, 9);
    EXPECT_TRUE(m_Sight.isBehind());
    m_Sight.setFrozen(false);
    EXPECT_TRUE(m_Sight.isFollowing());
}

TEST_F(PlotSightTest, FreezingKeepsWhatIsSeen)
{
    m_Sight.setLive(true);
    m_Sight.setFrozen(true);
    m_Sight.setFitted(PlotSight::X, {0, 20});
    EXPECT_RANGE(m_Sight.range(PlotSight::X), 0, 10);
}

TEST_F(PlotSightTest, ZoomsBackAndForward)
{
    m_Sight.remember();
    m_Sight.choose(PlotSight::X, {1, 2});
    m_Sight.remember();
    m_Sight.choose(PlotSight::X, {1.2, 1.4});
    m_Sight.back();
    EXPECT_RANGE(m_Sight.range(PlotSight::X), 1, 2);
    m_Sight.back();
    m_Sight.back();
    EXPECT_RANGE(m_Sight.range(PlotSight::X), 0, 10);
    m_Sight.forward();
    m_Sight.forward();
    m_Sight.forward();
    EXPECT_RANGE(m_Sight.range(PlotSight::X), 1.2, 1.4);
}

TEST_F(PlotSightTest, ZoomsALogarithmicAxisByItsDecades)
{
    m_Sight.setLog(PlotSight::Y, true);
    m_Sight.setFitted(PlotSight::Y, {1, 10000});
    m_Sight.zoom(PlotSight::Y, 0.5, 100);
    EXPECT_RANGE(m_Sight.range(PlotSight::Y), 10, 1000);
    m_Sight.move(PlotSight::Y, 0.5);
    EXPECT_RANGE(m_Sight.range(PlotSight::Y), 100, 10000);
}

TEST_F(PlotSightTest, ALogarithmicAxisFromZeroBeginsWithWhatFits)
{
    m_Sight.setLog(PlotSight::Y, true);
    m_Sight.setFitted(PlotSight::Y, {0.5, 10000});
    m_Sight.setWanted(PlotSight::Y, PlotSight::Range{0, 100});
    EXPECT_RANGE(m_Sight.range(PlotSight::Y), 0.5, 100);
}

TEST_F(PlotSightTest, ShowsSomethingWhateverIsWanted)
{
    const double infinite = std::numeric_limits<double>::infinity();
    for (const bool isLog : {false, true})
        for (const PlotSight::Range& wanted : {PlotSight::Range{NAN, 1}, {1, 1}, {-infinite, infinite}, {-5, -1},
                 {0, 5e-324}, {-1e-310, 1e-310}, {-1e308, 1e308}}) {
            m_Sight.setLog(PlotSight::X, isLog);
            m_Sight.setWanted(PlotSight::X, wanted);
            const PlotSight::Range range = m_Sight.range(PlotSight::X);
            EXPECT_LT(range.from, range.to);
            EXPECT_TRUE(std::isfinite(range.to - range.from));
            EXPECT_TRUE(!isLog || range.from > 0);
        }
}

TEST_F(PlotSightTest, StaysWithinWhatDoublesTellApart)
{
    m_Sight.setFitted(PlotSight::X, {1e9, 1e9 + 1});
    for (int i = 0; i < 1000; ++i)
        m_Sight.zoom(PlotSight::X, 0.5, 1e9);
    EXPECT_GE(m_Sight.range(PlotSight::X).to - 1e9, 1e-5);
    for (int i = 0; i < 5000; ++i)
        m_Sight.zoom(PlotSight::X, 2, 0);
    EXPECT_LT(m_Sight.range(PlotSight::X).to - m_Sight.range(PlotSight::X).from, 1.7e308);
}

} // namespace

} // namespace tavo
