#include "vireo/show/images/imageDifference.h"

#include <cmath>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>
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

bool areIntegers(const NumberArray& numbers)
{
    return numbers.visit(
        [](const auto* number, std::size_t) { return std::is_integral_v<std::decay_t<decltype(*number)>>; });
}

std::size_t numNumbers(const ImagePixels& pixels)
{
    return static_cast<std::size_t>(pixels.width) * static_cast<std::size_t>(pixels.height) *
           static_cast<std::size_t>(pixels.channels);
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
std::vector<T> differenceAs(const ImagePixels& pixels, const ImagePixels& other)
{
    std::vector<T> sums(numNumbers(pixels));
    add(pixels, T(1), sums);
    add(other, T(-1), sums);
    return sums;
}

// Doubles lack the last digits of large integers. What wraps around at 64 bits has them all, where the difference is
// not as large itself.
std::vector<double> differenceOfIntegers(const ImagePixels& pixels, const ImagePixels& other)
{
    constexpr double LARGE = 0x1p62;
    std::vector<double> differences = differenceAs<double>(pixels, other);
    const std::vector<std::uint64_t> wrapped = differenceAs<std::uint64_t>(pixels, other);
    for (std::size_t i = 0; i < differences.size(); ++i)
        if (std::abs(differences[i]) < LARGE)
            differences[i] = static_cast<double>(static_cast<std::int64_t>(wrapped[i]));
    return differences;
}

template <typename T>
NumberArray arrayOf(std::vector<T> numbers)
{
    const auto owner = std::make_shared<const std::vector<T>>(std::move(numbers));
    return {owner, owner->data(), owner->size(), numberTypeOf<T>()};
}

NumberArray differenceOf(const ImagePixels& pixels, const ImagePixels& other)
{
    if (!areLong(pixels.numbers) && !areLong(other.numbers))
        return arrayOf(differenceAs<float>(pixels, other));
    if (areIntegers(pixels.numbers) && areIntegers(other.numbers))
        return arrayOf(differenceOfIntegers(pixels, other));
    return arrayOf(differenceAs<double>(pixels, other));
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
    difference.numbers = differenceOf(pixels, other);
    return difference;
}

} // namespace tavo
