#pragma once

#include "tavo/base/math/vectors.h"
#include "vireo/show/slices/SliceLayer.h"

namespace tavo {

// Places in a volume, one after the other, counted in samples.
struct SampleLine
{
    Vector3d first;
    Vector3d step;
    int count = 1;
};

// The numbers at those places: of the cell that each is in, or straight between the middles of cells. As many for each
// place as a sample has; NaN outside of the volume.
void sampleLine(const SliceLayer& layer, const SampleLine& line, bool isInterpolated, double* numbers);

} // namespace tavo
