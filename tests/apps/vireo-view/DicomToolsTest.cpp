#include <QProcess>
#include <gmock/gmock.h>

#include "apps/vireo-view/DicomReader.h"
#include "apps/vireo-view/NiftiReader.h"
#include "tests/apps/vireo-view/VolumeFilesTest.h"

// Files that DCMTK's programs write.
namespace vireo_view {
namespace {

using tavo::Vector3d;
using testing::ElementsAre;
using testing::HasSubstr;

class DicomToolsTest : public VolumeFilesTest
{
protected:
    void SetUp() override { std::filesystem::create_directory(directory() / "scan"); }

    // The slice of the head as a scanner sees it: the first axis points to the left, and the second one to the back.
    std::filesystem::path addSlice(const Volume& head, int z, const QString& syntax) const
    {
        const auto& voxels = std::get<std::vector<std::uint8_t>>(head.times.front());
        const auto [nx, ny, nz] = head.grid.size;
        std::string pixels;
        for (int y = ny - 1; y >= 0; --y)
            for (int x = nx - 1; x >= 0; --x)
                pixels += static_cast<char>(voxels[static_cast<std::size_t>(x + nx * (y + ny * z))]);
        const std::string last = std::to_string(-(head.grid.origin[0] + nx - 1)) + "\\" +
                                 std::to_string(-(head.grid.origin[1] + ny - 1)) + "\\" +
                                 std::to_string(head.grid.origin[2] + z);
        const std::string number = std::to_string(z);
        const std::filesystem::path dump = write("dump.txt",
            "(0008,0016) UI [1.2.840.10008.5.1.4.1.1.4]\n(0008,0018) UI [1.2.3." + number +
                "]\n(0020,000e) UI [1.2.3]\n(0020,0013) IS [" + number + "]\n(0020,0032) DS [" + last +
                "]\n(0020,0037) DS [1\\0\\0\\0\\1\\0]\n(0028,0002) US 1\n(0028,0004) CS [MONOCHROME2]\n" +
                "(0028,0010) US " + std::to_string(ny) + "\n(0028,0011) US " + std::to_string(nx) +
                "\n(0028,0030) DS [1\\1]\n(0028,0100) US 8\n(0028,0101) US 8\n(0028,0102) US 7\n(0028,0103) US 0\n" +
                "(7fe0,0010) OB =" + write("pixels.raw", pixels).string() + "\n");
        const std::filesystem::path file = directory() / "scan" / ("slice" + std::to_string(1000 - z));
        runTool("dump2dcm", {"-q", syntax, dump.c_str(), file.c_str()});
        return file;
    }

    static void runTool(const QString& program, const QStringList& arguments)
    {
        QProcess process;
        process.start(VIREO_DCMTK_PROGRAMS "/" + program, arguments);
        ASSERT_TRUE(process.waitForFinished());
        ASSERT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    }
};

TEST_F(DicomToolsTest, TheHeadIsReadFromSlices)
{
    const Volume head = readNifti(VIREO_MRI_HEAD, nullptr);
    const QStringList syntaxes{"+te", "+ti", "+tb"};
    for (int i = 0; i < 5; ++i)
        addSlice(head, 80 + 2 * i, syntaxes[i % 3]);
    const Volume volume = readDicom({directory() / "scan"}, nullptr);
    EXPECT_THAT(volume.grid.size, ElementsAre(181, 217, 5));
    EXPECT_EQ(volume.grid.spacing, Vector3d(1, 1, 2));
    EXPECT_EQ(
        volume.grid.origin, Vector3d(-head.grid.origin[0] - 180, -head.grid.origin[1] - 216, head.grid.origin[2] + 80));
    const auto& voxels = std::get<std::vector<std::uint8_t>>(volume.times.front());
    const auto& ofHead = std::get<std::vector<std::uint8_t>>(head.times.front());
    const auto at = [](const std::vector<std::uint8_t>& samples, int x, int y, int z) {
        return int(samples[static_cast<std::size_t>(x + 181 * (y + 217 * z))]);
    };
    for (int z = 0; z < 5; ++z)
        for (int x = 0; x < 181; x += 13)
            EXPECT_EQ(at(voxels, x, 100, z), at(ofHead, 180 - x, 116, 80 + 2 * z)) << x << ", " << z;
}

TEST_F(DicomToolsTest, CompressedSlicesAreRefused)
{
    const std::filesystem::path file = addSlice(readNifti(VIREO_MRI_HEAD, nullptr), 90, "+te");
    const std::filesystem::path compressed = directory() / "compressed.dcm";
    for (const auto& [program, compression] : {std::pair("dcmcrle", "run lengths"), std::pair("dcmcjpeg", "JPEG")}) {
        runTool(program, {file.c_str(), compressed.c_str()});
        EXPECT_THAT(messageOf<InputError>([&] { readDicom({compressed}, nullptr); }),
            HasSubstr("compressed.dcm: has compressed pixels (" + std::string(compression) + ")"));
    }
}

} // namespace
} // namespace vireo_view
