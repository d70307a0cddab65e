#include "tavo/points/VertexDescriptor.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

#include "tavo/base/objects/PException.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::ThrowsMessage;

using Bytes = std::vector<unsigned char>;

constexpr unsigned int BYTE = VertexAttribDescriptor::TYPE_UNSIGNED_BYTE;
constexpr unsigned int FLOAT = VertexAttribDescriptor::TYPE_FLOAT;
constexpr unsigned int INT = VertexAttribDescriptor::TYPE_INT;

VertexDescriptor layout(std::initializer_list<VertexAttribDescriptor> attributes)
{
    VertexDescriptor descriptor;
    for (const VertexAttribDescriptor& attribute : attributes)
        descriptor.pushAttrib(attribute);
    return descriptor;
}

std::vector<float> converted(
    const VertexDescriptor& target, const VertexDescriptor& source, const std::vector<float>& data, unsigned int count)
{
    Bytes bytes;
    VertexDescriptor::convertVertices(target, source, data.data(), count, bytes);
    std::vector<float> floats(bytes.size() / sizeof(float));
    std::memcpy(floats.data(), bytes.data(), bytes.size());
    return floats;
}

TEST(VertexDescriptorTest, IsEmptyAtFirst)
{
    const VertexDescriptor descriptor;
    EXPECT_EQ(descriptor.getNumAttribs(), 0u);
    EXPECT_EQ(descriptor.getNumAttributes(), 0u);
    EXPECT_EQ(descriptor.getSize(), 0u);
}

TEST(VertexDescriptorTest, LaysAttributesOutOneBehindTheOther)
{
    const VertexDescriptor descriptor = layout({{"color", 3, BYTE}, {"position", 3, FLOAT}, {"index", 1, INT}});
    EXPECT_EQ(descriptor.getNumAttribs(), 3u);
    EXPECT_EQ(descriptor.getNumAttributes(), 3u);
    EXPECT_EQ(descriptor.getAttributeOffset(0), 0u);
    EXPECT_EQ(descriptor.getAttributeOffset(1), 3u);
    EXPECT_EQ(descriptor.getAttributeOffset(2), 15u);
    EXPECT_EQ(descriptor.getSize(), 19u);
}

TEST(VertexDescriptorTest, GivesAttributesByIndexAndByName)
{
    const VertexDescriptor descriptor = layout({{"position", 3, FLOAT}, {"color", 4, BYTE}});
    EXPECT_EQ(descriptor.getAttribute(0).getName(), "position");
    EXPECT_EQ(descriptor.getAttribute(1), VertexAttribDescriptor("color", 4, BYTE));
    EXPECT_EQ(descriptor.getAttribute("color"), VertexAttribDescriptor("color", 4, BYTE));
    EXPECT_EQ(descriptor.getIndex("color"), 1u);
}

TEST(VertexDescriptorTest, ThrowsOutOfRangeBeyondTheLastAttribute)
{
    const VertexDescriptor descriptor = layout({{"position", 3, FLOAT}});
    EXPECT_THROW(descriptor.getAttribute(1), std::out_of_range);
    EXPECT_THROW(descriptor.getAttributeOffset(1), std::out_of_range);
}

TEST(VertexDescriptorTest, ThrowsPExceptionForANameItDoesNotHave)
{
    const VertexDescriptor descriptor = layout({{"position", 3, FLOAT}});
    const auto message = "VertexDescriptor::getIndex() - no attribute 'normal'";
    EXPECT_THAT([&] { descriptor.getAttribute("normal"); }, ThrowsMessage<PException>(message));
    EXPECT_THAT([&] { descriptor.getIndex("normal"); }, ThrowsMessage<PException>(message));
}

TEST(VertexDescriptorTest, ProvidesAnAttributeByNameOrExactlyAsDescribed)
{
    const VertexDescriptor descriptor = layout({{"position", 3, FLOAT}});
    EXPECT_TRUE(descriptor.providesAttribute("position"));
    EXPECT_FALSE(descriptor.providesAttribute("Position"));
    EXPECT_TRUE(descriptor.providesAttribute("position", 3, FLOAT));
    EXPECT_FALSE(descriptor.providesAttribute("position", 2, FLOAT));
    EXPECT_FALSE(descriptor.providesAttribute("position", 3, INT));
    EXPECT_FALSE(descriptor.providesAttribute("normal", 3, FLOAT));
}

TEST(VertexDescriptorTest, MeansTheFirstWhereANameOccursTwice)
{
    const VertexDescriptor descriptor = layout({{"texcoord", 2, FLOAT}, {"texcoord", 4, FLOAT}});
    EXPECT_EQ(descriptor.getNumAttribs(), 2u);
    EXPECT_EQ(descriptor.getIndex("texcoord"), 0u);
    EXPECT_EQ(descriptor.getAttribute("texcoord").getNumComponents(), 2u);
}

TEST(VertexDescriptorTest, EqualsOneOfTheSameAttributesInTheSameOrder)
{
    const VertexDescriptor descriptor = layout({{"position", 3, FLOAT}, {"normal", 3, FLOAT}});
    EXPECT_EQ(descriptor, layout({{"position", 3, FLOAT}, {"normal", 3, FLOAT}}));
    EXPECT_NE(descriptor, layout({{"normal", 3, FLOAT}, {"position", 3, FLOAT}}));
    EXPECT_NE(descriptor, layout({{"position", 3, FLOAT}}));
}

TEST(VertexDescriptorTest, RefusesAnAttributeThatMakesTheVertexTooLargeAndStaysAsItWas)
{
    VertexDescriptor descriptor = layout({{"a", 0xFFFFFFF0u, BYTE}});
    EXPECT_THROW(descriptor.pushAttrib({"b", 4, FLOAT}), PException);
    EXPECT_EQ(descriptor.getNumAttribs(), 1u);
    EXPECT_EQ(descriptor.getSize(), 0xFFFFFFF0u);
    descriptor.pushAttrib({"c", 15, BYTE});
    EXPECT_EQ(descriptor.getSize(), 0xFFFFFFFFu);
}

TEST(VertexDescriptorTest, ConvertsByNameWhateverTheOrder)
{
    const VertexDescriptor source = layout({{"position", 3, FLOAT}, {"normal", 3, FLOAT}});
    const VertexDescriptor target = layout({{"normal", 3, FLOAT}, {"position", 3, FLOAT}});
    EXPECT_THAT(converted(target, source, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, 2),
        ElementsAre(4, 5, 6, 1, 2, 3, 10, 11, 12, 7, 8, 9));
}

TEST(VertexDescriptorTest, ConvertsTheLeadingComponentsThatTheTargetHas)
{
    const VertexDescriptor source = layout({{"position", 4, FLOAT}, {"texcoord", 4, FLOAT}});
    const VertexDescriptor target = layout({{"position", 3, FLOAT}, {"texcoord", 2, FLOAT}});
    EXPECT_THAT(converted(target, source, {1, 2, 3, 4, 5, 6, 7, 8}, 1), ElementsAre(1, 2, 3, 5, 6));
}

TEST(VertexDescriptorTest, FillsWhatTheSourceLacksWithZero)
{
    const VertexDescriptor source = layout({{"position", 2, FLOAT}});
    const VertexDescriptor target = layout({{"normal", 1, FLOAT}, {"position", 3, FLOAT}});
    EXPECT_THAT(converted(target, source, {1, 2, 3, 4}, 2), ElementsAre(0, 1, 2, 0, 0, 3, 4, 0));
}

TEST(VertexDescriptorTest, ConvertsBytesAtAnyOffset)
{
    const VertexDescriptor source = layout({{"a", 1, BYTE}, {"color", 3, BYTE}, {"b", 1, BYTE}});
    const VertexDescriptor target = layout({{"b", 1, BYTE}, {"color", 2, BYTE}});
    const Bytes data = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    Bytes result;
    VertexDescriptor::convertVertices(target, source, data.data(), 2, result);
    EXPECT_THAT(result, ElementsAre(5, 2, 3, 10, 7, 8));
}

TEST(VertexDescriptorTest, ConvertsAttributesOfAnySize)
{
    for (unsigned int numComponents = 1; numComponents <= 9; ++numComponents) {
        const VertexDescriptor source = layout({{"other", 1, FLOAT}, {"weights", numComponents, FLOAT}});
        const VertexDescriptor target = layout({{"weights", numComponents, FLOAT}});
        std::vector<float> vertices;
        std::vector<float> weights;
        for (unsigned int i = 0; i < 3 * (numComponents + 1); ++i) {
            vertices.push_back(static_cast<float>(i));
            if (i % (numComponents + 1) != 0)
                weights.push_back(static_cast<float>(i));
        }
        EXPECT_EQ(converted(target, source, vertices, 3), weights);
    }
}

TEST(VertexDescriptorTest, ConvertsToTheSameLayoutUnchanged)
{
    const VertexDescriptor same = layout({{"position", 2, FLOAT}, {"normal", 1, FLOAT}});
    EXPECT_THAT(converted(same, same, {1, 2, 3, 4, 5, 6}, 2), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST(VertexDescriptorTest, ConvertsAVectorInPlace)
{
    const VertexDescriptor source = layout({{"a", 1, BYTE}, {"b", 1, BYTE}});
    const VertexDescriptor target = layout({{"b", 1, BYTE}});
    Bytes bytes = {1, 2, 3, 4};
    VertexDescriptor::convertVertices(target, source, bytes.data(), 2, bytes);
    EXPECT_THAT(bytes, ElementsAre(2, 4));
}

TEST(VertexDescriptorTest, TakesUnknownTypeCodesForFloatsWhenConverting)
{
    const VertexDescriptor source = layout({{"weight", 1, 7}});
    const VertexDescriptor target = layout({{"weight", 1, FLOAT}});
    EXPECT_THAT(converted(target, source, {0.5f}, 1), ElementsAre(0.5f));
}

TEST(VertexDescriptorTest, RefusesToConvertBetweenTypesAndKeepsTheOldBytes)
{
    const VertexDescriptor source = layout({{"position", 3, FLOAT}, {"color", 4, BYTE}});
    const VertexDescriptor target = layout({{"position", 3, FLOAT}, {"color", 4, FLOAT}});
    const Bytes data(2 * source.getSize());
    Bytes result = {42};
    EXPECT_THAT([&] { VertexDescriptor::convertVertices(target, source, data.data(), 2, result); },
        ThrowsMessage<PException>("VertexDescriptor::convertVertices() - 'color' differs in type"));
    EXPECT_THAT(result, ElementsAre(42));
}

TEST(VertexDescriptorTest, ConvertsNoVerticesFromNoData)
{
    const VertexDescriptor same = layout({{"position", 3, FLOAT}});
    Bytes result = {42};
    EXPECT_THAT([&] { VertexDescriptor::convertVertices(same, same, nullptr, 1, result); },
        ThrowsMessage<PException>("VertexDescriptor::convertVertices() - no data"));
    EXPECT_THAT(result, ElementsAre(42));
    VertexDescriptor::convertVertices(same, same, nullptr, 0, result);
    EXPECT_TRUE(result.empty());
}

} // namespace
} // namespace tavo
