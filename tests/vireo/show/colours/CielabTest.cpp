#include "vireo/show/colours/cielab.h"

#include <gtest/gtest.h>

namespace tavo {

namespace {

void expectLab(const RGBA8& colour, double l, double a, double b)
{
    const Lab lab = toLab(colour);
    EXPECT_NEAR(lab.l, l, 0.01);
    EXPECT_NEAR(lab.a, a, 0.01);
    EXPECT_NEAR(lab.b, b, 0.01);
}

TEST(CielabTest, KnowsThePrimaries)
{
    expectLab(RGBA8(255, 255, 255, 255), 100, 0, 0);
    expectLab(RGBA8(0, 0, 0, 255), 0, 0, 0);
    expectLab(RGBA8(255, 0, 0, 255), 53.24, 80.09, 67.20);
    expectLab(RGBA8(0, 255, 0, 255), 87.73, -86.18, 83.18);
    expectLab(RGBA8(0, 0, 255, 255), 32.30, 79.19, -107.86);
}

TEST(CielabTest, GoesThereAndBack)
{
    for (int r = 0; r < 256; r += 15)
        for (int g = 0; g < 256; g += 15)
            for (int b = 0; b < 256; b += 15) {
                const RGBA8 colour(r, g, b, 255);
                ASSERT_EQ(toSRGB(toLab(colour)), colour) << r << " " << g << " " << b;
            }
}

TEST(CielabTest, TakesChromaFromWhatNoScreenShows)
{
    const Lab wanted{60, -100, -100};
    EXPECT_FALSE(isShowable(wanted));
    const Lab shown = toLab(toSRGB(wanted));
    EXPECT_NEAR(shown.l, wanted.l, 0.5);
    EXPECT_NEAR(shown.a, shown.b, 1) << "the hue is the same";
    EXPECT_GT(chromaOf(shown), 30);
}

// Colours that are told apart by one kind of cones.
TEST(CielabTest, SeesLessWithoutSomeCones)
{
    const RGBA8 red(170, 70, 40, 255);
    const RGBA8 green(100, 110, 40, 255);
    EXPECT_GT(distance(toLab(red), toLab(green)), 40);
    EXPECT_LT(distance(toLab(red, Vision::DEUTAN), toLab(green, Vision::DEUTAN)), 20);
    EXPECT_LT(distance(toLab(red, Vision::PROTAN), toLab(green, Vision::PROTAN)), 20);
    EXPECT_GT(distance(toLab(red, Vision::TRITAN), toLab(green, Vision::TRITAN)), 40);
    const RGBA8 blue(0, 120, 140, 255);
    const RGBA8 greenToo(0, 125, 100, 255);
    EXPECT_LT(distance(toLab(blue, Vision::TRITAN), toLab(greenToo, Vision::TRITAN)),
        distance(toLab(blue), toLab(greenToo)) / 3);
    for (const Vision vision : ALL_VISIONS)
        EXPECT_NEAR(chromaOf(toLab(RGBA8(128, 128, 128, 255), vision)), 0, 0.1) << "greys stay grey";
}

} // namespace

} // namespace tavo
