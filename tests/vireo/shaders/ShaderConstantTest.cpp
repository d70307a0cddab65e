#include "vireo/shaders/ShaderConstant.h"

#include <array>
#include <gmock/gmock.h>
#include <stdexcept>

namespace tavo {
namespace {

using testing::ElementsAre;

std::vector<float> dataOf(const ShaderConstant& constant)
{
    return {constant.getDataPtr(), constant.getDataPtr() + constant.getNumComponents()};
}

// The text of the exception that says that an index is out of range.
template <typename Code>
std::string rangeErrorOf(Code code)
{
    try {
        code();
    } catch (const std::out_of_range& error) {
        return error.what();
    }
    return "nothing was thrown";
}

constexpr const char* OUT_OF_RANGE = "invalid vector<T> subscript";

TEST(ShaderConstantTest, KeepsWhatItWasGivenAndStartsWithZeros)
{
    const ShaderConstant constant("colour", 7, 3);
    EXPECT_EQ(constant.getName(), "colour");
    EXPECT_EQ(constant.getIndex(), 7);
    EXPECT_EQ(constant.getNumComponents(), 3);
    EXPECT_THAT(dataOf(constant), ElementsAre(0, 0, 0));
}

TEST(ShaderConstantTest, TakesFourComponentsAtOnce)
{
    const std::array<float, 4> values{1, 2, 3, 4};
    ShaderConstant four("c", 0, 4);
    four.setData(values.data());
    EXPECT_THAT(dataOf(four), ElementsAre(1, 2, 3, 4));

    ShaderConstant six("c", 0, 6);
    six.setData(values.data());
    EXPECT_THAT(dataOf(six), ElementsAre(1, 2, 3, 4, 0, 0));
}

TEST(ShaderConstantTest, DeliberatelyThrowsOnceAShorterOneIsFull)
{
    const std::array<float, 4> values{1, 2, 3, 4};
    for (int length = 0; length < 4; ++length) {
        ShaderConstant constant("c", 3, length);
        EXPECT_EQ(rangeErrorOf([&] { constant.setData(values.data()); }), OUT_OF_RANGE);
        for (int i = 0; i < length; ++i)
            EXPECT_EQ(constant.getDataPtr()[i], values.at(i)) << "component " << i << " of " << length;
    }
}

TEST(ShaderConstantTest, TakesSingleComponentsThatItHas)
{
    ShaderConstant constant("c", 0, 2);
    constant.setData(1, 5);
    constant.setData(0, -1);
    EXPECT_THAT(dataOf(constant), ElementsAre(-1, 5));
    EXPECT_EQ(rangeErrorOf([&] { constant.setData(2, 9); }), OUT_OF_RANGE);
    EXPECT_THAT(dataOf(constant), ElementsAre(-1, 5));
}

TEST(ShaderConstantTest, HasNoDataWithoutComponents)
{
    const ShaderConstant constant("c", 0, 0);
    EXPECT_EQ(rangeErrorOf([&] { constant.getDataPtr(); }), OUT_OF_RANGE);
}

TEST(ShaderConstantTest, RefusesANegativeNumberOfComponents)
{
    EXPECT_THROW(ShaderConstant("c", 0, -1), std::length_error);
}

TEST(ShaderConstantTest, IsAValue)
{
    ShaderConstant original("a", 1, 2);
    original.setData(0, 4);
    ShaderConstant copy = original;
    original.setData(0, 8);
    EXPECT_THAT(dataOf(copy), ElementsAre(4, 0));

    copy = ShaderConstant("b", 2, 1);
    EXPECT_EQ(copy.getName(), "b");
    EXPECT_EQ(copy.getIndex(), 2);
    EXPECT_EQ(copy.getNumComponents(), 1);
    EXPECT_THAT(dataOf(copy), ElementsAre(0));
}

} // namespace
} // namespace tavo
