#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "vireo/show/Grid.h"
#include "vireo/show/volumes/VolumeGrid.h"
#include "vireo/show/volumes/opacityCurve.h"

namespace tavo {

// How a volume lies that a program sends.
struct SentGrid
{
    GridSize size;
    Spacing spacing;
    Vector3d origin;
    Orientation orientation;
};

// What is wrong with a volume of so many numbers; empty if it can be shown.
std::string whyNoVolume(const SentGrid& grid, std::size_t numNumbers);

// How many numbers belong to each sample: 1, 3 or 4.
std::size_t numChannelsOf(const SentGrid& grid, std::size_t numNumbers);

// There must be nothing wrong with it.
VolumeGrid gridOf(const SentGrid& grid);

// The same of points by which a volume is opaque.
std::string whyNoTransferFunction(const std::vector<TransferPoint>& points);
OpacityCurve opacitiesOf(const std::vector<TransferPoint>& points);

} // namespace tavo
