#include "vireo/show/scenes/pickIds.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace tavo {

namespace {

// As GL draws it: colours are added, and rounded to bytes.
RGBA8 drawn(const RGBA8& place, const std::array<float, 4>& chunk)
{
    RGBA8 pixel;
    for (std::size_t i = 0; i < 4; ++i)
        pixel[i] = static_cast<unsigned char>(std::lround(255 * (static_cast<float>(place[i]) / 255 + chunk[i])));
    return pixel;
}

TEST(PickIdsTest, ComeBackFromPixels)
{
    const std::vector<RGBA8> places = coloursOfPlaces();
    ASSERT_EQ(places.size(), 65536u);
    for (const std::uint32_t chunk : {0u, 1u, 254u, 255u, 256u, 511u, 40000u, PickId::MOST_CHUNKS - 1}) {
        const std::array<float, 4> constant = constantOfChunk(chunk);
        for (std::uint32_t place = 0; place < PickId::PLACES; ++place)
            ASSERT_EQ(idOfPixel(drawn(places[place], constant)), (PickId{chunk, place}));
    }
    EXPECT_FALSE(idOfPixel(RGBA8(0, 0, 0, 0)).has_value()) << "where nothing was drawn";
}

class NearestPickedTest : public testing::Test
{
protected:
    void put(int x, int y, const PickId& id)
    {
        m_Pixels[static_cast<std::size_t>((y + 4) * PICK_SIDE + x + 4)] =
            drawn(m_Places[id.place], constantOfChunk(id.chunk));
    }

    std::vector<RGBA8> m_Places = coloursOfPlaces();
    std::array<RGBA8, PICK_SIDE * PICK_SIDE> m_Pixels{};
};

TEST_F(NearestPickedTest, IsNothingWhereNothingIs)
{
    EXPECT_FALSE(nearestPicked(m_Pixels).has_value());
}

TEST_F(NearestPickedTest, ReachesToTheCorners)
{
    for (const int x : {-4, 4})
        for (const int y : {-4, 4}) {
            m_Pixels = {};
            put(x, y, {7, 8});
            const auto picked = nearestPicked(m_Pixels);
            ASSERT_TRUE(picked.has_value());
            EXPECT_EQ(picked->id, (PickId{7, 8}));
            EXPECT_EQ(picked->x, x);
            EXPECT_EQ(picked->y, y);
        }
}

TEST_F(NearestPickedTest, PrefersWhatIsNearest)
{
    put(-4, -4, {0, 1});
    put(3, 0, {0, 2});
    put(2, 2, {1, 3});
    put(0, 4, {0, 4});
    EXPECT_EQ(nearestPicked(m_Pixels)->id, (PickId{1, 3})) << "the way across is 2.83 pixels";
    put(0, 0, {0, 0});
    EXPECT_EQ(nearestPicked(m_Pixels)->id, (PickId{0, 0})) << "the first place of the first chunk is something, too";
}

} // namespace

} // namespace tavo
