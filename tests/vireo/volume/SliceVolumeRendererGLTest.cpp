#include <algorithm>
#include <array>
#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <stdexcept>
#include <utility>

#include "tavo/base/objects/PException.h"
#include "tavo/platform/wgl.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/driverVariable.h"
#include "tests/support/extensions.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/volume/VolumeTest.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/volume/SliceVolumeRenderer.h"

#include <GL/glu.h>

namespace tavo {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using testing::ThrowsMessage;

// The renderer with the names of its textures in reach.
class OpenRenderer : public SliceVolumeRenderer
{
public:
    using SliceVolumeRenderer::slabStarts;
    using SliceVolumeRenderer::textureNames;
};

const Vector3f ALONG_X(1, 0, 0);
const Vector3f ALONG_Y(0, 1, 0);
const Vector3f ALONG_Z(0, 0, 1);

// A view from each side, and from between them.
const std::vector<Vector3f> VIEWS{
    {1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}, {0.5f, -0.7f, -0.6f}};

// Partly transparent, in colours of the sample's place.
RGBA8 mapTransparent(void*, const StaticVector<float, 1>& value)
{
    RGBA8 colour = mapCode(nullptr, value);
    colour[3] = 90;
    return colour;
}

// Answers the colour that userData points to, and counts.
struct Colour
{
    static RGBA8 map(void* self, const StaticVector<float, 1>&)
    {
        auto* const colour = static_cast<Colour*>(self);
        ++colour->numCalls;
        return colour->colour;
    }

    RGBA8 colour{10, 20, 30, 255};
    unsigned int numCalls = 0;
};

class SliceVolumeRendererGLTest : public ContextTest
{
protected:
    // The calls of a drawing whose names begin so.
    Calls drawingCalls(RegularVolume& volume, const Vector3f& viewDir, const std::string& start,
        const Names& channels = DENSITY, Tex2dVolumeRenderer::Mapping mapping = &mapCode, void* userData = nullptr)
    {
        Calls calls = callsOf([&] { m_Renderer.drawVolume(&volume, viewDir, channels, mapping, userData); });
        std::erase_if(calls, [&](const std::string& call) { return !call.starts_with(start); });
        return calls;
    }

    unsigned int numUploads(RegularVolume& volume, const Vector3f& viewDir = ALONG_Z, const Names& channels = DENSITY,
        Tex2dVolumeRenderer::Mapping mapping = &mapCode, void* userData = nullptr)
    {
        const Calls calls = drawingCalls(volume, viewDir, "glTex", channels, mapping, userData);
        return static_cast<unsigned int>(std::count_if(calls.begin(), calls.end(), [](const std::string& call) {
            return call.starts_with("glTexImage2D") || call.starts_with("glTexSubImage2D");
        }));
    }

    void draw(RegularVolume& volume, const Vector3f& viewDir = ALONG_Z)
    {
        m_Renderer.drawVolume(&volume, viewDir, DENSITY, &mapCode, nullptr);
    }

    // The texels of a slice along an axis, in a size that the driver took as it is.
    std::vector<RGBA8> texelsOf(unsigned int channel, unsigned int axis, unsigned int slice, unsigned int numTexels)
    {
        return readTexels(
            m_Renderer.textureNames.at(channel).at(m_Renderer.slabStarts.at(channel).at(axis) + slice), numTexels);
    }

    static void lookAlong(const Vector3f& viewDir)
    {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(-1.5, 1.5, -1.5, 1.5, -5, 5);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        const bool upIsZ = viewDir[0] == 0 && viewDir[2] == 0;
        gluLookAt(0, 0, 0, viewDir[0], viewDir[1], viewDir[2], 0, upIsZ ? 0 : 1, upIsZ ? 1 : 0);
    }

    Picture pictureBy(Tex2dVolumeRenderer& renderer, RegularVolume& volume, const Vector3f& viewDir)
    {
        lookAlong(viewDir);
        glClear(GL_COLOR_BUFFER_BIT);
        renderer.drawVolume(&volume, viewDir, DENSITY, &mapTransparent, nullptr);
        return readPixels();
    }

    // Draws the front of a coded volume of 4 x 4 x 4 samples, a texel a pixel, and expects it the right way up.
    void expectRightPicture()
    {
        constexpr int n = 4;
        RegularVolume volume = makeCodedVolume({n, n, n});
        lookAtFront(n);
        m_Renderer.drawVolume(&volume, {0, 0, -1}, DENSITY, &mapCode, nullptr);
        EXPECT_EQ(readPixels(n, n), frontPicture(n));
    }

    void TearDown() override
    {
        if (!IsSkipped())
            m_Renderer.disposeTextures();
        ContextTest::TearDown();
    }

    OpenRenderer m_Renderer;
};

// Of one channel, each in a fresh context, where the base is right.
class SameVolumePictureGLTest : public SliceVolumeRendererGLTest, public testing::WithParamInterface<Vector3i>
{};

TEST_P(SameVolumePictureGLTest, DrawsWhatTheBaseDraws)
{
    RegularVolume volume = makeCodedVolume(GetParam());
    std::vector<Picture> expected;
    Tex2dVolumeRenderer base;
    for (const Vector3f& view : VIEWS)
        expected.push_back(pictureBy(base, volume, view));
    base.disposeTextures();
    for (std::size_t i = 0; i < VIEWS.size(); ++i) {
        EXPECT_TRUE(pictureBy(m_Renderer, volume, VIEWS[i]) == expected[i]) << "view " << i;
        EXPECT_TRUE(expected[i] != Picture(64, 64)) << "something was drawn";
    }
}

INSTANTIATE_TEST_SUITE_P(Extents, SameVolumePictureGLTest,
    testing::Values(Vector3i(5, 3, 8), Vector3i(4, 4, 4), Vector3i(2, 7, 9), Vector3i(3, 2, 2)), [](const auto& info) {
        const Vector3i& extends = info.param;
        return std::to_string(extends[0]) + 'x' + std::to_string(extends[1]) + 'x' + std::to_string(extends[2]);
    });

TEST_F(SliceVolumeRendererGLTest, IsRightAmongOtherTexturesAndState)
{
    std::vector<unsigned int> names(20);
    glGenTextures(20, names.data());
    const std::vector<unsigned char> grey(64 * 64 * 4, 99);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 64, 64, 0, GL_RGBA, GL_UNSIGNED_BYTE, grey.data());
    glBindTexture(GL_TEXTURE_2D, names[4]);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 64, 64, 0, GL_RGBA, GL_UNSIGNED_BYTE, grey.data());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glBindTexture(GL_TEXTURE_2D, 0);
    glBindTexture(GL_TEXTURE_3D, names[3]);
    tavo::glTexImage3DEXT(GL_TEXTURE_3D, 0, GL_RGBA, 4, 4, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, grey.data());
    glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glEnable(GL_TEXTURE_3D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glColor4f(0.5f, 0.5f, 0.5f, 0.5f);
    unsigned int buffer = 0;
    glGenBuffersARB(1, &buffer);
    glBindBufferARB(GL_PIXEL_UNPACK_BUFFER_ARB, buffer);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 7);
    glPixelStorei(GL_UNPACK_SKIP_PIXELS, 3);
    glPixelStorei(GL_UNPACK_SKIP_ROWS, 2);
    glPixelStorei(GL_UNPACK_SWAP_BYTES, 1);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 8);
    glEnable(GL_TEXTURE_GEN_S);
    glActiveTextureARB(GL_TEXTURE0 + 1);
    glBindTexture(GL_TEXTURE_2D, names[4]);
    glEnable(GL_TEXTURE_2D);

    expectRightPicture();

    const auto integer = [](GLenum parameter) {
        int value = 0;
        glGetIntegerv(parameter, &value);
        return value;
    };
    EXPECT_EQ(integer(GL_ACTIVE_TEXTURE_ARB), GL_TEXTURE0 + 1);
    EXPECT_EQ(integer(GL_PIXEL_UNPACK_BUFFER_BINDING_ARB), static_cast<int>(buffer));
    EXPECT_EQ(integer(GL_UNPACK_ROW_LENGTH), 7);
    EXPECT_EQ(integer(GL_UNPACK_ALIGNMENT), 8);
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_TRUE(glIsEnabled(GL_TEXTURE_2D)) << "of unit 1";
    glActiveTextureARB(GL_TEXTURE0);
    EXPECT_TRUE(glIsEnabled(GL_TEXTURE_3D));
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    EXPECT_EQ(integer(GL_TEXTURE_BINDING_2D), 0);
    glDeleteTextures(20, names.data());
    glDeleteBuffersARB(1, &buffer);
}

TEST_F(SliceVolumeRendererGLTest, DoesNotHaveItsTexelsTransferred)
{
    RegularVolume volume = makeCodedVolume({2, 2, 2});
    glPixelTransferf(GL_RED_SCALE, 0.25f);
    glPixelTransferf(GL_BLUE_BIAS, 0.5f);
    glPixelTransferi(GL_MAP_COLOR, GL_TRUE);
    draw(volume);
    float scale = 0;
    glGetFloatv(GL_RED_SCALE, &scale);
    EXPECT_EQ(scale, 0.25f) << "the application's own";
    glPixelTransferf(GL_RED_SCALE, 1); // reading back has its values transferred, too
    glPixelTransferf(GL_BLUE_BIAS, 0);
    glPixelTransferi(GL_MAP_COLOR, GL_FALSE);
    EXPECT_EQ(texelsOf(0, 2, 1, 4).back(), colourOfPlace(1, 1, 1));
}

TEST_F(SliceVolumeRendererGLTest, MakesAStackWhenItIsFirstLookedAlong)
{
    RegularVolume volume = makeCodedVolume({2, 3, 5});
    EXPECT_EQ(numUploads(volume, ALONG_Z), 5u);
    EXPECT_EQ(numUploads(volume, {0.2f, 0.3f, -1}), 0u) << "the same stack, from the other side";
    EXPECT_EQ(numUploads(volume, ALONG_Y), 3u);
    EXPECT_EQ(numUploads(volume, ALONG_X), 2u);
    for (const Vector3f& view : VIEWS)
        EXPECT_EQ(numUploads(volume, view), 0u);
}

TEST_F(SliceVolumeRendererGLTest, MapsEverySampleToItsTexelWithoutPadding)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    RegularVolume volume = makeCodedVolume({5, 3, 7});
    for (const Vector3f& view : {ALONG_X, ALONG_Y, ALONG_Z})
        draw(volume, view);
    for (int x = 0; x < 5; ++x) {
        const std::vector<RGBA8> texels = texelsOf(0, 0, static_cast<unsigned int>(x), 3 * 7);
        for (int i = 0; i < 3 * 7; ++i)
            EXPECT_EQ(texels[i], colourOfPlace(x, i % 3, i / 3));
    }
    for (int y = 0; y < 3; ++y) {
        const std::vector<RGBA8> texels = texelsOf(0, 1, static_cast<unsigned int>(y), 5 * 7);
        for (int i = 0; i < 5 * 7; ++i)
            EXPECT_EQ(texels[i], colourOfPlace(i % 5, y, i / 5));
    }
    for (int z = 0; z < 7; ++z) {
        const std::vector<RGBA8> texels = texelsOf(0, 2, static_cast<unsigned int>(z), 5 * 3);
        for (int i = 0; i < 5 * 3; ++i)
            EXPECT_EQ(texels[i], colourOfPlace(i % 5, i / 5, z));
    }
}

// Slices across X are fetched several at a time, as many as cache lines have samples of.
TEST_F(SliceVolumeRendererGLTest, MapsWideVolumesOfAnyChannels)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    for (const int width : {16, 17, 33, 35}) {
        for (const unsigned int numOthers : {0u, 4u, 40u}) {
            VertexDescriptor channels = makeLayout({{"density", 1, FLOAT}});
            if (numOthers > 0)
                channels.pushAttrib({"other", numOthers, FLOAT});
            const auto numSamples = static_cast<unsigned int>(width * 3 * 2);
            auto samples = std::make_unique<PointSet>(channels, numSamples);
            for (unsigned int i = 0; i < numSamples; ++i) {
                const auto code = static_cast<float>(i);
                std::memcpy(samples->getData() + std::size_t{i} * channels.getSize(), &code, sizeof code);
            }
            RegularVolume volume({width, 3, 2}, {{-1, -1, -1}, {1, 1, 1}}, std::move(samples));
            const auto lowByte = [](void*, const StaticVector<float, 1>& value) {
                return RGBA8(static_cast<int>(value[0]) % 256, 0, 0, 255);
            };
            m_Renderer.drawVolume(&volume, ALONG_X, DENSITY, lowByte, nullptr);
            for (int x = 0; x < width; ++x) {
                const std::vector<RGBA8> texels = texelsOf(0, 0, static_cast<unsigned int>(x), 3 * 2);
                for (int place = 0; place < 3 * 2; ++place)
                    EXPECT_EQ(texels[place][0], (x + width * place) % 256) << width << ' ' << numOthers << ' ' << x;
            }
        }
    }
}

TEST_F(SliceVolumeRendererGLTest, WritesAnotherVolumeOfTheSizeIntoTheSameTextures)
{
    RegularVolume first = makeCodedVolume({2, 2, 2});
    RegularVolume second = makeVolume({2, 2, 2}, 1, [](int, int, int, unsigned int) { return codeOf(5, 6, 7); });
    draw(first);
    const auto names = m_Renderer.textureNames;
    const Calls calls = drawingCalls(second, ALONG_Z, "gl");
    EXPECT_THAT(calls, testing::Contains(testing::StartsWith("glTexSubImage2D")).Times(2));
    EXPECT_THAT(calls, testing::Not(testing::Contains(testing::StartsWith("glGenTextures"))));
    EXPECT_EQ(m_Renderer.textureNames, names);
    EXPECT_THAT(texelsOf(0, 2, 1, 4), Each(colourOfPlace(5, 6, 7)));
    EXPECT_EQ(numUploads(second, ALONG_X), 2u) << "the other stacks are of the new volume too";
}

TEST_F(SliceVolumeRendererGLTest, TellsAnotherVolumeAtTheSameAddress)
{
    RegularVolume volume = makeCodedVolume({2, 2, 2});
    EXPECT_EQ(numUploads(volume), 2u);
    volume = makeCodedVolume({2, 2, 2});
    EXPECT_EQ(numUploads(volume), 2u);
}

TEST_F(SliceVolumeRendererGLTest, MakesNewTexturesForAnotherSize)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    RegularVolume first = makeCodedVolume({2, 2, 2});
    RegularVolume second = makeCodedVolume({3, 2, 2});
    draw(first);
    EXPECT_THAT(drawingCalls(second, ALONG_Z, "glDeleteTextures"), SizeIs(1));
    EXPECT_EQ(texelsOf(0, 2, 1, 6).back(), colourOfPlace(2, 1, 1));
}

TEST_F(SliceVolumeRendererGLTest, FollowsChannelsMappingAndUserData)
{
    const VertexDescriptor channels = makeLayout({{"a", 1, FLOAT}, {"b", 1, FLOAT}});
    RegularVolume volume({2, 2, 2}, {{-1, -1, -1}, {1, 1, 1}}, std::make_unique<PointSet>(channels, 8));
    Colour colour;
    Colour other;
    EXPECT_EQ(numUploads(volume, ALONG_Z, {"a"}, &Colour::map, &colour), 2u);
    EXPECT_EQ(numUploads(volume, ALONG_Z, {"a"}, &Colour::map, &colour), 0u);
    EXPECT_EQ(numUploads(volume, ALONG_Z, {"b"}, &Colour::map, &colour), 2u);
    EXPECT_EQ(numUploads(volume, ALONG_Z, {"b"}, &Colour::map, &other), 2u);
    EXPECT_EQ(numUploads(volume, ALONG_Z, {"b"}, &mapCode, &other), 2u);
    EXPECT_EQ(numUploads(volume, ALONG_Z, {"b", "a"}, &mapCode, &other), 4u);
    EXPECT_EQ(numUploads(volume, ALONG_Z, {"a", "b"}, &mapCode, &other), 4u);
    EXPECT_EQ(numUploads(volume, ALONG_Z, {"a", "b"}, &mapCode, &other), 0u);
    EXPECT_THAT(drawingCalls(volume, ALONG_Z, "glDeleteTextures", {"a"}), SizeIs(2)) << "those of both channels";
}

TEST_F(SliceVolumeRendererGLTest, RefusesMoreChannelsThanTextureUnits)
{
    NEEDS_EXTENSION("GL_ARB_fragment_program");
    int numUnits = 0;
    glGetIntegerv(GL_MAX_TEXTURE_IMAGE_UNITS_ARB, &numUnits);
    RegularVolume volume = makeCodedVolume({2, 2, 2});
    const Names tooMany(static_cast<std::size_t>(numUnits) + 1, "density");
    EXPECT_THAT([&] { m_Renderer.drawVolume(&volume, ALONG_Z, tooMany, &mapCode, nullptr); },
        ThrowsMessage<PException>(
            "SliceVolumeRenderer::prepareTextures - more channels than the driver's texture units"));
    expectRightPicture();
}

TEST_F(SliceVolumeRendererGLTest, MakesItsTexturesAnewOnDemand)
{
    RegularVolume volume = makeCodedVolume({2, 2, 2});
    Colour colour;
    EXPECT_EQ(numUploads(volume, ALONG_Z, DENSITY, &Colour::map, &colour), 2u);
    EXPECT_EQ(numUploads(volume, ALONG_X, DENSITY, &Colour::map, &colour), 2u);
    colour.colour = {40, 50, 60, 70};
    EXPECT_EQ(numUploads(volume, ALONG_Z, DENSITY, &Colour::map, &colour), 0u);
    EXPECT_THAT(callsOf([&] { m_Renderer.invalidate(); }), IsEmpty());
    EXPECT_EQ(numUploads(volume, ALONG_Z, DENSITY, &Colour::map, &colour), 2u);
    EXPECT_THAT(texelsOf(0, 2, 0, 4), Each(RGBA8(40, 50, 60, 70)));
    EXPECT_EQ(numUploads(volume, ALONG_X, DENSITY, &Colour::map, &colour), 2u);
    m_Renderer.disposeTextures();
    EXPECT_EQ(numUploads(volume, ALONG_Z, DENSITY, &Colour::map, &colour), 2u);
}

TEST_F(SliceVolumeRendererGLTest, MapsChannelsOfMoreComponentsByTheirAlphas)
{
    const auto alpha = [](void*, const StaticVector<float, 1>& value) { return RGBA8(1, 2, 3, value[0]); };
    const RGBA8 expected[]{{}, {1, 2, 3, 100}, {100, 101, 0, 16}, {100, 101, 102, 16}, {100, 101, 102, 103}};
    for (unsigned int n = 1; n <= 4; ++n) {
        for (const unsigned int tableSize : {0u, 4u}) {
            RegularVolume volume = makeVolume({2, 2, 2}, n,
                [](int, int, int, unsigned int component) { return 100.0f + static_cast<float>(component); });
            m_Renderer.setTableSize(tableSize);
            m_Renderer.drawVolume(&volume, ALONG_Z, DENSITY, alpha, nullptr);
            EXPECT_THAT(texelsOf(0, 2, 1, 4), Each(expected[n])) << n << " components, table of " << tableSize;
        }
    }
}

TEST_F(SliceVolumeRendererGLTest, BindsEachChannelsOwnTextures)
{
    const VertexDescriptor channels = makeLayout({{"a", 1, FLOAT}, {"b", 1, FLOAT}});
    RegularVolume volume({2, 2, 2}, {}, std::make_unique<PointSet>(channels, 8));
    const Names both{"a", "b"};
    numUploads(volume, ALONG_Z, both);
    Calls calls = drawingCalls(volume, ALONG_Z, "glBindTexture", both);
    const auto& names = m_Renderer.textureNames;
    EXPECT_THAT(calls, ElementsAre("glBindTexture(GL_TEXTURE_2D, " + std::to_string(names[0][5]) + ")",
                           "glBindTexture(GL_TEXTURE_2D, " + std::to_string(names[1][5]) + ")",
                           "glBindTexture(GL_TEXTURE_2D, " + std::to_string(names[0][4]) + ")",
                           "glBindTexture(GL_TEXTURE_2D, " + std::to_string(names[1][4]) + ")"));
    EXPECT_NE(names[0][5], names[1][5]);
}

// A program that takes its red from the first channel and its green from the second.
TEST_F(SliceVolumeRendererGLTest, GivesAProgramSeveralChannels)
{
    NEEDS_EXTENSION("GL_ARB_fragment_program");
    const VertexDescriptor channels = makeLayout({{"a", 1, FLOAT}, {"b", 1, FLOAT}});
    auto samples = std::make_unique<PointSet>(channels, 8);
    for (unsigned int i = 0; i < 8; ++i) {
        const std::array<float, 2> sample{200, 100};
        std::memcpy(samples->getData() + 8 * i, sample.data(), sizeof sample);
    }
    RegularVolume volume({2, 2, 2}, {{-1, -1, -1}, {1, 1, 1}}, std::move(samples));
    const std::string program = "!!ARBfp1.0\n"
                                "TEMP a, b;\n"
                                "TEX a, fragment.texcoord[0], texture[0], 2D;\n"
                                "TEX b, fragment.texcoord[0], texture[1], 2D;\n"
                                "MOV result.color, {0, 0, 0, 1};\n"
                                "MOV result.color.x, a.x;\n"
                                "MOV result.color.y, b.x;\n"
                                "END";
    glBindProgramARB(GL_FRAGMENT_PROGRAM_ARB, 1);
    glProgramStringARB(
        GL_FRAGMENT_PROGRAM_ARB, GL_PROGRAM_FORMAT_ASCII_ARB, static_cast<GLsizei>(program.size()), program.data());
    glEnable(GL_FRAGMENT_PROGRAM_ARB);
    const auto grey = [](void*, const StaticVector<float, 1>& value) {
        return RGBA8(value[0], value[0], value[0], 255);
    };
    glMatrixMode(GL_PROJECTION);
    glOrtho(-1, 1, -1, 1, -2, 2);
    m_Renderer.drawVolume(&volume, {0, 0, -1}, Names{"a", "b"}, grey, nullptr);
    EXPECT_EQ(readPixels().at(32, 32), (Pixel{200, 100, 0, 255}));
}

TEST_F(SliceVolumeRendererGLTest, DrawsVolumesOfOneSampleAlongAnyAxis)
{
    for (const Vector3i& extends : {Vector3i(1, 4, 4), Vector3i(4, 1, 4), Vector3i(4, 4, 1), Vector3i(1, 1, 1)}) {
        RegularVolume volume = makeCodedVolume(extends);
        for (const Vector3f& view : VIEWS)
            EXPECT_NE(pictureBy(m_Renderer, volume, view), Picture(64, 64));
        const auto [nx, ny, nz] = std::array{extends[0], extends[1], extends[2]};
        const std::vector<RGBA8> texels = texelsOf(0, 2, 0, static_cast<unsigned int>(nx * ny));
        for (int i = 0; i < nx * ny; ++i)
            EXPECT_EQ(texels[static_cast<std::size_t>(i)][1], colourOfPlace(i % nx, i / nx, 0)[1]) << nz;
    }
}

// The box reaches from -1 to 1; only what is near its middle is in view.
TEST_F(SliceVolumeRendererGLTest, DrawsSlicesInTheMiddleOfTheirLayersOnDemand)
{
    RegularVolume volume = makeCodedVolume({4, 4, 1});
    for (const bool isCentred : {false, true}) {
        m_Renderer.setCentred(isCentred);
        EXPECT_EQ(m_Renderer.isCentred(), isCentred);
        lookAtFront(4);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(-1, 1, -1, 1, -0.5, 0.5);
        m_Renderer.drawVolume(&volume, {0, 0, -1}, DENSITY, &mapCode, nullptr);
        EXPECT_EQ(readPixels(4, 4) != Picture(4, 4), isCentred);
    }
}

TEST_F(SliceVolumeRendererGLTest, DrawsTheMiddleOneOfSeveralSlicesOnDemand)
{
    RegularVolume volume = makeCodedVolume({2, 2, 7});
    m_Renderer.drawVolume(&volume, ALONG_Z, DENSITY, &mapCode, nullptr);
    const std::vector<unsigned int> names(m_Renderer.textureNames[0].begin() + 4, m_Renderer.textureNames[0].end());
    const auto slicesOf = [&](unsigned int step, const Vector3f& view) {
        m_Renderer.setStep(step);
        std::vector<std::ptrdiff_t> slices;
        for (const std::string& call : drawingCalls(volume, view, "glBindTexture"))
            for (std::size_t i = 0; i < names.size(); ++i)
                if (call == "glBindTexture(GL_TEXTURE_2D, " + std::to_string(names[i]) + ")")
                    slices.push_back(static_cast<std::ptrdiff_t>(i));
        return slices;
    };
    EXPECT_EQ(m_Renderer.getStep(), 1U);
    EXPECT_THAT(slicesOf(1, ALONG_Z), ElementsAre(6, 5, 4, 3, 2, 1, 0));
    EXPECT_THAT(slicesOf(2, ALONG_Z), ElementsAre(5, 3, 1));
    EXPECT_THAT(slicesOf(3, {0, 0, -1}), ElementsAre(1, 4));
    EXPECT_THAT(slicesOf(100, ALONG_Z), ElementsAre(3));
    EXPECT_THAT(slicesOf(0, {0, 0, -1}), ElementsAre(0, 1, 2, 3, 4, 5, 6));
}

TEST_F(SliceVolumeRendererGLTest, BindsTheNeighboursOfSlicesOnDemand)
{
    RegularVolume volume = makeCodedVolume({2, 2, 3});
    m_Renderer.drawVolume(&volume, ALONG_Z, DENSITY, &mapCode, nullptr);
    const std::vector<unsigned int> names(m_Renderer.textureNames[0].begin() + 4, m_Renderer.textureNames[0].end());
    const auto bound = [&](std::size_t slice) {
        return "glBindTexture(GL_TEXTURE_2D, " + std::to_string(names[slice]) + ")";
    };
    EXPECT_EQ(m_Renderer.getNeighbourUnit(), 0U);
    EXPECT_THAT(drawingCalls(volume, ALONG_Z, "glBindTexture"), ElementsAre(bound(2), bound(1), bound(0)));
    m_Renderer.setNeighbourUnit(1);
    EXPECT_THAT(drawingCalls(volume, ALONG_Z, "glBindTexture"),
        ElementsAre(bound(2), bound(1), bound(2), bound(1), bound(0), bound(2), bound(0), bound(0), bound(1)));
    EXPECT_THAT(drawingCalls(volume, ALONG_Z, "glActiveTextureARB(GL_TEXTURE1)"), SizeIs(testing::Ge(3U)));
    EXPECT_THAT(drawingCalls(volume, ALONG_Z, "glActiveTextureARB(GL_TEXTURE2)"), SizeIs(testing::Ge(3U)));
}

// Eight layers, two and four: only where they count by their thickness are they as opaque together.
TEST_F(SliceVolumeRendererGLTest, IsAsOpaqueAlongEveryAxisOnDemand)
{
    RegularVolume volume = makeVolume({8, 2, 4}, 1, [](int, int, int, unsigned int) { return 1.0f; });
    const auto greyAlong = [&](const Vector3f& view) {
        lookAlong(view);
        glClear(GL_COLOR_BUFFER_BIT);
        m_Renderer.drawVolume(
            &volume, view, DENSITY,
            [](void*, const StaticVector<float, 1>& value) { return RGBA8(255 * value[0], 255, 255, 51); }, nullptr);
        return int(readPixels().at(32, 32)[0]);
    };
    const std::vector<Vector3f> views{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    EXPECT_NEAR(greyAlong(views[0]), 255 * (1 - std::pow(0.8, 8)), 4);
    EXPECT_NEAR(greyAlong(views[1]), 255 * (1 - std::pow(0.8, 2)), 4) << "unless something else is said, as slices";
    EXPECT_EQ(m_Renderer.getOpacityDistance(), 0);
    m_Renderer.setOpacityDistance(0.5F);
    EXPECT_EQ(m_Renderer.getOpacityDistance(), 0.5F);
    for (const unsigned int tableSize : {0U, 2U}) {
        m_Renderer.setTableSize(tableSize);
        for (const Vector3f& view : views)
            EXPECT_NEAR(greyAlong(view), 255 * (1 - std::pow(0.8, 4)), 4) << view[0] << view[1] << view[2];
    }
}

TEST_F(SliceVolumeRendererGLTest, CallsTheMappingOncePerEntryOfATable)
{
    RegularVolume volume = makeCodedVolume({4, 4, 4});
    Colour colour;
    EXPECT_EQ(m_Renderer.getTableSize(), 0u);
    m_Renderer.drawVolume(&volume, ALONG_Z, DENSITY, &Colour::map, &colour);
    EXPECT_EQ(colour.numCalls, 64u);
    m_Renderer.setTableSize(10);
    EXPECT_EQ(m_Renderer.getTableSize(), 10u);
    for (const Vector3f& view : VIEWS)
        m_Renderer.drawVolume(&volume, view, DENSITY, &Colour::map, &colour);
    EXPECT_EQ(colour.numCalls, 64u + 10u);
    m_Renderer.setTableSize(0);
    m_Renderer.drawVolume(&volume, ALONG_Z, DENSITY, &Colour::map, &colour);
    EXPECT_EQ(colour.numCalls, 64u + 10u + 64u);
}

// A table of 0, 10, ..., 100, each entry of a colour of its value, for samples beside each other.
TEST_F(SliceVolumeRendererGLTest, TakesTheNearestEntryOfATable)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    constexpr float inf = std::numeric_limits<float>::infinity();
    const std::vector<float> samples{0, 100, 4, 6, 50, 94, inf, -inf, std::nanf("")};
    RegularVolume volume =
        makeVolume({9, 1, 1}, 1, [&](int x, int, int, unsigned int) { return samples[static_cast<std::size_t>(x)]; });
    m_Renderer.setTableSize(11);
    m_Renderer.drawVolume(
        &volume, ALONG_Z, DENSITY,
        [](void*, const StaticVector<float, 1>& value) { return RGBA8(std::lround(value[0]), 0, 0, 0); }, nullptr);
    std::vector<int> reds;
    for (const RGBA8& texel : texelsOf(0, 2, 0, 9))
        reds.push_back(texel[0]);
    EXPECT_THAT(reds, ElementsAre(0, 100, 0, 10, 50, 90, 100, 0, 0));
}

TEST_F(SliceVolumeRendererGLTest, TakesTablesOfOneEntryAndOfOneValue)
{
    RegularVolume constant = makeVolume({2, 2, 2}, 1, [](int, int, int, unsigned int) { return codeOf(3, 4, 5); });
    RegularVolume varied = makeCodedVolume({2, 2, 2});
    RegularVolume nothing = makeVolume({2, 2, 2}, 1, [](int, int, int, unsigned int) { return std::nanf(""); });
    m_Renderer.setTableSize(16);
    draw(constant);
    EXPECT_THAT(texelsOf(0, 2, 0, 4), Each(colourOfPlace(3, 4, 5)));
    draw(nothing);
    EXPECT_THAT(texelsOf(0, 2, 0, 4), Each(colourOfPlace(0, 0, 0)));
    m_Renderer.setTableSize(1);
    draw(varied);
    EXPECT_THAT(texelsOf(0, 2, 1, 4), Each(colourOfPlace(0, 0, 0)));
}

TEST_F(SliceVolumeRendererGLTest, RefusesWhatTheBaseRefusesAndGoesOn)
{
    const auto samples = [](const char* name, unsigned int components, unsigned int type, unsigned int count) {
        return std::make_unique<PointSet>(makeLayout({{name, components, type}}), count);
    };
    RegularVolume integer({2, 2, 2}, {}, samples("density", 1, INT, 8));
    RegularVolume tooMany({2, 2, 2}, {}, samples("density", 5, FLOAT, 8));
    RegularVolume missing({2, 2, 2}, {}, samples("other", 1, FLOAT, 8));
    RegularVolume cut({2, 2, 2}, {}, samples("density", 1, FLOAT, 7));
    RegularVolume none({2, 2, 2}, {});
    const auto refuses = [&](RegularVolume& volume, const char* message) {
        EXPECT_THAT([&] { draw(volume); }, ThrowsMessage<PException>(message));
        expectRightPicture();
    };
    refuses(integer, "SliceVolumeRenderer::prepareTextures - only float channels are supported.");
    refuses(tooMany, "SliceVolumeRenderer::prepareTextures - only channel dimension 1..4 is supported.");
    refuses(missing, "VertexDescriptor::getIndex() - no attribute 'density'");
    refuses(none, "VertexDescriptor::getIndex() - no attribute 'density'");
    refuses(cut, "RegularVolume::mapChannel() - data size does not match volume.");
    m_Renderer.setTableSize(4);
    EXPECT_THROW(draw(cut), PException);
    EXPECT_THROW(draw(cut), PException) << "also when it is drawn again";
    m_Renderer.setTableSize(0);
    expectRightPicture();
    EXPECT_THROW(m_Renderer.drawVolume(&integer, ALONG_Z, Names(), &mapCode, nullptr), std::out_of_range);
    expectRightPicture();
}

TEST_F(SliceVolumeRendererGLTest, PassesOnWhatTheMappingThrowsAndGoesOn)
{
    RegularVolume volume = makeCodedVolume({4, 4, 4});
    struct Failure
    {};
    const auto fail = [](void*, const StaticVector<float, 1>& value) -> RGBA8 {
        if (value[0] > codeOf(0, 0, 2))
            throw Failure();
        return {};
    };
    int depth = 0;
    for (const unsigned int tableSize : {0u, 100u}) {
        m_Renderer.setTableSize(tableSize);
        EXPECT_THROW(m_Renderer.drawVolume(&volume, ALONG_Z, DENSITY, fail, nullptr), Failure);
        EXPECT_THROW(m_Renderer.drawVolume(&volume, ALONG_Z, DENSITY, fail, nullptr), Failure);
        glGetIntegerv(GL_ATTRIB_STACK_DEPTH, &depth);
        EXPECT_EQ(depth, 0);
        glGetIntegerv(GL_CLIENT_ATTRIB_STACK_DEPTH, &depth);
        EXPECT_EQ(depth, 0);
    }
    m_Renderer.setTableSize(0);
    expectRightPicture();
}

TEST_F(SliceVolumeRendererGLTest, RefusesSlicesThatAreLargerThanTextures)
{
    int largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    RegularVolume volume = makeVolume({largest + 1, 1, 1});
    draw(volume, ALONG_X);
    EXPECT_THAT([&] { draw(volume, ALONG_Z); },
        ThrowsMessage<PException>(
            "SliceVolumeRenderer::prepareTextures - the slices are larger than the driver's textures"));
    expectRightPicture();
}

TEST_F(SliceVolumeRendererGLTest, TellsHowFarItIsWithItsTextures)
{
    const VertexDescriptor channels = makeLayout({{"a", 1, FLOAT}, {"b", 1, FLOAT}});
    RegularVolume volume({2, 2, 3}, {}, std::make_unique<PointSet>(channels, 12));
    std::vector<unsigned int> done;
    m_Renderer.setProgress([&](unsigned int numDone, unsigned int numSlices) {
        done.push_back(numDone);
        EXPECT_EQ(numSlices, 6u);
    });
    const Names both{"a", "b"};
    numUploads(volume, ALONG_Z, both);
    EXPECT_THAT(done, ElementsAre(0, 1, 2, 3, 4, 5, 6));
    numUploads(volume, ALONG_Z, both);
    EXPECT_THAT(done, SizeIs(7)) << "nothing was made";
}

TEST_F(SliceVolumeRendererGLTest, DeletesEveryNameItMade)
{
    std::size_t numGenerated = 0;
    std::size_t numDeleted = 0;
    const auto count = [&](const Calls& calls) {
        for (const std::string& call : calls) {
            numGenerated += call.starts_with("glGenTextures");
            if (call.starts_with("glDeleteTextures")) {
                // Names that were not made yet are 0, which deletes nothing.
                const std::string names = call.substr(call.find(", (") + 2);
                for (std::size_t at = 0; (at = names.find_first_of("123456789", at)) != std::string::npos;) {
                    ++numDeleted;
                    at = names.find_first_of(",)", at);
                }
            }
        }
    };
    RegularVolume small = makeCodedVolume({2, 3, 4});
    RegularVolume large = makeCodedVolume({5, 6, 7});
    for (RegularVolume* const volume : {&small, &large, &small})
        for (const Vector3f& view : {ALONG_Z, ALONG_X})
            count(drawingCalls(*volume, view, "gl"));
    count(callsOf([&] { m_Renderer.disposeTextures(); }));
    EXPECT_EQ(numGenerated, 6u + 12u + 6u);
    EXPECT_EQ(numDeleted, numGenerated);
}

TEST_F(SliceVolumeRendererGLTest, DrawsNothingWithoutSamples)
{
    EXPECT_THAT(callsOf([&] { m_Renderer.drawVolume(nullptr, ALONG_Z, DENSITY, &mapCode, nullptr); }), IsEmpty());
    RegularVolume empty({0, 2, 2}, {});
    EXPECT_THAT(drawingCalls(empty, ALONG_Z, "gl"), IsEmpty());
}

TEST_F(SliceVolumeRendererGLTest, DrawsASingleChannelByItsName)
{
    RegularVolume volume = makeCodedVolume({2, 2, 2});
    m_Renderer.drawVolume(&volume, ALONG_Z, "density", &mapCode, nullptr);
    EXPECT_EQ(texelsOf(0, 2, 1, 4).back(), colourOfPlace(1, 1, 1));
}

TEST_F(SliceVolumeRendererGLTest, RefusesWithoutMultitextureAndChangesNothing)
{
    RegularVolume volume = makeCodedVolume({3, 3, 3});
    const auto entryPoint = std::exchange(glActiveTextureARB, nullptr);
    const Calls calls = callsOf([&] {
        EXPECT_THAT([&] { draw(volume); }, ThrowsMessage<PException>("SliceVolumeRenderer::drawVolume - "
                                                                     "GL_ARB_multitexture is missing: there is no "
                                                                     "glActiveTextureARB"));
    });
    EXPECT_THAT(calls, Each(StartsWith("glGet"))) << "it only asks";
    glActiveTextureARB = entryPoint;
    expectRightPicture();
}

// On a driver that has the core profile only.
class CoreProfileVolumeGLTest : public GLTest
{
protected:
    CoreProfileVolumeGLTest()
        : GLTest(Start::WITHOUT_CONTEXT)
    {}
};

TEST_F(CoreProfileVolumeGLTest, RefusesWithoutTheFunctionsOfTheCompatibilityProfile)
{
    if (testing::UnitTest::GetInstance()->test_to_run_count() > 1)
        GTEST_SKIP() << "needs a process of its own";
    setDriverVariable("MESA_GL_VERSION_OVERRIDE", "4.5FC");
    if (!makeMainContext())
        return;
    if (glGetString(GL_EXTENSIONS))
        GTEST_SKIP() << "the driver does not give a context of the core profile";
    EXPECT_THAT(drainErrors(), ElementsAre(GL_INVALID_ENUM));
    // As where another context, of the compatibility profile, came first.
    const auto activeTexture = reinterpret_cast<void (*)()>(wglGetProcAddress("glActiveTexture"));
    glActiveTextureARB = reinterpret_cast<PFNGLACTIVETEXTUREARBPROC>(activeTexture);
    RegularVolume volume = makeCodedVolume({3, 3, 3});
    SliceVolumeRenderer renderer;
    const Calls calls = callsOf([&] {
        EXPECT_THAT([&] { renderer.drawVolume(&volume, ALONG_Z, DENSITY, &mapCode, nullptr); },
            ThrowsMessage<PException>("SliceVolumeRenderer::drawVolume - glBegin and other functions of the "
                                      "compatibility profile are missing: the context has the core profile's only"));
    });
    EXPECT_THAT(calls, Each(StartsWith("glGet")));
    EXPECT_THAT(drainErrors(), IsEmpty());
}

// On a driver whose textures have sizes of powers of two.
class PaddedSliceVolumeRendererGLTest : public SliceVolumeRendererGLTest
{
protected:
    void SetUp() override
    {
        // The extensions are asked for once in a process.
        if (testing::UnitTest::GetInstance()->test_to_run_count() > 1)
            GTEST_SKIP() << "needs a process of its own";
        setDriverVariable("MESA_EXTENSION_OVERRIDE", "-GL_ARB_texture_non_power_of_two");
        SliceVolumeRendererGLTest::SetUp();
        const std::string extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
        if (extensions.find("GL_ARB_texture_non_power_of_two") != std::string::npos)
            GTEST_SKIP() << "the driver's extensions cannot be switched off";
    }
};

TEST_F(PaddedSliceVolumeRendererGLTest, PadsSlicesAndDrawsTheSame)
{
    RegularVolume volume = makeCodedVolume({5, 3, 1});
    EXPECT_THAT(drawingCalls(volume, ALONG_Z, "glTexImage2D"),
        ElementsAre("glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 8, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, ptr)"));
    EXPECT_THAT(
        drawingCalls(volume, ALONG_Z, "glTexCoord2f"), ElementsAre("glTexCoord2f(0, 0)", "glTexCoord2f(0, 0.75)",
                                                           "glTexCoord2f(0.625, 0.75)", "glTexCoord2f(0.625, 0)"));
    const std::vector<RGBA8> texels = texelsOf(0, 2, 0, 8 * 4);
    for (int i = 0; i < 8 * 4; ++i)
        EXPECT_EQ(
            texels[static_cast<std::size_t>(i)], i % 8 < 5 && i / 8 < 3 ? colourOfPlace(i % 8, i / 8, 0) : RGBA8());
    expectRightPicture();
}

} // namespace
} // namespace tavo
