#include "vireo/show/colours/colourOfLabel.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "vireo/show/colours/cielab.h"

namespace tavo {

namespace {

constexpr std::int64_t NUM_COLOURS = 256;

TEST(ColourOfLabelTest, NeighboursAreApartForEveryone)
{
    for (std::int64_t label = -1; label < NUM_COLOURS; ++label)
        for (const Vision vision : ALL_VISIONS)
            EXPECT_GE(distance(toLab(colourOfLabel(label), vision), toLab(colourOfLabel(label + 1), vision)), 10)
                << label << ", vision " << static_cast<int>(vision);
}

TEST(ColourOfLabelTest, AreColoursOnAnyGround)
{
    for (std::int64_t label = 0; label < NUM_COLOURS; ++label) {
        const Lab colour = toLab(colourOfLabel(label));
        EXPECT_GE(colour.l, 35) << label;
        EXPECT_LE(colour.l, 85) << label;
        EXPECT_GE(chromaOf(colour), 25) << label;
        EXPECT_EQ(colourOfLabel(label)[3], 255);
    }
}

double leastDistance(std::int64_t numLabels)
{
    double least = 1000;
    for (std::int64_t i = 0; i < numLabels; ++i)
        for (std::int64_t k = i + 1; k < numLabels; ++k)
            least = std::min(least, distance(toLab(colourOfLabel(i)), toLab(colourOfLabel(k))));
    return least;
}

TEST(ColourOfLabelTest, FirstOnesDifferMost)
{
    EXPECT_GT(leastDistance(8), 55);
    EXPECT_GT(leastDistance(32), 25);
    EXPECT_GT(leastDistance(NUM_COLOURS), 6);
}

TEST(ColourOfLabelTest, DependOnTheLabelAlone)
{
    EXPECT_EQ(colourOfLabel(0), RGBA8(0, 114, 178, 255));
    EXPECT_EQ(colourOfLabel(1007), colourOfLabel(1007 + 256));
    EXPECT_EQ(colourOfLabel(-1), colourOfLabel(255));
    EXPECT_EQ(colourOfLabel(INT64_MIN), colourOfLabel(0));
}

} // namespace

} // namespace tavo
