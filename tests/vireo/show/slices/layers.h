#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "vireo/show/Numbers.h"
#include "vireo/show/slices/SlicesUpdate.h"

namespace tavo {

// A volume along the axes.
template <typename T>
SliceLayer layerOf(std::vector<T> samples, const Vector3i& size, const Vector3d& spacing = {1, 1, 1},
    const Vector3d& origin = {0, 0, 0})
{
    SliceLayer layer;
    layer.grid = {size, spacing, origin, {Vector3d(1, 0, 0), Vector3d(0, 1, 0), Vector3d(0, 0, 1)}};
    const std::size_t width = samples.size() / layer.grid.numSamples();
    layer.samples = {Numbers(std::move(samples)), width};
    return layer;
}

// Of bytes by where they are.
inline SliceLayer layerBy(const Vector3i& size, const std::function<int(int x, int y, int z)>& value,
    const Vector3d& spacing = {1, 1, 1}, const Vector3d& origin = {0, 0, 0})
{
    std::vector<std::uint8_t> samples;
    for (int z = 0; z < size[2]; ++z)
        for (int y = 0; y < size[1]; ++y)
            for (int x = 0; x < size[0]; ++x)
                samples.push_back(static_cast<std::uint8_t>(value(x, y, z)));
    return layerOf(std::move(samples), size, spacing, origin);
}

} // namespace tavo
