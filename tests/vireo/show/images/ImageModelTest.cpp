#include "vireo/show/images/ImageModel.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "tests/vireo/show/images/images.h"

namespace tavo {
namespace {

using Kind = ImageRange::Kind;
using Range = ImageModel::Range;

const float NAN_F = std::numeric_limits<float>::quiet_NaN();

class ImageModelTest : public testing::Test
{
protected:
    void send(const ImagePixels& pixels, const ImageSettings& settings = {})
    {
        ImageUpdate update;
        update.pixels = pixels;
        update.settings = settings;
        m_Model.apply(update);
    }

    Range range() const { return {m_Model.look().from, m_Model.look().to}; }

    ImageModel m_Model;
};

TEST_F(ImageModelTest, WithoutAWordTheRangeIsThatOfTheType)
{
    send(imageOf<std::uint8_t>({3, 4}, 2, 1));
    EXPECT_EQ(range(), Range(0, 255));
    send(imageOf<float>({3, 4, 5}, 1, 1, 3));
    EXPECT_EQ(range(), Range(0, 1));
    send(imageOf<float>({3, 4}, 2, 1));
    EXPECT_EQ(range(), Range(3, 4));
    send(imageOf<std::uint16_t>({300, 400}, 2, 1));
    EXPECT_EQ(range(), Range(300, 400));
    send(imageOf<std::int8_t>({5, 5}, 1, 2));
    EXPECT_EQ(range(), Range(5, 6));
}

TEST_F(ImageModelTest, ARangeGrowsAndShrinksOnlyOnWish)
{
    send(imageOf<float>({3, 9}, 2, 1));
    send(imageOf<float>({2, 4}, 2, 1));
    EXPECT_EQ(range(), Range(2, 9));
    m_Model.refreshRange();
    EXPECT_EQ(range(), Range(2, 4));
}

TEST_F(ImageModelTest, PercentilesStayUntilOthersAreWanted)
{
    ImageSettings settings;
    settings.range = ImageRange{Kind::Percentiles, 0, 50};
    send(imageOf<float>({0, 1, 2}, 3, 1), settings);
    EXPECT_EQ(range(), Range(0, 1));
    send(imageOf<float>({10, 11, 12}, 3, 1), settings);
    EXPECT_EQ(range(), Range(0, 1));
    settings.range = ImageRange{Kind::Percentiles, 0, 100};
    send(imageOf<float>({10, 11, 12}, 3, 1), settings);
    EXPECT_EQ(range(), Range(10, 12));
}

// A program may show what it has cleared before it shows what it has measured.
TEST_F(ImageModelTest, ARangeOfOneNumberOrNoneIsNotKept)
{
    for (const float cleared : {0.0F, 5.0F, NAN_F}) {
        send(imageOf<float>({1, 2, 3}, 1, 1, 3)); // of another kind
        send(imageOf<float>({cleared, cleared}, 2, 1));
        EXPECT_GT(range().second, range().first);
        send(imageOf<float>({1000, 1099}, 2, 1));
        EXPECT_EQ(range(), Range(1000, 1099)) << cleared;
    }
    ImageSettings settings;
    settings.range = ImageRange{Kind::Percentiles, 0, 100};
    for (const float cleared : {0.0F, 5.0F, NAN_F}) {
        m_Model.refreshRange();
        send(imageOf<float>({cleared, cleared}, 2, 1), settings);
        EXPECT_GT(range().second, range().first);
        send(imageOf<float>({1000, 1099}, 2, 1), settings);
        EXPECT_EQ(range(), Range(1000, 1099)) << cleared;
    }
}

TEST_F(ImageModelTest, ADifferenceOfNothingHasNoRangeToKeep)
{
    send(imageOf<float>({3, 4}, 2, 1));
    m_Model.setOther(imageOf<float>({3, 4}, 2, 1));
    m_Model.setOther(imageOf<float>({3, 4.25F}, 2, 1));
    EXPECT_EQ(range(), Range(-0.25, 0.25));
}

TEST_F(ImageModelTest, ARangeGrowsByNumbersThatAreThere)
{
    send(imageOf<float>({1000, 1099}, 2, 1));
    send(imageOf<float>({NAN_F, NAN_F}, 2, 1));
    EXPECT_EQ(range(), Range(1000, 1099));
    send(imageOf<float>({1200, 1200}, 2, 1));
    EXPECT_EQ(range(), Range(1000, 1200));
}

TEST_F(ImageModelTest, EveryNumberHasARangeOfItsOwn)
{
    for (const double number : {1e300, -1e300, 1.7976931348623157e308, -1.7976931348623157e308}) {
        send(imageOf<double>({number}, 1, 1));
        EXPECT_LT(range().first, range().second) << number;
        EXPECT_TRUE(std::isfinite(range().first) && std::isfinite(range().second)) << number;
    }
}

TEST_F(ImageModelTest, WhatAPersonChoosesPrecedesTheProgram)
{
    ImageSettings settings;
    settings.range = ImageRange{Kind::Fixed, 1, 2};
    settings.colourMap = "viridis";
    send(imageOf<float>({0, 1}, 2, 1), settings);
    EXPECT_EQ(range(), Range(1, 2));
    ImageSettings choice;
    choice.range = ImageRange{Kind::Fixed, 5, 6};
    m_Model.choose(choice);
    send(imageOf<float>({0, 1}, 2, 1), settings);
    EXPECT_EQ(range(), Range(5, 6));
    EXPECT_EQ(m_Model.look().colourMap, "viridis");
}

TEST_F(ImageModelTest, ChannelsThatAreNotThereAreNotShown)
{
    ImageSettings settings;
    settings.channel = 2;
    send(imageOf<float>({0, 1, 7, 4}, 1, 1, 4), settings);
    EXPECT_EQ(m_Model.look().channel, 2);
    send(imageOf<float>({0, 1}, 1, 1, 2), settings);
    EXPECT_EQ(m_Model.look().channel, 0);
    settings.channel = -1;
    send(imageOf<float>({0, 1, 7, 4}, 1, 1, 4), settings);
    EXPECT_EQ(m_Model.look().channel, -1);
    send(imageOf<float>({0, 1}, 1, 1, 2), settings);
    EXPECT_EQ(m_Model.look().channel, 0);
}

TEST_F(ImageModelTest, ADifferenceHasSignsAndARangeAboutZero)
{
    send(imageOf<std::uint8_t>({3, 250}, 2, 1));
    m_Model.setOther(imageOf<std::uint8_t>({13, 245}, 2, 1));
    EXPECT_TRUE(m_Model.isDifference());
    EXPECT_EQ(m_Model.shownPixels().at(0, 0, 0), -10);
    EXPECT_EQ(m_Model.shownPixels().at(1, 0, 0), 5);
    EXPECT_EQ(range(), Range(-10, 10));
    EXPECT_EQ(m_Model.look().colourMap, "blue-red");
    m_Model.setOther(imageOf<std::uint8_t>({1}, 1, 1));
    EXPECT_FALSE(m_Model.isDifference());
    EXPECT_EQ(m_Model.shownPixels().at(0, 0, 0), 3);
    EXPECT_EQ(range(), Range(0, 255));
}

TEST_F(ImageModelTest, ADifferenceIsOfTheChannelsThatBelongTogether)
{
    ImageUpdate update;
    update.pixels = imageOf<double>({1, 2, 1e9 + 3}, 1, 1, 3);
    update.isBgr = true;
    m_Model.apply(update);
    m_Model.setOther(imageOf<std::uint8_t>({3, 2, 2}, 1, 1, 3));
    EXPECT_EQ(m_Model.shownPixels().at(0, 0, 0), 1e9);
    EXPECT_EQ(m_Model.shownPixels().at(0, 0, 2), -1);
    EXPECT_TRUE(m_Model.look().isSizeShown);
}

// Doubles count times of today in nanoseconds by hundreds.
TEST_F(ImageModelTest, ADifferenceOfLargeIntegersLosesNone)
{
    constexpr std::int64_t NOW = 1'700'000'000'000'000'001;
    send(imageOf<std::int64_t>({NOW + 100, NOW, -NOW - 3}, 3, 1));
    m_Model.setOther(imageOf<std::int64_t>({NOW, NOW + 7, -NOW}, 3, 1));
    EXPECT_EQ(m_Model.shownPixels().at(0, 0, 0), 100);
    EXPECT_EQ(m_Model.shownPixels().at(1, 0, 0), -7);
    EXPECT_EQ(m_Model.shownPixels().at(2, 0, 0), -3);
    EXPECT_EQ(range(), Range(-100, 100));
    m_Model.setOther(imageOf<std::uint64_t>({std::uint64_t(NOW) + 1, 0, 5}, 3, 1));
    EXPECT_EQ(m_Model.shownPixels().at(0, 0, 0), 99);
    EXPECT_EQ(m_Model.shownPixels().at(1, 0, 0), double(NOW));
    EXPECT_EQ(m_Model.shownPixels().at(2, 0, 0), double(-NOW - 8));
    m_Model.setOther(imageOf<float>({0, 1, 2}, 3, 1));
    EXPECT_EQ(m_Model.shownPixels().at(0, 0, 0), double(NOW + 100));
}

TEST_F(ImageModelTest, ADifferenceOfIntegersIsLargerThanTheyAre)
{
    constexpr std::int64_t LEAST = std::numeric_limits<std::int64_t>::min();
    constexpr std::uint64_t GREATEST = std::numeric_limits<std::uint64_t>::max();
    send(imageOf<std::int64_t>({LEAST, -1}, 2, 1));
    m_Model.setOther(imageOf<std::uint64_t>({GREATEST, GREATEST}, 2, 1));
    EXPECT_EQ(m_Model.shownPixels().at(0, 0, 0), double(LEAST) - double(GREATEST));
    EXPECT_EQ(m_Model.shownPixels().at(1, 0, 0), -double(GREATEST));
}

} // namespace
} // namespace tavo
