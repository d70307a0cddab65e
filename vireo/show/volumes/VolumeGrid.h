#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "tavo/base/math/vectors.h"
#include "vireo/show/scenes/SceneBox.h"

namespace tavo {

// Where the samples of a volume are: sample (x, y, z) is at origin + x * spacing[0] * axes[0] + ..., and stands for a
// cell about it. It has been checked.
struct VolumeGrid
{
    Vector3i size;
    Vector3d spacing;
    Vector3d origin;
    std::array<Vector3d, 3> axes; // of length 1

    std::size_t numSamples() const
    {
        return static_cast<std::size_t>(size[0]) * static_cast<std::size_t>(size[1]) *
               static_cast<std::size_t>(size[2]);
    }

    double smallestSpacing() const { return std::min({spacing[0], spacing[1], spacing[2]}); }

    // From the first sample's cell to the last one's, both included.
    Vector3d extent() const { return {size[0] * spacing[0], size[1] * spacing[1], size[2] * spacing[2]}; }

    Vector3d centre() const { return at({0.5 * (size[0] - 1), 0.5 * (size[1] - 1), 0.5 * (size[2] - 1)}); }

    // The place of a sample, or of what lies between samples.
    Vector3d at(const Vector3d& index) const
    {
        Vector3d place = origin;
        for (std::size_t i = 0; i < 3; ++i)
            place += index[i] * spacing[i] * axes[i];
        return place;
    }

    // The opposite of at().
    Vector3d indexAt(const Vector3d& place) const
    {
        const auto& [x, y, z] = axes;
        const double volume = dot(cross(x, y), z);
        const Vector3d from = place - origin;
        return {dot(cross(y, z), from) / (volume * spacing[0]), dot(cross(z, x), from) / (volume * spacing[1]),
            dot(cross(x, y), from) / (volume * spacing[2])};
    }

    // Of all cells.
    SceneBox box() const
    {
        SceneBox box;
        for (unsigned int i = 0; i < 8; ++i)
            box.extend(at({i & 1 ? size[0] - 0.5 : -0.5, i & 2 ? size[1] - 0.5 : -0.5, i & 4 ? size[2] - 0.5 : -0.5}));
        return box;
    }
};

} // namespace tavo
