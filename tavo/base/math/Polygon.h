#pragma once

#include <vector>

#include "tavo/base/math/checkedAt.h"
#include "tavo/base/math/vectors.h"

namespace tavo {

// The vertex type of polygons in space.
using PolyVector3f = Vector3f;

// An ordered list of vertices. Nothing is said about closedness, planarity or orientation.
template <typename Vertex>
class Polygon
{
public:
    void addVertex(const Vertex& vertex) { m_Vertices.push_back(vertex); }
    void clear() { m_Vertices.clear(); }

    unsigned int getNumVertices() const { return static_cast<unsigned int>(m_Vertices.size()); }

    // Throws std::out_of_range beyond the last vertex.
    const Vertex& getVertex(unsigned int i) const { return checkedAt(m_Vertices, i); }

private:
    std::vector<Vertex> m_Vertices;
};

} // namespace tavo
