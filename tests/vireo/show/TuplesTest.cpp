#include "vireo/show/Tuples.h"

#include <QVector>
#include <array>
#include <cstdint>
#include <gmock/gmock.h>
#include <span>
#include <vector>

#include "tavo/base/math/vectors.h"
#include "vireo/show/Transformation.h"

#ifdef VIREO_HAVE_EIGEN
#include <Eigen/Core>
#endif

namespace {

struct Echo
{
    double x, y, z;
    std::uint16_t intensity;
};

} // namespace

template <>
struct tavo::TupleOf<Echo> : tavo::Leading<double, 3>
{};

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<double> read(const NumberArray& numbers)
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

TEST(TuplesTest, AreOfAnyRangeOfVectors)
{
    const std::vector<Vector3d> vector{{1, 2, 3}, {4, 5, 6}};
    const std::array<Vector3f, 1> array{Vector3f(7, 8, 9)};
    const std::vector<std::array<short, 3>> ofArrays{{1, 2, 3}};
    const float inC[2][3] = {{1, 2, 3}, {4, 5, 6}};
    const QVector<Vector3i> ofQt{{1, 2, 3}};

    EXPECT_THAT(read(Points(vector)), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(read(Points(array)), ElementsAre(7, 8, 9));
    EXPECT_THAT(read(Points(ofArrays)), ElementsAre(1, 2, 3));
    EXPECT_THAT(read(Points(inC)), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(read(Points(ofQt)), ElementsAre(1, 2, 3));
    EXPECT_THAT(read(Points(std::span(vector).subspan(1))), ElementsAre(4, 5, 6));
    EXPECT_THAT(read(Points({vector[1], vector[0]})), ElementsAre(4, 5, 6, 1, 2, 3));
    EXPECT_THAT(read(Points(std::vector<Vector3d>())), IsEmpty());
    EXPECT_EQ(Points(vector).width(), 3U);
}

TEST(TuplesTest, AreNumbersOneAfterTheOther)
{
    const std::vector<float> numbers{1, 2, 3, 4, 5, 6};
    EXPECT_THAT(read(Points(numbers)), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(read(Points({1, 2, 3})), ElementsAre(1, 2, 3));
    EXPECT_THAT(read(Points({1, 2.5, 3})), ElementsAre(1, 2.5, 3));
    EXPECT_THAT(read(Points(numbers.data(), 3)), ElementsAre(1, 2, 3));
    EXPECT_THAT(read(Points(Vector3d(1, 2, 3))), ElementsAre(1, 2, 3));
    EXPECT_EQ(Points(numbers).width(), 0U);
}

TEST(TuplesTest, AreOfStructuresThatOneLineNames)
{
    const std::vector<Echo> echoes{{1, 2, 3, 900}, {4, 5, 6, 800}};
    EXPECT_THAT(read(Points(echoes)), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(read(Points(std::vector<Echo>(echoes))), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST(TuplesTest, AreThreeOrFour)
{
    using Rgb = StaticVector<unsigned char, 3>;
    EXPECT_EQ(Colours(std::vector<Rgb>(2)).width(), 3U);
    EXPECT_EQ(Colours(std::vector<RGBA8>(2)).width(), 4U);
    EXPECT_EQ(Faces(std::vector<std::array<int, 4>>(2)).width(), 4U);
}

TEST(TuplesTest, AreNotCopiedOfAVectorThatIsMovedIn)
{
    std::vector<Vector3f> sent{{1, 2, 3}};
    const void* const data = sent.data();
    const Points points(std::move(sent));
    EXPECT_EQ(addressOf(points), data);
    EXPECT_THAT(read(points), ElementsAre(1, 2, 3));
}

TEST(TuplesTest, AreCopiedOtherwise)
{
    std::vector<Vector3f> sent{{1, 2, 3}};
    const Points points(sent);
    sent[0][0] = 5;
    EXPECT_THAT(read(points), ElementsAre(1, 2, 3));
}

std::vector<double> readNumCorners(const Faces& faces)
{
    return faces.getNumCorners() ? read(*faces.getNumCorners()) : std::vector<double>{-1};
}

TEST(FacesTest, ArePolygons)
{
    const std::vector<std::vector<int>> ofVectors{{0, 1, 2, 3, 4}, {}, {4, 3, 5}};
    const Faces faces(ofVectors);
    EXPECT_THAT(read(faces), ElementsAre(0, 1, 2, 3, 4, 4, 3, 5));
    EXPECT_THAT(readNumCorners(faces), ElementsAre(5, 0, 3));
    const std::vector<std::array<short, 5>> pentagons{{0, 1, 2, 3, 4}, {5, 6, 7, 8, 9}};
    EXPECT_THAT(readNumCorners(pentagons), ElementsAre(5, 5));
    const std::vector<std::uint64_t> indices{7, 8, 9, 6};
    EXPECT_THAT(readNumCorners(std::vector{std::span(indices)}), ElementsAre(4));
    const Faces inBraces{{0, 1, 2}, {2, 1, 3, 4}};
    EXPECT_THAT(read(inBraces), ElementsAre(0, 1, 2, 2, 1, 3, 4));
    EXPECT_THAT(readNumCorners(inBraces), ElementsAre(3, 4));
}

TEST(FacesTest, AreVerticesAndHowManyEachHas)
{
    const std::vector<unsigned int> vertices{0, 1, 2, 3, 4, 4, 3, 5};
    const Faces faces{vertices, std::vector<std::uint8_t>{5, 3}};
    EXPECT_THAT(read(faces), ElementsAre(0, 1, 2, 3, 4, 4, 3, 5));
    EXPECT_THAT(readNumCorners(faces), ElementsAre(5, 3));
}

TEST(FacesTest, AreTrianglesAndQuadranglesAsBefore)
{
    std::vector<std::array<int, 4>> quads{{0, 1, 2, 3}};
    const void* const data = quads.data();
    EXPECT_THAT(readNumCorners(quads), ElementsAre(-1));
    EXPECT_EQ(Faces(quads).width(), 4U);
    EXPECT_EQ(addressOf(Faces(std::move(quads))), data);
    EXPECT_THAT(readNumCorners({0, 1, 2}), ElementsAre(-1));
    EXPECT_THAT(readNumCorners({Vector3i(0, 1, 2), Vector3i(2, 1, 3)}), ElementsAre(-1));
    EXPECT_THAT(readNumCorners({}), ElementsAre(-1));
}

TEST(TransformationTest, IsColumnByColumnOrAsItIsWritten)
{
    const std::vector<int> columns{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    const float rows[4][4] = {{1, 5, 9, 13}, {2, 6, 10, 14}, {3, 7, 11, 15}, {4, 8, 12, 16}};
    EXPECT_EQ(Transformation(columns).getNumbers(), Transformation(rows).getNumbers());
    EXPECT_EQ(Transformation(columns).getNumbers()[1], 2);
    EXPECT_EQ(Transformation(std::vector<int>{1, 2}).getNumNumbers(), 2U);
}

#ifdef VIREO_HAVE_EIGEN

TEST(TuplesTest, AreEigens)
{
    const std::vector<Eigen::Vector3f> vectors{{1, 2, 3}, {4, 5, 6}};
    Eigen::Matrix<double, 3, Eigen::Dynamic> columns(3, 2);
    columns << 1, 4, 2, 5, 3, 6;
    const Eigen::Matrix<double, Eigen::Dynamic, 3> rows = columns.transpose();
    const Eigen::VectorXd flat = Eigen::VectorXd::LinSpaced(6, 1, 6);

    EXPECT_THAT(read(Points(vectors)), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(read(Points(columns)), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(read(Points(rows)), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(read(Points(flat)), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(read(Points(Eigen::Vector3d(7, 8, 9))), ElementsAre(7, 8, 9));
}

TEST(TransformationTest, IsEigens)
{
    Eigen::Matrix4d matrix = Eigen::Matrix4d::Identity();
    matrix(0, 3) = 5;
    EXPECT_EQ(Transformation(matrix).getNumbers()[12], 5);
}

#endif

} // namespace
} // namespace tavo
