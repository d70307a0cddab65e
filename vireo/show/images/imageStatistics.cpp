#include "vireo/show/images/imageStatistics.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>
#include <type_traits>
#include <vector>

namespace tavo {

namespace {

constexpr std::int64_t LARGEST_CHOICE = std::int64_t(1) << 22;

struct Channels
{
    int first;
    int count;
};

Channels channelsOf(const ImagePixels& pixels, int channel)
{
    if (channel < 0 && pixels.hasColours())
        return {0, 3};
    return {pixels.placeOfChannel(std::clamp(channel, 0, pixels.channels - 1)), 1};
}

// Calls `use(numbers)` for the numbers of every pixel, or every few, of which the channels' come first.
template <typename Use>
void forEachPixel(const ImagePixels& pixels, const Channels& channels, std::int64_t step, Use use)
{
    pixels.numbers.visit([&](const auto* numbers, std::size_t) {
        for (int y = 0; y < pixels.height; ++y) {
            const auto* const row = numbers + pixels.indexOfRow(y) + channels.first;
            const std::int64_t before = std::int64_t(y) * pixels.width;
            for (std::int64_t x = (step - before % step) % step; x < pixels.width; x += step)
                use(row + x * pixels.channels);
        }
    });
}

template <typename Use>
void forEachFinite(const ImagePixels& pixels, int channel, Use use)
{
    const Channels channels = channelsOf(pixels, channel);
    const std::int64_t size = std::int64_t(pixels.width) * pixels.height * channels.count;
    forEachPixel(pixels, channels, size / LARGEST_CHOICE + 1, [&](const auto* numbers) {
        for (int i = 0; i < channels.count; ++i)
            if (const auto value = static_cast<double>(numbers[i]); std::isfinite(value))
                use(value);
    });
}

// Least and greatest of the numbers of rows, several side by side, so that the processor takes several at once. Leaving
// out what is infinite takes it twice as long, and is only done where there is any.
template <typename T, bool IS_FINITE_ALONE>
class Extremes
{
public:
    Extremes()
    {
        std::fill_n(m_Least, LANES, std::numeric_limits<T>::max());
        std::fill_n(m_Greatest, LANES, std::numeric_limits<T>::lowest());
    }

    // Counts those that are left out, as what is no number always is.
    std::size_t include(const T* numbers, std::size_t count)
    {
        unsigned numLeftOut[LANES] = {};
        T least[LANES]; // of its own, of which the compiler knows that nothing else changes them
        T greatest[LANES];
        std::copy_n(m_Least, LANES, least);
        std::copy_n(m_Greatest, LANES, greatest);
        std::size_t i = 0;
        for (; i + LANES <= count; i += LANES)
            for (std::size_t lane = 0; lane < LANES; ++lane)
                includeOne(numbers[i + lane], least[lane], greatest[lane], numLeftOut[lane]);
        for (std::size_t lane = 0; i < count; ++i, ++lane)
            includeOne(numbers[i], least[lane], greatest[lane], numLeftOut[lane]);
        std::copy_n(least, LANES, m_Least);
        std::copy_n(greatest, LANES, m_Greatest);
        return std::accumulate(numLeftOut, numLeftOut + LANES, std::size_t(0));
    }

    bool areFinite() const
    {
        const auto isFinite = [](T number) { return std::isfinite(static_cast<double>(number)); };
        return std::all_of(m_Least, m_Least + LANES, isFinite) && std::all_of(m_Greatest, m_Greatest + LANES, isFinite);
    }

    // Of these channels, of so many that pixels have.
    void giveTo(ImageStatistics& statistics, const Channels& channels, int numChannels) const
    {
        T least = std::numeric_limits<T>::max();
        T greatest = std::numeric_limits<T>::lowest();
        for (int lane = 0; lane < static_cast<int>(LANES); ++lane)
            if (const int channel = lane % numChannels;
                channel >= channels.first && channel < channels.first + channels.count) {
                least = std::min(least, m_Least[lane]);
                greatest = std::max(greatest, m_Greatest[lane]);
            }
        if (least > greatest)
            return;
        statistics.least = static_cast<long double>(least);
        statistics.greatest = static_cast<long double>(greatest);
        statistics.hasNumbers = true;
    }

private:
    static constexpr std::size_t LANES = 24; // whole pixels, however many channels they have

    static bool isTaken(T number)
    {
        if constexpr (std::is_integral_v<T>)
            return true;
        else if constexpr (IS_FINITE_ALONE)
            return number - number == 0;
        else
            return number == number;
    }

    static void includeOne(T number, T& least, T& greatest, unsigned& numLeftOut)
    {
        const bool isOut = IS_FINITE_ALONE && !isTaken(number);
        const T low = isOut ? std::numeric_limits<T>::max() : number;
        const T high = isOut ? std::numeric_limits<T>::lowest() : number;
        least = low < least ? low : least; // never what is no number
        greatest = high > greatest ? high : greatest;
        numLeftOut += isTaken(number) ? 0 : 1;
    }

    T m_Least[LANES];
    T m_Greatest[LANES];
};

void countNonFinite(const ImagePixels& pixels, const Channels& channels, ImageStatistics& statistics)
{
    forEachPixel(pixels, channels, 1, [&](const auto* numbers) {
        bool isNaN = false;
        bool isInfinite = false;
        for (int i = 0; i < channels.count; ++i) {
            isNaN = isNaN || std::isnan(static_cast<double>(numbers[i]));
            isInfinite = isInfinite || std::isinf(static_cast<double>(numbers[i]));
        }
        statistics.numNaN += isNaN ? 1 : 0;
        statistics.numInfinite += isInfinite && !isNaN ? 1 : 0;
    });
}

} // namespace

ImageStatistics imageStatistics(const ImagePixels& pixels, int channel)
{
    ImageStatistics statistics;
    const Channels channels = channelsOf(pixels, channel);
    pixels.numbers.visit([&](const auto* numbers, std::size_t) {
        using T = std::remove_const_t<std::remove_pointer_t<decltype(numbers)>>;
        const auto include = [&](auto& extremes) {
            std::size_t numLeftOut = 0;
            for (int y = 0; y < pixels.height; ++y)
                numLeftOut += extremes.include(numbers + pixels.indexOfRow(y),
                    static_cast<std::size_t>(pixels.width) * static_cast<std::size_t>(pixels.channels));
            extremes.giveTo(statistics, channels, pixels.channels);
            return numLeftOut;
        };
        Extremes<T, false> ofAll;
        if (include(ofAll) == 0 && ofAll.areFinite())
            return;
        statistics = {};
        Extremes<T, true> ofFinite;
        include(ofFinite);
        countNonFinite(pixels, channels, statistics);
    });
    return statistics;
}

ValueCounts countPixels(const ImagePixels& pixels, int channel, const ImageStatistics& statistics)
{
    ValueCounts result;
    const double least = result.least = static_cast<double>(statistics.least);
    const double greatest = result.greatest = static_cast<double>(statistics.greatest);
    const double scale = greatest > least ? ValueCounts::SIZE / (greatest / 2 - least / 2) : 0;
    forEachFinite(pixels, channel, [&](double value) {
        const double place = greatest > least ? (value / 2 - least / 2) * scale : ValueCounts::SIZE / 2.0;
        ++result.counts[std::min(static_cast<std::size_t>(place), ValueCounts::SIZE - 1)];
    });
    return result;
}

std::pair<double, double> percentilesOf(const ImagePixels& pixels, int channel, double low, double high)
{
    std::vector<double> values;
    forEachFinite(pixels, channel, [&values](double value) { values.push_back(value); });
    if (values.empty())
        return {0, 0};
    const auto at = [&values](double percent) {
        const auto place = values.begin() + std::lround(percent / 100 * (double(values.size()) - 1));
        std::nth_element(values.begin(), place, values.end());
        return *place;
    };
    const double from = at(low);
    return {from, at(high)};
}

} // namespace tavo
