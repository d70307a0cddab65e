#include "apps/vireo-view/showVolume.h"

#include <utility>

#include "vireo/show/show.h"

namespace vireo_view {

void showVolume(VolumeExhibit exhibit, const std::string& scene)
{
    const tavo::Statement together;
    const tavo::Scene shown = tavo::scene(scene);
    const Volume& volume = exhibit.volume;
    const VoxelGrid& grid = volume.grid;
    shown.view(nameOf(volume.front == Volume::Front::HIGH_Y ? Side::BACK : Side::FRONT));
    const tavo::Samples samples =
        std::visit([](auto& values) { return tavo::Samples(std::move(values)); }, exhibit.volume.times.front());
    shown.volume(exhibit.name, samples, {grid.size[0], grid.size[1], grid.size[2]}, grid.spacing, grid.origin,
        {grid.axes[0], grid.axes[1], grid.axes[2]});
}

} // namespace vireo_view
