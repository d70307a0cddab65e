#include "apps/vireo-view/TransferFunction.h"

#include <algorithm>
#include <cmath>

namespace vireo_view {

namespace {

unsigned char toByte(double part)
{
    constexpr double LARGEST = 255;
    return static_cast<unsigned char>(std::lround(std::clamp(part, 0.0, 1.0) * LARGEST));
}

} // namespace

TransferFunction::TransferFunction(const Histogram& histogram)
{
    if (histogram.getSpan().isEmpty())
        return;
    constexpr double ALMOST_ALL = 0.99;
    const double lower = histogram.getMean();
    const double upper = std::max(lower, histogram.getQuantile(ALMOST_ALL));
    m_Window = upper - lower;
    m_Level = lower + m_Window / 2;
}

void TransferFunction::setColourMap(std::size_t index)
{
    if (index < colourMaps().size())
        m_ColourMap = index;
}

double TransferFunction::partAt(double density) const
{
    if (std::isnan(density))
        return 0;
    if (m_Window <= 0)
        return density >= m_Level ? 1 : 0;
    return std::clamp((density - m_Level) / m_Window + 0.5, 0.0, 1.0);
}

tavo::RGBA8 TransferFunction::look(double density) const
{
    const double part = partAt(density);
    const tavo::Vector3f colour = colourMaps()[m_ColourMap].look(static_cast<float>(part));
    return {toByte(colour[0]), toByte(colour[1]), toByte(colour[2]), toByte(part * m_Opacity)};
}

} // namespace vireo_view
