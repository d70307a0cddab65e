#include "vireo/volume/SliceStack.h"

#include <gmock/gmock.h>

namespace tavo {
namespace {

using testing::ElementsAre;

const RegularVolume& volume()
{
    static const RegularVolume volume({4, 5, 6}, Box3f({0, 10, 20}, {8, 15, 26}));
    return volume;
}

TEST(SliceStackTest, HasTheTwoOtherAxesAcrossTheLowerOneFirst)
{
    EXPECT_THAT(SliceStack(volume(), 0).getAxesAcross(), ElementsAre(1, 2));
    EXPECT_THAT(SliceStack(volume(), 1).getAxesAcross(), ElementsAre(0, 2));
    EXPECT_THAT(SliceStack(volume(), 2).getAxesAcross(), ElementsAre(0, 1));
}

TEST(SliceStackTest, HasASliceForEachSampleAlongItsAxis)
{
    const SliceStack stack(volume(), 1);
    EXPECT_EQ(stack.getNumSlices(), 5);
    EXPECT_EQ(stack.getWidth(), 4);
    EXPECT_EQ(stack.getHeight(), 6);
}

TEST(SliceStackTest, BoundsASliceAlongItsAxisAlone)
{
    EXPECT_EQ(SliceStack(volume(), 0).getBounds(3), Vector3i(3, -1, -1));
    EXPECT_EQ(SliceStack(volume(), 2).getBounds(0), Vector3i(-1, -1, 0));
}

TEST(SliceStackTest, EndsAStepBeforeTheBox)
{
    const SliceStack stack(volume(), 0);
    EXPECT_EQ(stack.getPosition(0), 0);
    EXPECT_EQ(stack.getPosition(3), 6);
    EXPECT_EQ(SliceStack(volume(), 2).getPosition(5), 25);
}

TEST(SliceStackTest, FillsTheBoxWithSlicesInTheMiddleOfTheirLayers)
{
    const SliceStack stack(volume(), 0, SliceStack::Place::InMiddle);
    EXPECT_EQ(stack.getDistance(), 2);
    EXPECT_EQ(stack.getPosition(0), 1);
    EXPECT_EQ(stack.getPosition(3), 7);
    EXPECT_EQ(SliceStack(volume(), 2, SliceStack::Place::InMiddle).getPosition(5), 25.5F);
}

} // namespace
} // namespace tavo
