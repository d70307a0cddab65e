#include "apps/vireo-view/ExampleData.h"

#include <gmock/gmock.h>

#include "apps/vireo-view/Exhibits.h"
#include "apps/vireo-view/FileFormat.h"
#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/PointFileReader.h"
#include "tests/apps/vireo-view/FilesTest.h"

namespace vireo_view {
namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;

class ExampleDataTest : public FilesTest
{
protected:
    void writeExamples(const std::string& folder) const
    {
        fs::create_directories(directory() / folder);
        write(folder + "/building.ply", "x");
        write(folder + "/kitten.xyz", "x");
    }
};

TEST_F(ExampleDataTest, IsFoundInTheUnpackedArchiveAroundItAndBesideIt)
{
    for (const std::string folder : {"points_3", "data/points_3", "."}) {
        const fs::path place = directory() / "place";
        fs::remove_all(place);
        writeExamples("place/" + folder);
        const std::vector<InputFile> files = findExampleData(place);
        ASSERT_EQ(files.size(), 2u);
        EXPECT_TRUE(fs::exists(files[0].path));
        EXPECT_EQ(files[0].path.filename(), "building.ply");
        EXPECT_EQ(files[0].up, Axis::Z);
        EXPECT_EQ(files[1].path.filename(), "kitten.xyz");
        EXPECT_EQ(files[1].up, Axis::Y);
    }
}

TEST_F(ExampleDataTest, SaysWhatIsMissing)
{
    EXPECT_THAT(messageOf<InputError>([&] { findExampleData(directory() / "none"); }),
        HasSubstr("none: no example data: building.ply is not there"));
    write("building.ply", "x");
    EXPECT_THAT(messageOf<InputError>([&] { findExampleData(directory()); }), HasSubstr("kitten.xyz is not there"));
}

// The data that come with CGAL.
class CgalDataTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!fs::exists(CGAL_DATA))
            GTEST_SKIP() << "CGAL's example data (package libcgal-demo) were not installed when this was configured";
    }

    static constexpr auto CGAL_DATA = VIREO_CGAL_DATA;
};

TEST_F(CgalDataTest, IsShownWithCurvesComputedFromIt)
{
    const std::vector<InputFile> files = findExampleData(CGAL_DATA);
    const std::vector<Exhibit> building =
        loadExhibits(files[0].path, "building.ply", {ColumnsAs::AUTOMATIC, files[0].up, true}, nullptr);
    ASSERT_EQ(building.size(), 3u);
    EXPECT_EQ(nameOf(building[0]), "building.ply - 100000 points (y to the right, z up)");
    EXPECT_THAT(nameOf(building[1]), HasSubstr("over z (-3.151 to 14.76)"));
    EXPECT_THAT(nameOf(building[2]), HasSubstr("highest (yellow), lowest z (cyan)"));
    const tavo::BoundingBox<float, 3> box = std::get<CloudExhibit>(building[0]).points->getBoundingBox();
    EXPECT_NEAR(box.getExtent()[0], 1.0f, 1e-6f);
    EXPECT_NEAR(box.getExtent()[1], 17.91246f / 54.8378f, 1e-4f);

    const std::vector<Exhibit> kitten =
        loadExhibits(files[1].path, "kitten.xyz", {ColumnsAs::AUTOMATIC, files[1].up, true}, nullptr);
    EXPECT_EQ(nameOf(kitten[0]), "kitten.xyz - 5210 points");
}

TEST_F(CgalDataTest, IsReadInEveryFormatThatItHas)
{
    const auto count = [](const char* name) {
        const fs::path file = fs::path(CGAL_DATA) / name;
        return readPointFile(file, detectFormat(file), nullptr).size();
    };
    EXPECT_EQ(count("points_3/building.ply"), 100000u);
    EXPECT_EQ(count("points_3/b9_training.ply"), 22300u);
    EXPECT_EQ(count("points_3/colors.ply"), 3u);
    EXPECT_EQ(count("points_3/kitten.xyz"), 5210u);
    EXPECT_EQ(count("points_3/oni.pwn"), 1435u);
    EXPECT_EQ(count("points_3/triangles.xyz"), 10u);
    EXPECT_EQ(count("meshes/elephant.off"), 2775u);
    EXPECT_EQ(count("meshes/cactus.off"), 620u);
    EXPECT_EQ(count("meshes/colored_tetra.ply"), 4u);
}

} // namespace
} // namespace vireo_view
