#pragma once

#include <filesystem>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/Volume.h"

namespace vireo_view {

// Reads a NIfTI-1, NIfTI-2 or ANALYZE 7.5 file, FILE.nii, FILE.nii.gz or a pair FILE.hdr and FILE.img, of which either
// may be named. It lies in millimetres where the file says; X points to the right of the person in it, Y to the front
// and Z upwards. Throws InputError if the file does not hold what it should.
Volume readNifti(const std::filesystem::path& file, const Progress& progress);

} // namespace vireo_view
