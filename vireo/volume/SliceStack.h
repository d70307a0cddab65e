#pragma once

#include <array>
#include <functional>

#include "tavo/base/math/vectors.h"
#include "tavo/points/RegularVolume.h"

namespace tavo {

// The slices of a volume along one axis, each a quad across the volume's box.
class SliceStack
{
public:
    // Where in its layer of the box a slice lies.
    enum class Place
    {
        AtStart,
        InMiddle
    };

    SliceStack(const RegularVolume& volume, unsigned int axis, Place place = Place::AtStart)
        : m_Box(volume.getBoundingBox())
        , m_Extends(volume.getExtends())
        , m_Axis(axis)
        , m_Place(place)
    {}

    unsigned int getAxis() const { return m_Axis; }

    // The axes across the stack, the lower one first: that along a texture's rows (s), and that along its columns (t).
    std::array<unsigned int, 2> getAxesAcross() const { return {m_Axis == 0 ? 1u : 0u, m_Axis == 2 ? 1u : 2u}; }

    int getNumSlices() const { return m_Extends[m_Axis]; }

    // The samples of a slice along the first and the second of the axes across.
    int getWidth() const { return m_Extends[getAxesAcross()[0]]; }
    int getHeight() const { return m_Extends[getAxesAcross()[1]]; }

    // Both bounds of a slice, for RegularVolume.
    Vector3i getBounds(int slice) const
    {
        constexpr int all = RegularVolume::UNRESTRICTED;
        Vector3i bounds(all, all, all);
        bounds[m_Axis] = slice;
        return bounds;
    }

    // Where on the axis a slice lies. At the start of the layers, the first is on the box's face, and the last one step
    // before the other.
    float getPosition(int slice) const
    {
        const float place = m_Place == Place::InMiddle ? 0.5F : 0;
        const float t = (static_cast<float>(slice) + place) / static_cast<float>(getNumSlices());
        return m_Box.getMin()[m_Axis] + m_Box.getExtent()[m_Axis] * t;
    }

    // From one slice to the next.
    float getDistance() const { return m_Box.getExtent()[m_Axis] / static_cast<float>(getNumSlices()); }

    // Draws the slices from the back to the front, with texture coordinates from 0 to sMax and tMax on unit 0. Calls
    // bindSlice with the number of each before it. Of `step` slices only the middle one is drawn.
    void draw(int direction, float sMax, float tMax, const std::function<void(unsigned int slice)>& bindSlice,
        int step = 1) const;

private:
    void drawQuad(float position, float sMax, float tMax) const;

    Box3f m_Box;
    Vector3i m_Extends;
    unsigned int m_Axis;
    Place m_Place;
};

} // namespace tavo
