#include "apps/vireo-view/NrrdReader.h"

#include <gmock/gmock.h>

#include "tests/apps/vireo-view/NiftiFile.h"
#include "tests/apps/vireo-view/VolumeFilesTest.h"

namespace vireo_view {
namespace {

using tavo::Vector3d;
using testing::ElementsAre;
using testing::SizeIs;

const std::string VOXELS = bytesOf<std::int16_t>({1, -2, 300, 4});

// 2 x 1 x 2 voxels, with more lines before the empty one.
std::string headerWith(const std::string& lines, const std::string& sizes = "2 1 2")
{
    return "NRRD0004\n# a comment\ntype: short\ndimension: 3\nsizes: " + sizes +
           "\nendian: little\npatient:=somebody\n" + lines + "\n";
}

class NrrdReaderTest : public VolumeFilesTest
{
protected:
    Volume read(const std::string& bytes, const std::string& name = "a.nrrd") const
    {
        return readNrrd(write(name, bytes), nullptr);
    }

    std::string errorReading(const std::string& bytes, const std::string& name = "a.nrrd") const
    {
        return messageOf<InputError>([&] { read(bytes, name); });
    }

    std::string compressed(const std::string& bytes) const
    {
        writeCompressed(directory() / "gz", bytes);
        std::ifstream stream(directory() / "gz", std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
};

TEST_F(NrrdReaderTest, ReadsVoxelsBehindTheHeaderInTheirType)
{
    const Volume volume = read(headerWith("encoding: raw\nspacings: 0.5 NaN 2\n") + VOXELS);
    EXPECT_THAT(volume.grid.size, ElementsAre(2, 1, 2));
    EXPECT_EQ(volume.grid.spacing, Vector3d(0.5, 1, 2));
    EXPECT_TRUE(areOf<std::int16_t>(volume));
    EXPECT_THAT(numbers(volume.times.at(0)), ElementsAre(1, -2, 300, 4));
    EXPECT_EQ(volume.front, Volume::Front::LOW_Y);
}

TEST_F(NrrdReaderTest, ReadsLinesAsWindowsEndsThem)
{
    std::string bytes;
    for (const char character : headerWith("encoding: raw\n"))
        bytes += character == '\n' ? "\r\n" : std::string(1, character);
    EXPECT_THAT(numbers(read(bytes + VOXELS).times.at(0)), ElementsAre(1, -2, 300, 4));
}

TEST_F(NrrdReaderTest, ReadsCompressedVoxelsAndText)
{
    EXPECT_THAT(
        numbers(read(headerWith("encoding: gzip\n") + compressed(VOXELS)).times.at(0)), ElementsAre(1, -2, 300, 4));
    EXPECT_THAT(numbers(read(headerWith("encoding: gz\nbyte skip: 2\n") + compressed("xy" + VOXELS)).times.at(0)),
        ElementsAre(1, -2, 300, 4));
    EXPECT_THAT(numbers(read(headerWith("encoding: text\n") + "1 -2\n300,4").times.at(0)), ElementsAre(1, -2, 300, 4));
    EXPECT_EQ(messageOf<InputError>([&] {
        readNrrd(write("a.nrrd", headerWith("encoding: text\n") + "1 -2 3 4"), [](double) { return false; });
    }),
        "a.nrrd: the reading was stopped");
    EXPECT_EQ(errorReading(headerWith("encoding: text\n") + "1 -2 x 4"), "a.nrrd: 'x' among the voxels is no number");
    EXPECT_EQ(errorReading(headerWith("encoding: text\n") + "1 -2 3"), "a.nrrd: ends before its last voxel");
    EXPECT_EQ(errorReading(headerWith("encoding: bzip2\n") + VOXELS),
        "a.nrrd: has its voxels in the encoding 'bzip2', which is not read");
}

TEST_F(NrrdReaderTest, ReadsNumbersOfTheOtherByteOrder)
{
    std::string header = headerWith("encoding: raw\n");
    header.replace(header.find("little"), 6, "big");
    std::string bytes = VOXELS;
    nifti_swap_Nbytes(4, 2, bytes.data());
    EXPECT_THAT(numbers(read(header + bytes).times.at(0)), ElementsAre(1, -2, 300, 4));
    header.replace(header.find("big"), 3, "odd");
    EXPECT_EQ(errorReading(header + bytes), "a.nrrd: does not say in which order the bytes of its numbers are");
}

TEST_F(NrrdReaderTest, ReadsVoxelsOfAFileBesideIt)
{
    const std::string header = headerWith("encoding: raw\ndata file: b.raw\nline skip: 1\nbyte skip: 2\n");
    EXPECT_EQ(errorReading(header, "a.nhdr"), "a.nhdr: has its voxels in 'b.raw', which is no file beside it");
    write("b.raw", "a line\nxy" + VOXELS);
    EXPECT_THAT(numbers(read(header, "a.nhdr").times.at(0)), ElementsAre(1, -2, 300, 4));
    const std::string atEnd = headerWith("encoding: raw\ndatafile: b.raw\nbyteskip: -1\n");
    EXPECT_THAT(numbers(read(atEnd, "a.nhdr").times.at(0)), ElementsAre(1, -2, 300, 4));
    EXPECT_EQ(errorReading(headerWith("encoding: raw\ndata file: %d.raw 1 3 1\n"), "a.nhdr"),
        "a.nhdr: has its voxels in several files, which are not read");
}

TEST_F(NrrdReaderTest, PutsTheVolumeWhereItsDirectionsSay)
{
    const std::string directions =
        "encoding: raw\nspace directions: (0,2,0) (-3,0,0) (0,0,4)\nspace origin: (5,6.5,7)\n";
    const Volume volume = read(headerWith("space: right-anterior-superior\n" + directions) + VOXELS);
    EXPECT_EQ(volume.grid.spacing, Vector3d(2, 3, 4));
    EXPECT_EQ(volume.grid.origin, Vector3d(5, 6.5, 7));
    EXPECT_THAT(volume.grid.axes, ElementsAre(Vector3d(0, 1, 0), Vector3d(-1, 0, 0), Vector3d(0, 0, 1)));
    EXPECT_EQ(volume.front, Volume::Front::HIGH_Y);
    EXPECT_EQ(read(headerWith("space: LPS\n" + directions) + VOXELS).front, Volume::Front::LOW_Y);
    const Volume mirrored = read(headerWith("space: left-anterior-superior\n" + directions) + VOXELS);
    EXPECT_EQ(mirrored.grid.origin, Vector3d(-5, 6.5, 7));
    EXPECT_EQ(mirrored.grid.axes[1], Vector3d(1, 0, 0));
    EXPECT_THAT(mirrored.remarks, SizeIs(1));
    EXPECT_EQ(errorReading(headerWith("encoding: raw\nspace directions: (1,0,0) (1,0,0) (0,0,1)\n") + VOXELS),
        "a.nrrd: says that its voxels are where they cannot be");
}

TEST_F(NrrdReaderTest, ReadsColoursAndTimes)
{
    const std::string colours = "NRRD0004\ntype: uchar\ndimension: 4\nsizes: 3 1 1 2\nencoding: raw\n";
    const Volume coloured = read(colours + "kinds: RGB-color domain domain domain\n\nabcdef");
    EXPECT_EQ(coloured.numChannels, 3u);
    EXPECT_THAT(coloured.grid.size, ElementsAre(1, 1, 2));
    EXPECT_THAT(numbers(coloured.times.at(0)), SizeIs(6));
    const Volume inTime = read(colours + "\nabcdef");
    EXPECT_THAT(inTime.grid.size, ElementsAre(3, 1, 1));
    ASSERT_THAT(inTime.times, SizeIs(2));
    EXPECT_THAT(numbers(inTime.times[1]), ElementsAre('d', 'e', 'f'));
    EXPECT_EQ(errorReading("NRRD0004\ntype: uchar\ndimension: 4\nsizes: 2 1 1 2\nencoding: raw\n"
                           "space directions: none (1,0,0) (0,1,0) (0,0,1)\n\nabcd"),
        "a.nrrd: has several numbers for each voxel that are no colour, which are not shown");
}

TEST_F(NrrdReaderTest, RefusesWhatCannotBe)
{
    EXPECT_EQ(errorReading("NRRX\n\n"), "a.nrrd: is not a NRRD file: it does not begin with 'NRRD000'");
    EXPECT_EQ(errorReading(headerWith("encoding: raw\n", "2 0 2")), "a.nrrd: has an extent of '2 0 2' voxels");
    EXPECT_EQ(errorReading(headerWith("encoding: raw\n", "2 -1 2")), "a.nrrd: has an extent of '2 -1 2' voxels");
    EXPECT_EQ(errorReading(headerWith("encoding: raw\n", "2 1.5 2")), "a.nrrd: has an extent of '2 1.5 2' voxels");
    EXPECT_EQ(errorReading(headerWith("encoding: raw\n", "2 1e300 2")), "a.nrrd: has an extent of '2 1e300 2' voxels");
    EXPECT_EQ(errorReading(headerWith("encoding: raw\n", "100000 100000 1")), "a.nrrd: has too many voxels");
    EXPECT_EQ(errorReading(headerWith("encoding: raw\n", "60000 60000 1")), "a.nrrd: ends before its last voxel");
    EXPECT_EQ(errorReading(headerWith("encoding: gzip\n", "60000 60000 1") + compressed(VOXELS)),
        "a.nrrd: ends before its last voxel");
    EXPECT_EQ(errorReading(headerWith("encoding: raw\n", "2 2")), "a.nrrd: has 2 number(s) as 'sizes', not 3");
    EXPECT_EQ(errorReading(headerWith("encoding: raw\n") + VOXELS.substr(1)), "a.nrrd: ends before its last voxel");
    EXPECT_EQ(errorReading(headerWith("encoding: gzip\n") + VOXELS),
        "a.nrrd: is damaged: what is compressed in it cannot be read");
    EXPECT_EQ(errorReading("NRRD0004\nno field\n\n"), "a.nrrd:2: is no line of a NRRD header");
    EXPECT_EQ(errorReading("NRRD0004\ntype: block\ndimension: 1\nsizes: 1\nencoding: raw\n\nx"),
        "a.nrrd: has voxels of the unknown type 'block'");
}

} // namespace
} // namespace vireo_view
