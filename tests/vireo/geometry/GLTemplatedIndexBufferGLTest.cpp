#include <array>
#include <cstring>
#include <gmock/gmock.h>

#include "tavo/base/objects/PException.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/Picture.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/Undestroyed.h"
#include "tests/vireo/vertexLayouts.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/geometry/GLTemplatedIndexBuffer.h"
#include "vireo/geometry/GLVertexBuffer.h"

namespace tavo {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

template <typename T>
class GLTemplatedIndexBufferGLTest : public ContextTest
{
protected:
    static constexpr const char* TYPE = sizeof(T) == 2 ? "GL_UNSIGNED_SHORT" : "GL_UNSIGNED_INT";

    static std::string times(unsigned int count) { return std::to_string(count * sizeof(T)); }
};

using IndexTypes = testing::Types<unsigned short, unsigned int>;
TYPED_TEST_SUITE(GLTemplatedIndexBufferGLTest, IndexTypes);

TYPED_TEST(GLTemplatedIndexBufferGLTest, IsEmptyAtFirst)
{
    const GLTemplatedIndexBuffer<TypeParam> buffer(this->context());
    EXPECT_EQ(buffer.getNumIndices(), 0u);
    EXPECT_EQ(buffer.getSizeInBytes(), 0u);
}

TYPED_TEST(GLTemplatedIndexBufferGLTest, MakesStorageForItsIndices)
{
    GLTemplatedIndexBuffer<TypeParam> buffer(this->context());
    EXPECT_THAT(callsOf([&] { EXPECT_TRUE(buffer.init(10, GL_STATIC_DRAW_ARB)); }),
        Contains("glBufferDataARB(GL_ELEMENT_ARRAY_BUFFER_ARB, " + this->times(10) + ", null, GL_STATIC_DRAW_ARB)"));
    EXPECT_EQ(buffer.getNumIndices(), 10u);
    EXPECT_EQ(buffer.getSizeInBytes(), 10 * sizeof(TypeParam));
    EXPECT_FALSE(buffer.init(3, GL_RGBA));
    EXPECT_EQ(buffer.getSizeInBytes(), 3 * sizeof(TypeParam));
    EXPECT_EQ(buffer.getNumIndices(), 3u);
    EXPECT_THAT(callsOf([&] { EXPECT_FALSE(buffer.init(0xFFFFFFFF, GL_STATIC_DRAW_ARB)); }), IsEmpty());
    EXPECT_EQ(buffer.getSizeInBytes(), 3 * sizeof(TypeParam));
    EXPECT_EQ(buffer.getNumIndices(), 0xFFFFFFFFu);
}

TYPED_TEST(GLTemplatedIndexBufferGLTest, WritesAndReadsIndicesWithinItsRange)
{
    GLTemplatedIndexBuffer<TypeParam> buffer(this->context());
    ASSERT_TRUE(buffer.init(3, GL_STATIC_DRAW_ARB));
    constexpr std::array<TypeParam, 3> indices{7, 8, 60000};
    buffer.writeToBuffer(indices.data(), 0, 3);
    std::vector<unsigned char> bytes;
    buffer.readFromBuffer(bytes, 1, 2);
    std::array<TypeParam, 2> read{};
    ASSERT_EQ(bytes.size(), sizeof read);
    std::memcpy(read.data(), bytes.data(), sizeof read);
    EXPECT_THAT(read, ElementsAre(8, 60000));

    EXPECT_THAT([&] { buffer.writeToBuffer(indices.data(), 1, 3); },
        ThrowsMessage<PException>("GLBuffer::writeToBuffer | out of range!"));
    EXPECT_THAT([&] { buffer.readFromBuffer(bytes, 3, 1); },
        ThrowsMessage<PException>("GLBuffer::readFromBuffer | out of range!"));
    EXPECT_THAT([&] { buffer.readFromBuffer(bytes, 0, 0x80000000); },
        ThrowsMessage<PException>("GLBuffer::readFromBuffer | out of range!"));
}

TYPED_TEST(GLTemplatedIndexBufferGLTest, DrawsARangeOrAllOfItsIndices)
{
    GLTemplatedIndexBuffer<TypeParam> buffer(this->context());
    ASSERT_TRUE(buffer.init(12, GL_STATIC_DRAW_ARB));
    const std::array<TypeParam, 12> zeros{};
    buffer.writeToBuffer(zeros.data(), 0, 12);
    buffer.bind();
    const std::string type = this->TYPE;
    EXPECT_THAT(callsOf([&] { buffer.drawElements(GL_LINES, 4, 2); }),
        ElementsAre("glDrawElements(GL_LINES, 2, " + type + ", " + this->times(4) + ")"));
    EXPECT_THAT(callsOf([&] { buffer.drawElements(GL_POINTS, 0, 0); }),
        ElementsAre("glDrawElements(GL_POINTS, 12, " + type + ", null)"));
    buffer.unbind();
}

TYPED_TEST(GLTemplatedIndexBufferGLTest, ChoosesTheVerticesThatAreDrawn)
{
    // The lower left quarter of the drawable, with a vertex in front that no index names.
    std::array<std::array<float, 2>, 5> positions{{{9, 9}, {-1, -1}, {0, -1}, {-1, 0}, {0, 0}}};
    GLVertexBuffer vertices(this->context(), makeLayout({{"position", 2, FLOAT}}), GLVertexBuffer::TYPE_DEFAULT);
    ASSERT_TRUE(vertices.init(5, GL_STATIC_DRAW_ARB));
    vertices.writeToBuffer(positions.data(), 0, 5);
    vertices.setMappingFlag(true);

    constexpr std::array<TypeParam, 6> triangles{1, 2, 3, 3, 2, 4};
    GLTemplatedIndexBuffer<TypeParam> indices(this->context());
    ASSERT_TRUE(indices.init(6, GL_STATIC_DRAW_ARB));
    indices.writeToBuffer(triangles.data(), 0, 6);

    glClear(GL_COLOR_BUFFER_BIT);
    vertices.bind();
    indices.bind();
    indices.drawElements(GL_TRIANGLES, 0, 0);
    indices.unbind();
    vertices.unbind();

    Picture expected(64, 64);
    for (unsigned int y = 0; y < 32; ++y) {
        for (unsigned int x = 0; x < 32; ++x)
            expected.at(x, y) = {255, 255, 255, 255};
    }
    EXPECT_EQ(readPixels(), expected);
}

TYPED_TEST(GLTemplatedIndexBufferGLTest, SharesItsNameWithItsCopies)
{
    GLTemplatedIndexBuffer<TypeParam> buffer(this->context());
    ASSERT_TRUE(buffer.init(3, GL_STATIC_DRAW_ARB));
    const Undestroyed<GLTemplatedIndexBuffer<TypeParam>> copy(buffer);
    EXPECT_EQ(copy->getNumIndices(), 3u);
    EXPECT_EQ(callsOf([&] { copy->bind(); }), callsOf([&] { buffer.bind(); }));
    buffer.unbind();
}

} // namespace
} // namespace tavo
