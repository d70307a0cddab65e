#pragma once

#include "apps/vireo-view/CompressedFile.h"
#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/NumberColumn.h"
#include "apps/vireo-view/Volume.h"

namespace vireo_view {

// The numbers that files of volumes are made of.
enum class VoxelType
{
    INT8,
    UINT8,
    INT16,
    UINT16,
    INT32,
    UINT32,
    INT64,
    UINT64,
    FLOAT,
    DOUBLE,
};

// How voxels lie in a file: those of each time after the other.
struct VoxelLayout
{
    VoxelType type = VoxelType::UINT8;
    bool isSwapped = false;     // the bytes of a number are in the other order
    double slope = 1;           // what is stored is multiplied by this,
    double intercept = 0;       // and this is added
    std::size_t numPerTime = 0; // numbers
    std::size_t numTimes = 1;
};

std::size_t sizeInBytes(VoxelType type);

// Reads the voxels from where the file is now: for each time a column. They keep their type where they are not scaled;
// what is scaled becomes floats, and integers of 64 bits become doubles. Memory is taken only for what is known to be
// there. Throws InputError if there are fewer, or if the progress says to stop.
std::vector<NumberColumn> readVoxels(CompressedFile& file, const VoxelLayout& layout, const Progress& progress);

} // namespace vireo_view
