#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "apps/vireo-view/NumberColumn.h"
#include "apps/vireo-view/Point.h"

namespace vireo_view {

// Where a geometry is shown: under a path below that of its file, and moved by a matrix, column by column.
struct Placement
{
    std::string path;
    std::optional<std::array<double, 16>> matrix;

    tavo::Vector3d apply(const tavo::Vector3d& point) const;
};

// Points, or a surface with points as its vertices, with all that a file says of them.
struct Geometry
{
    struct Scalar
    {
        std::string name;
        NumberColumn values; // one for each point, or face
    };

    struct OfFaces
    {
        NumberColumn colours; // bytes for each face, or nothing
        NumberColumn labels;  // a category for each, or nothing
        std::vector<Scalar> scalars;
    };

    NumberColumn positions;                  // x, y and z of each point
    std::vector<std::uint32_t> faces;        // numbers of their points; empty: a cloud
    unsigned int numCorners = 3;             // of each face; 0 if they differ
    std::vector<std::uint32_t> cornerCounts; // of each face, if they differ
    NumberColumn normals;                    // x, y and z for each point, or nothing
    NumberColumn colours;                    // bytes for each point, or nothing
    unsigned int numChannels = 3;            // of each colour, or 4
    std::optional<tavo::RGBA8> colour;       // of all
    NumberColumn labels;                     // a category for each point, or nothing
    std::vector<Scalar> scalars;
    OfFaces ofFaces;
    std::vector<Placement> placements{{}};

    std::size_t getNumPoints() const { return sizeOf(positions) / 3; }
    tavo::Vector3d getPoint(std::size_t i) const
    {
        return {numberAt(positions, 3 * i), numberAt(positions, 3 * i + 1), numberAt(positions, 3 * i + 2)};
    }
};

// What a file shows in space.
struct GeometryFile
{
    std::vector<Geometry> geometries;
    std::vector<std::string> leftOut; // what the file has besides, each in few words
    std::vector<std::string> remarks; // what else a person should know, each in a line
};

} // namespace vireo_view
