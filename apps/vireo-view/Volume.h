#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "apps/vireo-view/NumberColumn.h"
#include "tavo/base/math/vectors.h"

namespace vireo_view {

// Where voxels are: voxel (i, j, k) has its middle at origin + i * spacing[0] * axes[0] + ..., in the coordinates of
// the file.
struct VoxelGrid
{
    std::array<int, 3> size{1, 1, 1}; // voxels along each index, the fastest first; positive
    tavo::Vector3d spacing{1, 1, 1};  // positive
    tavo::Vector3d origin;
    std::array<tavo::Vector3d, 3> axes{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}; // of length 1
};

// The grid whose next voxel along each index is one step on. Nothing if the steps or the origin cannot be: if they are
// not finite, have no length, or lie in a plane.
std::optional<VoxelGrid> gridOfSteps(
    const std::array<int, 3>& size, const std::array<tavo::Vector3d, 3>& steps, const tavo::Vector3d& origin);

// How many voxels there are. Throws InputError if they are more than anyone could show.
std::size_t numVoxels(const std::filesystem::path& file, const std::array<int, 3>& size);

// What a file says of a volume, or of several on one grid, one after the other in time.
struct Volume
{
    // From where a person is seen face to face, or the volume as it stands.
    enum class Front
    {
        LOW_Y, // y points away from the viewer, and x to the right
        HIGH_Y // y points to the viewer, and x to the left
    };

    VoxelGrid grid;
    unsigned int numChannels = 1;    // of each voxel; three or four are a colour
    std::vector<NumberColumn> times; // the samples, x fastest, at each time; at least one
    double secondsPerTime = 0;       // from one time to the next; 0 if the file does not say
    Front front = Front::LOW_Y;
    bool isOriented = false;          // the file says how a person lies in it: x leads to the left or right, z upwards
    std::vector<std::string> remarks; // what a person should know, each in few words
};

} // namespace vireo_view
