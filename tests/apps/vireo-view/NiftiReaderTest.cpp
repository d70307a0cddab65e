#include "apps/vireo-view/NiftiReader.h"

#include <cmath>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <limits>

#include "apps/vireo-view/Histogram.h"
#include "apps/vireo-view/InputError.h"
#include "tests/apps/vireo-view/FilesTest.h"
#include "tests/apps/vireo-view/NiftiFile.h"

namespace vireo_view {
namespace {

namespace fs = std::filesystem;

using tavo::Vector3d;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

std::vector<double> numbers(const NumberColumn& column)
{
    std::vector<double> result;
    for (std::size_t i = 0; i < sizeOf(column); ++i)
        result.push_back(numberAt(column, i));
    return result;
}

// Of the first time.
std::vector<double> densities(const Volume& volume)
{
    return numbers(volume.times.front());
}

// 2 x 1 x 3 voxels.
NiftiFile smallFile()
{
    return {{2, 1, 3}, NIFTI_TYPE_UINT8, bytesOf<unsigned char>({0, 1, 2, 100, 200, 255})};
}

class NiftiReaderTest : public FilesTest
{
protected:
    Volume read(const std::string& name, const std::string& bytes) const
    {
        return readNifti(write(name, bytes), nullptr);
    }

    template <typename Value>
    std::vector<double> readValues(short datatype, const std::vector<Value>& values) const
    {
        const NiftiFile file({static_cast<short>(values.size()), 1, 1}, datatype, bytesOf(values));
        return densities(read("values.nii", file.getBytes()));
    }

    std::string errorReading(const std::string& name, const std::string& bytes) const
    {
        return errorReading(write(name, bytes));
    }

    std::string errorReading(const fs::path& file) const
    {
        testing::internal::CaptureStderr();
        const std::string message = messageOf<InputError>([&] { readNifti(file, nullptr); });
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << message;
        return message;
    }

    // The message for the small file after a change.
    template <typename Change>
    std::string errorAfter(Change change) const
    {
        NiftiFile file = smallFile();
        change(file.header);
        return errorReading("a.nii", file.getBytes());
    }

    fs::path writeSmallCompressed() const
    {
        writeCompressed(directory() / "a.nii.gz", smallFile().getBytes());
        return directory() / "a.nii.gz";
    }
};

TEST_F(NiftiReaderTest, KeepsTheTypeAndSaysWhereVoxelsAre)
{
    NiftiFile file = smallFile();
    file.header.pixdim[1] = 2.0f;
    file.header.pixdim[3] = -1.5f;
    const Volume volume = read("a.nii", file.getBytes());
    EXPECT_THAT(volume.grid.size, ElementsAre(2, 1, 3));
    EXPECT_EQ(volume.grid.spacing, Vector3d(2, 1, 1.5));
    EXPECT_EQ(volume.grid.origin, Vector3d(0, 0, 0));
    EXPECT_THAT(volume.grid.axes, ElementsAre(Vector3d(1, 0, 0), Vector3d(0, 1, 0), Vector3d(0, 0, 1)));
    EXPECT_EQ(volume.front, Volume::Front::HIGH_Y);
    EXPECT_TRUE(std::holds_alternative<std::vector<std::uint8_t>>(volume.times.front()));
    EXPECT_THAT(densities(volume), ElementsAre(0, 1, 2, 100, 200, 255));
}

TEST_F(NiftiReaderTest, ReadsCompressedFiles)
{
    EXPECT_THAT(densities(readNifti(writeSmallCompressed(), nullptr)), ElementsAre(0, 1, 2, 100, 200, 255));
}

TEST_F(NiftiReaderTest, ReadsEveryTypeOfSingleNumbers)
{
    EXPECT_THAT(readValues<std::int8_t>(NIFTI_TYPE_INT8, {-128, 127}), ElementsAre(-128, 127));
    EXPECT_THAT(readValues<std::uint16_t>(NIFTI_TYPE_UINT16, {0, 65535}), ElementsAre(0, 65535));
    EXPECT_THAT(readValues<std::int16_t>(NIFTI_TYPE_INT16, {-32768, 32767}), ElementsAre(-32768, 32767));
    EXPECT_THAT(readValues<std::uint32_t>(NIFTI_TYPE_UINT32, {0, 1u << 31}), ElementsAre(0, 0x1p31f));
    EXPECT_THAT(readValues<std::int32_t>(NIFTI_TYPE_INT32, {-5, 1 << 30}), ElementsAre(-5, 0x1p30f));
    EXPECT_THAT(readValues<std::uint64_t>(NIFTI_TYPE_UINT64, {0, 1ull << 63}), ElementsAre(0, 0x1p63));
    EXPECT_THAT(readValues<std::int64_t>(NIFTI_TYPE_INT64, {-5, 1ll << 62}), ElementsAre(-5, 0x1p62f));
    EXPECT_THAT(readValues<float>(NIFTI_TYPE_FLOAT32, {-0.5f, 1e30f}), ElementsAre(-0.5f, 1e30f));
    EXPECT_THAT(readValues<double>(NIFTI_TYPE_FLOAT64, {-0.5, 1e30}), ElementsAre(-0.5, 1e30));
}

TEST_F(NiftiReaderTest, LeavesWhatIsNoNumberAsItIs)
{
    const std::vector<double> values =
        readValues<float>(NIFTI_TYPE_FLOAT32, {NAN, std::numeric_limits<float>::infinity()});
    EXPECT_TRUE(std::isnan(values.at(0)));
    EXPECT_TRUE(std::isinf(values.at(1)));
}

TEST_F(NiftiReaderTest, ScalesWhatIsStored)
{
    NiftiFile file = smallFile();
    file.header.scl_slope = 0.5f;
    file.header.scl_inter = -1.0f;
    EXPECT_THAT(densities(read("a.nii", file.getBytes())), ElementsAre(-1, -0.5, 0, 49, 99, 126.5));
    file.header.scl_slope = 0.0f;
    EXPECT_THAT(densities(read("a.nii", file.getBytes())), ElementsAre(0, 1, 2, 100, 200, 255)) << "0 means not scaled";
}

TEST_F(NiftiReaderTest, ReadsFilesOfTheOtherByteOrder)
{
    NiftiFile file({2, 1, 1}, NIFTI_TYPE_INT16, bytesOf<std::int16_t>({0x0102, -2}));
    swap_nifti_header(&file.header, 1);
    nifti_swap_Nbytes(2, 2, file.voxels.data());
    const Volume volume = read("a.nii", file.getBytes());
    EXPECT_THAT(densities(volume), ElementsAre(0x0102, -2));
}

TEST_F(NiftiReaderTest, ReadsVolumesInTime)
{
    NiftiFile file({2, 1, 1, 2}, NIFTI_TYPE_UINT8, bytesOf<unsigned char>({1, 2, 3, 4}));
    file.header.pixdim[4] = 1500;
    file.header.xyzt_units = NIFTI_UNITS_MM | NIFTI_UNITS_MSEC;
    const Volume volume = read("a.nii", file.getBytes());
    EXPECT_THAT(volume.grid.size, ElementsAre(2, 1, 1));
    ASSERT_THAT(volume.times, SizeIs(2));
    EXPECT_THAT(numbers(volume.times[0]), ElementsAre(1, 2));
    EXPECT_THAT(numbers(volume.times[1]), ElementsAre(3, 4));
    EXPECT_DOUBLE_EQ(volume.secondsPerTime, 1.5);
    file.header.xyzt_units = NIFTI_UNITS_MM;
    EXPECT_EQ(read("a.nii", file.getBytes()).secondsPerTime, 0) << "of no unit";
    file.header.dim[4] = 3;
    EXPECT_EQ(errorReading("a.nii", file.getBytes()), "a.nii: ends before its last voxel");
}

TEST_F(NiftiReaderTest, TakesExtentsThatAreNotNamedForOne)
{
    const NiftiFile file({3}, NIFTI_TYPE_UINT8, bytesOf<unsigned char>({1, 2, 3}));
    EXPECT_THAT(read("a.nii", file.getBytes()).grid.size, ElementsAre(3, 1, 1));
}

TEST_F(NiftiReaderTest, ReadsNifti2)
{
    nifti_2_header header{};
    header.sizeof_hdr = sizeof header;
    std::memcpy(header.magic, "n+2\0\r\n\032\n", 8);
    header.datatype = NIFTI_TYPE_UINT8;
    const std::int64_t dim[] = {3, 2, 1, 3, 1, 1, 1, 1};
    std::copy(std::begin(dim), std::end(dim), header.dim);
    std::fill(header.pixdim + 1, header.pixdim + 8, 0.25);
    header.vox_offset = 544;
    std::string bytes(544, '\0');
    std::memcpy(bytes.data(), &header, sizeof header);
    const Volume volume = read("a.nii", bytes + smallFile().voxels);
    EXPECT_THAT(densities(volume), ElementsAre(0, 1, 2, 100, 200, 255));
    EXPECT_EQ(volume.grid.spacing, Vector3d(0.25, 0.25, 0.25));
    EXPECT_EQ(errorReading("b.nii", bytes.substr(0, 400)), "b.nii: ends within its header");
}

TEST_F(NiftiReaderTest, ReadsPairsByEitherName)
{
    NiftiFile file = smallFile();
    file.header.vox_offset = 0;
    std::strcpy(file.header.magic, "ni1");
    const fs::path header = write("a.hdr", file.getHeaderBytes());
    EXPECT_EQ(errorReading(header), "a.hdr: has no image: the file with the extension .img beside it is missing");
    const fs::path image = write("a.img", file.voxels);
    EXPECT_THAT(densities(readNifti(header, nullptr)), ElementsAre(0, 1, 2, 100, 200, 255));
    EXPECT_THAT(densities(readNifti(image, nullptr)), ElementsAre(0, 1, 2, 100, 200, 255));
    fs::remove(header);
    EXPECT_EQ(errorReading(image), "a.img: has no header: the file with the extension .hdr beside it is missing");
}

TEST_F(NiftiReaderTest, ReadsPairsWhateverTheirLetters)
{
    NiftiFile file = smallFile();
    file.header.vox_offset = 0;
    std::strcpy(file.header.magic, "ni1");
    const fs::path header = write("H\xC3\xB6he.hdr", file.getHeaderBytes()); // UTF-8, on Windows too
    const fs::path image = write("H\xC3\xB6he.img", file.voxels);
    EXPECT_THAT(densities(readNifti(header, nullptr)), ElementsAre(0, 1, 2, 100, 200, 255));
    EXPECT_THAT(densities(readNifti(image, nullptr)), ElementsAre(0, 1, 2, 100, 200, 255));
    fs::remove(image);
    writeCompressed(directory() / "H.IMG.GZ", file.voxels);
    EXPECT_THAT(densities(read("H.HDR", file.getHeaderBytes())), ElementsAre(0, 1, 2, 100, 200, 255));
    EXPECT_THAT(densities(readNifti(directory() / "H.IMG.GZ", nullptr)), ElementsAre(0, 1, 2, 100, 200, 255));
}

TEST_F(NiftiReaderTest, TurnsAwayImagesThatAreNoFiles)
{
    NiftiFile file = smallFile();
    file.header.vox_offset = 0;
    std::strcpy(file.header.magic, "ni1");
    fs::create_directory(directory() / "a.img");
    EXPECT_EQ(errorReading("a.hdr", file.getHeaderBytes()),
        "a.hdr: has no image: the file with the extension .img beside it is missing");
}

TEST_F(NiftiReaderTest, ReadsPairsOfAnalyze)
{
    NiftiFile file = smallFile();
    file.header.vox_offset = 0;
    std::memset(file.header.magic, 0, sizeof file.header.magic);
    write("a.img", file.voxels);
    EXPECT_THAT(densities(read("a.hdr", file.getHeaderBytes())), ElementsAre(0, 1, 2, 100, 200, 255));
}

TEST_F(NiftiReaderTest, TakesLengthsInTheUnitOfTheFile)
{
    NiftiFile file = smallFile();
    file.header.xyzt_units = NIFTI_UNITS_METER;
    EXPECT_EQ(read("a.nii", file.getBytes()).grid.spacing[0], 1000);
    file.header.xyzt_units = NIFTI_UNITS_MICRON;
    EXPECT_EQ(read("a.nii", file.getBytes()).grid.spacing[0], 0.001);
}

// Indices that count to the front, to the left and upwards, in millimetres from a place.
TEST_F(NiftiReaderTest, PutsTheVolumeWhereTheMatrixOfTheFileSays)
{
    NiftiFile file({2, 3, 1}, NIFTI_TYPE_UINT8, bytesOf<unsigned char>({1, 2, 3, 4, 5, 6}));
    file.header.pixdim[1] = 7.0f; // another size, which does not count
    file.header.xyzt_units = NIFTI_UNITS_METER;
    file.header.sform_code = 1;
    const float matrix[3][4] = {{0, -1, 0, 0.5f}, {2, 0, 0, -0.25f}, {0, 0, 1, 4}};
    std::copy(matrix[0], matrix[0] + 4, file.header.srow_x);
    std::copy(matrix[1], matrix[1] + 4, file.header.srow_y);
    std::copy(matrix[2], matrix[2] + 4, file.header.srow_z);
    const Volume volume = read("a.nii", file.getBytes());
    EXPECT_THAT(volume.grid.size, ElementsAre(2, 3, 1));
    EXPECT_EQ(volume.grid.spacing, Vector3d(2000, 1000, 1000));
    EXPECT_EQ(volume.grid.origin, Vector3d(500, -250, 4000));
    EXPECT_THAT(volume.grid.axes, ElementsAre(Vector3d(0, 1, 0), Vector3d(-1, 0, 0), Vector3d(0, 0, 1)));
    EXPECT_THAT(densities(volume), ElementsAre(1, 2, 3, 4, 5, 6)) << "as they lie in the file";
}

TEST_F(NiftiReaderTest, PutsTheVolumeWhereItsQuaternionSaysIfItHasNoMatrix)
{
    // Half a turn about Z: to the left and to the back.
    NiftiFile file({2, 2, 1}, NIFTI_TYPE_UINT8, bytesOf<unsigned char>({1, 2, 3, 4}));
    file.header.qform_code = 1;
    file.header.quatern_d = 1.0f;
    file.header.pixdim[2] = 3.0f;
    file.header.qoffset_y = 5.0f;
    const Volume volume = read("a.nii", file.getBytes());
    EXPECT_THAT(volume.grid.axes, ElementsAre(Vector3d(-1, 0, 0), Vector3d(0, -1, 0), Vector3d(0, 0, 1)));
    EXPECT_EQ(volume.grid.spacing, Vector3d(1, 3, 1));
    EXPECT_EQ(volume.grid.origin, Vector3d(0, 5, 0));
}

TEST_F(NiftiReaderTest, TakesTheVolumeAsItComesIfItsOrientationIsNone)
{
    const auto expectAsItComes = [this](const NiftiFile& file) {
        const Volume volume = read("a.nii", file.getBytes());
        EXPECT_THAT(volume.grid.axes, ElementsAre(Vector3d(1, 0, 0), Vector3d(0, 1, 0), Vector3d(0, 0, 1)));
        EXPECT_EQ(volume.grid.origin, Vector3d(0, 0, 0));
    };
    NiftiFile file = smallFile();
    file.header.sform_code = 1;
    expectAsItComes(file); // without a length
    file.header.srow_x[0] = file.header.srow_x[1] = file.header.srow_y[2] = 1;
    expectAsItComes(file); // in a plane
    file.header.srow_x[0] = file.header.srow_y[1] = file.header.srow_z[2] = NAN;
    expectAsItComes(file);
}

// Three pieces of those that are read at a time.
NiftiFile fileOfThreePieces()
{
    constexpr short LENGTH = 3 * 1024;
    return {{LENGTH, 8, 1}, NIFTI_TYPE_UINT8, std::string(LENGTH * 8, 'x')};
}

TEST_F(NiftiReaderTest, TellsHowFarItIsAndCanBeStopped)
{
    std::vector<double> parts;
    const fs::path file = write("a.nii", fileOfThreePieces().getBytes());
    readNifti(file, [&](double part) {
        parts.push_back(part);
        return true;
    });
    EXPECT_THAT(parts, ElementsAre(1.0 / 3, 2.0 / 3, 1));
    EXPECT_EQ(messageOf<InputError>([&] { readNifti(file, [](double) { return false; }); }),
        "a.nii: the reading was stopped");
}

TEST_F(NiftiReaderTest, TellsHowFarItIsInACompressedFileAndCanBeStoppedBeforeItIsWhole)
{
    const fs::path file = directory() / "a.nii.gz";
    writeCompressed(file, fileOfThreePieces().getBytes());
    std::vector<double> parts;
    readNifti(file, [&](double part) {
        parts.push_back(part);
        return true;
    });
    ASSERT_THAT(parts, SizeIs(4));
    EXPECT_DOUBLE_EQ(parts[0], 0.5) << "all of it is decompressed";
    EXPECT_DOUBLE_EQ(parts[1], 2.0 / 3);
    EXPECT_DOUBLE_EQ(parts[2], 5.0 / 6);
    EXPECT_DOUBLE_EQ(parts[3], 1);
    EXPECT_EQ(messageOf<InputError>([&] { readNifti(file, [](double part) { return part > 0.5; }); }),
        "a.nii.gz: the reading was stopped");
}

TEST_F(NiftiReaderTest, ReadsCompressedFilesThatWereJoined)
{
    const fs::path first = directory() / "a.nii.gz", second = directory() / "b.nii.gz";
    const std::string bytes = smallFile().getBytes();
    writeCompressed(first, bytes.substr(0, 355));
    writeCompressed(second, bytes.substr(355));
    std::ofstream(first, std::ios::binary | std::ios::app) << std::ifstream(second, std::ios::binary).rdbuf();
    EXPECT_THAT(densities(readNifti(first, nullptr)), ElementsAre(0, 1, 2, 100, 200, 255));
}

// Larger than what is read, decompressed and converted at a time.
TEST_F(NiftiReaderTest, ReadsLargeCompressedFilesAsThoseThatAreNot)
{
    std::vector<std::int16_t> values(30000 * 7 * 3);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<std::int16_t>(i * 37);
    NiftiFile file({30000, 7, 3}, NIFTI_TYPE_INT16, bytesOf(values));
    swap_nifti_header(&file.header, 1);
    nifti_swap_Nbytes(static_cast<std::int64_t>(values.size()), 2, file.voxels.data());
    const std::vector<double> expected(values.begin(), values.end());
    EXPECT_TRUE(densities(read("a.nii", file.getBytes())) == expected);
    writeCompressed(directory() / "a.nii.gz", file.getBytes());
    EXPECT_TRUE(densities(readNifti(directory() / "a.nii.gz", nullptr)) == expected);
}

TEST_F(NiftiReaderTest, TurnsAwayWhatIsNoNifti)
{
    const std::string message = "a.nii: is not a NIfTI file: it does not begin with such a header";
    EXPECT_EQ(errorReading("a.nii", ""), message);
    EXPECT_EQ(errorReading("a.nii", "n+1"), message);
    EXPECT_EQ(errorReading("a.nii", std::string(1000, 'x')), message);
    EXPECT_EQ(errorReading("a.nii", std::string(1000, '\0')), message);
    EXPECT_EQ(errorReading("a.nii", smallFile().getHeaderBytes().substr(0, 347)), message);
    EXPECT_EQ(errorAfter([](nifti_1_header& header) { header.magic[0] = 'x'; }), message) << "ANALYZE comes in pairs";
    EXPECT_EQ(errorReading(directory() / "none.nii"), "none.nii: cannot be opened");
}

TEST_F(NiftiReaderTest, TurnsAwayNumbersOfDimensionsThatCannotBe)
{
    for (const short number : {0, -1, 8, 32767})
        EXPECT_EQ(errorAfter([=](nifti_1_header& header) { header.dim[0] = number; }),
            "a.nii: cannot have " + std::to_string(number) + " dimensions");
}

TEST_F(NiftiReaderTest, TurnsAwayExtentsOfNothing)
{
    for (const int axis : {1, 2, 3}) {
        EXPECT_EQ(
            errorAfter([=](nifti_1_header& header) { header.dim[axis] = 0; }), "a.nii: has an extent of 0 voxels");
        EXPECT_EQ(
            errorAfter([=](nifti_1_header& header) { header.dim[axis] = -7; }), "a.nii: has an extent of -7 voxels");
    }
}

TEST_F(NiftiReaderTest, TurnsAwayMoreVoxelsThanThereCanBe)
{
    EXPECT_EQ(errorAfter([](nifti_1_header& header) { header.dim[1] = header.dim[2] = header.dim[3] = 32767; }),
        "a.nii: has too many voxels");
    EXPECT_EQ(errorAfter([](nifti_1_header& header) { header.dim[1] = header.dim[2] = 32767; }),
        "a.nii: ends before its last voxel")
        << "with nothing allocated";
    NiftiFile huge = smallFile();
    huge.header.dim[1] = huge.header.dim[2] = 32767;
    writeCompressed(directory() / "a.nii.gz", huge.getBytes());
    EXPECT_EQ(errorReading(directory() / "a.nii.gz"), "a.nii.gz: ends before its last voxel");
}

TEST_F(NiftiReaderTest, TurnsAwayTypesThatAreNoSingleNumbers)
{
    const auto errorFor = [this](short datatype) {
        return errorAfter([=](nifti_1_header& header) { header.datatype = datatype; });
    };
    EXPECT_EQ(errorFor(NIFTI_TYPE_RGB24),
        "a.nii: has voxels of the type RGB24, which are no single numbers of up to 64 bits");
    EXPECT_EQ(errorFor(NIFTI_TYPE_COMPLEX64),
        "a.nii: has voxels of the type COMPLEX64, which are no single numbers of up to 64 bits");
    EXPECT_EQ(errorFor(NIFTI_TYPE_FLOAT128),
        "a.nii: has voxels of the type FLOAT128, which are no single numbers of up to 64 bits");
    for (const short unknown : {0, 1, 3, 255, 999, -4})
        EXPECT_EQ(errorFor(unknown), "a.nii: has voxels of the unknown type " + std::to_string(unknown));
}

TEST_F(NiftiReaderTest, TurnsAwayPlacesAndSizesOfVoxelsThatCannotBe)
{
    for (const float offset : {-1.0f, 1e30f, NAN, std::numeric_limits<float>::infinity()})
        EXPECT_EQ(errorAfter([=](nifti_1_header& header) { header.vox_offset = offset; }),
            "a.nii: says that its voxels are where they cannot be");
    EXPECT_EQ(
        errorAfter([](nifti_1_header& header) { header.vox_offset = 1e6f; }), "a.nii: ends before its last voxel");
    for (const float size : {1e30f, 1e-30f})
        EXPECT_EQ(errorAfter([=](nifti_1_header& header) { header.pixdim[2] = size; }),
            "a.nii: has voxels of a size that cannot be");
    EXPECT_THAT(errorAfter([](nifti_1_header& header) {
        header.pixdim[1] = NAN;
        header.pixdim[2] = 0;
    }),
        IsEmpty())
        << "as if 1 mm";
}

TEST_F(NiftiReaderTest, TurnsAwayFilesThatEndTooSoon)
{
    const std::string bytes = smallFile().getBytes();
    for (std::size_t size = sizeof(nifti_1_header); size < bytes.size(); ++size)
        EXPECT_EQ(errorReading("a.nii", bytes.substr(0, size)), "a.nii: ends before its last voxel");
    EXPECT_THAT(errorReading("a.nii", bytes + "more"), IsEmpty());
}

std::string contentsOf(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST_F(NiftiReaderTest, TurnsAwayCompressedFilesThatEndTooSoonOrAreDamagedWhereverThatIs)
{
    NiftiFile file({100, 30, 1}, NIFTI_TYPE_UINT8, std::string(3000, '\0'));
    for (std::size_t i = 0; i < file.voxels.size(); ++i)
        file.voxels[i] = static_cast<char>(i * i / 7);
    writeCompressed(directory() / "a.nii.gz", file.getBytes());
    const std::string whole = contentsOf(directory() / "a.nii.gz");
    ASSERT_GT(whole.size(), 300u);
    EXPECT_THAT(errorReading("b.nii.gz", whole), IsEmpty());
    for (std::size_t size = 0; size + 16 < whole.size(); size += 7)
        EXPECT_THAT(errorReading("b.nii.gz", whole.substr(0, size)), StartsWith("b.nii.gz: ")) << size;
    // What follows the ten bytes of gzip's own header.
    for (std::size_t at = 10; at < whole.size(); at += 7) {
        std::string damaged = whole;
        damaged[at] = static_cast<char>(~damaged[at]);
        EXPECT_THAT(errorReading("b.nii.gz", damaged), StartsWith("b.nii.gz: ")) << at;
    }
}

// Whatever a header says, there is a volume or one line that says why not.
TEST_F(NiftiReaderTest, SurvivesAnyByteOfTheHeader)
{
    const std::string bytes = smallFile().getBytes();
    for (std::size_t at = 0; at < sizeof(nifti_1_header); ++at) {
        for (const int value : {0x00, 0x7F, 0x80, 0xFF}) {
            std::string changed = bytes;
            changed[at] = static_cast<char>(value);
            const std::string message = errorReading("a.nii", changed);
            EXPECT_TRUE(message.empty() || message.starts_with("a.nii: ")) << at << " " << value << " " << message;
        }
    }
}

// The head of mricron-data.
class HeadTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!fs::exists(HEAD))
            GTEST_SKIP() << HEAD << " (package mricron-data) is not installed";
    }

    static constexpr auto HEAD = VIREO_MRI_HEAD;
};

TEST_F(HeadTest, IsReadAsItIs)
{
    const Volume head = readNifti(HEAD, nullptr);
    EXPECT_THAT(head.grid.size, ElementsAre(181, 217, 181));
    EXPECT_EQ(head.grid.spacing, Vector3d(1, 1, 1));
    EXPECT_EQ(head.grid.origin, Vector3d(-90, -125, -71)) << "the place of the brain that coordinates are told from";
    const std::vector<double> voxels = densities(head);
    const auto voxel = [&](int x, int y, int z) { return voxels.at(x + 181 * (y + 217 * z)); };
    EXPECT_EQ(voxel(0, 0, 0), 0);
    EXPECT_EQ(voxel(90, 108, 90), 33);
    EXPECT_EQ(voxel(60, 100, 70), 113);
    EXPECT_EQ(voxel(45, 120, 100), 111);
    EXPECT_EQ(voxel(120, 60, 50), 78);
    EXPECT_EQ(voxel(100, 30, 20), 68);
}

TEST_F(HeadTest, HasAHistogramOfItsValues)
{
    const Histogram histogram(readNifti(HEAD, nullptr).times.front());
    EXPECT_EQ(histogram.getSpan().getMin(), 0);
    EXPECT_EQ(histogram.getSpan().getMax(), 254);
    ASSERT_EQ(histogram.getCounts().size(), 255u) << "a bin for each value";
    EXPECT_EQ(histogram.getNumSamples(), 7109137u);
    EXPECT_EQ(histogram.getCounts()[0], 2957530u);
    EXPECT_EQ(histogram.getCounts()[1], 0u);
    EXPECT_EQ(histogram.getCounts()[7], 19u);
    EXPECT_EQ(histogram.getCounts()[254], 5u);
}

} // namespace
} // namespace vireo_view
