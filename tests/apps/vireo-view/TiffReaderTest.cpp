#include "apps/vireo-view/TiffReader.h"

#include <gmock/gmock.h>
#include <tiffio.h>

#include "apps/vireo-view/Exhibits.h"
#include "apps/vireo-view/FileFormat.h"
#include "tests/apps/vireo-view/VolumeFilesTest.h"

namespace vireo_view {
namespace {

using tavo::Vector3d;
using testing::ElementsAre;
using testing::SizeIs;

// What the pages of a test have in common.
struct Kind
{
    std::uint16_t numBits = 16;
    std::uint16_t numChannels = 1;
    std::uint32_t tile = 0; // as wide and as high; 0: rows
    const char* description = nullptr;
};

class TiffReaderTest : public VolumeFilesTest
{
protected:
    // Pages of 20 x 3 pixels, whose numbers count on from page to page.
    std::filesystem::path writePages(std::size_t numPages, const Kind& kind = {}) const
    {
        const std::filesystem::path file = directory() / "a.tif";
        TIFF* const tiff = TIFFOpen(file.string().c_str(), "w");
        std::uint16_t number = 0;
        for (std::size_t page = 0; page < numPages; ++page) {
            TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, WIDTH);
            TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, HEIGHT);
            TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, kind.numBits);
            TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, kind.numChannels);
            TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, kind.numChannels == 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
            TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
            TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
            TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 4.0f);
            TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 2.0f);
            if (kind.description)
                TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, kind.description);
            if (kind.tile > 0)
                writeTiles(tiff, kind.tile, number);
            else
                writeRows(tiff, kind, number);
            TIFFWriteDirectory(tiff);
        }
        TIFFClose(tiff);
        return file;
    }

    static constexpr std::uint32_t WIDTH = 20, HEIGHT = 3;

private:
    static void writeRows(TIFF* tiff, const Kind& kind, std::uint16_t& number)
    {
        for (std::uint32_t y = 0; y < HEIGHT; ++y) {
            std::vector<std::uint16_t> row(std::size_t{WIDTH} * kind.numChannels);
            for (std::uint16_t& value : row)
                value = number++;
            std::vector<std::uint8_t> bytes(row.begin(), row.end());
            void* const data = kind.numBits == 8 ? static_cast<void*>(bytes.data()) : row.data();
            TIFFWriteScanline(tiff, data, y, 0);
        }
    }

    static void writeTiles(TIFF* tiff, std::uint32_t size, std::uint16_t& number)
    {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, size);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, size);
        for (std::uint32_t x0 = 0; x0 < WIDTH; x0 += size) {
            std::vector<std::uint16_t> tile(std::size_t{size} * size);
            for (std::uint32_t y = 0; y < HEIGHT; ++y)
                for (std::uint32_t x = 0; x < size; ++x)
                    tile[y * size + x] = static_cast<std::uint16_t>(number + y * WIDTH + x0 + x);
            TIFFWriteTile(tiff, tile.data(), x0, 0, 0, 0);
        }
        number = static_cast<std::uint16_t>(number + WIDTH * HEIGHT);
    }
};

void expectCounting(const std::vector<double>& numbers, double from)
{
    for (std::size_t i = 0; i < numbers.size(); ++i)
        ASSERT_EQ(numbers[i], from + static_cast<double>(i));
}

TEST_F(TiffReaderTest, ReadsPagesAsSlices)
{
    for (const std::uint32_t tile : {0u, 16u}) {
        Kind kind;
        kind.tile = tile;
        const Volume volume = readTiffStack(writePages(4, kind), nullptr);
        EXPECT_THAT(volume.grid.size, ElementsAre(20, 3, 4));
        EXPECT_EQ(volume.grid.spacing, Vector3d(1, 1, 1));
        EXPECT_TRUE(areOf<std::uint16_t>(volume));
        ASSERT_THAT(volume.times, SizeIs(1));
        expectCounting(numbers(volume.times[0]), 0);
    }
}

TEST_F(TiffReaderTest, TellsStacksFromImages)
{
    EXPECT_TRUE(isTiffStack(writePages(2)));
    EXPECT_EQ(detectFormat(directory() / "a.tif"), FileFormat::TIFF);
    EXPECT_FALSE(isTiffStack(writePages(1)));
    EXPECT_EQ(detectFormat(directory() / "a.tif"), FileFormat::IMAGE);
    EXPECT_FALSE(isTiffStack(directory() / "missing.tif"));
}

TEST_F(TiffReaderTest, FewPagesAreImagesUnlessTheyAreSaidToBeSlices)
{
    const auto isVolume = [](const std::filesystem::path& file, bool areVolumes = false) {
        LoadOptions options;
        options.areVolumes = areVolumes;
        const Exhibit shown = loadExhibits(file, "a", options, nullptr).at(0);
        EXPECT_TRUE(std::holds_alternative<VolumeExhibit>(shown) || std::holds_alternative<ImageExhibit>(shown));
        return std::holds_alternative<VolumeExhibit>(shown);
    };
    EXPECT_FALSE(isVolume(writePages(2)));
    EXPECT_TRUE(isVolume(writePages(2), true));
    EXPECT_FALSE(isVolume(writePages(16)));
    EXPECT_TRUE(isVolume(writePages(17)));
    Kind kind;
    for (const char* const description : {"ImageJ=1.53\nimages=2\n", "<Pixels PhysicalSizeZ=\"2\"/>"}) {
        kind.description = description;
        EXPECT_TRUE(isVolume(writePages(2, kind))) << description;
    }
    kind.description = "a film";
    EXPECT_FALSE(isVolume(writePages(2, kind)));
    const Exhibit film = loadExhibits(writePages(3), "a", {}, nullptr).at(0);
    EXPECT_THAT(std::get<ImageExhibit>(film).pictures, SizeIs(3));
}

TEST_F(TiffReaderTest, ReadsColours)
{
    Kind kind;
    kind.numBits = 8;
    kind.numChannels = 3;
    const Volume volume = readTiffStack(writePages(2, kind), nullptr);
    EXPECT_EQ(volume.numChannels, 3u);
    EXPECT_TRUE(areOf<std::uint8_t>(volume));
    EXPECT_EQ(sizeOf(volume.times.at(0)), 360u);
}

TEST_F(TiffReaderTest, ReadsTimesAndSizesThatImageJSays)
{
    Kind kind;
    kind.description = "ImageJ=1.53\nimages=6\nslices=3\nframes=2\nunit=mm\nspacing=5\n";
    const Volume volume = readTiffStack(writePages(6, kind), nullptr);
    EXPECT_THAT(volume.grid.size, ElementsAre(20, 3, 3));
    EXPECT_EQ(volume.grid.spacing, Vector3d(0.25, 0.5, 5));
    ASSERT_THAT(volume.times, SizeIs(2));
    expectCounting(numbers(volume.times[1]), 180);
}

TEST_F(TiffReaderTest, RefusesWhatIsNoVolume)
{
    const auto errorOf = [this](const std::filesystem::path& file) {
        testing::internal::CaptureStderr();
        const std::string message = messageOf<InputError>([&] { readTiffStack(file, nullptr); });
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << message;
        return message;
    };
    EXPECT_EQ(errorOf(writePages(1)), "a.tif: has a single page, and a volume has several");
    EXPECT_EQ(errorOf(write("b.tif", "II*")), "b.tif: is no TIFF file that can be read");
    EXPECT_EQ(errorOf(directory() / "none.tif"), "none.tif: is no TIFF file that can be read");
    const std::filesystem::path file = writePages(3);
    std::ifstream stream(file, std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(stream), {}};
    constexpr std::size_t RESOLUTION = 40; // bytes at the end, without which all pixels are there
    for (std::size_t size = 0; size + RESOLUTION < whole.size(); size += 9)
        EXPECT_THAT(errorOf(write("b.tif", whole.substr(0, size))).substr(0, 7), "b.tif: ") << size;
}

TEST_F(TiffReaderTest, TellsHowFarItIsAndCanBeStopped)
{
    std::vector<double> parts;
    readTiffStack(writePages(4), [&](double part) {
        parts.push_back(part);
        return true;
    });
    EXPECT_THAT(parts, ElementsAre(0.25, 0.5, 0.75, 1));
    EXPECT_EQ(messageOf<InputError>([&] { readTiffStack(writePages(4), [](double) { return false; }); }),
        "a.tif: the reading was stopped");
}

} // namespace
} // namespace vireo_view
