#include "apps/vireo-view/FaceCollector.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace vireo_view {

namespace {

constexpr std::uint64_t MOST_POINTS = std::numeric_limits<std::uint32_t>::max();

} // namespace

void FaceCollector::add(const std::vector<std::uint64_t>& corners)
{
    if (corners.size() < 3 ||
        std::any_of(corners.begin(), corners.end(), [](std::uint64_t corner) { return corner >= MOST_POINTS; }))
        return addBad();
    if (m_NumCorners == 0)
        m_NumCorners = corners.size() == 4 ? 4 : 3;
    if (m_NumCorners == 4 && corners.size() != 4)
        splitQuadrangles();
    if (m_NumCorners == 4) {
        m_Corners.insert(m_Corners.end(), corners.begin(), corners.end());
        return;
    }
    for (std::size_t i = 2; i < corners.size(); ++i)
        for (const std::uint64_t corner : {corners[0], corners[i - 1], corners[i]})
            m_Corners.push_back(static_cast<std::uint32_t>(corner));
}

void FaceCollector::splitQuadrangles()
{
    std::vector<std::uint32_t> triangles;
    triangles.reserve(m_Corners.size() / 4 * 6);
    for (std::size_t i = 0; i < m_Corners.size(); i += 4)
        for (const std::size_t corner : {0, 1, 2, 0, 2, 3})
            triangles.push_back(m_Corners[i + corner]);
    m_Corners = std::move(triangles);
    m_NumCorners = 3;
}

void FaceCollector::finish(GeometryFile& file, Geometry& geometry)
{
    const std::size_t numPoints = geometry.getNumPoints();
    auto end = m_Corners.begin();
    for (auto face = m_Corners.begin(); face != m_Corners.end(); face += m_NumCorners) {
        if (std::any_of(face, face + m_NumCorners, [numPoints](std::uint32_t corner) { return corner >= numPoints; }))
            ++m_NumBad;
        else
            end = std::move(face, face + m_NumCorners, end);
    }
    m_Corners.erase(end, m_Corners.end());
    geometry.faces = std::move(m_Corners);
    geometry.numCorners = m_NumCorners == 4 ? 4 : 3;
    if (m_NumBad > 0)
        file.leftOut.push_back(std::to_string(m_NumBad) + (m_NumBad == 1 ? " face" : " faces") +
                               " of points that are not there, or of fewer than three");
}

} // namespace vireo_view
