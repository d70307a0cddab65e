#include "apps/vireo-view/ImageReader.h"

#include <QImage>
#include <QImageReader>
#include <gmock/gmock.h>
#include <zlib.h>

#include "apps/vireo-view/InputError.h"
#include "tests/apps/vireo-view/FilesTest.h"
#include "tests/apps/vireo-view/contentsOf.h"

namespace vireo_view {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ImageReaderTest : public FilesTest
{
protected:
    std::filesystem::path save(const std::string& name, const QImage& image)
    {
        std::filesystem::path file = directory() / name;
        EXPECT_TRUE(image.save(QString::fromStdString(file.string())));
        return file;
    }

    std::string whyNot(const std::string& name, std::string_view bytes)
    {
        try {
            readImages(write(name, bytes), nullptr);
        } catch (const InputError& error) {
            return error.what();
        }
        return "it was read";
    }
};

template <typename T>
const std::vector<T>& numbersOf(const Picture& picture)
{
    return std::get<std::vector<T>>(picture.numbers);
}

std::string floats(std::initializer_list<float> numbers)
{
    return {reinterpret_cast<const char*>(numbers.begin()), numbers.size() * sizeof(float)};
}

TEST_F(ImageReaderTest, PicturesKeepTheirChannelsAndBits)
{
    QImage grey(2, 1, QImage::Format_Grayscale8);
    grey.fill(7);
    const Picture one = readImages(save("grey.png", grey), nullptr).at(0);
    EXPECT_EQ(one.channels, 1);
    EXPECT_THAT(numbersOf<std::uint8_t>(one), ElementsAre(7, 7));
    QImage deep(3, 1, QImage::Format_Grayscale16);
    for (int x = 0; x < 3; ++x)
        reinterpret_cast<quint16*>(deep.scanLine(0))[x] = static_cast<quint16>(1000 + x);
    EXPECT_THAT(
        numbersOf<std::uint16_t>(readImages(save("deep.png", deep), nullptr).at(0)), ElementsAre(1000, 1001, 1002));
    QImage colours(1, 2, QImage::Format_RGB32);
    colours.setPixel(0, 0, qRgb(1, 2, 3));
    colours.setPixel(0, 1, qRgb(4, 5, 6));
    const Picture three = readImages(save("colours.png", colours), nullptr).at(0);
    EXPECT_EQ(three.channels, 3);
    EXPECT_EQ(three.height, 2);
    EXPECT_THAT(numbersOf<std::uint8_t>(three), ElementsAre(1, 2, 3, 4, 5, 6));
    QImage clear(1, 1, QImage::Format_ARGB32);
    clear.setPixel(0, 0, qRgba(10, 20, 30, 40));
    EXPECT_THAT(
        numbersOf<std::uint8_t>(readImages(save("clear.png", clear), nullptr).at(0)), ElementsAre(10, 20, 30, 40));
    QImage wide(1, 1, QImage::Format_RGBX64);
    wide.setPixelColor(0, 0, QColor::fromRgba64(1000, 2000, 3000));
    const Picture deepColours = readImages(save("wide.png", wide), nullptr).at(0);
    EXPECT_THAT(numbersOf<std::uint16_t>(deepColours), ElementsAre(1000, 2000, 3000));
    EXPECT_EQ(readImages(save("a.jpg", colours), nullptr).at(0).channels, 3);
    QImage bits(2, 1, QImage::Format_Mono);
    bits.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
    bits.setPixel(0, 0, 1);
    bits.setPixel(1, 0, 0);
    EXPECT_THAT(numbersOf<std::uint8_t>(readImages(save("bits.png", bits), nullptr).at(0)), ElementsAre(255, 0));
}

TEST_F(ImageReaderTest, APfmHasItsLowestRowFirst)
{
    const auto file = write("a.pfm", "Pf\n2 2\n-1.0\n" + floats({1, 2, 3, 4}));
    EXPECT_THAT(numbersOf<float>(readImages(file, nullptr).at(0)), ElementsAre(3, 4, 1, 2));
    std::string swapped = floats({1.5F, -2, 1e9F});
    for (std::size_t i = 0; i < swapped.size(); i += 4)
        std::reverse(
            swapped.begin() + static_cast<std::ptrdiff_t>(i), swapped.begin() + static_cast<std::ptrdiff_t>(i) + 4);
    const Picture colours = readImages(write("b.pfm", "PF 1 1 1\n" + swapped), nullptr).at(0);
    EXPECT_EQ(colours.channels, 3);
    EXPECT_THAT(numbersOf<float>(colours), ElementsAre(1.5F, -2, 1e9F));
}

TEST_F(ImageReaderTest, APgmAndAPpmKeepTheirNumbers)
{
    const std::string bytes("\x01\x02\x0F\xFF", 4);
    const Picture deep = readImages(write("a.pgm", "P5\n# 12 bits\n2 1\n4095\n" + bytes), nullptr).at(0);
    EXPECT_EQ(deep.width, 2);
    EXPECT_THAT(numbersOf<std::uint16_t>(deep), ElementsAre(0x0102, 4095));
    const Picture text = readImages(write("b.pgm", "P2 1 3 65535 0 1000# last\n65535"), nullptr).at(0);
    EXPECT_EQ(text.height, 3);
    EXPECT_THAT(numbersOf<std::uint16_t>(text), ElementsAre(0, 1000, 65535));
    const Picture colours = readImages(write("a.ppm", "P6 1 1 65535 " + bytes + bytes), nullptr).at(0);
    EXPECT_EQ(colours.channels, 3);
    EXPECT_THAT(numbersOf<std::uint16_t>(colours), ElementsAre(0x0102, 4095, 0x0102));
    EXPECT_THAT(
        numbersOf<std::uint8_t>(readImages(write("b.ppm", "P3 1 1 255 1 2 3"), nullptr).at(0)), ElementsAre(1, 2, 3));
    EXPECT_THAT(numbersOf<std::uint8_t>(readImages(write("c.pgm", "P2 2 1 1 0 1"), nullptr).at(0)), ElementsAre(0, 255))
        << "small numbers are made brighter";
    EXPECT_THAT(whyNot("d.pgm", "P5 2 2 65535\n" + bytes), HasSubstr("d.pgm: ends before its last row"));
    EXPECT_THAT(whyNot("d.pgm", "P2 2 1 300 1 x"), HasSubstr("ends before its last row"));
    for (const char* const greatest : {"255", "300", "65535", "100"})
        EXPECT_THAT(whyNot("d.pgm", std::string("P2 2 1 ") + greatest + " 1 65536"),
            HasSubstr(std::string("d.pgm: has a number above ") + greatest + ", which it says is its greatest"));
    EXPECT_THAT(whyNot("d.pgm", "P2 2 1 255 1 256"), HasSubstr("has a number above 255"));
    EXPECT_THAT(whyNot("d.ppm", "P3 1 1 20 1 2 21"), HasSubstr("has a number above 20"));
    EXPECT_THAT(whyNot("d.pgm", "P5 2 1 70000\n" + bytes), HasSubstr("does not begin as a PGM or a PPM does"));
    EXPECT_THAT(whyNot("d.pgm", "P5 20000 20000 65535\n"), HasSubstr("cannot hold"));
    EXPECT_THAT(whyNot("d.pgm", "P5 0 1 255\n"), HasSubstr("has 0 x 1 pixels"));
}

TEST_F(ImageReaderTest, DrawingsAreOnWhite)
{
    if (!QImageReader::supportedImageFormats().contains("svg"))
        GTEST_SKIP() << "Qt reads no SVG here";
    const std::string drawing = R"(<svg xmlns="http://www.w3.org/2000/svg" width="2" height="1">)"
                                R"(<rect width="1" height="1"/></svg>)";
    const Picture picture = readImages(write("a.svg", drawing), nullptr).at(0);
    EXPECT_EQ(picture.width, 2);
    EXPECT_EQ(picture.channels, 3);
    EXPECT_THAT(numbersOf<std::uint8_t>(picture), ElementsAre(0, 0, 0, 255, 255, 255));
    testing::internal::CaptureStderr();
    EXPECT_THAT(whyNot("cut.svg", drawing.substr(0, 20)), HasSubstr("cut.svg: is no image that can be read: "));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ImageReaderTest, WhatIsBrokenIsALine)
{
    EXPECT_THAT(whyNot("a.pfm", "Pf\n2 2\n-1\n" + floats({1, 2, 3})), HasSubstr("a.pfm: ends before its last row"));
    for (const char* const head : {"Pf\n0 2\n-1\n", "Pf\n2 -2\n-1\n", "Pf\n2 1e99\n-1\n", "Pf\n2 2\n0\n", "Pf 1"})
        EXPECT_THAT(whyNot("a.pfm", head + floats({1, 2, 3, 4})), HasSubstr("does not begin as a PFM does")) << head;
    EXPECT_THAT(whyNot("a.pfm", "Pf\n20000 20000\n-1\n" + floats({1})),
        HasSubstr("claims 20000 x 20000 pixels, which a file of its size cannot hold"));
    EXPECT_THAT(whyNot("a.png", "no picture"), HasSubstr("a.png: is no image that can be read: "));
    EXPECT_THAT(whyNot("a.png", ""), HasSubstr("a.png: "));
}

TEST_F(ImageReaderTest, OfADamagedPngNobodyElseSaysAnything)
{
    QImage image(50, 50, QImage::Format_RGB32);
    image.fill(Qt::red);
    const std::string whole = contentsOf(save("whole.png", image));
    std::string damaged = whole;
    damaged[whole.find("IDAT") + 10] ^= 1;
    testing::internal::CaptureStderr();
    EXPECT_THAT(whyNot("damaged.png", damaged), HasSubstr("damaged.png: is a damaged PNG"));
    for (const std::size_t size : {std::size_t(20), whole.size() / 2, whole.size() - 6})
        EXPECT_THAT(whyNot("cut.png", whole.substr(0, size)), HasSubstr("cut.png: is a PNG that ends too early"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ImageReaderTest, AJpegThatIsCutOffIsALine)
{
    QImage image(200, 150, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * x, x * y, y * 7));
    std::string whole = contentsOf(save("whole.jpg", image));
    EXPECT_EQ(readImages(write("behind.jpg", whole + "anything"), nullptr).at(0).width, 200);
    whole.insert(2, std::string("\xFF\xE1\0\x06\xFF\xD9\xFF\xD9", 8)); // what a preview ends with ends not the image
    EXPECT_EQ(readImages(write("preview.jpg", whole), nullptr).at(0).height, 150);
    testing::internal::CaptureStderr();
    for (const std::size_t size : {std::size_t(3), std::size_t(30), whole.size() / 2, whole.size() - 1})
        EXPECT_THAT(whyNot("cut.jpg", whole.substr(0, size)), HasSubstr("cut.jpg: is a JPEG that ends too early"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ImageReaderTest, ABmpThatIsCutOffIsALine)
{
    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(Qt::red);
    const std::string whole = contentsOf(save("whole.bmp", image));
    EXPECT_EQ(readImages(write("whole.bmp", whole), nullptr).at(0).width, 20);
    for (const std::size_t size : {whole.size() / 2, whole.size() - 1})
        EXPECT_THAT(whyNot("cut.bmp", whole.substr(0, size)), HasSubstr("cut.bmp: is a BMP that ends too early"));
}

std::string bigEndian(std::size_t number)
{
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(number >> shift);
    return bytes;
}

// A part of a PNG, with the sum at its end.
std::string partOfPng(const std::string& kind, const std::string& contents)
{
    const std::string summed = kind + contents;
    const uLong sum = crc32(0, reinterpret_cast<const Bytef*>(summed.data()), static_cast<uInt>(summed.size()));
    return bigEndian(contents.size()) + summed + bigEndian(sum);
}

TEST_F(ImageReaderTest, WhatOfAPngIsNotItsPixelsIsNotSpokenOf)
{
    QImage image(50, 1, QImage::Format_Indexed8);
    image.setColorTable({qRgba(1, 2, 3, 40), qRgba(5, 6, 7, 255)});
    image.fill(0);
    const std::string whole = contentsOf(save("whole.png", image));
    std::string damaged = whole;
    damaged[whole.find("pHYs") + 5] ^= 1;
    std::string unusual = whole;
    unusual.insert(whole.find("PLTE") - 4, partOfPng("iCCP", "no profile") + partOfPng("gAMA", bigEndian(3)));
    std::string opaque = whole;
    opaque[whole.find("tRNS") + 4] ^= 1;
    testing::internal::CaptureStderr();
    for (const std::string& bytes : {whole, damaged, unusual, whole + "more"}) {
        const Picture picture = readImages(write("a.png", bytes), nullptr).at(0);
        const auto& numbers = numbersOf<std::uint8_t>(picture);
        ASSERT_EQ(numbers.size(), 200U);
        EXPECT_THAT(std::vector(numbers.begin(), numbers.begin() + 4), ElementsAre(1, 2, 3, 40));
    }
    EXPECT_EQ(readImages(write("a.png", opaque), nullptr).at(0).channels, 3);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ImageReaderTest, AHugePictureOfAFewBytesFillsNoMemory)
{
    const std::filesystem::path file = save("a.png", QImage(1, 1, QImage::Format_RGB32));
    std::string bytes = contentsOf(file);
    const std::string sides("\0\0\xFF\0\0\0\xFF\0", 8);
    bytes.replace(16, 8, sides);
    const uLong sum = crc32(0, reinterpret_cast<const Bytef*>(bytes.data() + 12), 17); // of the header
    for (std::size_t i = 0; i < 4; ++i)
        bytes[29 + i] = static_cast<char>(sum >> (24 - 8 * i));
    EXPECT_THAT(whyNot("a.png", bytes), HasSubstr("has 65280 x 65280 pixels, more than"));
    EXPECT_THROW(checkedSizeOfPicture(file, 65280, 65280, 4), InputError);
    EXPECT_EQ(checkedSizeOfPicture(file, 10, 20, 4), 800U);
}

} // namespace
} // namespace vireo_view
