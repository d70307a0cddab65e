#pragma once

#include <cstdint>
#include <vector>

#include "apps/vireo-view/Geometry.h"

namespace vireo_view {

// Collects the faces of a geometry.
class FaceCollector
{
public:
    // Faces with fewer than three corners are left out.
    void add(const std::vector<std::uint64_t>& corners);

    // One that cannot be read.
    void addBad() { ++m_NumBad; }

    bool isEmpty() const { return m_Corners.empty(); }

    // Their points, to be numbered anew.
    std::vector<std::uint32_t>& getCorners() { return m_Corners; }

    // Gives them to the geometry, without those whose points are not there; says how many those are.
    void finish(GeometryFile& file, Geometry& geometry);

private:
    std::vector<std::uint32_t> m_Corners;
    unsigned int m_NumCorners = 0;       // of the first face
    std::vector<std::uint32_t> m_Counts; // of each face, once they differ
    std::uint64_t m_NumBad = 0;
};

} // namespace vireo_view
