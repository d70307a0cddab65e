#include "vireo/textures/textureFormats.h"

#include <functional>
#include <gmock/gmock.h>
#include <vector>

namespace tavo {
namespace {

using testing::ElementsAre;

constexpr unsigned int OTHERWISE = 7;

// The formats of 0 to 5 components.
std::vector<unsigned int> formats(const std::function<unsigned int(unsigned int)>& formatOf)
{
    std::vector<unsigned int> all;
    for (unsigned int components = 0; components <= 5; ++components)
        all.push_back(formatOf(components));
    return all;
}

TEST(TextureFormatsTest, AreLuminanceOrColourByTheNumberOfComponents)
{
    const auto formatOf = [](unsigned int components) { return formatOfComponents(components, OTHERWISE); };
    EXPECT_THAT(formats(formatOf), ElementsAre(OTHERWISE, 0x1909, 0x190A, 0x1907, 0x1908, OTHERWISE));
}

TEST(TextureFormatsTest, HaveFloatsOf16Or32Bits)
{
    const auto halfFormatOf = [](unsigned int components) {
        return arbFloatFormatOfComponents(components, true, OTHERWISE);
    };
    const auto floatFormatOf = [](unsigned int components) {
        return arbFloatFormatOfComponents(components, false, OTHERWISE);
    };
    EXPECT_THAT(formats(halfFormatOf), ElementsAre(OTHERWISE, 0x881E, 0x881F, 0x881B, 0x881A, OTHERWISE));
    EXPECT_THAT(formats(floatFormatOf), ElementsAre(OTHERWISE, 0x8818, 0x8819, 0x8815, 0x8814, OTHERWISE));
}

TEST(TextureFormatsTest, KnowTheFloatFormatsOfARB)
{
    for (const unsigned int format : {0x881E, 0x881F, 0x881B, 0x881A, 0x8818, 0x8819, 0x8815, 0x8814})
        EXPECT_TRUE(isArbFloatFormat(format)) << std::hex << format;
    for (const unsigned int format : {0x1908, 0x8884, 0x881C, 0})
        EXPECT_FALSE(isArbFloatFormat(format)) << std::hex << format;
}

} // namespace
} // namespace tavo
