#include "tavo/points/RegularVolume.h"

#include <array>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

#include "tavo/base/objects/PException.h"

namespace tavo {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::ThrowsMessage;

constexpr int ALL = RegularVolume::UNRESTRICTED;
constexpr int NX = 3;
constexpr int NY = 4;
constexpr int NZ = 5;
constexpr unsigned int NUM_SAMPLES = NX * NY * NZ;

// The sample (x, y, z) of a volume in which they are all different.
float sampleAt(int x, int y, int z)
{
    return static_cast<float>(x + 10 * y + 100 * z);
}

// A byte and an int between two float channels, "density" of one component and "gradient" of three.
VertexDescriptor channels()
{
    VertexDescriptor layout;
    layout.pushAttrib({"label", 1, VertexAttribDescriptor::TYPE_UNSIGNED_BYTE});
    layout.pushAttrib({"density", 1, VertexAttribDescriptor::TYPE_FLOAT});
    layout.pushAttrib({"count", 1, VertexAttribDescriptor::TYPE_INT});
    layout.pushAttrib({"gradient", 3, VertexAttribDescriptor::TYPE_FLOAT});
    return layout;
}

std::unique_ptr<PointSet> makeSamples(unsigned int numPoints = NUM_SAMPLES)
{
    auto samples = std::make_unique<PointSet>(channels(), numPoints);
    unsigned char* const data = samples->getData();
    for (unsigned int i = 0; i < numPoints; ++i) {
        const float density = sampleAt(i % NX, i / NX % NY, i / (NX * NY));
        const std::array<float, 3> gradient{density, density + 0.25f, density + 0.5f};
        unsigned char* const sample = data + i * samples->getDescr().getSize();
        std::memcpy(sample + 1, &density, sizeof density);
        std::memcpy(sample + 9, gradient.data(), sizeof gradient);
    }
    return samples;
}

RegularVolume makeVolume()
{
    return RegularVolume({NX, NY, NZ}, {{0, 0, 0}, {1, 2, 3}}, makeSamples());
}

// Keeps what it is called with; gives colours that count the calls.
struct Calls
{
    static RGBA8 map(void* self, const StaticVector<float, 1>& value)
    {
        auto* const calls = static_cast<Calls*>(self);
        calls->values.push_back(value[0]);
        const auto number = calls->values.size();
        return {number, 0, 0, 255};
    }

    std::vector<float> values;
};

std::vector<float> mappedValues(const RegularVolume& volume, const Vector3i& min, const Vector3i& max)
{
    Calls calls;
    std::vector<RGBA8> out(NUM_SAMPLES);
    volume.mapChannel<1>("density", min, max, &Calls::map, &calls, out.data());
    for (std::size_t i = 0; i < out.size(); ++i)
        EXPECT_EQ(out[i][0], i < calls.values.size() ? i + 1 : 0) << "one colour for each, in this order";
    return calls.values;
}

TEST(RegularVolumeTest, KnowsItsExtentsItsBoxAndItsSamples)
{
    auto samples = makeSamples();
    const PointSet* const raw = samples.get();
    RegularVolume volume({NX, NY, NZ}, {{0, 0, 0}, {1, 2, 3}}, std::move(samples));
    EXPECT_EQ(volume.getExtends(), Vector3i(NX, NY, NZ));
    EXPECT_EQ(volume.getBoundingBox(), Box3f({0, 0, 0}, {1, 2, 3}));
    EXPECT_EQ(volume.getPointSet(), raw);
    EXPECT_EQ(std::as_const(volume).getPointSet(), raw);
    EXPECT_EQ(RegularVolume({1, 1, 1}, {}).getPointSet(), nullptr);
}

TEST(RegularVolumeTest, HasANumberOfItsOwnWhereverItMoves)
{
    RegularVolume first = makeVolume();
    const std::uint64_t number = first.getVolumeNumber();
    EXPECT_NE(makeVolume().getVolumeNumber(), number);
    RegularVolume second = makeVolume();
    second = std::move(first);
    EXPECT_EQ(second.getVolumeNumber(), number);
    EXPECT_NE(first.getVolumeNumber(), number) << "a volume without samples now";
    EXPECT_EQ(first.getExtends(), Vector3i(0, 0, 0));
    const RegularVolume third(std::move(second));
    EXPECT_EQ(third.getVolumeNumber(), number);
    EXPECT_NE(second.getVolumeNumber(), number);
    EXPECT_EQ(third.getExtends(), Vector3i(NX, NY, NZ));
    EXPECT_NE(third.getPointSet(), nullptr);
}

TEST(RegularVolumeTest, RefusesNegativeExtents)
{
    EXPECT_THAT(
        [] {
            RegularVolume({1, -1, 1}, {});
        },
        ThrowsMessage<PException>("RegularVolume::RegularVolume() - negative number of samples"));
}

TEST(RegularVolumeTest, MapsAllSamplesXBeforeYBeforeZ)
{
    std::vector<float> expected;
    for (int z = 0; z < NZ; ++z)
        for (int y = 0; y < NY; ++y)
            for (int x = 0; x < NX; ++x)
                expected.push_back(sampleAt(x, y, z));
    EXPECT_EQ(mappedValues(makeVolume(), {ALL, ALL, ALL}, {ALL, ALL, ALL}), expected);
}

TEST(RegularVolumeTest, MapsAPlaneOfEachAxis)
{
    const RegularVolume volume = makeVolume();
    std::vector<float> x;
    for (int v = 0; v < NZ; ++v)
        for (int u = 0; u < NY; ++u)
            x.push_back(sampleAt(2, u, v));
    EXPECT_EQ(mappedValues(volume, {2, ALL, ALL}, {2, ALL, ALL}), x);
    std::vector<float> y;
    for (int v = 0; v < NZ; ++v)
        for (int u = 0; u < NX; ++u)
            y.push_back(sampleAt(u, 3, v));
    EXPECT_EQ(mappedValues(volume, {ALL, 3, ALL}, {ALL, 3, ALL}), y);
    std::vector<float> z;
    for (int v = 0; v < NY; ++v)
        for (int u = 0; u < NX; ++u)
            z.push_back(sampleAt(u, v, 4));
    EXPECT_EQ(mappedValues(volume, {ALL, ALL, 4}, {ALL, ALL, 4}), z);
}

TEST(RegularVolumeTest, MapsTheBlockWithinBothBounds)
{
    const RegularVolume volume = makeVolume();
    EXPECT_THAT(mappedValues(volume, {1, 0, 2}, {2, 1, 2}),
        ElementsAre(sampleAt(1, 0, 2), sampleAt(2, 0, 2), sampleAt(1, 1, 2), sampleAt(2, 1, 2)));
    EXPECT_THAT(mappedValues(volume, {ALL, 3, 4}, {0, ALL, ALL}), ElementsAre(sampleAt(0, 3, 4)))
        << "each bound by itself";
    EXPECT_THAT(mappedValues(volume, {1, 2, 3}, {1, 2, 3}), ElementsAre(sampleAt(1, 2, 3)));
}

TEST(RegularVolumeTest, HandsOnAllComponentsOfAChannel)
{
    const RegularVolume volume = makeVolume();
    std::vector<Vector3f> values;
    std::array<RGBA8, 1> out;
    volume.mapChannelBy<3>(
        "gradient", {1, 1, 1}, {1, 1, 1},
        [&](const Vector3f& value) {
            values.push_back(value);
            return RGBA8(1, 2, 3, 4);
        },
        out.data());
    EXPECT_THAT(values, ElementsAre(Vector3f(111, 111.25f, 111.5f)));
    EXPECT_EQ(out[0], RGBA8(1, 2, 3, 4));
}

TEST(RegularVolumeTest, LeavesTheColoursBetweenRowsAlone)
{
    const RegularVolume volume = makeVolume();
    std::array<RGBA8, 4 * NY> out;
    volume.mapChannelBy<1>(
        "density", {ALL, ALL, 0}, {ALL, ALL, 0}, [](const StaticVector<float, 1>&) { return RGBA8(9, 9, 9, 9); },
        out.data(), 4);
    for (std::size_t i = 0; i < out.size(); ++i)
        EXPECT_EQ(out[i], i % 4 < NX ? RGBA8(9, 9, 9, 9) : RGBA8()) << i;
}

// Its rows are single samples; they stay rows.
TEST(RegularVolumeTest, KeepsRowsOfAnAxisOfOneSampleApart)
{
    const RegularVolume volume({1, 2, 1}, {}, makeSamples(2));
    std::array<RGBA8, 8> out;
    volume.mapChannelBy<1>(
        "density", {ALL, ALL, 0}, {ALL, ALL, 0}, [](const StaticVector<float, 1>&) { return RGBA8(9, 9, 9, 9); },
        out.data(), 4);
    for (std::size_t i = 0; i < out.size(); ++i)
        EXPECT_EQ(out[i], i % 4 == 0 ? RGBA8(9, 9, 9, 9) : RGBA8()) << i;
}

TEST(RegularVolumeTest, MapsNothingOfAnEmptyVolume)
{
    const RegularVolume volume({0, 3, 3}, {}, makeSamples(0));
    EXPECT_THAT(mappedValues(volume, {ALL, ALL, ALL}, {ALL, ALL, ALL}), ElementsAre());
}

// --- channels that were looked up ---

TEST(RegularVolumeTest, LooksAChannelUpOnceForMany)
{
    const RegularVolume volume = makeVolume();
    const VolumeChannel density = volume.getChannel("density");
    EXPECT_TRUE(density.isFloat());
    EXPECT_EQ(density.getNumComponents(), 1u);
    EXPECT_EQ(volume.getChannel("gradient").getNumComponents(), 3u);
    EXPECT_FALSE(volume.getChannel("label").isFloat());

    const auto valuesBy = [&](const auto& channel) {
        std::vector<float> values;
        volume.forEachSample<1>(channel, {ALL, ALL, 1}, {ALL, ALL, 1},
            [&](const StaticVector<float, 1>& sample, std::size_t, std::size_t) { values.push_back(sample[0]); });
        return values;
    };
    EXPECT_EQ(valuesBy(density), valuesBy(std::string("density")));
    EXPECT_EQ(valuesBy(makeVolume().getChannel("density")), valuesBy(density)) << "of another volume of the layout";
}

TEST(RegularVolumeTest, HasNoChannelsWithoutSamples)
{
    EXPECT_THAT(
        [] {
            RegularVolume({1, 1, 1}, {}).getChannel("density");
        },
        ThrowsMessage<PException>("VertexDescriptor::getIndex() - no attribute 'density'"));
}

class RegularVolumeRefusalTest : public testing::Test
{
protected:
    template <unsigned int N = 1>
    void map(const RegularVolume& volume, const std::string& channel, const Vector3i& min = {ALL, ALL, ALL},
        const Vector3i& max = {ALL, ALL, ALL})
    {
        volume.mapChannelBy<N>(
            channel, min, max, [](const StaticVector<float, N>&) { return RGBA8(9, 9, 9, 9); }, m_Out.data());
    }

    void TearDown() override { EXPECT_THAT(m_Out, Each(RGBA8())) << "nothing was mapped"; }

    std::vector<RGBA8> m_Out = std::vector<RGBA8>(2 * NUM_SAMPLES);
};

TEST_F(RegularVolumeRefusalTest, NeedsAsManySamplesAsItsExtentsSay)
{
    const auto message = ThrowsMessage<PException>("RegularVolume::mapChannel() - data size does not match volume.");
    EXPECT_THAT([&] { map(RegularVolume({NX, NY, NZ}, {}), "density"); }, message);
    EXPECT_THAT([&] { map(RegularVolume({NX, NY, NZ}, {}, makeSamples(NUM_SAMPLES - 1)), "density"); }, message);
    EXPECT_THAT([&] { map(RegularVolume({NX, NY, NZ}, {}, makeSamples(NUM_SAMPLES + 1)), "density"); }, message);
    EXPECT_THAT([&] { map(RegularVolume({0, NY, NZ}, {}, makeSamples(1)), "density"); }, message);
    constexpr int huge = 1 << 22; // its cube is a multiple of 2^64
    EXPECT_THAT([&] { map(RegularVolume({huge, huge, huge}, {}, makeSamples(0)), "density"); }, message);
}

TEST_F(RegularVolumeRefusalTest, NeedsAChannelOfAsManyFloats)
{
    const RegularVolume volume = makeVolume();
    const auto message =
        ThrowsMessage<PException>("RegularVolume::mapChannel() - data format does not match channel format.");
    EXPECT_THAT([&] { map<2>(volume, "density"); }, message);
    EXPECT_THAT([&] { map<1>(volume, "gradient"); }, message);
    EXPECT_THAT([&] { map<1>(volume, "label"); }, message);
    EXPECT_THAT([&] { map<1>(volume, "count"); }, message);
    EXPECT_THAT([&] { map<1>(volume, "missing"); },
        ThrowsMessage<PException>("VertexDescriptor::getIndex() - no attribute 'missing'"));
}

TEST_F(RegularVolumeRefusalTest, NeedsAChannelThatLiesWithinItsSamples)
{
    const VolumeChannel channel = makeVolume().getChannel("gradient");
    VertexDescriptor narrow;
    narrow.pushAttrib(VertexAttribDescriptor("gradient", 3, VertexAttribDescriptor::TYPE_FLOAT));
    const RegularVolume other({NX, NY, NZ}, {}, std::make_unique<PointSet>(narrow, NUM_SAMPLES));
    const auto mapByIt = [&] {
        other.mapChannelBy<3>(
            channel, {ALL, ALL, ALL}, {ALL, ALL, ALL}, [](const Vector3f&) { return RGBA8(9, 9, 9, 9); }, m_Out.data());
    };
    EXPECT_THAT(
        mapByIt, ThrowsMessage<PException>("RegularVolume::mapChannel() - data format does not match channel format."));
}

TEST_F(RegularVolumeRefusalTest, NeedsBoundsWithinTheVolume)
{
    const RegularVolume volume = makeVolume();
    const auto message =
        ThrowsMessage<PException>("RegularVolume::mapChannel() - the bounds are not within the volume");
    EXPECT_THAT([&] { map(volume, "density", {NX, ALL, ALL}, {NX, ALL, ALL}); }, message);
    EXPECT_THAT([&] { map(volume, "density", {ALL, ALL, ALL}, {ALL, NY, ALL}); }, message);
    EXPECT_THAT([&] { map(volume, "density", {ALL, ALL, -2}, {ALL, ALL, 1}); }, message);
    EXPECT_THAT([&] { map(volume, "density", {2, ALL, ALL}, {1, ALL, ALL}); }, message);
    const RegularVolume empty({0, 3, 3}, {}, makeSamples(0));
    EXPECT_THAT([&] { map(empty, "density", {0, ALL, ALL}, {0, ALL, ALL}); }, message);
}

} // namespace
} // namespace tavo
