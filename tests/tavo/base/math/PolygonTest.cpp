#include "tavo/base/math/Polygon.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <utility>

namespace tavo {
namespace {

TEST(PolygonTest, KeepsItsVerticesInOrder)
{
    Polygon<PolyVector3f> polygon;
    polygon.addVertex({1.0f, 2.0f, 3.0f});
    polygon.addVertex({4.0f, 5.0f, 6.0f});
    ASSERT_EQ(polygon.getNumVertices(), 2u);
    EXPECT_EQ(polygon.getVertex(0), PolyVector3f(1.0f, 2.0f, 3.0f));
    EXPECT_EQ(polygon.getVertex(1), PolyVector3f(4.0f, 5.0f, 6.0f));
    polygon.clear();
    EXPECT_EQ(polygon.getNumVertices(), 0u);
}

TEST(PolygonTest, RefusesAVertexBeyondTheLast)
{
    Polygon<PolyVector3f> polygon;
    polygon.addVertex({1.0f, 2.0f, 3.0f});
    try {
        polygon.getVertex(1);
        FAIL() << "nothing was thrown";
    } catch (const std::out_of_range& error) {
        EXPECT_EQ(error.what(), std::string("invalid vector<T> subscript"));
    }
}

TEST(CheckedAtTest, GivesTheElementOrThrows)
{
    std::vector<int> values{1, 2};
    checkedAt(values, 1) = 5;
    EXPECT_EQ(checkedAt(std::as_const(values), 1), 5);
    try {
        checkedAt(values, 2);
        FAIL() << "nothing was thrown";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
    }
}

} // namespace
} // namespace tavo
