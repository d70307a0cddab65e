#include "apps/vireo-view/RawReader.h"

#include <gmock/gmock.h>

#include "tests/apps/vireo-view/VolumeFilesTest.h"

namespace vireo_view {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using RawReaderTest = VolumeFilesTest;

TEST(RawFormatTest, IsASizeATypeAndAByteOrder)
{
    const auto format = parseRawFormat("256x16x8:int16:be");
    ASSERT_TRUE(format);
    EXPECT_THAT(format->size, ElementsAre(256, 16, 8));
    EXPECT_EQ(format->numTimes, 1);
    EXPECT_EQ(format->type, VoxelType::INT16);
    EXPECT_TRUE(format->isBigEndian);
    EXPECT_EQ(parseRawFormat("2x3x4x5:float")->numTimes, 5);
    EXPECT_FALSE(parseRawFormat("2x3x4:float:le")->isBigEndian);
    for (const char* const none : {"", "2x3:int16", "2x3x4", "2x3x4:int17", "2x3x4:int8:me", "0x3x4:int8",
             "-1x3x4:int8", "2x3x4x5x6:int8", "2x3x99999999999:int8", "2x3x4.5:int8", "2x3x4:int8:be:x"})
        EXPECT_FALSE(parseRawFormat(none)) << none;
}

TEST_F(RawReaderTest, ReadsVoxelsAsItIsSaid)
{
    const std::filesystem::path file = write("a.raw", std::string("\0\1\1\0\xFF\xFE\0\3", 8));
    const Volume volume = readRaw(file, *parseRawFormat("2x1x1x2:int16:be"), nullptr);
    ASSERT_THAT(volume.times, SizeIs(2));
    EXPECT_THAT(numbers(volume.times[0]), ElementsAre(1, 256));
    EXPECT_THAT(numbers(volume.times[1]), ElementsAre(-2, 3));
    EXPECT_THAT(volume.remarks, IsEmpty());
}

TEST_F(RawReaderTest, SaysWhereTheSizeIsNotThatOfTheFile)
{
    const std::filesystem::path file = write("a.raw", "abcdefg");
    EXPECT_THAT(readRaw(file, *parseRawFormat("2x3x1:uint8"), nullptr).remarks,
        ElementsAre("has 1 byte(s) more than voxels of this size, which are left out"));
    const auto errorOf = [&](const char* format) {
        return messageOf<InputError>([&] { readRaw(file, *parseRawFormat(format), nullptr); });
    };
    EXPECT_EQ(errorOf("2x2x2:uint8"), "a.raw: ends before its last voxel");
    EXPECT_EQ(errorOf("1x1x1x2147483647:double"), "a.raw: ends before its last voxel");
    EXPECT_EQ(errorOf("100000x100000x1:uint8"), "a.raw: has too many voxels");
}

} // namespace
} // namespace vireo_view
