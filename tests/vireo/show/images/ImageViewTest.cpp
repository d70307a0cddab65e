#include "vireo/show/images/ImageView.h"

#include <QApplication>
#include <QFile>
#include <QSlider>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

#include "tests/vireo/show/images/images.h"

namespace tavo {
namespace {

const float NAN_F = std::numeric_limits<float>::quiet_NaN();
const float INFINITE = std::numeric_limits<float>::infinity();

class ImageViewTest : public testing::Test
{
protected:
    ImageViewTest()
    {
        m_View.resize(400, 300);
        m_View.show();
        QApplication::processEvents();
    }

    // The colour of a pixel of the image in a picture of the view that fits it.
    QRgb colourAt(int x, int y, const QSize& size = {160, 120})
    {
        const QImage picture = m_View.picture(size);
        const ImageSight sight =
            ImageSight::fitting({m_View.getModel().pixels().width, m_View.getModel().pixels().height}, size);
        const QPointF place = sight.toView(QPointF(x + 0.25, y + 0.25), size);
        return picture.pixel(place.toPoint()) | 0xff000000;
    }

    ImageView m_View{"image"};
};

TEST_F(ImageViewTest, ColoursAreWhatTheyAre)
{
    send(m_View, imageOf<std::uint8_t>({10, 20, 30, 200, 100, 0}, 2, 1, 3));
    EXPECT_EQ(colourAt(0, 0), qRgb(10, 20, 30));
    EXPECT_EQ(colourAt(1, 0), qRgb(200, 100, 0));
    ImageUpdate update;
    update.isBgr = true;
    m_View.apply(update);
    EXPECT_EQ(colourAt(0, 0), qRgb(30, 20, 10));
    send(m_View, imageOf<float>({0, 0.5F, 7}, 1, 1, 3));
    update.isBgr = false;
    m_View.apply(update);
    EXPECT_EQ(colourAt(0, 0), qRgb(0, 128, 255));
}

TEST_F(ImageViewTest, OneChannelIsGreyOrHasTheColoursOfAMap)
{
    send(m_View, imageOf<std::uint8_t>({0, 128, 255, 7}, 2, 2));
    EXPECT_EQ(colourAt(1, 0), qRgb(128, 128, 128));
    ImageSettings settings;
    settings.colourMap = "viridis";
    send(m_View, imageOf<std::uint8_t>({0, 128, 255, 7}, 2, 2), settings);
    const RGBA8 last = findColourMap("viridis")->sample(1);
    EXPECT_EQ(colourAt(0, 1), qRgb(last[0], last[1], last[2]));
}

TEST_F(ImageViewTest, AChannelAloneIsShownByTheMap)
{
    ImageSettings settings;
    settings.channel = 1;
    send(m_View, imageOf<std::uint8_t>({10, 20, 30, 40}, 1, 1, 4), settings);
    EXPECT_EQ(colourAt(0, 0), qRgb(20, 20, 20));
    m_View.showNextChannel();
    EXPECT_EQ(colourAt(0, 0), qRgb(30, 30, 30));
    m_View.showNextChannel();
    m_View.showNextChannel();
    EXPECT_EQ(colourAt(0, 0), qRgb(10, 20, 30));
}

TEST_F(ImageViewTest, GammaBrightensWhatIsDark)
{
    ImageSettings settings;
    settings.gamma = 2;
    send(m_View, imageOf<std::uint8_t>({64}, 1, 1), settings);
    EXPECT_NEAR(qRed(colourAt(0, 0)), 128, 1);
    settings.range = ImageRange{ImageRange::Kind::Fixed, 0, 4};
    send(m_View, imageOf<double>({1}, 1, 1), settings);
    EXPECT_NEAR(qRed(colourAt(0, 0)), 128, 1);
}

TEST_F(ImageViewTest, WhatIsNoNumberHasColoursThatNoMapHas)
{
    send(m_View, imageOf<float>({NAN_F, INFINITE, -INFINITE, 1, 2, 3}, 3, 2));
    EXPECT_EQ(colourAt(0, 0), COLOUR_OF_NAN);
    EXPECT_EQ(colourAt(1, 0), COLOUR_OF_INFINITY);
    EXPECT_EQ(colourAt(2, 0), COLOUR_OF_INFINITY);
    EXPECT_EQ(colourAt(2, 1), qRgb(255, 255, 255));
    EXPECT_TRUE(m_View.textOfImage().contains("1 NaN, 2 infinite")) << m_View.textOfImage().toStdString();
    send(m_View, imageOf<double>({1, double(NAN_F), double(INFINITE), 1, 1, double(INFINITE)}, 2, 1, 3));
    EXPECT_EQ(colourAt(0, 0), COLOUR_OF_NAN);
    EXPECT_EQ(colourAt(1, 0), COLOUR_OF_INFINITY);
}

TEST_F(ImageViewTest, PixelsAreSquaresOfOneSize)
{
    std::vector<std::uint8_t> numbers(35);
    for (std::size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = static_cast<std::uint8_t>(7 * i);
    send(m_View, imageOf(numbers, 7, 5));
    const QSize size(160, 120); // 22-fold
    const QImage picture = m_View.picture(size);
    const ImageSight sight = ImageSight::fitting({7, 5}, size);
    EXPECT_EQ(sight.scale, 22);
    const QPoint origin = sight.origin(size).toPoint();
    for (int y = 0; y < 5 * 22 - 1; ++y) // the last ones are below the edge
        for (int x = 0; x < 7 * 22 - 1; ++x)
            ASSERT_EQ(qRed(picture.pixel(origin + QPoint(x, y))), numbers[std::size_t(y / 22 * 7 + x / 22)])
                << x << ' ' << y;
}

TEST_F(ImageViewTest, SmallerPicturesAreMeans)
{
    std::vector<std::uint8_t> numbers(800'000, 0);
    for (std::size_t i = 1; i < numbers.size(); i += 2)
        numbers[i] = 200;
    send(m_View, imageOf(numbers, 1000, 800));
    for (const QSize size : {QSize(500, 400), QSize(250, 200), QSize(160, 120), QSize(333, 300)})
        for (const QPoint place : {QPoint(300, 300), QPoint(501, 402), QPoint(700, 77)})
            EXPECT_NEAR(qRed(colourAt(place.x(), place.y(), size)), 100, 35) << size.width() << ' ' << place.x();
    EXPECT_EQ(qRed(colourAt(500, 400, {500, 400})), 100);
}

TEST_F(ImageViewTest, ValuesAreWrittenFrom32FoldOn)
{
    send(m_View, imageOf<std::uint8_t>(std::vector<std::uint8_t>(12, 100), 4, 3));
    const auto hasInk = [this](const QSize& size) {
        const QImage picture = m_View.picture(size);
        const ImageSight sight = ImageSight::fitting({4, 3}, size);
        const QRect pixel(
            sight.toView({1, 1}, size).toPoint() + QPoint(2, 2), QSize(int(sight.scale) - 4, int(sight.scale) - 4));
        for (int y = pixel.top(); y <= pixel.bottom(); ++y)
            for (int x = pixel.left(); x <= pixel.right(); ++x)
                if (qRed(picture.pixel(x, y)) != 100)
                    return true;
        return false;
    };
    EXPECT_FALSE(hasInk({31 * 4, 31 * 3}));
    EXPECT_TRUE(hasInk({32 * 4, 32 * 3}));
}

TEST_F(ImageViewTest, WhatIsSentLeavesThePartAloneThatAPersonHasChosen)
{
    send(m_View, imageOf(std::vector<std::uint8_t>(10000), 100, 100));
    const double fitting = m_View.getSight().scale;
    send(m_View, imageOf(std::vector<std::uint8_t>(2500), 50, 50));
    EXPECT_EQ(m_View.getSight().scale, 2 * fitting + 1);
    ImageSight sight;
    sight.scale = 4;
    sight.centre = {10, 20};
    m_View.setSight(sight);
    send(m_View, imageOf(std::vector<std::uint8_t>(10000), 100, 100));
    EXPECT_EQ(m_View.getSight(), sight);
    m_View.showAll();
    EXPECT_EQ(m_View.getSight().scale, fitting);
}

TEST_F(ImageViewTest, WhatIsSentWhileTheImageIsMovedIsSeenAtOnce)
{
    const auto numbers = [](int first) {
        std::vector<std::uint8_t> made(1000 * 800);
        for (std::size_t i = 0; i < made.size(); ++i)
            made[i] = static_cast<std::uint8_t>(first + int(i * i / 977 % 90));
        return imageOf(std::move(made), 1000, 800);
    };
    ImageView other("other");
    other.resize(m_View.size());
    other.show();
    const auto expectSame = [&](const char* what) {
        m_View.hover({});
        EXPECT_EQ(m_View.grab().toImage(), other.grab().toImage()) << what;
    };
    ImageSight sight;
    sight.scale = 0.5;
    sight.centre = {400, 300};
    send(m_View, numbers(0));
    m_View.setSight(sight);
    m_View.grab();
    sight.centre += QPointF(20, 10);
    m_View.setSight(sight);
    send(other, numbers(0));
    other.setSight(sight);
    expectSame("moved");
    send(m_View, numbers(100));
    send(other, numbers(100));
    expectSame("sent");
    for (ImageView* view : {&m_View, &other})
        view->choose([](ImageSettings& choice) { choice.colourMap = "viridis"; });
    expectSame("coloured");
    m_View.goBack();
    m_View.setSight(sight);
    other.choose([](ImageSettings& choice) { choice = {}; });
    expectSame("taken back");
    for (ImageView* view : {&m_View, &other})
        view->resize(500, 333);
    expectSame("larger");
}

TEST_F(ImageViewTest, LinkedImagesShowTheSamePartAndThePixelUnderThePointer)
{
    ImageView other("other");
    other.resize(200, 100);
    send(other, imageOf<float>({1, 2, 3, 4}, 2, 2));
    ImageUpdate update;
    update.pixels = imageOf<std::uint8_t>({5, 6, 7, 8}, 2, 2);
    update.links = {"other"};
    m_View.apply(update);
    ImageSight sight;
    sight.scale = 8;
    sight.centre = {1, 2};
    other.setSight(sight);
    EXPECT_EQ(m_View.getSight(), sight);
    m_View.hover(QPoint(1, 0));
    EXPECT_EQ(other.textOfPixel(), "1, 0:  2");
    EXPECT_EQ(m_View.textOfPixel(), "1, 0:  6");
}

// A stack of images of one pixel each, with these numbers.
ImageUpdate stackOf(const std::vector<float>& numbers)
{
    ImageUpdate update;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i == 0)
            update.pixels = imageOf<float>({numbers[i]}, 1, 1);
        else
            update.layers[static_cast<int>(i)] = imageOf<float>({numbers[i]}, 1, 1);
    }
    return update;
}

TEST_F(ImageViewTest, TheSliderOfAStackRemembersItsPlace)
{
    auto* const slider = m_View.findChild<QSlider*>("layer");
    const auto shown = [this] { return m_View.getModel().shownPixels().at(0, 0, 0); };
    send(m_View, imageOf<float>({1}, 1, 1));
    EXPECT_FALSE(slider->isVisible()) << "there is one image";
    const int height = m_View.sightSize().height();
    ImageUpdate stack = stackOf({1, 2, 3, 4});
    m_View.apply(stack);
    EXPECT_TRUE(slider->isVisible());
    EXPECT_LT(m_View.sightSize().height(), height);
    EXPECT_EQ(shown(), 1);
    slider->setValue(2);
    EXPECT_EQ(shown(), 3);
    stack = stackOf({5, 6, 7, 8});
    m_View.makeRoom(stack.replaced());
    m_View.apply(stack);
    EXPECT_EQ(shown(), 7);
    stack = stackOf({1, 2});
    m_View.apply(stack);
    EXPECT_EQ(shown(), 2) << "the last one";
    stack = stackOf({1, 2, 3, 4});
    m_View.apply(stack);
    EXPECT_EQ(shown(), 3) << "its place is there again";
    EXPECT_EQ(slider->value(), 2);
    ImageUpdate layer;
    layer.layers[2] = imageOf<float>({9}, 1, 1);
    layer.layers[4] = imageOf<float>({10}, 1, 1);
    m_View.apply(layer);
    EXPECT_EQ(shown(), 9);
    EXPECT_EQ(slider->maximum(), 4);
    send(m_View, imageOf<float>({1}, 1, 1));
    EXPECT_FALSE(slider->isVisible());
}

TEST_F(ImageViewTest, ImagesOfAStackShareTheirRange)
{
    ImageUpdate stack = stackOf({1, 2, 3});
    stack.pixels = imageOf<float>({1, 5}, 2, 1);
    stack.layers[1] = imageOf<float>({2, 3, 9}, 3, 1);
    m_View.apply(stack);
    m_View.showLayer(1);
    EXPECT_EQ(m_View.getModel().look().from, 1);
    EXPECT_EQ(m_View.getModel().look().to, 9);
    m_View.showLayer(0);
    EXPECT_EQ(m_View.getModel().look().to, 9) << "or the same numbers would have other colours";
}

TEST_F(ImageViewTest, LevelsOfAStackShowTheSamePart)
{
    ImageUpdate levels;
    levels.pixels = imageOf(std::vector<std::uint8_t>(800 * 400), 800, 400);
    levels.layers[1] = imageOf(std::vector<std::uint8_t>(400 * 200), 400, 200);
    m_View.apply(levels);
    ImageSight sight;
    sight.scale = 4;
    sight.centre = {600, 100};
    m_View.setSight(sight);
    m_View.showLayer(1);
    EXPECT_EQ(m_View.getSight().scale, 8);
    EXPECT_EQ(m_View.getSight().centre, QPointF(300, 50));
    m_View.showLayer(0);
    EXPECT_EQ(m_View.getSight(), sight);
}

TEST_F(ImageViewTest, LinkedStacksStepTogetherAndADifferenceFollows)
{
    ImageView other("other");
    ImageUpdate stack = stackOf({10, 20, 30});
    other.apply(stack);
    stack = stackOf({1, 2, 3});
    stack.links = {"other"};
    stack.difference = "other";
    m_View.apply(stack);
    m_View.hover(QPoint(0, 0));
    EXPECT_EQ(m_View.textOfPixel(), "0, 0:  -9");
    other.showLayer(2);
    EXPECT_EQ(m_View.textOfPixel(), "0, 0:  -27");
    EXPECT_EQ(m_View.getStack().shown(), 2);
}

TEST_F(ImageViewTest, LargePicturesOfOneChannelHaveAColourBar)
{
    ImageSettings settings;
    settings.colourMap = "viridis";
    send(m_View, imageOf<float>({0, 10, 20, 30}, 2, 2), settings);
    const QImage picture = m_View.picture({1000, 600});
    const RGBA8 some = findColourMap("viridis")->sample(0.1);
    const auto isNear = [](QRgb a, const RGBA8& b) {
        return std::abs(qRed(a) - b[0]) + std::abs(qGreen(a) - b[1]) + std::abs(qBlue(a) - b[2]) < 12;
    };
    int inBar = 0;
    for (int x = 850; x < 1000; ++x)
        for (int y = 300; y < 600; ++y)
            inBar += isNear(picture.pixel(x, y), some);
    EXPECT_GT(inBar, 50);
    send(m_View, imageOf<float>({0, 10, 20}, 1, 1, 3));
    const QImage colours = m_View.picture({1000, 600});
    for (int y = 0; y < 600; ++y)
        ASSERT_EQ(colours.pixel(980, y), colours.pixel(980, 0)) << "colours have none";
}

// Nothing is cut off at the right edge of a picture.
TEST_F(ImageViewTest, NumbersBesideTheColourBarAreWhole)
{
    constexpr std::int64_t LARGE = std::int64_t(1) << 62;
    const ImagePixels pixels[] = {imageOf<double>({101325.5, 101325.52}, 2, 1),
        imageOf<double>({1e12, 1e12 + 0.001}, 2, 1), imageOf<std::int64_t>({LARGE, LARGE + 15}, 2, 1),
        imageOf<std::int64_t>({-LARGE, -LARGE + 15}, 2, 1)};
    for (const ImagePixels& image : pixels) {
        send(m_View, image);
        const QImage picture = m_View.picture({1000, 600});
        const QRgb ground = picture.pixel(999, 599);
        for (int x = 996; x < 1000; ++x)
            for (int y = 0; y < 600; ++y)
                ASSERT_EQ(picture.pixel(x, y), ground) << image.numbers[0];
    }
}

TEST_F(ImageViewTest, NumbersInPixelsAreToldApart)
{
    ImageSettings settings;
    settings.range = ImageRange{ImageRange::Kind::Fixed, 2e5, 3e5};
    send(m_View, imageOf<double>({101325.5, 101325.52}, 2, 1), settings);
    const QImage picture = m_View.picture({400, 300});
    const QImage left = picture.copy(80, 100, 112, 100);
    ASSERT_EQ(picture.pixel(90, 110), qRgb(0, 0, 0));
    EXPECT_NE(left, QImage(112, 100, left.format()));
    EXPECT_NE(left, picture.copy(208, 100, 112, 100));
}

TEST_F(ImageViewTest, ARangeThatIsNoNumberHasNoColourBar)
{
    send(m_View, imageOf<double>({1.7e308, -1.7e308}, 2, 1));
    const QImage picture = m_View.picture({1000, 600});
    for (int x = 800; x < 1000; ++x)
        for (int y = 0; y < 600; ++y)
            ASSERT_EQ(picture.pixel(x, y), picture.pixel(999, 599));
}

TEST_F(ImageViewTest, IntegersOf64BitsAreExactAtTheirEnds)
{
    const std::int64_t least = std::numeric_limits<std::int64_t>::min();
    send(m_View, imageOf<std::int64_t>({least, least + 1, least + 2, least + 4}, 2, 2));
    EXPECT_EQ(qRed(colourAt(0, 0)), 0);
    EXPECT_NEAR(qRed(colourAt(1, 0)), 64, 1);
    EXPECT_NEAR(qRed(colourAt(0, 1)), 128, 1);
    EXPECT_EQ(qRed(colourAt(1, 1)), 255);
    m_View.hover(QPoint(1, 0));
    EXPECT_EQ(m_View.textOfPixel(), "1, 0:  -9223372036854775807");
    const std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    send(m_View, imageOf<std::uint64_t>({most - 4, most, most - 2, most - 1}, 2, 2));
    m_View.refreshRange();
    EXPECT_EQ(qRed(colourAt(0, 0)), 0);
    EXPECT_EQ(qRed(colourAt(1, 0)), 255);
    EXPECT_NEAR(qRed(colourAt(0, 1)), 128, 1);
    m_View.hover(QPoint(1, 0));
    EXPECT_EQ(m_View.textOfPixel(), "1, 0:  18446744073709551615");
    send(m_View, imageOf<std::int64_t>({least, std::numeric_limits<std::int64_t>::max()}, 2, 1));
    m_View.refreshRange();
    EXPECT_EQ(qRed(colourAt(0, 0)), 0);
    EXPECT_EQ(qRed(colourAt(1, 0)), 255);
}

TEST_F(ImageViewTest, ARangeOutlivesTheRoomThatIsMade)
{
    ImageUpdate update;
    update.pixels = imageOf<std::int16_t>({0, 500}, 2, 1);
    m_View.apply(update);
    update.pixels = imageOf<std::int16_t>({0, 100}, 2, 1);
    m_View.makeRoom(update.replaced());
    m_View.apply(update);
    EXPECT_EQ(m_View.getModel().look().to, 500);
}

TEST_F(ImageViewTest, SaysThatThereIsNoDifference)
{
    ImageUpdate update;
    update.pixels = imageOf<float>({5, 6}, 2, 1);
    update.difference = "nothing";
    m_View.apply(update);
    EXPECT_TRUE(m_View.textOfImage().contains("no difference from nothing")) << "but it may come";
    testing::internal::CaptureStderr();
    m_View.picture(QSize(20, 20));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("\"nothing\" is no other image"));
    testing::internal::CaptureStderr();
    ImageView larger("larger");
    send(larger, imageOf<float>({1, 1, 1}, 3, 1));
    update.difference = "larger";
    m_View.apply(update);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("\"larger\" is no other image"));
}

TEST_F(ImageViewTest, AsksForChannelsThatWereForgotten)
{
    testing::internal::CaptureStderr();
    send(m_View, imageOf<float>({1, 2, 3, 4, 5, 6}, 2, 1));
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
        testing::HasSubstr(
            "6 numbers are more than 2 x 1 pixels of 1 channel have; the first of them are shown (are there 3 "
            "channels?)"));
}

TEST_F(ImageViewTest, ADifferenceFollowsBothImages)
{
    ImageUpdate update;
    update.pixels = imageOf<float>({5, 6}, 2, 1);
    update.difference = "reference";
    m_View.apply(update);
    EXPECT_FALSE(m_View.getModel().isDifference()) << "there is nothing to compare with";
    {
        ImageView reference("reference");
        send(reference, imageOf<float>({1, 1}, 2, 1));
        m_View.hover(QPoint(1, 0));
        EXPECT_EQ(m_View.textOfPixel(), "1, 0:  5");
        send(reference, imageOf<float>({1, 2}, 2, 1));
        EXPECT_EQ(m_View.textOfPixel(), "1, 0:  4");
        send(m_View, imageOf<float>({5, 16}, 2, 1));
        EXPECT_EQ(m_View.textOfPixel(), "1, 0:  14");
    }
    EXPECT_EQ(m_View.textOfPixel(), "1, 0:  16") << "there is nothing to compare with any more";
}

TEST_F(ImageViewTest, DataAreSavedAsTheyWereSent)
{
    const QTemporaryDir folder;
    ImagePixels pixels = imageOf<std::uint8_t>({1, 2, 3, 4, 5, 6}, 1, 2, 3);
    ImageUpdate update;
    update.pixels = pixels;
    update.isBgr = true;
    m_View.apply(update);
    EXPECT_EQ(m_View.saveData(folder.filePath("a.csv")), "");
    QFile file(folder.filePath("a.csv"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "x,y,red,green,blue\n0,0,3,2,1\n0,1,6,5,4\n");
    EXPECT_EQ(m_View.saveData(folder.filePath("a.png")), "");
    EXPECT_EQ(QImage(folder.filePath("a.png")).pixel(0, 1), qRgb(6, 5, 4));
    EXPECT_NE(m_View.saveData(folder.filePath("a.txt")), "");
    send(m_View, imageOf<float>({0.1F, NAN_F}, 2, 1));
    EXPECT_EQ(m_View.saveData(folder.filePath("b.csv")), "");
    QFile other(folder.filePath("b.csv"));
    ASSERT_TRUE(other.open(QIODevice::ReadOnly));
    EXPECT_EQ(other.readAll(), "x,y,value\n0,0,0.1\n1,0,nan\n");
    EXPECT_NE(m_View.saveData(folder.filePath("b.png")), "");
}

} // namespace
} // namespace tavo
