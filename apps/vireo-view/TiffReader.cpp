#include "apps/vireo-view/TiffReader.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <tiffio.h>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/words.h"

namespace vireo_view {

namespace {

// What all pages have to have in common.
struct Page
{
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint16_t numBits = 1;
    std::uint16_t format = SAMPLEFORMAT_UINT;
    std::uint16_t numChannels = 1;

    bool operator==(const Page&) const = default;
    std::size_t numBytesOfPixel() const { return std::size_t{numChannels} * numBits / 8; }
    std::size_t numBytesOfRow() const { return width * numBytesOfPixel(); }
};

struct TiffCloser
{
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

// The number that ImageJ says of that name in its lines "name=number"; 0 if it says none.
double numberOfImageJ(std::string_view description, const std::string& name)
{
    const std::size_t at = description.find("\n" + name + "=");
    if (!description.starts_with("ImageJ=") || at == std::string_view::npos)
        return 0;
    std::string_view rest = description.substr(at + name.size() + 2);
    return numberOf(takeWord(rest)).value_or(0);
}

class StackReader
{
public:
    StackReader(const std::filesystem::path& file, const Progress& progress)
        : m_File(file)
        , m_Progress(progress)
    {
        // What they say on the standard error stream is said here in one line.
        TIFFSetErrorHandler(nullptr);
        TIFFSetWarningHandler(nullptr);
        std::error_code error;
        const bool isRegular = std::filesystem::is_regular_file(file, error);
        m_Tiff.reset(isRegular ? TIFFOpen(file.string().c_str(), "r") : nullptr);
        if (!m_Tiff)
            fail("is no TIFF file that can be read");
    }

    bool isStack()
    {
        m_Page = pageHere();
        return TIFFReadDirectory(m_Tiff.get()) == 1 && pageHere() == m_Page;
    }

    bool isOfImages()
    {
        constexpr std::size_t MOST_PAGES = 16;
        const std::string description = descriptionHere();
        if (description.starts_with("ImageJ=") || description.find("PhysicalSizeZ=") != std::string::npos)
            return false;
        std::size_t numPages = 1;
        while (numPages <= MOST_PAGES && TIFFReadDirectory(m_Tiff.get()) == 1)
            ++numPages;
        return numPages <= MOST_PAGES;
    }

    Volume read()
    {
        countPages();
        Volume volume;
        volume.numChannels = m_Page.numChannels;
        volume.grid.size = {static_cast<int>(m_Page.width), static_cast<int>(m_Page.height), numSlices()};
        placeVolume(volume.grid);
        for (std::size_t time = 0; time * numSlices() < m_NumPages; ++time)
            volume.times.push_back(readTime(time, numVoxels(m_File, volume.grid.size) * m_Page.numChannels));
        return volume;
    }

private:
    [[noreturn]] void fail(const std::string& reason) const { throw InputError(m_File, reason); }

    void countPages()
    {
        m_Page = pageHere();
        checkPage();
        for (m_NumPages = 1; TIFFLastDirectory(m_Tiff.get()) == 0; ++m_NumPages) {
            if (TIFFReadDirectory(m_Tiff.get()) == 0)
                fail("is damaged or ends behind page " + std::to_string(m_NumPages));
            if (pageHere() != m_Page)
                fail("has pages of different sizes or types, which are no volume");
        }
        if (m_NumPages == 1)
            fail("has a single page, and a volume has several");
        checkSize();
        TIFFSetDirectory(m_Tiff.get(), 0);
        m_Description = descriptionHere();
    }

    std::string descriptionHere() const
    {
        char* text = nullptr;
        const bool isThere = TIFFGetField(m_Tiff.get(), TIFFTAG_IMAGEDESCRIPTION, &text) == 1 && text;
        return isThere ? text : "";
    }

    Page pageHere() const
    {
        Page page;
        TIFFGetField(m_Tiff.get(), TIFFTAG_IMAGEWIDTH, &page.width);
        TIFFGetField(m_Tiff.get(), TIFFTAG_IMAGELENGTH, &page.height);
        TIFFGetFieldDefaulted(m_Tiff.get(), TIFFTAG_BITSPERSAMPLE, &page.numBits);
        TIFFGetFieldDefaulted(m_Tiff.get(), TIFFTAG_SAMPLEFORMAT, &page.format);
        TIFFGetFieldDefaulted(m_Tiff.get(), TIFFTAG_SAMPLESPERPIXEL, &page.numChannels);
        return page;
    }

    void checkPage() const
    {
        std::uint16_t planes = PLANARCONFIG_CONTIG, meaning = PHOTOMETRIC_MINISBLACK;
        TIFFGetFieldDefaulted(m_Tiff.get(), TIFFTAG_PLANARCONFIG, &planes);
        TIFFGetFieldDefaulted(m_Tiff.get(), TIFFTAG_PHOTOMETRIC, &meaning);
        const bool isGrey = meaning <= PHOTOMETRIC_MINISBLACK && m_Page.numChannels == 1;
        const bool isColour = meaning == PHOTOMETRIC_RGB && (m_Page.numChannels == 3 || m_Page.numChannels == 4);
        if ((!isGrey && !isColour) || (isColour && planes != PLANARCONFIG_CONTIG))
            fail("has pixels that are neither single numbers nor red, green and blue");
        constexpr auto MOST = std::uint32_t(std::numeric_limits<int>::max());
        if (m_Page.width == 0 || m_Page.height == 0 || m_Page.width > MOST || m_Page.height > MOST)
            fail("has pages of a size that cannot be");
        kind();
    }

    // Pages may share what they are made of, so that a small file promises many.
    void checkSize() const
    {
        constexpr std::uint64_t LARGEST_RATIO = 1 << 12; // no compression makes less of a page
        std::error_code error;
        const std::uint64_t most = std::filesystem::file_size(m_File, error) * LARGEST_RATIO;
        if (m_Page.numBytesOfRow() > most / m_Page.height / m_NumPages)
            fail("ends before its last voxel");
    }

    NumberKind kind() const
    {
        const bool isFloat = m_Page.format == SAMPLEFORMAT_IEEEFP;
        const bool isSigned = m_Page.format == SAMPLEFORMAT_INT;
        if (isFloat && (m_Page.numBits == 32 || m_Page.numBits == 64))
            return m_Page.numBits == 32 ? NumberKind::FLOAT : NumberKind::DOUBLE;
        if (isFloat || m_Page.format > SAMPLEFORMAT_VOID || m_Page.format == SAMPLEFORMAT_VOID)
            fail("has numbers of an unknown type");
        switch (m_Page.numBits) {
        case 8: return isSigned ? NumberKind::INT8 : NumberKind::UINT8;
        case 16: return isSigned ? NumberKind::INT16 : NumberKind::UINT16;
        case 32: return isSigned ? NumberKind::INT32 : NumberKind::UINT32;
        default: fail("has numbers of " + std::to_string(m_Page.numBits) + " bits, not of 8, 16 or 32");
        }
    }

    // Of each time.
    int numSlices() const
    {
        const double number = numberOfImageJ(m_Description, "slices");
        const double times = numberOfImageJ(m_Description, "frames");
        const bool fits = number >= 1 && times > 1 && number * times == static_cast<double>(m_NumPages);
        const bool isOnlyInTime = number == 0 && times == static_cast<double>(m_NumPages);
        return fits ? static_cast<int>(number) : isOnlyInTime ? 1 : static_cast<int>(m_NumPages);
    }

    void placeVolume(VoxelGrid& grid) const
    {
        const double spacing = numberOfImageJ(m_Description, "spacing");
        float perUnit[2] = {0, 0};
        TIFFGetField(m_Tiff.get(), TIFFTAG_XRESOLUTION, &perUnit[0]);
        TIFFGetField(m_Tiff.get(), TIFFTAG_YRESOLUTION, &perUnit[1]);
        if (!(spacing > 0) || !(perUnit[0] > 0) || !(perUnit[1] > 0))
            return;
        const std::array<tavo::Vector3d, 3> steps = {
            tavo::Vector3d(1.0 / perUnit[0], 0, 0), {0, 1.0 / perUnit[1], 0}, {0, 0, spacing}};
        grid = gridOfSteps(grid.size, steps, {}).value_or(grid);
    }

    NumberColumn readTime(std::size_t time, std::size_t count)
    {
        NumberColumn column = columnOf(kind());
        std::visit(
            [&](auto& values) {
                values.resize(count);
                auto* to = reinterpret_cast<unsigned char*>(values.data());
                const auto slices = static_cast<std::size_t>(numSlices());
                for (std::size_t i = time * slices; i < (time + 1) * slices; ++i) {
                    readPage(to);
                    to += m_Page.numBytesOfRow() * m_Page.height;
                    if (m_Progress && !m_Progress(static_cast<double>(i + 1) / static_cast<double>(m_NumPages)))
                        fail("the reading was stopped");
                    TIFFReadDirectory(m_Tiff.get());
                }
            },
            column);
        return column;
    }

    void readPage(unsigned char* to)
    {
        if (TIFFIsTiled(m_Tiff.get()) != 0)
            return readTiles(to);
        if (static_cast<std::size_t>(TIFFScanlineSize64(m_Tiff.get())) != m_Page.numBytesOfRow())
            fail("has rows of a size that cannot be");
        for (std::uint32_t y = 0; y < m_Page.height; ++y)
            if (TIFFReadScanline(m_Tiff.get(), to + y * m_Page.numBytesOfRow(), y, 0) < 0)
                fail("ends before its last voxel, or is damaged");
    }

    void readTiles(unsigned char* to)
    {
        std::uint32_t width = 0, height = 0;
        TIFFGetField(m_Tiff.get(), TIFFTAG_TILEWIDTH, &width);
        TIFFGetField(m_Tiff.get(), TIFFTAG_TILELENGTH, &height);
        const std::size_t rowOfTile = width * m_Page.numBytesOfPixel();
        constexpr std::size_t LARGEST_TILE = std::size_t{1} << 28;
        if (width == 0 || height == 0 || rowOfTile > LARGEST_TILE / height ||
            static_cast<std::size_t>(TIFFTileSize64(m_Tiff.get())) != rowOfTile * height)
            fail("has tiles of a size that cannot be");
        std::vector<unsigned char> tile(rowOfTile * height);
        for (std::uint32_t y = 0; y < m_Page.height; y += std::min(height, m_Page.height - y))
            for (std::uint32_t x = 0; x < m_Page.width; x += std::min(width, m_Page.width - x)) {
                if (TIFFReadTile(m_Tiff.get(), tile.data(), x, y, 0, 0) < 0)
                    fail("ends before its last voxel, or is damaged");
                const std::size_t numBytes = std::min(width, m_Page.width - x) * m_Page.numBytesOfPixel();
                for (std::uint32_t row = 0; row < std::min(height, m_Page.height - y); ++row)
                    std::memcpy(to + (y + row) * m_Page.numBytesOfRow() + x * m_Page.numBytesOfPixel(),
                        tile.data() + row * rowOfTile, numBytes);
            }
    }

    const std::filesystem::path& m_File;
    const Progress& m_Progress;
    std::unique_ptr<TIFF, TiffCloser> m_Tiff;
    Page m_Page;
    std::size_t m_NumPages = 0;
    std::string m_Description;
};

} // namespace

Volume readTiffStack(const std::filesystem::path& file, const Progress& progress)
{
    return StackReader(file, progress).read();
}

bool isTiffStack(const std::filesystem::path& file)
{
    try {
        const Progress nobodyAsks;
        return StackReader(file, nobodyAsks).isStack();
    } catch (const InputError&) {
        return false;
    }
}

bool isTiffOfImages(const std::filesystem::path& file)
{
    const Progress nobodyAsks;
    return StackReader(file, nobodyAsks).isOfImages();
}

} // namespace vireo_view
