#include "vireo/show/images/drawImage.h"

#include <gtest/gtest.h>
#include <limits>

#include "tests/vireo/show/images/images.h"

namespace tavo {
namespace {

constexpr QRgb GROUND = qRgb(1, 2, 3);
constexpr QRgb EDGE = qRgb(0, 0, 200);

QImage drawn(const ImagePixels& pixels, const ImageSight& sight, const QSize& size, const ImageLook& look = {})
{
    ImageLevels levels;
    levels.setPixels(pixels);
    return drawImage(levels, PixelColours(look), sight, size, {QColor(GROUND), QColor(EDGE), {}});
}

// The last pixels of an image of many are far beyond what an int counts of the screen.
TEST(DrawImageTest, TheEndOfALongImageIsSeenAtTheGreatestMagnification)
{
    constexpr int LENGTH = 50'000'000;
    std::vector<std::uint8_t> numbers(LENGTH);
    numbers[LENGTH - 1] = 200;
    numbers[LENGTH - 2] = 100;
    ImagePixels pixels = imageOf(std::move(numbers), 1, LENGTH);
    ImageSight sight;
    sight.scale = ImageSight::GREATEST_SCALE;
    sight.centre = {1, LENGTH - 1};
    QImage picture = drawn(pixels, sight, {400, 400});
    EXPECT_EQ(picture.pixel(10, 10), qRgb(100, 100, 100));
    EXPECT_EQ(picture.pixel(10, 390), qRgb(200, 200, 200));
    EXPECT_EQ(picture.pixel(200, 10), EDGE);
    EXPECT_EQ(picture.pixel(390, 390), GROUND);
    std::swap(pixels.width, pixels.height);
    pixels.rowStride = LENGTH;
    sight.centre = {LENGTH - 1, 1};
    picture = drawn(pixels, sight, {400, 400});
    EXPECT_EQ(picture.pixel(10, 10), qRgb(100, 100, 100));
    EXPECT_EQ(picture.pixel(390, 10), qRgb(200, 200, 200));
    EXPECT_EQ(picture.pixel(10, 200), EDGE);
    EXPECT_EQ(picture.pixel(390, 390), GROUND);
}

} // namespace
} // namespace tavo
