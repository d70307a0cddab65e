#include "vireo/show/images/ImageModel.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

#include "vireo/show/images/imageDifference.h"

namespace tavo {

namespace {

bool areBytes(const NumberArray& numbers)
{
    return numbers.visit(
        [](const auto* number, std::size_t) { return std::is_same_v<std::decay_t<decltype(*number)>, std::uint8_t>; });
}

bool areFloats(const NumberArray& numbers)
{
    return numbers.visit(
        [](const auto* number, std::size_t) { return std::is_floating_point_v<std::decay_t<decltype(*number)>>; });
}

// A range of a single number would have no place for it.
ImageModel::Range opened(const ImageModel::Range& range)
{
    const auto [from, to] = range;
    if (from != to)
        return range;
    constexpr double GREATEST = std::numeric_limits<double>::max();
    if (from == GREATEST)
        return {std::nextafter(GREATEST, 0), from};
    return {from, std::max<long double>(from + 1, std::nextafter(static_cast<double>(from), GREATEST))};
}

} // namespace

void ImageModel::makeRoom()
{
    m_Pixels.numbers = {nullptr, nullptr, 0, m_Pixels.numbers.getType()}; // by which the range is kept
    m_Levels.setPixels({});
}

void ImageModel::apply(const ImageUpdate& update)
{
    m_Said.merge(update.settings);
    m_IsBgr = update.isBgr.value_or(m_IsBgr);
    m_IsBottomUp = update.isBottomUp.value_or(m_IsBottomUp);
    if (update.pixels && !areOfSameSize(*update.pixels))
        m_Kept.reset();
    setPixels(update.pixels.value_or(m_Pixels));
}

void ImageModel::setPixels(const ImagePixels& pixels)
{
    if (!areOfSameType(pixels))
        m_Kept.reset();
    m_Pixels = pixels;
    m_Pixels.isBgr = m_IsBgr;
    m_Pixels.isBottomUp = m_IsBottomUp;
    showPixels();
}

bool ImageModel::areOfSameSize(const ImagePixels& pixels) const
{
    return m_Pixels.width == pixels.width && m_Pixels.height == pixels.height;
}

bool ImageModel::areOfSameType(const ImagePixels& pixels) const
{
    return m_Pixels.channels == pixels.channels && areBytes(m_Pixels.numbers) == areBytes(pixels.numbers) &&
           areFloats(m_Pixels.numbers) == areFloats(pixels.numbers);
}

void ImageModel::setOther(const std::optional<ImagePixels>& other)
{
    m_Other = other;
    showPixels();
}

void ImageModel::showPixels()
{
    m_IsDifference = m_Other && haveDifference(m_Pixels, *m_Other);
    m_Levels.setPixels(m_IsDifference ? imageDifference(m_Pixels, *m_Other) : m_Pixels);
    settle();
}

void ImageModel::choose(const ImageSettings& choice)
{
    m_Choice = choice;
    settle();
}

void ImageModel::refreshRange()
{
    m_Kept.reset();
    settle();
}

int ImageModel::channel() const
{
    const ImagePixels& shown = m_Levels.pixels();
    const int all = shown.hasColours() ? -1 : 0;
    for (const std::optional<int>& wanted : {m_Choice.channel, m_Said.channel})
        if (wanted)
            return *wanted < shown.channels && *wanted >= 0 ? *wanted : all;
    return all;
}

ImageRange ImageModel::range() const
{
    return m_Choice.range.value_or(m_Said.range.value_or(ImageRange()));
}

ImageModel::Range ImageModel::automaticRange() const
{
    const ImagePixels& shown = m_Levels.pixels();
    const long double largest = std::max(std::abs(m_Statistics.least), std::abs(m_Statistics.greatest));
    if (m_IsDifference)
        return {m_Look.isSizeShown ? 0 : -largest, largest};
    if (areBytes(shown.numbers))
        return {0, 255};
    if (shown.hasColours() && areFloats(shown.numbers))
        return {0, 1};
    return {m_Statistics.least, m_Statistics.greatest};
}

ImageModel::Range ImageModel::wantedRange() const
{
    const ImageRange range = this->range();
    if (range.kind == ImageRange::Kind::Fixed)
        return {range.low, range.high};
    const bool isKept = m_Kept == Kept{range, m_Look.channel, m_IsDifference};
    const bool arePercentiles = range.kind == ImageRange::Kind::Percentiles;
    const Range before(m_Look.from, m_Look.to);
    if (isKept && (arePercentiles || !m_Statistics.hasNumbers))
        return before;
    if (arePercentiles)
        return percentilesOf(m_Levels.pixels(), m_Look.channel, range.low, range.high);
    const Range found = automaticRange();
    return isKept ? Range(std::min(before.first, found.first), std::max(before.second, found.second)) : found;
}

void ImageModel::settle()
{
    if (m_Levels.pixels().isEmpty())
        return;
    m_Look.channel = channel();
    m_Look.isSizeShown = m_IsDifference && m_Look.isColour();
    m_Look.gamma = m_Choice.gamma.value_or(m_Said.gamma.value_or(1));
    m_Look.colourMap = m_Choice.colourMap.value_or(m_Said.colourMap.value_or(m_IsDifference ? "blue-red" : ""));
    m_Statistics = areBytes(shownPixels().numbers) ? ImageStatistics{0, 255, 0, 0, true}
                                                   : imageStatistics(shownPixels(), m_Look.channel);
    const Range wanted = wantedRange();
    std::tie(m_Look.from, m_Look.to) = opened(wanted);
    m_Kept.reset();
    if (wanted.first != wanted.second)
        m_Kept = Kept{range(), m_Look.channel, m_IsDifference};
    if (!(m_Colours.look() == m_Look))
        m_Colours = PixelColours(m_Look);
}

} // namespace tavo
