#include "apps/vireo-view/GeometryReader.h"

#include <bit>
#include <clocale>
#include <gmock/gmock.h>
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

class GeometryReaderTest : public FilesTest
{
protected:
    GeometryFile readAll(const std::string& name, std::string_view contents)
    {
        const auto file = write(name, contents);
        return readGeometry(file, detectFormat(file), nullptr);
    }

    // That which there is only one of.
    Geometry readOne(const std::string& name, std::string_view contents)
    {
        GeometryFile file = readAll(name, contents);
        EXPECT_EQ(file.geometries.size(), 1u);
        return std::move(file.geometries.at(0));
    }

    Points3 read(const std::string& name, std::string_view contents)
    {
        const Geometry geometry = readOne(name, contents);
        Points3 points;
        for (std::size_t i = 0; i < geometry.getNumPoints(); ++i)
            points.push_back(geometry.getPoint(i));
        return points;
    }

    std::vector<std::string> leftOut(const std::string& name, std::string_view contents)
    {
        return readAll(name, contents).leftOut;
    }

    std::string errorReading(const std::string& name, std::string_view contents)
    {
        return messageOf<InputError>([&] { read(name, contents); });
    }
};

TEST_F(GeometryReaderTest, ReadsAsciiPly)
{
    EXPECT_THAT(read("a.ply", plyHeader("2") + "1 2 3\n-4.5 5e2 .6\n"),
        ElementsAre(Vector3d(1, 2, 3), Vector3d(-4.5, 500, 0.6)));
}

TEST_F(GeometryReaderTest, ReadsAPlyWhoseLastNumberEndsTheFile)
{
    EXPECT_THAT(read("a.ply", plyHeader("1") + "1 2 3"), ElementsAre(Vector3d(1, 2, 3)));
    EXPECT_THAT(read("b.ply", plyHeader("2") + "1 2 3\n4 5 6"), ElementsAre(Vector3d(1, 2, 3), Vector3d(4, 5, 6)));
}

TEST_F(GeometryReaderTest, ReadsDoublesWithAllTheirDigits)
{
    const std::string properties = "property double x\nproperty float64 y\nproperty double z\n";
    EXPECT_THAT(read("a.ply", plyHeader("1", properties) + "5000000000.125 1e-300 3\n"),
        ElementsAre(Vector3d(5000000000.125, 1e-300, 3)));
    EXPECT_THAT(read("b.ply", plyHeader("1", properties, "binary_little_endian") + littleEndian(0.1, 0.2, 0.3)),
        ElementsAre(Vector3d(0.1, 0.2, 0.3)));
}

TEST_F(GeometryReaderTest, ReadsBinaryPlyOfBothByteOrders)
{
    EXPECT_THAT(
        read("a.ply", plyHeader("2", COORDINATES, "binary_little_endian") + littleEndian(1.f, 2.f, 3.f, 4.f, 5.f, 6.f)),
        ElementsAre(Vector3d(1, 2, 3), Vector3d(4, 5, 6)));
    const std::string_view bigEndian("\x3F\x80\0\0\x40\0\0\0\x40\x40\0\0", 12);
    EXPECT_THAT(read("b.ply", plyHeader("1", COORDINATES, "binary_big_endian") + std::string(bigEndian)),
        ElementsAre(Vector3d(1, 2, 3)));
}

TEST_F(GeometryReaderTest, ReadsBytesOfABinaryPlyThatLookLikeLineEnds)
{
    const std::string properties = "property uchar x\nproperty uchar y\nproperty uchar z\n";
    EXPECT_THAT(read("a.ply", plyHeader("2", properties, "binary_little_endian") + "\r\n\r\r\n\n"),
        ElementsAre(Vector3d(13, 10, 13), Vector3d(13, 10, 10)));
}

TEST_F(GeometryReaderTest, FindsTheCoordinatesOfPlyPointsAmongOtherProperties)
{
    const std::string properties = "property uchar red\nproperty float z\nproperty float nx\nproperty float y\n"
                                   "property float x\nproperty int label\n";
    EXPECT_THAT(read("a.ply", plyHeader("1", properties) + "255 3 0.5 2 1 7\n"), ElementsAre(Vector3d(1, 2, 3)));
    EXPECT_THAT(read("b.ply", plyHeader("1", properties, "binary_little_endian") +
                                  littleEndian(std::uint8_t(255), 3.f, 0.5f, 2.f, 1.f, 7)),
        ElementsAre(Vector3d(1, 2, 3)));
}

TEST_F(GeometryReaderTest, ReadsPlyCoordinatesOfEveryType)
{
    for (const std::string type : {"char", "uchar", "short", "ushort", "int", "uint", "float", "double", "int8",
             "uint8", "int16", "uint16", "int32", "uint32", "float32", "float64"}) {
        const std::string properties = "property " + type + " x\nproperty " + type + " y\nproperty " + type + " z\n";
        EXPECT_THAT(read("a.ply", plyHeader("1", properties) + "1 2 100\n"), ElementsAre(Vector3d(1, 2, 100))) << type;
    }
    for (const std::string mixed : {"property float x\nproperty double y\nproperty float z\n",
             "property int x\nproperty float y\nproperty float z\n"})
        EXPECT_THAT(read("a.ply", plyHeader("1", mixed) + "1 2 3\n"), ElementsAre(Vector3d(1, 2, 3)));
}

TEST_F(GeometryReaderTest, ReadsOverElementsBeforeThePointsAndSaysWhereItsFacesEnd)
{
    const std::string ply = "ply\nformat ascii 1.0\ncomment a comment\nobj_info and another\nelement camera 2\n"
                            "property float f\nelement vertex 1\n" +
                            COORDINATES + "element face 1\nproperty list uint int vertex_indices\nend_header\n";
    EXPECT_THAT(read("a.ply", ply + "9 9\n1 2 3\n4000000000 1 2"), ElementsAre(Vector3d(1, 2, 3)));
    EXPECT_THAT(leftOut("b.ply", ply + "9 9\n1 2 3\n"),
        ElementsAre("the element 'camera'", "the faces from number 1 of 1 on, where the file ends"));
}

TEST_F(GeometryReaderTest, ReadsPlyWithWindowsLineEnds)
{
    EXPECT_THAT(read("a.ply", "ply\r\nformat ascii 1.0\r\nelement vertex 1\r\nproperty float x\r\nproperty float y\r\n"
                              "property float z\r\nend_header\r\n1 2 3\r\n"),
        ElementsAre(Vector3d(1, 2, 3)));
}

TEST_F(GeometryReaderTest, ReadsDecimalPointsInEveryLocaleAndLeavesTheLocaleAsItWas)
{
    if (!useDecimalComma())
        GTEST_SKIP() << "there is no locale with a decimal comma: de_DE.UTF-8 can neither be found nor made";
    const std::string locale = std::setlocale(LC_NUMERIC, nullptr);
    EXPECT_THAT(read("a.ply", plyHeader("1") + "1.5 2.5 3.5\n"), ElementsAre(Vector3d(1.5, 2.5, 3.5)));
    EXPECT_EQ(std::setlocale(LC_NUMERIC, nullptr), locale);
}

TEST_F(GeometryReaderTest, TurnsAwayAPlyWithoutPoints)
{
    EXPECT_EQ(errorReading("a.ply", plyHeader("0")), "a.ply: has no points");
    EXPECT_EQ(errorReading("a.ply", "ply\nformat ascii 1.0\nend_header\n"), "a.ply: has no points");
}

TEST_F(GeometryReaderTest, TurnsAwayAPlyThatIsTooShortForItsPromise)
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

TEST_F(GeometryReaderTest, TellsWhereAnAsciiPlyEndsOrIsWrong)
{
    EXPECT_EQ(errorReading("a.ply", plyHeader("3") + "1.25 2.25 3.25\n4.25 5.25 6.25\n7.25\n"),
        "a.ply: ends after 2 of the 3 points that it promises");
    EXPECT_EQ(
        errorReading("a.ply", plyHeader("3") + "1 2 3\n4 five 6\n7 8 9\n"), "a.ply:9: not the numbers of a point");
}

TEST_F(GeometryReaderTest, NamesTheLineThatSpoilsAPlyHeader)
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

TEST_F(GeometryReaderTest, TurnsAwayPlyPointsThatItCannotRead)
{
    const std::string noCoordinates = "a.ply: its points do not have numbers x, y and z";
    EXPECT_EQ(errorReading("a.ply", plyHeader("1", "property float x\nproperty float y\n") + "1 2\n"), noCoordinates);
    EXPECT_EQ(errorReading("a.ply",
                  plyHeader("1", "property list uchar float x\nproperty float y\nproperty float z\n") + "0 2 3\n"),
        noCoordinates);
    EXPECT_EQ(errorReading("a.ply", plyHeader("1", "")), "a.ply: the element 'vertex' has no properties");
}

TEST_F(GeometryReaderTest, ReadsXyzWithAndWithoutNormals)
{
    EXPECT_THAT(read("a.xyz", "1 2 3\n4 5 6\n"), ElementsAre(Vector3d(1, 2, 3), Vector3d(4, 5, 6)));
    EXPECT_THAT(read("a.pwn", "1 2 3 0 0 1\n4 5 6 0 1 0"), ElementsAre(Vector3d(1, 2, 3), Vector3d(4, 5, 6)));
}

TEST_F(GeometryReaderTest, ReadsXyzWithItsCountCommentsAndAnyBlanksAndLineEnds)
{
    EXPECT_THAT(read("a.xyz", "2\r\n# a comment\r\n\r\n1\t2\t3\r\n  4 5  6 \r\n"),
        ElementsAre(Vector3d(1, 2, 3), Vector3d(4, 5, 6)));
    EXPECT_THAT(read("a.xyz", "1 2 3\r4 5 6\r"), ElementsAre(Vector3d(1, 2, 3), Vector3d(4, 5, 6)));
}

TEST_F(GeometryReaderTest, NamesTheLineOfAnXyzThatIsNoPoint)
{
    const std::string reason = ": not a point: it does not begin with three numbers";
    EXPECT_EQ(errorReading("a.xyz", "1 2 3\n\n4 5\n"), "a.xyz:3" + reason);
    EXPECT_EQ(errorReading("a.xyz", "1 2\n3 4\n"), "a.xyz:1" + reason);
    EXPECT_EQ(errorReading("a.xyz", "1 2 3\nC 1 2 3\n"), "a.xyz:2" + reason);
    EXPECT_EQ(errorReading("a.xyz", "# nothing\n"), "a.xyz: has no points");
}

TEST_F(GeometryReaderTest, ReadsPtsWithItsCountAndWhatFollowsTheCoordinates)
{
    const auto twoPoints = ElementsAre(Vector3d(1, 2, 3), Vector3d(4.5, 5, 6));
    EXPECT_THAT(read("a.pts", "2\r\n1 2 3 -1200 255 0 0\r\n4.5 5 6 7 0 0 0\r\n"), twoPoints);
    EXPECT_THAT(read("a.pts", "# x y z\n1 2 3\n\n4.5\t5  6"), twoPoints);
    EXPECT_THAT(read("a.pts", "1,2,3\n4.5,5,6\n"), twoPoints);
}

TEST_F(GeometryReaderTest, NamesTheLineOfAPtsThatIsNoPoint)
{
    const std::string reason = ": not a point: it does not begin with three numbers";
    EXPECT_EQ(errorReading("a.pts", "1\n1 2\n"), "a.pts:2" + reason);
    EXPECT_EQ(errorReading("a.pts", "1 2 3\n4\n"), "a.pts:2" + reason);
    EXPECT_EQ(errorReading("a.pts", "1 2 x\n"), "a.pts:1" + reason);
    EXPECT_EQ(errorReading("a.pts", "5\n"), "a.pts: has no points");
}

TEST_F(GeometryReaderTest, ReadsOffOfEveryKind)
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

TEST_F(GeometryReaderTest, ReadsAnOffWhoseFacesAreCutOff)
{
    EXPECT_THAT(read("a.off", "OFF\n1 9 0\n1 2 3\n3 0"), ElementsAre(Vector3d(1, 2, 3)));
}

TEST_F(GeometryReaderTest, TellsWhereAnOffEndsOrIsWrong)
{
    EXPECT_EQ(errorReading("a.off", "OFF\n0 0 0\n"), "a.off: has no points");
    EXPECT_EQ(errorReading("a.off", "OFF\nmany points\n"), "a.off:2: not the header of an OFF file");
    EXPECT_EQ(errorReading("a.off", "OFF\n2000000000 0 0\n1 2 3\n"),
        "a.off: is too short for the 2000000000 points that it promises");
    EXPECT_EQ(errorReading("a.off", "OFF\n4000000000 0 0\n1 2 3\n"),
        "a.off: is too short for the 4000000000 points that it promises");
    EXPECT_EQ(errorReading("a.off", "OFF\n3 0 0\n1.25 2.25 3.25\n4 5 6\n"),
        "a.off: ends after 2 of the 3 points that it promises");
    EXPECT_EQ(
        errorReading("a.off", "OFF\n# comment\n2 0 0\n1 2 3\n4 5\n7 8 9\n"), "a.off:5: not the numbers of a point");
}

std::vector<double> numbersOf(const NumberColumn& column)
{
    std::vector<double> numbers;
    for (std::size_t i = 0; i < sizeOf(column); ++i)
        numbers.push_back(numberAt(column, i));
    return numbers;
}

std::vector<std::string> namesOf(const Geometry& geometry)
{
    std::vector<std::string> names;
    for (const Geometry::Scalar& scalar : geometry.scalars)
        names.push_back(scalar.name);
    return names;
}

const std::string SURVEY = "property double x\nproperty double y\nproperty double z\nproperty uchar red\n"
                           "property uchar green\nproperty uchar blue\nproperty float nx\nproperty float ny\n"
                           "property float nz\nproperty ushort intensity\nproperty int label\n";

// One of two points far from the origin, with all that a point can have.
void expectSurvey(const Geometry& geometry)
{
    EXPECT_EQ(geometry.getPoint(0), Vector3d(5500000.123, 4400000.0625, -0.001));
    EXPECT_EQ(geometry.getPoint(1), Vector3d(5500000.124, 1, 2));
    EXPECT_THAT(numbersOf(geometry.colours), ElementsAre(255, 128, 0, 1, 2, 3));
    EXPECT_EQ(geometry.numChannels, 3u);
    EXPECT_THAT(numbersOf(geometry.normals), ElementsAre(0, 0, 1, 0, 0.5, 0));
    EXPECT_THAT(namesOf(geometry), ElementsAre("intensity"));
    EXPECT_THAT(numbersOf(geometry.scalars[0].values), ElementsAre(65535, 7));
    EXPECT_THAT(numbersOf(geometry.labels), ElementsAre(3, -1));
    EXPECT_THAT(geometry.faces, IsEmpty());
}

template <typename Number>
std::string bigEndian(Number number)
{
    std::string bytes = littleEndian(number);
    return {bytes.rbegin(), bytes.rend()};
}

template <typename... Numbers>
std::string inOrder(std::endian order, Numbers... numbers)
{
    return order == std::endian::little ? littleEndian(numbers...) : (bigEndian(numbers) + ...);
}

TEST_F(GeometryReaderTest, ReadsAllThatAPlySaysOfItsPoints)
{
    expectSurvey(readOne("a.ply", plyHeader("2", SURVEY) + "5500000.123 4400000.0625 -0.001 255 128 0 0 0 1 65535 3\n"
                                                           "5500000.124 1 2 1 2 3 0 .5 0 7 -1\n"));
    using Byte = std::uint8_t;
    for (const std::endian order : {std::endian::little, std::endian::big}) {
        const std::string format = order == std::endian::little ? "binary_little_endian" : "binary_big_endian";
        expectSurvey(readOne("a.ply", plyHeader("2", SURVEY, format) +
                                          inOrder(order, 5500000.123, 4400000.0625, -0.001, Byte(255), Byte(128),
                                              Byte(0), 0.f, 0.f, 1.f, std::uint16_t(65535), 3) +
                                          inOrder(order, 5500000.124, 1.0, 2.0, Byte(1), Byte(2), Byte(3), 0.f, 0.5f,
                                              0.f, std::uint16_t(7), -1)));
    }
}

TEST_F(GeometryReaderTest, KeepsDigitsOfAsciiPlyThatItsTypeWouldLose)
{
    EXPECT_THAT(read("a.ply", plyHeader("1") + "5500000.123 0.1 3\n"), ElementsAre(Vector3d(5500000.123, 0.1, 3)));
}

TEST_F(GeometryReaderTest, NamesTheNumbersOfPointsAsTheirFileDoes)
{
    const std::string properties = COORDINATES + "property float scalar_Intensity\nproperty float Intensity\n"
                                                 "property float scalar_Classification\nproperty float class\n";
    const Geometry geometry = readOne("a.ply", plyHeader("1", properties) + "1 2 3 4 5 6 6.5\n");
    EXPECT_THAT(namesOf(geometry), ElementsAre("Intensity", "Intensity (2)", "class"));
    EXPECT_THAT(numbersOf(geometry.labels), ElementsAre(6));
}

TEST_F(GeometryReaderTest, ReadsColoursOfEveryType)
{
    const std::pair<std::string, std::string> cases[] = {
        {"uchar", "255 51 0"}, {"float", "1 .2 0"}, {"float", "255 51 0"}, {"ushort", "65535 13107 0"}};
    for (const auto& [type, numbers] : cases) {
        const std::string properties =
            COORDINATES + "property " + type + " red\nproperty " + type + " green\nproperty " + type + " blue\n";
        const Geometry geometry = readOne("a.ply", plyHeader("1", properties) + "1 2 3 " + numbers + "\n");
        EXPECT_THAT(numbersOf(geometry.colours), ElementsAre(255, 51, 0)) << type << ' ' << numbers;
    }
    const Geometry geometry = readOne("a.ply",
        plyHeader("1", COORDINATES + "property uchar r\nproperty uchar g\nproperty uchar b\nproperty uchar a\n") +
            "1 2 3 4 5 6 7\n");
    EXPECT_EQ(geometry.numChannels, 4u);
    EXPECT_THAT(numbersOf(geometry.colours), ElementsAre(4, 5, 6, 7));
}

const std::string FIVE_POINTS = "0 0 0\n1 0 0\n1 1 0\n0 1 0\n.5 2 0\n";

std::string plyWithFaces(const std::string& faces, std::uint64_t count)
{
    return "ply\nformat ascii 1.0\nelement vertex 5\n" + COORDINATES + "element face " + std::to_string(count) +
           "\nproperty list uchar int vertex_indices\nend_header\n" + FIVE_POINTS + faces;
}

TEST_F(GeometryReaderTest, ReadsTrianglesQuadranglesAndPolygons)
{
    const Geometry triangles = readOne("a.ply", plyWithFaces("3 0 1 2\n3 0 2 3\n", 2));
    EXPECT_EQ(triangles.numCorners, 3u);
    EXPECT_THAT(triangles.faces, ElementsAre(0, 1, 2, 0, 2, 3));
    const Geometry quadrangles = readOne("a.ply", plyWithFaces("4 0 1 2 3\n4 3 2 1 0\n", 2));
    EXPECT_EQ(quadrangles.numCorners, 4u);
    EXPECT_THAT(quadrangles.faces, ElementsAre(0, 1, 2, 3, 3, 2, 1, 0));
    const Geometry all = readOne("a.ply", plyWithFaces("4 0 1 2 3\n5 0 1 2 4 3\n3 3 2 4\n", 3));
    EXPECT_EQ(all.numCorners, 0u);
    EXPECT_THAT(all.cornerCounts, ElementsAre(4, 5, 3));
    EXPECT_THAT(all.faces, ElementsAre(0, 1, 2, 3, 0, 1, 2, 4, 3, 3, 2, 4));
    const Geometry pentagons = readOne("a.ply", plyWithFaces("5 0 1 2 4 3\n", 1));
    EXPECT_EQ(pentagons.numCorners, 5u);
    const GeometryFile some = readAll("a.off", "OFF\n4 4 0\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n"
                                               "4 0 1 2 3\n3 0 1 7\n3 0 1 2\n4 9 1 2 3\n");
    EXPECT_THAT(some.geometries.at(0).cornerCounts, ElementsAre(4, 3));
    EXPECT_THAT(some.geometries[0].faces, ElementsAre(0, 1, 2, 3, 0, 1, 2));
}

TEST_F(GeometryReaderTest, ReadsFacesBeforeTheirPoints)
{
    const Geometry geometry = readOne("a.ply", "ply\nformat ascii 1.0\nelement face 1\nproperty list uchar int "
                                               "vertex_index\nelement vertex 3\n" +
                                                   COORDINATES + "end_header\n3 0 1 2\n0 0 0\n1 0 0\n0 1 0\n");
    EXPECT_THAT(geometry.faces, ElementsAre(0, 1, 2));
}

TEST_F(GeometryReaderTest, SaysWhichFacesOfAPlyAreLeftOut)
{
    const std::string bad = plyWithFaces("3 0 1 2\n3 0 1 5\n3 0 -1 2\n2 0 1\n9 0 0 0 0 0 0 0 0 0\n", 5);
    EXPECT_THAT(readOne("a.ply", bad).faces, ElementsAre(0, 1, 2));
    EXPECT_THAT(leftOut("a.ply", bad), ElementsAre("4 faces of points that are not there, or of fewer than three"));
    EXPECT_THAT(leftOut("a.ply", plyWithFaces("3 0 1 2\n3 0 1", 4000000000)),
        ElementsAre("the faces from number 2 of 4000000000 on, where the file ends"));
}

TEST_F(GeometryReaderTest, SaysWhichFieldsOfAPlyAreLeftOut)
{
    const std::string ply =
        "ply\nformat ascii 1.0\nelement vertex 3\n" + COORDINATES +
        "property list uchar float neighbours\nelement face 1\n"
        "property list uchar int vertex_indices\nproperty list uchar float quality\nelement edge 1\n"
        "property int vertex1\nend_header\n0 0 0 0\n1 0 0 2 5 6\n0 1 0 1 7\n3 0 1 2 1 .5\n1\n";
    EXPECT_THAT(readOne("a.ply", ply).faces, ElementsAre(0, 1, 2));
    EXPECT_THAT(leftOut("a.ply", ply),
        ElementsAre("the list 'neighbours' of the points", "the list 'quality' of the faces", "the element 'edge'"));
}

TEST_F(GeometryReaderTest, ReadsWhatFacesOfAPlyHave)
{
    const std::string header = "ply\nformat ascii 1.0\nelement vertex 5\n" + COORDINATES +
                               "element face 4\nproperty float quality\nproperty list uchar int vertex_indices\n"
                               "property uchar red\nproperty uchar green\nproperty uchar blue\n"
                               "property int label\nend_header\n";
    const std::string ply =
        header + FIVE_POINTS + "1.5 3 0 1 2 1 2 3 7\n2.5 3 0 1 9 4 5 6 8\n3.5 3 0 2 3 7 8 9 9\n4.5 2 0 2 0 0 0 0\n";
    const Geometry geometry = readOne("a.ply", ply);
    EXPECT_THAT(geometry.faces, ElementsAre(0, 1, 2, 0, 2, 3));
    EXPECT_THAT(numbersOf(geometry.ofFaces.colours), ElementsAre(1, 2, 3, 7, 8, 9)) << "without those of bad faces";
    EXPECT_THAT(numbersOf(geometry.ofFaces.labels), ElementsAre(7, 9));
    ASSERT_EQ(geometry.ofFaces.scalars.size(), 1u);
    EXPECT_EQ(geometry.ofFaces.scalars[0].name, "quality");
    EXPECT_THAT(numbersOf(geometry.ofFaces.scalars[0].values), ElementsAre(1.5, 3.5));
    const Geometry cut = readOne("a.ply", header + FIVE_POINTS + "1.5 3 0 1 2 1 2 3 7\n2.5 3 0");
    EXPECT_THAT(cut.faces, ElementsAre(0, 1, 2));
    EXPECT_THAT(numbersOf(cut.ofFaces.scalars.at(0).values), ElementsAre(1.5));
}

TEST_F(GeometryReaderTest, ReadsColoursNormalsAndFacesOfAnOff)
{
    const Geometry text = readOne("a.off", "CNOFF\n4 1 0\n5500000.123 0 0 0 0 1 255 0 0 255\n1 0 0 0 0 1 0 255 0 255\n"
                                           "1 1 0 0 0 1 0 0 255 255\n0 1 0 0 0 1 1 2 3 4\n4 0 1 2 3\n");
    EXPECT_EQ(text.getPoint(0), Vector3d(5500000.123, 0, 0));
    EXPECT_EQ(text.numChannels, 4u);
    EXPECT_THAT(numbersOf(text.colours), ElementsAre(255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 1, 2, 3, 4));
    EXPECT_THAT(numbersOf(text.normals), ElementsAre(0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1));
    EXPECT_EQ(text.numCorners, 4u);
    EXPECT_THAT(text.faces, ElementsAre(0, 1, 2, 3));

    const std::endian big = std::endian::big;
    const Geometry binary =
        readOne("a.off", "OFF BINARY\n" + inOrder(big, 3, 1, 0) +
                             inOrder(big, 0.f, 0.f, 0.f, 1.f, 0.f, 0.f, 0.f, 1.f, 0.f) + inOrder(big, 3, 0, 1, 2, 0));
    EXPECT_THAT(binary.faces, ElementsAre(0, 1, 2));
}

TEST_F(GeometryReaderTest, ReadsColoursOfTheFacesOfAnOff)
{
    const std::string points = "OFF\n4 3 0\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n";
    const Geometry text = readOne("a.off", points + "3 0 1 2 255 0 0\n3 0 1 7 1 1 1\n4 0 1 2 3 0 0 9\n");
    EXPECT_THAT(numbersOf(text.ofFaces.colours), ElementsAre(255, 0, 0, 0, 0, 9));
    EXPECT_THAT(leftOut("a.off", points + "3 0 1 2 7\n3 0 1 2 7\n3 0 1 2 7\n"),
        ElementsAre("colours of the faces, which not every face has"))
        << "numbers of a table that nobody knows";
    const std::endian big = std::endian::big;
    const Geometry binary = readOne("a.off", "OFF BINARY\n" + inOrder(big, 3, 1, 0) +
                                                 inOrder(big, 0.f, 0.f, 0.f, 1.f, 0.f, 0.f, 0.f, 1.f, 0.f) +
                                                 inOrder(big, 3, 0, 1, 2, 4) + inOrder(big, 1.f, 0.f, 0.5f, 1.f));
    EXPECT_THAT(numbersOf(binary.ofFaces.colours), ElementsAre(255, 0, 128, 255));
}

TEST_F(GeometryReaderTest, SaysWhatOfAnOffIsLeftOut)
{
    EXPECT_THAT(leftOut("a.off", "OFF\n3 2 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2 255 0 0\n3 0 1 7\n"),
        ElementsAre("1 face of points that are not there, or of fewer than three",
            "colours of the faces, which not every face has"));
    EXPECT_THAT(leftOut("a.off", "STOFF\n1 2 0\n0 0 0 .5 .5\n3 0 x\n"),
        ElementsAre("the faces from number 1 of 2 on, where the file ends", "places in textures"));
    EXPECT_THAT(
        leftOut("a.off", "COFF\n2 0 0\n0 0 0 1 0 0\n1 0 0\n"), ElementsAre("colours, which not every point has"));
}

TEST_F(GeometryReaderTest, ReadsPointsColoursNormalsAndPolygonsOfAnObj)
{
    const Geometry geometry =
        readOne("a.obj", "# a comment\no thing\nv 5500000.123 0 0 1 0 0\nv 1 0 0 0 1 0\n"
                         "v 1 1 0 0 0 1\nv 0 1 0 .2 .2 .2\nvn 0 0 1\nf 1//1 2//1 \\\n 3//1 -1//-1\n");
    EXPECT_EQ(geometry.getPoint(0), Vector3d(5500000.123, 0, 0));
    EXPECT_EQ(geometry.numCorners, 4u);
    EXPECT_THAT(geometry.faces, ElementsAre(0, 1, 2, 3));
    EXPECT_THAT(numbersOf(geometry.colours), ElementsAre(255, 0, 0, 0, 255, 0, 0, 0, 255, 51, 51, 51));
    EXPECT_THAT(numbersOf(geometry.normals), ElementsAre(0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1));
}

TEST_F(GeometryReaderTest, MakesAPointOfAnObjSeveralWhereItsNormalsDiffer)
{
    const Geometry geometry = readOne("a.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nvn 0 0 1\nvn 0 1 0\n"
                                               "f 1//1 2//1 3//1\nf 1//2 4//2 2//2\nf 1//2 2//2 4//2\nv 9 9 9\n");
    EXPECT_THAT(geometry.faces, ElementsAre(0, 1, 2, 5, 3, 6, 5, 6, 3));
    EXPECT_EQ(geometry.getPoint(4), Vector3d(9, 9, 9));
    EXPECT_EQ(geometry.getPoint(5), Vector3d(0, 0, 0));
    EXPECT_EQ(geometry.getPoint(6), Vector3d(1, 0, 0));
    EXPECT_THAT(
        numbersOf(geometry.normals), ElementsAre(0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0));
}

TEST_F(GeometryReaderTest, ReadsTheColoursOfTheMaterialsOfAnObj)
{
    write("my colours.mtl", "newmtl red one\nKa 0 0 0\nKd 1 0 0\nmap_Kd a.png\nnewmtl grey\nKd .2\n");
    const std::string faces = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\nusemtl red one\nf 1 2 3\nf 1 2 9\n"
                              "usemtl grey\nf 3 2 1\nusemtl unknown\nf 3 2 1\n";
    const std::string obj = "mtllib my colours.mtl\n" + faces;
    EXPECT_THAT(numbersOf(readOne("a.obj", obj).ofFaces.colours),
        ElementsAre(204, 204, 204, 255, 0, 0, 51, 51, 51, 204, 204, 204));
    const std::string bad = "1 face of points that are not there, or of fewer than three";
    EXPECT_THAT(leftOut("a.obj", obj), ElementsAre(bad, "textures"));
    EXPECT_THAT(leftOut("a.obj", faces), ElementsAre(bad, "materials"));
    EXPECT_THAT(leftOut("a.obj", "mtllib none.mtl\n" + faces),
        ElementsAre(bad, "the materials of 'none.mtl', which cannot be read"));
    write("one.mtl", "newmtl grey\nKd .4 .4 .4\n");
    EXPECT_THAT(numbersOf(readOne("a.obj", "mtllib none.mtl one.mtl\n" + faces).ofFaces.colours),
        ElementsAre(204, 204, 204, 204, 204, 204, 102, 102, 102, 204, 204, 204));
}

TEST_F(GeometryReaderTest, ReadsAnObjWithoutFacesAsPoints)
{
    const Geometry geometry = readOne("a.obj", "v 1 2 3\nvn 0 0 1\nv 4 5 6\nvn 0 1 0\n");
    EXPECT_THAT(geometry.faces, IsEmpty());
    EXPECT_THAT(numbersOf(geometry.normals), ElementsAre(0, 0, 1, 0, 1, 0));
}

TEST_F(GeometryReaderTest, RefusesAnObjThatIsNone)
{
    EXPECT_EQ(errorReading("a.obj", "g nothing\n"), "a.obj: has no points");
    EXPECT_EQ(errorReading("a.obj", "v 1 2 3\nv 1 2\n"), "a.obj:2: not the numbers of a point");
    EXPECT_EQ(errorReading("a.obj", "v 1 2 3\nf 1 x 2\n"), "a.obj:2: not the corners of a face");
    EXPECT_THAT(leftOut("a.obj", "v 1 2 3\nv 1 2 4\nf 1 2 0\nf 1 2 -9\nf 1 2 99999999999\nf 1\n"),
        ElementsAre("4 faces of points that are not there, or of fewer than three"));
    EXPECT_EQ(errorReading("a.obj", std::string("\0\1\2\3", 4)), "a.obj: has no points");
}

TEST_F(GeometryReaderTest, ReadsStlAsTextAndBinary)
{
    const Geometry text = readOne("a.stl", "solid vertex of something\n facet normal 0 0 1\n  outer loop\n"
                                           "   vertex 5500000.123 0 0\n   vertex 1 0 0\n   vertex 0 1e0 0\n"
                                           "  endloop\n endfacet\nendsolid\n");
    EXPECT_EQ(text.getPoint(0), Vector3d(5500000.123, 0, 0));
    EXPECT_THAT(text.faces, ElementsAre(0, 1, 2));

    const std::string triangle = littleEndian(0.f, 0.f, 1.f, 0.f, 0.f, 0.f, 1.f, 0.f, 0.f, 0.f, 1.f, 0.f);
    const std::string header = "solid, but binary" + std::string(63, ' ') + littleEndian(2);
    const std::string plain = triangle + littleEndian(std::int16_t(0));
    const Geometry binary = readOne("b.stl", header + plain + plain);
    EXPECT_THAT(binary.faces, ElementsAre(0, 1, 2, 3, 4, 5));
    EXPECT_EQ(binary.getPoint(4), Vector3d(1, 0, 0));
    EXPECT_THAT(leftOut("b.stl", header + plain + triangle + littleEndian(std::int16_t(31))),
        ElementsAre("colours or other attributes of the triangles"));
}

TEST_F(GeometryReaderTest, RefusesAnStlThatIsNone)
{
    const std::string header(80, '\0');
    EXPECT_EQ(errorReading("a.stl", "x"), "a.stl: is not an STL file: it has no header");
    EXPECT_EQ(errorReading("a.stl", header + littleEndian(0)), "a.stl: has no triangles");
    EXPECT_EQ(errorReading("a.stl", header + littleEndian(-1) + std::string(50, '\0')),
        "a.stl: is too short for the 4294967295 triangles that it promises");
    EXPECT_EQ(errorReading("a.stl", "solid\nendsolid\n"), "a.stl: has no triangles");
    EXPECT_EQ(errorReading("a.stl", "solid\nouter loop\nvertex 1 2 x\n"), "a.stl:3: not the numbers of a point");
    EXPECT_EQ(
        errorReading("a.stl", "solid\nouter loop\nvertex 1 2 3\nendloop\n"), "a.stl:4: the triangle has 1 points");
    EXPECT_EQ(errorReading("a.stl", "solid\nouter loop\nvertex 1 2 3\n"), "a.stl: ends within a triangle");
    EXPECT_EQ(errorReading("a.stl", "solid\nwhat\n"), "a.stl:2: not a line of an STL file: 'what'");
}

TEST_F(GeometryReaderTest, ReadsColumnsOfPointsByTheirNames)
{
    const GeometryFile file = readAll("a.xyz", "//Y X Z R G B Intensity Classification note\n"
                                               "2 5500000.123 3 255 0 7 .5 2 a\n4 5 6 1 2 3 .25 6 b\n");
    const Geometry& geometry = file.geometries.at(0);
    EXPECT_EQ(geometry.getPoint(0), Vector3d(5500000.123, 2, 3));
    EXPECT_THAT(numbersOf(geometry.colours), ElementsAre(255, 0, 7, 1, 2, 3));
    EXPECT_THAT(namesOf(geometry), ElementsAre("Intensity"));
    EXPECT_THAT(numbersOf(geometry.labels), ElementsAre(2, 6));
    EXPECT_THAT(file.remarks, ElementsAre("column 9 'note' is text and left out ('a' in line 2)"));
    EXPECT_THAT(read("a.xyz", "h;Y;X;Z\n9;2;1;3\n"), ElementsAre(Vector3d(1, 2, 3)));
}

TEST_F(GeometryReaderTest, TellsColumnsOfPointsWithoutNamesByTheirNumbers)
{
    const Geometry normals = readOne("a.pwn", "1 2 3 0 0 1\n4 5 6 .6 .8 0\n");
    EXPECT_THAT(numbersOf(normals.normals), ElementsAre(0, 0, 1, .6, .8, 0));
    const Geometry colours = readOne("a.xyz", "1 2 3 255 0 7\n4 5 6 1 2 3\n");
    EXPECT_THAT(numbersOf(colours.colours), ElementsAre(255, 0, 7, 1, 2, 3));
    const Geometry scan = readOne("a.pts", "2\n1 2 3 -1200 255 0 7\n4 5 6 9 1 2 3\n");
    EXPECT_THAT(namesOf(scan), ElementsAre("intensity"));
    EXPECT_THAT(numbersOf(scan.scalars[0].values), ElementsAre(-1200, 9));
    EXPECT_THAT(numbersOf(scan.colours), ElementsAre(255, 0, 7, 1, 2, 3));
    const Geometry other = readOne("a.xyz", "1 2 3 4.5\n4 5 6 nan\n");
    EXPECT_THAT(namesOf(other), ElementsAre("column 4"));
}

TEST_F(GeometryReaderTest, LeavesPointsThatAreNotFiniteToOthers)
{
    EXPECT_EQ(readOne("a.ply", plyHeader("2") + "1 2 3\nnan nan nan\n").getNumPoints(), 2u);
    EXPECT_EQ(readOne("a.xyz", "1 2 3\n4 inf 6\n").getNumPoints(), 2u);
}

TEST_F(GeometryReaderTest, SaysWhenItsReadingWasStopped)
{
    for (const auto& [name, contents] : {std::pair("a.xyz", std::string("1 2 3\n")), {"a.off", "OFF\n1 0 0\n1 2 3\n"},
             {"a.ply", plyHeader("1") + "1 2 3\n"}, {"a.obj", "v 1 2 3\n"}, {"a.stl", "solid\n"}, {"a.gltf", "{}"}}) {
        const auto file = write(name, contents);
        EXPECT_EQ(messageOf<InputError>([&] { readGeometry(file, detectFormat(file), [](double) { return false; }); }),
            std::string(name) + ": the reading was stopped");
    }
}

// Such a file takes hardly any room on the disk, and its size in memory if the hole is taken for a line.
TEST_F(GeometryReaderTest, TurnsAwayAHugeFileThatIsMostlyAHole)
{
    for (const auto& [name, contents, line] : {std::tuple("a.off", std::string("OFF\n9 0 0\n1 2 3\n"), "4"),
             {"a.ply", "ply\nformat ascii 1.0\ncomment ", "3"}}) {
        const auto file = writeBeforeHole(name, contents, qint64(1) << 30);
        const auto error = messageOf<InputError>([&] { readGeometry(file, detectFormat(file), nullptr); });
        EXPECT_EQ(error, std::string(name) + ":" + line + ": the line is too long");
        std::filesystem::remove(file);
    }
}

// Whatever bytes a file has lost or got wrong, reading it ends with points or with one line.
TEST_F(GeometryReaderTest, SurvivesEveryTruncation)
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

TEST_F(GeometryReaderTest, SurvivesEveryWrongByte)
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
