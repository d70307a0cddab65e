#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "vireo/show/scenes/Matrix4.h"

namespace tavo {

constexpr double LARGEST_COORDINATE = 1e30; // beyond it, floats cannot tell how far things are from each other

// The smallest box, along the axes, around all that it was extended by. In the beginning there is nothing in it.
class SceneBox
{
public:
    bool isEmpty() const { return !(m_Min[0] <= m_Max[0]); }
    const Vector3d& getMin() const { return m_Min; }
    const Vector3d& getMax() const { return m_Max; }

    // Halves first: the sum of two large numbers may be too large.
    Vector3d centre() const { return isEmpty() ? Vector3d() : 0.5 * m_Min + 0.5 * m_Max; }
    double diagonal() const { return isEmpty() ? 0 : length(m_Max - m_Min); }

    void extend(const Vector3d& point)
    {
        for (std::size_t i = 0; i < 3; ++i) {
            m_Min[i] = std::min(m_Min[i], point[i]);
            m_Max[i] = std::max(m_Max[i], point[i]);
        }
    }

    void extend(const SceneBox& other)
    {
        if (other.isEmpty())
            return;
        extend(other.m_Min);
        extend(other.m_Max);
    }

    std::array<Vector3d, 8> corners() const
    {
        std::array<Vector3d, 8> corners;
        for (unsigned int i = 0; i < corners.size(); ++i)
            corners[i] = {(i & 1 ? m_Max : m_Min)[0], (i & 2 ? m_Max : m_Min)[1], (i & 4 ? m_Max : m_Min)[2]};
        return corners;
    }

    // The box around this one when it has been moved.
    SceneBox moved(const Matrix4& by) const
    {
        SceneBox box;
        if (!isEmpty())
            for (const Vector3d& corner : corners())
                box.extend(by * corner);
        return box;
    }

private:
    static constexpr double UNBOUNDED = std::numeric_limits<double>::infinity();

    Vector3d m_Min{UNBOUNDED, UNBOUNDED, UNBOUNDED};
    Vector3d m_Max{-UNBOUNDED, -UNBOUNDED, -UNBOUNDED};
};

} // namespace tavo
