#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <utility>

#include "vireo/show/scenes/Matrix4.h"
#include "vireo/show/scenes/SceneBox.h"
#include "vireo/show/volumes/VolumeGrid.h"

namespace tavo {

// The places of a volume along a line of sight, one behind the other, at most half a sample apart.
class VolumeRay
{
public:
    // The grid is seen through the matrix. Of the ray, what lies before its start is left out if `isCut`.
    VolumeRay(
        const VolumeGrid& grid, const Matrix4& matrix, const Vector3d& start, const Vector3d& direction, bool isCut);

    // Leaves out the places in a box of the scene.
    void leaveOut(const SceneBox& box);

    // Calls `use(sample)` with the number of the nearest sample at each place, until it returns false.
    void forEach(const std::function<bool(std::size_t sample)>& use) const;

    // From one place to the next, in smallest distances of samples.
    double thickness() const { return m_Thickness; }

private:
    Vector3i m_Size;
    Vector3d m_First; // in samples
    Vector3d m_Step;
    std::size_t m_NumPlaces = 0;
    double m_Thickness = 0;
    Vector3d m_Start; // in the scene, the first place and the way to the next
    Vector3d m_Way;
    std::pair<double, double> m_LeftOut{1, 0}; // places
};

} // namespace tavo
