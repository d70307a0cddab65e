#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "vireo/show/scenes/SceneUpdate.h"
#include "vireo/show/volumes/VolumeGrid.h"

namespace tavo {

// Samples that are cut into slices. One number each, or three or four that are colours.
struct SliceLayer
{
    VolumeGrid grid;
    NumberTuples samples;
    bool isOriented = false; // x leads to the right of a patient, y to the front, z upwards

    bool areColours() const { return samples.width > 1; }
};

using NamesOfLabels = std::map<std::int64_t, std::string>;
using ColoursOfLabels = std::map<std::int64_t, RGBA8>;

} // namespace tavo
