#include "vireo/show/Image.h"

#include <cmath>
#include <cstring>
#include <exception>
#include <sstream>
#include <string>
#include <utility>

#include "tavo/base/images/RGBAFloat32Image.h"
#include "tavo/base/images/RGBAImage.h"
#include "tavo/base/text/printable.h"
#include "vireo/show/colours/ColourMap.h"
#include "vireo/show/delivery/changeUpdate.h"
#include "vireo/show/delivery/nothingToSee.h"
#include "vireo/show/delivery/sayOnce.h"
#include "vireo/show/images/ImageUpdate.h"

namespace tavo {

namespace {

constexpr std::int64_t MOST_PIXELS = std::int64_t(1) << 29;
constexpr int MOST_CHANNELS = 4;
constexpr std::int64_t MOST_LAYERS = 65536;
constexpr const char* NO_MEMORY = "there is no memory for so many pixels";

template <typename Change>
void change(const ViewSlotPointer& slot, Change&& changeIt) noexcept
{
    changeUpdate<ImageUpdate>(slot, changeIt);
}

std::string textOf(double number)
{
    std::ostringstream text;
    text << number;
    return text.str();
}

// What is wrong with a call, which is said.
void refuse(const ViewSlotPointer& slot, const std::string& operation, const std::string& why) noexcept
{
    runGuarded([&] {
        sayOnce("image(\"" + printable(slot->name, 80) + "\")" + (operation.empty() ? "" : "." + operation) + ": " +
                why + "; what was shown stays");
    });
}

// What is wrong with a size; empty if nothing is.
std::string mistakeOfSize(std::int64_t width, std::int64_t height, int channels)
{
    const std::string size = std::to_string(width) + " x " + std::to_string(height) + " pixels";
    if (width <= 0 || height <= 0)
        return size + " are no image";
    if (width > MOST_PIXELS || height > MOST_PIXELS / width)
        return size + " are more than the " + std::to_string(MOST_PIXELS) + " that can be shown";
    if (channels < 1 || channels > MOST_CHANNELS)
        return "pixels have 1 to 4 channels, and not " + std::to_string(channels);
    return {};
}

std::size_t numbersInRow(std::int64_t width, int channels)
{
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(channels);
}

ImagePixels pixelsOf(const NumberArray& numbers, std::int64_t width, std::int64_t height, int channels)
{
    ImagePixels pixels;
    pixels.numbers = numbers;
    pixels.width = static_cast<int>(width);
    pixels.height = static_cast<int>(height);
    pixels.channels = channels;
    pixels.rowStride = numbersInRow(width, channels);
    return pixels;
}

// Up to the last number of the last row.
std::size_t numbersNeeded(const ImagePixels& pixels, std::size_t rowStride)
{
    return (static_cast<std::size_t>(pixels.height) - 1) * rowStride + numbersInRow(pixels.width, pixels.channels);
}

constexpr std::string_view PIXELS = ""; // all that the statement refuses has one name

void sendPixels(const ViewSlotPointer& slot, const ImagePixels& pixels)
{
    change(slot, [&](ImageUpdate& image) {
        image.pixels = pixels;
        image.layers.clear();
        noteWhetherRefused(slot, PIXELS, false);
    });
}

void refusePixels(const ViewSlotPointer& slot, const std::string& operation, const std::string& why) noexcept
{
    refuse(slot, operation, why);
    runGuarded([&] { noteWhetherRefused(slot, PIXELS, true); });
}

// What is wrong with pixels; empty if nothing is.
std::string mistakeOfPixels(
    const Pixels& pixels, std::int64_t width, std::int64_t height, std::int64_t count, int channels)
{
    const std::string mistake = mistakeOfSize(width, height, channels);
    if (!mistake.empty())
        return mistake;
    if (count <= 0 || count > MOST_LAYERS)
        return std::to_string(count) + " images are no stack, which has 1 to " + std::to_string(MOST_LAYERS);
    const std::string size =
        std::to_string(width) + " x " + std::to_string(height) + " pixels of " + std::to_string(channels) + " channels";
    const std::string all = count == 1 ? size : std::to_string(count) + " images of " + size;
    if (pixels.areTooMany())
        return NO_MEMORY;
    if (pixels.width() != 0 && pixels.width() != static_cast<std::size_t>(channels))
        return "elements of " + std::to_string(pixels.width()) + " numbers are no " + all;
    if (pixels.size() / (numbersInRow(width, channels) * static_cast<std::size_t>(height)) <
        static_cast<std::size_t>(count))
        return std::to_string(pixels.size()) + " numbers are too few for " + all;
    return whyNothingIsSeen({{&pixels, "pixels"}});
}

// One image of several that lie one after the other.
ImagePixels layerOf(const ImagePixels& all, std::int64_t layer)
{
    ImagePixels pixels = all;
    const std::size_t size = all.rowStride * static_cast<std::size_t>(all.height);
    all.numbers.visit([&](const auto* numbers, std::size_t) {
        pixels.numbers = NumberArray(
            all.numbers.getOwner(), numbers + size * static_cast<std::size_t>(layer), size, all.numbers.getType());
    });
    return pixels;
}

// What is wrong with a stride of pixels, so that it has been said.
std::string mistakeOfStride(std::size_t bytes, std::size_t bytesOfNumber, std::size_t numbersInARow)
{
    if (bytes < numbersInARow * bytesOfNumber)
        return "rows of " + std::to_string(numbersInARow * bytesOfNumber) + " bytes are longer than that";
    if (bytes % bytesOfNumber != 0)
        return "numbers of " + std::to_string(bytesOfNumber) + " bytes do not fit it";
    return {};
}

// The pixels that this statement sends do not come after all.
void dropPixels(const ViewSlotPointer& slot, std::size_t bytes, const std::string& mistake)
{
    change(slot, [](ImageUpdate& image) {
        image.pixels.reset();
        image.layers.clear();
    });
    refuse(slot, "stride(" + std::to_string(bytes) + ")", mistake);
}

std::size_t bytesOf(const NumberArray& numbers)
{
    return numbers.visit([](const auto* number, std::size_t) { return sizeof(*number); });
}

NumberArray copyOf(const std::byte* from, std::size_t stride, std::size_t bytesOfRow, std::size_t numRows,
    std::size_t bytesOfNumber, NumberType type)
{
    const std::shared_ptr<std::byte[]> copied(new std::byte[bytesOfRow * numRows]);
    if (stride == bytesOfRow) {
        std::memcpy(copied.get(), from, bytesOfRow * numRows);
    } else {
        for (std::size_t y = 0; y < numRows; ++y)
            std::memcpy(copied.get() + y * bytesOfRow, from + y * stride, bytesOfRow);
    }
    return {copied, copied.get(), bytesOfRow * numRows / bytesOfNumber, type};
}

// Whether pixels of an image of the library's can be shown, as they nearly always can.
Image sendPicture(std::string_view name, const Pixels& pixels, unsigned int width, unsigned int height)
{
    return image(name, pixels, width, height, 4);
}

} // namespace

Image image(std::string_view name)
{
    Image handle;
    if (!isShowOff())
        runGuarded([&] { handle.m_Slot = inbox::findSlot(ViewKind::Image, std::string(name)); });
    return handle;
}

Image image(std::string_view name, const Pixels& pixels, std::int64_t width, std::int64_t height, int channels,
    const Statement&)
{
    const Image handle = image(name);
    const ViewSlotPointer& slot = handle.m_Slot;
    if (!isSent(slot))
        return handle;
    const std::string mistake = mistakeOfPixels(pixels, width, height, 1, channels);
    if (mistake.empty())
        sendPixels(slot, pixelsOf(pixels, width, height, channels));
    else
        refusePixels(slot, "", mistake);
    return handle;
}

Image imageStack(std::string_view name, const Pixels& pixels, std::int64_t width, std::int64_t height,
    std::int64_t count, int channels, const Statement&)
{
    const Image handle = image(name);
    const ViewSlotPointer& slot = handle.m_Slot;
    if (!isSent(slot))
        return handle;
    const std::string mistake = mistakeOfPixels(pixels, width, height, count, channels);
    if (!mistake.empty()) {
        refusePixels(slot, "", mistake);
        return handle;
    }
    const ImagePixels all = pixelsOf(pixels, width, height, channels);
    sendPixels(slot, layerOf(all, 0));
    change(slot, [&](ImageUpdate& image) {
        for (std::int64_t i = 1; i < count; ++i)
            image.layers[static_cast<int>(i)] = layerOf(all, i);
    });
    return handle;
}

Image Image::layer(
    int index, const Pixels& pixels, std::int64_t width, std::int64_t height, int channels, const Statement&) const
{
    if (!isSent(m_Slot))
        return *this;
    std::string mistake = mistakeOfPixels(pixels, width, height, 1, channels);
    if (index < 0 || index >= MOST_LAYERS)
        mistake = "images of a stack are counted from 0 to " + std::to_string(MOST_LAYERS - 1);
    if (mistake.empty())
        change(m_Slot, [&](ImageUpdate& image) { image.layers[index] = pixelsOf(pixels, width, height, channels); });
    else
        refusePixels(m_Slot, "layer(" + std::to_string(index) + ")", mistake);
    return *this;
}

Image Image::layerNames(const std::vector<std::string>& names, const Statement&) const
{
    change(m_Slot, [&](ImageUpdate& image) { image.layerNames = names; });
    return *this;
}

void Image::send(const Rows& rows) const
{
    if (!isSent(m_Slot))
        return;
    std::string mistake = mistakeOfSize(rows.width, rows.height, rows.channels);
    if (mistake.empty() && !rows.data)
        mistake = "the pixels are a null pointer";
    if (!mistake.empty())
        return refusePixels(m_Slot, "", mistake);
    const std::size_t bytesOfRow = numbersInRow(rows.width, rows.channels) * rows.bytesOfNumber;
    const std::size_t stride = rows.stride != 0 ? rows.stride : bytesOfRow;
    try {
        const NumberArray numbers = copyOf(static_cast<const std::byte*>(rows.data), stride, bytesOfRow,
            static_cast<std::size_t>(rows.height), rows.bytesOfNumber, rows.type);
        mistake = whyNothingIsSeen({{&numbers, "pixels"}});
        if (!mistake.empty())
            return refusePixels(m_Slot, "", mistake);
        sendPixels(m_Slot, pixelsOf(numbers, rows.width, rows.height, rows.channels));
    } catch (const std::exception&) {
        refusePixels(m_Slot, "", NO_MEMORY);
    }
}

Image SentImage::stride(std::size_t bytes, const Statement&) &&
{
    if (!isSent(m_Slot) || !m_Rows.data || !mistakeOfSize(m_Rows.width, m_Rows.height, m_Rows.channels).empty())
        return *this;
    const std::size_t numbersInARow = numbersInRow(m_Rows.width, m_Rows.channels);
    std::string mistake = mistakeOfStride(bytes, 1, numbersInARow * m_Rows.bytesOfNumber);
    if (bytes > static_cast<std::size_t>(PTRDIFF_MAX / m_Rows.height))
        mistake = "no memory is so large";
    if (!mistake.empty()) {
        dropPixels(m_Slot, bytes, mistake);
    } else if (bytes != numbersInARow * m_Rows.bytesOfNumber) {
        m_Rows.stride = bytes;
        send(m_Rows);
    }
    return *this;
}

Image Image::stride(std::size_t bytes, const Statement&) const
{
    if (!isSent(m_Slot) || isRefused(m_Slot, PIXELS))
        return *this;
    change(m_Slot, [&](ImageUpdate& image) {
        if (!image.layers.empty())
            return dropPixels(m_Slot, bytes, "the rows of a stack follow each other directly");
        if (!image.pixels)
            return refuse(m_Slot, "stride(" + std::to_string(bytes) + ")", "it was not said with any pixels");
        ImagePixels& pixels = *image.pixels;
        const std::size_t bytesOfNumber = bytesOf(pixels.numbers);
        std::string mistake = mistakeOfStride(bytes, bytesOfNumber, numbersInRow(pixels.width, pixels.channels));
        const std::size_t rowStride = bytes / bytesOfNumber;
        const std::size_t numBetween = static_cast<std::size_t>(pixels.height) - 1;
        if (mistake.empty() && numBetween > 0 &&
            (rowStride > pixels.numbers.size() / numBetween ||
                numbersNeeded(pixels, rowStride) > pixels.numbers.size()))
            mistake = std::to_string(pixels.numbers.size()) + " numbers are too few for " +
                      std::to_string(pixels.height) + " such rows";
        pixels.rowStride = rowStride;
        if (!mistake.empty())
            dropPixels(m_Slot, bytes, mistake);
    });
    return *this;
}

Image Image::bgr(bool isBgr, const Statement&) const
{
    change(m_Slot, [=](ImageUpdate& image) { image.isBgr = isBgr; });
    return *this;
}

Image Image::bottomUp(bool isBottomUp, const Statement&) const
{
    change(m_Slot, [=](ImageUpdate& image) { image.isBottomUp = isBottomUp; });
    return *this;
}

Image Image::range(double from, double to, const Statement&) const
{
    if (!isSent(m_Slot))
        return *this;
    if (std::isfinite(from) && std::isfinite(to) && from != to)
        change(m_Slot, [=](ImageUpdate& image) {
            image.settings.range = ImageRange{ImageRange::Kind::Fixed, from, to};
        });
    else
        refuse(m_Slot, "range(" + textOf(from) + ", " + textOf(to) + ")", "a range goes from one number to another");
    return *this;
}

Image Image::percentiles(double low, double high, const Statement&) const
{
    if (!isSent(m_Slot))
        return *this;
    if (low >= 0 && low < high && high <= 100)
        change(m_Slot, [=](ImageUpdate& image) {
            image.settings.range = ImageRange{ImageRange::Kind::Percentiles, low, high};
        });
    else
        refuse(m_Slot, "percentiles(" + textOf(low) + ", " + textOf(high) + ")",
            "the second is greater than the first, and both are from 0 to 100");
    return *this;
}

Image Image::colourMap(std::string_view name, const Statement&) const
{
    if (!isSent(m_Slot))
        return *this;
    if (name.empty() || findColourMap(name))
        change(m_Slot, [&](ImageUpdate& image) { image.settings.colourMap = std::string(name); });
    else
        refuse(m_Slot, "colourMap(\"" + printable(name, 80) + "\")", whyNoColourMap(name));
    return *this;
}

Image Image::gamma(double gamma, const Statement&) const
{
    constexpr double LEAST = 0.01;
    constexpr double GREATEST = 100;
    if (!isSent(m_Slot))
        return *this;
    if (gamma >= LEAST && gamma <= GREATEST)
        change(m_Slot, [=](ImageUpdate& image) { image.settings.gamma = gamma; });
    else
        refuse(m_Slot, "gamma(" + textOf(gamma) + ")", "it goes from 0.01 to 100");
    return *this;
}

Image Image::channel(int channel, const Statement&) const
{
    if (!isSent(m_Slot))
        return *this;
    if (channel >= -1 && channel < MOST_CHANNELS)
        change(m_Slot, [=](ImageUpdate& image) { image.settings.channel = channel; });
    else
        refuse(m_Slot, "channel(" + std::to_string(channel) + ")", "there are 0 to 3, and -1 for all");
    return *this;
}

Image Image::link(const Image& other, const Statement&) const
{
    if (other.m_Slot)
        change(m_Slot, [&](ImageUpdate& image) { image.links.push_back(other.m_Slot->name); });
    return *this;
}

Image Image::difference(std::string_view name, const Statement&) const
{
    change(m_Slot, [&](ImageUpdate& image) { image.difference = std::string(name); });
    return *this;
}

Image image(std::string_view name, const RGBAImage& picture, const Statement&)
{
    return sendPicture(name, picture.getPixels(), picture.getWidth(), picture.getHeight());
}

Image image(std::string_view name, RGBAImage&& picture, const Statement&)
{
    return sendPicture(name, std::move(picture.getPixels()), picture.getWidth(), picture.getHeight());
}

Image image(std::string_view name, const RGBAFloat32Image& picture, const Statement&)
{
    return sendPicture(name, picture.getPixels(), picture.getWidth(), picture.getHeight());
}

Image image(std::string_view name, RGBAFloat32Image&& picture, const Statement&)
{
    return sendPicture(name, std::move(picture.getPixels()), picture.getWidth(), picture.getHeight());
}

} // namespace tavo
