#include "apps/vireo-view/FileFormat.h"

#include <QImageReader>

#include "apps/vireo-view/InputError.h"
#include "tests/apps/vireo-view/FilesTest.h"

namespace vireo_view {
namespace {

class FileFormatTest : public FilesTest
{
protected:
    FileFormat formatOf(const std::string& name, std::string_view contents)
    {
        return detectFormat(write(name, contents));
    }
};

TEST_F(FileFormatTest, KnowsPlyByItsBeginningWhateverItsName)
{
    EXPECT_EQ(formatOf("a.ply", "ply\nformat ascii 1.0\n"), FileFormat::PLY);
    EXPECT_EQ(formatOf("a.dat", "ply\r\nformat ascii 1.0\r\n"), FileFormat::PLY);
    EXPECT_EQ(formatOf("b.txt", "plywood\n"), FileFormat::COLUMNS);
    EXPECT_EQ(formatOf("a.OBJ", "v 1 2 3\n"), FileFormat::OBJ);
    EXPECT_EQ(formatOf("a.stl", std::string(84, '\0')), FileFormat::STL);
    EXPECT_EQ(formatOf("a.gltf", "{}"), FileFormat::GLTF);
    EXPECT_EQ(formatOf("a.glb", "glTF\2"), FileFormat::GLTF);
}

TEST_F(FileFormatTest, KnowsOffByItsKeywordBehindComments)
{
    EXPECT_EQ(formatOf("a.off", "OFF\n8 6 12\n"), FileFormat::OFF);
    EXPECT_EQ(formatOf("a", "OFF 8 6 12\n"), FileFormat::OFF);
    EXPECT_EQ(formatOf("b.off", "COFF\r\n8 6 12\r\n"), FileFormat::OFF);
    EXPECT_EQ(formatOf("c.off", "# made by\n\n  # somebody\nSTCN4OFF\n"), FileFormat::OFF);
    EXPECT_EQ(formatOf("d.txt", "OFFSET\n1\n"), FileFormat::COLUMNS);
}

TEST_F(FileFormatTest, KnowsXyzByItsExtension)
{
    EXPECT_EQ(formatOf("a.xyz", "1 2 3\n"), FileFormat::XYZ);
    EXPECT_EQ(formatOf("a.XYZ", "1 2 3\n"), FileFormat::XYZ);
    EXPECT_EQ(formatOf("a.pwn", "1 2 3 0 0 1\n"), FileFormat::XYZ);
}

TEST_F(FileFormatTest, KnowsPtsByItsExtension)
{
    EXPECT_EQ(formatOf("a.pts", "1\n1 2 3\n"), FileFormat::PTS);
    EXPECT_EQ(formatOf("a.PTS", "1 2 3\n"), FileFormat::PTS);
}

TEST_F(FileFormatTest, KnowsNiftiByItsExtension)
{
    for (const auto* const name : {"a.nii", "a.nii.gz", "b.hdr", "b.img", "b.img.gz", "C.NII.GZ"})
        EXPECT_EQ(formatOf(name, "anything"), FileFormat::NIFTI) << name;
    EXPECT_EQ(formatOf("nii", "1 2\n"), FileFormat::COLUMNS);
    EXPECT_EQ(formatOf("a.gz", "1 2\n"), FileFormat::COLUMNS);
}

TEST_F(FileFormatTest, KnowsVolumesByTheirExtension)
{
    EXPECT_EQ(formatOf("a.nrrd", "anything"), FileFormat::NRRD);
    EXPECT_EQ(formatOf("a.nhdr", "anything"), FileFormat::NRRD);
    EXPECT_EQ(formatOf("a.mha", "anything"), FileFormat::METAIMAGE);
    EXPECT_EQ(formatOf("a.MHD", "anything"), FileFormat::METAIMAGE);
    EXPECT_EQ(formatOf("a.tif", "anything"), FileFormat::IMAGE);
    EXPECT_EQ(formatOf("a.tiff", "anything"), FileFormat::IMAGE);
    for (const FileFormat format : {FileFormat::NIFTI, FileFormat::NRRD, FileFormat::METAIMAGE, FileFormat::TIFF})
        EXPECT_TRUE(isOfVolumes(format));
    EXPECT_FALSE(isOfVolumes(FileFormat::PLY));
}

TEST_F(FileFormatTest, KnowsWhatQtReadsByItsExtension)
{
    for (const QByteArray& format : QImageReader::supportedImageFormats())
        EXPECT_EQ(formatOf("a." + format.toStdString(), "1 2\n"), FileFormat::IMAGE) << format.toStdString();
}

TEST_F(FileFormatTest, TakesOtherTextsForColumns)
{
    for (const auto* const name : {"a.csv", "a.txt", "a.dat", "a.tsv"})
        EXPECT_EQ(formatOf(name, "1,2\n"), FileFormat::COLUMNS) << name;
    EXPECT_EQ(formatOf("a", "1"), FileFormat::COLUMNS);
    EXPECT_EQ(formatOf("b", "# only a comment"), FileFormat::COLUMNS);
}

TEST_F(FileFormatTest, TurnsAwayWhatIsNotWhatItsExtensionSays)
{
    EXPECT_EQ(messageOf<InputError>([&] { formatOf("a.ply", "1 2 3\n"); }),
        "a.ply: is not a PLY file: it does not begin with 'ply'");
    EXPECT_EQ(messageOf<InputError>([&] { formatOf("a.off", "1 2 3\n"); }),
        "a.off: is not an OFF file: it does not begin with 'OFF'");
}

TEST_F(FileFormatTest, TurnsAwayBinaryFilesItDoesNotKnow)
{
    EXPECT_EQ(messageOf<InputError>([&] {
        formatOf("a.xyz", std::string_view("\x7F"
                                           "ELF\0\0",
                              6));
    }),
        "a.xyz: is of no known format: neither PLY nor OFF nor a volume nor an image nor text; --raw says how voxels "
        "lie "
        "in it");
}

} // namespace
} // namespace vireo_view
