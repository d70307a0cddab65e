#include "vireo/show/images/imageDifference.h"

#include <memory>
#include <type_traits>
#include <vector>

#include "vireo/show/Numbers.h"

namespace tavo {

namespace {

bool areLong(const NumberArray& numbers)
{
    return numbers.visit([](const auto* number, std::size_t) {
        return sizeof(*number) > 4 || (sizeof(*number) == 4 && std::is_integral_v<std::decay_t<decltype(*number)>>);
    });
}

// Adds the numbers times `sign`.
template <typename T>
void add(const ImagePixels& pixels, T sign, std::vector<T>& sums)
{
    pixels.numbers.visit([&](const auto* numbers, std::size_t) {
        std::size_t i = 0;
        for (int y = 0; y < pixels.height; ++y) {
            const auto* number = numbers + pixels.indexOfRow(y);
            for (int x = 0; x < pixels.width; ++x, number += pixels.channels)
                for (int channel = 0; channel < pixels.channels; ++channel)
                    sums[i++] += sign * static_cast<T>(number[pixels.placeOfChannel(channel)]);
        }
    });
}

template <typename T>
NumberArray differenceAs(const ImagePixels& pixels, const ImagePixels& other)
{
    const auto sums = std::make_shared<std::vector<T>>(static_cast<std::size_t>(pixels.width) *
                                                       static_cast<std::size_t>(pixels.height) *
                                                       static_cast<std::size_t>(pixels.channels));
    add(pixels, T(1), *sums);
    add(other, T(-1), *sums);
    return {sums, sums->data(), sums->size(), numberTypeOf<T>()};
}

} // namespace

bool haveDifference(const ImagePixels& pixels, const ImagePixels& other)
{
    return !pixels.isEmpty() && pixels.width == other.width && pixels.height == other.height &&
           pixels.channels == other.channels;
}

ImagePixels imageDifference(const ImagePixels& pixels, const ImagePixels& other)
{
    ImagePixels difference = pixels;
    difference.isBgr = difference.isBottomUp = false;
    difference.rowStride = static_cast<std::size_t>(pixels.width) * static_cast<std::size_t>(pixels.channels);
    difference.numbers = areLong(pixels.numbers) || areLong(other.numbers) ? differenceAs<double>(pixels, other)
                                                                           : differenceAs<float>(pixels, other);
    return difference;
}

} // namespace tavo
