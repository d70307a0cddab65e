#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "vireo/show/Export.h"
#include "vireo/show/Tuples.h"
#include "vireo/show/delivery/Statement.h"

namespace tavo {

class RGBAFloat32Image;
class RGBAImage;
struct ViewSlot;

/// Pixels of a call: numbers row after row, the channels of each pixel side by side, as Numbers takes them; or a range
/// of what TupleOf knows, such as a `std::vector<RGBA8>`. They are copied, and keep their type; of a vector that is
/// moved in, nothing is copied.
using Pixels = Tuples<1, 2, 3, 4>;

/// A handle of an image: pixels of the program in a view of the window, as they are. It is made by `image(name)`, is
/// small, and can be kept, copied and be a member; it may outlive the image and the window. All handles of one name are
/// the same image, in every thread.
///
///     #include <vireo/show/Image.h>
///
///     const std::vector<float> depths(640 * 480, 1.5f);
///     tavo::image("depth", depths, 640, 480).range(0.5, 8).colourMap("viridis");
///
/// Every operation may be called by any thread at any time, waits for nobody, throws nothing, and returns the handle.
/// What one statement sends is shown together; its last argument (see Statement) is left out. Sending again under a
/// name replaces the pixels; what was said of the image stays, and so does where the user looks. A mistake, such as
/// fewer pixels than the size calls for, or none that is finite, is a line in the log; what was shown stays.
/// `tavo::remove(name)` takes an image away.
class VIREO_SHOW_EXPORT Image
{
public:
    /// A handle of no image: nothing that is sent to it is shown.
    Image() = default;

    /// How many bytes after a row the next one begins, where rows do not follow each other directly. It is said in the
    /// statement that sends the pixels, right after them if they came by a pointer:
    ///
    ///     #include <vireo/show/Image.h>
    ///
    ///     const std::vector<unsigned char> padded(64 * 480);
    ///     tavo::image("mask", padded.data(), 61, 480).stride(64);
    Image stride(std::size_t bytes, const Statement& statement = Statement()) const;

    /// The first and the third channel are blue and red, and not red and blue.
    Image bgr(bool isBgr = true, const Statement& statement = Statement()) const;

    /// The first row is the lowest, as OpenGL has it.
    Image bottomUp(bool isBottomUp = true, const Statement& statement = Statement()) const;

    /// The numbers that are darkest and brightest, or have the first and the last colour of the map. By default they
    /// are 0 and 255 of bytes, 0 and 1 of colours in floating-point numbers, and of everything else the least and the
    /// greatest number so far.
    Image range(double from, double to, const Statement& statement = Statement()) const;

    /// The range is from the number below which that many per cent of all numbers lie, to the number below which so
    /// many do: percentiles(1, 99) leaves out the darkest and the brightest hundredth.
    Image percentiles(double low, double high, const Statement& statement = Statement()) const;

    /// The map from the numbers of one channel to colours, such as "viridis"; docs/images.md names them all. Without
    /// it, or with an empty name, what is darkest is black, what is brightest is white.
    Image colourMap(std::string_view name, const Statement& statement = Statement()) const;

    /// Above 1 what is dark gets brighter, below 1 darker.
    Image gamma(double gamma, const Statement& statement = Statement()) const;

    /// Shows one channel alone, counted from 0, by the colour map; or all of them together, with -1. Two channels are
    /// never shown together; without this, the first of them is shown.
    Image channel(int channel, const Statement& statement = Statement()) const;

    /// Sends one image of a stack, counted from 0, of which a person chooses the one that is shown; the other ones
    /// stay. They may be of different sizes. What sends the image itself replaces the whole stack.
    ///
    ///     #include <vireo/show/Image.h>
    ///
    ///     const std::vector<float> before(64 * 48, 1.0f);
    ///     const std::vector<float> after(64 * 48, 2.0f);
    ///     tavo::image("filter").layer(0, before, 64, 48).layer(1, after, 64, 48).layerNames({"before", "after"});
    Image layer(int index, const Pixels& pixels, std::int64_t width, std::int64_t height, int channels = 1,
        const Statement& statement = Statement()) const;

    /// What the images of a stack are called, from the first one on.
    Image layerNames(const std::vector<std::string>& names, const Statement& statement = Statement()) const;

    /// Shows the same part of both images, at the same magnification, and marks in both what the pointer is on.
    Image link(const Image& other, const Statement& statement = Statement()) const;

    /// Shows by how much the numbers are above those of another image of the same size, or, with an empty name, the
    /// image itself. Of colours the size of the difference is shown.
    Image difference(std::string_view name, const Statement& statement = Statement()) const;

protected:
    friend VIREO_SHOW_EXPORT Image image(std::string_view name);
    friend VIREO_SHOW_EXPORT Image image(std::string_view name, const Pixels& pixels, std::int64_t width,
        std::int64_t height, int channels, const Statement& statement);
    friend VIREO_SHOW_EXPORT Image imageStack(std::string_view name, const Pixels& pixels, std::int64_t width,
        std::int64_t height, std::int64_t count, int channels, const Statement& statement);

    // Rows of the program's memory.
    struct Rows
    {
        const void* data;
        NumberType type;
        std::size_t bytesOfNumber;
        std::int64_t width;
        std::int64_t height;
        int channels;
        std::size_t stride; // 0 if they follow each other
    };

    // Copies them, if they are right.
    void send(const Rows& rows) const;

    std::shared_ptr<ViewSlot> m_Slot;
};

/// What sends pixels by a pointer returns this, so that a stride can follow. Otherwise it is the image.
///
///     #include <vireo/show/Image.h>
///
///     const std::vector<float> padded(128 * 100);
///     tavo::SentImage(tavo::image("padded"), padded.data(), 100, 100, 1).stride(128 * sizeof(float));
class VIREO_SHOW_EXPORT SentImage : public Image
{
public:
    template <Number T>
    requires(sizeof(T) <= sizeof(double)) // wider ones are sent as a range
        SentImage(const Image& image, const T* pixels, std::int64_t width, std::int64_t height, int channels)
        : Image(image)
        , m_Rows{pixels, numberTypeOf<T>(), sizeof(T), width, height, channels, 0}
    {
        send(m_Rows);
    }

    /// See Image::stride().
    Image stride(std::size_t bytes, const Statement& statement = Statement()) &&;
    Image stride(std::size_t bytes, const Statement& = Statement()) const& { return Image::stride(bytes); }

private:
    Rows m_Rows;
};

/// The image of that name. It is in the window as soon as pixels are sent to it.
VIREO_SHOW_EXPORT Image image(std::string_view name);

/// Sends an image: `height` rows of `width` pixels, the top row first. Each pixel has 1 to 4 channels: one number; two;
/// red, green and blue; or these and opacity, which is shown as a channel of its own alone.
VIREO_SHOW_EXPORT Image image(std::string_view name, const Pixels& pixels, std::int64_t width, std::int64_t height,
    int channels = 1, const Statement& statement = Statement());

/// Sends a stack of `count` images of one size, one after the other, such as frames of a film or slices of a volume;
/// see Image::layer().
///
///     #include <vireo/show/Image.h>
///
///     const std::vector<float> frames(64 * 48 * 100);
///     tavo::imageStack("film", frames, 64, 48, 100);
VIREO_SHOW_EXPORT Image imageStack(std::string_view name, const Pixels& pixels, std::int64_t width, std::int64_t height,
    std::int64_t count, int channels = 1, const Statement& statement = Statement());

/// An image by a pointer to the first row, whose memory has as many pixels as that.
template <typename Pointer>
requires(std::is_pointer_v<Pointer>&& Number<std::remove_cv_t<std::remove_pointer_t<Pointer>>>) SentImage
    image(std::string_view name, const Pointer& pixels, std::int64_t width, std::int64_t height, int channels = 1,
        const Statement& = Statement())
{
    return SentImage(image(name), pixels, width, height, channels);
}

/// The pixels of the library's own images, row 0 at the top.
VIREO_SHOW_EXPORT Image image(
    std::string_view name, const RGBAImage& picture, const Statement& statement = Statement());
VIREO_SHOW_EXPORT Image image(std::string_view name, RGBAImage&& picture, const Statement& statement = Statement());
VIREO_SHOW_EXPORT Image image(
    std::string_view name, const RGBAFloat32Image& picture, const Statement& statement = Statement());
VIREO_SHOW_EXPORT Image image(
    std::string_view name, RGBAFloat32Image&& picture, const Statement& statement = Statement());

/// A QImage, whose header this one does not need.
template <typename Picture>
concept QtPicture = requires(const Picture& picture)
{
    picture.constBits();
    picture.bytesPerLine();
    picture.allGray();
    picture.pixelFormat().redSize();
    picture.convertToFormat(Picture::Format_RGBA8888);
};

/// The pixels of a QImage of any format: one channel if it is grey or a mask, otherwise red, green and blue, and
/// opacity where it has any. Numbers of more than 8 bits have 16.
template <QtPicture Picture>
Image image(std::string_view name, const Picture& picture, const Statement& = Statement())
{
    constexpr std::uint8_t BYTES = 0;
    constexpr std::uint16_t DEEP = 0;
    const auto send = [name](const Picture& shown, auto numbers, int channels) -> Image {
        const auto* const pixels = reinterpret_cast<const decltype(numbers)*>(shown.constBits());
        return image(name, pixels, shown.width(), shown.height(), channels)
            .stride(static_cast<std::size_t>(shown.bytesPerLine()));
    };
    const bool isDeep = picture.pixelFormat().redSize() > 8;
    if (picture.format() == Picture::Format_Alpha8)
        return send(picture, BYTES, 1);
    if (picture.format() == Picture::Format_Grayscale16)
        return send(picture, DEEP, 1);
    if (picture.hasAlphaChannel())
        return isDeep ? send(picture.convertToFormat(Picture::Format_RGBA64), DEEP, 4)
                      : send(picture.convertToFormat(Picture::Format_RGBA8888), BYTES, 4);
    if (picture.depth() <= 8 && picture.allGray())
        return send(picture.convertToFormat(Picture::Format_Grayscale8), BYTES, 1);
    if (!isDeep)
        return send(picture.convertToFormat(Picture::Format_RGB888), BYTES, 3);
    const Picture colours = picture.convertToFormat(Picture::Format_RGBX64); // whose fourth numbers are nothing
    std::vector<std::uint16_t> numbers;
    for (int y = 0; y < colours.height(); ++y) {
        const auto* pixel = reinterpret_cast<const std::uint16_t*>(colours.constScanLine(y));
        for (int x = 0; x < colours.width(); ++x, pixel += 4)
            numbers.insert(numbers.end(), pixel, pixel + 3);
    }
    return image(name, std::move(numbers), colours.width(), colours.height(), 3);
}

} // namespace tavo
