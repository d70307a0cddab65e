#include "benchmarks/scenes/headVolume.h"

#include <cmath>
#include <memory>
#include <numbers>

#include "tavo/points/PointSet.h"
#include "vireo/show/volumes/volumeItem.h"

namespace vireo_bench {

namespace {

// Shared with the volume, which lives as long as the program.
tavo::ItemUpdate itemOf(tavo::RegularVolume& volume)
{
    const tavo::PointSet& samples = *volume.getPointSet();
    const std::shared_ptr<const void> nobody(samples.getData(), [](const void*) {});
    const tavo::NumberArray numbers(nobody, samples.getData(), samples.getNumPoints(), tavo::NumberType::Float32);
    tavo::VolumeGrid grid;
    grid.size = volume.getExtends();
    for (unsigned int i = 0; i < 3; ++i) {
        const double from = volume.getBoundingBox().getMin()[i];
        grid.spacing[i] = (volume.getBoundingBox().getMax()[i] - from) / grid.size[i];
        grid.origin[i] = from + 0.5 * grid.spacing[i];
        grid.axes[i] = {i == 0 ? 1.0 : 0.0, i == 1 ? 1.0 : 0.0, i == 2 ? 1.0 : 0.0};
    }
    return tavo::volumeItem(grid, {numbers, 1});
}

} // namespace

tavo::ItemUpdate headLook(const DensityWindow& window)
{
    tavo::ItemUpdate item;
    item.colourMap = "grey";
    item.range = std::pair<double, double>(window.black, window.white);
    item.opacities = tavo::OpacityCurve{{0, 0}, {1, 0.25}};
    return item;
}

tavo::ItemUpdate headVolume(const DensityWindow& window)
{
    tavo::ItemUpdate item = itemOf(head());
    tavo::ItemUpdate look = headLook(window);
    item.merge(look);
    return item;
}

tavo::ItemUpdate headVolumeInCube(int side)
{
    tavo::ItemUpdate item = itemOf(headInCube(side));
    tavo::ItemUpdate look = headLook({});
    item.merge(look);
    return item;
}

tavo::SceneCamera cameraOfHead()
{
    constexpr double DEGREES = 180 / std::numbers::pi;
    tavo::SceneCamera camera;
    camera.setDirection(std::atan2(-VIEW_OF_HEAD[0], VIEW_OF_HEAD[1]) * DEGREES, std::asin(-VIEW_OF_HEAD[2]) * DEGREES);
    return camera;
}

} // namespace vireo_bench
