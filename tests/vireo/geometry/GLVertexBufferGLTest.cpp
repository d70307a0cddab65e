#include <array>
#include <cstring>
#include <gmock/gmock.h>
#include <memory>
#include <numeric>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/objects/PException.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/Picture.h"
#include "tests/support/extensions.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/geometry/vertexPrograms.h"
#include "tests/vireo/vertexLayouts.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/geometry/GLVertexBuffer.h"

namespace tavo {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

constexpr unsigned int LEFT = 0;
constexpr unsigned int MIDDLE = 32;
constexpr unsigned int RIGHT = 64;

// A picture of the drawable's size whose left and right halves have one colour each.
Picture halves(const Pixel& left, const Pixel& right)
{
    Picture picture(RIGHT, RIGHT);
    for (unsigned int y = 0; y < picture.height; ++y) {
        for (unsigned int x = LEFT; x < RIGHT; ++x)
            picture.at(x, y) = x < MIDDLE ? left : right;
    }
    return picture;
}

// A square of the whole drawable as two quads, left and right.
constexpr std::array<std::array<float, 2>, 8> SQUARES{
    {{-1, -1}, {0, -1}, {0, 1}, {-1, 1}, {0, -1}, {1, -1}, {1, 1}, {0, 1}}};

class GLVertexBufferGLTest : public ContextTest
{
protected:
    std::unique_ptr<GLVertexBuffer> makeBuffer(
        const VertexDescriptor& layout, unsigned int numElements, int type = GLVertexBuffer::TYPE_DEFAULT)
    {
        auto buffer = std::make_unique<GLVertexBuffer>(context(), layout, type);
        EXPECT_TRUE(buffer->init(numElements, GL_STATIC_DRAW_ARB));
        return buffer;
    }

    // The GL name, found by binding.
    static std::string nameOf(GLVertexBuffer& buffer)
    {
        int name = 0;
        buffer.GLBuffer::bind();
        glGetIntegerv(GL_ARRAY_BUFFER_BINDING_ARB, &name);
        buffer.GLBuffer::unbind();
        return std::to_string(name);
    }

    static std::vector<std::string> bindingCalls(GLVertexBuffer& buffer, bool mappingFlag)
    {
        buffer.setMappingFlag(mappingFlag);
        std::vector<std::string> calls = callsOf([&] { buffer.bind(); });
        EXPECT_EQ(calls.front(), "glBindBufferARB(GL_ARRAY_BUFFER_ARB, " + nameOf(buffer) + ")");
        calls.erase(calls.begin());
        buffer.unbind();
        return calls;
    }

    // What the buffer's quads draw on black.
    Picture drawQuads(GLVertexBuffer& buffer)
    {
        glClear(GL_COLOR_BUFFER_BIT);
        buffer.bind();
        buffer.drawArrays(GL_QUADS, 0, 0);
        buffer.unbind();
        return readPixels();
    }
};

TEST_F(GLVertexBufferGLTest, KnowsItsLayoutAndIsOtherwiseEmpty)
{
    const VertexDescriptor layout = makeLayout({{"position", 3, FLOAT}});
    GLVertexBuffer buffer(context(), layout, GLVertexBuffer::TYPE_DEFAULT);
    EXPECT_EQ(*buffer.getVertexDescriptor(), layout);
    EXPECT_NE(buffer.getVertexDescriptor(), &layout);
    EXPECT_EQ(buffer.getNumElements(), 0u);
    EXPECT_EQ(buffer.getSizeInBytes(), 0u);
    EXPECT_FALSE(buffer.getMappingFlag());
    buffer.setMappingFlag(true);
    EXPECT_TRUE(buffer.getMappingFlag());
}

TEST_F(GLVertexBufferGLTest, NamesItsConstants)
{
    EXPECT_EQ(GLVertexBuffer::MAP_POSITION, 0);
    EXPECT_EQ(GLVertexBuffer::MAP_COLOR, 1);
    EXPECT_EQ(GLVertexBuffer::MAP_NORMAL, 2);
    EXPECT_EQ(GLVertexBuffer::MAP_TEXCOORD0, 3);
    EXPECT_EQ(GLVertexBuffer::TYPE_DEFAULT, 0);
    EXPECT_EQ(GLVertexBuffer::TYPE_RENDERED32, 1);
}

TEST_F(GLVertexBufferGLTest, MakesStorageForItsVertices)
{
    GLVertexBuffer buffer(context(), makeLayout({{"position", 3, FLOAT}, {"color", 4, BYTE}}), 0);
    CallRecorder recorder;
    EXPECT_TRUE(buffer.init(10, GL_DYNAMIC_DRAW_ARB));
    const std::vector<std::string> calls = recorder.calls();
    ASSERT_EQ(calls.size(), 4u);
    EXPECT_EQ(calls[1], "glBufferDataARB(GL_ARRAY_BUFFER_ARB, 160, null, GL_DYNAMIC_DRAW_ARB)");
    EXPECT_EQ(buffer.getSizeInBytes(), 160u);
    EXPECT_EQ(buffer.getNumElements(), 10u);
}

TEST_F(GLVertexBufferGLTest, MakesStorageForRenderedVerticesThroughThePixelTarget)
{
    GLVertexBuffer buffer(context(), makeLayout({{"position", 4, FLOAT}}), GLVertexBuffer::TYPE_RENDERED32);
    const std::string name = nameOf(buffer);
    CallRecorder recorder;
    EXPECT_TRUE(buffer.init(10, GL_STATIC_COPY_ARB));
    expectCalls(recorder, {"glBindBufferARB(GL_PIXEL_PACK_BUFFER_ARB, " + name + ")",
                              "glBufferDataARB(GL_PIXEL_PACK_BUFFER_ARB, 160, null, GL_STATIC_COPY_ARB)",
                              "glGetError()", "glBindBufferARB(GL_PIXEL_PACK_BUFFER_ARB, 0)"});
    EXPECT_EQ(buffer.getSizeInBytes(), 160u);
    EXPECT_EQ(buffer.getNumElements(), 10u);
}

TEST_F(GLVertexBufferGLTest, KeepsTheNewSizeIfStorageIsRefused)
{
    GLVertexBuffer buffer(context(), makeLayout({{"position", 4, FLOAT}}), GLVertexBuffer::TYPE_DEFAULT);
    EXPECT_FALSE(buffer.init(10, GL_RGBA));
    EXPECT_EQ(buffer.getSizeInBytes(), 160u);
    EXPECT_EQ(buffer.getNumElements(), 10u);
}

TEST_F(GLVertexBufferGLTest, KeepsTheOldSizeIfRenderedStorageIsRefused)
{
    const auto buffer = makeBuffer(makeLayout({{"position", 4, FLOAT}}), 3, GLVertexBuffer::TYPE_RENDERED32);
    CallRecorder recorder;
    EXPECT_FALSE(buffer->init(10, GL_RGBA));
    EXPECT_EQ(recorder.calls().back(), "glGetError()") << "it stays bound";
    EXPECT_EQ(buffer->getSizeInBytes(), 48u);
    EXPECT_EQ(buffer->getNumElements(), 10u);
    glBindBufferARB(GL_PIXEL_PACK_BUFFER_ARB, 0);
}

TEST_F(GLVertexBufferGLTest, RefusesMoreBytesThan32BitsCount)
{
    for (const int type : {GLVertexBuffer::TYPE_DEFAULT, GLVertexBuffer::TYPE_RENDERED32}) {
        GLVertexBuffer buffer(context(), makeLayout({{"position", 4, FLOAT}}), type);
        EXPECT_THAT(callsOf([&] { EXPECT_FALSE(buffer.init(0x10000001, GL_STATIC_DRAW_ARB)); }), IsEmpty());
        EXPECT_EQ(buffer.getSizeInBytes(), 0u);
        EXPECT_EQ(buffer.getNumElements(), 0x10000001u);
    }
}

TEST_F(GLVertexBufferGLTest, PrintsNothingIfStorageIsRefused)
{
    for (const int type : {GLVertexBuffer::TYPE_DEFAULT, GLVertexBuffer::TYPE_RENDERED32}) {
        GLVertexBuffer buffer(context(), makeLayout({{"position", 4, FLOAT}}), type);
        const std::string before = debugOutput.getText();
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const bool ofDriver = buffer.init(10, GL_RGBA);
        const bool ofSize = buffer.init(0x10000001, GL_STATIC_DRAW_ARB);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        EXPECT_EQ(debugOutput.getText(), before);
        EXPECT_FALSE(ofDriver);
        EXPECT_FALSE(ofSize);
        glBindBufferARB(GL_PIXEL_PACK_BUFFER_ARB, 0);
    }
}

TEST_F(GLVertexBufferGLTest, BindsGenericAttributesByIndex)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    const auto buffer =
        makeBuffer(makeLayout({{"anything", 2, FLOAT}, {"color", 4, BYTE}, {"index", 1, INT}, {"other", 3, 7}}), 1);
    EXPECT_THAT(bindingCalls(*buffer, false),
        ElementsAre("glEnableVertexAttribArrayARB(0)", "glVertexAttribPointerARB(0, 2, GL_FLOAT, GL_FALSE, 28, null)",
            "glEnableVertexAttribArrayARB(1)", "glVertexAttribPointerARB(1, 4, GL_UNSIGNED_BYTE, GL_FALSE, 28, 8)",
            "glEnableVertexAttribArrayARB(2)", "glVertexAttribPointerARB(2, 1, GL_INT, GL_FALSE, 28, 12)",
            "glEnableVertexAttribArrayARB(3)", "glVertexAttribPointerARB(3, 3, GL_FLOAT, GL_FALSE, 28, 16)"));
}

TEST_F(GLVertexBufferGLTest, BindsFixedFunctionArraysByName)
{
    const auto buffer = makeBuffer(makeLayout({{"texcoord", 2, INT}, {"weight", 1, FLOAT}, {"color", 4, BYTE},
                                       {"normal", 3, FLOAT}, {"position", 3, FLOAT}}),
        1);
    EXPECT_THAT(bindingCalls(*buffer, true),
        ElementsAre("glEnableClientState(GL_TEXTURE_COORD_ARRAY)", "glTexCoordPointer(2, GL_INT, 40, null)",
            "glEnableClientState(GL_COLOR_ARRAY)", "glColorPointer(4, GL_UNSIGNED_BYTE, 40, 12)",
            "glEnableClientState(GL_NORMAL_ARRAY)", "glNormalPointer(GL_FLOAT, 40, 16)",
            "glEnableClientState(GL_VERTEX_ARRAY)", "glVertexPointer(3, GL_FLOAT, 40, 28)"));
}

TEST_F(GLVertexBufferGLTest, LeavesOutNormalsThatAreNotOfThreeComponents)
{
    for (const unsigned int components : {1u, 2u, 4u}) {
        const auto buffer = makeBuffer(makeLayout({{"normal", components, FLOAT}}), 1);
        EXPECT_THAT(bindingCalls(*buffer, true), IsEmpty()) << components;
        buffer->bind();
        EXPECT_THAT(callsOf([&] { buffer->unbind(); }), ElementsAre("glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0)"));
    }
}

TEST_F(GLVertexBufferGLTest, UnbindsWhatItBound)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    const auto buffer = makeBuffer(makeLayout({{"position", 3, FLOAT}, {"weight", 1, FLOAT}, {"normal", 3, FLOAT},
                                       {"color", 4, BYTE}, {"texcoord", 2, FLOAT}}),
        1);
    EXPECT_THAT(callsOf([&] { buffer->unbind(); }),
        ElementsAre("glDisableVertexAttribArrayARB(0)", "glDisableVertexAttribArrayARB(1)",
            "glDisableVertexAttribArrayARB(2)", "glDisableVertexAttribArrayARB(3)", "glDisableVertexAttribArrayARB(4)",
            "glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0)"));
    buffer->setMappingFlag(true);
    EXPECT_THAT(callsOf([&] { buffer->unbind(); }),
        ElementsAre("glDisableClientState(GL_VERTEX_ARRAY)", "glDisableClientState(GL_NORMAL_ARRAY)",
            "glDisableClientState(GL_COLOR_ARRAY)", "glDisableClientState(GL_TEXTURE_COORD_ARRAY)",
            "glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0)"));
}

TEST_F(GLVertexBufferGLTest, DrawsARangeOrAllOfItsVertices)
{
    const auto buffer = makeBuffer(makeLayout({{"position", 3, FLOAT}}), 12);
    EXPECT_THAT(callsOf([&] { buffer->drawArrays(GL_LINES, 4, 2); }), ElementsAre("glDrawArrays(GL_LINES, 4, 2)"));
    EXPECT_THAT(callsOf([&] { buffer->drawArrays(GL_POINTS, 0, 0); }), ElementsAre("glDrawArrays(GL_POINTS, 0, 12)"));
}

TEST_F(GLVertexBufferGLTest, WritesAndReadsWholeVertices)
{
    const auto buffer = makeBuffer(makeLayout({{"color", 3, BYTE}}), 3);
    std::array<unsigned char, 6> colours{1, 2, 3, 4, 5, 6};
    EXPECT_THAT(callsOf([&] { buffer->writeToBuffer(colours.data(), 1, 2); }),
        Contains("glBufferSubDataARB(GL_ARRAY_BUFFER_ARB, 3, 6, ptr)"));
    std::vector<unsigned char> read;
    buffer->readFromBuffer(read, 2, 1);
    EXPECT_THAT(read, ElementsAre(4, 5, 6));
    EXPECT_THAT([&] { buffer->writeToBuffer(colours.data(), 2, 2); },
        ThrowsMessage<PException>("GLBuffer::writeToBuffer | out of range!"));
    EXPECT_THAT([&] { buffer->readFromBuffer(read, 3, 1); },
        ThrowsMessage<PException>("GLBuffer::readFromBuffer | out of range!"));
}

TEST_F(GLVertexBufferGLTest, WritesAndReadsVerticesBeyond2GiB)
{
    constexpr int first = 0x08000000; // of 16 bytes each
    GLVertexBuffer buffer(context(), makeLayout({{"color", 16, BYTE}}), GLVertexBuffer::TYPE_DEFAULT);
    if (!buffer.init(first + 2, GL_STATIC_DRAW_ARB))
        GTEST_SKIP() << "the driver has no memory for a buffer of that size";
    std::vector<unsigned char> written(32);
    std::iota(written.begin(), written.end(), static_cast<unsigned char>(1));
    buffer.writeToBuffer(written.data(), first, 2);
    std::vector<unsigned char> read;
    buffer.readFromBuffer(read, first, 2);
    EXPECT_EQ(read, written);
}

TEST_F(GLVertexBufferGLTest, RefusesRangesThat32BitsDoNotCount)
{
    const auto buffer = makeBuffer(makeLayout({{"position", 4, FLOAT}}), 3);
    std::vector<unsigned char> read(7);
    constexpr unsigned int wraps = 0x10000000; // 16 times that is nothing in 32 bits
    EXPECT_THAT(callsOf([&] {
        EXPECT_THROW(buffer->writeToBuffer(read.data(), 0, wraps), PException);
        EXPECT_THROW(buffer->writeToBuffer(read.data(), wraps, 1), PException);
        EXPECT_THROW(buffer->readFromBuffer(read, 0, wraps), PException);
        EXPECT_THROW(buffer->readFromBuffer(read, wraps, 1), PException);
    }),
        IsEmpty());
    EXPECT_THAT(read, testing::SizeIs(7));
}

TEST_F(GLVertexBufferGLTest, SharesItsNameWithItsCopies)
{
    const auto buffer = makeBuffer(makeLayout({{"position", 3, FLOAT}}), 3, GLVertexBuffer::TYPE_RENDERED32);
    buffer->setMappingFlag(true);
    GLVertexBuffer copy(*buffer);
    EXPECT_EQ(nameOf(copy), nameOf(*buffer));
    EXPECT_EQ(*copy.getVertexDescriptor(), *buffer->getVertexDescriptor());
    EXPECT_EQ(copy.getNumElements(), 3u);
    EXPECT_TRUE(copy.getMappingFlag());
    EXPECT_EQ(callsOf([&] { copy.init(3, GL_STATIC_DRAW_ARB); }), callsOf([&] { buffer->init(3, GL_STATIC_DRAW_ARB); }))
        << "it is of the same type";
    destroyContext();
    copy = *buffer; // which has lost its context, so that the copy owns nothing either
    EXPECT_FALSE(copy.isValid());
}

TEST_F(GLVertexBufferGLTest, DoesNotAskForItsContextWhereItSaysSo)
{
    const auto buffer = makeBuffer(makeLayout({{"position", 3, FLOAT}}), 3, GLVertexBuffer::TYPE_RENDERED32);
    destroyContext();
    buffer->init(3, GL_STATIC_DRAW_ARB);
    buffer->copyFromRenderTarget(0, 0, 1, 1, GL_BACK);
    buffer->drawArrays(GL_POINTS, 0, 0);
    glBindBufferARB(GL_PIXEL_PACK_BUFFER_ARB, 0);
    drainErrors(); // the name is gone
}

TEST_F(GLVertexBufferGLTest, RefusesToBindWithoutAContext)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    const auto buffer = makeBuffer(makeLayout({{"position", 3, FLOAT}}), 3);
    destroyContext();
    EXPECT_THAT(callsOf([&] {
        EXPECT_THAT([&] { buffer->bind(); }, ThrowsMessage<PException>("GLBuffer::bind() - invalid context"));
    }),
        IsEmpty());
    for (const bool mappingFlag : {false, true}) {
        buffer->setMappingFlag(mappingFlag);
        const auto unbind = [&] {
            EXPECT_THAT([&] { buffer->unbind(); }, ThrowsMessage<PException>("GLBuffer::unbind() - invalid context"));
        };
        EXPECT_THAT(callsOf(unbind),
            ElementsAre(mappingFlag ? "glDisableClientState(GL_VERTEX_ARRAY)" : "glDisableVertexAttribArrayARB(0)"))
            << "after the arrays were disabled";
    }
    EXPECT_THAT(
        [&] { buffer->init(3, GL_STATIC_DRAW_ARB); }, ThrowsMessage<PException>("GLBuffer::init() - invalid context"));
}

// What the fixed function draws from interleaved floats, bytes and ints.
TEST_F(GLVertexBufferGLTest, DrawsInterleavedTypesThroughTheFixedFunction)
{
    struct Vertex
    {
        std::array<unsigned char, 4> colour;
        std::array<int, 2> position;
        std::array<float, 3> unused;
    };
    constexpr std::array<unsigned char, 4> red{200, 10, 0, 255};
    constexpr std::array<unsigned char, 4> green{0, 200, 20, 255};
    std::array<Vertex, 8> vertices{};
    for (std::size_t i = 0; i < vertices.size(); ++i)
        vertices[i] = {i < 4 ? red : green, {static_cast<int>(SQUARES[i][0]), static_cast<int>(SQUARES[i][1])}, {}};

    const auto buffer = makeBuffer(makeLayout({{"color", 4, BYTE}, {"position", 2, INT}, {"weights", 3, FLOAT}}), 8);
    buffer->writeToBuffer(vertices.data(), 0, 8);
    buffer->setMappingFlag(true);
    EXPECT_EQ(drawQuads(*buffer), halves({200, 10, 0, 255}, {0, 200, 20, 255}));
}

TEST_F(GLVertexBufferGLTest, LightsByItsNormalsAndTexturesByItsCoordinates)
{
    struct Vertex
    {
        std::array<float, 2> texcoord;
        std::array<float, 3> normal;
        std::array<float, 2> position;
    };
    std::array<Vertex, 8> vertices{};
    for (std::size_t i = 0; i < vertices.size(); ++i)
        vertices[i] = {{i < 4 ? 0.25f : 0.75f, 0.5f}, {0, 0, i < 4 ? 1.0f : -1.0f}, SQUARES[i]};
    const auto buffer =
        makeBuffer(makeLayout({{"texcoord", 2, FLOAT}, {"normal", 3, FLOAT}, {"position", 2, FLOAT}}), 8);
    buffer->writeToBuffer(vertices.data(), 0, 8);
    buffer->setMappingFlag(true);

    const std::array<unsigned char, 8> texels{255, 0, 0, 255, 0, 255, 0, 255};
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glEnable(GL_TEXTURE_2D);
    EXPECT_EQ(drawQuads(*buffer), halves({255, 0, 0, 255}, {0, 255, 0, 255}));
    glDisable(GL_TEXTURE_2D);

    constexpr std::array<float, 4> none{0, 0, 0, 1};
    constexpr std::array<float, 4> blue{0, 0, 1, 1};
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, none.data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, blue.data());
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0); // from positive Z
    EXPECT_EQ(drawQuads(*buffer), halves({0, 0, 255, 255}, {0, 0, 0, 255}));
}

TEST_F(GLVertexBufferGLTest, FeedsAVertexProgramByIndex)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    struct Vertex
    {
        std::array<float, 2> position;
        std::array<unsigned char, 4> colour;
    };
    std::array<Vertex, 8> vertices{};
    for (std::size_t i = 0; i < vertices.size(); ++i)
        vertices[i] = {
            SQUARES[i], i < 4 ? std::array<unsigned char, 4>{1, 0, 0, 1} : std::array<unsigned char, 4>{0, 0, 1, 1}};
    const auto buffer = makeBuffer(makeLayout({{"a", 2, FLOAT}, {"b", 4, BYTE}}), 8);
    buffer->writeToBuffer(vertices.data(), 0, 8);

    useVertexProgram(PROGRAM_OF_ATTRIBUTES);
    EXPECT_EQ(drawQuads(*buffer), halves({255, 0, 0, 255}, {0, 0, 255, 255}))
        << "bytes are not normalised: 1 is full intensity";
}

TEST_F(GLVertexBufferGLTest, ReadsRenderedVerticesInPixelsOfItsAttributes)
{
    const auto buffer =
        makeBuffer(makeLayout({{"position", 4, FLOAT}, {"color", 4, FLOAT}}), 4, GLVertexBuffer::TYPE_RENDERED32);
    const std::string name = nameOf(*buffer);
    CallRecorder recorder;
    buffer->copyFromRenderTarget(3, 5, 2, 1, GL_BACK);
    expectCalls(recorder,
        {"glBindBufferARB(GL_PIXEL_PACK_BUFFER_ARB, " + name + ")", "glReadBuffer(GL_BACK)",
            "glReadPixels(6, 5, 4, 1, GL_RGBA, GL_FLOAT, null)", "glBindBufferARB(GL_PIXEL_PACK_BUFFER_ARB, 0)"});
    // A pbuffer without a second buffer has no such read buffer.
    drainErrors();
}

// A framebuffer of floats, 32 pixels wide and 8 high, bound while it lives.
class FloatTarget
{
public:
    FloatTarget()
    {
        glGenTextures(1, &m_Texture);
        glBindTexture(GL_TEXTURE_RECTANGLE_ARB, m_Texture);
        glTexImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, GL_RGBA32F_ARB, 32, 8, 0, GL_RGBA, GL_FLOAT, nullptr);
        glGenFramebuffersEXT(1, &m_Framebuffer);
        glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, m_Framebuffer);
        glFramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT, GL_TEXTURE_RECTANGLE_ARB, m_Texture, 0);
        EXPECT_EQ(glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT), GL_FRAMEBUFFER_COMPLETE_EXT);
    }

    ~FloatTarget()
    {
        glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
        glDeleteFramebuffersEXT(1, &m_Framebuffer);
        glDeleteTextures(1, &m_Texture);
    }

    FloatTarget(const FloatTarget&) = delete;
    FloatTarget& operator=(const FloatTarget&) = delete;

    // One pixel.
    static void render(int x, int y, const std::array<float, 4>& value)
    {
        glEnable(GL_SCISSOR_TEST);
        glScissor(x, y, 1, 1);
        glClearColor(value[0], value[1], value[2], value[3]);
        glClear(GL_COLOR_BUFFER_BIT);
        glDisable(GL_SCISSOR_TEST);
    }

private:
    unsigned int m_Texture = 0;
    unsigned int m_Framebuffer = 0;
};

TEST_F(GLVertexBufferGLTest, DrawsVerticesThatWereRenderedAsFloats)
{
    NEEDS_EXTENSION("GL_ARB_texture_float");
    const auto buffer =
        makeBuffer(makeLayout({{"position", 4, FLOAT}, {"color", 4, FLOAT}}), 8, GLVertexBuffer::TYPE_RENDERED32);
    constexpr int left = 2; // in vertices
    constexpr int bottom = 3;
    {
        const FloatTarget target;
        // Two rows of four vertices, each a pixel of its position beside a pixel of its colour.
        for (int i = 0; i < 8; ++i) {
            const int x = 2 * (left + i % 4);
            const int y = bottom + i / 4;
            FloatTarget::render(x, y, {2 * SQUARES[i][0], 2 * SQUARES[i][1], 0, 2});
            FloatTarget::render(x + 1, y, {i < 4 ? 1.0f : 0.0f, 0, i < 4 ? 0.0f : 1.0f, 1});
        }
        buffer->copyFromRenderTarget(left, bottom, 4, 2, GL_COLOR_ATTACHMENT0_EXT);
    }
    glClearColor(0, 0, 0, 0);
    buffer->setMappingFlag(true);
    EXPECT_EQ(drawQuads(*buffer), halves({255, 0, 0, 255}, {0, 0, 255, 255}));

    std::vector<unsigned char> bytes;
    buffer->readFromBuffer(bytes, 7, 1);
    std::array<float, 8> last{};
    ASSERT_EQ(bytes.size(), sizeof last);
    std::memcpy(last.data(), bytes.data(), sizeof last);
    EXPECT_THAT(last, ElementsAre(0, 2, 0, 2, 0, 0, 1, 1)) << "exactly, beyond 0 to 1 too";
}

} // namespace
} // namespace tavo
