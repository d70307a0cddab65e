#include "apps/vireo-view/FaceCollector.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace vireo_view {

namespace {

constexpr std::uint64_t MOST_POINTS = std::numeric_limits<std::uint32_t>::max();

} // namespace

void FaceCollector::addBad()
{
    m_AreGood.push_back(false);
    ++m_NumBad;
}

void FaceCollector::add(const std::vector<std::uint64_t>& corners)
{
    if (corners.size() < 3 ||
        std::any_of(corners.begin(), corners.end(), [](std::uint64_t corner) { return corner >= MOST_POINTS; }))
        return addBad();
    const auto count = static_cast<std::uint32_t>(corners.size());
    if (m_Corners.empty())
        m_NumCorners = count;
    if (m_Counts.empty() && count != m_NumCorners)
        m_Counts.assign(m_Corners.size() / m_NumCorners, m_NumCorners);
    if (count != m_NumCorners || !m_Counts.empty())
        m_Counts.push_back(count);
    m_Corners.insert(m_Corners.end(), corners.begin(), corners.end());
    m_AreGood.push_back(true);
}

void FaceCollector::finish(GeometryFile& file, Geometry& geometry)
{
    const std::size_t numPoints = geometry.getNumPoints();
    auto end = m_Corners.begin();
    std::size_t numFaces = 0, numKept = 0;
    auto isGood = m_AreGood.begin();
    for (auto face = m_Corners.begin(); face != m_Corners.end(); ++numFaces, ++isGood) {
        isGood = std::find(isGood, m_AreGood.end(), true);
        const std::uint32_t count = m_Counts.empty() ? m_NumCorners : m_Counts[numFaces];
        const auto next = face + count;
        if (std::any_of(face, next, [numPoints](std::uint32_t corner) { return corner >= numPoints; })) {
            *isGood = false;
            ++m_NumBad;
        } else {
            end = std::move(face, next, end);
            if (!m_Counts.empty())
                m_Counts[numKept] = count;
            ++numKept;
        }
        face = next;
    }
    m_Corners.erase(end, m_Corners.end());
    if (!m_Counts.empty())
        m_Counts.resize(numKept);
    geometry.faces = std::move(m_Corners);
    geometry.cornerCounts = std::move(m_Counts);
    geometry.numCorners = !geometry.cornerCounts.empty() ? 0 : m_NumCorners > 0 ? m_NumCorners : 3;
    if (m_NumBad > 0)
        file.leftOut.push_back(std::to_string(m_NumBad) + (m_NumBad == 1 ? " face" : " faces") +
                               " of points that are not there, or of fewer than three");
}

void FaceCollector::keepGood(NumberColumn& column, std::size_t width) const
{
    std::visit(
        [this, width](auto& values) {
            values.resize(width * m_AreGood.size()); // the file may have ended among them
            auto end = values.begin();
            for (std::size_t face = 0; face < m_AreGood.size(); ++face)
                if (m_AreGood[face])
                    end = std::copy_n(values.begin() + static_cast<std::ptrdiff_t>(width * face), width, end);
            values.erase(end, values.end());
        },
        column);
}

} // namespace vireo_view
