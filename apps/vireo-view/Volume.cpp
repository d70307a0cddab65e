#include "apps/vireo-view/Volume.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

constexpr double SMALLEST_STEP = 1e-12;
constexpr double LARGEST_PLACE = 1e12;
constexpr double FLATTEST = 1e-5; // the volume that three axes of length 1 span

bool isPlace(const tavo::Vector3d& place)
{
    return std::all_of(place.data(), place.data() + 3, [](double x) { return std::abs(x) <= LARGEST_PLACE; });
}

} // namespace

std::optional<VoxelGrid> gridOfSteps(
    const std::array<int, 3>& size, const std::array<tavo::Vector3d, 3>& steps, const tavo::Vector3d& origin)
{
    VoxelGrid grid;
    grid.size = size;
    grid.origin = origin;
    for (unsigned int i = 0; i < 3; ++i) {
        if (!isPlace(steps[i]) || !(length(steps[i]) >= SMALLEST_STEP))
            return {};
        grid.spacing[i] = length(steps[i]);
        grid.axes[i] = steps[i] * (1 / grid.spacing[i]);
    }
    const bool areFlat = std::abs(dot(cross(grid.axes[0], grid.axes[1]), grid.axes[2])) < FLATTEST;
    return isPlace(origin) && !areFlat ? std::optional(grid) : std::nullopt;
}

std::size_t numVoxels(const std::filesystem::path& file, const std::array<int, 3>& size)
{
    std::uint64_t count = 1;
    for (const int extent : size) {
        count *= static_cast<std::uint64_t>(extent);
        if (count > std::numeric_limits<std::uint32_t>::max())
            throw InputError(file, "has too many voxels");
    }
    return static_cast<std::size_t>(count);
}

} // namespace vireo_view
