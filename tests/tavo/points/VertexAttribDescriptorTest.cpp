#include "tavo/points/VertexAttribDescriptor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavo/base/objects/PException.h"

namespace tavo {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

TEST(VertexAttribDescriptorTest, KeepsWhatItIsGiven)
{
    const VertexAttribDescriptor color("color", 4, 1);
    EXPECT_EQ(color.getName(), "color");
    EXPECT_EQ(color.getNumComponents(), 4u);
    EXPECT_EQ(color.getType(), 1u);
}

TEST(VertexAttribDescriptorTest, NamesTheTypeCodes)
{
    EXPECT_EQ(VertexAttribDescriptor::TYPE_UNSIGNED_BYTE, 1u);
    EXPECT_EQ(VertexAttribDescriptor::TYPE_FLOAT, 4u);
    EXPECT_EQ(VertexAttribDescriptor::TYPE_INT, 20u);
}

TEST(VertexAttribDescriptorTest, CountsOneByteForABytesComponentAndFourForOthers)
{
    EXPECT_EQ(VertexAttribDescriptor("a", 3, 1).getSizeInBytes(), 3u);
    EXPECT_EQ(VertexAttribDescriptor("a", 3, 4).getSizeInBytes(), 12u);
    EXPECT_EQ(VertexAttribDescriptor("a", 3, 20).getSizeInBytes(), 12u);
}

TEST(VertexAttribDescriptorTest, TakesAnyOtherCodeForAFloat)
{
    for (const unsigned int code : {0u, 2u, 7u, 0xFFFFFFFFu}) {
        const VertexAttribDescriptor attribute("a", 2, code);
        EXPECT_EQ(attribute.getType(), code);
        EXPECT_TRUE(attribute.isFloat());
        EXPECT_EQ(attribute.getSizeInBytes(), 8u);
    }
    EXPECT_TRUE(VertexAttribDescriptor("a", 2, 4).isFloat());
    EXPECT_FALSE(VertexAttribDescriptor("a", 2, 1).isFloat());
    EXPECT_FALSE(VertexAttribDescriptor("a", 2, 20).isFloat());
}

TEST(VertexAttribDescriptorTest, EqualsOneOfTheSameNameComponentsAndType)
{
    const VertexAttribDescriptor attribute("normal", 3, 4);
    EXPECT_EQ(attribute, VertexAttribDescriptor("normal", 3, 4));
    EXPECT_NE(attribute, VertexAttribDescriptor("position", 3, 4));
    EXPECT_NE(attribute, VertexAttribDescriptor("normal", 4, 4));
    EXPECT_NE(attribute, VertexAttribDescriptor("normal", 3, 20));
}

TEST(VertexAttribDescriptorTest, RefusesToBeEmptyOrLargerThanCanBeCounted)
{
    EXPECT_THAT(([] { VertexAttribDescriptor("a", 0, 4); }),
        ThrowsMessage<PException>("VertexAttribDescriptor::VertexAttribDescriptor() - 'a' has no components"));
    EXPECT_THAT(([] { VertexAttribDescriptor("a", 0x40000000u, 4); }),
        ThrowsMessage<PException>(HasSubstr("'a' has too many components")));
    EXPECT_EQ(VertexAttribDescriptor("a", 0x3FFFFFFFu, 4).getSizeInBytes(), 0xFFFFFFFCu);
    EXPECT_EQ(VertexAttribDescriptor("a", 0xFFFFFFFFu, 1).getSizeInBytes(), 0xFFFFFFFFu);
}

} // namespace
} // namespace tavo
