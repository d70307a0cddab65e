#include "vireo/volume/SliceReader.h"

#include <cstring>
#include <gtest/gtest.h>
#include <memory>

namespace tavo {
namespace {

constexpr std::size_t MIB = std::size_t{1} << 20;

// A volume with one channel of floats, which are the numbers of the samples.
RegularVolume makeNumbered(const Vector3i& extends)
{
    VertexDescriptor channels;
    channels.pushAttrib(VertexAttribDescriptor("density", 1, VertexAttribDescriptor::TYPE_FLOAT));
    const auto count = static_cast<unsigned int>(extends[0] * extends[1] * extends[2]);
    auto samples = std::make_unique<PointSet>(channels, count);
    unsigned char* to = samples->getData();
    for (unsigned int i = 0; i < count; ++i, to += sizeof(float)) {
        const auto value = static_cast<float>(i);
        std::memcpy(to, &value, sizeof value);
    }
    return {extends, Box3f(), std::move(samples)};
}

// The most bytes that the samples of a stack along X take while its slices are mapped, each to what it has to be.
std::size_t mostBytes(const Vector3i& extends, std::size_t numTexels)
{
    const RegularVolume volume = makeNumbered(extends);
    const SliceStack stack(volume, 0);
    SliceReader<1> reader(volume, volume.getChannel("density"), stack, numTexels);
    const auto width = static_cast<std::size_t>(stack.getWidth());
    std::vector<RGBA8> out(width * static_cast<std::size_t>(stack.getHeight()));
    std::size_t most = 0;
    std::size_t numWrong = 0;
    for (int x = 0; x < extends[0]; ++x) {
        std::vector<float> values;
        const auto note = [&values](const StaticVector<float, 1>& sample) {
            values.push_back(sample[0]);
            return RGBA8();
        };
        // By reference: rows are mapped by copies.
        reader.mapSlice(
            x, [&note](const StaticVector<float, 1>& sample) { return note(sample); }, out.data(), width);
        for (std::size_t i = 0; i < values.size(); ++i)
            numWrong += values[i] != static_cast<float>(x) + static_cast<float>(i) * static_cast<float>(extends[0]);
        numWrong += values.size() != out.size();
        most = std::max(most, reader.getSizeInBytes());
    }
    EXPECT_EQ(numWrong, 0u);
    return most;
}

TEST(SliceReaderTest, FetchesSlicesThatShareTheirCacheLinesAtOnce)
{
    EXPECT_EQ(mostBytes({32, 8, 4}, 32), 16 * (8 * 4 + 16) * sizeof(float));
    EXPECT_EQ(mostBytes({3, 8, 4}, 32), 3 * (8 * 4 + 16) * sizeof(float)) << "there are no more";
    EXPECT_EQ(mostBytes({1, 8, 4}, 32), 0u) << "a slice alone needs no room";
}

TEST(SliceReaderTest, TakesAtMostAMebibyteForSlicesThatAreSmaller)
{
    const std::size_t most = mostBytes({20, 181, 217}, 256 * 256);
    EXPECT_LE(most, MIB);
    EXPECT_GT(most, MIB / 2);
}

TEST(SliceReaderTest, TakesAtMostWhatALargerSliceAndItsImageTake)
{
    EXPECT_EQ(mostBytes({4, 512, 512}, 512 * 512), 2 * MIB) << "a slice beside its image";
    EXPECT_EQ(mostBytes({4, 520, 512}, 520 * 512), 2 * 520 * 512 * sizeof(float));
}

} // namespace
} // namespace tavo
