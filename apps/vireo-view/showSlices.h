#pragma once

#include <optional>
#include <string>

#include "apps/vireo-view/LabelTable.h"
#include "apps/vireo-view/Volume.h"
#include "vireo/show/show.h"

namespace vireo_view {

// Samples that are sent again and again without being copied, and where they are.
struct SentVolume
{
    tavo::Samples samples;
    VoxelGrid grid;
    bool isOriented = false;
};

// Where a file says how a person lies in it, x leads to the right and y to the front, as slices have
// them, whichever way they lead in the file.
SentVolume sentVolumeOf(tavo::Samples samples, const Volume& volume);

// What lies on the volumes that are shown in slices.
struct LayersOnSlices
{
    std::optional<SentVolume> overlay;
    std::optional<SentVolume> labels;
    LabelTable table;
};

// Shows a volume in the slices of that name.
void showSlices(const std::string& name, const SentVolume& volume);

// And what lies on it.
void showOnSlices(const std::string& name, const LayersOnSlices& layers);

} // namespace vireo_view
