#include "apps/vireo-view/showSlices.h"

#include <utility>

namespace vireo_view {

namespace {

tavo::GridSize sizeOf(const VoxelGrid& grid)
{
    return {grid.size[0], grid.size[1], grid.size[2]};
}

tavo::Orientation orientationOf(const VoxelGrid& grid)
{
    return {grid.axes[0], grid.axes[1], grid.axes[2]};
}

void turnRound(tavo::Vector3d& place)
{
    place[0] = -place[0];
    place[1] = -place[1];
}

} // namespace

SentVolume sentVolumeOf(tavo::Samples samples, const Volume& volume)
{
    SentVolume sent{std::move(samples), volume.grid, volume.isOriented};
    if (volume.isOriented && volume.front == Volume::Front::LOW_Y) {
        turnRound(sent.grid.origin);
        for (tavo::Vector3d& axis : sent.grid.axes)
            turnRound(axis);
    }
    return sent;
}

void showSlices(const std::string& name, const SentVolume& volume)
{
    const VoxelGrid& grid = volume.grid;
    if (volume.isOriented)
        tavo::slices(name, volume.samples, sizeOf(grid), grid.spacing, grid.origin, orientationOf(grid));
    else
        tavo::slices(name, volume.samples, sizeOf(grid), grid.spacing, grid.origin);
}

void showOnSlices(const std::string& name, const LayersOnSlices& layers)
{
    const tavo::Slices shown = tavo::slices(name);
    if (const std::optional<SentVolume>& overlay = layers.overlay)
        shown.overlay(overlay->samples, sizeOf(overlay->grid), overlay->grid.spacing, overlay->grid.origin,
            orientationOf(overlay->grid));
    if (const std::optional<SentVolume>& labels = layers.labels)
        shown
            .labels(labels->samples, sizeOf(labels->grid), labels->grid.spacing, labels->grid.origin,
                orientationOf(labels->grid), layers.table.names)
            .colours(layers.table.colours);
}

} // namespace vireo_view
