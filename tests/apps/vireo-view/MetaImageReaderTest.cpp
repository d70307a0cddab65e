#include "apps/vireo-view/MetaImageReader.h"

#include <gmock/gmock.h>
#include <zlib.h>

#include "tests/apps/vireo-view/NiftiFile.h"
#include "tests/apps/vireo-view/VolumeFilesTest.h"

namespace vireo_view {
namespace {

using tavo::Vector3d;
using testing::ElementsAre;
using testing::SizeIs;

const std::string VOXELS = bytesOf<std::uint16_t>({1, 2, 300, 65535});

// 2 x 1 x 2 voxels, with more lines before the last one.
std::string headerWith(const std::string& lines, const std::string& file = "LOCAL", const std::string& size = "2 1 2")
{
    return "ObjectType = Image\nNDims = 3\nDimSize = " + size + "\nElementType = MET_USHORT\n" + lines +
           "ElementDataFile = " + file + "\n";
}

class MetaImageReaderTest : public VolumeFilesTest
{
protected:
    Volume read(const std::string& bytes, const std::string& name = "a.mha") const
    {
        return readMetaImage(write(name, bytes), nullptr);
    }

    std::string errorReading(const std::string& bytes, const std::string& name = "a.mha") const
    {
        return messageOf<InputError>([&] { read(bytes, name); });
    }
};

TEST_F(MetaImageReaderTest, ReadsVoxelsBehindTheHeaderInTheirType)
{
    const Volume volume = read(headerWith("ElementSpacing = 0.5 1 2\nOffset = 5 6 7\n") + VOXELS);
    EXPECT_THAT(volume.grid.size, ElementsAre(2, 1, 2));
    EXPECT_EQ(volume.grid.spacing, Vector3d(0.5, 1, 2));
    EXPECT_EQ(volume.grid.origin, Vector3d(5, 6, 7));
    EXPECT_TRUE(areOf<std::uint16_t>(volume));
    EXPECT_THAT(numbers(volume.times.at(0)), ElementsAre(1, 2, 300, 65535));
    EXPECT_EQ(volume.front, Volume::Front::LOW_Y);
}

TEST_F(MetaImageReaderTest, PutsTheVolumeWhereItsMatrixSays)
{
    const Volume volume = read(headerWith("TransformMatrix = 0 1 0 -1 0 0 0 0 1\nElementSpacing = 2 3 4\n") + VOXELS);
    EXPECT_THAT(volume.grid.axes, ElementsAre(Vector3d(0, 1, 0), Vector3d(-1, 0, 0), Vector3d(0, 0, 1)));
    EXPECT_EQ(volume.grid.spacing, Vector3d(2, 3, 4));
    EXPECT_EQ(errorReading(headerWith("TransformMatrix = 0 1 0 0 1 0 0 0 1\n") + VOXELS),
        "a.mha: says that its voxels are where they cannot be");
    EXPECT_EQ(errorReading(headerWith("ElementSpacing = 0 1 1\n") + VOXELS),
        "a.mha: says that its voxels are where they cannot be");
}

TEST_F(MetaImageReaderTest, ReadsCompressedVoxelsTextAndTheOtherByteOrder)
{
    std::string deflated(100, '\0');
    uLongf size = deflated.size();
    ASSERT_EQ(compress(reinterpret_cast<Bytef*>(deflated.data()), &size, reinterpret_cast<const Bytef*>(VOXELS.data()),
                  VOXELS.size()),
        Z_OK);
    EXPECT_THAT(numbers(read(headerWith("CompressedData = True\n") + deflated.substr(0, size)).times.at(0)),
        ElementsAre(1, 2, 300, 65535));
    EXPECT_THAT(
        numbers(read(headerWith("BinaryData = False\n") + "1 2 300 65535").times.at(0)), ElementsAre(1, 2, 300, 65535));
    std::string bytes = VOXELS;
    nifti_swap_Nbytes(4, 2, bytes.data());
    EXPECT_THAT(numbers(read(headerWith("BinaryDataByteOrderMSB = True\n") + bytes).times.at(0)),
        ElementsAre(1, 2, 300, 65535));
}

TEST_F(MetaImageReaderTest, ReadsVoxelsOfAFileBesideIt)
{
    EXPECT_EQ(
        errorReading(headerWith("", "b.raw"), "a.mhd"), "a.mhd: has its voxels in 'b.raw', which is no file beside it");
    write("b.raw", "xyz" + VOXELS);
    EXPECT_THAT(
        numbers(read(headerWith("HeaderSize = 3\n", "b.raw"), "a.mhd").times.at(0)), ElementsAre(1, 2, 300, 65535));
    EXPECT_THAT(
        numbers(read(headerWith("HeaderSize = -1\n", "b.raw"), "a.mhd").times.at(0)), ElementsAre(1, 2, 300, 65535));
    EXPECT_EQ(
        errorReading(headerWith("", "LIST"), "a.mhd"), "a.mhd: has its voxels in several files, which are not read");
}

TEST_F(MetaImageReaderTest, ReadsColoursAndTimes)
{
    const Volume coloured = read("NDims = 2\nDimSize = 1 2\nElementNumberOfChannels = 3\nElementType = MET_UCHAR\n"
                                 "ElementDataFile = LOCAL\nabcdef");
    EXPECT_EQ(coloured.numChannels, 3u);
    EXPECT_THAT(coloured.grid.size, ElementsAre(1, 2, 1));
    const Volume inTime = read("NDims = 4\nDimSize = 1 2 1 2\nElementType = MET_CHAR\nElementDataFile = LOCAL\nabcd");
    ASSERT_THAT(inTime.times, SizeIs(2));
    EXPECT_THAT(numbers(inTime.times[1]), ElementsAre('c', 'd'));
}

TEST_F(MetaImageReaderTest, RefusesWhatCannotBe)
{
    EXPECT_EQ(errorReading("NDims = 3\n"), "a.mha: is no MetaImage: its header does not say where its voxels are");
    EXPECT_EQ(errorReading("hello\n"), "a.mha:1: is no line of a MetaImage");
    EXPECT_EQ(errorReading(headerWith("", "LOCAL", "2 0 2")), "a.mha: has an extent of '2 0 2' voxels");
    EXPECT_EQ(errorReading(headerWith("", "LOCAL", "100000 100000 1")), "a.mha: has too many voxels");
    EXPECT_EQ(errorReading(headerWith("", "LOCAL", "60000 60000 1")), "a.mha: ends before its last voxel");
    EXPECT_EQ(errorReading(headerWith("NDims = 3\n")), "a.mha:5: says 'NDims' a second time");
    EXPECT_EQ(errorReading("NDims = 9\nElementDataFile = LOCAL\n"), "a.mha: has '9' dimensions, not 2, 3 or 4");
    EXPECT_EQ(errorReading("NDims = 2\nDimSize = 1 1\nElementType = MET_OTHER\nElementDataFile = LOCAL\n"),
        "a.mha: has voxels of the unknown type 'MET_OTHER'");
    EXPECT_EQ(errorReading(headerWith("HeaderSize = -7\n")), "a.mha: says that its voxels are where they cannot be");
}

} // namespace
} // namespace vireo_view
