#include "apps/vireo-view/TiffImages.h"

#include <functional>
#include <gmock/gmock.h>
#include <map>
#include <tiffio.h>

#include "apps/vireo-view/InputError.h"
#include "tests/apps/vireo-view/FilesTest.h"
#include "tests/apps/vireo-view/contentsOf.h"

namespace vireo_view {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class TiffImagesTest : public FilesTest
{
protected:
    // A file of pages that `write` writes.
    std::filesystem::path make(const std::function<void(TIFF* tiff)>& write) const
    {
        std::filesystem::path file = directory() / "a.tif";
        TIFF* const tiff = TIFFOpen(file.string().c_str(), "w");
        write(tiff);
        TIFFClose(tiff);
        return file;
    }
};

template <typename T>
const std::vector<T>& numbersOf(const Picture& picture)
{
    return std::get<std::vector<T>>(picture.numbers);
}

void describe(TIFF* tiff, int width, int height, int channels, int bits, int format)
{
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, channels);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, format);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, channels < 3 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
}

template <typename T>
void writePage(TIFF* tiff, std::vector<T> numbers, int width, int height, int channels, int format,
    int compression = COMPRESSION_NONE)
{
    describe(tiff, width, height, channels, 8 * static_cast<int>(sizeof(T)), format);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, compression);
    for (int y = 0; y < height; ++y)
        TIFFWriteScanline(tiff, numbers.data() + y * width * channels, static_cast<std::uint32_t>(y), 0);
    TIFFWriteDirectory(tiff);
}

TEST_F(TiffImagesTest, PagesKeepTheirNumbers)
{
    const auto file = make([](TIFF* tiff) {
        writePage<float>(tiff, {0.5F, -1e9F, 3, 4}, 2, 2, 1, SAMPLEFORMAT_IEEEFP);
        writePage<std::uint16_t>(tiff, {1, 65535, 3}, 1, 1, 3, SAMPLEFORMAT_UINT, COMPRESSION_LZW);
        writePage<std::int32_t>(tiff, {-7}, 1, 1, 1, SAMPLEFORMAT_INT);
        writePage<double>(tiff, {0.1}, 1, 1, 1, SAMPLEFORMAT_IEEEFP);
        writePage<std::uint16_t>(tiff, {0x3C00, 0xC000}, 2, 1, 1, SAMPLEFORMAT_IEEEFP);
    });
    const std::vector<Picture> pages = readImages(file, nullptr);
    ASSERT_EQ(pages.size(), 5U);
    EXPECT_THAT(numbersOf<float>(pages[0]), ElementsAre(0.5F, -1e9F, 3, 4));
    EXPECT_EQ(pages[1].channels, 3);
    EXPECT_THAT(numbersOf<std::uint16_t>(pages[1]), ElementsAre(1, 65535, 3));
    EXPECT_THAT(numbersOf<std::int32_t>(pages[2]), ElementsAre(-7));
    EXPECT_THAT(numbersOf<double>(pages[3]), ElementsAre(0.1));
    EXPECT_THAT(numbersOf<float>(pages[4]), ElementsAre(1, -2)) << "of 16 bits";
}

TEST_F(TiffImagesTest, TilesAndChannelsApartAreReadToo)
{
    constexpr int SIDE = 20;
    const auto file = make([](TIFF* tiff) {
        describe(tiff, SIDE, SIDE, 1, 8, SAMPLEFORMAT_UINT);
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 16);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, 16);
        for (std::uint32_t top = 0; top < SIDE; top += 16)
            for (std::uint32_t left = 0; left < SIDE; left += 16) {
                std::vector<std::uint8_t> tile;
                for (std::uint32_t y = 0; y < 16; ++y)
                    for (std::uint32_t x = 0; x < 16; ++x)
                        tile.push_back(static_cast<std::uint8_t>(10 * (top + y) + left + x));
                TIFFWriteTile(tiff, tile.data(), left, top, 0, 0);
            }
        TIFFWriteDirectory(tiff);
        describe(tiff, 2, 1, 3, 8, SAMPLEFORMAT_UINT);
        TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE);
        for (std::uint16_t plane = 0; plane < 3; ++plane) {
            std::uint8_t row[] = {static_cast<std::uint8_t>(10 * plane), static_cast<std::uint8_t>(10 * plane + 1)};
            TIFFWriteScanline(tiff, row, 0, plane);
        }
        TIFFWriteDirectory(tiff);
    });
    const std::vector<Picture> pages = readImages(file, nullptr);
    ASSERT_EQ(pages.size(), 2U);
    const auto& numbers = numbersOf<std::uint8_t>(pages[0]);
    for (int y = 0; y < SIDE; ++y)
        for (int x = 0; x < SIDE; ++x)
            ASSERT_EQ(numbers[std::size_t(y * SIDE + x)], std::uint8_t(10 * y + x)) << x << ' ' << y;
    EXPECT_THAT(numbersOf<std::uint8_t>(pages[1]), ElementsAre(0, 10, 20, 1, 11, 21));
}

TEST_F(TiffImagesTest, SingleBitsAreBlackAndWhite)
{
    for (const int meaning : {PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_MINISWHITE}) {
        const auto file = make([meaning](TIFF* tiff) {
            describe(tiff, 8, 1, 1, 1, SAMPLEFORMAT_UINT);
            TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, meaning);
            std::uint8_t row[] = {0x80};
            TIFFWriteScanline(tiff, row, 0, 0);
        });
        const Picture page = readImages(file, nullptr).at(0);
        const int one = meaning == PHOTOMETRIC_MINISBLACK ? 255 : 0;
        EXPECT_EQ(page.channels, 1);
        EXPECT_EQ(numbersOf<std::uint8_t>(page)[0], one);
        EXPECT_EQ(numbersOf<std::uint8_t>(page)[1], 255 - one);
    }
}

TEST_F(TiffImagesTest, PalettesBecomeColours)
{
    const auto file = make([](TIFF* tiff) {
        describe(tiff, 2, 1, 1, 8, SAMPLEFORMAT_UINT);
        TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_PALETTE);
        std::vector<std::uint16_t> colours(3 * 256);
        for (std::size_t channel = 0; channel < 3; ++channel)
            colours[channel * 256 + 7] = static_cast<std::uint16_t>(256 * (10 + channel));
        TIFFSetField(tiff, TIFFTAG_COLORMAP, colours.data(), colours.data() + 256, colours.data() + 512);
        std::uint8_t row[] = {7, 0};
        TIFFWriteScanline(tiff, row, 0, 0);
    });
    const Picture page = readImages(file, nullptr).at(0);
    EXPECT_EQ(page.channels, 3);
    EXPECT_THAT(numbersOf<std::uint8_t>(page), ElementsAre(10, 11, 12, 0, 0, 0));
}

TEST_F(TiffImagesTest, WhereTheGreatestNumberIsBlackItIsDarkAndKeepsItsBits)
{
    const auto file = make([](TIFF* tiff) {
        describe(tiff, 2, 1, 1, 16, SAMPLEFORMAT_UINT);
        TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
        std::uint16_t row[] = {65535, 1000};
        TIFFWriteScanline(tiff, row, 0, 0);
    });
    EXPECT_THAT(numbersOf<std::uint16_t>(readImages(file, nullptr).at(0)), ElementsAre(0, 64535));
}

TEST_F(TiffImagesTest, PagesThatDoNotSayWhatTheirNumbersMeanAreTakenByTheirChannels)
{
    const auto file = make([](TIFF* tiff) {
        TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 2);
        TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 1);
        TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 32);
        TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
        float row[] = {0.5F, -7};
        TIFFWriteScanline(tiff, row, 0, 0);
    });
    EXPECT_THAT(numbersOf<float>(readImages(file, nullptr).at(0)), ElementsAre(0.5F, -7));
}

// As the standard has it: where the first row is, and where the first column.
TEST_F(TiffImagesTest, PagesAreUpright)
{
    const std::map<int, std::vector<int>> seen{{ORIENTATION_TOPLEFT, {1, 2, 3, 4, 5, 6}},
        {ORIENTATION_TOPRIGHT, {3, 2, 1, 6, 5, 4}}, {ORIENTATION_BOTRIGHT, {6, 5, 4, 3, 2, 1}},
        {ORIENTATION_BOTLEFT, {4, 5, 6, 1, 2, 3}}, {ORIENTATION_LEFTTOP, {1, 4, 2, 5, 3, 6}},
        {ORIENTATION_RIGHTTOP, {4, 1, 5, 2, 6, 3}}, {ORIENTATION_RIGHTBOT, {6, 3, 5, 2, 4, 1}},
        {ORIENTATION_LEFTBOT, {3, 6, 2, 5, 1, 4}}};
    for (const auto& [orientation, numbers] : seen)
        for (const bool areIndices : {false, true}) {
            const auto file = make([&, orientation = orientation](TIFF* tiff) {
                describe(tiff, 3, 2, 1, 8, SAMPLEFORMAT_UINT);
                TIFFSetField(tiff, TIFFTAG_ORIENTATION, orientation);
                std::vector<std::uint16_t> greys(256);
                for (std::size_t i = 0; i < greys.size(); ++i)
                    greys[i] = static_cast<std::uint16_t>(257 * i);
                if (areIndices) {
                    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_PALETTE);
                    TIFFSetField(tiff, TIFFTAG_COLORMAP, greys.data(), greys.data(), greys.data());
                }
                std::uint8_t rows[2][3] = {{1, 2, 3}, {4, 5, 6}};
                for (std::uint32_t y = 0; y < 2; ++y)
                    TIFFWriteScanline(tiff, rows[y], y, 0);
            });
            const Picture page = readImages(file, nullptr).at(0);
            EXPECT_EQ(page.width, orientation < ORIENTATION_LEFTTOP ? 3 : 2) << orientation;
            EXPECT_EQ(page.height, orientation < ORIENTATION_LEFTTOP ? 2 : 3) << orientation;
            std::vector<int> read;
            for (std::size_t i = 0; i < numbers.size(); ++i)
                read.push_back(numbersOf<std::uint8_t>(page).at(i * std::size_t(page.channels)));
            EXPECT_EQ(read, numbers) << orientation << (areIndices ? " by a palette" : "");
        }
}

TEST_F(TiffImagesTest, WhatIsBrokenIsALine)
{
    const auto whyNot = [](const std::filesystem::path& file) -> std::string {
        try {
            readImages(file, nullptr);
        } catch (const InputError& error) {
            return error.what();
        }
        return "it was read";
    };
    const auto file = make([](TIFF* tiff) {
        writePage<std::uint8_t>(tiff, std::vector<std::uint8_t>(5000, 7), 100, 50, 1, SAMPLEFORMAT_UINT);
    });
    const std::string bytes = contentsOf(file);
    EXPECT_THAT(whyNot(write("cut.tif", bytes.substr(0, bytes.size() - 40))),
        HasSubstr("cut.tif: is no TIFF that can be read"));
    EXPECT_THAT(whyNot(make([](TIFF* tiff) {
        writePage<std::uint8_t>(tiff, {1, 2, 3, 4, 5}, 1, 1, 5, SAMPLEFORMAT_UINT);
    })),
        HasSubstr("has 5 channels; images have 1 to 4"));
    EXPECT_THAT(whyNot(write("no.tif", std::string("II*\0\xFF\xFF\xFF\0", 8))), HasSubstr("no.tif: is no TIFF"));
}

} // namespace
} // namespace vireo_view
