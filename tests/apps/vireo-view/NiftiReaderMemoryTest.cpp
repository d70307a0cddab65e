// How much memory a reader takes for what it reads.

#include <gmock/gmock.h>
#include <random>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/NiftiReader.h"
#include "tests/apps/vireo-view/FilesTest.h"
#include "tests/apps/vireo-view/MemoryBudget.h"
#include "tests/apps/vireo-view/NiftiFile.h"

namespace vireo_view {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t MEGABYTE = 1 << 20;

// What a reader needs besides, whatever the file.
constexpr std::size_t SUNDRIES = MEGABYTE / 4;

// Bytes that cannot be compressed.
std::string noise(std::size_t size)
{
    std::string bytes(size, '\0');
    std::mt19937 random; // NOLINT(cert-msc32-c,cert-msc51-cpp): the same each time
    for (char& byte : bytes)
        byte = static_cast<char>(random() & 0xFFu);
    return bytes;
}

class NiftiReaderMemoryTest : public FilesTest
{
protected:
    fs::path writeCompressedFile(const std::vector<short>& extents, short datatype, const std::string& voxels) const
    {
        const fs::path file = directory() / "a.nii.gz";
        writeCompressed(file, NiftiFile(extents, datatype, voxels).getBytes());
        return file;
    }

    // The message of a reader that may take up twice the bytes that the file holds.
    std::string errorWithinTwice(const std::string& voxels, const fs::path& file) const
    {
        const MemoryBudget budget(2 * voxels.size());
        return messageOf<InputError>([&] { readNifti(file, nullptr); });
    }
};

TEST_F(NiftiReaderMemoryTest, TakesMemoryOfACompressedFileOnlyAsItsDataArrive)
{
    const std::string voxels = noise(MEGABYTE);
    EXPECT_EQ(errorWithinTwice(voxels, writeCompressedFile({1024, 1024, 1000}, NIFTI_TYPE_UINT8, voxels)),
        "a.nii.gz: ends before its last voxel");
    EXPECT_EQ(errorWithinTwice(voxels, writeCompressedFile({32767, 32000, 1}, NIFTI_TYPE_UINT8, voxels)),
        "a.nii.gz: ends before its last voxel")
        << "a single slice";
    EXPECT_EQ(errorWithinTwice(voxels, writeCompressedFile({16000, 8000, 1}, NIFTI_TYPE_FLOAT64, voxels)),
        "a.nii.gz: ends before its last voxel");
}

TEST_F(NiftiReaderMemoryTest, TakesMemoryOfASingleRowOnlyAsItsDataArrive)
{
    nifti_2_header header{};
    header.sizeof_hdr = sizeof header;
    std::memcpy(header.magic, "n+2\0\r\n\032\n", 8);
    header.datatype = NIFTI_TYPE_UINT8;
    header.dim[0] = 1;
    header.dim[1] = 1 << 30;
    header.vox_offset = 544;
    std::string bytes(544, '\0');
    std::memcpy(bytes.data(), &header, sizeof header);
    const std::string voxels = noise(MEGABYTE);
    writeCompressed(directory() / "a.nii.gz", bytes + voxels);
    EXPECT_EQ(errorWithinTwice(voxels, directory() / "a.nii.gz"), "a.nii.gz: ends before its last voxel");
}

// The floats of the samples, and until they are made, the bytes of which they are made.
TEST_F(NiftiReaderMemoryTest, TakesMemoryForASecondCopyOfACompressedFileAtMost)
{
    const std::string voxels = noise(MEGABYTE);
    const fs::path file = writeCompressedFile({1024, 16, 16}, NIFTI_TYPE_FLOAT32, voxels);
    const MemoryBudget budget(2 * voxels.size() + SUNDRIES);
    EXPECT_EQ(sizeOf(readNifti(file, nullptr).times.front()) * sizeof(float), voxels.size());
    EXPECT_LT(budget.getNumLeft(), voxels.size() + SUNDRIES) << "or it does not count";
}

TEST_F(NiftiReaderMemoryTest, TakesMemoryForTheSamplesOnlyOfAFileThatIsNotCompressed)
{
    const std::string voxels = noise(MEGABYTE);
    const fs::path file = write("a.nii", NiftiFile({1024, 16, 16}, NIFTI_TYPE_FLOAT32, voxels).getBytes());
    const MemoryBudget budget(voxels.size() + SUNDRIES);
    EXPECT_EQ(sizeOf(readNifti(file, nullptr).times.front()) * sizeof(float), voxels.size());
}

} // namespace
} // namespace vireo_view
