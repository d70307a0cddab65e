#pragma once

#include <cstddef>
#include <optional>

#include "tavo/base/math/vectors.h"
#include "vireo/show/volumes/VolumeGrid.h"

namespace tavo {

// A line that a person draws in a slice, to know how long it is. Its ends are counted in samples.
struct SliceDistance
{
    std::size_t plane;
    int slice; // of the plane
    Vector3d from;
    Vector3d to;
    bool isDone = false; // both ends are fixed

    double lengthIn(const VolumeGrid& grid) const { return length(grid.at(to) - grid.at(from)); }
};

} // namespace tavo
