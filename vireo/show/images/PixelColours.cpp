#include "vireo/show/images/PixelColours.h"

#include <QtEndian>
#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace tavo {

namespace {

constexpr QRgb OPAQUE = 0xff000000;

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

// A power of two by which numbers of a range are multiplied before they are subtracted, which loses none of their
// digits: neither the width of a range is infinite then nor its reciprocal, and with the numbers that floats can have
// they fit into floats.
double unitOf(double from, double to)
{
    constexpr int LEAST = -100;
    constexpr int GREATEST = std::numeric_limits<double>::max_exponent - 2;
    return std::ldexp(1, -std::clamp(std::ilogb(to / 2 - from / 2), LEAST, GREATEST));
}

// The colour of a pixel, whose three bytes are read together with the one that follows them.
struct RedFirst
{
    QRgb operator()(const std::uint8_t* bytes) const { return qFromBigEndian<QRgb>(bytes) >> 8 | OPAQUE; }
};
struct BlueFirst
{
    QRgb operator()(const std::uint8_t* bytes) const { return qFromLittleEndian<QRgb>(bytes) | OPAQUE; }
};

// Colours as they are. Nothing follows the last ones.
template <typename ColourOf>
void copyColours(const std::uint8_t* bytes, int channels, int count, QRgb* colours, ColourOf colourOf)
{
    for (int i = 0; i < count - 1; ++i)
        colours[i] = colourOf(bytes + std::ptrdiff_t(i) * channels);
    std::uint8_t last[4] = {};
    std::copy_n(bytes + std::ptrdiff_t(count - 1) * channels, 3, last);
    colours[count - 1] = colourOf(last);
}

} // namespace

PixelColours::PixelColours(const ImageLook& look)
    : m_Look(look)
    , m_Unit(unitOf(static_cast<double>(look.from), static_cast<double>(look.to)))
    , m_Scale(SIZE / (static_cast<double>(look.to) * m_Unit - static_cast<double>(look.from) * m_Unit))
    , m_IsPlain(look.from == 0 && look.to == 255 && look.gamma == 1 && !look.isSizeShown)
{
    const std::optional<ColourMap> map = findColourMap(look.colourMap);
    for (std::size_t i = 0; i < SIZE; ++i) {
        const double place = std::pow((double(i) + 0.5) / SIZE, 1 / look.gamma);
        m_Colours[i] = colourOf(map, place);
        m_Levels[i] = static_cast<unsigned char>(std::clamp(std::lround(255 * place), 0L, 255L));
    }
    std::fill(m_Colours.begin() + SIZE, m_Colours.end(), COLOUR_OF_INFINITY);
    m_Colours[ENTRY_OF_NAN] = COLOUR_OF_NAN;
    for (std::size_t i = 0; i < m_ColoursOfBytes.size(); ++i) {
        const long double from = look.from * m_Unit;
        const auto linear =
            static_cast<double>((static_cast<long double>(i) * m_Unit - from) / (look.to * m_Unit - from));
        const double place = std::pow(std::clamp(linear, 0.0, 1.0), 1 / look.gamma);
        m_ColoursOfBytes[i] = colourOf(map, place);
        m_LevelsOfBytes[i] = static_cast<unsigned char>(std::lround(255 * place));
    }
}

ColourMap PixelColours::map() const
{
    constexpr std::size_t STEP = SIZE / ColourMap::SIZE;
    ColourMap::Entries entries;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const QRgb colour = m_Colours[i * STEP];
        entries[i] = RGBA8(qRed(colour), qGreen(colour), qBlue(colour), 255);
    }
    return {ColourMap::Kind::SEQUENTIAL, entries};
}

// The entries of every few numbers, without a branch, so that the processor finds several at once.
template <typename T>
void PixelColours::findEntries(const T* numbers, int step, int count, int* entries) const
{
    // Doubles lack the last digits of integers of 64 bits.
    using Real =
        std::conditional_t<std::is_floating_point_v<T>, T, std::conditional_t<(sizeof(T) > 4), long double, double>>;
    const Real unit = static_cast<Real>(m_Unit);
    const Real from = static_cast<Real>(m_Look.from * m_Unit);
    Real scale = static_cast<Real>(m_Scale);
    if constexpr (std::is_same_v<Real, long double>)
        scale = SIZE / ((m_Look.to - m_Look.from) * unit);
    const Real last = SIZE - 1;
    const bool isSizeShown = m_Look.isSizeShown;
    const auto find = [=](auto constantStep) {
        for (int i = 0; i < count; ++i) {
            const auto number = static_cast<Real>(numbers[std::ptrdiff_t(i) * constantStep]);
            const Real value = isSizeShown ? std::abs(number) : number;
            const Real place = (value * unit - from) * scale;
            const Real above = place > 0 ? place : 0; // also of what is no number
            const int entry = static_cast<int>(above < last ? above : last);
            if constexpr (std::is_floating_point_v<T>)
                entries[i] = entry + (number - number == 0 ? 0 : SIZE) + (number == number ? 0 : SIZE);
            else
                entries[i] = entry;
        }
    };
    if (step == 1)
        find(std::integral_constant<int, 1>()); // which the compiler makes much of
    else
        find(step);
}

template <typename T>
void PixelColours::convertNumbers(const T* numbers, int step, int count, QRgb* colours) const
{
    int entries[CHUNK];
    findEntries(numbers, step, count, entries);
    for (int i = 0; i < count; ++i)
        colours[i] = m_Colours[static_cast<std::size_t>(entries[i])];
}

void PixelColours::convertNumbers(const std::uint8_t* numbers, int step, int count, QRgb* colours) const
{
    for (int i = 0; i < count; ++i)
        colours[i] = m_ColoursOfBytes[numbers[std::ptrdiff_t(i) * step]];
}

template <typename T>
void PixelColours::convertColours(const T* numbers, const ImagePixels& pixels, int count, QRgb* colours) const
{
    int entries[3][CHUNK];
    for (int channel = 0; channel < 3; ++channel)
        findEntries(numbers + pixels.placeOfChannel(channel), pixels.channels, count, entries[channel]);
    const auto level = [&](int channel, int i) { return m_Levels[static_cast<std::size_t>(entries[channel][i])]; };
    for (int i = 0; i < count; ++i) {
        const int worst = std::max({entries[0][i], entries[1][i], entries[2][i]});
        colours[i] = worst < static_cast<int>(SIZE) ? qRgb(level(0, i), level(1, i), level(2, i))
                                                    : m_Colours[static_cast<std::size_t>(worst)];
    }
}

void PixelColours::convertColours(
    const std::uint8_t* numbers, const ImagePixels& pixels, int count, QRgb* colours) const
{
    const int red = pixels.placeOfChannel(0);
    const int blue = pixels.placeOfChannel(2);
    if (m_IsPlain) {
        red == 0 ? copyColours(numbers, pixels.channels, count, colours, RedFirst())
                 : copyColours(numbers, pixels.channels, count, colours, BlueFirst());
    } else {
        for (int i = 0; i < count; ++i, numbers += pixels.channels)
            colours[i] =
                qRgb(m_LevelsOfBytes[numbers[red]], m_LevelsOfBytes[numbers[1]], m_LevelsOfBytes[numbers[blue]]);
    }
}

bool PixelColours::areShownAsTheyAre(const ImagePixels& pixels) const
{
    return m_IsPlain && m_Look.isColour() && pixels.numbers.getType() == NumberType::UInt8 && pixels.channels == 3 &&
           !pixels.isBgr && !pixels.isBottomUp && pixels.rowStride <= std::size_t(std::numeric_limits<int>::max());
}

void PixelColours::convert(const ImagePixels& pixels, int x, int y, int count, QRgb* colours) const
{
    const std::size_t first =
        pixels.indexOfRow(y) + static_cast<std::size_t>(x) * static_cast<std::size_t>(pixels.channels);
    pixels.numbers.visit([&](const auto* numbers, std::size_t) {
        for (int done = 0; done < count; done += CHUNK) {
            const auto* const from = numbers + first + std::ptrdiff_t(done) * pixels.channels;
            const int numPixels = std::min(CHUNK, count - done);
            if (m_Look.isColour())
                convertColours(from, pixels, numPixels, colours + done);
            else
                convertNumbers(from + pixels.placeOfChannel(std::min(m_Look.channel, pixels.channels - 1)),
                    pixels.channels, numPixels, colours + done);
        }
    });
}

} // namespace tavo
