#include <gmock/gmock.h>
#include <map>
#include <vector>

#include "tests/vireo/ContextTest.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/offscreen/GLImage.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"
#include "vireo/show/TextureImage.h"
#include "vireo/show/delivery/Inbox.h"
#include "vireo/show/images/ImageUpdate.h"
#include "vireo/textures/GLTexture2D.h"
#include "vireo/textures/GLTextureCube.h"
#include "vireo/textures/GLTextureRect.h"

#include <GL/gl.h>
#include <GL/glext.h>

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::unique_ptr<ImageUpdate> takeImage()
{
    std::unique_ptr<ImageUpdate> image;
    for (Batch::Part& part : inbox::take())
        image.reset(static_cast<ImageUpdate*>(part.pending.update.release()));
    return image;
}

// From the lowest row.
std::vector<double> takeNumbers()
{
    std::vector<double> numbers;
    const auto sent = takeImage();
    if (!sent || !sent->pixels)
        return numbers;
    EXPECT_EQ(sent->isBottomUp, true);
    for (std::size_t i = 0; i < sent->pixels->numbers.size(); ++i)
        numbers.push_back(sent->pixels->numbers[i]);
    return numbers;
}

// What OpenGL says of every parameter there is, of which those that it does not know are left out, and their errors.
std::map<unsigned int, std::vector<double>> allState()
{
    constexpr unsigned int FIRST = 0x0B00;
    constexpr unsigned int LAST = 0x9200;
    constexpr std::size_t LARGEST = 64;
    std::map<unsigned int, std::vector<double>> state;
    for (unsigned int parameter = FIRST; parameter < LAST; ++parameter) {
        std::vector<double> values(LARGEST, -12345);
        glGetDoublev(parameter, values.data());
        if (glGetError() == GL_NO_ERROR && parameter != GL_TIMESTAMP) // which is the time
            state[parameter] = values;
    }
    return state;
}

class TextureImageGLTest : public ContextTest
{
protected:
    // Whatever a program may have set that would spoil the reading.
    void disturb()
    {
        glPixelStorei(GL_PACK_ALIGNMENT, 8);
        glPixelStorei(GL_PACK_ROW_LENGTH, 100);
        glPixelStorei(GL_PACK_SKIP_PIXELS, 3);
        glPixelStorei(GL_PACK_SWAP_BYTES, 1);
        glPixelTransferf(GL_RED_SCALE, 0.5F);
        glPixelTransferf(GL_GREEN_BIAS, 0.25F);
        glPixelTransferf(GL_DEPTH_SCALE, 0.5F);
        glActiveTextureARB(GL_TEXTURE2_ARB);
        glGenBuffersARB(1, &m_Buffer);
        glBindBufferARB(GL_PIXEL_PACK_BUFFER_ARB, m_Buffer);
        glBufferDataARB(GL_PIXEL_PACK_BUFFER_ARB, 1000, nullptr, GL_STREAM_READ_ARB);
    }

    void TearDown() override
    {
        glBindBufferARB(GL_PIXEL_PACK_BUFFER_ARB, 0);
        if (m_Buffer != 0)
            glDeleteBuffersARB(1, &m_Buffer);
        glPixelStorei(GL_PACK_ALIGNMENT, 4);
        glPixelStorei(GL_PACK_ROW_LENGTH, 0);
        glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
        glPixelStorei(GL_PACK_SWAP_BYTES, 0);
        ContextTest::TearDown();
    }

private:
    unsigned int m_Buffer = 0;
};

TEST_F(TextureImageGLTest, TexelsOfEveryTargetAreRead)
{
    char texels[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    GLTexture2D flat(context());
    flat.createFromMemory(2, 2, 4, texels, false);
    GLTextureRect rectangle(context());
    rectangle.createFromMemory(4, 1, 1, texels);
    disturb();
    image("flat", flat);
    EXPECT_THAT(takeNumbers(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16));
    image("rectangle", rectangle);
    EXPECT_THAT(takeNumbers(), ElementsAre(1, 2, 3, 4));
}

TEST_F(TextureImageGLTest, ALayerOfAVolumeAndALevelOfAPyramidAreRead)
{
    char texels[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    unsigned int name = 0;
    glGenTextures(1, &name);
    struct Volume : GLTexture
    {
        Volume(GLContext* context)
            : GLTexture(context)
        {
            m_TextureTarget = GL_TEXTURE_3D;
        }
    } volume(context());
    volume.bind(0);
    glTexImage3DEXT(GL_TEXTURE_3D, 0, GL_LUMINANCE, 4, 1, 4, 0, GL_LUMINANCE, GL_UNSIGNED_BYTE, texels);
    glTexImage3DEXT(GL_TEXTURE_3D, 1, GL_LUMINANCE, 2, 1, 2, 0, GL_LUMINANCE, GL_UNSIGNED_BYTE, texels);
    disturb();
    image("volume", volume, 0, 2);
    EXPECT_THAT(takeNumbers(), ElementsAre(9, 10, 11, 12));
    image("volume", volume, 1, 0);
    EXPECT_THAT(takeNumbers(), ElementsAre(1, 2));
    testing::internal::CaptureStderr();
    image("volume", volume, 0, 4);
    image("volume", volume, 2, 0);
    image("volume", volume, -1, 0);
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_THAT(said, HasSubstr("level 0 of the texture has no layer 4; what was shown stays"));
    EXPECT_THAT(said, HasSubstr("level 2 of the texture has no layer 0"));
    EXPECT_THAT(said, HasSubstr("there is no level -1 and layer 0"));
    EXPECT_FALSE(takeImage());
    glDeleteTextures(1, &name);
}

TEST_F(TextureImageGLTest, FacesOfACubeAreRead)
{
    GLTextureCube cube(context());
    cube.create(1, 4);
    unsigned char texel[] = {10, 20, 30, 40};
    cube.bind(0);
    glTexImage2D(GL_TEXTURE_CUBE_MAP_NEGATIVE_Y, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, texel);
    disturb();
    image("cube", cube, 0, 3);
    EXPECT_THAT(takeNumbers(), ElementsAre(10, 20, 30, 40));
}

// The numbers of every image of a stack.
std::vector<std::vector<double>> takeStack()
{
    std::vector<std::vector<double>> stack;
    const auto sent = takeImage();
    if (!sent || !sent->pixels)
        return stack;
    const auto add = [&stack](const ImagePixels& pixels) {
        stack.emplace_back();
        for (std::size_t i = 0; i < pixels.numbers.size(); ++i)
            stack.back().push_back(pixels.numbers[i]);
    };
    add(*sent->pixels);
    for (const auto& [layer, pixels] : sent->layers)
        add(pixels);
    return stack;
}

TEST_F(TextureImageGLTest, LevelsAreAStack)
{
    const unsigned char texels[] = {1, 2, 3, 4, 5, 6, 7, 8};
    GLTexture2D flat(context());
    flat.bind(0);
    for (int level = 0; level < 3; ++level)
        glTexImage2D(GL_TEXTURE_2D, level, GL_LUMINANCE, 4 >> level, level == 0 ? 2 : 1, 0, GL_LUMINANCE,
            GL_UNSIGNED_BYTE, texels);
    disturb();
    imageStackOfLevels("levels", flat);
    EXPECT_THAT(takeStack(), ElementsAre(ElementsAre(1, 2, 3, 4, 5, 6, 7, 8), ElementsAre(1, 2), ElementsAre(1)));
    imageStackOfLevels("levels", flat);
    EXPECT_THAT(*takeImage()->layerNames, ElementsAre("level 0", "level 1", "level 2"));
    imageStackOfLayers("layers", flat, 1);
    EXPECT_THAT(takeStack(), ElementsAre(ElementsAre(1, 2))) << "it has no others";
    testing::internal::CaptureStderr();
    imageStackOfLevels("levels", flat, 1);
    imageStackOfLayers("layers", flat, 3);
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_THAT(said, HasSubstr("level 0 of the texture has no layer 1; what was shown stays"));
    EXPECT_THAT(said, HasSubstr("level 3 of the texture has no layer 0; what was shown stays"));
    EXPECT_FALSE(takeImage());
}

TEST_F(TextureImageGLTest, FacesAndSlicesAreAStack)
{
    GLTextureCube cube(context());
    cube.create(1, 4);
    cube.bind(0);
    for (unsigned char face = 0; face < 6; ++face) {
        const unsigned char texel[] = {face, 0, 0, 0};
        glTexImage2D(GL_TEXTURE_CUBE_MAP_POSITIVE_X + face, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, texel);
    }
    imageStackOfLayers("cube", cube);
    const auto faces = takeStack();
    ASSERT_EQ(faces.size(), 6U);
    for (std::size_t face = 0; face < 6; ++face)
        EXPECT_THAT(faces[face], ElementsAre(double(face), 0, 0, 0));
    const unsigned char texels[] = {1, 2, 3, 4};
    struct Volume : GLTexture
    {
        Volume(GLContext* context)
            : GLTexture(context)
        {
            m_TextureTarget = GL_TEXTURE_3D;
        }
    } volume(context());
    unsigned int name = 0;
    glGenTextures(1, &name);
    volume.bind(0);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage3DEXT(GL_TEXTURE_3D, 0, GL_LUMINANCE, 1, 2, 2, 0, GL_LUMINANCE, GL_UNSIGNED_BYTE, texels);
    disturb();
    imageStackOfLayers("volume", volume);
    EXPECT_THAT(takeStack(), ElementsAre(ElementsAre(1, 2), ElementsAre(3, 4)));
    glDeleteTextures(1, &name);
}

TEST_F(TextureImageGLTest, FloatsKeepTheirPrecision)
{
    const float texels[] = {0.1F, -5, 1e10F, 0.5F};
    GLTextureRect floats(context());
    floats.bind(0);
    glTexImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, GL_LUMINANCE32F_ARB, 4, 1, 0, GL_LUMINANCE, GL_FLOAT, texels);
    disturb();
    image("floats", floats);
    EXPECT_THAT(takeNumbers(), ElementsAre(double(0.1F), -5, double(1e10F), 0.5));
}

TEST_F(TextureImageGLTest, DepthsAreRead)
{
    const float texels[] = {0.25F, 0.75F};
    GLTexture2D depths(context());
    depths.bind(0);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT, 2, 1, 0, GL_DEPTH_COMPONENT, GL_FLOAT, texels);
    disturb();
    image("depths", depths);
    const std::vector<double> read = takeNumbers();
    ASSERT_EQ(read.size(), 2U);
    EXPECT_NEAR(read[0], 0.25, 1e-4);
    EXPECT_NEAR(read[1], 0.75, 1e-4);
}

TEST_F(TextureImageGLTest, TargetsAreReadWhateverIsDrawnTo)
{
    GLRenderTextureFBO target(context());
    ASSERT_TRUE(target.create(2, 1, 4, GLRenderTextureFBO::FLAG_DEPTH));
    target.activate();
    glClearColor(0.2F, 0.4F, 0.6F, 0.8F);
    glClearDepth(0.25);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    disturb();
    image("target", target);
    EXPECT_THAT(takeNumbers(), ElementsAre(51, 102, 153, 204, 51, 102, 153, 204));
    depthBufferImage("depths");
    const std::vector<double> depths = takeNumbers();
    ASSERT_EQ(depths.size(), 2U);
    EXPECT_NEAR(depths[0], 0.25, 1e-4);
    EXPECT_TRUE(target.isActive());
    target.deactivate();
    GLImage shared;
    shared.setup(&target, false);
    image("image", shared);
    EXPECT_EQ(takeNumbers().size(), 8U);
    testing::internal::CaptureStderr();
    image("empty", GLImage());
    image("empty target", GLRenderTextureFBO(context()));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("there is no texture yet; what was shown stays"));
    EXPECT_FALSE(takeImage());
}

TEST_F(TextureImageGLTest, TheFramebufferIsReadWhereTheViewportIs)
{
    glClearColor(0.2F, 0.4F, 0.6F, 1);
    glClearDepth(0.5);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glViewport(3, 4, 2, 1);
    disturb();
    framebufferImage("colours");
    EXPECT_THAT(takeNumbers(), ElementsAre(51, 102, 153, 51, 102, 153));
    GLint numBits = 0;
    glGetIntegerv(GL_DEPTH_BITS, &numBits);
    if (numBits == 0)
        return;
    depthBufferImage("depths");
    const std::vector<double> read = takeNumbers();
    ASSERT_EQ(read.size(), 2U);
    EXPECT_NEAR(read[1], 0.5, 1e-4);
}

TEST_F(TextureImageGLTest, WhatIsDrawnToIsReadWhateverIsReadFrom)
{
    if (!isExtensionSupported("GL_EXT_framebuffer_blit"))
        GTEST_SKIP() << "what is read from is what is drawn to";
    GLRenderTextureFBO other(context());
    ASSERT_TRUE(other.create(2, 1, 4, GLRenderTextureFBO::FLAG_DEPTH));
    other.activate();
    GLint readFrom = 0;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING_EXT, &readFrom);
    glClearDepth(0.75);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    other.deactivate();
    GLRenderTextureFBO target(context());
    ASSERT_TRUE(target.create(1, 1, 4, GLRenderTextureFBO::FLAG_DEPTH));
    target.activate();
    glClearColor(0.2F, 0.4F, 0.6F, 1);
    glClearDepth(0.25);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glReadBuffer(GL_NONE);
    glBindFramebufferEXT(GL_READ_FRAMEBUFFER_EXT, static_cast<GLuint>(readFrom));
    glReadBuffer(GL_NONE);
    const auto before = allState();
    framebufferImage("colours");
    EXPECT_THAT(takeNumbers(), ElementsAre(51, 102, 153));
    depthBufferImage("depths");
    const std::vector<double> depths = takeNumbers();
    ASSERT_EQ(depths.size(), 1U);
    EXPECT_NEAR(depths[0], 0.25, 1e-4);
    EXPECT_EQ(allState(), before);
    target.deactivate();
}

// A texture of a target that the library has no class for that could make it here.
struct TextureOf : GLTexture
{
    TextureOf(GLContext* context, GLenum target)
        : GLTexture(context)
    {
        m_TextureTarget = target;
    }
};

// Whether the driver has an extension, which the library may have nothing of.
bool isListed(const std::string& name)
{
    const auto* const names = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    return names && (std::string(names) + ' ').find(name + ' ') != std::string::npos;
}

// On every unit that is looked at, another texture of every target is bound.
std::vector<std::unique_ptr<TextureOf>> bindOthers(GLContext* context)
{
    std::vector<std::unique_ptr<TextureOf>> others;
    for (const unsigned int unit : {0U, 3U, 2U})
        for (const GLenum target :
            {GL_TEXTURE_1D, GL_TEXTURE_2D, GL_TEXTURE_3D, GL_TEXTURE_CUBE_MAP, GL_TEXTURE_RECTANGLE_ARB}) {
            others.push_back(std::make_unique<TextureOf>(context, target));
            others.back()->bind(unit);
        }
    return others;
}

TEST_F(TextureImageGLTest, ReadingAnythingLeavesAllStateAsItWas)
{
    char texels[64] = {};
    TextureOf line(context(), GL_TEXTURE_1D);
    line.bind(0);
    glTexImage1D(GL_TEXTURE_1D, 0, GL_RGBA, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels);
    TextureOf volume(context(), GL_TEXTURE_3D);
    volume.bind(0);
    glTexImage3DEXT(GL_TEXTURE_3D, 0, GL_LUMINANCE, 2, 2, 2, 0, GL_LUMINANCE, GL_UNSIGNED_BYTE, texels);
    GLTextureRect rectangle(context());
    rectangle.createFromMemory(4, 1, 1, texels);
    GLTextureCube cube(context());
    cube.create(2, 4);
    GLRenderTextureFBO target(context());
    ASSERT_TRUE(target.create(2, 1, 4, GLRenderTextureFBO::FLAG_DEPTH));
    GLImage shared;
    shared.setup(&target, false);
    target.activate();
    disturb();
    const auto others = bindOthers(context());
    for (const GLenum map : {GL_MAP_COLOR, GL_MAP_STENCIL})
        glPixelTransferi(map, 1);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 50);
    const auto stateOfUnits = [] {
        std::vector<std::map<unsigned int, std::vector<double>>> states{allState()};
        GLint active = 0;
        glGetIntegerv(GL_ACTIVE_TEXTURE_ARB, &active);
        for (const GLenum unit : {GL_TEXTURE0_ARB, GL_TEXTURE3_ARB}) {
            glActiveTextureARB(unit);
            states.push_back(allState());
        }
        glActiveTextureARB(static_cast<GLenum>(active));
        return states;
    };
    const auto before = stateOfUnits();
    for (const GLTexture* const texture : std::initializer_list<const GLTexture*>{&line, &volume, &rectangle, &cube}) {
        image("texture", *texture);
        EXPECT_TRUE(takeImage());
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR)) << std::hex << texture->getTextureTarget();
        imageStackOfLevels("levels", *texture);
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR)) << std::hex << texture->getTextureTarget();
        imageStackOfLayers("layers", *texture);
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR)) << std::hex << texture->getTextureTarget();
    }
    image("target", target);
    image("image", shared);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    framebufferImage("colours");
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    depthBufferImage("depths");
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    const auto after = stateOfUnits();
    for (std::size_t i = 0; i < before.size(); ++i)
        for (const auto& [parameter, values] : before[i])
            EXPECT_EQ(after[i].at(parameter), values) << std::hex << parameter;
    takeImage();
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    target.deactivate();
}

// Values of a texture with the target and the format of a test, of one texel after the other.
template <typename T>
void fill(const GLTexture& texture, GLenum target, GLint format, GLenum formatOfNumbers, GLenum type,
    const std::vector<T>& numbers, int width, int height, int depth)
{
    glBindTexture(target, texture.getTextureID());
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    if (target == GL_TEXTURE_2D || target == GL_TEXTURE_1D_ARRAY)
        glTexImage2D(target, 0, format, width, height, 0, formatOfNumbers, type, numbers.data());
    else
        glTexImage3DEXT(
            target, 0, static_cast<GLenum>(format), width, height, depth, 0, formatOfNumbers, type, numbers.data());
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
}

TEST_F(TextureImageGLTest, LayersOfArraysAreRead)
{
    if (!isListed("GL_EXT_texture_array") || !isListed("GL_ARB_texture_cube_map_array"))
        GTEST_SKIP() << "there are no arrays of textures";
    const std::vector<unsigned char> numbers{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    TextureOf array(context(), GL_TEXTURE_2D_ARRAY);
    fill(array, GL_TEXTURE_2D_ARRAY, GL_LUMINANCE8, GL_LUMINANCE, GL_UNSIGNED_BYTE, numbers, 2, 1, 3);
    TextureOf lines(context(), GL_TEXTURE_1D_ARRAY);
    fill(lines, GL_TEXTURE_1D_ARRAY, GL_LUMINANCE8, GL_LUMINANCE, GL_UNSIGNED_BYTE, numbers, 2, 3, 1);
    TextureOf cubes(context(), GL_TEXTURE_CUBE_MAP_ARRAY);
    fill(cubes, GL_TEXTURE_CUBE_MAP_ARRAY, GL_LUMINANCE8, GL_LUMINANCE, GL_UNSIGNED_BYTE, numbers, 1, 1, 12);
    TextureOf other(context(), GL_TEXTURE_2D_ARRAY);
    other.bind(2);
    disturb();
    const auto before = allState();
    image("array", array, 0, 1);
    EXPECT_THAT(takeNumbers(), ElementsAre(3, 4));
    imageStackOfLayers("array", array);
    EXPECT_THAT(takeStack(), ElementsAre(ElementsAre(1, 2), ElementsAre(3, 4), ElementsAre(5, 6)));
    image("lines", lines);
    EXPECT_THAT(takeNumbers(), ElementsAre(1, 2, 3, 4, 5, 6)) << "each a row";
    image("cubes", cubes, 0, 11);
    EXPECT_THAT(takeNumbers(), ElementsAre(12));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_EQ(allState(), before);
}

TEST_F(TextureImageGLTest, IntegersAreReadAsTheyAre)
{
    if (!isListed("GL_EXT_texture_integer"))
        GTEST_SKIP() << "there are no textures of integers";
    TextureOf labels(context(), GL_TEXTURE_2D);
    fill<std::uint32_t>(
        labels, GL_TEXTURE_2D, GL_R32UI, GL_RED_INTEGER, GL_UNSIGNED_INT, {0, 7, 4'000'000'000U, 300}, 2, 2, 1);
    disturb();
    image("labels", labels);
    EXPECT_THAT(takeNumbers(), ElementsAre(0, 7, 4e9, 300));
    TextureOf offsets(context(), GL_TEXTURE_2D);
    fill<std::int8_t>(offsets, GL_TEXTURE_2D, GL_RG8I, GL_RG_INTEGER, GL_BYTE, {-5, 6, 7, -128}, 2, 1, 1);
    image("offsets", offsets);
    EXPECT_THAT(takeNumbers(), ElementsAre(-5, 6, 7, -128));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(TextureImageGLTest, NumbersWithASignKeepIt)
{
    if (!isListed("GL_EXT_texture_snorm"))
        GTEST_SKIP() << "there are no textures of numbers from -1 to 1";
    TextureOf normals(context(), GL_TEXTURE_2D);
    fill<std::int8_t>(normals, GL_TEXTURE_2D, GL_RGB8_SNORM, GL_RGB, GL_BYTE, {-127, 127, 0}, 1, 1, 1);
    image("normals", normals);
    EXPECT_THAT(takeNumbers(), ElementsAre(-1, 1, 0));
}

TEST_F(TextureImageGLTest, TargetsWithoutTexelsAreALine)
{
    const TextureOf samples(context(), GL_TEXTURE_2D_MULTISAMPLE);
    testing::internal::CaptureStderr();
    image("samples", samples);
    imageStackOfLevels("samples", samples);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
        HasSubstr("image(\"samples\"): textures of its target have no texels that can be read; what was shown stays"));
    EXPECT_FALSE(takeImage());
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(TextureImageGLTest, TexelsThatAreNoColoursAreALine)
{
    if (!isListed("GL_ARB_texture_stencil8"))
        GTEST_SKIP() << "there are no textures of stencils";
    TextureOf stencils(context(), GL_TEXTURE_2D);
    fill<std::uint8_t>(stencils, GL_TEXTURE_2D, GL_STENCIL_INDEX8, GL_STENCIL_INDEX, GL_UNSIGNED_BYTE, {7, 7}, 2, 1, 1);
    testing::internal::CaptureStderr();
    image("stencils", stencils);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
        HasSubstr("level 0 of the texture has neither colours nor depths; what was shown stays"));
    EXPECT_FALSE(takeImage());
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(TextureImageGLTest, NothingIsAddedToADisplayList)
{
    const GLuint list = glGenLists(1);
    glNewList(list, GL_COMPILE);
    testing::internal::CaptureStderr();
    framebufferImage("listed");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("a display list is being compiled"));
    glEndList();
    EXPECT_FALSE(takeImage());
    glDeleteLists(list, 1);
}

TEST_F(TextureImageGLTest, FullStacksOfAttributesStayAsTheyAre)
{
    GLint most = 0;
    glGetIntegerv(GL_MAX_ATTRIB_STACK_DEPTH, &most);
    for (GLint i = 0; i < most; ++i)
        glPushAttrib(GL_LINE_BIT);
    testing::internal::CaptureStderr();
    framebufferImage("full");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("the stacks of attributes are full"));
    GLint depth = 0;
    glGetIntegerv(GL_ATTRIB_STACK_DEPTH, &depth);
    EXPECT_EQ(depth, most);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    for (GLint i = 0; i < most; ++i)
        glPopAttrib();
}

// A framebuffer object with renderbuffers of these formats, of several samples, which is drawn to while it lives.
class Samples
{
public:
    Samples(int numSamples, GLenum colours, GLenum depths)
    {
        const auto store = reinterpret_cast<PFNGLRENDERBUFFERSTORAGEMULTISAMPLEEXTPROC>(
            reinterpret_cast<void (*)()>(wglGetProcAddress("glRenderbufferStorageMultisampleEXT")));
        glGenFramebuffersEXT(1, &m_Framebuffer);
        glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, m_Framebuffer);
        glGenRenderbuffersEXT(2, m_Buffers);
        const GLenum places[] = {GL_COLOR_ATTACHMENT0_EXT, GL_DEPTH_ATTACHMENT_EXT};
        const GLenum formats[] = {colours, depths};
        for (int i = 0; i < 2; ++i)
            if (formats[i] != GL_NONE) {
                glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, m_Buffers[i]);
                store(GL_RENDERBUFFER_EXT, numSamples, formats[i], 8, 4);
                glFramebufferRenderbufferEXT(GL_FRAMEBUFFER_EXT, places[i], GL_RENDERBUFFER_EXT, m_Buffers[i]);
            }
        if (colours == GL_NONE) {
            glDrawBuffer(GL_NONE);
            glReadBuffer(GL_NONE);
        }
        glViewport(1, 2, 3, 1);
    }
    ~Samples()
    {
        glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
        glDeleteFramebuffersEXT(1, &m_Framebuffer);
        glDeleteRenderbuffersEXT(2, m_Buffers);
    }
    Samples(const Samples&) = delete;
    Samples& operator=(const Samples&) = delete;

private:
    GLuint m_Framebuffer = 0;
    GLuint m_Buffers[2] = {};
};

bool haveSamples()
{
    GLint most = 0;
    if (isListed("GL_EXT_framebuffer_multisample"))
        glGetIntegerv(GL_MAX_SAMPLES_EXT, &most);
    return most >= 4;
}

TEST_F(TextureImageGLTest, WhatHasSeveralSamplesIsRead)
{
    if (!haveSamples())
        GTEST_SKIP() << "nothing has several samples";
    const Samples samples(4, GL_RGBA8, GL_DEPTH24_STENCIL8_EXT);
    glClearColor(0.2F, 0.4F, 0.6F, 1);
    glClearDepth(0.25);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    disturb();
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 1, 1);
    const auto before = allState();
    framebufferImage("colours");
    EXPECT_THAT(takeNumbers(), ElementsAre(51, 102, 153, 51, 102, 153, 51, 102, 153));
    depthBufferImage("depths");
    const std::vector<double> depths = takeNumbers();
    ASSERT_EQ(depths.size(), 3U);
    EXPECT_NEAR(depths[2], 0.25, 1e-4);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_EQ(allState(), before);
    glDisable(GL_SCISSOR_TEST);
}

TEST_F(TextureImageGLTest, ColoursAreDrawnAsBeforeOnceDepthsAreRead)
{
    if (!haveSamples())
        GTEST_SKIP() << "nothing has several samples";
    const Samples samples(4, GL_RGBA8, GL_DEPTH24_STENCIL8_EXT);
    glViewport(0, 0, 8, 4);
    const auto draw = [] {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glBegin(GL_TRIANGLES);
        glColor3f(1, 0, 0);
        glVertex3f(-1, -1, 0);
        glColor3f(0, 1, 0);
        glVertex3f(1, -1, 0);
        glColor3f(0, 0, 1);
        glVertex3f(0, 1, 0.5F);
        glEnd();
    };
    draw();
    framebufferImage("before");
    const std::vector<double> before = takeNumbers();
    depthBufferImage("depths");
    EXPECT_EQ(takeNumbers().size(), 32U);
    draw();
    framebufferImage("again");
    EXPECT_EQ(takeNumbers(), before);
}

TEST_F(TextureImageGLTest, ColoursThatAreDrawnKeepTheirPrecision)
{
    if (!haveSamples() || !isExtensionSupported("GL_ARB_color_buffer_float"))
        GTEST_SKIP() << "nothing can be drawn to that has more than 8 bits";
    for (const int numSamples : {0, 4}) {
        const Samples floats(numSamples, GL_RGBA32F_ARB, GL_NONE);
        glClearColor(0.1F, 7, 1e6F, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        framebufferImage("floats");
        EXPECT_THAT(takeNumbers(), ElementsAre(double(0.1F), 7, 1e6, double(0.1F), 7, 1e6, double(0.1F), 7, 1e6));
        const Samples deep(numSamples, GL_RGBA16, GL_NONE);
        glClearColor(0.1F, 0.5F, 1, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        framebufferImage("deep");
        const std::vector<double> numbers = takeNumbers();
        ASSERT_EQ(numbers.size(), 9U);
        EXPECT_NEAR(numbers[0], 6554, 1);
        EXPECT_EQ(numbers[2], 65535);
    }
}

TEST_F(TextureImageGLTest, WhatCannotBeReadOfAFramebufferIsALine)
{
    if (!haveSamples())
        GTEST_SKIP() << "nothing has several samples";
    const auto saidOf = [](auto read) {
        testing::internal::CaptureStderr();
        read();
        EXPECT_FALSE(takeImage());
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        return testing::internal::GetCapturedStderr();
    };
    {
        const Samples depths(0, GL_NONE, GL_DEPTH_COMPONENT24);
        EXPECT_THAT(saidOf([] { framebufferImage("shadow"); }), HasSubstr("what is drawn to has no colours"));
    }
    {
        const Samples nothing(0, GL_NONE, GL_NONE);
        EXPECT_THAT(saidOf([] { framebufferImage("nothing"); }), HasSubstr("what is drawn to is not complete"));
        EXPECT_THAT(saidOf([] { depthBufferImage("nothing's"); }), HasSubstr("what is drawn to is not complete"));
    }
    {
        const Samples colours(4, GL_RGBA8, GL_NONE);
        EXPECT_THAT(saidOf([] { depthBufferImage("flat"); }), HasSubstr("what is drawn to has no depths"));
        glViewport(0, 0, 0, 5);
        EXPECT_THAT(saidOf([] { framebufferImage("slit"); }), HasSubstr("the viewport is empty"));
    }
}

TEST_F(TextureImageGLTest, BesideWhatIsDrawnToThereIsNothing)
{
    if (!haveSamples())
        GTEST_SKIP() << "there is nothing of a known size";
    const Samples small(0, GL_RGBA8, GL_NONE);
    glClearColor(1, 1, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glViewport(0, 0, 16, 8);
    const std::vector<unsigned char> stale(3 * 16 * 8, 77);
    framebufferImage("larger");
    const std::vector<double> numbers = takeNumbers();
    ASSERT_EQ(numbers.size(), stale.size());
    EXPECT_EQ(numbers[3 * 7], 255);
    EXPECT_EQ(numbers[3 * 8], 0);
    EXPECT_EQ(numbers.back(), 0);
}

TEST_F(TextureImageGLTest, AllStateIsAsItWas)
{
    char texels[16] = {};
    GLTexture2D other(context());
    other.createFromMemory(1, 1, 4, texels, false);
    GLTexture2D flat(context());
    flat.createFromMemory(2, 2, 4, texels, false);
    GLTextureCube cube(context());
    cube.create(2, 4);
    disturb();
    other.bind(2);
    const auto before = allState();
    EXPECT_GT(before.size(), 300U);
    image("flat", flat);
    image("cube", cube, 0, 5);
    image("flat", flat, 3);
    imageStackOfLevels("flat levels", flat);
    imageStackOfLayers("faces", cube);
    framebufferImage("colours");
    depthBufferImage("depths");
    for (const auto& [parameter, values] : allState())
        EXPECT_EQ(values, before.at(parameter)) << std::hex << parameter;
    takeImage();
}

TEST_F(TextureImageGLTest, ErrorsThatArePendingStayPending)
{
    char texels[16] = {};
    GLTexture2D flat(context());
    flat.createFromMemory(2, 2, 4, texels, false);
    glEnable(0xFFFF);
    image("flat", flat);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    takeImage();
}

TEST_F(TextureImageGLTest, WithoutAContextThereIsALine)
{
    GLTexture2D flat(context());
    const HDC dc = wglGetCurrentDC();
    const HGLRC rc = wglGetCurrentContext();
    wglMakeCurrent(nullptr, nullptr);
    testing::internal::CaptureStderr();
    image("flat", flat);
    framebufferImage("flat");
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
        HasSubstr("image(\"flat\"): no context is current that it could be read in; what was shown stays"));
    EXPECT_FALSE(takeImage());
    wglMakeCurrent(dc, rc);
}

} // namespace
} // namespace tavo
