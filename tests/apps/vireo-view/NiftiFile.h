#pragma once

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <nifti2_io.h>
#include <string>
#include <string_view>
#include <vector>

namespace vireo_view {

// The bytes of values one behind the other.
template <typename Value>
std::string bytesOf(const std::vector<Value>& values)
{
    std::string bytes(values.size() * sizeof(Value), '\0');
    std::memcpy(bytes.data(), values.data(), bytes.size());
    return bytes;
}

// A NIfTI-1 file for tests: a header to change, of voxels of 1 mm that come as they do, and the voxels' bytes.
struct NiftiFile
{
    static constexpr std::size_t VOXEL_OFFSET = 352;

    NiftiFile(const std::vector<short>& extents, short datatype, std::string voxelBytes)
        : voxels(std::move(voxelBytes))
    {
        header.sizeof_hdr = sizeof header;
        header.dim[0] = static_cast<short>(extents.size());
        std::copy(extents.begin(), extents.end(), header.dim + 1);
        std::fill(header.pixdim + 1, header.pixdim + 8, 1.0f);
        header.datatype = datatype;
        header.vox_offset = VOXEL_OFFSET;
        std::strcpy(header.magic, "n+1");
    }

    std::string getHeaderBytes() const { return {reinterpret_cast<const char*>(&header), sizeof header}; }

    // Of a single file.
    std::string getBytes() const
    {
        std::string bytes = getHeaderBytes();
        bytes.resize(VOXEL_OFFSET);
        return bytes + voxels;
    }

    nifti_1_header header{};
    std::string voxels;
};

inline void writeCompressed(const std::filesystem::path& file, std::string_view bytes)
{
    znzFile stream = znzopen(file.string().c_str(), "wb", 1);
    znzwrite(bytes.data(), 1, bytes.size(), stream);
    znzclose(stream);
}

} // namespace vireo_view
