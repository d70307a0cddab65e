#include "apps/vireo-view/NiftiReader.h"

#include <nifti2_io.h>
#include <string>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/NiftiHeader.h"
#include "apps/vireo-view/VoxelReader.h"

namespace vireo_view {

namespace {

VoxelType voxelTypeOf(const std::filesystem::path& file, int datatype)
{
    switch (datatype) {
    case NIFTI_TYPE_UINT8: return VoxelType::UINT8;
    case NIFTI_TYPE_INT8: return VoxelType::INT8;
    case NIFTI_TYPE_UINT16: return VoxelType::UINT16;
    case NIFTI_TYPE_INT16: return VoxelType::INT16;
    case NIFTI_TYPE_UINT32: return VoxelType::UINT32;
    case NIFTI_TYPE_INT32: return VoxelType::INT32;
    case NIFTI_TYPE_UINT64: return VoxelType::UINT64;
    case NIFTI_TYPE_INT64: return VoxelType::INT64;
    case NIFTI_TYPE_FLOAT32: return VoxelType::FLOAT;
    case NIFTI_TYPE_FLOAT64: return VoxelType::DOUBLE;
    default:
        throw InputError(file, std::string("has voxels of the type ") + nifti_datatype_string(datatype) +
                                   ", which are no single numbers of up to 64 bits");
    }
}

} // namespace

Volume readNifti(const std::filesystem::path& file, const Progress& progress)
{
    const NiftiHeader header = readNiftiHeader(file);
    VoxelLayout layout;
    layout.type = voxelTypeOf(header.dataFile, header.datatype);
    layout.isSwapped = header.isSwapped;
    layout.slope = header.slope;
    layout.intercept = header.intercept;
    layout.numPerTime = numVoxels(header.dataFile, header.grid.size);
    layout.numTimes = header.numTimes;
    CompressedFile data(header.dataFile);
    data.skip(header.dataOffset);

    Volume volume;
    volume.grid = header.grid;
    volume.times = readVoxels(data, layout, progress);
    volume.secondsPerTime = header.secondsPerTime;
    volume.front = Volume::Front::HIGH_Y;
    volume.isOriented = true;
    return volume;
}

} // namespace vireo_view
