#pragma once

#include <cstdint>
#include <filesystem>

#include "apps/vireo-view/Volume.h"

namespace vireo_view {

// What the header of a NIfTI-1, NIfTI-2 or ANALYZE 7.5 file says.
struct NiftiHeader
{
    std::filesystem::path dataFile;
    std::uint64_t dataOffset; // bytes before the voxels, uncompressed
    VoxelGrid grid;           // in millimetres
    std::size_t numTimes;     // positive
    double secondsPerTime;    // 0 if it does not say
    int datatype;             // a NIFTI_TYPE_ of niftilib, any
    bool isSwapped;           // the bytes of a value are in the other order
    double slope;             // what is stored is multiplied by this,
    double intercept;         // and this is added
};

// Reads the header, or that which belongs to an image file (.img). Throws InputError if there is none, if it is no
// header, or if it says what cannot be.
NiftiHeader readNiftiHeader(const std::filesystem::path& file);

} // namespace vireo_view
