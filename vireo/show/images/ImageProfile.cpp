#include "vireo/show/images/ImageProfile.h"

#include <algorithm>
#include <cmath>

#include "vireo/show/Plot.h"
#include "vireo/show/show.h"

namespace tavo {

namespace {

struct Profile
{
    std::vector<double> distances;
    std::vector<double> values;
};

// A sample for each pixel of length, of the pixel that it is in.
Profile profileOf(const ImagePixels& pixels, const QLineF& line, int channel)
{
    Profile profile;
    const int last = std::max(static_cast<int>(std::lround(line.length())), 1);
    for (int i = 0; i <= last; ++i) {
        const QPointF point = line.pointAt(double(i) / last);
        const int x = static_cast<int>(std::floor(point.x()));
        const int y = static_cast<int>(std::floor(point.y()));
        if (!pixels.isInside(x, y))
            continue;
        profile.distances.push_back(line.length() * i / last);
        profile.values.push_back(pixels.at(x, y, channel));
    }
    return profile;
}

struct ChannelLook
{
    const char* name;
    RGBA8 colour;
};

constexpr int NUM_COLOURS = 4;

ChannelLook lookOf(const ImagePixels& pixels, int channel)
{
    const ChannelLook looks[NUM_COLOURS] = {{"red", RGBA8(204, 51, 51, 255)}, {"green", RGBA8(51, 153, 51, 255)},
        {"blue", RGBA8(51, 102, 204, 255)}, {"opacity", RGBA8(128, 128, 128, 255)}};
    const char* const names[] = {"first", "second"};
    if (pixels.hasColours())
        return looks[channel];
    return {pixels.channels == 1 ? "value" : names[channel], looks[2 - 2 * channel].colour};
}

} // namespace

void ImageProfile::setLine(const QLineF& line, const ImagePixels& pixels)
{
    m_Line = line;
    follow(pixels);
}

bool ImageProfile::clear()
{
    if (!m_Line)
        return false;
    m_Line.reset();
    tavo::remove(m_NameOfPlot);
    return true;
}

void ImageProfile::follow(const ImagePixels& pixels) const
{
    if (!m_Line || pixels.isEmpty())
        return;
    const Statement together;
    const Plot plot = tavo::plot(m_NameOfPlot).xAxis("distance", "px");
    for (int channel = 0; channel < pixels.channels; ++channel) {
        const ChannelLook look = lookOf(pixels, channel);
        Profile profile = profileOf(pixels, *m_Line, channel);
        plot.curve(look.name, std::move(profile.distances), std::move(profile.values)).colour(look.name, look.colour);
    }
}

} // namespace tavo
