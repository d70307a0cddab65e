#include "apps/vireo-view/ImageReader.h"

#include <QImageReader>
#include <bit>
#include <cmath>
#include <cstring>
#include <istream>
#include <new>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/PnmReader.h"
#include "apps/vireo-view/checkJpeg.h"
#include "apps/vireo-view/openPng.h"
#include "apps/vireo-view/words.h"
#ifdef VIREO_HAVE_TIFF
#include "apps/vireo-view/TiffImages.h"
#endif

namespace vireo_view {

namespace {

constexpr std::uint64_t MOST_PIXELS = std::uint64_t(1) << 29; // that can be shown

std::string sizeText(std::uint64_t width, std::uint64_t height)
{
    return std::to_string(width) + " x " + std::to_string(height) + " pixels";
}

void tell(const std::filesystem::path& file, const Progress& progress, double part)
{
    if (progress && !progress(part))
        throw InputError(file, "the reading was stopped");
}

template <typename T>
std::vector<T> numbersOf(const QImage& image, int numbersInRow)
{
    std::vector<T> numbers(static_cast<std::size_t>(numbersInRow) * static_cast<std::size_t>(image.height()));
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(numbers.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(numbersInRow),
            image.constScanLine(y), static_cast<std::size_t>(numbersInRow) * sizeof(T));
    return numbers;
}

template <typename T>
Picture pictureAs(const QImage& image, QImage::Format format, int channels)
{
    const QImage converted = image.convertToFormat(format);
    if (converted.isNull())
        throw std::bad_alloc();
    return {numbersOf<T>(converted, converted.width() * channels), converted.width(), converted.height(), channels};
}

// Qt gives colours of 16 bits an opacity, which is left out where there is none.
Picture pictureOf16Bits(const QImage& image)
{
    Picture picture = pictureAs<std::uint16_t>(image, QImage::Format_RGBA64, 4);
    if (image.hasAlphaChannel())
        return picture;
    auto& numbers = std::get<std::vector<std::uint16_t>>(picture.numbers);
    std::size_t to = 0;
    for (std::size_t from = 0; from < numbers.size(); from += 4)
        for (std::size_t i = 0; i < 3; ++i)
            numbers[to++] = numbers[from + i];
    numbers.resize(to);
    picture.channels = 3;
    return picture;
}

Picture pictureOf(const QImage& image)
{
    if (image.format() == QImage::Format_Grayscale16)
        return pictureAs<std::uint16_t>(image, QImage::Format_Grayscale16, 1);
    if (image.depth() == 64)
        return pictureOf16Bits(image);
    if (image.hasAlphaChannel())
        return pictureAs<std::uint8_t>(image, QImage::Format_RGBA8888, 4);
    if (image.depth() <= 8 && image.allGray())
        return pictureAs<std::uint8_t>(image, QImage::Format_Grayscale8, 1);
    return pictureAs<std::uint8_t>(image, QImage::Format_RGB888, 3);
}

// Drawings such as SVG are on white, as on paper: their black lines would be on black.
QImage readFrame(QImageReader& reader)
{
    if (!reader.supportsOption(QImageIOHandler::BackgroundColor))
        return reader.read();
    reader.setBackgroundColor(Qt::white);
    return reader.read().convertToFormat(QImage::Format_RGB32);
}

std::vector<Picture> readWithQt(QImageReader& reader, const std::filesystem::path& file, const Progress& progress)
{
    constexpr std::uint64_t BYTES_PER_PIXEL = 4;
    constexpr std::uint64_t MOST_BYTES = std::uint64_t(2) << 30;
    reader.setAutoTransform(true);
    std::vector<Picture> pictures;
    std::uint64_t numBytes = 0;
    do {
        const QSize size = reader.size();
        if (!size.isEmpty())
            numBytes += checkedSizeOfPicture(file, static_cast<std::uint64_t>(size.width()),
                static_cast<std::uint64_t>(size.height()), BYTES_PER_PIXEL);
        if (numBytes > MOST_BYTES)
            throw InputError(file, "has more frames than there is memory for");
        const QImage image = readFrame(reader);
        if (image.isNull() && pictures.empty())
            throw InputError(file, "is no image that can be read: " + reader.errorString().toStdString());
        if (!image.isNull())
            pictures.push_back(pictureOf(image));
        tell(file, progress, 1);
    } while (reader.supportsAnimation() && reader.canRead());
    return pictures;
}

std::vector<Picture> readWithQt(const std::filesystem::path& file, const Progress& progress)
{
    QImageReader reader(QString::fromStdU16String(file.u16string()));
    return readWithQt(reader, file, progress);
}

std::vector<Picture> readPng(const std::filesystem::path& file, const Progress& progress)
{
    const std::unique_ptr<QIODevice> png = openPng(file);
    QImageReader reader(png.get(), "png");
    return readWithQt(reader, file, progress);
}

// The words of the head of a PFM, which a single blank follows.
std::string headOfPfm(std::istream& stream)
{
    constexpr int NUM_WORDS = 4;
    constexpr std::size_t LONGEST = 200;
    std::string head;
    int numWords = 0;
    for (int c = stream.get(); c != std::istream::traits_type::eof() && head.size() < LONGEST; c = stream.get()) {
        const bool isBlank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
        if (isBlank && !head.empty() && head.back() != ' ' && ++numWords == NUM_WORDS)
            return head;
        if (!isBlank || (!head.empty() && head.back() != ' '))
            head += isBlank ? ' ' : static_cast<char>(c);
    }
    return {};
}

std::vector<float> readFloats(std::istream& stream, std::size_t count, bool isSwapped)
{
    std::vector<float> numbers(count);
    stream.read(reinterpret_cast<char*>(numbers.data()), static_cast<std::streamsize>(count * sizeof(float)));
    for (float& number : numbers)
        number = static_cast<float>(decodeNumber(NumberKind::FLOAT, reinterpret_cast<const char*>(&number), isSwapped));
    return numbers;
}

// "PF" or "Pf", the width, the height, and a number whose sign tells the order of bytes; then the lowest row.
Picture readPfm(const std::filesystem::path& file, const Progress& progress)
{
    InputBuffer buffer(file, InputBuffer::LineEnds::AS_THEY_ARE, progress);
    std::istream stream(&buffer);
    const std::string head = headOfPfm(stream);
    std::string_view words(head);
    const std::string_view kind = takeWord(words);
    const auto width = numberOf(takeWord(words));
    const auto height = numberOf(takeWord(words));
    const auto order = numberOf(takeWord(words));
    const auto isSize = [](const std::optional<double>& number) {
        return number && *number >= 1 && *number <= double(MOST_PIXELS) && *number == std::floor(*number);
    };
    if ((kind != "PF" && kind != "Pf") || !isSize(width) || !isSize(height) || !order || !(std::abs(*order) > 0))
        throw InputError(file, "does not begin as a PFM does: with PF or Pf, its width, its height and its order");
    Picture picture;
    picture.channels = kind == "PF" ? 3 : 1;
    const std::size_t size = checkedSizeOfPicture(file, static_cast<std::uint64_t>(*width),
        static_cast<std::uint64_t>(*height), sizeof(float) * static_cast<std::uint64_t>(picture.channels));
    if (buffer.getRemainingSize() < size)
        throw InputError(file, "ends before its last row");
    picture.width = static_cast<int>(*width);
    picture.height = static_cast<int>(*height);
    const bool isBigHere = std::endian::native == std::endian::big;
    std::vector<float> numbers = readFloats(stream, size / sizeof(float), (*order > 0) != isBigHere);
    buffer.checkEnd();
    const auto row = static_cast<std::ptrdiff_t>(picture.width) * picture.channels;
    for (int y = 0; y < picture.height / 2; ++y)
        std::swap_ranges(numbers.begin() + y * row, numbers.begin() + (y + 1) * row, numbers.end() - (y + 1) * row);
    picture.numbers = std::move(numbers);
    return picture;
}

std::string firstBytes(const std::filesystem::path& file)
{
    constexpr std::streamsize COUNT = 6;
    InputBuffer buffer(file, InputBuffer::LineEnds::AS_THEY_ARE, nullptr);
    std::string bytes(COUNT, '\0');
    bytes.resize(static_cast<std::size_t>(buffer.sgetn(bytes.data(), COUNT)));
    buffer.checkEnd();
    return bytes;
}

// A BMP says behind its two letters how large it is. Qt shows what happens to be in memory for what is cut off.
void checkBmp(const std::filesystem::path& file, const std::string& beginning)
{
    std::uint32_t size = 0;
    for (std::size_t i = beginning.size() - 1; i >= 2; --i)
        size = size << 8 | static_cast<unsigned char>(beginning[i]);
    if (size > std::filesystem::file_size(file))
        throw InputError(file, "is a BMP that ends too early");
}

std::vector<Picture> readTiffIfThereIsAReader(const std::filesystem::path& file, const Progress& progress)
{
#ifdef VIREO_HAVE_TIFF
    return readTiffImages(file, progress);
#else
    return readWithQt(file, progress);
#endif
}

} // namespace

std::size_t checkedSizeOfPicture(
    const std::filesystem::path& file, std::uint64_t width, std::uint64_t height, std::uint64_t bytesPerPixel)
{
    constexpr std::uint64_t ALWAYS = std::uint64_t(256) << 20; // as blank pages may have
    constexpr std::uint64_t MOST_PER_BYTE = 10'000;            // of what is compressed
    if (width == 0 || height == 0)
        throw InputError(file, "has " + sizeText(width, height));
    if (width > MOST_PIXELS || height > MOST_PIXELS / width)
        throw InputError(
            file, "has " + sizeText(width, height) + ", more than the " + std::to_string(MOST_PIXELS) + " of an image");
    const std::uint64_t numBytes = width * height * bytesPerPixel;
    if (numBytes > ALWAYS && numBytes / MOST_PER_BYTE > std::filesystem::file_size(file))
        throw InputError(file, "claims " + sizeText(width, height) + ", which a file of its size cannot hold");
    return static_cast<std::size_t>(numBytes);
}

std::vector<Picture> readImages(const std::filesystem::path& file, const Progress& progress)
{
    const std::string beginning = firstBytes(file);
    std::vector<Picture> pictures;
    if (beginning.starts_with("PF") || beginning.starts_with("Pf"))
        pictures.push_back(readPfm(file, progress));
    else if (beginsLikePnm(beginning))
        if (auto picture = readPnm(file, progress))
            pictures.push_back(std::move(*picture));
    if (!pictures.empty())
        return pictures;
    if (beginning.starts_with("II") || beginning.starts_with("MM"))
        return readTiffIfThereIsAReader(file, progress);
    if (beginning.starts_with("\x89PNG"))
        return readPng(file, progress);
    if (beginning.starts_with("\xFF\xD8\xFF"))
        checkJpeg(file);
    if (beginning.starts_with("BM"))
        checkBmp(file, beginning);
    return readWithQt(file, progress);
}

} // namespace vireo_view
