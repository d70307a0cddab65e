#pragma once

#include <cstddef>
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
    void addBad();

    // How many were added, good and bad.
    std::size_t getNumAdded() const { return m_AreGood.size(); }

    bool isEmpty() const { return m_Corners.empty(); }

    // Their points, to be numbered anew.
    std::vector<std::uint32_t>& getCorners() { return m_Corners; }

    // Gives them to the geometry, without those whose points are not there; says how many those are.
    void finish(GeometryFile& file, Geometry& geometry);

    // Once they are finished: leaves of so many numbers for each face that was added those of the faces that are kept.
    void keepGood(NumberColumn& column, std::size_t width) const;

private:
    std::vector<std::uint32_t> m_Corners;
    unsigned int m_NumCorners = 0;       // of the first face
    std::vector<std::uint32_t> m_Counts; // of each face, once they differ
    std::vector<bool> m_AreGood;         // of all that were added
    std::uint64_t m_NumBad = 0;
};

} // namespace vireo_view
