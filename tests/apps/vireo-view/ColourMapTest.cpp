#include "apps/vireo-view/ColourMap.h"

#include <gmock/gmock.h>
#include <limits>
#include <set>

namespace vireo_view {
namespace {

using tavo::Vector3f;

TEST(ColourMapTest, GoesEvenlyFromStopToStop)
{
    const ColourMap map("test", {{0.25f, {0, 0, 1}}, {0.5f, {1, 0, 0}}, {1.0f, {0, 1, 0}}});
    EXPECT_EQ(map.getName(), "test");
    EXPECT_EQ(map.look(0.25f), Vector3f(0, 0, 1));
    EXPECT_EQ(map.look(0.375f), Vector3f(0.5, 0, 0.5));
    EXPECT_EQ(map.look(0.5f), Vector3f(1, 0, 0));
    EXPECT_EQ(map.look(0.75f), Vector3f(0.5, 0.5, 0));
}

TEST(ColourMapTest, StaysAsItIsBeyondTheStops)
{
    const ColourMap map("test", {{0.25f, {0, 0, 1}}, {0.5f, {1, 0, 0}}});
    constexpr float INF = std::numeric_limits<float>::infinity();
    for (const float below : {-INF, -1.0f, 0.0f})
        EXPECT_EQ(map.look(below), Vector3f(0, 0, 1));
    for (const float above : {0.5f, 1.0f, INF})
        EXPECT_EQ(map.look(above), Vector3f(1, 0, 0));
    EXPECT_EQ(ColourMap("one", {{0.5f, {1, 1, 0}}}).look(0.2f), Vector3f(1, 1, 0));
}

TEST(ColourMapTest, TheMapsHaveNamesOfTheirOwnAndStopsInOrder)
{
    std::set<std::string_view> names;
    for (const ColourMap& map : colourMaps()) {
        EXPECT_TRUE(names.insert(map.getName()).second);
        EXPECT_NE(map.look(0), map.look(1));
    }
    EXPECT_GE(names.size(), 4u);
    EXPECT_EQ(colourMaps()[0].getName(), "Grey");
    EXPECT_EQ(colourMaps()[0].look(0.5f), Vector3f(0.5, 0.5, 0.5));
    EXPECT_EQ(colourMaps()[1].getName(), "Hot");
    EXPECT_EQ(colourMaps()[1].look(0.375f), Vector3f(1, 0, 0));
}

} // namespace
} // namespace vireo_view
