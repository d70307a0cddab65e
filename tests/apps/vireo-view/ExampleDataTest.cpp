#include "apps/vireo-view/ExampleData.h"

#include <gmock/gmock.h>

#include "apps/vireo-view/Exhibits.h"
#include "apps/vireo-view/FileFormat.h"
#include "apps/vireo-view/GeometryReader.h"
#include "apps/vireo-view/InputError.h"
#include "tests/apps/vireo-view/FilesTest.h"

namespace vireo_view {
namespace {

namespace fs = std::filesystem;

using tavo::Box3f;
using testing::HasSubstr;

class ExampleDataTest : public FilesTest
{
protected:
    // Not among what the package of the same machine has.
    static constexpr auto NAME = "example.ply";

    fs::path writeExample(const std::string& folder) const
    {
        fs::create_directories(directory() / folder);
        return write(folder + "/" + NAME, "x");
    }
};

TEST_F(ExampleDataTest, IsFoundInAnyOfItsFoldersInTheirOrder)
{
    const ExampleFile example = {NAME, Axis::Z, {"first", "first/second", "."}};
    for (const std::string folder : {"place", "place/first/second", "place/first"}) {
        const fs::path file = writeExample(folder);
        const InputFile found = findExample(example, directory() / "place");
        EXPECT_EQ(found.path, fs::path(file).lexically_normal());
        EXPECT_EQ(found.up, Axis::Z);
    }
}

TEST_F(ExampleDataTest, IsFoundOutsideOfTheDirectory)
{
    const fs::path file = writeExample("package");
    const ExampleFile example = {NAME, Axis::Y, {".", directory() / "package"}};
    EXPECT_EQ(findExample(example, directory() / "none").path, file);
    const fs::path nearer = writeExample("place");
    EXPECT_EQ(findExample(example, directory() / "place").path, nearer);
}

TEST_F(ExampleDataTest, SaysWhatIsMissing)
{
    EXPECT_THAT(messageOf<InputError>([&] { findExample(exampleFiles()[1], directory() / "none"); }),
        HasSubstr("none: no example data: building.ply is not there"));
}

TEST_F(ExampleDataTest, IsAHeadAndAScan)
{
    ASSERT_EQ(exampleFiles().size(), 2u);
    EXPECT_STREQ(exampleFiles()[0].name, "ch2.nii.gz");
    EXPECT_STREQ(exampleFiles()[1].name, "building.ply");
    for (const std::string folder : {"points_3", "data/points_3", "."}) {
        const fs::path place = directory() / "place";
        fs::remove_all(place);
        fs::create_directories(place / folder);
        write("place/" + folder + "/building.ply", "x");
        EXPECT_TRUE(fs::exists(findExample(exampleFiles()[1], place).path));
    }
    write("ch2.nii.gz", "x");
    EXPECT_EQ(findExample(exampleFiles()[0], directory()).path, directory() / "ch2.nii.gz");
}

// The scans that scripts/example-data gets, and what is in their package besides.
class ScansTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!fs::exists(SCANS))
            GTEST_SKIP() << "the scans (of the package libcgal-demo) were not there when this was configured";
    }

    static constexpr auto SCANS = VIREO_SCANS;
};

TEST_F(ScansTest, IsShownWithCurvesComputedFromIt)
{
    const InputFile file = findExample(exampleFiles()[1], SCANS);
    const std::vector<Exhibit> building =
        loadExhibits(file.path, "building.ply", {ColumnsAs::AUTOMATIC, {}, file.up, true}, nullptr);
    ASSERT_EQ(building.size(), 3u);
    EXPECT_EQ(nameOf(building[0]), "building.ply");
    EXPECT_EQ(nameOf(building[1]), "building.ply - points per z");
    EXPECT_NEAR(std::get<PlotExhibit>(building[1]).xs.front(), -3.151, 1e-3);
    EXPECT_EQ(nameOf(building[2]), "building.ply - highest and lowest z");
    const auto& scene = std::get<SceneExhibit>(building[0]);
    EXPECT_EQ(scene.geometries.at(0).getNumPoints(), 100000u);
    EXPECT_EQ(scene.side, Side::RIGHT) << "it is longer along y than along x";
}

TEST_F(ScansTest, IsReadInEveryFormatThatItHas)
{
    const auto count = [](const char* name) {
        const fs::path file = fs::path(SCANS) / name;
        return readGeometry(file, detectFormat(file), nullptr).geometries.at(0).getNumPoints();
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
