#include "apps/vireo-view/PointFileReader.h"

#include <bit>
#include <clocale>
#include <gmock/gmock.h>
#include <iostream>
#include <sstream>
#include <tuple>

#include "apps/vireo-view/InputError.h"
#include "tests/apps/vireo-view/FilesTest.h"

namespace vireo_view {
namespace {

using tavo::Vector3d;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

const std::string COORDINATES = "property float x\nproperty float y\nproperty float z\n";

std::string plyHeader(
    const std::string& count, const std::string& properties = COORDINATES, const std::string& format = "ascii")
{
    return "ply\nformat " + format + " 1.0\nelement vertex " + count + "\n" + properties + "end_header\n";
}

template <typename... Numbers>
std::string littleEndian(Numbers... numbers)
{
    static_assert(std::endian::native == std::endian::little);
    std::string bytes;
    (bytes.append(reinterpret_cast<const char*>(&numbers), sizeof numbers), ...);
    return bytes;
}

class PointFileReaderTest : public FilesTest
{
protected:
    Points3 read(const std::string& name, std::string_view contents)
    {
        const auto file = write(name, contents);
        return readPointFile(file, detectFormat(file), nullptr);
    }

    std::string errorReading(const std::string& name, std::string_view contents)
    {
        return messageOf<InputError>([&] { read(name, contents); });
    }
};

TEST_F(PointFileReaderTest, ReadsAsciiPly)
{
    EXPECT_THAT(read("a.ply", plyHeader("2") + "1 2 3\n-4.5 5e2 .6\n"),
        ElementsAre(Vector3d(1, 2, 3), Vector3d(-4.5f, 500, 0.6f)));
}

TEST_F(PointFileReaderTest, ReadsAPlyWhoseLastNumberEndsTheFile)
{
    EXPECT_THAT(read("a.ply", plyHeader("1") + "1 2 3"), ElementsAre(Vector3d(1, 2, 3)));
    EXPECT_THAT(read("b.ply", plyHeader("2") + "1 2 3\n4 5 6"), ElementsAre(Vector3d(1, 2, 3), Vector3d(4, 5, 6)));
}

TEST_F(PointFileReaderTest, ReadsDoublesWithAllTheirDigits)
{
    const std::string properties = "property double x\nproperty float64 y\nproperty double z\n";
    EXPECT_THAT(read("a.ply", plyHeader("1", properties) + "5000000000.125 1e-300 3\n"),
        ElementsAre(Vector3d(5000000000.125, 1e-300, 3)));
    EXPECT_THAT(read("b.ply", plyHeader("1", properties, "binary_little_endian") + littleEndian(0.1, 0.2, 0.3)),
        ElementsAre(Vector3d(0.1, 0.2, 0.3)));
}

TEST_F(PointFileReaderTest, ReadsBinaryPlyOfBothByteOrders)
{
    EXPECT_THAT(
        read("a.ply", plyHeader("2", COORDINATES, "binary_little_endian") + littleEndian(1.f, 2.f, 3.f, 4.f, 5.f, 6.f)),
        ElementsAre(Vector3d(1, 2, 3), Vector3d(4, 5, 6)));
    const std::string_view bigEndian("\x3F\x80\0\0\x40\0\0\0\x40\x40\0\0", 12);
    EXPECT_THAT(read("b.ply", plyHeader("1", COORDINATES, "binary_big_endian") + std::string(bigEndian)),
        ElementsAre(Vector3d(1, 2, 3)));
}

TEST_F(PointFileReaderTest, ReadsBytesOfABinaryPlyThatLookLikeLineEnds)
{
    const std::string properties = "property uchar x\nproperty uchar y\nproperty uchar z\n";
    EXPECT_THAT(read("a.ply", plyHeader("2", properties, "binary_little_endian") + "\r\n\r\r\n\n"),
        ElementsAre(Vector3d(13, 10, 13), Vector3d(13, 10, 10)));
}

TEST_F(PointFileReaderTest, LeavesOutTheOtherPropertiesOfPlyPoints)
{
    const std::string properties = "property uchar red\nproperty float z\nproperty float nx\nproperty float y\n"
                                   "property float x\nproperty int label\n";
    EXPECT_THAT(read("a.ply", plyHeader("1", properties) + "255 3 0.5 2 1 7\n"), ElementsAre(Vector3d(1, 2, 3)));
    EXPECT_THAT(read("b.ply", plyHeader("1", properties, "binary_little_endian") +
                                  littleEndian(std::uint8_t(255), 3.f, 0.5f, 2.f, 1.f, 7)),
        ElementsAre(Vector3d(1, 2, 3)));
}

TEST_F(PointFileReaderTest, ReadsPlyCoordinatesOfEveryType)
{
    for (const std::string type : {"char", "uchar", "short", "ushort", "int", "uint", "float", "double", "int8",
             "uint8", "int16", "uint16", "int32", "uint32", "float32", "float64"}) {
        const std::string properties = "property " + type + " x\nproperty " + type + " y\nproperty " + type + " z\n";
        EXPECT_THAT(read("a.ply", plyHeader("1", properties) + "1 2 100\n"), ElementsAre(Vector3d(1, 2, 100))) << type;
    }
    const std::string mixed = "property float x\nproperty double y\nproperty float z\n";
    EXPECT_THAT(read("a.ply", plyHeader("1", mixed) + "1 2 3\n"), ElementsAre(Vector3d(1, 2, 3)));
}

TEST_F(PointFileReaderTest, ReadsOverElementsBeforeThePointsAndStopsBehindThem)
{
    const std::string ply = "ply\nformat ascii 1.0\ncomment a comment\nobj_info and another\nelement camera 2\n"
                            "property float f\nelement vertex 1\n" +
                            COORDINATES + "element face 1\nproperty list uint int vertex_indices\nend_header\n";
    EXPECT_THAT(read("a.ply", ply + "9 9\n1 2 3\n4000000000 1 2"), ElementsAre(Vector3d(1, 2, 3)));
    EXPECT_THAT(read("b.ply", ply + "9 9\n1 2 3\n"), ElementsAre(Vector3d(1, 2, 3)));
}

TEST_F(PointFileReaderTest, ReadsPlyWithWindowsLineEnds)
{
    EXPECT_THAT(read("a.ply", "ply\r\nformat ascii 1.0\r\nelement vertex 1\r\nproperty float x\r\nproperty float y\r\n"
                              "property float z\r\nend_header\r\n1 2 3\r\n"),
        ElementsAre(Vector3d(1, 2, 3)));
}

TEST_F(PointFileReaderTest, ReadsDecimalPointsInEveryLocaleAndLeavesTheLocaleAsItWas)
{
    if (!useDecimalComma())
        GTEST_SKIP() << "there is no locale with a decimal comma: de_DE.UTF-8 can neither be found nor made";
    const std::string locale = std::setlocale(LC_NUMERIC, nullptr);
    EXPECT_THAT(read("a.ply", plyHeader("1") + "1.5 2.5 3.5\n"), ElementsAre(Vector3d(1.5, 2.5, 3.5)));
    EXPECT_EQ(std::setlocale(LC_NUMERIC, nullptr), locale);
}

TEST_F(PointFileReaderTest, TurnsAwayAPlyWithoutPoints)
{
    EXPECT_EQ(errorReading("a.ply", plyHeader("0")), "a.ply: has no points");
    EXPECT_EQ(errorReading("a.ply", "ply\nformat ascii 1.0\nend_header\n"), "a.ply: has no points");
}

TEST_F(PointFileReaderTest, TurnsAwayAPlyThatIsTooShortForItsPromise)
{
    EXPECT_EQ(errorReading("a.ply", plyHeader("4000000000") + "1 2 3\n"),
        "a.ply: is too short for the 4000000000 items of 'vertex' that it promises");
    EXPECT_EQ(errorReading("a.ply", plyHeader("18446744073709551615") + "1 2 3\n"),
        "a.ply: is too short for the 18446744073709551615 items of 'vertex' that it promises");
    const std::string binary =
        plyHeader("2", COORDINATES, "binary_little_endian") + littleEndian(1.f, 2.f, 3.f, 4.f, 5.f);
    EXPECT_EQ(errorReading("a.ply", binary), "a.ply: is too short for the 2 items of 'vertex' that it promises");
    EXPECT_EQ(
        errorReading("a.ply", "ply\nformat ascii 1.0\nelement camera 4000000000\nproperty int f\nelement vertex 1\n" +
                                  COORDINATES + "end_header\n1 2 3\n"),
        "a.ply: is too short for the 4000000000 items of 'camera' that it promises");
}

TEST_F(PointFileReaderTest, TellsWhereAnAsciiPlyEndsOrIsWrong)
{
    EXPECT_EQ(errorReading("a.ply", plyHeader("3") + "1.25 2.25 3.25\n4.25 5.25 6.25\n7.25\n"),
        "a.ply: ends after 2 of the 3 points that it promises");
    EXPECT_EQ(
        errorReading("a.ply", plyHeader("3") + "1 2 3\n4 five 6\n7 8 9\n"), "a.ply:9: not the numbers of a point");
    EXPECT_EQ(errorReading("a.ply", plyHeader("2") + "1 2 3\nnan nan nan\n"), "a.ply:9: not the numbers of a point");
}

TEST_F(PointFileReaderTest, NamesTheLineThatSpoilsAPlyHeader)
{
    EXPECT_EQ(
        errorReading("a.ply", "ply\nelement vertex 1\n"), "a.ply:2: expected the format, such as 'format ascii 1.0'");
    EXPECT_EQ(errorReading("a.ply", "ply\nformat gzip 1.0\n"), "a.ply:2: unknown format 'gzip'");
    EXPECT_EQ(errorReading("a.ply", "ply\nformat ascii 1.0\nproperty float x\n"),
        "a.ply:3: property 'x' belongs to no element");
    EXPECT_EQ(errorReading("a.ply", plyHeader("1", "property half x\n")), "a.ply:4: unknown type 'half'");
    EXPECT_EQ(errorReading("a.ply", plyHeader("1", "property list half int x\n")), "a.ply:4: unknown type 'half'");
    EXPECT_EQ(
        errorReading("a.ply", plyHeader("1", "property float\n")), "a.ply:4: expected a property's type and name");
    EXPECT_EQ(errorReading("a.ply", plyHeader("1", "\n")), "a.ply:4: unknown keyword ''");
    for (const std::string count : {"-1", "many", "1.5", "", "18446744073709551616"})
        EXPECT_EQ(errorReading("a.ply", plyHeader(count)), "a.ply:3: expected an element's name and count") << count;
    EXPECT_EQ(errorReading("a.ply", "ply\nformat ascii 1.0\nelement vertex 1\n" + COORDINATES),
        "a.ply:6: the header does not end");
}

TEST_F(PointFileReaderTest, TurnsAwayPlyPointsThatItCannotRead)
{
    const std::string noCoordinates = "a.ply: its points do not have numbers x, y and z of one type";
    EXPECT_EQ(errorReading("a.ply", plyHeader("1", "property float x\nproperty float y\n") + "1 2\n"), noCoordinates);
    EXPECT_EQ(errorReading("a.ply", plyHeader("1", "property int x\nproperty float y\nproperty float z\n") + "1 2 3\n"),
        noCoordinates);
    EXPECT_EQ(errorReading("a.ply", plyHeader("1", "property list uchar float x\n" + COORDINATES) + "0 1 2 3\n"),
        "a.ply: the list 'x' comes before the end of the points; this cannot be read");
    EXPECT_EQ(errorReading("a.ply", plyHeader("1", "")), "a.ply: the element 'vertex' has no properties");
}

TEST_F(PointFileReaderTest, ReadsXyzWithAndWithoutNormals)
{
    EXPECT_THAT(read("a.xyz", "1 2 3\n4 5 6\n"), ElementsAre(Vector3d(1, 2, 3), Vector3d(4, 5, 6)));
    EXPECT_THAT(read("a.pwn", "1 2 3 0 0 1\n4 5 6 0 1 0"), ElementsAre(Vector3d(1, 2, 3), Vector3d(4, 5, 6)));
}

TEST_F(PointFileReaderTest, ReadsXyzWithItsCountCommentsAndAnyBlanksAndLineEnds)
{
    EXPECT_THAT(read("a.xyz", "2\r\n# a comment\r\n\r\n1\t2\t3\r\n  4 5  6 \r\n"),
        ElementsAre(Vector3d(1, 2, 3), Vector3d(4, 5, 6)));
    EXPECT_THAT(read("a.xyz", "1 2 3\r4 5 6\r"), ElementsAre(Vector3d(1, 2, 3), Vector3d(4, 5, 6)));
}

TEST_F(PointFileReaderTest, NamesTheLineOfAnXyzThatIsNoPoint)
{
    const std::string reason = ": not a point: three numbers, or six with its normal";
    EXPECT_EQ(errorReading("a.xyz", "1 2 3\n\n4 5\n"), "a.xyz:3" + reason);
    EXPECT_EQ(errorReading("a.xyz", "1 2 3 4\n"), "a.xyz:1" + reason);
    EXPECT_EQ(errorReading("a.xyz", "1 2 3\nC 1 2 3\n"), "a.xyz:2" + reason);
    EXPECT_EQ(errorReading("a.xyz", "# nothing\n"), "a.xyz: has no points");
}

TEST_F(PointFileReaderTest, ReadsPtsWithItsCountAndWhatFollowsTheCoordinates)
{
    const auto twoPoints = ElementsAre(Vector3d(1, 2, 3), Vector3d(4.5, 5, 6));
    EXPECT_THAT(read("a.pts", "2\r\n1 2 3 -1200 255 0 0\r\n4.5 5 6 7 0 0 0\r\n"), twoPoints);
    EXPECT_THAT(read("a.pts", "# x y z\n1 2 3\n\n4.5\t5  6"), twoPoints);
    EXPECT_THAT(read("a.pts", "1,2,3\n4.5,5,6\n"), twoPoints);
}

TEST_F(PointFileReaderTest, NamesTheLineOfAPtsThatIsNoPoint)
{
    const std::string reason = ": not a point: it does not begin with three numbers";
    EXPECT_EQ(errorReading("a.pts", "1\n1 2\n"), "a.pts:2" + reason);
    EXPECT_EQ(errorReading("a.pts", "1 2 3\n4\n"), "a.pts:2" + reason);
    EXPECT_EQ(errorReading("a.pts", "1 2 x\n"), "a.pts:1" + reason);
    EXPECT_EQ(errorReading("a.pts", "5\n"), "a.pts: has no points");
}

TEST_F(PointFileReaderTest, ReadsOffOfEveryKind)
{
    const auto twoPoints = ElementsAre(Vector3d(1, 2, 3), Vector3d(4, 5, 6));
    EXPECT_THAT(read("a.off", "OFF\n2 0 0\n1 2 3\n4 5 6\n"), twoPoints);
    EXPECT_THAT(read("a.off", "OFF 2 0 0\n1 2 3\n4 5 6"), twoPoints);
    EXPECT_THAT(
        read("a.off", "# first\nOFF\r\n# second\r\n2 1 0\r\n\r\n1 2 3\r\n4 5 6 # third\r\n3 0 1 0\r\n"), twoPoints);
    EXPECT_THAT(read("a.off", "COFF\n2 0 0\n1 2 3 255 0 0 255\n4 5 6 0 0 255 255\n"), twoPoints);
    EXPECT_THAT(read("a.off", "NOFF\n2 0 0\n1 2 3 0 0 1\n4 5 6 0 1 0\n"), twoPoints);
    EXPECT_THAT(read("a.off", "4OFF\n2 0 0\n2 4 6 2\n4 5 6 1\n"), twoPoints);
    const std::string_view binary("OFF BINARY\n\0\0\0\1\0\0\0\0\0\0\0\0\x3F\x80\0\0\x40\0\0\0\x40\x40\0\0", 35);
    EXPECT_THAT(read("a.off", binary), ElementsAre(Vector3d(1, 2, 3)));
}

TEST_F(PointFileReaderTest, ReadsAnOffWhoseFacesAreCutOff)
{
    EXPECT_THAT(read("a.off", "OFF\n1 9 0\n1 2 3\n3 0"), ElementsAre(Vector3d(1, 2, 3)));
}

TEST_F(PointFileReaderTest, TellsWhereAnOffEndsOrIsWrong)
{
    EXPECT_EQ(errorReading("a.off", "OFF\n0 0 0\n"), "a.off: has no points");
    EXPECT_EQ(errorReading("a.off", "OFF\nmany points\n"), "a.off:2: not the header of an OFF file");
    EXPECT_EQ(errorReading("a.off", "OFF\n2000000000 0 0\n1 2 3\n"),
        "a.off: is too short for the 2000000000 points that it promises");
    EXPECT_EQ(errorReading("a.off", "OFF\n4000000000 0 0\n1 2 3\n"), "a.off:2: not the header of an OFF file");
    EXPECT_EQ(errorReading("a.off", "OFF\n3 0 0\n1.25 2.25 3.25\n4 5 6\n"),
        "a.off: ends after 2 of the 3 points that it promises");
    EXPECT_EQ(
        errorReading("a.off", "OFF\n# comment\n2 0 0\n1 2 3\n4 5\n7 8 9\n"), "a.off:5: not the numbers of a point");
}

TEST_F(PointFileReaderTest, KeepsTheLibrarysMessagesFromTheUser)
{
    std::ostringstream said;
    std::streambuf* const before = std::cerr.rdbuf(said.rdbuf());
    errorReading("a.xyz", "no point\n");
    errorReading("a.ply", plyHeader("1") + "x\n12345");
    std::cerr << "ours";
    std::cerr.rdbuf(before);
    EXPECT_EQ(said.str(), "ours");
}

TEST_F(PointFileReaderTest, SaysWhenItsReadingWasStopped)
{
    for (const auto& [name, contents] : {std::pair("a.xyz", std::string("1 2 3\n")), {"a.off", "OFF\n1 0 0\n1 2 3\n"},
             {"a.ply", plyHeader("1") + "1 2 3\n"}}) {
        const auto file = write(name, contents);
        EXPECT_EQ(messageOf<InputError>([&] { readPointFile(file, detectFormat(file), [](double) { return false; }); }),
            std::string(name) + ": the reading was stopped");
    }
}

// Such a file takes hardly any room on the disk, and its size in memory if the hole is taken for a line.
TEST_F(PointFileReaderTest, TurnsAwayAHugeFileThatIsMostlyAHole)
{
    for (const auto& [name, contents, line] : {std::tuple("a.off", std::string("OFF\n9 0 0\n1 2 3\n"), "4"),
             {"a.ply", "ply\nformat ascii 1.0\ncomment ", "3"}}) {
        const auto file = writeBeforeHole(name, contents, qint64(1) << 30);
        const auto error = messageOf<InputError>([&] { readPointFile(file, detectFormat(file), nullptr); });
        EXPECT_EQ(error, std::string(name) + ":" + line + ": the line is too long");
        std::filesystem::remove(file);
    }
}

// Whatever bytes a file has lost or got wrong, reading it ends with points or with one line.
TEST_F(PointFileReaderTest, SurvivesEveryTruncation)
{
    const std::string files[] = {plyHeader("2") + "1 2 3\n4 5 6\n",
        plyHeader("2", COORDINATES, "binary_little_endian") + littleEndian(1.f, 2.f, 3.f, 4.f, 5.f, 6.f),
        "OFF\n2 1 0\n1 2 3\n4 5 6\n3 0 1 0\n", "STCNOFF\n2 0 0\n1 2 3 0 0 1 9 9 9 0 0\n"};
    for (const std::string& file : files)
        for (std::size_t size = 1; size < file.size(); ++size) {
            const std::string error = errorReading("a", file.substr(0, size));
            EXPECT_EQ(error.find('\n'), std::string::npos);
        }
}

TEST_F(PointFileReaderTest, SurvivesEveryWrongByte)
{
    const std::string file =
        "ply\nformat ascii 1.0\nelement vertex 1\nproperty uchar x\nproperty uchar y\nproperty uchar z\n"
        "element face 1\nproperty list uint int v\nend_header\n1 2 3\n1 0\n";
    for (std::size_t i = 0; i < file.size(); ++i)
        for (const char wrong : {'9', '-', ' ', '\n', '\xFF'}) {
            std::string spoiled = file;
            spoiled[i] = wrong;
            const std::string error = errorReading("a.ply", spoiled);
            EXPECT_EQ(error.find('\n'), std::string::npos);
        }
}

} // namespace
} // namespace vireo_view
