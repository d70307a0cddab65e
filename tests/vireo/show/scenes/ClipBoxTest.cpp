#include "vireo/show/scenes/ClipBox.h"

#include <gtest/gtest.h>

// The box outside of which nothing of a scene is seen, without a scene.
namespace tavo {
namespace {

SceneBox boxBetween(const Vector3d& low, const Vector3d& high)
{
    SceneBox box;
    box.extend(low);
    box.extend(high);
    return box;
}

const Vector3d FAR(5.5e6, -4e5, 100);
const SceneBox ALL = boxBetween(FAR - Vector3d(1, 2, 4), FAR + Vector3d(1, 2, 4));

TEST(ClipBoxTest, TheBoxOfAPersonHoldsAllFirst)
{
    ClipBox clip;
    EXPECT_FALSE(clip.shown());
    clip.switchOn(true, ALL);
    for (const Vector3d& corner : ALL.corners())
        EXPECT_TRUE(clip.isSeen(corner));
    clip.switchOn(false, ALL);
    EXPECT_FALSE(clip.shown());
    EXPECT_TRUE(clip.isSeen(FAR + Vector3d(100, 0, 0)));
}

TEST(ClipBoxTest, ThereIsNoneAroundNothing)
{
    ClipBox clip;
    clip.switchOn(true, {});
    EXPECT_FALSE(clip.shown());
    clip.switchSlab(1, {});
    EXPECT_FALSE(clip.shown());
    clip.moveFace(0, 3);
    clip.moveSlab(3);
    EXPECT_FALSE(clip.shown());
}

TEST(ClipBoxTest, ThereIsABoxAroundASinglePoint)
{
    ClipBox clip;
    clip.switchOn(true, boxBetween(FAR, FAR));
    ASSERT_TRUE(clip.shown());
    EXPECT_EQ(clip.thicknessOf(0), 2);
}

TEST(ClipBoxTest, ItIsWhereItWasWhenItComesBack)
{
    ClipBox clip;
    clip.switchOn(true, ALL);
    clip.moveFace(1, FAR[0]);
    clip.switchOn(false, ALL);
    clip.switchOn(true, ALL);
    EXPECT_EQ(clip.shown()->getMax()[0], FAR[0]);
    EXPECT_FALSE(clip.isSeen(FAR + Vector3d(1e-6, 0, 0)));
    EXPECT_TRUE(clip.isSeen(FAR - Vector3d(1e-6, 0, 0)));
}

TEST(ClipBoxTest, FacesDoNotPassEachOther)
{
    ClipBox clip;
    clip.switchOn(true, ALL);
    clip.moveFace(0, FAR[0] + 50);
    EXPECT_LT(clip.shown()->getMin()[0], clip.shown()->getMax()[0]);
    EXPECT_NEAR(clip.shown()->getMin()[0], clip.shown()->getMax()[0], 1e-5);
    clip.moveFace(3, FAR[1] - 50);
    EXPECT_LT(clip.shown()->getMin()[1], clip.shown()->getMax()[1]);
}

TEST(ClipBoxTest, ASlabIsThinAndMovesAlongItsAxis)
{
    ClipBox clip;
    clip.switchSlab(2, ALL);
    ASSERT_EQ(clip.slabAxis(), 2U);
    const SceneBox slab = *clip.shown();
    EXPECT_LT(clip.thicknessOf(2), 0.03 * 8);
    EXPECT_GT(clip.thicknessOf(0), 2) << "across it nothing is lost";
    EXPECT_NEAR(slab.centre()[2], FAR[2], 1e-9);
    clip.moveSlab(0.5);
    EXPECT_NEAR(clip.shown()->centre()[2], FAR[2] + 0.5, 1e-9);
    EXPECT_NEAR(clip.thicknessOf(2), slab.getMax()[2] - slab.getMin()[2], 1e-9);
    clip.switchSlab(0, ALL);
    EXPECT_EQ(clip.slabAxis(), 0U);
    EXPECT_GT(clip.thicknessOf(2), 8);
    clip.switchSlab(0, ALL);
    EXPECT_FALSE(clip.slabAxis());
    EXPECT_GT(clip.thicknessOf(0), 2) << "again what it was";
}

TEST(ClipBoxTest, ASlabThatWasHiddenComesBackAsOne)
{
    ClipBox clip;
    clip.switchSlab(0, ALL);
    const Vector3d low = clip.shown()->getMin();
    clip.switchOn(false, ALL);
    clip.switchSlab(0, ALL);
    EXPECT_EQ(clip.shown()->getMin(), low);
    EXPECT_EQ(clip.slabAxis(), 0U);
}

TEST(ClipBoxTest, APersonHasTheLastWord)
{
    ClipBox clip;
    clip.send(ALL);
    EXPECT_EQ(clip.shown()->getMin(), ALL.getMin());
    clip.send({});
    EXPECT_FALSE(clip.shown());
    clip.switchOn(true, ALL);
    EXPECT_EQ(clip.shown()->getMin(), ALL.getMin()) << "that of the program";
    clip.send({});
    EXPECT_TRUE(clip.shown());
}

} // namespace
} // namespace tavo
