#pragma once

#include <cstring>
#include <memory>
#include <vector>

#include "apps/vireo-view/NiftiReader.h"
#include "tavo/points/RegularVolume.h"

namespace vireo_view {

// A volume of such densities in a box of such extents around the origin.
inline tavo::RegularVolume makeVolume(
    const tavo::Vector3i& extends, const std::vector<float>& densities, const tavo::Vector3f& size = {1.0f, 1.0f, 1.0f})
{
    tavo::VertexDescriptor channels;
    channels.pushAttrib({DENSITY, 1, tavo::VertexAttribDescriptor::TYPE_FLOAT});
    auto samples = std::make_unique<tavo::PointSet>(channels, static_cast<unsigned int>(densities.size()));
    std::memcpy(samples->getData(), densities.data(), samples->getSizeInBytes());
    return {extends, {size * -0.5f, size * 0.5f}, std::move(samples)};
}

} // namespace vireo_view
