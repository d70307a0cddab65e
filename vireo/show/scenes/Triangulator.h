#pragma once

#include <array>
#include <memory>
#include <span>
#include <vector>

#include "tavo/base/math/vectors.h"

class GLUtesselator;

namespace tavo {

// Divides polygons into triangles, concave ones and those that are not quite flat too.
class Triangulator
{
public:
    using Triangle = std::array<unsigned int, 3>; // numbers of corners

    Triangulator();
    ~Triangulator();
    Triangulator(const Triangulator&) = delete;
    Triangulator& operator=(const Triangulator&) = delete;

    // Triangles that turn as the polygon does; none if it has no area. If its sides cross, the corner that is nearest
    // stands for each crossing. They are valid until the next call.
    const std::vector<Triangle>& triangulate(std::span<const Vector3d> corners);

private:
    struct Calls;

    void fan(std::size_t numCorners);
    void tessellate(std::span<const Vector3d> corners, const Vector3d& normal);

    GLUtesselator* m_Tessellator = nullptr; // made when it is needed
    std::vector<Triangle> m_Triangles;
    std::vector<unsigned int> m_Corners; // of the triangles, one after the other
};

} // namespace tavo
