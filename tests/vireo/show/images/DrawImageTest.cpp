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

int count(const QImage& picture, QRgb colour)
{
    int found = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            found += picture.pixel(x, y) == colour ? 1 : 0;
    return found;
}

TEST(DrawImageTest, WhatIsNotFiniteIsSeenAtEverySize)
{
    constexpr int SIZE = 2000;
    std::vector<float> numbers(SIZE * SIZE);
    numbers[SIZE * 1234 + 777] = std::numeric_limits<float>::quiet_NaN();
    numbers[SIZE * 333 + 1500] = -std::numeric_limits<float>::infinity();
    const ImagePixels pixels = imageOf(std::move(numbers), SIZE, SIZE);
    for (const int side : {50, 99, 100, 125, 300, 333, 1000, 1333, 1999, 2000}) {
        const QSize size(side, side);
        const ImageSight sight = ImageSight::fitting({SIZE, SIZE}, size);
        const QImage picture = drawn(pixels, sight, size);
        EXPECT_EQ(count(picture, COLOUR_OF_NAN), 1) << side;
        EXPECT_EQ(count(picture, COLOUR_OF_INFINITY), 1) << side;
        const QPointF place = sight.toView({777.5, 1234.5}, size);
        EXPECT_EQ(count(picture.copy(int(place.x()) - 1, int(place.y()) - 1, 3, 3), COLOUR_OF_NAN), 1) << side;
    }
}

TEST(DrawImageTest, OfWhatIsNotFiniteThatIsSeenWhichIsNoNumber)
{
    std::vector<double> numbers(64 * 64);
    for (std::size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = i % 128 == 64 ? std::numeric_limits<double>::quiet_NaN() : std::numeric_limits<double>::infinity();
    const QSize size(33, 33);
    const ImageSight sight = ImageSight::fitting({64, 64}, size);
    const QImage picture = drawn(imageOf(std::move(numbers), 64, 64), sight, size);
    for (int y = 1; y < 64; y += 2) {
        const QPointF place = sight.toView({0.5, y + 0.5}, size);
        EXPECT_EQ(picture.pixel(int(place.x()), int(place.y())), COLOUR_OF_NAN) << y;
    }
}

// Bytes are shown as they are in ways of their own: red or blue first, alone or with opacity, from the top or bottom.
TEST(DrawImageTest, BytesOfColoursAreShownAsTheyAre)
{
    const QSize size(50, 100);
    const QSize view(40, 90);
    for (const int channels : {3, 4})
        for (const bool isBgr : {false, true})
            for (const bool isBottomUp : {false, true}) {
                std::vector<std::uint8_t> numbers(std::size_t(size.width() * size.height() * channels));
                for (std::size_t i = 0; i < numbers.size(); ++i)
                    numbers[i] = static_cast<std::uint8_t>(7 * i + i / 250);
                ImagePixels pixels = imageOf(std::move(numbers), size.width(), size.height(), channels);
                pixels.isBgr = isBgr;
                pixels.isBottomUp = isBottomUp;
                ImageLook look;
                look.channel = -1;
                ImageSight sight;
                sight.centre = {30, 50};
                const QImage picture = drawn(pixels, sight, view, look);
                for (int y = 0; y < view.height(); ++y)
                    for (int x = 0; x < view.width(); ++x) {
                        const auto at = [&](int channel) {
                            return int(pixels.at(int(sight.toImage({double(x), double(y)}, view).x()),
                                int(sight.toImage({double(x), double(y)}, view).y()), channel));
                        };
                        ASSERT_EQ(picture.pixel(x, y), qRgb(at(0), at(1), at(2))) << channels << isBgr << isBottomUp;
                    }
            }
}

// What a place of the view shows: a pixel of the image, the line around it, or the ground.
QRgb expectedAt(const QPoint& place, const ImagePixels& pixels, const PixelColours& colours, const ImageSight& sight,
    const QSize& view)
{
    const QRect all(sight.origin(view).toPoint(), QSize(pixels.width, pixels.height) * sight.scale);
    if (!all.adjusted(-1, -1, 1, 1).contains(place))
        return GROUND;
    if (!all.contains(place))
        return EDGE;
    const QPoint inside = place - all.topLeft();
    const int side = static_cast<int>(sight.scale);
    QRgb colour = 0;
    colours.convert(pixels, inside.x() / side, inside.y() / side, 1, &colour);
    return colour;
}

// In a picture that held something else before.
void expectImageOnGround(const ImagePixels& pixels, const ImageLook& look, const ImageSight& sight)
{
    ImageLevels levels;
    levels.setPixels(pixels);
    const PixelColours colours(look);
    QImage picture(150, 170, QImage::Format_RGB32);
    picture.fill(Qt::magenta);
    drawImage(picture, levels, colours, sight, {QColor(GROUND), QColor(EDGE), {}});
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            ASSERT_EQ(picture.pixel(x, y), expectedAt({x, y}, pixels, colours, sight, picture.size()))
                << "at " << x << ", " << y;
}

template <typename T>
void expectImagesOnGround(int channels)
{
    constexpr int WIDTH = 11;
    constexpr int HEIGHT = 9;
    std::vector<T> numbers(std::size_t(WIDTH * HEIGHT * channels));
    for (std::size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = static_cast<T>((7 * i + 50) % 256);
    const ImagePixels pixels = imageOf(std::move(numbers), WIDTH, HEIGHT, channels);
    ImageLook look;
    look.channel = channels == 3 ? -1 : 0;
    for (const int scale : {1, 2, 7})
        for (const QPointF& centre : {QPointF(5.5, 4.5), QPointF(0, 4), QPointF(11, 4), QPointF(5, 0), QPointF(5, 9),
                 QPointF(0, 0), QPointF(11, 9), QPointF(5, -150), QPointF(5, 150)}) {
            SCOPED_TRACE(testing::Message() << scale << ":1 at " << centre.x() << ", " << centre.y());
            ImageSight sight;
            sight.scale = scale;
            sight.centre = centre;
            expectImageOnGround(pixels, look, sight);
        }
}

TEST(DrawImageTest, AroundAnImageIsItsEdgeAndTheGround)
{
    expectImagesOnGround<std::uint8_t>(1);
    expectImagesOnGround<std::uint8_t>(3);
    expectImagesOnGround<std::uint8_t>(4);
    expectImagesOnGround<float>(1);
    expectImagesOnGround<float>(3);
}

// Numbers that differ everywhere, some of which are none.
ImagePixels unevenNumbers(int width, int height)
{
    std::vector<float> numbers(std::size_t(width * height));
    for (std::size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = i % 977 == 5   ? std::numeric_limits<float>::quiet_NaN()
                     : i % 691 == 3 ? std::numeric_limits<float>::infinity()
                                    : static_cast<float>(i * i % 251);
    return imageOf(std::move(numbers), width, height);
}

TEST(DrawImageTest, AMovedImageIsTheOneThatIsDrawnAfresh)
{
    const QSize view(150, 120);
    const ImageInk ink{QColor(GROUND), QColor(EDGE), {}};
    ImageLevels levels;
    levels.setPixels(unevenNumbers(1100, 900));
    const PixelColours colours{ImageLook()};
    for (const double scale : {0.5, 0.75, 1.0 / 3, 1.0 / 8, 1.0 / 12, 0.13, 2.0, 48.0}) {
        ImageSight sight;
        sight.scale = scale;
        sight.centre = {500, 450};
        QImage picture = drawImage(levels, colours, sight, view, ink);
        for (const QPointF& step : {QPointF(5, 0), QPointF(-7.3, 0), QPointF(0, 9), QPointF(0, -33), QPointF(40, 21),
                 QPointF(-60.5, 77.2), QPointF(0, 0), QPointF(148, -118), QPointF(200, 0), QPointF(-400, 300)}) {
            const ImageSight before = sight;
            sight.centre += step / scale;
            moveImage(picture, before, levels, colours, sight, ink);
            ASSERT_EQ(picture, drawImage(levels, colours, sight, view, ink))
                << scale << ": " << step.x() << ", " << step.y();
        }
    }
}

TEST(DrawImageTest, WhatIsMovedAfterItWasZoomedIsDrawnAfresh)
{
    const QSize view(150, 120);
    const ImageInk ink{QColor(GROUND), QColor(EDGE), {}};
    ImageLevels levels;
    levels.setPixels(unevenNumbers(1100, 900));
    const PixelColours colours{ImageLook()};
    ImageSight before;
    before.scale = 0.25;
    before.centre = {500, 450};
    ImageSight sight = before;
    sight.scale = 0.5;
    QImage picture = drawImage(levels, colours, before, view, ink);
    moveImage(picture, before, levels, colours, sight, ink);
    EXPECT_EQ(picture, drawImage(levels, colours, sight, view, ink));
}

TEST(DrawImageTest, OfALongLineThereIsAPixelAtLeast)
{
    constexpr int LENGTH = 100'000;
    ImageLook look;
    look.to = 200;
    ImagePixels pixels = imageOf(std::vector<std::uint8_t>(LENGTH, 200), LENGTH, 1);
    const QSize view(200, 100);
    const QImage wide = drawn(pixels, ImageSight::fitting({LENGTH, 1}, view), view, look);
    EXPECT_EQ(count(wide, qRgb(255, 255, 255)), 200);
    std::swap(pixels.width, pixels.height);
    pixels.rowStride = 1;
    const QImage tall = drawn(pixels, ImageSight::fitting({1, LENGTH}, view), view, look);
    EXPECT_EQ(count(tall, qRgb(255, 255, 255)), 100);
}

// Between two rows and two columns of a level a pixel of the screen has something of all of them.
TEST(DrawImageTest, BetweenPixelsOfALevelColoursAreMixed)
{
    std::vector<std::uint8_t> numbers;
    for (int y = 0; y < 300; ++y)
        for (int x = 0; x < 400; ++x)
            numbers.push_back(static_cast<std::uint8_t>((x + y) / 4));
    const ImagePixels pixels = imageOf(std::move(numbers), 400, 300);
    for (const double scale : {0.75, 0.6, 1.0 / 3, 0.2}) {
        ImageSight sight;
        sight.scale = scale;
        sight.centre = {200, 150};
        const QSize view(100, 50);
        const QImage picture = drawn(pixels, sight, view);
        for (const QPoint place : {QPoint(50, 25), QPoint(40, 20), QPoint(61, 33)}) {
            const QPointF point = sight.toImage(QPointF(place) + QPointF(0.5, 0.5), view);
            EXPECT_NEAR(qRed(picture.pixel(place)), (point.x() + point.y() - 1) / 4 - 0.4, 1) << scale;
        }
    }
}

// A number without its first digits would be another one.
TEST(DrawImageTest, NumbersFitIntoTheirPixels)
{
    constexpr int SCALE = 48;
    ImageSight sight;
    sight.scale = SCALE;
    sight.centre = {1, 1};
    for (const int number : {-7, -12345678, -2147483647}) {
        const QImage picture = drawn(imageOf(std::vector<int>(4, number), 2, 2), sight, {2 * SCALE, 2 * SCALE});
        const QImage inside = picture.copy(1, 1, SCALE - 2, SCALE - 2); // the grid left out
        const QRgb ground = inside.pixel(0, 0);
        EXPECT_GT(inside.width() * inside.height() - count(inside, ground), 10) << "there is a number";
        EXPECT_EQ(count(inside.copy(0, 0, 1, SCALE - 2), ground), SCALE - 2) << number;
        EXPECT_EQ(count(inside.copy(SCALE - 3, 0, 1, SCALE - 2), ground), SCALE - 2) << number;
    }
}

} // namespace
} // namespace tavo
