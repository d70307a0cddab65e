#pragma once

#include <array>
#include <cstdint>
#include <filesystem>

namespace vireo_view {

// What the header of a NIfTI-1, NIfTI-2 or ANALYZE 7.5 file says of its first volume.
struct NiftiHeader
{
    // Where the body's axis that a voxel index counts along lies in the volume as it is shown, with X to the right of
    // the person in it, Y to the front and Z upwards, and whether the index counts against it.
    struct StoredAxis
    {
        unsigned int axis;
        bool isReversed;
    };

    std::filesystem::path dataFile;
    std::uint64_t dataOffset;       // bytes before the voxels, uncompressed
    std::array<int, 3> extents;     // voxels along each index, the fastest first; positive
    std::array<double, 3> spacings; // millimetres from voxel to voxel, positive
    std::array<StoredAxis, 3> axes; // of each index; as they come if the file does not say how it is oriented
    int datatype;                   // a NIFTI_TYPE_ of niftilib, any
    bool isSwapped;                 // the bytes of a value are in the other order
    double slope;                   // what is stored is multiplied by this,
    double intercept;               // and this is added
};

// Reads the header, or that which belongs to an image file (.img). Throws InputError if there is none, if it is no
// header, or if it says what cannot be.
NiftiHeader readNiftiHeader(const std::filesystem::path& file);

} // namespace vireo_view
