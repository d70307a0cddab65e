#include "vireo/show/scenes/Triangulator.h"

#include <cmath>
#include <gmock/gmock.h>
#include <numbers>
#include <random>

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Polygon = std::vector<Vector3d>;

Polygon flat(const std::vector<Vector2d>& corners)
{
    Polygon polygon;
    for (const Vector2d& corner : corners)
        polygon.emplace_back(corner[0], corner[1], 0);
    return polygon;
}

double areaOf(const Vector3d& a, const Vector3d& b, const Vector3d& c)
{
    return 0.5 * cross(b - a, c - a)[2];
}

double areaOf(const Polygon& polygon)
{
    double area = 0;
    for (std::size_t i = 2; i < polygon.size(); ++i)
        area += areaOf(polygon[0], polygon[i - 1], polygon[i]);
    return area;
}

// None turns the other way, and together they are as large as the polygon: so they do not overlap.
void expectWhole(const Polygon& polygon)
{
    Triangulator triangulator;
    const std::vector<Triangulator::Triangle>& triangles = triangulator.triangulate(polygon);
    EXPECT_EQ(triangles.size(), polygon.size() - 2);
    double area = 0;
    const double sign = areaOf(polygon) > 0 ? 1 : -1;
    for (const auto& [a, b, c] : triangles) {
        area += areaOf(polygon[a], polygon[b], polygon[c]);
        EXPECT_GE(sign * areaOf(polygon[a], polygon[b], polygon[c]), 0);
    }
    EXPECT_NEAR(area, areaOf(polygon), 1e-9 * std::abs(area));
}

Polygon reversed(Polygon polygon)
{
    std::reverse(polygon.begin(), polygon.end());
    return polygon;
}

TEST(TriangulatorTest, ConvexPolygonsAreFans)
{
    Triangulator triangulator;
    using Triangle = Triangulator::Triangle;
    EXPECT_THAT(triangulator.triangulate(flat({{0, 0}, {1, 0}, {0, 1}})), ElementsAre(Triangle{0, 1, 2}));
    EXPECT_THAT(triangulator.triangulate(flat({{0, 0}, {1, 0}, {2, 0}, {1, 1}, {0, 1}})),
        ElementsAre(Triangle{0, 1, 2}, Triangle{0, 2, 3}, Triangle{0, 3, 4}))
        << "one corner is straight";
}

TEST(TriangulatorTest, ConcavePolygonsAreWhole)
{
    const Polygon dart = flat({{0, 0}, {2, 1}, {0, 2}, {1, 1}});
    const Polygon angle = flat({{0, 0}, {3, 0}, {3, 1}, {1, 1}, {1, 3}, {0, 3}});
    for (std::size_t first = 0; first < 6; ++first)
        for (Polygon polygon : {dart, angle}) {
            std::rotate(polygon.begin(), polygon.begin() + std::ptrdiff_t(first % polygon.size()), polygon.end());
            expectWhole(polygon);
            expectWhole(reversed(polygon));
        }
}

TEST(TriangulatorTest, CombsAndStarsAreWhole)
{
    Polygon comb;
    for (int i = 0; i < 500; ++i)
        comb.insert(comb.end(), {Vector3d(2 * i, 1, 0), Vector3d(2 * i + 1, 0.1, 0)});
    comb.insert(comb.end(), {Vector3d(999, 0, 0), Vector3d(0, 0, 0)});
    expectWhole(comb);
    std::mt19937 random(5);
    std::uniform_real_distribution<double> radius(0.1, 1);
    for (int numCorners = 4; numCorners < 60; ++numCorners) {
        Polygon star;
        for (int i = 0; i < numCorners; ++i) {
            const double angle = 2 * std::numbers::pi * i / numCorners;
            star.push_back(radius(random) * Vector3d(std::cos(angle), std::sin(angle), 0));
        }
        expectWhole(star);
    }
}

TEST(TriangulatorTest, PolygonsStandAnyhow)
{
    Triangulator triangulator;
    for (const Vector3d& up : {Vector3d(1, 0, 0), Vector3d(0, 1, 0), Vector3d(0, 0, 1), Vector3d(1, 1, 0)}) {
        const Vector3d side = cross(up, Vector3d(0.1, 0.2, 0.3));
        const Vector3d other = cross(up, side);
        const std::vector<Vector3d> dart{side, Vector3d(), other, 0.1 * (side + other)};
        const auto& triangles = triangulator.triangulate(dart);
        ASSERT_EQ(triangles.size(), 2U);
        for (const Triangulator::Triangle& triangle : triangles)
            EXPECT_THAT(triangle, testing::AllOf(testing::Contains(1U), testing::Contains(3U)))
                << "they meet where it is concave";
    }
}

TEST(TriangulatorTest, WhatHasNoAreaIsLeftOut)
{
    Triangulator triangulator;
    EXPECT_THAT(triangulator.triangulate({}), IsEmpty());
    EXPECT_THAT(triangulator.triangulate(flat({{0, 0}, {1, 0}})), IsEmpty());
    EXPECT_THAT(triangulator.triangulate(flat({{0, 0}, {1, 0}, {3, 0}, {2, 0}})), IsEmpty());
    EXPECT_THAT(triangulator.triangulate(flat({{1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}})), IsEmpty());
    EXPECT_THAT(triangulator.triangulate(flat({{NAN, 1}, {1, 0}, {2, 3}, {1, 1}})), IsEmpty());
}

TEST(TriangulatorTest, SidesMayCrossAndCornersMeet)
{
    Triangulator triangulator;
    Polygon pentagram;
    for (int i = 0; i < 5; ++i)
        pentagram.emplace_back(std::cos(0.8 * std::numbers::pi * i), std::sin(0.8 * std::numbers::pi * i), 0);
    for (const Polygon& polygon : {pentagram, flat({{0, 0}, {2, 2}, {2, 0}, {0, 1}}),
             flat({{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}, {1, 1}, {1, 2}, {2, 2}, {2, 1}, {1, 1}})})
        for (const Triangulator::Triangle& triangle : triangulator.triangulate(polygon))
            for (const unsigned int corner : triangle)
                EXPECT_LT(corner, polygon.size());
    using Triangle = Triangulator::Triangle;
    EXPECT_THAT(triangulator.triangulate(pentagram),
        testing::Not(ElementsAre(Triangle{0, 1, 2}, Triangle{0, 2, 3}, Triangle{0, 3, 4})))
        << "its turns are those of a convex one, but it goes around twice";
}

} // namespace
} // namespace tavo
