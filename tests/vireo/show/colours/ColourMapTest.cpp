#include "vireo/show/colours/ColourMap.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "vireo/show/colours/cielab.h"

namespace tavo {

namespace {

using Kind = ColourMap::Kind;

double lightnessOf(const RGBA8& colour)
{
    return toLab(colour).l;
}

class ColourMapTest : public testing::TestWithParam<std::string_view>
{
protected:
    ColourMap m_Map = findColourMap(GetParam()).value();
};

// By how much lightness may turn back, as colours are rounded to bytes.
constexpr double ROUNDING = 0.35;

TEST_P(ColourMapTest, LightnessSaysWhichIsMore)
{
    const ColourMap::Entries& entries = m_Map.entries();
    if (m_Map.kind() == Kind::CYCLIC)
        return;
    const std::size_t summit = m_Map.kind() == Kind::DIVERGING ? ColourMap::SIZE / 2 : ColourMap::SIZE - 1;
    double lightest = 0;
    for (std::size_t i = 0; i <= summit; ++i) {
        EXPECT_GT(lightnessOf(entries[i]), lightest - ROUNDING) << i;
        lightest = std::max(lightest, lightnessOf(entries[i]));
    }
    for (std::size_t i = summit; i < ColourMap::SIZE; ++i) {
        EXPECT_LT(lightnessOf(entries[i]), lightest + ROUNDING) << i;
        lightest = std::min(lightest, lightnessOf(entries[i]));
    }
    EXPECT_GT(lightnessOf(entries[summit]) - lightnessOf(entries[0]), 55);
}

TEST_P(ColourMapTest, NeighboursAreAlike)
{
    const ColourMap::Entries& entries = m_Map.entries();
    const bool isCyclic = m_Map.kind() == Kind::CYCLIC;
    for (std::size_t i = isCyclic ? 0 : 1; i < ColourMap::SIZE; ++i) {
        const RGBA8& before = entries[(i + ColourMap::SIZE - 1) % ColourMap::SIZE];
        EXPECT_LT(distance(toLab(entries[i]), toLab(before)), 3) << i;
    }
}

TEST_P(ColourMapTest, EveryoneTellsItsPartsApart)
{
    for (const Vision vision : ALL_VISIONS)
        for (std::size_t i = 0; i < 4; ++i)
            for (std::size_t k = i + 1; k < 4; ++k)
                EXPECT_GT(distance(toLab(m_Map.entries()[64 * i], vision), toLab(m_Map.entries()[64 * k], vision)), 10)
                    << i << " and " << k << " of " << GetParam();
}

TEST_P(ColourMapTest, IsOpaque)
{
    for (const RGBA8& colour : m_Map.entries())
        EXPECT_EQ(colour[3], 255);
}

INSTANTIATE_TEST_SUITE_P(All, ColourMapTest, testing::ValuesIn(namesOfColourMaps()), [](const auto& info) {
    std::string name(info.param);
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST(ColourMapSamplesTest, AreTheNearestEntries)
{
    const ColourMap viridis = findColourMap("viridis").value();
    EXPECT_EQ(viridis.sample(0), viridis.entries()[0]);
    EXPECT_EQ(viridis.sample(1), viridis.entries()[255]);
    EXPECT_EQ(viridis.sample(100.4 / 255), viridis.entries()[100]);
    EXPECT_EQ(viridis.sample(100.6 / 255), viridis.entries()[101]);
}

TEST(ColourMapSamplesTest, EndsStandForWhatLiesOutside)
{
    const ColourMap viridis = findColourMap("viridis").value();
    EXPECT_EQ(viridis.sample(-0.5), viridis.entries()[0]);
    EXPECT_EQ(viridis.sample(1e300), viridis.entries()[255]);
    EXPECT_EQ(viridis.sample(-std::numeric_limits<double>::infinity()), viridis.entries()[0]);
    EXPECT_EQ(viridis.sample(std::numeric_limits<double>::quiet_NaN()), RGBA8(128, 128, 128, 255));
}

TEST(ColourMapNamesTest, AreFoundOrNot)
{
    EXPECT_EQ(namesOfColourMaps().front(), "viridis");
    EXPECT_FALSE(findColourMap("Viridis").has_value());
    EXPECT_FALSE(findColourMap("").has_value());
    EXPECT_EQ(findColourMap("grey")->sample(0.5), RGBA8(119, 119, 119, 255)) << "half as light to the eye";
}

// As they were published.
TEST(ColourMapNamesTest, ArePublishedMaps)
{
    EXPECT_EQ(findColourMap("viridis")->sample(0), RGBA8(0x44, 0x01, 0x54, 255));
    EXPECT_EQ(findColourMap("viridis")->sample(1), RGBA8(0xFD, 0xE7, 0x25, 255));
    EXPECT_EQ(findColourMap("plasma")->sample(0), RGBA8(0x0D, 0x08, 0x87, 255));
    EXPECT_EQ(findColourMap("inferno")->sample(1), RGBA8(0xFC, 0xFF, 0xA4, 255));
    EXPECT_EQ(findColourMap("magma")->sample(1), RGBA8(0xFC, 0xFD, 0xBF, 255));
}

} // namespace

} // namespace tavo
