#include "vireo/textures/textureSize.h"

#include <gtest/gtest.h>

namespace tavo {
namespace {

TEST(TextureSizeTest, CountsTheComponentsOfALevel)
{
    EXPECT_EQ(sizeOfLevel(4, 3, 2, 4), 96u);
    EXPECT_EQ(sizeOfLevel(4, 3, 1, 1), 12u);
    EXPECT_EQ(sizeOfLevel(0, 3, 1, 1), 0u);
}

TEST(TextureSizeTest, CountsModulo2ToThe32)
{
    EXPECT_EQ(sizeOfLevel(65536, 65536, 1, 1), 0u);
    EXPECT_EQ(sizeOfLevel(65536, 65537, 1, 1), 65536u);
}

TEST(TextureSizeTest, HalvesEachDimensionDownToOne)
{
    EXPECT_EQ(sizeOfMipmaps(4, 4, 1, 1), 4 * 4 + 2 * 2u);
    EXPECT_EQ(sizeOfMipmaps(8, 2, 1, 3), 3 * (8 * 2 + 4 * 1 + 2 * 1u));
    EXPECT_EQ(sizeOfMipmaps(4, 2, 8, 2), 2 * (4 * 2 * 8 + 2 * 1 * 4 + 1 * 1 * 2u));
    EXPECT_EQ(sizeOfMipmaps(7, 5, 1, 1), 7 * 5 + 3 * 2u) << "odd dimensions are rounded down";
}

TEST(TextureSizeTest, LeavesTheLevelOfASingleTexelOut)
{
    EXPECT_EQ(sizeOfMipmaps(1, 1, 1, 4), 0u);
    EXPECT_EQ(sizeOfMipmaps(2, 1, 1, 4), 8u);
}

TEST(TextureSizeTest, GivesATextureWithoutTexelsNoSize)
{
    EXPECT_EQ(sizeOfMipmaps(0, 4, 1, 4), 0u);
}

} // namespace
} // namespace tavo
