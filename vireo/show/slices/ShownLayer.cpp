#include "vireo/show/slices/ShownLayer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>
#include <type_traits>

#include "vireo/show/scenes/valueCounts.h"

namespace tavo {

namespace {

constexpr double LEFT_OUT = 0.005; // of the numbers, at each end

bool areOfSameKind(const SliceLayer& one, const SliceLayer& other)
{
    return one.grid.size == other.grid.size && one.samples.width == other.samples.width &&
           one.samples.numbers.getType() == other.samples.numbers.getType();
}

bool areFloats(const NumberArray& numbers)
{
    return numbers.visit(
        [](const auto* number, std::size_t) { return std::is_floating_point_v<std::decay_t<decltype(*number)>>; });
}

} // namespace

ShownLayer::ShownLayer(const char* colourMap, double opacity)
    : m_ColourMap(colourMap)
    , m_Opacity(opacity)
{}

void ShownLayer::send(const SliceLayer& layer)
{
    m_IsKept = m_IsKept && areOfSameKind(m_Layer, layer);
    m_Layer = layer;
    settle();
}

void ShownLayer::say(const SliceSettings& settings)
{
    m_Said.merge(settings);
    settle();
}

void ShownLayer::choose(const SliceSettings& choice)
{
    m_Choice = choice;
    settle();
}

void ShownLayer::refreshWindow()
{
    m_IsKept = false;
    settle();
}

double ShownLayer::opacity() const
{
    return m_Choice.opacity.value_or(m_Said.opacity.value_or(m_Opacity));
}

void ShownLayer::findWindow()
{
    constexpr double GREATEST = std::numeric_limits<double>::max();
    const NumberArray& numbers = m_Layer.samples.numbers;
    if (m_Layer.areColours())
        m_Automatic = {0, areFloats(numbers) ? 1 : 255};
    else
        m_Automatic = quantiles(numbers, LEFT_OUT, 1 - LEFT_OUT);
    if (m_Automatic.first == m_Automatic.second)
        m_Automatic = finiteRangeOf(numbers);
    m_IsKept = m_Automatic.first < m_Automatic.second;
    const double from = m_Automatic.first;
    if (!m_IsKept) // a window of a single number would have no place for it
        m_Automatic = from < GREATEST ? Range(from, std::max(from + 1, std::nextafter(from, GREATEST)))
                                      : Range(std::nextafter(from, 0), from);
}

void ShownLayer::settle()
{
    if (isEmpty())
        return;
    const std::optional<Range>& wanted = m_Choice.window ? m_Choice.window : m_Said.window;
    if (!wanted && !m_IsKept)
        findWindow();
    m_Look.channel = m_Layer.areColours() ? -1 : 0;
    std::tie(m_Look.from, m_Look.to) = wanted.value_or(m_Automatic);
    m_Look.colourMap = m_Choice.colourMap.value_or(m_Said.colourMap.value_or(m_ColourMap));
    if (!(m_Colours.look() == m_Look))
        m_Colours = PixelColours(m_Look);
}

} // namespace tavo
