#include "vireo/show/Image.h"

#include <QImage>
#include <array>
#include <gmock/gmock.h>
#include <limits>

#include "tavo/base/images/RGBAFloat32Image.h"
#include "tavo/base/images/RGBAImage.h"
#include "vireo/show/delivery/Inbox.h"
#include "vireo/show/images/ImageUpdate.h"
#include "vireo/show/show.h"

// What the handles send, and what they refuse.
namespace tavo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::unique_ptr<ImageUpdate> takeImage(const std::string& name = "image")
{
    std::unique_ptr<ImageUpdate> image;
    for (Batch::Part& part : inbox::take())
        if (part.slot->name == name)
            image.reset(static_cast<ImageUpdate*>(part.pending.update.release()));
    return image;
}

std::vector<double> takeNumbers()
{
    std::vector<double> numbers;
    const auto sent = takeImage();
    if (!sent || !sent->pixels)
        return numbers;
    const ImagePixels& pixels = *sent->pixels;
    for (int y = 0; y < pixels.height; ++y)
        for (int x = 0; x < pixels.width; ++x)
            for (int channel = 0; channel < pixels.channels; ++channel)
                numbers.push_back(pixels.at(x, y, channel));
    return numbers;
}

// The line that a call leaves in the log, and that it sends no pixels.
template <typename Call>
std::string refusalOf(Call call)
{
    testing::internal::CaptureStderr();
    call();
    const auto sent = takeImage();
    EXPECT_FALSE(sent && sent->pixels);
    return testing::internal::GetCapturedStderr();
}

const std::vector<std::uint8_t> BYTES{1, 2, 3, 4, 5, 6};

TEST(ImageTest, AStatementIsOneDelivery)
{
    bool wasWaiting = true;
    image("image", BYTES, 3, 2)
        .range(0, (wasWaiting = inbox::hasWaiting(), 9))
        .gamma(2)
        .colourMap("viridis")
        .channel(0);
    EXPECT_FALSE(wasWaiting);
    const auto sent = takeImage();
    EXPECT_EQ(sent->pixels->width, 3);
    EXPECT_EQ(sent->pixels->height, 2);
    EXPECT_EQ(sent->settings.range, (ImageRange{ImageRange::Kind::Fixed, 0, 9}));
    EXPECT_EQ(sent->settings.gamma, 2);
    EXPECT_EQ(sent->settings.colourMap, "viridis");
    EXPECT_EQ(sent->settings.channel, 0);
}

TEST(ImageTest, TheNewestWins)
{
    image("image", BYTES, 3, 2).percentiles(1, 99);
    image("image", {7, 8}, 1, 2);
    const auto sent = takeImage();
    EXPECT_EQ(sent->pixels->at(0, 1, 0), 8);
    EXPECT_EQ(sent->settings.range, (ImageRange{ImageRange::Kind::Percentiles, 1, 99}));
}

TEST(ImageTest, AStackIsSentAtOnceOrImageByImage)
{
    std::vector<std::uint8_t> numbers{1, 2, 3, 4, 5, 6};
    const std::uint8_t* const place = numbers.data();
    imageStack("image", std::move(numbers), 2, 1, 3).layerNames({"a", "b"});
    auto sent = takeImage();
    EXPECT_EQ(sent->pixels->at(1, 0, 0), 2);
    ASSERT_EQ(sent->layers.size(), 2U);
    EXPECT_EQ(sent->layers[2].at(0, 0, 0), 5);
    EXPECT_EQ(sent->layers[1].numbers.getData(), place + 2) << "nothing is copied";
    EXPECT_EQ(sent->layers[1].numbers.size(), 2U);
    EXPECT_THAT(*sent->layerNames, ElementsAre("a", "b"));
    image("image").layer(1, {7.5, 8.5}, 1, 2).layer(4, BYTES, 2, 1, 3);
    sent = takeImage();
    EXPECT_FALSE(sent->pixels);
    EXPECT_EQ(sent->layers[1].at(0, 1, 0), 8.5);
    EXPECT_EQ(sent->layers[4].at(1, 0, 2), 6);
}

TEST(ImageTest, TheNewestImageOfAStackWinsAndAWholeImageReplacesIt)
{
    imageStack("image", BYTES, 1, 1, 6);
    image("image").layer(1, {9}, 1, 1);
    auto sent = takeImage();
    EXPECT_EQ(sent->pixels->at(0, 0, 0), 1);
    EXPECT_EQ(sent->layers.size(), 5U);
    EXPECT_EQ(sent->layers[1].at(0, 0, 0), 9);
    EXPECT_EQ(sent->layers[2].at(0, 0, 0), 3);
    imageStack("image", BYTES, 1, 1, 6);
    image("image", {5}, 1, 1);
    sent = takeImage();
    EXPECT_EQ(sent->pixels->at(0, 0, 0), 5);
    EXPECT_TRUE(sent->layers.empty());
}

TEST(ImageTest, StacksThatCannotBeAreRefused)
{
    const auto lineOf = [](auto call) { return refusalOf(call); };
    EXPECT_THAT(lineOf([] { imageStack("stack", BYTES, 3, 1, 3); }),
        HasSubstr("image(\"stack\"): 6 numbers are too few for 3 images of 3 x 1 pixels of 1 channels; what was shown "
                  "stays"));
    EXPECT_THAT(lineOf([] { imageStack("none", BYTES, 3, 1, 0); }), HasSubstr("0 images are no stack"));
    EXPECT_THAT(lineOf([] { imageStack("many", BYTES, 1, 1, std::int64_t(1) << 62); }), HasSubstr("are no stack"));
    EXPECT_THAT(lineOf([] { image("image").layer(-1, BYTES, 3, 2); }),
        HasSubstr("image(\"image\").layer(-1): images of a stack are counted from 0 to 65535"));
    EXPECT_THAT(lineOf([] { image("far").layer(65536, BYTES, 3, 2); }), HasSubstr("are counted from 0 to 65535"));
    EXPECT_THAT(lineOf([] { image("image").layer(0, BYTES, 3, 3); }), HasSubstr("6 numbers are too few for 3 x 3"));
    EXPECT_THAT(lineOf([] { imageStack("image", BYTES, 2, 1, 3).stride(4); }),
        HasSubstr("stride(4): the rows of a stack follow each other directly"));
}

TEST(ImageTest, PixelsComeFromAnything)
{
    image("image", BYTES.data(), 2, 1, 3);
    EXPECT_THAT(takeNumbers(), ElementsAre(1, 2, 3, 4, 5, 6));
    const double array[] = {0.5, 1.5};
    image("image", array, 2, 1);
    EXPECT_THAT(takeNumbers(), ElementsAre(0.5, 1.5));
    std::int16_t writable[] = {-3, 4};
    image("image", &writable[0], 1, 2);
    EXPECT_THAT(takeNumbers(), ElementsAre(-3, 4));
    image("image", std::vector<RGBA8>{{1, 2, 3, 4}}, 1, 1, 4);
    EXPECT_THAT(takeNumbers(), ElementsAre(1, 2, 3, 4));
    image("image", std::array<long double, 1>{2.5L}, 1, 1);
    EXPECT_THAT(takeNumbers(), ElementsAre(2.5));
}

TEST(ImageTest, OfAVectorThatIsMovedInNothingIsCopied)
{
    std::vector<float> numbers{1, 2};
    const float* const place = numbers.data();
    image("image", std::move(numbers), 2, 1);
    takeImage()->pixels->numbers.visit(
        [place](const auto* sent, std::size_t) { EXPECT_EQ(static_cast<const void*>(sent), place); });
}

TEST(ImageTest, TheLibrarysImagesAreSentAsTheyAre)
{
    RGBAImage picture(1, 2);
    picture.at(0, 1) = {9, 8, 7, 6};
    image("image", picture);
    EXPECT_THAT(takeNumbers(), ElementsAre(0, 0, 0, 0, 9, 8, 7, 6));
    RGBAFloat32Image floats(1, 1);
    floats.at(0, 0) = {0.25F, 0.5F, 2, 1};
    const auto* const place = floats.getPixels().data();
    image("image", std::move(floats));
    const auto sent = takeImage();
    EXPECT_EQ(sent->pixels->at(0, 0, 2), 2);
    sent->pixels->numbers.visit(
        [place](const auto* numbers, std::size_t) { EXPECT_EQ(static_cast<const void*>(numbers), place); });
}

TEST(ImageTest, QtsImagesAreSentWithTheChannelsTheyHave)
{
    QImage colours(3, 1, QImage::Format_RGB32); // whose rows are padded as RGB888
    colours.fill(qRgb(1, 2, 3));
    image("image", colours);
    EXPECT_THAT(takeNumbers(), ElementsAre(1, 2, 3, 1, 2, 3, 1, 2, 3));
    QImage grey(1, 2, QImage::Format_Grayscale8);
    grey.fill(77);
    image("image", grey);
    EXPECT_THAT(takeNumbers(), ElementsAre(77, 77));
    QImage clear(1, 1, QImage::Format_ARGB32);
    clear.fill(qRgba(4, 5, 6, 7));
    image("image", clear);
    EXPECT_THAT(takeNumbers(), ElementsAre(4, 5, 6, 7));
    QImage deep(1, 1, QImage::Format_Grayscale16);
    deep.fill(Qt::white);
    image("image", deep);
    EXPECT_THAT(takeNumbers(), ElementsAre(65535));
}

TEST(ImageTest, QtsImagesOfAnyFormatKeepTheirNumbers)
{
    QImage bits(9, 2, QImage::Format_Mono);
    bits.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
    bits.fill(0);
    bits.setPixel(8, 1, 1);
    image("image", bits);
    auto sent = takeImage();
    EXPECT_EQ(sent->pixels->channels, 1);
    EXPECT_EQ(sent->pixels->at(0, 0, 0), 255);
    EXPECT_EQ(sent->pixels->at(8, 1, 0), 0);
    QImage palette(2, 1, QImage::Format_Indexed8);
    palette.setColorTable({qRgb(1, 2, 3), qRgb(4, 5, 6)});
    palette.setPixel(0, 0, 1);
    palette.setPixel(1, 0, 0);
    image("image", palette);
    EXPECT_THAT(takeNumbers(), ElementsAre(4, 5, 6, 1, 2, 3));
    palette.setColorTable({qRgb(9, 9, 9), qRgb(5, 5, 5)});
    image("image", palette);
    EXPECT_THAT(takeNumbers(), ElementsAre(5, 9));
    QImage mask(3, 2, QImage::Format_Alpha8);
    mask.fill(0);
    mask.setPixelColor(2, 1, QColor(0, 0, 0, 200));
    image("image", mask);
    EXPECT_THAT(takeNumbers(), ElementsAre(0, 0, 0, 0, 0, 200));
    QImage deep(1, 2, QImage::Format_RGBX64);
    deep.fill(QColor::fromRgba64(1000, 2000, 3000));
    image("image", deep);
    EXPECT_THAT(takeNumbers(), ElementsAre(1000, 2000, 3000, 1000, 2000, 3000));
    QImage clear(1, 1, QImage::Format_RGBA64);
    clear.fill(QColor::fromRgba64(1000, 2000, 3000, 4000));
    image("image", clear);
    EXPECT_THAT(takeNumbers(), ElementsAre(1000, 2000, 3000, 4000));
    QImage tenBits(1, 1, QImage::Format_RGB30);
    tenBits.fill(QColor::fromRgba64(0x8020, 0, 0xFFFF));
    image("image", tenBits);
    sent = takeImage();
    EXPECT_EQ(sent->pixels->channels, 3);
    EXPECT_NEAR(sent->pixels->at(0, 0, 0), 0x8020, 64) << "8 bits would be further away";
    EXPECT_EQ(sent->pixels->at(0, 0, 2), 65535);
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format) {
        QImage any(5, 3, static_cast<QImage::Format>(format));
        if (any.colorCount() == 0 && any.depth() <= 8 && format != QImage::Format_Grayscale8 &&
            format != QImage::Format_Alpha8)
            any.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
        any.fill(any.depth() == 1 ? 1U : 0xFFFFFFFFU);
        if (any.format() == QImage::Format_Indexed8)
            any.fill(1U);
        image("image", any);
        sent = takeImage();
        ASSERT_TRUE(sent && sent->pixels) << format;
        const double greatest = sent->pixels->numbers.getType() == NumberType::UInt8 ? 255 : 65535;
        EXPECT_EQ(sent->pixels->at(4, 2, 0), greatest) << format;
    }
}

TEST(ImageTest, RowsMayBeApart)
{
    const std::vector<std::uint16_t> padded{1, 2, 0, 3, 4};
    image("image", padded.data(), 2, 2).stride(6);
    EXPECT_THAT(takeNumbers(), ElementsAre(1, 2, 3, 4));
    image("image", padded, 2, 2).stride(6).range(0, 4);
    EXPECT_THAT(takeNumbers(), ElementsAre(1, 2, 3, 4));
    const Image kept = image("image", padded.data(), 2, 2).stride(6);
    EXPECT_THAT(takeNumbers(), ElementsAre(1, 2, 3, 4));
}

TEST(ImageTest, StridesThatAreTooSmallAreRefused)
{
    EXPECT_THAT(refusalOf([] { image("image", BYTES.data(), 3, 2).stride(2); }),
        HasSubstr("image(\"image\").stride(2): rows of 3 bytes are longer than that; what was shown stays"));
    EXPECT_THAT(refusalOf([] { image("image", BYTES, 2, 2).stride(1); }), HasSubstr("rows of 2 bytes are longer"));
    EXPECT_THAT(
        refusalOf([] { image("image", BYTES, 2, 2).stride(5); }), HasSubstr("6 numbers are too few for 2 such rows"));
    EXPECT_THAT(refusalOf([] { image("image", std::vector<float>(8), 2, 2).stride(9); }),
        HasSubstr("numbers of 4 bytes do not fit it"));
    constexpr std::size_t LARGEST = std::numeric_limits<std::size_t>::max();
    EXPECT_THAT(
        refusalOf([] { image("image", BYTES.data(), 1, 3).stride(LARGEST); }), HasSubstr("no memory is so large"));
    EXPECT_THAT(refusalOf([] { image("image", BYTES, 1, 3).stride(LARGEST); }), HasSubstr("are too few"));
    EXPECT_THAT(refusalOf([] { image("image").stride(4); }), HasSubstr("it was not said with any pixels"));
}

TEST(ImageTest, SizesThatAreNoneAreRefused)
{
    EXPECT_THAT(
        refusalOf([] { image("image", BYTES, 0, 2); }), HasSubstr("image(\"image\"): 0 x 2 pixels are no image"));
    EXPECT_THAT(refusalOf([] { image("image", BYTES.data(), 2, -1); }), HasSubstr("2 x -1 pixels are no image"));
    EXPECT_THAT(refusalOf([] { image("image", BYTES, 3, 3); }),
        HasSubstr("6 numbers are too few for 3 x 3 pixels of 1 channels"));
    EXPECT_THAT(refusalOf([] { image("image", BYTES.data(), 1'000'000'000, 1); }),
        HasSubstr("1000000000 x 1 pixels are more than the 536870912 that can be shown"));
    constexpr std::int64_t LARGE = std::int64_t(1) << 33;
    EXPECT_THAT(refusalOf([] { image("image", BYTES.data(), LARGE, LARGE); }), HasSubstr("are more than"));
    EXPECT_THAT(refusalOf([] { image("image", BYTES.data(), 1, 1, 5); }), HasSubstr("1 to 4 channels, and not 5"));
    EXPECT_THAT(refusalOf([] { image("image", BYTES, 6, 1, 0); }), HasSubstr("1 to 4 channels, and not 0"));
    EXPECT_THAT(
        refusalOf([] { image("image", static_cast<const float*>(nullptr), 2, 2); }), HasSubstr("a null pointer"));
    EXPECT_THAT(refusalOf([] { image("image", std::vector<RGBA8>(1), 1, 1, 3); }),
        HasSubstr("elements of 4 numbers are no 1 x 1 pixels of 3 channels"));
    EXPECT_THAT(refusalOf([] { image("image", RGBAImage()); }), HasSubstr("0 x 0 pixels"));
    EXPECT_THAT(refusalOf([] { image("none", QImage()); }), HasSubstr("image(\"none\"): 0 x 0 pixels"));
}

TEST(ImageTest, WhatCannotBeSaidOfAnImageIsRefused)
{
    const Image kept = image("image");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_THAT(
        refusalOf([&] { kept.range(1, 1); }), HasSubstr("range(1, 1): a range goes from one number to another"));
    EXPECT_THAT(refusalOf([&] { kept.range(nan, 1); }), HasSubstr("range(nan, 1)"));
    EXPECT_THAT(refusalOf([&] { kept.percentiles(50, 50); }), HasSubstr("percentiles(50, 50): the second is greater"));
    EXPECT_THAT(refusalOf([&] { kept.percentiles(1, 101); }), HasSubstr("both are from 0 to 100"));
    EXPECT_THAT(refusalOf([&] { kept.colourMap("jet"); }),
        HasSubstr("colourMap(\"jet\"): there is no map \"jet\"; the maps are viridis, "));
    EXPECT_THAT(refusalOf([&] { kept.gamma(0); }), HasSubstr("gamma(0): it goes from 0.01 to 100"));
    EXPECT_THAT(refusalOf([&] { kept.channel(4); }), HasSubstr("channel(4): there are 0 to 3, and -1 for all"));
}

TEST(ImageTest, AnotherKindOfViewDoesNotTakeItsName)
{
    testing::internal::CaptureStderr();
    const Image kept = image("image", BYTES, 3, 2);
    plot("image").curve("a", {1, 2});
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("a view of another kind"));
    EXPECT_EQ(takeNumbers().size(), 6U);
}

TEST(ImageTest, DataAreSavedWithoutAnybodyWhoShowsThem)
{
    ImageUpdate update;
    EXPECT_EQ(update.saveData("none.csv"), "there are no pixels");
    update.pixels = ImagePixels();
    EXPECT_EQ(update.saveData("none.csv"), "there are no pixels");
}

} // namespace
} // namespace tavo
