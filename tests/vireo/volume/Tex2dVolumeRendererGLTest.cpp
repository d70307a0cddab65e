#include <cmath>
#include <gmock/gmock.h>
#include <stdexcept>
#include <utility>

#include "tavo/base/objects/PException.h"
#include "tests/support/CallRecorder.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/volume/VolumeTest.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/volume/Tex2dVolumeRenderer.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::ThrowsMessage;

// The renderer with its protected parts in reach, and a count of its preparations.
class OpenRenderer : public Tex2dVolumeRenderer
{
public:
    using Tex2dVolumeRenderer::channelMapping;
    using Tex2dVolumeRenderer::mappingUserData;
    using Tex2dVolumeRenderer::slabStarts;
    using Tex2dVolumeRenderer::textureNames;

    void prepareTextures(
        RegularVolume* volume, Vector3f viewDir, const Names& channels, Mapping mapping, void* userData) override
    {
        ++numPreparations;
        lastViewDir = viewDir;
        Tex2dVolumeRenderer::prepareTextures(volume, viewDir, channels, mapping, userData);
    }

    using Tex2dVolumeRenderer::drawVolume;

    void drawVolume(
        RegularVolume* volume, Vector3f viewDir, const Names& channels, Mapping mapping, void* userData) override
    {
        ++numDrawings;
        Tex2dVolumeRenderer::drawVolume(volume, viewDir, channels, mapping, userData);
    }

    void disposeTextures() override
    {
        ++numDisposals;
        Tex2dVolumeRenderer::disposeTextures();
    }

    unsigned int numPreparations = 0;
    unsigned int numDrawings = 0;
    unsigned int numDisposals = 0;
    Vector3f lastViewDir;
};

RGBA8 white(void*, const StaticVector<float, 1>&)
{
    return {255, 255, 255, 255};
}

const Vector3f TOWARDS_Z(0, 0, 1);

const Calls SLICE_PARAMETERS{
    "glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE)",
    "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)",
    "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
    "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP)",
    "glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP)",
};

void append(Calls& calls, const Calls& others)
{
    calls.insert(calls.end(), others.begin(), others.end());
}

Calls callsThatContain(Calls calls, const std::string& text)
{
    std::erase_if(calls, [&](const std::string& call) { return call.find(text) == std::string::npos; });
    return calls;
}

class Tex2dVolumeRendererGLTest : public ContextTest
{
protected:
    void prepare(RegularVolume& volume, const Names& channels = DENSITY)
    {
        m_Renderer.prepareTextures(&volume, TOWARDS_Z, channels, &mapCode, nullptr);
    }

    // The numbers of the slices, as drawing along viewDir binds them.
    std::vector<unsigned int> boundNames(RegularVolume& volume, const Vector3f& viewDir)
    {
        const Calls calls = callsThatContain(
            callsOf([&] { m_Renderer.drawVolume(&volume, viewDir, DENSITY, &white, nullptr); }), "glBindTexture");
        std::vector<unsigned int> names;
        for (const std::string& call : calls)
            names.push_back(static_cast<unsigned int>(std::stoul(call.substr(call.find(',') + 1))));
        return names;
    }

    std::pair<unsigned int, int> orderOf(const Vector3f& viewDir)
    {
        std::pair<unsigned int, int> order;
        m_Renderer.computeOrder(viewDir, order.first, order.second);
        return order;
    }

    static int attribStackDepth()
    {
        int depth = 0;
        glGetIntegerv(GL_ATTRIB_STACK_DEPTH, &depth);
        return depth;
    }

    OpenRenderer m_Renderer;
};

TEST_F(Tex2dVolumeRendererGLTest, ChoosesTheAxisMostNearlyParallelToTheView)
{
    EXPECT_EQ(orderOf({0, 0, -1}), std::make_pair(2u, -1));
    EXPECT_EQ(orderOf({0, 0, 1}), std::make_pair(2u, 1));
    EXPECT_EQ(orderOf({0.1f, -2, 1}), std::make_pair(1u, -1));
    EXPECT_EQ(orderOf({-3, 2, 1}), std::make_pair(0u, -1));
    EXPECT_EQ(orderOf({0.5f, -0.5f, 0}), std::make_pair(0u, 1)) << "the lower of equals";
    EXPECT_EQ(orderOf({0, -1, 1}), std::make_pair(1u, -1));
    EXPECT_EQ(orderOf({1, 1, 1}), std::make_pair(0u, 1));
    EXPECT_EQ(orderOf({0, 0, 0}), std::make_pair(0u, 1));
}

TEST_F(Tex2dVolumeRendererGLTest, PreparesEachSliceInTheTextureBeforeItsOwn)
{
    RegularVolume volume = makeVolume({2, 3, 5});
    Calls expected;
    const auto expectStack = [&](unsigned int count, const std::string& size) {
        for (unsigned int slice = 0; slice < count; ++slice) {
            append(expected, SLICE_PARAMETERS);
            expected.push_back("glTexImage2D(GL_TEXTURE_2D, 0, 4, " + size + ", 0, GL_RGBA, GL_UNSIGNED_BYTE, ptr)");
            expected.push_back("glGenTextures(1, ptr)");
            expected.push_back(
                "glBindTexture(GL_TEXTURE_2D, " + std::to_string(callsThatContain(expected, "glGen").size()) + ")");
        }
    };
    expectStack(2, "4, 8");
    expectStack(3, "2, 8");
    expectStack(5, "2, 4");
    EXPECT_EQ(callsOf([&] { prepare(volume); }), expected);
    EXPECT_THAT(m_Renderer.slabStarts, ElementsAre(ElementsAre(0, 2, 5)));
    EXPECT_THAT(m_Renderer.textureNames, ElementsAre(ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10)));
    EXPECT_EQ(m_Renderer.channelMapping, nullptr);
    EXPECT_EQ(m_Renderer.mappingUserData, nullptr);
}

TEST_F(Tex2dVolumeRendererGLTest, PadsToPowersOfTwo)
{
    for (const auto& [extent, size] : {std::pair(2, 2), {3, 4}, {4, 4}, {5, 8}, {8, 8}, {9, 16}}) {
        RegularVolume volume = makeVolume({2, extent, 2});
        const Calls uploads = callsThatContain(callsOf([&] { prepare(volume); }), "glTexImage2D");
        EXPECT_THAT(uploads.front(), HasSubstr(", 4, " + std::to_string(size) + ", 2, 0,"));
        m_Renderer.disposeTextures();
    }
}

TEST_F(Tex2dVolumeRendererGLTest, MapsEverySampleToItsTexel)
{
    RegularVolume volume = makeCodedVolume({5, 3, 8});
    prepare(volume);
    ASSERT_THAT(m_Renderer.textureNames.front(), SizeIs(16));
    // The textures are taken by the names that drawing binds: start of the stack + slice.
    for (int x = 0; x < 5; ++x) {
        const std::vector<RGBA8> texels = readTexels(static_cast<unsigned int>(x), 4 * 8);
        for (int v = 0; v < 8; ++v)
            for (int u = 0; u < 4; ++u)
                EXPECT_EQ(texels[v * 4 + u], u < 3 ? colourOfPlace(x, u, v) : RGBA8()) << x << u << v;
    }
    for (int y = 0; y < 3; ++y) {
        const std::vector<RGBA8> texels = readTexels(static_cast<unsigned int>(5 + y), 8 * 8);
        for (int v = 0; v < 8; ++v)
            for (int u = 0; u < 8; ++u)
                EXPECT_EQ(texels[v * 8 + u], u < 5 ? colourOfPlace(u, y, v) : RGBA8()) << y << u << v;
    }
    for (int z = 0; z < 8; ++z) {
        const std::vector<RGBA8> texels = readTexels(static_cast<unsigned int>(8 + z), 8 * 4);
        for (int v = 0; v < 4; ++v)
            for (int u = 0; u < 8; ++u)
                EXPECT_EQ(texels[v * 8 + u], u < 5 && v < 3 ? colourOfPlace(u, v, z) : RGBA8()) << z << u << v;
    }
}

TEST_F(Tex2dVolumeRendererGLTest, HandsTheUserDataToTheMapping)
{
    RegularVolume volume = makeVolume({2, 2, 2});
    unsigned int numCalls = 0;
    const auto count = [](void* userData, const StaticVector<float, 1>&) {
        ++*static_cast<unsigned int*>(userData);
        return RGBA8();
    };
    m_Renderer.prepareTextures(&volume, TOWARDS_Z, DENSITY, count, &numCalls);
    EXPECT_EQ(numCalls, 3u * 8u);
}

// The mapping writes down what it is called with, and answers it as alpha.
TEST_F(Tex2dVolumeRendererGLTest, MapsChannelsOfMoreComponentsByTheirAlphas)
{
    const auto log = [](void* userData, const StaticVector<float, 1>& value) {
        static_cast<std::vector<float>*>(userData)->push_back(value[0]);
        return RGBA8(1, 2, 3, value[0]);
    };
    const auto textureOf = [&](unsigned int numComponents, std::vector<float>& values) {
        RegularVolume volume = makeVolume({2, 2, 2}, numComponents,
            [](int, int, int, unsigned int component) { return 100.0f + static_cast<float>(component); });
        m_Renderer.disposeTextures();
        m_Renderer.prepareTextures(&volume, TOWARDS_Z, DENSITY, log, &values);
        return readTexels(0, 4).front();
    };
    std::vector<float> values;
    EXPECT_EQ(textureOf(2, values), RGBA8(100, 101, 0, 16));
    EXPECT_THAT(std::vector<float>(values.begin(), values.begin() + 4), ElementsAre(101, 100, 101, 100));
    values.clear();
    EXPECT_EQ(textureOf(3, values), RGBA8(100, 101, 102, 16));
    EXPECT_THAT(std::vector<float>(values.begin(), values.begin() + 3), ElementsAre(102, 101, 100));
    values.clear();
    EXPECT_EQ(textureOf(4, values), RGBA8(100, 101, 102, 103));
    EXPECT_THAT(std::vector<float>(values.begin(), values.begin() + 4), ElementsAre(103, 102, 101, 100));
}

TEST_F(Tex2dVolumeRendererGLTest, StartsWithoutAMapping)
{
    EXPECT_EQ(m_Renderer.channelMapping, nullptr);
    EXPECT_EQ(m_Renderer.mappingUserData, nullptr);
    EXPECT_THAT(m_Renderer.textureNames, IsEmpty());
    EXPECT_THAT(m_Renderer.slabStarts, IsEmpty());
}

TEST_F(Tex2dVolumeRendererGLTest, DrawsAndDisposesThroughItsVirtualOperations)
{
    RegularVolume volume = makeVolume({2, 2, 2});
    unsigned int numCalls = 0;
    const auto count = [](void* userData, const StaticVector<float, 1>&) {
        ++*static_cast<unsigned int*>(userData);
        return RGBA8();
    };
    m_Renderer.drawVolume(&volume, {0, 3, 1}, std::string("density"), count, &numCalls);
    EXPECT_EQ(m_Renderer.numDrawings, 1u) << "of the list";
    EXPECT_EQ(m_Renderer.numPreparations, 1u);
    EXPECT_EQ(m_Renderer.numDisposals, 1u);
    EXPECT_EQ(m_Renderer.lastViewDir, Vector3f(0, 3, 1));
    EXPECT_EQ(numCalls, 24u) << "with the user's data";
}

TEST_F(Tex2dVolumeRendererGLTest, MapsEachChannelsOwnValues)
{
    const VertexDescriptor channels = makeLayout({{"a", 1, FLOAT}, {"b", 1, FLOAT}});
    auto samples = std::make_unique<PointSet>(channels, 8);
    for (unsigned int i = 0; i < 8; ++i) {
        const float values[] = {codeOf(1, 2, 3), codeOf(4, 5, 6)};
        std::memcpy(samples->getData() + 8 * i, values, sizeof values);
    }
    RegularVolume volume({2, 2, 2}, {}, std::move(samples));
    prepare(volume, {"a", "b"});
    EXPECT_EQ(readTexels(1, 4).front(), colourOfPlace(1, 2, 3));
    EXPECT_EQ(readTexels(7, 4).front(), colourOfPlace(4, 5, 6)) << "in the texture before the second channel's second";
}

TEST_F(Tex2dVolumeRendererGLTest, KeepsTheTexturesThatWereMadeBeforeARefusal)
{
    const VertexDescriptor channels = makeLayout({{"a", 1, FLOAT}, {"b", 1, INT}});
    RegularVolume volume({2, 2, 2}, {}, std::make_unique<PointSet>(channels, 8));
    EXPECT_THROW(prepare(volume, {"a", "b"}), PException);
    EXPECT_THAT(m_Renderer.slabStarts, ElementsAre(ElementsAre(0, 2, 4), ElementsAre(0)));
    EXPECT_THAT(callsOf([&] { m_Renderer.disposeTextures(); }), ElementsAre("glDeleteTextures(6, (1, 2, 3, 4, 5, 6))"));
}

TEST_F(Tex2dVolumeRendererGLTest, StartsTheStacksOfEachChannelAnew)
{
    const VertexDescriptor channels = makeLayout({{"a", 1, FLOAT}, {"label", 1, BYTE}, {"b", 2, FLOAT}});
    RegularVolume volume({2, 3, 4}, {}, std::make_unique<PointSet>(channels, 24));
    prepare(volume, {"a", "b"});
    EXPECT_THAT(m_Renderer.slabStarts, ElementsAre(ElementsAre(0, 2, 5), ElementsAre(0, 2, 5)));
    EXPECT_THAT(m_Renderer.textureNames, ElementsAre(SizeIs(9), SizeIs(9)));
}

TEST_F(Tex2dVolumeRendererGLTest, DisposesOfOldTexturesFirst)
{
    RegularVolume volume = makeVolume({2, 2, 2});
    prepare(volume);
    const Calls calls = callsOf([&] { prepare(volume); });
    EXPECT_EQ(calls.front(), "glDeleteTextures(6, (1, 2, 3, 4, 5, 6))");
    EXPECT_THAT(m_Renderer.textureNames, ElementsAre(SizeIs(6)));
}

TEST_F(Tex2dVolumeRendererGLTest, DisposesOfTheTexturesOfEachChannel)
{
    m_Renderer.textureNames = {{3, 4}, {}, {5}};
    m_Renderer.slabStarts.resize(3);
    EXPECT_THAT(callsOf([&] { m_Renderer.disposeTextures(); }),
        ElementsAre("glDeleteTextures(2, (3, 4))", "glDeleteTextures(1, (5))"));
    EXPECT_THAT(m_Renderer.textureNames, IsEmpty());
    EXPECT_THAT(m_Renderer.slabStarts, IsEmpty());
    EXPECT_THAT(callsOf([&] { m_Renderer.disposeTextures(); }), IsEmpty());
}

TEST_F(Tex2dVolumeRendererGLTest, ThrowsWithoutChannelsBeforeAnythingElse)
{
    RegularVolume volume = makeVolume({2, 2, 2});
    prepare(volume);
    EXPECT_THAT(callsOf([&] {
        EXPECT_THAT([&] { prepare(volume, {}); }, ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"));
    }),
        IsEmpty());
    EXPECT_THAT(m_Renderer.textureNames, SizeIs(1));
}

TEST_F(Tex2dVolumeRendererGLTest, RefusesChannelsThatAreNotFloat)
{
    for (const unsigned int type : {BYTE, INT}) {
        RegularVolume volume({2, 2, 2}, {}, std::make_unique<PointSet>(makeLayout({{"density", 1, type}}), 8));
        EXPECT_THAT([&] { prepare(volume); },
            ThrowsMessage<PException>("Tex2dVolumeRenderer::prepareTextures - only float channels are supported."));
        EXPECT_THAT(m_Renderer.slabStarts, ElementsAre(ElementsAre(0))) << "the first stack was begun";
        EXPECT_THAT(m_Renderer.textureNames, ElementsAre(IsEmpty()));
        EXPECT_EQ(m_Renderer.channelMapping, &mapCode) << "and not forgotten";
    }
}

TEST_F(Tex2dVolumeRendererGLTest, RefusesMoreThanFourComponents)
{
    RegularVolume volume({2, 2, 2}, {}, std::make_unique<PointSet>(makeLayout({{"density", 5, FLOAT}}), 8));
    EXPECT_THAT([&] { prepare(volume); },
        ThrowsMessage<PException>("Tex2dVolumeRenderer::prepareTextures - only channel dimension 1..4 is supported."));
}

TEST_F(Tex2dVolumeRendererGLTest, PassesOnWhatTheVolumeRefuses)
{
    RegularVolume volume = makeVolume({2, 2, 2});
    EXPECT_THAT([&] { prepare(volume, {"missing"}); },
        ThrowsMessage<PException>("VertexDescriptor::getIndex() - no attribute 'missing'"));
    RegularVolume empty({2, 2, 2}, {});
    EXPECT_THAT(
        [&] { prepare(empty); }, ThrowsMessage<PException>("VertexDescriptor::getIndex() - no attribute 'density'"));
    RegularVolume cut({2, 2, 2}, {}, std::make_unique<PointSet>(makeLayout({{"density", 1, FLOAT}}), 7));
    EXPECT_THAT([&] { prepare(cut); },
        ThrowsMessage<PException>("RegularVolume::mapChannel() - data size does not match volume."));
}

TEST_F(Tex2dVolumeRendererGLTest, IsUsableAfterItRefused)
{
    RegularVolume good = makeCodedVolume({2, 2, 2});
    RegularVolume bad({2, 2, 2}, {}, std::make_unique<PointSet>(makeLayout({{"density", 1, INT}}), 8));
    const int depth = attribStackDepth();
    EXPECT_THROW(m_Renderer.drawVolume(&bad, TOWARDS_Z, DENSITY, &mapCode, nullptr), PException);
    EXPECT_EQ(attribStackDepth(), depth);
    EXPECT_THAT([&] { m_Renderer.drawVolume(&good, TOWARDS_Z, DENSITY, &mapCode, nullptr); },
        ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"))
        << "the stacks that are missing";
    EXPECT_EQ(attribStackDepth(), depth);
    m_Renderer.disposeTextures();
    m_Renderer.drawVolume(&good, TOWARDS_Z, DENSITY, &mapCode, nullptr);
    EXPECT_THAT(m_Renderer.textureNames, ElementsAre(SizeIs(6)));
}

TEST_F(Tex2dVolumeRendererGLTest, ThrowsIfAnExtentAcrossTheStackIsOne)
{
    const int depth = attribStackDepth();
    for (const Vector3i& extends : {Vector3i(1, 4, 4), Vector3i(4, 1, 4), Vector3i(4, 4, 1), Vector3i(1, 1, 1)}) {
        RegularVolume volume = makeCodedVolume(extends);
        EXPECT_THAT([&] { m_Renderer.drawVolume(&volume, TOWARDS_Z, DENSITY, &mapCode, nullptr); },
            ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"));
        EXPECT_EQ(attribStackDepth(), depth);
        m_Renderer.disposeTextures();
    }
}

TEST_F(Tex2dVolumeRendererGLTest, ReturnsAtOnceFromAnEmptyPlane)
{
    RegularVolume volume({0, 3, 3}, {}, std::make_unique<PointSet>(makeLayout({{"density", 1, FLOAT}}), 0));
    prepare(volume);
    EXPECT_THAT(m_Renderer.slabStarts, ElementsAre(ElementsAre(0, 0)));
    EXPECT_THAT(m_Renderer.textureNames, ElementsAre(IsEmpty()));
    EXPECT_EQ(m_Renderer.channelMapping, &mapCode) << "and does not forget the mapping";
}

TEST_F(Tex2dVolumeRendererGLTest, DrawsNothingWithoutSamples)
{
    const auto draw = [&](RegularVolume* volume) {
        return callsOf([&] { m_Renderer.drawVolume(volume, TOWARDS_Z, DENSITY, &white, nullptr); });
    };
    EXPECT_THAT(draw(nullptr), IsEmpty());
    for (const Vector3i& extends : {Vector3i(0, 2, 2), Vector3i(2, 0, 2), Vector3i(2, 2, 0)}) {
        RegularVolume volume(extends, {});
        EXPECT_THAT(draw(&volume), IsEmpty());
    }
}

TEST_F(Tex2dVolumeRendererGLTest, RefusesWithoutMultitextureBeforeAnyCall)
{
    RegularVolume volume = makeVolume({2, 2, 2});
    const auto entryPoint = std::exchange(glActiveTextureARB, nullptr);
    OpenRenderer renderer;
    const Calls calls = callsOf([&] {
        EXPECT_THAT([&] { renderer.drawVolume(&volume, TOWARDS_Z, DENSITY, &white, nullptr); },
            ThrowsMessage<PException>(
                "Tex2dVolumeRenderer::drawVolume - GL_ARB_multitexture is missing: there is no glActiveTextureARB"));
    });
    glActiveTextureARB = entryPoint;
    EXPECT_THAT(calls, IsEmpty());
    EXPECT_EQ(renderer.numPreparations, 0u);
}

TEST_F(Tex2dVolumeRendererGLTest, DrawsAQuadForEachSliceFromTheBack)
{
    RegularVolume volume =
        makeVolume({5, 3, 8}, 1, [](int, int, int, unsigned int) { return 0.0f; }, {{-1, -2, -4}, {1, 2, 4}});
    prepare(volume);
    Calls expected{"glPushAttrib(GL_ALL_ATTRIB_BITS)", "glEnable(GL_BLEND)",
        "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)", "glEnable(GL_TEXTURE_2D)", "glDepthMask(GL_FALSE)"};
    for (int slice = 7; slice >= 0; --slice) {
        const std::string z = std::to_string(slice - 4);
        append(expected,
            {"glActiveTextureARB(GL_TEXTURE0)", "glBindTexture(GL_TEXTURE_2D, " + std::to_string(8 + slice) + ")"});
        append(expected, SLICE_PARAMETERS);
        append(expected, {"glActiveTextureARB(GL_TEXTURE0)", "glBegin(GL_QUADS)",        //
                             "glTexCoord2f(0, 0)", "glVertex3f(-1, -2, " + z + ")",      //
                             "glTexCoord2f(0, 0.75)", "glVertex3f(-1, 2, " + z + ")",    //
                             "glTexCoord2f(0.625, 0.75)", "glVertex3f(1, 2, " + z + ")", //
                             "glTexCoord2f(0.625, 0)", "glVertex3f(1, -2, " + z + ")", "glEnd()"});
    }
    expected.push_back("glPopAttrib()");
    EXPECT_EQ(callsOf([&] { m_Renderer.drawVolume(&volume, TOWARDS_Z, DENSITY, &white, nullptr); }), expected);
}

TEST_F(Tex2dVolumeRendererGLTest, DrawsTheCornersOfTheOtherAxesInTheirOrder)
{
    RegularVolume volume =
        makeVolume({2, 2, 2}, 1, [](int, int, int, unsigned int) { return 0.0f; }, {{-1, -2, -4}, {1, 2, 4}});
    const auto firstVertices = [&](const Vector3f& viewDir) {
        Calls calls = callsThatContain(
            callsOf([&] { m_Renderer.drawVolume(&volume, viewDir, DENSITY, &white, nullptr); }), "glVertex3f");
        calls.resize(4);
        return calls;
    };
    prepare(volume);
    EXPECT_THAT(firstVertices({1, 0, 0}),
        ElementsAre("glVertex3f(0, -2, -4)", "glVertex3f(0, -2, 4)", "glVertex3f(0, 2, 4)", "glVertex3f(0, 2, -4)"));
    EXPECT_THAT(firstVertices({0, -1, 0}), ElementsAre("glVertex3f(-1, -2, -4)", "glVertex3f(-1, -2, 4)",
                                               "glVertex3f(1, -2, 4)", "glVertex3f(1, -2, -4)"));
}

TEST_F(Tex2dVolumeRendererGLTest, OrdersSlicesByTheSignOfTheView)
{
    RegularVolume volume = makeVolume({2, 3, 4});
    prepare(volume);
    EXPECT_THAT(boundNames(volume, {1, 0, 0}), ElementsAre(1, 0));
    EXPECT_THAT(boundNames(volume, {-1, 0, 0}), ElementsAre(0, 1));
    EXPECT_THAT(boundNames(volume, {0, 1, 0}), ElementsAre(4, 3, 2));
    EXPECT_THAT(boundNames(volume, {0, -1, 0}), ElementsAre(2, 3, 4));
    EXPECT_THAT(boundNames(volume, {0, 0, 1}), ElementsAre(8, 7, 6, 5));
    EXPECT_THAT(boundNames(volume, {0, 0, -1}), ElementsAre(5, 6, 7, 8));
}

TEST_F(Tex2dVolumeRendererGLTest, BindsFurtherChannelsOnFurtherUnits)
{
    const VertexDescriptor channels = makeLayout({{"a", 1, FLOAT}, {"b", 1, FLOAT}});
    RegularVolume volume({2, 2, 2}, {}, std::make_unique<PointSet>(channels, 8));
    prepare(volume, {"a", "b"});
    Calls calls = callsOf([&] { m_Renderer.drawVolume(&volume, TOWARDS_Z, Names{"a", "b"}, &white, nullptr); });
    std::erase_if(
        calls, [](const std::string& call) { return !call.starts_with("glBind") && !call.starts_with("glActive"); });
    calls.resize(5);
    EXPECT_THAT(calls,
        ElementsAre("glActiveTextureARB(GL_TEXTURE0)", "glBindTexture(GL_TEXTURE_2D, 5)",
            "glActiveTextureARB(GL_TEXTURE1)", "glBindTexture(GL_TEXTURE_2D, 5)", "glActiveTextureARB(GL_TEXTURE0)"))
        << "numbers of textures of the channel are taken for names";
}

TEST_F(Tex2dVolumeRendererGLTest, PreparesForAnotherNumberOfChannelsOnly)
{
    const VertexDescriptor channels = makeLayout({{"a", 1, FLOAT}, {"b", 1, FLOAT}});
    RegularVolume volume({2, 2, 2}, {}, std::make_unique<PointSet>(channels, 8));
    RegularVolume other({3, 3, 3}, {}, std::make_unique<PointSet>(channels, 27));
    m_Renderer.drawVolume(&volume, TOWARDS_Z, "a", &white, nullptr);
    EXPECT_EQ(m_Renderer.numPreparations, 1u);
    m_Renderer.drawVolume(&volume, {1, 0, 0}, "b", &mapCode, &volume);
    m_Renderer.drawVolume(&other, TOWARDS_Z, "a", &white, nullptr);
    EXPECT_EQ(m_Renderer.numPreparations, 1u);
    m_Renderer.drawVolume(&volume, TOWARDS_Z, Names{"a", "b"}, &white, nullptr);
    EXPECT_EQ(m_Renderer.numPreparations, 2u);
    m_Renderer.disposeTextures();
    m_Renderer.drawVolume(&volume, TOWARDS_Z, Names{"a", "b"}, &white, nullptr);
    EXPECT_EQ(m_Renderer.numPreparations, 3u);
}

TEST_F(Tex2dVolumeRendererGLTest, DrawsBareQuadsWithoutChannels)
{
    RegularVolume volume = makeVolume({2, 2, 3});
    const Calls calls = callsOf([&] { m_Renderer.drawVolume(&volume, TOWARDS_Z, Names(), &white, nullptr); });
    EXPECT_EQ(m_Renderer.numPreparations, 0u);
    EXPECT_THAT(callsThatContain(calls, "glBindTexture"), IsEmpty());
    EXPECT_THAT(callsThatContain(calls, "glBegin"), SizeIs(3));
}

TEST_F(Tex2dVolumeRendererGLTest, ThrowsWithoutChannelsAfterAPreparation)
{
    RegularVolume volume = makeVolume({2, 2, 2});
    prepare(volume);
    const int depth = attribStackDepth();
    EXPECT_THROW(m_Renderer.drawVolume(&volume, TOWARDS_Z, Names(), &white, nullptr), std::out_of_range);
    EXPECT_EQ(attribStackDepth(), depth);
}

TEST_F(Tex2dVolumeRendererGLTest, DeletesNoTextureWithItself)
{
    RegularVolume volume = makeVolume({2, 2, 2});
    auto renderer = std::make_unique<Tex2dVolumeRenderer>();
    renderer->drawVolume(&volume, TOWARDS_Z, "density", &white, nullptr);
    EXPECT_THAT(callsOf([&] { renderer.reset(); }), IsEmpty());
}

TEST_F(Tex2dVolumeRendererGLTest, SharesItsTexturesWithItsCopies)
{
    RegularVolume volume = makeVolume({2, 2, 2});
    prepare(volume);
    OpenRenderer copy(m_Renderer);
    EXPECT_EQ(copy.textureNames, m_Renderer.textureNames);
    EXPECT_EQ(copy.slabStarts, m_Renderer.slabStarts);
    m_Renderer.channelMapping = &white;
    m_Renderer.mappingUserData = &volume;
    EXPECT_EQ(OpenRenderer(m_Renderer).channelMapping, &white);
    EXPECT_EQ(OpenRenderer(m_Renderer).mappingUserData, &volume);
    OpenRenderer assigned;
    assigned = m_Renderer;
    EXPECT_EQ(assigned.textureNames, m_Renderer.textureNames);
}

// Slices in colours of their own, opaque: what is seen is the one in front, the right way up. A texel is a pixel.
TEST_F(Tex2dVolumeRendererGLTest, ShowsTheSliceInFrontTheRightWayUp)
{
    constexpr int n = 4;
    RegularVolume volume = makeCodedVolume({n, n, n});
    lookAtFront(n);
    m_Renderer.drawVolume(&volume, {0, 0, -1}, DENSITY, &mapCode, nullptr);
    EXPECT_EQ(readPixels(n, n), frontPicture(n));
}

// Half transparent slices over each other: black below, then the colours of the stack from its back.
TEST_F(Tex2dVolumeRendererGLTest, BlendsEachSliceOverThoseBehindIt)
{
    RegularVolume volume =
        makeVolume({2, 2, 3}, 1, [](int, int, int z, unsigned int) { return static_cast<float>(z); });
    const auto colour = [](void*, const StaticVector<float, 1>& value) {
        return value[0] == 0 ? RGBA8(255, 0, 0, 128) : value[0] == 1 ? RGBA8(0, 255, 0, 128) : RGBA8(0, 0, 255, 128);
    };
    glMatrixMode(GL_PROJECTION);
    glOrtho(-1, 1, -1, 1, -2, 2);
    glClear(GL_COLOR_BUFFER_BIT);
    m_Renderer.drawVolume(&volume, {0, 0, -1}, DENSITY, colour, nullptr);
    const Pixel middle = readPixels().at(32, 32);
    EXPECT_NEAR(middle[0], 32, 2);
    EXPECT_NEAR(middle[1], 64, 2);
    EXPECT_NEAR(middle[2], 128, 2);
}

TEST_F(Tex2dVolumeRendererGLTest, LeavesTheStateAsItWas)
{
    RegularVolume volume = makeVolume({2, 2, 2});
    unsigned int name = 0;
    glGenTextures(1, &name);
    glActiveTextureARB(GL_TEXTURE0 + 1);
    glBindTexture(GL_TEXTURE_2D, name);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    m_Renderer.drawVolume(&volume, TOWARDS_Z, DENSITY, &white, nullptr);
    const auto integer = [](GLenum parameter) {
        int value = 0;
        glGetIntegerv(parameter, &value);
        return value;
    };
    EXPECT_EQ(integer(GL_ACTIVE_TEXTURE_ARB), GL_TEXTURE0 + 1);
    EXPECT_EQ(integer(GL_TEXTURE_BINDING_2D), static_cast<int>(name));
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    EXPECT_EQ(integer(GL_DEPTH_WRITEMASK), GL_TRUE);
    glActiveTextureARB(GL_TEXTURE0);
    EXPECT_EQ(integer(GL_TEXTURE_BINDING_2D), 0);
    m_Renderer.disposeTextures();
    glDeleteTextures(1, &name);
}

} // namespace
} // namespace tavo
