#include "vireo/show/plots/LinesAcross.h"

#include <cmath>
#include <gtest/gtest.h>

#include "vireo/show/plots/Extent.h"

namespace tavo {

namespace {

const QRectF CANVAS(10, 20, 400, 300);
constexpr double HEIGHT = 15;

void expectApart(const std::vector<LinesAcross::Place>& lines)
{
    const std::vector<QRectF> labels = LinesAcross::placesOfLabels(lines, HEIGHT, CANVAS);
    ASSERT_EQ(labels.size(), lines.size());
    for (std::size_t i = 0; i < labels.size(); ++i) {
        EXPECT_TRUE(CANVAS.contains(labels[i])) << i;
        EXPECT_EQ(labels[i].size(), QSizeF(lines[i].width, HEIGHT)) << i;
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_FALSE(labels[i].intersects(labels[j])) << i << ", " << j;
    }
}

TEST(LinesAcrossTest, OneLabelIsRightOfItsLineOrAboveIt)
{
    const auto labels = LinesAcross::placesOfLabels({{true, 100, 50}, {false, 200, 60}}, HEIGHT, CANVAS);
    EXPECT_EQ(labels[0], QRectF(104, 24, 50, HEIGHT));
    EXPECT_EQ(labels[1], QRectF(346, 181, 60, HEIGHT));
}

TEST(LinesAcrossTest, LabelsOfNearLinesAreApart)
{
    expectApart({{true, 100, 50}, {true, 105, 80}});
    expectApart({{false, 100, 50}, {false, 103, 80}});
    expectApart({{true, 100, 50}, {true, 101, 50}, {true, 102, 50}, {true, 103, 50}, {false, 30, 50}, {false, 31, 50},
        {false, 32, 50}});
    expectApart({{true, 360, 50}, {false, 45, 60}});
}

TEST(LinesAcrossTest, LabelsStayWithinThePlot)
{
    expectApart({{true, 400, 50}, {true, 11, 50}, {false, 21, 50}, {false, 319, 50}});
}

TEST(LinesAcrossTest, NoLineRunsThroughTheLabelOfANearOne)
{
    const std::vector<QRectF> vertical =
        LinesAcross::placesOfLabels({{true, 100, 50}, {true, 105, 80}}, HEIGHT, CANVAS);
    EXPECT_LT(vertical[0].right(), 100);
    EXPECT_GT(vertical[1].left(), 105);
    const std::vector<QRectF> horizontal =
        LinesAcross::placesOfLabels({{false, 100, 50}, {false, 95, 80}}, HEIGHT, CANVAS);
    EXPECT_GT(horizontal[0].top(), 100);
    EXPECT_LT(horizontal[1].bottom(), 95);
}

TEST(LinesAcrossTest, YGoesAsFarAsTheHorizontalLines)
{
    PlotUpdate update;
    update.lines = {{false, 10, "a"}, {false, -3, "b"}, {true, 99, "c"}, {false, INFINITY, "d"}};
    LinesAcross lines;
    lines.apply(update);
    EXPECT_EQ(lines.yExtent(false).from, -3);
    EXPECT_EQ(lines.yExtent(false).to, 10);
    EXPECT_EQ(lines.yExtent(true).from, 10);
}

} // namespace

} // namespace tavo
