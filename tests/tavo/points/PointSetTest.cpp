#include "tavo/points/PointSet.h"

#include <cmath>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "tavo/base/objects/PException.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::ThrowsMessage;

constexpr unsigned int BYTE = VertexAttribDescriptor::TYPE_UNSIGNED_BYTE;
constexpr unsigned int FLOAT = VertexAttribDescriptor::TYPE_FLOAT;
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();

const Box3f UNIT_BOX({0, 0, 0}, {1, 1, 1});

VertexDescriptor layout(std::initializer_list<VertexAttribDescriptor> attributes)
{
    VertexDescriptor descriptor;
    for (const VertexAttribDescriptor& attribute : attributes)
        descriptor.pushAttrib(attribute);
    return descriptor;
}

const VertexDescriptor POSITIONS = layout({{"position", 3, FLOAT}});

PointSet cloud(const std::vector<Vector3f>& positions)
{
    PointSet points(POSITIONS, static_cast<unsigned int>(positions.size()));
    const AttributeAccessToken token = points.getAAT("position");
    for (unsigned int i = 0; i < points.getNumPoints(); ++i)
        points.set3f(i, token, positions[i].data());
    return points;
}

// Positions between so many bytes, without gaps.
PointSet packed(unsigned int numBefore, const std::vector<Vector3f>& positions, unsigned int numBehind)
{
    VertexDescriptor descriptor;
    if (numBefore > 0)
        descriptor.pushAttrib({"before", numBefore, BYTE});
    descriptor.pushAttrib({"position", 3, FLOAT});
    if (numBehind > 0)
        descriptor.pushAttrib({"behind", numBehind, BYTE});
    PointSet points(descriptor, static_cast<unsigned int>(positions.size()));
    for (std::size_t i = 0; i < positions.size(); ++i)
        std::memcpy(points.getData() + i * descriptor.getSize() + numBefore, positions[i].data(), sizeof(Vector3f));
    return points;
}

std::vector<Vector3f> visited(const PointSet& points, const std::string& attribute)
{
    std::vector<Vector3f> result;
    points.forEach3f(attribute, [&result](const Vector3f& xyz) { result.push_back(xyz); });
    return result;
}

std::vector<float> at(const PointSet& points, unsigned int i, const std::string& attribute)
{
    const float* const xyz = points.get3f(i, points.getAAT(attribute));
    return {xyz, xyz + 3};
}

TEST(PointSetTest, StartsWithZeroBytes)
{
    const PointSet points(layout({{"position", 3, FLOAT}, {"color", 4, BYTE}}), 2);
    EXPECT_EQ(points.getNumPoints(), 2u);
    EXPECT_EQ(points.getDescr().getNumAttribs(), 2u);
    ASSERT_EQ(points.getSizeInBytes(), 32u);
    EXPECT_THAT(std::vector<unsigned char>(points.getData(), points.getData() + 32), testing::Each(0));
    EXPECT_THAT(at(points, 1, "position"), ElementsAre(0, 0, 0));
}

TEST(PointSetTest, KeepsAttributesInterleaved)
{
    PointSet points(layout({{"position", 3, FLOAT}, {"normal", 3, FLOAT}}), 2);
    const float position[] = {1, 2, 3};
    const float normal[] = {4, 5, 6};
    points.set3f(1, points.getAAT("position"), position);
    points.set3f(1, points.getAAT("normal"), normal);

    EXPECT_THAT(at(points, 0, "normal"), ElementsAre(0, 0, 0));
    EXPECT_THAT(at(points, 1, "position"), ElementsAre(1, 2, 3));
    EXPECT_THAT(at(points, 1, "normal"), ElementsAre(4, 5, 6));
    float second[6];
    std::memcpy(second, std::as_const(points).getData() + points.getDescr().getSize(), sizeof second);
    EXPECT_THAT(second, ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST(PointSetTest, GivesTheFirstThreeOfMoreComponents)
{
    PointSet points(layout({{"weight", 1, FLOAT}, {"position", 4, FLOAT}}), 1);
    const float data[] = {9, 1, 2, 3, 4};
    std::memcpy(points.getData(), data, sizeof data);
    EXPECT_THAT(at(points, 0, "position"), ElementsAre(1, 2, 3));
}

TEST(PointSetTest, ThrowsPExceptionForAnAttributeItDoesNotHave)
{
    const PointSet points(POSITIONS, 1);
    EXPECT_THAT([&] { points.getAAT("normal"); },
        ThrowsMessage<PException>("VertexDescriptor::getIndex() - no attribute 'normal'"));
}

TEST(PointSetTest, ThrowsPExceptionForAnAttributeThatIsNotThreeAlignedFloats)
{
    const PointSet points(layout({{"color", 4, BYTE}, {"texcoord", 2, FLOAT}}), 1);
    const auto refusal = [](const std::string& name) {
        return ThrowsMessage<PException>("PointSet::getAAT() - '" + name + "' is not made of three aligned floats");
    };
    EXPECT_THAT([&] { points.getAAT("color"); }, refusal("color"));
    EXPECT_THAT([&] { points.getAAT("texcoord"); }, refusal("texcoord"));

    const PointSet oddOffset(layout({{"color", 3, BYTE}, {"position", 3, FLOAT}, {"flag", 1, BYTE}}), 1);
    EXPECT_THAT([&] { oddOffset.getAAT("position"); }, refusal("position"));
    const PointSet oddSize(layout({{"position", 3, FLOAT}, {"flag", 1, BYTE}}), 1);
    EXPECT_THAT([&] { oddSize.getAAT("position"); }, refusal("position"));
}

TEST(PointSetTest, VisitsFloatsAtAnyAddress)
{
    for (const PointSet& points : {packed(0, {{1, 2, 3}, {4, 5, 6}}, 3), packed(1, {{1, 2, 3}, {4, 5, 6}}, 3),
             packed(0, {{1, 2, 3}, {4, 5, 6}}, 0)})
        EXPECT_THAT(visited(points, "position"), ElementsAre(Vector3f(1, 2, 3), Vector3f(4, 5, 6)));
    EXPECT_THAT(visited(packed(1, {}, 3), "position"), testing::IsEmpty());
}

TEST(PointSetTest, VisitsThreeFloatsOrMoreOnly)
{
    const PointSet points(layout({{"color", 3, BYTE}, {"texcoord", 2, FLOAT}, {"plane", 4, FLOAT}}), 1);
    EXPECT_THAT(visited(points, "plane"), ElementsAre(Vector3f(0, 0, 0)));
    for (const std::string name : {"color", "texcoord"})
        EXPECT_THAT([&] { visited(points, name); },
            ThrowsMessage<PException>("PointSet::forEach3f() - '" + name + "' is not made of three floats"));
    EXPECT_THAT([&] { visited(points, "normal"); },
        ThrowsMessage<PException>("VertexDescriptor::getIndex() - no attribute 'normal'"));
}

TEST(PointSetTest, SaysWhatItGivesAccessTo)
{
    EXPECT_TRUE(packed(4, {}, 4).providesAAT("position"));
    EXPECT_FALSE(packed(0, {}, 3).providesAAT("position")) << "the second would be at 15";
    EXPECT_FALSE(packed(1, {}, 3).providesAAT("position"));
    EXPECT_FALSE(packed(4, {}, 4).providesAAT("before"));
    EXPECT_FALSE(packed(4, {}, 4).providesAAT("normal"));
}

TEST(PointSetTest, ThrowsOutOfRangeBeyondTheLastPoint)
{
    PointSet points(POSITIONS, 2);
    const AttributeAccessToken token = points.getAAT("position");
    const float xyz[] = {1, 2, 3};
    EXPECT_THROW(points.get3f(2, token), std::out_of_range);
    EXPECT_THROW(points.get3f(0xFFFFFFFFu, token), std::out_of_range);
    EXPECT_THROW(points.set3f(2, token, xyz), std::out_of_range);
    EXPECT_THROW(PointSet(POSITIONS, 0).get3f(0, token), std::out_of_range);
}

TEST(PointSetTest, TurnsAwayATokenOfALargerLayoutInsteadOfReadingBeyondItsData)
{
    const PointSet large(layout({{"normal", 3, FLOAT}, {"position", 3, FLOAT}}), 1);
    EXPECT_THROW(PointSet(POSITIONS, 1).get3f(0, large.getAAT("position")), std::out_of_range);
}

TEST(PointSetTest, BoundsItsPositions)
{
    EXPECT_EQ(cloud({{1, -2, 3}, {-4, 5, 6}, {0, 0, 7}}).getBoundingBox(), Box3f({-4, -2, 3}, {1, 5, 7}));
    EXPECT_EQ(cloud({{1, 2, 3}}).getBoundingBox(), Box3f({1, 2, 3}, {1, 2, 3}));
}

TEST(PointSetTest, BoundsPositionsAtAnyAddress)
{
    EXPECT_EQ(packed(0, {{1, -2, 3}, {-4, 5, 6}}, 3).getBoundingBox(), Box3f({-4, -2, 3}, {1, 5, 6}));
    EXPECT_EQ(packed(1, {{1, -2, 3}, {-4, 5, 6}}, 3).getBoundingBox(), Box3f({-4, -2, 3}, {1, 5, 6}));
}

TEST(PointSetTest, PassesOverNaNWhenBounding)
{
    EXPECT_EQ(cloud({{NOT_A_NUMBER, 1, 2}, {3, NOT_A_NUMBER, 4}, {5, 6, NOT_A_NUMBER}}).getBoundingBox(),
        Box3f({3, 1, 2}, {5, 6, 4}));
    EXPECT_EQ(cloud({{NOT_A_NUMBER, 7, NOT_A_NUMBER}}).getBoundingBox(), Box3f({0, 7, 0}, {1, 7, 1}));
}

TEST(PointSetTest, BoundsInfiniteCoordinatesToo)
{
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(
        cloud({{infinity, 0, 0}, {0, -infinity, 0}}).getBoundingBox(), Box3f({0, -infinity, 0}, {infinity, 0, 0}));
}

TEST(PointSetTest, HasTheUnitBoxWithoutPointsOrFloatPositions)
{
    EXPECT_EQ(PointSet(POSITIONS, 0).getBoundingBox(), UNIT_BOX);
    EXPECT_EQ(PointSet(VertexDescriptor(), 3).getBoundingBox(), UNIT_BOX);
    EXPECT_EQ(PointSet(layout({{"normal", 3, FLOAT}}), 3).getBoundingBox(), UNIT_BOX);
    EXPECT_EQ(PointSet(layout({{"position", 2, FLOAT}}), 3).getBoundingBox(), UNIT_BOX);
    EXPECT_EQ(PointSet(layout({{"position", 3, VertexAttribDescriptor::TYPE_INT}}), 3).getBoundingBox(), UNIT_BOX);
}

TEST(PointSetTest, BoundsAnewAfterEveryKindOfWrite)
{
    PointSet points = cloud({{0, 0, 0}, {1, 1, 1}});
    EXPECT_EQ(points.getBoundingBox(), Box3f({0, 0, 0}, {1, 1, 1}));

    const float far[] = {5, 6, 7};
    points.set3f(0, points.getAAT("position"), far);
    EXPECT_EQ(points.getBoundingBox(), Box3f({1, 1, 1}, {5, 6, 7}));

    std::memset(points.getData(), 0, points.getSizeInBytes());
    EXPECT_EQ(points.getBoundingBox(), Box3f({0, 0, 0}, {0, 0, 0}));

    points = cloud({{2, 2, 2}});
    EXPECT_EQ(points.getBoundingBox(), Box3f({2, 2, 2}, {2, 2, 2}));
}

TEST(PointSetTest, CopiesIndependently)
{
    const PointSet original = cloud({{1, 2, 3}});
    PointSet copy = original;
    const float moved[] = {4, 5, 6};
    copy.set3f(0, copy.getAAT("position"), moved);
    EXPECT_THAT(at(original, 0, "position"), ElementsAre(1, 2, 3));
    EXPECT_EQ(original.getBoundingBox(), Box3f({1, 2, 3}, {1, 2, 3}));
    EXPECT_EQ(copy.getBoundingBox(), Box3f({4, 5, 6}, {4, 5, 6}));
}

TEST(PointSetTest, IsHarmlessAfterHavingBeenMovedFrom)
{
    PointSet original = cloud({{1, 2, 3}});
    const AttributeAccessToken token = original.getAAT("position");
    const PointSet moved = std::move(original);
    EXPECT_THAT(at(moved, 0, "position"), ElementsAre(1, 2, 3));
    // NOLINTNEXTLINE(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
    EXPECT_THROW(original.get3f(0, token), std::out_of_range);
}

TEST(PointSetTest, IsDestroyedThroughItsBase)
{
    static_assert(std::has_virtual_destructor_v<PointSet>);
    struct CountedSet : PointSet
    {
        explicit CountedSet(int& destroyed)
            : PointSet(POSITIONS, 1)
            , m_Destroyed(destroyed)
        {}
        ~CountedSet() override { ++m_Destroyed; }
        int& m_Destroyed;
    };
    int destroyed = 0;
    std::unique_ptr<PointSet>(std::make_unique<CountedSet>(destroyed)).reset();
    EXPECT_EQ(destroyed, 1);
}

} // namespace
} // namespace tavo
