#include "vireo/show/Numbers.h"

#include <QVector>
#include <array>
#include <cmath>
#include <cstdint>
#include <gmock/gmock.h>
#include <limits>
#include <memory>
#include <span>
#include <vector>

#ifdef VIREO_HAVE_EIGEN
#include <Eigen/Core>
#endif

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<double> read(const Numbers& numbers)
{
    std::vector<double> all;
    for (std::size_t i = 0; i < numbers.size(); ++i)
        all.push_back(numbers[i]);
    return all;
}

const void* addressOf(const NumberArray& numbers)
{
    return numbers.visit([](const auto* first, std::size_t) { return static_cast<const void*>(first); });
}

std::size_t sizeOfOne(const NumberArray& numbers)
{
    return numbers.visit([](const auto* first, std::size_t) { return sizeof *first; });
}

TEST(NumbersTest, AreOfAnyRangeSideBySide)
{
    const std::vector<double> vector{1, 2.5};
    const std::array<float, 2> array{3, 4};
    const QVector<int> ofQt{5, 6};
    const short inC[] = {7, 8, 9};
    const std::initializer_list<unsigned char> list{10, 255};

    EXPECT_THAT(read(vector), ElementsAre(1, 2.5));
    EXPECT_THAT(read(array), ElementsAre(3, 4));
    EXPECT_THAT(read(ofQt), ElementsAre(5, 6));
    EXPECT_THAT(read(inC), ElementsAre(7, 8, 9));
    EXPECT_THAT(read(list), ElementsAre(10, 255));
    EXPECT_THAT(read(std::span(vector).subspan(1)), ElementsAre(2.5));
    EXPECT_THAT(read(std::vector<double>()), IsEmpty());
    EXPECT_THAT(read(std::span<const double>()), IsEmpty());
}

TEST(NumbersTest, AreWrittenInBraces)
{
    EXPECT_THAT(read({1, 2, 3}), ElementsAre(1, 2, 3));
    EXPECT_THAT(read({1.5, 2}), ElementsAre(1.5, 2));
    EXPECT_THAT(read({1.5F}), ElementsAre(1.5));
    EXPECT_THAT(read({}), IsEmpty());
}

TEST(NumbersTest, AreAPointerAndACount)
{
    const long numbers[] = {1, -2, 3};
    EXPECT_THAT(read(Numbers(numbers, 2)), ElementsAre(1, -2));
    EXPECT_THAT(read(Numbers(numbers, 0)), IsEmpty());
    EXPECT_THAT(read(Numbers(static_cast<const long*>(nullptr), 2)), IsEmpty());
}

template <typename T>
class NumberTypesTest : public testing::Test
{};

using NumberTypes = testing::Types<signed char, unsigned char, short, unsigned short, int, unsigned, long,
    unsigned long, long long, unsigned long long, float, double>;
TYPED_TEST_SUITE(NumberTypesTest, NumberTypes);

TYPED_TEST(NumberTypesTest, KeepTheirTypeAndValues)
{
    const std::vector<TypeParam> values{
        std::numeric_limits<TypeParam>::lowest(), 0, std::numeric_limits<TypeParam>::max()};
    const Numbers numbers(values);
    EXPECT_EQ(sizeOfOne(numbers), sizeof(TypeParam));
    EXPECT_THAT(read(numbers), ElementsAre(static_cast<double>(values[0]), 0, static_cast<double>(values[2])));
}

TEST(NumbersTest, WiderOnesBecomeDoubles)
{
    const Numbers numbers(std::vector<long double>{1.25L, -3});
    EXPECT_EQ(sizeOfOne(numbers), sizeof(double));
    EXPECT_THAT(read(numbers), ElementsAre(1.25, -3));
}

TEST(NumbersTest, WhatIsBeyondDoubleIsSaidOnce)
{
    const long double largest = std::numeric_limits<long double>::max();
    if (largest == static_cast<long double>(std::numeric_limits<double>::max()))
        GTEST_SKIP() << "a long double is a double here";
    testing::internal::CaptureStderr();
    const Numbers infinite(std::vector<long double>{1, std::numeric_limits<long double>::infinity()});
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    testing::internal::CaptureStderr();
    const Numbers numbers(std::vector<long double>{1, -largest});
    const Numbers again(std::vector<long double>{largest});
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "warning: tavo: numbers of type long double that are beyond double are taken for infinite\n");
    EXPECT_THAT(read(numbers), ElementsAre(1, -std::numeric_limits<double>::infinity()));
}

TEST(NumbersTest, AreCopiedOnceAndThenShared)
{
    std::vector<double> sent{1, 2};
    const Numbers numbers(sent);
    const NumberArray again = numbers;
    sent[0] = 5;
    EXPECT_THAT(read(numbers), ElementsAre(1, 2));
    EXPECT_EQ(addressOf(again), addressOf(numbers));
}

TEST(NumbersTest, AreNotCopiedOfAVectorThatIsMovedIn)
{
    std::vector<float> sent{1, 2};
    const void* const data = sent.data();
    const Numbers numbers(std::move(sent));
    EXPECT_EQ(addressOf(numbers), data);
    EXPECT_THAT(read(numbers), ElementsAre(1, 2));
}

TEST(NumbersTest, KeepNaNAndInfinity)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const Numbers numbers(std::vector<double>{NAN, infinity, -infinity});
    EXPECT_TRUE(std::isnan(numbers[0]));
    EXPECT_EQ(numbers[1], infinity);
    EXPECT_EQ(numbers[2], -infinity);
}

TEST(NumbersTest, AreSharedWhereTheSameIsCopiedAgain)
{
    std::vector<double> x(1000, 1.5);
    x[1] = NAN;
    const Numbers first(x);
    const std::vector<double> between(1000);
    const Numbers other(between);
    EXPECT_EQ(addressOf(Numbers(x)), addressOf(first));
    EXPECT_NE(addressOf(other), addressOf(first));
    EXPECT_NE(addressOf(Numbers(x.data(), 999)), addressOf(first));
    EXPECT_NE(addressOf(Numbers(reinterpret_cast<const long long*>(x.data()), 1000)), addressOf(first));

    x.back() = 2.5;
    const Numbers changed(x);
    EXPECT_NE(addressOf(changed), addressOf(first));
    EXPECT_EQ(changed[999], 2.5);
    EXPECT_EQ(first[999], 1.5);
    EXPECT_EQ(addressOf(Numbers(x)), addressOf(changed));
}

TEST(NumbersTest, LiveNoLongerThanTheirUsers)
{
    const std::vector<double> x(1000, 1.5);
    std::weak_ptr<const void> owner;
    {
        const Numbers numbers(x);
        owner = numbers.getOwner();
        EXPECT_FALSE(owner.expired());
    }
    EXPECT_TRUE(owner.expired());
    EXPECT_EQ(Numbers(x)[999], 1.5);
}

// A range that says it has more than there is memory for.
struct Endless
{
    const double* data() const { return &number; }
    std::size_t size() const { return std::numeric_limits<std::size_t>::max() / sizeof(double); }
    double number = 1;
};

TEST(NumbersTest, SayThatThereIsNoMemoryForThem)
{
    const Numbers numbers{Endless()};
    EXPECT_TRUE(numbers.areTooMany());
    EXPECT_TRUE(numbers.isEmpty());
    EXPECT_FALSE(Numbers({1, 2}).areTooMany());
}

#ifdef VIREO_HAVE_EIGEN

TEST(NumbersTest, AreVectorsOfEigen)
{
    const Eigen::VectorXd vector = Eigen::VectorXd::LinSpaced(5, 0, 4);
    const Eigen::RowVector3f row(7, 8, 9);
    const std::vector<int> raw{1, 2, 3, 4, 5, 6};

    EXPECT_THAT(read(vector), ElementsAre(0, 1, 2, 3, 4));
    EXPECT_THAT(read(vector.segment(1, 2)), ElementsAre(1, 2));
    EXPECT_THAT(read(row), ElementsAre(7, 8, 9));
    EXPECT_THAT(read(Eigen::ArrayXi::Constant(2, 3).eval()), ElementsAre(3, 3));
    EXPECT_THAT(read(Eigen::VectorXd()), IsEmpty());
    EXPECT_THAT(read(Eigen::Map<const Eigen::VectorXi, 0, Eigen::InnerStride<2>>(raw.data(), 3)), ElementsAre(1, 3, 5));
}

TEST(NumbersTest, AreRowsAndColumnsOfEigensMatrices)
{
    Eigen::Matrix<double, 2, 3> byColumns;
    byColumns << 1, 2, 3, 4, 5, 6;
    const Eigen::Matrix<double, 2, 3, Eigen::RowMajor> byRows = byColumns;

    EXPECT_THAT(read(byColumns.row(1)), ElementsAre(4, 5, 6));
    EXPECT_THAT(read(byColumns.col(1)), ElementsAre(2, 5));
    EXPECT_THAT(read(byRows.row(1)), ElementsAre(4, 5, 6));
    EXPECT_THAT(read(byRows.col(1)), ElementsAre(2, 5));
    EXPECT_THAT(read(byColumns.block<1, 2>(1, 1)), ElementsAre(5, 6));
}

#endif

} // namespace
} // namespace tavo
