#include "apps/vireo-view/Exhibits.h"

#include <cmath>
#include <gmock/gmock.h>

#include "apps/vireo-view/InputError.h"
#include "tests/apps/vireo-view/FilesTest.h"
#include "tests/apps/vireo-view/NiftiFile.h"

namespace vireo_view {
namespace {

using tavo::RGBA8;
using tavo::Vector2f;
using tavo::Vector3f;
using tavo::Vector3i;
using testing::ElementsAre;
using testing::SizeIs;

const RGBA8 YELLOW(255, 220, 60, 255);
const RGBA8 CYAN(60, 210, 255, 255);

class ExhibitsTest : public FilesTest
{
protected:
    std::vector<Exhibit> load(const std::string& name, std::string_view contents, const LoadOptions& options = {})
    {
        return loadExhibits(write(name, contents), name, options, nullptr);
    }

    template <typename Kind>
    Kind loadOne(const std::string& name, std::string_view contents, const LoadOptions& options = {})
    {
        std::vector<Exhibit> exhibits = load(name, contents, options);
        EXPECT_EQ(exhibits.size(), 1u);
        return std::get<Kind>(std::move(exhibits.at(0)));
    }

    std::string errorLoading(const std::string& name, std::string_view contents, const LoadOptions& options = {})
    {
        return messageOf<InputError>([&] { load(name, contents, options); });
    }

    static std::vector<Vector3f> positions(const CloudExhibit& cloud)
    {
        std::vector<Vector3f> result;
        const tavo::AttributeAccessToken token = cloud.points->getAAT("position");
        for (unsigned int i = 0; i < cloud.points->getNumPoints(); ++i) {
            const float* const xyz = cloud.points->get3f(i, token);
            result.emplace_back(xyz[0], xyz[1], xyz[2]);
        }
        return result;
    }

    static std::vector<std::string> names(const std::vector<Exhibit>& exhibits)
    {
        std::vector<std::string> result;
        for (const Exhibit& exhibit : exhibits)
            result.push_back(nameOf(exhibit));
        return result;
    }
};

TEST_F(ExhibitsTest, MakesACloudOfAPointFile)
{
    const auto cloud = loadOne<CloudExhibit>("a.xyz", "0 0 0\n4 2 1\n");
    EXPECT_EQ(cloud.name, "a.xyz - 2 points");
    EXPECT_TRUE(cloud.points->getDescr().providesAttribute("position", 3, 4));
    EXPECT_THAT(positions(cloud), ElementsAre(Vector3f(-0.5, -0.25, -0.125), Vector3f(0.5, 0.25, 0.125)));
}

// The cloud's extents are 4, 2 and 1 along x, y and z, or in another order.
TEST_F(ExhibitsTest, TurnsCloudsUpwardsAndTheirLongerSideToTheViewer)
{
    struct Case
    {
        const char* file;
        Axis up;
        Vector3f last;
        const char* name;
    };
    const Case cases[] = {{"0 0 0\n4 2 1\n", Axis::Y, {0.5, 0.25, 0.125}, "a.xyz - 2 points"},
        {"0 0 0\n1 2 4\n", Axis::Y, {0.5, 0.25, -0.125}, "a.xyz - 2 points (z to the right, y up)"},
        {"0 0 0\n4 2 1\n", Axis::Z, {0.5, 0.125, -0.25}, "a.xyz - 2 points (x to the right, z up)"},
        {"0 0 0\n2 4 1\n", Axis::Z, {0.5, 0.125, 0.25}, "a.xyz - 2 points (y to the right, z up)"},
        {"0 0 0\n1 4 2\n", Axis::X, {0.5, 0.125, -0.25}, "a.xyz - 2 points (y to the right, x up)"},
        {"0 0 0\n1 2 4\n", Axis::X, {0.5, 0.125, 0.25}, "a.xyz - 2 points (z to the right, x up)"}};
    for (const Case& c : cases) {
        LoadOptions options;
        options.up = c.up;
        const auto cloud = loadOne<CloudExhibit>("a.xyz", c.file, options);
        EXPECT_THAT(positions(cloud), ElementsAre(Vector3f() - c.last, c.last)) << c.name;
        EXPECT_EQ(cloud.name, c.name);
    }
}

TEST_F(ExhibitsTest, LeavesOutPointsThatAreNotFinite)
{
    const std::string_view header = "ply\nformat binary_little_endian 1.0\nelement vertex 2\nproperty float x\n"
                                    "property float y\nproperty float z\nend_header\n";
    const std::string_view origin("\0\0\0\0\0\0\0\0\0\0\0\0", 12);
    const std::string_view infinite("\0\0\x80\x7F\0\0\0\0\0\0\0\0", 12);
    const auto cloud =
        loadOne<CloudExhibit>("a.ply", std::string(header) + std::string(origin) + std::string(infinite));
    EXPECT_EQ(cloud.name, "a.ply - 1 points (1 without finite coordinates left out)");
    EXPECT_THAT(positions(cloud), ElementsAre(Vector3f(0, 0, 0)));
    EXPECT_EQ(errorLoading("a.ply", std::string(header) + std::string(infinite) + std::string(infinite)),
        "a.ply: has no points with finite coordinates");
}

TEST_F(ExhibitsTest, ComputesCurvesOfACloudOnRequest)
{
    LoadOptions options;
    options.withCurves = true;
    options.up = Axis::Z;
    const std::vector<Exhibit> exhibits = load("a.xyz", "0 0 0\n4 2 1\n4 2 3\n4 1 1\n", options);
    EXPECT_THAT(names(exhibits),
        ElementsAre("a.xyz - 4 points (x to the right, z up)", "a.xyz - points per z (0 to 3) over z (0 to 3)",
            "a.xyz - highest (yellow), lowest z (cyan) (0 to 3) over x (1 to 3)"));
    EXPECT_THAT(std::get<CurvesExhibit<2>>(exhibits[1]).curves, ElementsAre(SizeIs(6)));
    EXPECT_THAT(std::get<CurvesExhibit<2>>(exhibits[2]).colours, ElementsAre(YELLOW, CYAN));
}

TEST_F(ExhibitsTest, MakesAVolumeOfANiftiFile)
{
    const NiftiFile file({2, 1, 3}, NIFTI_TYPE_UINT8, bytesOf<unsigned char>({0, 0, 0, 0, 0, 9}));
    const auto volume = loadOne<VolumeExhibit>("a.nii", file.getBytes());
    EXPECT_EQ(volume.name, "a.nii - 2 x 1 x 3 voxels");
    EXPECT_EQ(volume.volume->getExtends(), Vector3i(2, 1, 3));
}

TEST_F(ExhibitsTest, ComputesTheHistogramOfAVolumeOnRequest)
{
    LoadOptions options;
    options.withCurves = true;
    const NiftiFile file({3, 1, 1}, NIFTI_TYPE_UINT8, bytesOf<unsigned char>({1, 2, 2}));
    const std::vector<Exhibit> exhibits = load("a.nii", file.getBytes(), options);
    EXPECT_THAT(names(exhibits), ElementsAre("a.nii - 3 x 1 x 1 voxels",
                                     "a.nii - log10 of voxels per density (0 to 0.4771) over density (1 to 2)"));
    EXPECT_THAT(std::get<CurvesExhibit<2>>(exhibits[1]).curves, ElementsAre(SizeIs(6)));

    const NiftiFile empty({1, 1, 1}, NIFTI_TYPE_FLOAT32, bytesOf<float>({NAN}));
    EXPECT_THAT(load("b.nii", empty.getBytes(), options), SizeIs(1)) << "there is no number";
}

TEST_F(ExhibitsTest, ShowsOneColumnAsASeries)
{
    const auto graph = loadOne<CurvesExhibit<2>>("a.txt", "10\n30\n20\n");
    EXPECT_EQ(graph.name, "a.txt - column 1 (10 to 30) over row (1 to 3)");
    EXPECT_THAT(graph.curves, ElementsAre(ElementsAre(Vector2f(-0.8, -0.5), Vector2f(0, 0.5), Vector2f(0.8, 0))));
    EXPECT_THAT(graph.colours, ElementsAre(YELLOW));
}

TEST_F(ExhibitsTest, ShowsTwoColumnsAsAGraph)
{
    const auto graph = loadOne<CurvesExhibit<2>>("a.csv", "time,height\n0,5\n4,7\n1,6\n");
    EXPECT_EQ(graph.name, "a.csv - height (5 to 7) over time (0 to 4)");
    EXPECT_THAT(graph.curves, ElementsAre(ElementsAre(Vector2f(-0.8, -0.5), Vector2f(0.8, 0.5), Vector2f(-0.4, 0))));
}

TEST_F(ExhibitsTest, ShowsThreeColumnsAsACurveInSpace)
{
    const auto curve = loadOne<CurvesExhibit<3>>("a.csv", "0,0,0\n1000000,500000,0\n");
    EXPECT_EQ(curve.name, "a.csv - curve, x (0 to 1e+06) y (0 to 5e+05) z (0 to 0)");
    EXPECT_THAT(curve.curves, ElementsAre(ElementsAre(Vector3f(-0.5, -0.25, 0), Vector3f(0.5, 0.25, 0))));
}

TEST_F(ExhibitsTest, ShowsMoreColumnsAsGraphsOverTheFirst)
{
    const auto graph = loadOne<CurvesExhibit<2>>("a.csv", "t,a,b,c\n0,1,2,3\n1,2,3,4\n");
    EXPECT_EQ(graph.name, "a.csv - a (yellow), b (cyan), c (magenta) (1 to 4) over t (0 to 1)");
    EXPECT_THAT(graph.curves, SizeIs(3));
}

TEST_F(ExhibitsTest, NamesOnlySomeOfManyGraphs)
{
    const auto graph = loadOne<CurvesExhibit<2>>("a.csv", "0,1,2,3,4,5,6,7,8,9\n1,1,2,3,4,5,6,7,8,9\n");
    EXPECT_THAT(graph.curves, SizeIs(9));
    EXPECT_THAT(graph.name, testing::HasSubstr("column 9 (white), ... (1 to 9)"));
    EXPECT_EQ(graph.colours.front(), graph.colours.back());
}

TEST_F(ExhibitsTest, ShowsColumnsAsIsAskedFor)
{
    const std::string_view contents = "0,1,2\n1,3,4\n";
    LoadOptions options;
    options.columnsAs = ColumnsAs::SERIES;
    EXPECT_THAT(loadOne<CurvesExhibit<2>>("a.csv", contents, options).curves, SizeIs(3));
    options.columnsAs = ColumnsAs::PLANE;
    EXPECT_THAT(loadOne<CurvesExhibit<2>>("a.csv", contents, options).curves, SizeIs(2));
    options.columnsAs = ColumnsAs::SPACE;
    EXPECT_THAT(loadOne<CurvesExhibit<3>>("a.csv", contents, options).curves, SizeIs(1));
    options.columnsAs = ColumnsAs::CLOUD;
    EXPECT_EQ(loadOne<CloudExhibit>("a.csv", contents, options).points->getNumPoints(), 2u);
}

TEST_F(ExhibitsTest, SaysWhenThereAreTooFewColumnsForWhatIsAskedFor)
{
    LoadOptions options;
    options.columnsAs = ColumnsAs::PLANE;
    EXPECT_EQ(errorLoading("a.csv", "1\n", options), "a.csv: has 1 column(s) of numbers, and a graph needs 2");
    options.columnsAs = ColumnsAs::SPACE;
    EXPECT_EQ(
        errorLoading("a.csv", "1,2\n", options), "a.csv: has 2 column(s) of numbers, and a curve in space needs 3");
    options.columnsAs = ColumnsAs::CLOUD;
    EXPECT_EQ(errorLoading("a.csv", "1,2\n", options), "a.csv: has 2 column(s) of numbers, and a cloud needs 3");
}

TEST_F(ExhibitsTest, LeavesAGapInTheGraphWhereAValueIsMissing)
{
    const auto graph = loadOne<CurvesExhibit<2>>("a.csv", "0,1\n1,2\n2,\n3,1\n4,3\n");
    EXPECT_EQ(graph.name, "a.csv - column 2 (1 to 3) over column 1 (0 to 4)");
    EXPECT_THAT(graph.curves, ElementsAre(ElementsAre(Vector2f(-0.8, -0.5), Vector2f(-0.4, 0)),
                                  ElementsAre(Vector2f(0.4, -0.5), Vector2f(0.8, 0.5))));
    EXPECT_THAT(graph.colours, ElementsAre(YELLOW, YELLOW));
}

TEST_F(ExhibitsTest, MakesALoneValueVisibleAsADash)
{
    const auto graph = loadOne<CurvesExhibit<2>>("a.txt", "7\n");
    EXPECT_THAT(graph.curves, ElementsAre(ElementsAre(Vector2f(-0.005, 0), Vector2f(0.005, 0))));
}

TEST_F(ExhibitsTest, TurnsAwayColumnsWithoutACompletePoint)
{
    EXPECT_EQ(errorLoading("a.csv", "1,\n,2\n"), "a.csv: has no line with all the numbers of a point");
    EXPECT_EQ(errorLoading("a.csv", "1,2,\n3,,4\n"), "a.csv: has no line with all the numbers of a point");
}

TEST_F(ExhibitsTest, WritesControlCharactersOfColumnNamesOut)
{
    EXPECT_THAT(names(load("a.csv", "\x1B[2J,a\x7F\n1,2\n2,3\n")),
        ElementsAre("a.csv - a\\x7f (2 to 3) over \\x1b[2J (1 to 2)"));
}

TEST_F(ExhibitsTest, CutsLongColumnNamesAndSaysSo)
{
    const std::string longest(100, 'n');
    testing::internal::CaptureStderr();
    EXPECT_THAT(names(load("a.csv", "t," + longest + "\n1,2\n2,3\n")),
        ElementsAre("a.csv - " + longest + " (2 to 3) over t (1 to 2)"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

    testing::internal::CaptureStderr();
    EXPECT_THAT(names(load("a.csv", "t," + std::string(15000000, 'n') + "\n1,2\n2,3\n")),
        ElementsAre("a.csv - " + longest + "... (2 to 3) over t (1 to 2)"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "warning: " + (directory() / "a.csv").string() +
            ": the name of column 2 has 15000000 characters; names are cut after 100\n");
}

TEST_F(ExhibitsTest, CutsColumnNamesBetweenCharacters)
{
    std::string longest;
    for (int i = 0; i < 100; ++i)
        longest += "\xC3\xB6";
    testing::internal::CaptureStderr();
    EXPECT_THAT(names(load("a.csv", longest + "," + longest + "\xC3\xB6\n1,2\n2,3\n")),
        ElementsAre("a.csv - " + longest + "... (2 to 3) over " + longest + " (1 to 2)"));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("column 2 has 101 characters"));
}

} // namespace
} // namespace vireo_view
