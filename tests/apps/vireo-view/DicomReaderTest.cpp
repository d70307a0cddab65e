#include "apps/vireo-view/DicomReader.h"

#include <gmock/gmock.h>

#include "apps/vireo-view/Exhibits.h"
#include "tests/apps/vireo-view/DicomFile.h"
#include "tests/apps/vireo-view/VolumeFilesTest.h"

namespace vireo_view {
namespace {

using tavo::Vector3d;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class DicomReaderTest : public VolumeFilesTest
{
protected:
    std::filesystem::path add(const std::string& name, DicomFile slice) const
    {
        std::filesystem::create_directory(folder());
        slice.write(folder() / name);
        return folder() / name;
    }

    std::filesystem::path folder() const { return directory() / "scan"; }

    // As errors have it.
    static std::string inErrors(const char* file) { return (std::filesystem::path("scan") / file).string(); }

    Volume read() const { return readDicom({folder()}, nullptr); }

    std::string errorReading(const std::filesystem::path& file) const
    {
        return messageOf<InputError>([&] { readDicom({file}, nullptr); });
    }
};

DicomFile sliceAt(double z, std::int16_t first)
{
    DicomFile slice;
    slice.z = z;
    for (std::int16_t& pixel : slice.pixels)
        pixel = first++;
    return slice;
}

TEST_F(DicomReaderTest, ReadsTheSlicesOfAFolderInTheOrderOfTheirPlaces)
{
    add("1", sliceAt(9, 12));
    add("2", sliceAt(3, 0));
    add("3", sliceAt(6, 6));
    std::ofstream(folder() / "notes.txt") << "not of the scan";
    const Volume volume = read();
    EXPECT_THAT(volume.grid.size, ElementsAre(3, 2, 3));
    EXPECT_EQ(volume.grid.spacing, Vector3d(0.5, 2, 3));
    EXPECT_EQ(volume.grid.origin, Vector3d(10, 20, 3));
    EXPECT_THAT(volume.grid.axes, ElementsAre(Vector3d(1, 0, 0), Vector3d(0, 1, 0), Vector3d(0, 0, 1)));
    EXPECT_EQ(volume.front, Volume::Front::LOW_Y);
    EXPECT_TRUE(volume.isOriented);
    EXPECT_TRUE(areOf<std::int16_t>(volume));
    EXPECT_THAT(volume.remarks, IsEmpty());
    const std::vector<double> voxels = numbers(volume.times.at(0));
    ASSERT_THAT(voxels, SizeIs(18));
    for (std::size_t i = 0; i < voxels.size(); ++i)
        EXPECT_EQ(voxels[i], static_cast<double>(i));
}

TEST_F(DicomReaderTest, FindsTheSeriesOfOneFileBesideIt)
{
    const std::filesystem::path one = add("1", sliceAt(3, 6));
    add("2", sliceAt(0, 0));
    DicomFile other = sliceAt(6, 50);
    other.series = "1.2.4";
    add("3", other);
    EXPECT_EQ(readDicom({one}, nullptr).grid.size[2], 2);
    EXPECT_EQ(readDicom({folder() / "3"}, nullptr).grid.size[2], 1);
    EXPECT_EQ(readDicom({one, folder() / "2"}, nullptr).grid.size[2], 2);
}

TEST_F(DicomReaderTest, ReadsAllWaysInWhichNumbersAreWritten)
{
    for (const char* const syntax : {"1.2.840.10008.1.2", "1.2.840.10008.1.2.1", "1.2.840.10008.1.2.2"}) {
        DicomFile slice = sliceAt(0, -2);
        slice.syntax = syntax;
        const Volume volume = readDicom({add(syntax, slice)}, nullptr);
        EXPECT_THAT(numbers(volume.times.at(0)), ElementsAre(-2, -1, 0, 1, 2, 3)) << syntax;
        std::filesystem::remove(folder() / syntax);
    }
}

TEST_F(DicomReaderTest, AddsTheInterceptOfTheFile)
{
    DicomFile slice = sliceAt(0, 0);
    slice.intercept = "-1024";
    const Volume volume = readDicom({add("1", slice)}, nullptr);
    EXPECT_TRUE(areOf<float>(volume));
    EXPECT_THAT(numbers(volume.times.at(0)), ElementsAre(-1024, -1023, -1022, -1021, -1020, -1019));
}

TEST_F(DicomReaderTest, LeavesOutTheBitsThatAreNoNumber)
{
    DicomFile slice = sliceAt(0, 0);
    slice.bitsStored = 12;
    slice.pixels = {0x1001, 0x0800, 0x7FF, 0, 1, 2};
    const Volume volume = readDicom({add("1", slice)}, nullptr);
    EXPECT_THAT(numbers(volume.times.at(0)), ElementsAre(1, -2048, 2047, 0, 1, 2));
}

TEST_F(DicomReaderTest, TakesSlicesAtTheSamePlacesForTimes)
{
    for (int time = 0; time < 2; ++time)
        for (int z = 0; z < 3; ++z) {
            DicomFile slice = sliceAt(z, static_cast<std::int16_t>(100 * time + 10 * z));
            slice.number = time * 3 + z;
            add(std::to_string(slice.number), slice);
        }
    const Volume volume = read();
    EXPECT_THAT(volume.grid.size, ElementsAre(3, 2, 3));
    ASSERT_THAT(volume.times, SizeIs(2));
    EXPECT_EQ(numbers(volume.times[0]).at(12), 20);
    EXPECT_EQ(numbers(volume.times[1]).at(12), 120);
}

TEST_F(DicomReaderTest, ShowsTheLargestSeriesAndSaysTheOthers)
{
    DicomFile scout = sliceAt(0, 50);
    scout.series = "1.2.1";
    scout.description = "scout";
    add("0", scout);
    add("1", sliceAt(0, 0));
    add("2", sliceAt(1, 6));
    const Volume volume = read();
    EXPECT_EQ(volume.grid.size[2], 2);
    EXPECT_THAT(volume.remarks,
        ElementsAre("has 2 series, of which the largest is shown; a file's name shows another: 'scout' (0)"));
    const std::vector<Exhibit> exhibits = loadExhibits(folder(), "scan", {}, nullptr);
    ASSERT_THAT(exhibits, SizeIs(1));
    EXPECT_EQ(nameOf(exhibits[0]), "scan - 3 x 2 x 2 voxels");
}

// What is said of each frame lies in sequences within sequences, of a length that is said or with a mark at their end.
TEST_F(DicomReaderTest, ReadsFramesOfOneFileInTheOrderOfTheirPlaces)
{
    DicomFile file = sliceAt(0, 0);
    for (std::int16_t pixel = 6; pixel < 12; ++pixel)
        file.pixels.push_back(pixel);
    const std::string item("\xFE\xFF\x00\xE0", 4), endOfItem("\xFE\xFF\x0D\xE0\0\0\0\0", 8);
    const std::string end("\xFE\xFF\xDD\xE0\0\0\0\0", 8), noLength("\xFF\xFF\xFF\xFF", 4);
    std::string frames;
    for (const char* const z : {"7", "4"}) {
        const std::string place = file.field(0x20, 0x32, "DS", std::string("1\\2\\") + z);
        const std::string sequence = file.field(0x20, 0x9113, "SQ", item + file.number32(place.size()) + place);
        frames += z == std::string("7") ? item + noLength + sequence + endOfItem
                                        : item + file.number32(sequence.size()) + sequence;
    }
    for (const bool isMarked : {false, true}) {
        file.before = file.field(0x28, 0x08, "IS", "2");
        file.before += isMarked ? std::string("\x00\x52\x30\x92SQ\0\0", 8) + noLength + frames + end
                                : file.field(0x5200, 0x9230, "SQ", frames);
        const Volume volume = readDicom({add("1", file)}, nullptr);
        EXPECT_THAT(volume.grid.size, ElementsAre(3, 2, 2)) << isMarked;
        EXPECT_EQ(volume.grid.origin, Vector3d(1, 2, 4));
        EXPECT_EQ(volume.grid.spacing[2], 3);
        EXPECT_THAT(numbers(volume.times.at(0)), ElementsAre(6, 7, 8, 9, 10, 11, 0, 1, 2, 3, 4, 5));
    }
}

// As deep as the file is long: nothing may go down with it.
TEST_F(DicomReaderTest, StandsWhatLiesDeepInOtherFields)
{
    DicomFile file = sliceAt(0, 0);
    for (int i = 0; i < 200'000; ++i)
        file.before += std::string("\x00\x52\x30\x92SQ\0\0\xFF\xFF\xFF\xFF\xFE\xFF\x00\xE0\xFF\xFF\xFF\xFF", 20);
    EXPECT_EQ(errorReading(add("1", file)), inErrors("1") + ": has no pixels");
}

TEST_F(DicomReaderTest, SaysThatSlicesAreNotEquallyFarApart)
{
    add("1", sliceAt(0, 0));
    add("2", sliceAt(1, 0));
    add("3", sliceAt(5, 0));
    EXPECT_THAT(read().remarks, ElementsAre("has slices that are not equally far apart, and is shown as if they were"));
}

TEST_F(DicomReaderTest, LeavesOutDamagedFilesOfAFolder)
{
    add("1", sliceAt(0, 0));
    const std::string whole = sliceAt(1, 0).bytes();
    write("scan/2", std::string_view(whole).substr(0, 300));
    const Volume volume = read();
    EXPECT_EQ(volume.grid.size[2], 1);
    ASSERT_THAT(volume.remarks, SizeIs(1));
    EXPECT_THAT(volume.remarks[0], HasSubstr("1 file(s) are left out; "));
    EXPECT_THAT(volume.remarks[0], HasSubstr("2: ends before its pixels"));
}

TEST_F(DicomReaderTest, RefusesCompressedPixels)
{
    DicomFile slice = sliceAt(0, 0);
    slice.syntax = "1.2.840.10008.1.2.4.91";
    EXPECT_EQ(errorReading(add("1", slice)),
        inErrors("1") + ": has compressed pixels (JPEG 2000), which are not read; \"gdcmconv --raw\" takes that away");
    slice.syntax = "1.2.3";
    EXPECT_EQ(errorReading(add("1", slice)), inErrors("1") + ": is written in the unknown way '1.2.3'");
}

TEST_F(DicomReaderTest, RefusesWhatIsNone)
{
    std::filesystem::create_directory(folder());
    EXPECT_EQ(errorReading(folder()), "scan: is a directory without DICOM files");
    EXPECT_EQ(
        errorReading(write("a.dcm", "no")), "a.dcm: is no DICOM file: it has not \"DICM\" behind its first 128 bytes");
    const std::string whole = sliceAt(0, 0).bytes();
    for (std::size_t size = 0; size + 1 < whole.size(); size += 7)
        EXPECT_THAT(errorReading(write("b.dcm", whole.substr(0, size))).substr(0, 7), "b.dcm: ") << size;
}

TEST_F(DicomReaderTest, TellsHowFarItIsAndCanBeStopped)
{
    add("1", sliceAt(0, 0));
    add("2", sliceAt(1, 0));
    std::vector<double> parts;
    readDicom({folder()}, [&](double part) {
        parts.push_back(part);
        return true;
    });
    EXPECT_TRUE(std::is_sorted(parts.begin(), parts.end()));
    EXPECT_EQ(parts.back(), 1);
    EXPECT_EQ(messageOf<InputError>([&] { readDicom({folder()}, [](double part) { return part < 0.5; }); }),
        inErrors("1") + ": the reading was stopped");
}

} // namespace
} // namespace vireo_view
