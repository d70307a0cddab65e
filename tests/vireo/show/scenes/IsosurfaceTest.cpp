#include "vireo/show/volumes/isosurface.h"

#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <memory>
#include <numbers>
#include <utility>

namespace tavo {
namespace {

constexpr double RADIUS = 4;

// About the origin.
VolumeGrid gridOf(const Vector3i& size, const Vector3d& spacing)
{
    const Vector3d half(
        0.5 * (size[0] - 1) * spacing[0], 0.5 * (size[1] - 1) * spacing[1], 0.5 * (size[2] - 1) * spacing[2]);
    return {size, spacing, -1.0 * half, {Vector3d(1, 0, 0), Vector3d(0, 1, 0), Vector3d(0, 0, 1)}};
}

// Calls valueAt(point) for every sample.
template <typename T, typename ValueAt>
NumberArray samplesOf(const VolumeGrid& grid, NumberType type, ValueAt valueAt)
{
    const auto numbers = std::make_shared<std::vector<T>>();
    for (int z = 0; z < grid.size[2]; ++z)
        for (int y = 0; y < grid.size[1]; ++y)
            for (int x = 0; x < grid.size[0]; ++x)
                numbers->push_back(static_cast<T>(valueAt(grid.at({double(x), double(y), double(z)}))));
    return {numbers, numbers->data(), numbers->size(), type};
}

Isosurface surfaceOf(const VolumeGrid& grid, const NumberArray& samples, double value)
{
    const std::atomic<bool> isUnwanted = false;
    return isosurfaceOf(grid, samples, value, isUnwanted);
}

Vector3d pointOf(const Isosurface& surface, unsigned int vertex)
{
    return {surface.points[3 * vertex], surface.points[3 * vertex + 1], surface.points[3 * vertex + 2]};
}

Vector3d normalOf(const Isosurface& surface, unsigned int vertex)
{
    return {surface.normals[3 * vertex], surface.normals[3 * vertex + 1], surface.normals[3 * vertex + 2]};
}

struct Measures
{
    double area = 0;
    double volume = 0; // within, if it is closed; negative if fronts are inside
    std::size_t numOpenEdges = 0;
};

Measures measure(const Isosurface& surface)
{
    Measures measures;
    std::map<std::pair<unsigned int, unsigned int>, int> edges;
    for (std::size_t i = 0; i < surface.triangles.size(); i += 3) {
        const unsigned int* const corners = &surface.triangles[i];
        const Vector3d a = pointOf(surface, corners[0]);
        const Vector3d across = cross(pointOf(surface, corners[1]) - a, pointOf(surface, corners[2]) - a);
        measures.area += length(across) / 2;
        measures.volume += dot(a, across) / 6;
        for (std::size_t corner = 0; corner < 3; ++corner) {
            ++edges[{corners[corner], corners[(corner + 1) % 3]}];
            --edges[{corners[(corner + 1) % 3], corners[corner]}];
        }
    }
    for (const auto& [edge, balance] : edges)
        measures.numOpenEdges += balance > 0;
    return measures;
}

double ball(const Vector3d& point)
{
    return RADIUS - length(point);
}

void expectBall(const Isosurface& surface)
{
    const Measures measures = measure(surface);
    EXPECT_NEAR(measures.area, 4 * std::numbers::pi * RADIUS * RADIUS, 2);
    EXPECT_NEAR(measures.volume, 4 * std::numbers::pi / 3 * RADIUS * RADIUS * RADIUS, 4)
        << "seen from the front outside";
    EXPECT_EQ(measures.numOpenEdges, 0U);
    for (unsigned int vertex = 0; 3 * vertex < surface.points.size(); ++vertex) {
        const Vector3d point = pointOf(surface, vertex);
        EXPECT_NEAR(length(point), RADIUS, 0.05);
        EXPECT_NEAR(length(normalOf(surface, vertex)), 1, 1e-6);
        EXPECT_GT(dot(normalOf(surface, vertex), (1 / length(point)) * point), 0.99);
    }
}

TEST(IsosurfaceTest, OfABallIsASphere)
{
    for (const Vector3d& spacing : {Vector3d(0.5, 0.5, 0.5), Vector3d(0.5, 0.4, 0.6)}) {
        const VolumeGrid grid = gridOf({21, 24, 19}, spacing);
        expectBall(surfaceOf(grid, samplesOf<double>(grid, NumberType::Float64, ball), 0));
        expectBall(surfaceOf(grid, samplesOf<float>(grid, NumberType::Float32, ball), 0));
    }
}

TEST(IsosurfaceTest, LiesWhereTheAxesOfTheGridPoint)
{
    VolumeGrid turned = gridOf({20, 20, 20}, {0.5, 0.5, 0.5});
    turned.axes = {Vector3d(0, 0, 1), Vector3d(0, 1, 0), Vector3d(1, 0, 0)}; // mirrored
    expectBall(surfaceOf(turned, samplesOf<double>(turned, NumberType::Float64, ball), 0));
    VolumeGrid oblique = gridOf({28, 28, 28}, {0.5, 0.5, 0.5});
    oblique.axes[1] = Vector3d(0.6, 0.8, 0);
    oblique.origin = -6.75 * (oblique.axes[0] + oblique.axes[1] + oblique.axes[2]);
    expectBall(surfaceOf(oblique, samplesOf<double>(oblique, NumberType::Float64, ball), 0));
}

TEST(IsosurfaceTest, IntegersOfAnyTypeHaveOne)
{
    const VolumeGrid grid = gridOf({20, 20, 20}, {0.5, 0.5, 0.5});
    const auto counted = [](const Vector3d& point) { return 100 + 10 * ball(point); };
    expectBall(surfaceOf(grid, samplesOf<std::uint8_t>(grid, NumberType::UInt8, counted), 99.5));
    expectBall(surfaceOf(grid, samplesOf<std::int16_t>(grid, NumberType::Int16, counted), 99.5));
}

// Wherever a face has to be cut one way or the other, the cells on both sides of it cut it the same way.
TEST(IsosurfaceTest, IsClosedWhateverTheSamplesAre)
{
    const VolumeGrid grid = gridOf({24, 24, 24}, {1, 1, 1});
    std::uint32_t state = 1;
    const auto noise = [&state](const Vector3d& point) {
        state = 1664525 * state + 1013904223;
        const bool isAtEnd = std::max({std::abs(point[0]), std::abs(point[1]), std::abs(point[2])}) > 11;
        return isAtEnd ? 0.0 : 1 + state / 4294967296.0;
    };
    const Isosurface surface = surfaceOf(grid, samplesOf<double>(grid, NumberType::Float64, noise), 1.5);
    EXPECT_GT(surface.triangles.size(), 10000U);
    EXPECT_EQ(measure(surface).numOpenEdges, 0U);
}

// Of every way in which the corners of a cell can be inside, with all others around it outside.
TEST(IsosurfaceTest, EveryCellHasTheVolumeOfItsCorners)
{
    const VolumeGrid grid = gridOf({4, 4, 4}, {1, 1, 1});
    for (unsigned int inside = 1; inside < 256; ++inside) {
        const auto value = [inside](const Vector3d& point) {
            const bool isCorner = std::abs(point[0]) < 1 && std::abs(point[1]) < 1 && std::abs(point[2]) < 1;
            const unsigned int corner = (point[0] > 0) + 2 * (point[1] > 0) + 4 * (point[2] > 0);
            return isCorner && (inside >> corner & 1) ? 1.0 : 0.0;
        };
        const Measures measures = measure(surfaceOf(grid, samplesOf<double>(grid, NumberType::Float64, value), 0.5));
        EXPECT_EQ(measures.numOpenEdges, 0U) << inside;
        EXPECT_GT(measures.volume, 0) << inside;
    }
}

TEST(IsosurfaceTest, WhatIsNotFiniteLeavesAnEdge)
{
    const VolumeGrid grid = gridOf({20, 20, 20}, {0.5, 0.5, 0.5});
    const auto half = [](const Vector3d& point) {
        return point[0] < 0 ? ball(point) : point[1] < 0 ? NAN : std::numeric_limits<double>::infinity();
    };
    const Isosurface surface = surfaceOf(grid, samplesOf<double>(grid, NumberType::Float64, half), 0);
    const Measures measures = measure(surface);
    EXPECT_NEAR(measures.area, 2 * std::numbers::pi * RADIUS * RADIUS, 8);
    EXPECT_GT(measures.numOpenEdges, 20U);
    for (unsigned int vertex = 0; 3 * vertex < surface.points.size(); ++vertex) {
        const Vector3d point = pointOf(surface, vertex);
        EXPECT_LT(point[0], 0);
        EXPECT_GT(dot(normalOf(surface, vertex), (1 / length(point)) * point), 0.8);
    }
    EXPECT_TRUE(surfaceOf(grid, samplesOf<float>(grid, NumberType::Float32, [](const Vector3d&) { return NAN; }), 0)
                    .points.empty());
}

TEST(IsosurfaceTest, NumbersMayBeAsLargeOrAsSmallAsTheyAre)
{
    const VolumeGrid grid = gridOf({20, 20, 20}, {0.5, 0.5, 0.5});
    for (const double scale : {1e307, 1e-300, 4e-321}) {
        const auto scaled = [scale](const Vector3d& point) { return scale * ball(point); };
        const Isosurface surface = surfaceOf(grid, samplesOf<double>(grid, NumberType::Float64, scaled), 0);
        const Measures measures = measure(surface);
        EXPECT_NEAR(measures.area, 4 * std::numbers::pi * RADIUS * RADIUS, 4) << scale;
        EXPECT_EQ(measures.numOpenEdges, 0U) << scale;
        for (unsigned int vertex = 0; 3 * vertex < surface.points.size(); ++vertex)
            EXPECT_GT(dot(normalOf(surface, vertex), pointOf(surface, vertex)), 3) << scale;
    }
}

TEST(IsosurfaceTest, IsNoneWhereThereAreNoCells)
{
    for (const Vector3i& size : {Vector3i(1, 1, 1), Vector3i(1, 8, 8), Vector3i(8, 1, 8), Vector3i(8, 8, 1)}) {
        const VolumeGrid grid = gridOf(size, {1, 1, 1});
        EXPECT_TRUE(surfaceOf(grid, samplesOf<double>(grid, NumberType::Float64, ball), 0).triangles.empty());
    }
}

TEST(IsosurfaceTest, IsGivenUpOnceItIsUnwanted)
{
    const VolumeGrid grid = gridOf({20, 20, 20}, {0.5, 0.5, 0.5});
    const std::atomic<bool> isUnwanted = true;
    const NumberArray samples = samplesOf<double>(grid, NumberType::Float64, ball);
    EXPECT_TRUE(isosurfaceOf(grid, samples, 0, isUnwanted).points.empty());
}

} // namespace
} // namespace tavo
