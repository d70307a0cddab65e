#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "vireo/show/volumes/opacityCurve.h"

namespace tavo {

// A look of volumes that has a name.
struct VolumePreset
{
    std::string_view name;
    std::string_view colourMap;                     // empty if it stays as it is
    std::optional<std::pair<double, double>> range; // where values have a unit; otherwise it stays as it is
    OpacityCurve opacities;
    bool areCategories = false; // the samples, instead of numbers on a scale
};

// In the order in which they are offered.
const std::vector<VolumePreset>& volumePresets();

// Null if there is none of that name; whyNoVolumePreset() tells which there are.
const VolumePreset* findVolumePreset(std::string_view name);
std::string whyNoVolumePreset(std::string_view name);

} // namespace tavo
