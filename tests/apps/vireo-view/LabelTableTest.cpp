#include "apps/vireo-view/LabelTable.h"

#include <gmock/gmock.h>

#include "apps/vireo-view/InputError.h"
#include "tests/apps/vireo-view/FilesTest.h"

namespace vireo_view {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

using LabelTableTest = FilesTest;

TEST_F(LabelTableTest, ReadsNamesAndColoursBesideTheVolume)
{
    write("atlas.nii.txt", "# by others\n1 Precentral_L 2001\n3\tLeft hippocampus\r\n0 Unclassified\n");
    std::string levels(768, '\0');
    levels[3] = '\x10';
    levels[256 + 3] = '\x20';
    levels[512 + 3] = '\xFF';
    write("atlas.nii.lut", levels);
    const LabelTable table = readLabelTable(directory() / "atlas.nii.gz");
    EXPECT_THAT(
        table.names, ElementsAre(Pair(0, "Unclassified"), Pair(1, "Precentral_L"), Pair(3, "Left hippocampus")));
    ASSERT_THAT(table.colours, SizeIs(256));
    EXPECT_EQ(table.colours.at(3), tavo::RGBA8(0x10, 0x20, 0xFF, 255));
}

TEST_F(LabelTableTest, ReadsWhatLiesBesideTheAtlasOfTheHead)
{
    const std::filesystem::path templates = std::filesystem::path(VIREO_MRI_HEAD).parent_path();
    const LabelTable table = readLabelTable(templates / "aal.nii.gz");
    EXPECT_THAT(table.names, SizeIs(116));
    EXPECT_EQ(table.names.at(1), "Precentral_L");
    EXPECT_EQ(table.names.at(116), "Vermis_10");
    EXPECT_EQ(table.colours.at(1), tavo::RGBA8(0xCC, 0xCC, 0xCC, 255));
    EXPECT_THAT(readLabelTable(templates / "JHU-WhiteMatter-labels-1mm.nii.gz").names.at(2),
        "Pontine_crossing_tract_(a_part_of_MCP)");
    EXPECT_THAT(readLabelTable(templates / "brodmann.nii.gz").names, IsEmpty()) << "it has colours only";
}

TEST_F(LabelTableTest, FindsFilesWithoutTheExtensionOfTheVolume)
{
    write("atlas.txt", "7 seven\n");
    for (const char* const name : {"atlas.nii.gz", "atlas.nii", "atlas.nrrd"})
        EXPECT_THAT(readLabelTable(directory() / name).names, ElementsAre(Pair(7, "seven"))) << name;
    EXPECT_THAT(readLabelTable(directory() / "other.nii").names, IsEmpty());
    EXPECT_THAT(readLabelTable(directory() / "other.nii").colours, IsEmpty());
}

TEST_F(LabelTableTest, RefusesOtherFiles)
{
    write("a.txt", "1 one\nThis is a letter.\n");
    EXPECT_EQ(messageOf<InputError>([&] { readLabelTable(directory() / "a.nii"); }),
        "a.txt:2: does not begin with the number of a label");
    write("b.lut", std::string(769, 'x'));
    EXPECT_EQ(messageOf<InputError>([&] { readLabelTable(directory() / "b.nii"); }),
        "b.lut: is no table of 256 colours, which has 768 bytes");
}

} // namespace
} // namespace vireo_view
