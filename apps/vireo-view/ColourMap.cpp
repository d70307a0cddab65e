#include "apps/vireo-view/ColourMap.h"

#include <algorithm>
#include <utility>

namespace vireo_view {

ColourMap::ColourMap(std::string_view name, std::vector<Stop> stops)
    : m_Name(name)
    , m_Stops(std::move(stops))
{}

tavo::Vector3f ColourMap::look(float part) const
{
    const auto above =
        std::find_if(m_Stops.begin(), m_Stops.end(), [part](const Stop& stop) { return stop.part > part; });
    if (above == m_Stops.begin())
        return above->colour;
    const Stop& below = *std::prev(above);
    if (above == m_Stops.end())
        return below.colour;
    return below.colour + (above->colour - below.colour) * ((part - below.part) / (above->part - below.part));
}

const std::vector<ColourMap>& colourMaps()
{
    static const std::vector<ColourMap> maps = {
        {"Grey", {{0.0f, {0, 0, 0}}, {1.0f, {1, 1, 1}}}},
        {"Hot", {{0.0f, {0, 0, 0}}, {0.375f, {1, 0, 0}}, {0.75f, {1, 1, 0}}, {1.0f, {1, 1, 1}}}},
        {"Bone",
            {{0.0f, {0, 0, 0}}, {0.375f, {0.328, 0.328, 0.453}}, {0.75f, {0.656, 0.781, 0.781}}, {1.0f, {1, 1, 1}}}},
        {"Copper", {{0.0f, {0, 0, 0}}, {0.8f, {1, 0.625, 0.398}}, {1.0f, {1, 0.781, 0.498}}}},
        {"Cold", {{0.0f, {0, 0, 0}}, {0.375f, {0, 0, 1}}, {0.75f, {0, 1, 1}}, {1.0f, {1, 1, 1}}}},
        {"Spectrum", {{0.0f, {0, 0, 1}}, {0.25f, {0, 1, 1}}, {0.5f, {0, 1, 0}}, {0.75f, {1, 1, 0}}, {1.0f, {1, 0, 0}}}},
    };
    return maps;
}

} // namespace vireo_view
