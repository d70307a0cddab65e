#pragma once

#include <filesystem>
#include <vector>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/Volume.h"

namespace vireo_view {

// Reads a scan of DICOM files: of a folder, of several files, or of one file and what lies beside it of its series.
// Slices and frames are put in the order of their places; several at each place are of several times. Of several series
// the one with the most voxels is read, and the others are said. The volume is in millimetres: X points to the left of
// the person in it, Y to the back and Z upwards. Throws InputError if there is nothing that can be read.
Volume readDicom(const std::vector<std::filesystem::path>& files, const Progress& progress);

} // namespace vireo_view
