#pragma once

#include <array>

#include "tavo/base/math/BoundingBox.h"
#include "tavo/base/math/StaticVector.h"

namespace tavo {

// What the renderers of volumes have in common: a stack of slices along one axis, each a textured quad.

// The axes across a stack, the lower one first: that along the texture's rows (s), and that along its columns (t).
std::array<unsigned int, 2> axesAcross(unsigned int axis);

bool hasSamples(const StaticVector<int, 3>& extends);

// Filters, wrap modes and texture environment of the bound 2D texture and the active unit for drawing slices.
void setSliceParameters();

// A slice at position p on the axis, across the box, with texture coordinates from 0 to sMax and tMax on unit 0.
void drawSliceQuad(unsigned int axis, const BoundingBox<float, 3>& box, float p, float sMax, float tMax);

// glPushAttrib for everything, and glPopAttrib whatever happens in between.
class AllAttributes
{
public:
    AllAttributes();
    ~AllAttributes();
    AllAttributes(const AllAttributes&) = delete;
    AllAttributes& operator=(const AllAttributes&) = delete;
};

// State in which slices are drawn from the back to the front.
void enableBlendedSlices();

} // namespace tavo
