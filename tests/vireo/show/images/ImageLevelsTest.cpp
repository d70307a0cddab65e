#include "vireo/show/images/ImageLevels.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "tests/vireo/show/images/images.h"

namespace tavo {
namespace {

// A pixel of a level, of which only that one is asked for.
double levelAt(ImageLevels& levels, int level, int x, int y, int channel = 0)
{
    double found = -1;
    levels.visit(level, QRect(x, y, 1, 1), [&](const ImagePixels& piece, const QPoint& place) {
        found = piece.at(x - place.x(), y - place.y(), channel);
    });
    return found;
}

// What is at x, y is 1000 y + x.
ImagePixels ramp(int width, int height)
{
    std::vector<double> numbers;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            numbers.push_back(1000.0 * y + x);
    return imageOf(std::move(numbers), width, height);
}

TEST(ImageLevelsTest, EveryPixelIsTheMeanOfThoseItStandsFor)
{
    ImageLevels levels;
    levels.setPixels(ramp(3000, 700));
    for (int level = 1; level <= 5; ++level) {
        const int factor = 1 << level;
        for (const QPoint place : {QPoint(0, 0), QPoint(3, 5), QPoint(60, 20), QPoint(90, 20)})
            EXPECT_DOUBLE_EQ(levelAt(levels, level, place.x(), place.y()),
                1000 * (factor * place.y() + (factor - 1) / 2.0) + factor * place.x() + (factor - 1) / 2.0)
                << level << ' ' << place.x();
    }
}

TEST(ImageLevelsTest, TheLastOnesStandForFewer)
{
    ImageLevels levels;
    levels.setPixels(imageOf<std::uint8_t>({10, 20, 31, 40, 50, 71}, 3, 2));
    EXPECT_EQ(levels.sizeOf(1), QSize(2, 1));
    EXPECT_EQ(levels.sizeOf(2), QSize(1, 1));
    EXPECT_EQ(levelAt(levels, 1, 0, 0), 30);
    EXPECT_EQ(levelAt(levels, 1, 1, 0), 51);
    EXPECT_EQ(levelAt(levels, 2, 0, 0), 37);
}

TEST(ImageLevelsTest, NegativeIntegersAreRoundedAsOthersAre)
{
    ImageLevels levels;
    levels.setPixels(imageOf<std::int8_t>({-1, -2, -1, -2}, 2, 2));
    EXPECT_EQ(levelAt(levels, 1, 0, 0), -1);
    levels.setPixels(imageOf<std::int16_t>({32767, 32767, 32767, 32767}, 2, 2));
    EXPECT_EQ(levelAt(levels, 1, 0, 0), 32767);
}

// The greatest number often stands for what was not measured.
TEST(ImageLevelsTest, MeansOfTheGreatestNumbersAreFinite)
{
    constexpr int SIZE = 7; // whose last means are of fewer
    constexpr std::size_t COUNT = std::size_t(SIZE) * SIZE;
    constexpr float GREATEST_FLOAT = std::numeric_limits<float>::max();
    constexpr double GREATEST = std::numeric_limits<double>::max();
    for (int sign : {1, -1})
        for (int level = 1; level <= 3; ++level) {
            ImageLevels levels;
            levels.setPixels(imageOf(std::vector<float>(COUNT, float(sign) * GREATEST_FLOAT), SIZE, SIZE));
            const int last = levels.sizeOf(level).width() - 1;
            EXPECT_EQ(levelAt(levels, level, 0, 0), sign * double(GREATEST_FLOAT)) << level;
            EXPECT_EQ(levelAt(levels, level, last, last), sign * double(GREATEST_FLOAT)) << level;
            levels.setPixels(imageOf(std::vector<double>(COUNT, sign * GREATEST), SIZE, SIZE));
            EXPECT_DOUBLE_EQ(levelAt(levels, level, 0, 0), sign * GREATEST) << level;
            EXPECT_DOUBLE_EQ(levelAt(levels, level, last, last), sign * GREATEST) << level;
        }
    ImageLevels levels;
    levels.setPixels(imageOf<double>({-GREATEST, GREATEST, std::numeric_limits<double>::infinity(), 0}, 2, 2));
    EXPECT_TRUE(std::isinf(levelAt(levels, 1, 0, 0)));
}

TEST(ImageLevelsTest, WhatIsNoNumberIsSeenAtEverySize)
{
    std::vector<float> numbers(1024 * 1024, 1);
    numbers[1024 * 500 + 300] = std::numeric_limits<float>::quiet_NaN();
    ImageLevels levels;
    levels.setPixels(imageOf(std::move(numbers), 1024, 1024));
    for (int level = 1; level <= 10; ++level)
        EXPECT_TRUE(std::isnan(levelAt(levels, level, 300 >> level, 500 >> level))) << level;
    EXPECT_EQ(levelAt(levels, 5, 0, 0), 1);
}

TEST(ImageLevelsTest, RowsFromBelowAreTheOtherWayRound)
{
    ImagePixels pixels = imageOf<std::uint8_t>({1, 3, 5}, 1, 3);
    pixels.isBottomUp = true;
    ImageLevels levels;
    levels.setPixels(pixels);
    EXPECT_EQ(levelAt(levels, 1, 0, 0), 4);
    EXPECT_EQ(levelAt(levels, 1, 0, 1), 1);
}

TEST(ImageLevelsTest, OnlyWhatIsLookedAtIsMade)
{
    ImageLevels levels;
    levels.setPixels(imageOf(std::vector<std::uint8_t>(4096 * 4096), 4096, 4096));
    levelAt(levels, 1, 1000, 1000);
    EXPECT_EQ(levels.numBytes(), std::size_t(ImageLevels::TILE * ImageLevels::TILE));
}

TEST(ImageLevelsTest, MemoryIsBounded)
{
    constexpr std::size_t BYTES_OF_TILE = std::size_t(ImageLevels::TILE) * ImageLevels::TILE;
    ImageLevels levels(5 * BYTES_OF_TILE);
    levels.setPixels(imageOf(std::vector<std::uint8_t>(4096 * 4096, 7), 4096, 4096));
    for (int tile = 0; tile < 64; ++tile) {
        EXPECT_EQ(levelAt(levels, 1, tile % 8 * ImageLevels::TILE, tile / 8 * ImageLevels::TILE), 7);
        EXPECT_LE(levels.numBytes(), 5 * BYTES_OF_TILE);
    }
}

TEST(ImageLevelsTest, OfWhatIsSeenAtOnceNothingIsForgotten)
{
    constexpr std::size_t BYTES_OF_TILE = std::size_t(ImageLevels::TILE) * ImageLevels::TILE;
    ImageLevels levels(2 * BYTES_OF_TILE);
    levels.setPixels(imageOf(std::vector<std::uint8_t>(4096 * 4096, 7), 4096, 4096));
    {
        const ImageLevels::Look look(levels);
        for (int tile = 0; tile < 8; ++tile)
            levelAt(levels, 1, tile * ImageLevels::TILE, 0);
        EXPECT_EQ(levels.numBytes(), 8 * BYTES_OF_TILE);
    }
    levelAt(levels, 1, 0, 0);
    EXPECT_EQ(levels.numBytes(), 2 * BYTES_OF_TILE);
}

// The mean of four numbers, at half the size.
template <typename T>
T meanOf(const std::vector<T>& numbers)
{
    ImageLevels levels;
    levels.setPixels(imageOf(numbers, 2, 2));
    T mean = 0;
    levels.visit(1, {0, 0, 1, 1},
        [&](const ImagePixels& piece, const QPoint&) { mean = static_cast<const T*>(piece.numbers.getData())[0]; });
    return mean;
}

TEST(ImageLevelsTest, MeansOf64BitsAreExact)
{
    constexpr std::int64_t LEAST = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t GREATEST = std::numeric_limits<std::int64_t>::max();
    constexpr std::uint64_t MOST = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(meanOf<std::int64_t>({GREATEST, GREATEST, GREATEST, GREATEST}), GREATEST);
    EXPECT_EQ(meanOf<std::int64_t>({LEAST, LEAST, LEAST, LEAST}), LEAST);
    EXPECT_EQ(meanOf<std::int64_t>({LEAST, LEAST + 4, LEAST + 8, LEAST}), LEAST + 3);
    EXPECT_EQ(meanOf<std::int64_t>({-5, -5, -6, -4}), -5);
    EXPECT_EQ(meanOf<std::int64_t>({GREATEST, LEAST, 1, 4}), 1);
    EXPECT_EQ(meanOf<std::uint64_t>({MOST, MOST, MOST, MOST}), MOST);
    EXPECT_EQ(meanOf<std::uint64_t>({MOST, MOST - 2, MOST - 4, MOST - 2}), MOST - 2);
}

} // namespace
} // namespace tavo
