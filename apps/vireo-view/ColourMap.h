#pragma once

#include <string_view>
#include <vector>

#include "tavo/base/math/vectors.h"

namespace vireo_view {

// Colours for values from 0 to 1: those of its stops, and between them what lies between.
class ColourMap
{
public:
    struct Stop
    {
        float part;
        tavo::Vector3f colour; // 0 to 1
    };

    // At least one stop, in ascending order.
    ColourMap(std::string_view name, std::vector<Stop> stops);

    std::string_view getName() const { return m_Name; }

    // The colour of the first or last stop beyond them.
    tavo::Vector3f look(float part) const;

private:
    std::string_view m_Name;
    std::vector<Stop> m_Stops;
};

// The maps to choose from, the first of which is grey.
const std::vector<ColourMap>& colourMaps();

} // namespace vireo_view
