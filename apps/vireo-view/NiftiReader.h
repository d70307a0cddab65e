#pragma once

#include <filesystem>

#include "apps/vireo-view/InputBuffer.h"
#include "tavo/points/RegularVolume.h"

namespace vireo_view {

// The channel of the volumes that are read, of one float.
inline const char* const DENSITY = "density";

// Reads the first volume of a NIfTI-1, NIfTI-2 or ANALYZE 7.5 file, FILE.nii, FILE.nii.gz or a pair FILE.hdr and
// FILE.img, of which either may be named. Its box is in millimetres, around the origin; X points to the right of the
// person in it, Y to the front and Z upwards, as far as the file says how it is oriented. Throws InputError if the file
// does not hold what it should.
tavo::RegularVolume readNifti(const std::filesystem::path& file, const Progress& progress);

} // namespace vireo_view
