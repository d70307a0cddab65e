#include "apps/vireo-view/TiffImages.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <qfloat16.h>
#include <tiffio.h>
#include <type_traits>

#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

// The first thing that libtiff says of a file; it has no other way to tell why something failed.
thread_local std::string firstComplaint;

void keepComplaint(const char*, const char* format, va_list arguments)
{
    char text[200];
    std::vsnprintf(text, sizeof text, format, arguments);
    if (firstComplaint.empty())
        firstComplaint = text;
}

struct Closer
{
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using OpenTiff = std::unique_ptr<TIFF, Closer>;

OpenTiff open(const std::filesystem::path& file)
{
    TIFFSetErrorHandler(keepComplaint);
    TIFFSetWarningHandler(nullptr);
    firstComplaint.clear();
    OpenTiff tiff(TIFFOpen(file.string().c_str(), "rm")); // not mapped: it may be cut off while it is read
    if (!tiff)
        throw InputError(file, "is no TIFF that can be read: " + firstComplaint);
    return tiff;
}

template <typename T>
T field(TIFF& tiff, std::uint32_t tag)
{
    T value = 0;
    TIFFGetFieldDefaulted(&tiff, tag, &value);
    return value;
}

// What the numbers of a page mean. Where the page does not say it, its channels do.
std::uint16_t meaningOf(TIFF& tiff)
{
    std::uint16_t meaning = 0;
    if (TIFFGetField(&tiff, TIFFTAG_PHOTOMETRIC, &meaning) == 1)
        return meaning;
    return field<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL) < 3 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB;
}

// A page, as its tags describe it.
struct Page
{
    explicit Page(TIFF& tiff)
        : width(field<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH))
        , height(field<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH))
        , channels(field<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL))
        , bits(field<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE))
        , format(field<std::uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT))
        , meaning(meaningOf(tiff))
        , orientation(field<std::uint16_t>(tiff, TIFFTAG_ORIENTATION))
        , isSeparate(field<std::uint16_t>(tiff, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_SEPARATE)
    {}

    std::size_t bytes() const { return bits / 8u; }

    // Of its numbers; none if they have no type of their own. Numbers of 16 bits with a point are made floats.
    std::optional<NumberKind> kind() const
    {
        if (meaning != PHOTOMETRIC_MINISBLACK && meaning != PHOTOMETRIC_RGB && !isWhiteZero())
            return {};
        if (format == SAMPLEFORMAT_IEEEFP)
            return bits == 64                 ? std::optional(NumberKind::DOUBLE)
                   : bits == 32 || bits == 16 ? std::optional(NumberKind::FLOAT)
                                              : std::nullopt;
        if (format != SAMPLEFORMAT_UINT && format != SAMPLEFORMAT_INT && format != SAMPLEFORMAT_VOID)
            return {};
        const bool isSigned = format == SAMPLEFORMAT_INT;
        switch (bits) {
        case 8: return isSigned ? NumberKind::INT8 : NumberKind::UINT8;
        case 16: return isSigned ? NumberKind::INT16 : NumberKind::UINT16;
        case 32: return isSigned ? NumberKind::INT32 : NumberKind::UINT32;
        default: return {};
        }
    }

    // Whether the greatest number is black.
    bool isWhiteZero() const
    {
        return meaning == PHOTOMETRIC_MINISWHITE && channels == 1 && format == SAMPLEFORMAT_UINT;
    }

    bool isGrey() const { return meaning == PHOTOMETRIC_MINISWHITE || meaning == PHOTOMETRIC_MINISBLACK; }

    std::uint32_t width;
    std::uint32_t height;
    std::uint16_t channels;
    std::uint16_t bits;
    std::uint16_t format;
    std::uint16_t meaning;
    std::uint16_t orientation; // where the first row and the first column are
    bool isSeparate;           // the channels lie one after the other, not side by side
};

// Reads the numbers of a page, as bytes, into a picture of them.
class PageReader
{
public:
    PageReader(TIFF& tiff, const Page& page, const std::filesystem::path& file)
        : m_Tiff(tiff)
        , m_Page(page)
        , m_File(file)
        , m_BytesOfPixel(page.bytes() * page.channels)
        , m_Bytes(checkedSizeOfPicture(file, page.width, page.height, m_BytesOfPixel))
    {}

    std::vector<char> read()
    {
        const int numPlanes = m_Page.isSeparate ? m_Page.channels : 1;
        for (int plane = 0; plane < numPlanes; ++plane)
            TIFFIsTiled(&m_Tiff) != 0 ? readTiles(plane) : readRows(plane);
        return std::move(m_Bytes);
    }

private:
    [[noreturn]] void fail() const
    {
        throw InputError(m_File, firstComplaint.empty() ? "is a broken TIFF" : "is a broken TIFF: " + firstComplaint);
    }

    std::size_t bytesOfPiece() const { return m_Page.isSeparate ? m_Page.bytes() : m_BytesOfPixel; }

    // So many pixels, or one channel of them.
    void put(const char* from, std::uint32_t x, std::uint32_t y, std::uint32_t count, int plane)
    {
        char* to = m_Bytes.data() + (std::size_t(y) * m_Page.width + x) * m_BytesOfPixel +
                   static_cast<std::size_t>(plane) * m_Page.bytes();
        if (!m_Page.isSeparate) {
            std::memcpy(to, from, count * m_BytesOfPixel);
            return;
        }
        for (std::uint32_t i = 0; i < count; ++i)
            std::memcpy(to + i * m_BytesOfPixel, from + i * m_Page.bytes(), m_Page.bytes());
    }

    void readRows(int plane)
    {
        const std::size_t size = bytesOfPiece() * m_Page.width;
        if (TIFFScanlineSize64(&m_Tiff) != size)
            fail();
        std::vector<char> row(size);
        for (std::uint32_t y = 0; y < m_Page.height; ++y) {
            if (TIFFReadScanline(&m_Tiff, row.data(), y, static_cast<std::uint16_t>(plane)) != 1)
                fail();
            put(row.data(), 0, y, m_Page.width, plane);
        }
    }

    void readTiles(int plane)
    {
        constexpr std::uint64_t LARGEST = std::uint64_t(64) << 20; // of tiles
        const auto tileWidth = field<std::uint32_t>(m_Tiff, TIFFTAG_TILEWIDTH);
        const auto tileHeight = field<std::uint32_t>(m_Tiff, TIFFTAG_TILELENGTH);
        const std::uint64_t size = TIFFTileSize64(&m_Tiff);
        if (tileWidth == 0 || tileHeight == 0 || size > LARGEST || std::uint64_t(tileWidth) * tileHeight > LARGEST ||
            size != std::uint64_t(tileWidth) * tileHeight * bytesOfPiece())
            fail();
        std::vector<char> tile(size);
        for (std::uint64_t y = 0; y < m_Page.height; y += tileHeight)
            for (std::uint64_t x = 0; x < m_Page.width; x += tileWidth) {
                const auto left = static_cast<std::uint32_t>(x);
                const auto top = static_cast<std::uint32_t>(y);
                if (TIFFReadTile(&m_Tiff, tile.data(), left, top, 0, static_cast<std::uint16_t>(plane)) < 0)
                    fail();
                for (std::uint32_t row = 0; row < std::min(tileHeight, m_Page.height - top); ++row)
                    put(tile.data() + std::size_t(row) * tileWidth * bytesOfPiece(), left, top + row,
                        std::min(tileWidth, m_Page.width - left), plane);
            }
    }

    TIFF& m_Tiff;
    const Page& m_Page;
    const std::filesystem::path& m_File;
    std::size_t m_BytesOfPixel;
    std::vector<char> m_Bytes;
};

NumberColumn numbersOf(const std::vector<char>& bytes, const Page& page)
{
    if (page.format == SAMPLEFORMAT_IEEEFP && page.bits == 16) {
        std::vector<float> numbers(bytes.size() / sizeof(qfloat16));
        qFloatFromFloat16(
            numbers.data(), reinterpret_cast<const qfloat16*>(bytes.data()), static_cast<qsizetype>(numbers.size()));
        return numbers;
    }
    NumberColumn column = columnOf(*page.kind());
    std::visit(
        [&bytes](auto& numbers) {
            using Value = typename std::remove_reference_t<decltype(numbers)>::value_type;
            numbers.resize(bytes.size() / sizeof(Value));
            std::memcpy(numbers.data(), bytes.data(), numbers.size() * sizeof(Value));
        },
        column);
    return column;
}

// Pages of palettes, single bits and the like, as libtiff makes colours of them.
Picture readColours(TIFF& tiff, const Page& page, const std::filesystem::path& file)
{
    constexpr int MOST_CHANNELS = 4;
    std::uint16_t numExtra = 0;
    std::uint16_t* extra = nullptr;
    TIFFGetFieldDefaulted(&tiff, TIFFTAG_EXTRASAMPLES, &numExtra, &extra);
    const int channels = numExtra > 0 ? MOST_CHANNELS : page.isGrey() ? 1 : 3;
    std::vector<std::uint8_t> colours(checkedSizeOfPicture(file, page.width, page.height, MOST_CHANNELS));
    auto* const raster = reinterpret_cast<std::uint32_t*>(colours.data()); // bytes of red, green, blue and opacity
    if (TIFFReadRGBAImageOriented(&tiff, page.width, page.height, raster, page.orientation, 1) != 1)
        throw InputError(file, "has a page that cannot be shown: " + firstComplaint);
    std::size_t to = 0;
    for (std::size_t from = 0; from < colours.size(); from += MOST_CHANNELS)
        for (int channel = 0; channel < channels; ++channel)
            colours[to++] = colours[from + static_cast<std::size_t>(channel)];
    colours.resize(to);
    return {std::move(colours), static_cast<int>(page.width), static_cast<int>(page.height), channels};
}

// Numbers of which the greatest is white.
void invert(NumberColumn& column)
{
    std::visit(
        [](auto& numbers) {
            using Value = typename std::remove_reference_t<decltype(numbers)>::value_type;
            for (Value& number : numbers)
                number = static_cast<Value>(std::numeric_limits<Value>::max() - number);
        },
        column);
}

// As it is meant to be seen: the first row at the top, the first column at the left.
Picture upright(Picture picture, std::uint16_t orientation)
{
    if (orientation <= ORIENTATION_TOPLEFT || orientation > ORIENTATION_LEFTBOT)
        return picture;
    const bool areRowsColumns = orientation >= ORIENTATION_LEFTTOP;
    const bool areRowsReversed = orientation == ORIENTATION_BOTRIGHT || orientation == ORIENTATION_BOTLEFT ||
                                 orientation == ORIENTATION_RIGHTTOP || orientation == ORIENTATION_RIGHTBOT;
    const bool areColumnsReversed = orientation == ORIENTATION_TOPRIGHT || orientation == ORIENTATION_BOTRIGHT ||
                                    orientation == ORIENTATION_RIGHTBOT || orientation == ORIENTATION_LEFTBOT;
    const std::ptrdiff_t width = picture.width;
    const std::ptrdiff_t height = picture.height;
    const std::ptrdiff_t channels = picture.channels;
    std::visit(
        [&](auto& numbers) {
            std::decay_t<decltype(numbers)> turned(numbers.size());
            auto from = numbers.begin();
            for (std::ptrdiff_t row = 0; row < height; ++row)
                for (std::ptrdiff_t column = 0; column < width; ++column, from += channels) {
                    const std::ptrdiff_t down = areRowsReversed ? height - 1 - row : row;
                    const std::ptrdiff_t along = areColumnsReversed ? width - 1 - column : column;
                    const std::ptrdiff_t place = areRowsColumns ? along * height + down : down * width + along;
                    std::copy_n(from, channels, turned.begin() + place * channels);
                }
            numbers = std::move(turned);
        },
        picture.numbers);
    if (areRowsColumns)
        std::swap(picture.width, picture.height);
    return picture;
}

Picture readNumbers(TIFF& tiff, const Page& page, const std::filesystem::path& file)
{
    constexpr int MOST_CHANNELS = 4;
    if (page.channels < 1 || page.channels > MOST_CHANNELS)
        throw InputError(file, "has " + std::to_string(page.channels) + " channels; images have 1 to 4");
    const std::vector<char> bytes = PageReader(tiff, page, file).read();
    NumberColumn numbers = numbersOf(bytes, page);
    if (page.isWhiteZero())
        invert(numbers);
    return {std::move(numbers), static_cast<int>(page.width), static_cast<int>(page.height), page.channels};
}

Picture readPage(TIFF& tiff, const std::filesystem::path& file)
{
    const Page page(tiff);
    return upright(page.kind() ? readNumbers(tiff, page, file) : readColours(tiff, page, file), page.orientation);
}

} // namespace

std::vector<Picture> readTiffImages(const std::filesystem::path& file, const Progress& progress)
{
    constexpr std::size_t MOST_BYTES = std::size_t(4) << 30;
    const OpenTiff tiff = open(file);
    std::vector<Picture> pictures;
    std::size_t numBytes = 0;
    do {
        pictures.push_back(readPage(*tiff, file));
        numBytes += std::visit(
            [](const auto& numbers) { return numbers.size() * sizeof(numbers[0]); }, pictures.back().numbers);
        if (numBytes > MOST_BYTES || numBytes / 10'000 > std::filesystem::file_size(file) + (1u << 20))
            throw InputError(file, "has more pages than a file of its size can hold");
        if (progress && !progress(0))
            throw InputError(file, "the reading was stopped");
    } while (TIFFReadDirectory(tiff.get()) == 1);
    return pictures;
}

} // namespace vireo_view
