#include <array>
#include <vector>

#include "tests/support/Picture.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/textures/TextureTest.h"
#include "vireo/geometry/GLTemplatedIndexBuffer.h"
#include "vireo/geometry/GLVertexBuffer.h"
#include "vireo/textures/GLTexture2D.h"

// The library as a DLL, on a window of Windows' own with a context of its WGL: from the context to pixels.

namespace tavo {
namespace {

using vireo_test::Picture;
using vireo_test::Pixel;

class WindowGLTest : public TextureTest
{
protected:
    static Picture lowerLeftQuarter(Pixel colour)
    {
        Picture picture(64, 64);
        for (unsigned int y = 0; y < 32; ++y) {
            for (unsigned int x = 0; x < 32; ++x)
                picture.at(x, y) = colour;
        }
        return picture;
    }
};

TEST_F(WindowGLTest, IsDrawnToByAContextOfWGL)
{
    EXPECT_EQ(wglGetCurrentContext(), context()->getRC());
    EXPECT_EQ(wglGetCurrentDC(), context()->getDC());
    EXPECT_TRUE(context()->isGlobalActive());
    context()->deactivate();
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_TRUE(context()->activate());
    EXPECT_EQ(wglGetCurrentContext(), context()->getRC());
}

TEST_F(WindowGLTest, HasTheEntryPointsOfItsDriver)
{
    EXPECT_NE(tavo::glBindBufferARB, nullptr);
    EXPECT_NE(tavo::glProgramStringARB, nullptr);
    EXPECT_NE(tavo::glGenFramebuffersEXT, nullptr);
    ASSERT_NE(tavo::wglGetExtensionsStringARB, nullptr);
    const std::string extensions = tavo::wglGetExtensionsStringARB(getDC());
    EXPECT_NE(extensions.find("WGL_ARB_pixel_format"), std::string::npos) << extensions;
}

TEST_F(WindowGLTest, SharesNamesAmongContexts)
{
    const auto other = makeSharedContext();
    GLTexture2D texture(context());
    texture.bind(0);
    const auto name = static_cast<GLuint>(getInteger(GL_TEXTURE_BINDING_2D));
    other->makeCurrent();
    EXPECT_TRUE(glIsTexture(name));
    mainContext().makeCurrent();
}

TEST_F(WindowGLTest, ShowsATexture)
{
    // Texels as large as the pixels that they are drawn to, each of another colour.
    std::vector<char> texels(std::size_t{64} * 64 * 4);
    for (std::size_t i = 0; i < texels.size(); ++i)
        texels[i] = static_cast<char>((i * 31) % 251);
    GLTexture2D texture(context());
    texture.createFromMemory(64, 64, 4, texels.data(), false);
    texture.bind(0);
    EXPECT_EQ(draw(GL_TEXTURE_2D, 64, 64, plane(1, 1)),
        pictureOf(reinterpret_cast<const unsigned char*>(texels.data()), 64, 64, 4));
}

TEST_F(WindowGLTest, ShowsVertices)
{
    struct Vertex
    {
        std::array<float, 2> position;
        Pixel colour;
    };
    constexpr Pixel GREEN{0, 255, 0, 255};
    std::array<Vertex, 4> corners{{{{-1, -1}, GREEN}, {{0, -1}, GREEN}, {{0, 0}, GREEN}, {{-1, 0}, GREEN}}};
    GLVertexBuffer vertices(
        context(), makeLayout({{"position", 2, FLOAT}, {"color", 4, BYTE}}), GLVertexBuffer::TYPE_DEFAULT);
    ASSERT_TRUE(vertices.init(4, GL_STATIC_DRAW_ARB));
    vertices.writeToBuffer(corners.data(), 0, 4);
    vertices.setMappingFlag(true);

    glClear(GL_COLOR_BUFFER_BIT);
    vertices.bind();
    vertices.drawArrays(GL_QUADS, 0, 0);
    vertices.unbind();
    EXPECT_EQ(readPixels(), lowerLeftQuarter(GREEN));
}

template <typename Index>
class WindowIndicesGLTest : public WindowGLTest
{};

using IndexTypes = testing::Types<unsigned short, unsigned int>;
TYPED_TEST_SUITE(WindowIndicesGLTest, IndexTypes);

TYPED_TEST(WindowIndicesGLTest, ShowsTheVerticesOfIndices)
{
    // With a vertex in front that no index names.
    std::array<std::array<float, 2>, 5> positions{{{9, 9}, {-1, -1}, {0, -1}, {-1, 0}, {0, 0}}};
    GLVertexBuffer vertices(this->context(), makeLayout({{"position", 2, FLOAT}}), GLVertexBuffer::TYPE_DEFAULT);
    ASSERT_TRUE(vertices.init(5, GL_STATIC_DRAW_ARB));
    vertices.writeToBuffer(positions.data(), 0, 5);
    vertices.setMappingFlag(true);
    constexpr std::array<TypeParam, 6> triangles{1, 2, 3, 3, 2, 4};
    GLTemplatedIndexBuffer<TypeParam> indices(this->context());
    ASSERT_TRUE(indices.init(6, GL_STATIC_DRAW_ARB));
    indices.writeToBuffer(triangles.data(), 0, 6);
    EXPECT_EQ(indices.getNumIndices(), 6u);

    glClear(GL_COLOR_BUFFER_BIT);
    vertices.bind();
    indices.bind();
    indices.drawElements(GL_TRIANGLES, 0, 0);
    indices.unbind();
    vertices.unbind();
    EXPECT_EQ(this->readPixels(), this->lowerLeftQuarter({255, 255, 255, 255}));
}

} // namespace
} // namespace tavo
