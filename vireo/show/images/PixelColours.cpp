#include "vireo/show/images/PixelColours.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace tavo {

namespace {

// The colour of a place from 0 to 1.
QRgb colourOf(const std::optional<ColourMap>& map, double place)
{
    if (!map) {
        const int level = static_cast<int>(std::lround(255 * place));
        return qRgb(level, level, level);
    }
    const RGBA8 colour = map->sample(place);
    return qRgb(colour[0], colour[1], colour[2]);
}

} // namespace

PixelColours::PixelColours(const ImageLook& look)
    : m_Look(look)
    , m_Scale(SIZE / (look.to - look.from))
    , m_IsPlain(look.from == 0 && look.to == 255 && look.gamma == 1 && !look.isSizeShown)
{
    const std::optional<ColourMap> map = findColourMap(look.colourMap);
    for (std::size_t i = 0; i < SIZE; ++i) {
        const double place = std::pow((double(i) + 0.5) / SIZE, 1 / look.gamma);
        m_Colours[i] = colourOf(map, place);
        m_Levels[i] = static_cast<unsigned char>(std::clamp(std::lround(255 * place), 0L, 255L));
    }
    m_Colours[SIZE] = COLOUR_OF_NAN;
    m_Colours[SIZE + 1] = COLOUR_OF_INFINITY;
    m_Levels[SIZE] = m_Levels[SIZE + 1] = 0;
    for (std::size_t i = 0; i < m_ColoursOfBytes.size(); ++i) {
        const double place =
            std::pow(std::clamp((double(i) - look.from) / (look.to - look.from), 0.0, 1.0), 1 / look.gamma);
        m_ColoursOfBytes[i] = colourOf(map, place);
        m_LevelsOfBytes[i] = static_cast<unsigned char>(std::lround(255 * place));
    }
}

std::vector<RGBA8> PixelColours::mapColours() const
{
    std::vector<RGBA8> colours;
    for (std::size_t i = 0; i < SIZE; i += 4)
        colours.emplace_back(qRed(m_Colours[i]), qGreen(m_Colours[i]), qBlue(m_Colours[i]), 255);
    return colours;
}

template <typename T>
std::size_t PixelColours::entryOf(T number) const
{
    using Real = std::conditional_t<(sizeof(T) > 4 || std::is_integral_v<T>), double, T>;
    auto value = static_cast<Real>(number);
    if constexpr (std::is_floating_point_v<T>) {
        if (!(std::abs(value) <= std::numeric_limits<Real>::max()))
            return std::isnan(value) ? SIZE : SIZE + 1;
    }
    if (m_Look.isSizeShown)
        value = std::abs(value);
    const Real place = (value - static_cast<Real>(m_Look.from)) * static_cast<Real>(m_Scale);
    return static_cast<std::size_t>(static_cast<int>(std::clamp(place, Real(0), Real(SIZE - 1))));
}

template <typename T>
void PixelColours::convertNumbers(const T* numbers, const ImagePixels& pixels, int count, QRgb* colours) const
{
    const T* number = numbers + pixels.placeOfChannel(std::min(std::max(m_Look.channel, 0), pixels.channels - 1));
    for (int i = 0; i < count; ++i, number += pixels.channels) {
        if constexpr (std::is_same_v<T, std::uint8_t>)
            colours[i] = m_ColoursOfBytes[*number];
        else
            colours[i] = m_Colours[entryOf(*number)];
    }
}

template <typename T>
void PixelColours::convertColours(const T* numbers, const ImagePixels& pixels, int count, QRgb* colours) const
{
    const int red = pixels.placeOfChannel(0);
    const int blue = pixels.placeOfChannel(2);
    const int step = pixels.channels;
    for (int i = 0; i < count; ++i, numbers += step) {
        if constexpr (std::is_same_v<T, std::uint8_t>) {
            colours[i] = m_IsPlain ? qRgb(numbers[red], numbers[1], numbers[blue])
                                   : qRgb(m_LevelsOfBytes[numbers[red]], m_LevelsOfBytes[numbers[1]],
                                         m_LevelsOfBytes[numbers[blue]]);
        } else {
            const std::size_t r = entryOf(numbers[red]);
            const std::size_t g = entryOf(numbers[1]);
            const std::size_t b = entryOf(numbers[blue]);
            const std::size_t worst = std::max({r, g, b});
            colours[i] = worst < SIZE                          ? qRgb(m_Levels[r], m_Levels[g], m_Levels[b])
                         : r == SIZE || g == SIZE || b == SIZE ? COLOUR_OF_NAN
                                                               : COLOUR_OF_INFINITY;
        }
    }
}

void PixelColours::convert(const ImagePixels& pixels, int x, int y, int count, QRgb* colours) const
{
    const std::size_t first =
        pixels.indexOfRow(y) + static_cast<std::size_t>(x) * static_cast<std::size_t>(pixels.channels);
    pixels.numbers.visit([&](const auto* numbers, std::size_t) {
        if (m_Look.isColour())
            convertColours(numbers + first, pixels, count, colours);
        else
            convertNumbers(numbers + first, pixels, count, colours);
    });
}

} // namespace tavo
