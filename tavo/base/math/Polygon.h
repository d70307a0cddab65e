#pragma once

#include <vector>

#include "tavo/base/math/checkedAt.h"
#include "tavo/base/math/vectors.h"

namespace tavo {

/// The vertex type of polygons in space.
using PolyVector3f = Vector3f;

/// An ordered list of vertices. It may be open or closed, flat or not, and run either way round.
///
///     Polygon<PolyVector3f> triangle;
///     triangle.addVertex({0, 0, 0});
///     triangle.addVertex({1, 0, 0});
///     triangle.addVertex({0, 1, 0});
template <typename Vertex>
class Polygon
{
public:
    void addVertex(const Vertex& vertex) { m_Vertices.push_back(vertex); }
    void clear() { m_Vertices.clear(); }

    unsigned int getNumVertices() const { return static_cast<unsigned int>(m_Vertices.size()); }

    /// Vertex `i`, counted from 0.
    /// @throws std::out_of_range Beyond the last vertex.
    const Vertex& getVertex(unsigned int i) const { return checkedAt(m_Vertices, i); }

private:
    std::vector<Vertex> m_Vertices;
};

} // namespace tavo
