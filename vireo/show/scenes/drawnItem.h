#pragma once

#include <array>
#include <optional>
#include <vector>

#include "vireo/show/scenes/PointPhases.h"
#include "vireo/show/scenes/SceneBox.h"
#include "vireo/show/scenes/SceneUpdate.h"

namespace tavo {

enum class PrimitiveKind : unsigned char
{
    Points,
    Lines,
    Triangles
};

// Of a frame's x, y and z.
inline const std::array<RGBA8, 3> AXIS_COLOURS = {
    RGBA8(220, 50, 47, 255), RGBA8(60, 160, 40, 255), RGBA8(40, 90, 220, 255)};

// An item as OpenGL draws it. Positions are floats, counted from an origin in double precision.
struct DrawnItem
{
    PrimitiveKind primitive = PrimitiveKind::Points;
    Vector3d origin;
    SceneBox box;
    std::vector<float> positions;
    std::vector<float> normals;         // none if no light falls on it
    std::vector<unsigned char> colours; // red, green, blue and opacity, of what has colours of its own
    std::vector<unsigned int> sources;  // the point or vertex as sent that each is of; none if all are in order
    std::vector<unsigned int> parts; // the part (see ItemShape) that each line or triangle is of; none if not asked for
    std::vector<unsigned int> indices;
    bool isIndexed = false; // otherwise all is drawn, in order

    // Of clouds. Each chunk has a box, counted from the origin.
    std::optional<PointPhases> phases;
    std::vector<SceneBox> chunks;

    std::size_t numVertices() const { return positions.size() / 3; }

    // The point or vertex as sent, counted from 0, that a vertex is of.
    std::size_t sourceOf(std::size_t vertex) const { return sources.empty() ? vertex : sources[vertex]; }

    // Calls use(source) for each vertex, from the first on.
    template <typename Use>
    void forEachSource(std::size_t numVertices, Use&& use) const
    {
        if (sources.empty())
            for (std::size_t vertex = 0; vertex < numVertices; ++vertex)
                use(vertex);
        else
            for (std::size_t vertex = 0; vertex < numVertices; ++vertex)
                use(std::size_t(sources[vertex]));
    }
};

// Leaves out what is not finite. Normals may be null. If its parts have colours of their own, they share no vertices.
DrawnItem drawnItem(const ItemShape& shape, const NumberTuples* normals, bool isSmooth, bool haveParts);

// Of a cloud that was drawn like this, the points of the first phases, chunk by chunk.
DrawnItem drawnPhases(
    const DrawnItem& cloud, std::size_t numPhases, const ItemShape& shape, const NumberTuples* normals);

// The edges of the faces of a mesh that are drawn, each once.
DrawnItem drawnEdges(const ItemShape& shape);

// Whether the faces of a mesh that are drawn have insides and outsides: at each edge an even number of faces meets.
// Vertices at the same place are the same, as are those that only rounding keeps apart.
bool isClosedSurface(const ItemShape& shape);

} // namespace tavo
