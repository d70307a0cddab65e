#include "apps/vireo-view/Exhibits.h"

#include <cmath>
#include <gmock/gmock.h>

#include "apps/vireo-view/InputError.h"
#include "tests/apps/vireo-view/FilesTest.h"
#include "tests/apps/vireo-view/NiftiFile.h"

namespace vireo_view {
namespace {

using tavo::Vector3d;
using tavo::Vector3f;
using testing::ElementsAre;
using testing::SizeIs;

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

    static std::vector<Vector3d> positions(const SceneExhibit& scene)
    {
        std::vector<Vector3d> result;
        for (std::size_t i = 0; i < scene.geometries.at(0).getNumPoints(); ++i)
            result.push_back(scene.geometries[0].getPoint(i));
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

TEST_F(ExhibitsTest, MakesASceneOfAPointFileWithAllDigits)
{
    const auto scene = loadOne<SceneExhibit>("a.xyz", "5500000.123 0 0\n4 2 1\n");
    EXPECT_EQ(scene.name, "a.xyz");
    EXPECT_THAT(scene.remarks, testing::IsEmpty());
    EXPECT_THAT(positions(scene), ElementsAre(Vector3d(5500000.123, 0, 0), Vector3d(4, 2, 1)));
}

// The cloud's extents are 4, 2 and 1 along x, y and z, or in another order.
TEST_F(ExhibitsTest, ShowsTheLongerSideOfScenesBesideTheAxisThatPointsUp)
{
    struct Case
    {
        const char* file;
        Axis up;
        Side side;
        bool isTurned;
    };
    const Case cases[] = {{"0 0 0\n4 2 1\n", Axis::Y, Side::TOP, false},
        {"0 0 0\n4 2 1\n", Axis::Z, Side::FRONT, false}, {"0 0 0\n2 4 1\n", Axis::Z, Side::RIGHT, false},
        {"0 0 0\n1 4 2\n", Axis::X, Side::FRONT, true}, {"0 0 0\n1 2 4\n", Axis::X, Side::RIGHT, true}};
    for (const Case& c : cases) {
        LoadOptions options;
        options.up = c.up;
        const auto scene = loadOne<SceneExhibit>("a.xyz", c.file, options);
        EXPECT_EQ(scene.side, c.side) << c.file;
        EXPECT_EQ(scene.isTurned, c.isTurned) << c.file;
    }
}

TEST_F(ExhibitsTest, SaysHowManyPointsAreNotFinite)
{
    const std::string_view header = "ply\nformat binary_little_endian 1.0\nelement vertex 2\nproperty float x\n"
                                    "property float y\nproperty float z\nend_header\n";
    const std::string_view origin("\0\0\0\0\0\0\0\0\0\0\0\0", 12);
    const std::string_view infinite("\0\0\x80\x7F\0\0\0\0\0\0\0\0", 12);
    const auto scene =
        loadOne<SceneExhibit>("a.ply", std::string(header) + std::string(origin) + std::string(infinite));
    EXPECT_THAT(scene.remarks,
        ElementsAre((directory() / "a.ply").string() + ": 1 of 2 points have no finite coordinates and are left out"));
    EXPECT_EQ(errorLoading("a.ply", std::string(header) + std::string(infinite) + std::string(infinite)),
        "a.ply: has no points with finite coordinates");
}

TEST_F(ExhibitsTest, SaysHowManyPointsAreTooFarAway)
{
    EXPECT_THAT(loadOne<SceneExhibit>("a.xyz", "0 0 0\n0 -1e31 0\n").remarks,
        ElementsAre(
            (directory() / "a.xyz").string() + ": 1 of 2 points have coordinates beyond 1e30 and are left out"));
    EXPECT_EQ(errorLoading("a.xyz", "1e31 0 0\n0 0 1e32\n"), "a.xyz: has only points with coordinates beyond 1e30");
}

TEST_F(ExhibitsTest, SaysInOneLineWhatOfAFileIsLeftOut)
{
    const auto scene = loadOne<SceneExhibit>("a.obj", "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nvt 1 0\n"
                                                      "usemtl red\nusemtl blue\nf 1/1 2/1 3/1\nf 1 2 9\nl 1 2\n");
    EXPECT_THAT(
        scene.remarks, ElementsAre((directory() / "a.obj").string() +
                                   ": left out: places in textures, lines, 1 face of points that are not there, or of "
                                   "fewer than three and the materials of 'a.mtl', which cannot be read"));
}

TEST_F(ExhibitsTest, ComputesCurvesOfACloudOnRequest)
{
    LoadOptions options;
    options.withCurves = true;
    options.up = Axis::Z;
    const std::vector<Exhibit> exhibits = load("a.xyz", "0 0 0\n4 2 1\n4 2 3\n4 1 1\n", options);
    EXPECT_THAT(names(exhibits), ElementsAre("a.xyz", "a.xyz - points per z", "a.xyz - highest and lowest z"));
    const auto& heights = std::get<PlotExhibit>(exhibits[1]);
    EXPECT_EQ(heights.x.label, "z");
    EXPECT_THAT(heights.xs, SizeIs(6));
    EXPECT_THAT(heights.curves.at(0).y, SizeIs(6));
    const auto& silhouette = std::get<PlotExhibit>(exhibits[2]);
    EXPECT_EQ(silhouette.x.label, "x");
    ASSERT_THAT(silhouette.curves, SizeIs(2));
    EXPECT_EQ(silhouette.curves[0].name, "highest");
    EXPECT_EQ(silhouette.curves[1].name, "lowest");
    EXPECT_EQ(silhouette.xs.size(), silhouette.curves[1].y.size());
}

TEST_F(ExhibitsTest, MakesAVolumeOfANiftiFile)
{
    const NiftiFile file({2, 1, 3}, NIFTI_TYPE_UINT8, bytesOf<unsigned char>({0, 0, 0, 0, 0, 9}));
    const auto volume = loadOne<VolumeExhibit>("a.nii", file.getBytes());
    EXPECT_EQ(volume.name, "a.nii - 2 x 1 x 3 voxels");
    EXPECT_THAT(volume.volume.grid.size, ElementsAre(2, 1, 3));
}

TEST_F(ExhibitsTest, MakesVolumesOfTheirOtherFiles)
{
    EXPECT_EQ(loadOne<VolumeExhibit>("a.nrrd", "NRRD0004\ntype: uchar\ndimension: 4\nsizes: 1 2 1 2\n"
                                               "encoding: raw\n\nabcd")
                  .name,
        "a.nrrd - 1 x 2 x 1 voxels, 2 times");
    EXPECT_EQ(loadOne<VolumeExhibit>(
                  "a.mha", "NDims = 2\nDimSize = 1 2\nElementType = MET_UCHAR\nElementDataFile = LOCAL\nab")
                  .name,
        "a.mha - 1 x 2 x 1 voxels");
    LoadOptions options;
    options.raw = parseRawFormat("1x2x1:uint8");
    const auto raw = loadOne<VolumeExhibit>("a.csv", "abc", options);
    EXPECT_EQ(raw.name, "a.csv - 1 x 2 x 1 voxels");
    EXPECT_THAT(raw.remarks, ElementsAre((directory() / "a.csv").string() +
                                         ": has 1 byte(s) more than voxels of this size, which are left out"));
}

TEST_F(ExhibitsTest, ComputesTheHistogramOfAVolumeOnRequest)
{
    LoadOptions options;
    options.withCurves = true;
    const NiftiFile file({3, 1, 1}, NIFTI_TYPE_UINT8, bytesOf<unsigned char>({1, 2, 2}));
    const std::vector<Exhibit> exhibits = load("a.nii", file.getBytes(), options);
    EXPECT_THAT(names(exhibits), ElementsAre("a.nii - 3 x 1 x 1 voxels", "a.nii - voxels per density"));
    EXPECT_THAT(std::get<PlotExhibit>(exhibits[1]).curves.at(0).y, SizeIs(6));

    const NiftiFile empty({1, 1, 1}, NIFTI_TYPE_FLOAT32, bytesOf<float>({NAN}));
    EXPECT_THAT(load("b.nii", empty.getBytes(), options), SizeIs(1)) << "there is no number";
}

TEST_F(ExhibitsTest, ShowsColumnsAsAPlot)
{
    const auto plot = loadOne<PlotExhibit>("a.csv", "t [s],p [Pa],T\n0,5,1\n4,7,2\n");
    EXPECT_EQ(plot.name, "a.csv");
    EXPECT_EQ(plot.x.label, "t");
    EXPECT_EQ(plot.x.unit, "s");
    EXPECT_THAT(plot.xs, ElementsAre(0, 4));
    ASSERT_THAT(plot.curves, SizeIs(2));
    EXPECT_EQ(plot.curves[1].name, "T");
    EXPECT_THAT(plot.curves[1].y, ElementsAre(1, 2));
    for (const auto* const name : {"a.txt", "a.dat", "a.tsv", "a", "a.log"})
        EXPECT_THAT(loadOne<PlotExhibit>(name, "0\t1\t2\n1\t3\t4\n").curves, SizeIs(2)) << name;
}

TEST_F(ExhibitsTest, ShowsPointsOfTextsInSpaceUnlessAPlotIsAskedFor)
{
    LoadOptions options;
    for (const auto* const name : {"a.xyz", "a.pts"})
        EXPECT_THAT(positions(loadOne<SceneExhibit>(name, "0 1 2\n1 3 4\n", options)), SizeIs(2)) << name;
    options.columnsAs = ColumnsAs::PLOT;
    for (const auto* const name : {"a.xyz", "a.pts"})
        EXPECT_THAT(loadOne<PlotExhibit>(name, "0 1 2\n1 3 4\n", options).curves, SizeIs(2)) << name;
}

TEST_F(ExhibitsTest, ShowsColumnsInSpaceIfThatIsAskedFor)
{
    const std::string_view contents = "s,x,y,z\na,0,0,0\nb,1000000,500000,0\n";
    LoadOptions options;
    options.columnsAs = ColumnsAs::POINTS;
    EXPECT_THAT(positions(loadOne<SceneExhibit>("a.csv", contents, options)),
        ElementsAre(Vector3d(0, 0, 0), Vector3d(1000000, 500000, 0)));
    options.columnsAs = ColumnsAs::PATH;
    const auto path = loadOne<PathExhibit>("a.csv", contents, options);
    EXPECT_EQ(path.name, "a.csv - curve, x (0 to 1e+06) y (0 to 5e+05) z (0 to 0)");
    EXPECT_THAT(path.pieces, ElementsAre(ElementsAre(Vector3f(-0.5, -0.25, 0), Vector3f(0.5, 0.25, 0))));
    options.columns.columns = {"z", "y", "x"};
    EXPECT_THAT(loadOne<PathExhibit>("a.csv", contents, options).pieces,
        ElementsAre(ElementsAre(Vector3f(0, -0.25, -0.5), Vector3f(0, 0.25, 0.5))));
}

TEST_F(ExhibitsTest, SaysWhenThereAreTooFewColumnsForSpace)
{
    LoadOptions options;
    options.columnsAs = ColumnsAs::PATH;
    EXPECT_EQ(
        errorLoading("a.csv", "1,2\n", options), "a.csv: has 2 column(s) of numbers, and a curve in space needs 3");
    options.columnsAs = ColumnsAs::POINTS;
    EXPECT_EQ(errorLoading("a.csv", "1,2,x\n", options), "a.csv: has 2 column(s) of numbers, and a cloud needs 3");
}

TEST_F(ExhibitsTest, LeavesAGapInACurveInSpaceWhereAValueIsMissing)
{
    LoadOptions options;
    options.columnsAs = ColumnsAs::PATH;
    const auto path = loadOne<PathExhibit>("a.csv", "0,0,0\n1,0,0\n2,,0\n4,0,0\n", options);
    EXPECT_THAT(path.pieces, ElementsAre(ElementsAre(Vector3f(-0.5, 0, 0), Vector3f(-0.25, 0, 0)),
                                 ElementsAre(Vector3f(0.495, 0, 0), Vector3f(0.505, 0, 0))))
        << "a lone point becomes a dash";
    EXPECT_EQ(
        errorLoading("a.csv", "1,2,\n3,,4\n,3,4\n", options), "a.csv: has no line with all the numbers of a point");
}

TEST_F(ExhibitsTest, SaysWhatIsLeftOut)
{
    const auto plot =
        loadOne<PlotExhibit>("a.csv", "begin,end,s,p\n2024-05-01,2024-05-02,x,1\n2024-05-03,2024-05-04,y,2\n");
    const std::string file = (directory() / "a.csv").string();
    EXPECT_THAT(plot.remarks, ElementsAre(file + ": column 3 's' is text and left out ('x' in line 2)",
                                  file + ": column 2 'end' has times and is left out (--x 2 has it along x)"));
}

TEST_F(ExhibitsTest, SaysWhichColumnsAreEmpty)
{
    const std::string file = (directory() / "a.csv").string();
    EXPECT_THAT(loadOne<PlotExhibit>("a.csv", "t,p,q\n1,5,\n2,6,NA\n").remarks,
        ElementsAre(file + ": column 3 'q' is empty and left out"));
    EXPECT_THAT(loadOne<PlotExhibit>("a.csv", "t,p,q,r\n1,,7,\n").remarks,
        ElementsAre(file + ": column 2 'p' and column 4 'r' are empty and left out"));
    EXPECT_THAT(loadOne<PlotExhibit>("a.csv", "1,2,\n3,4,\n").remarks, testing::IsEmpty());
}

TEST_F(ExhibitsTest, CutsLongColumnNamesAndSaysSo)
{
    const std::string longest(100, 'n');
    const auto fits = loadOne<PlotExhibit>("a.csv", "t," + longest + "\n1,2\n2,3\n");
    EXPECT_EQ(fits.curves[0].name, longest);
    EXPECT_THAT(fits.remarks, testing::IsEmpty());
    const auto cut = loadOne<PlotExhibit>("a.csv", "t," + std::string(15000000, 'n') + "\n1,2\n2,3\n");
    EXPECT_EQ(cut.curves[0].name, longest + "...");
    EXPECT_THAT(cut.remarks, ElementsAre((directory() / "a.csv").string() +
                                         ": the name of column 2 has 15000000 characters; names are cut after 100"));
}

TEST_F(ExhibitsTest, KnowsBeforehandWhatWillBeAPlot)
{
    LoadOptions options;
    EXPECT_TRUE(isPlotted(directory() / "not-there.csv", options));
    EXPECT_TRUE(isPlotted(write("empty.log", ""), options));
    EXPECT_TRUE(isPlotted(write("a.csv", "1\n"), options));
    EXPECT_FALSE(isPlotted(write("a.off", "OFF\n1 0 0\n1 2 3\n"), options));
    for (const auto* const name : {"n.ply", "n.nii.gz", "n.xyz", "n.pts", "n.obj", "n.stl", "n.gltf", "n.glb"})
        EXPECT_FALSE(isPlotted(directory() / name, options)) << name;
    options.columnsAs = ColumnsAs::PLOT;
    EXPECT_TRUE(isPlotted(directory() / "n.xyz", options));
    EXPECT_TRUE(isPlotted(write("a.xyz", "1 2 3\n"), options));
    options.columnsAs = ColumnsAs::PATH;
    EXPECT_FALSE(isPlotted(directory() / "a.csv", options));
}

} // namespace
} // namespace vireo_view
