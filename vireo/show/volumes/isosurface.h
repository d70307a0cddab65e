#pragma once

#include <atomic>
#include <vector>

#include "vireo/show/delivery/NumberArray.h"
#include "vireo/show/volumes/VolumeGrid.h"

namespace tavo {

// Where samples pass a value. Triangles share their vertices, and are seen from the front where values are less. The
// normals, of length 1, point there, too: against the gradient.
struct Isosurface
{
    std::vector<double> points;          // three each
    std::vector<float> normals;          // three each
    std::vector<unsigned int> triangles; // three vertices each
};

// Of as many samples as the grid has. Cells with a corner that is not finite are left out, so the surface has an edge
// there, as it has where the volume ends. It is given up, and empty, once it is unwanted. How much of it is done,
// from 0 to 1, is said as it goes on.
Isosurface isosurfaceOf(const VolumeGrid& grid, const NumberArray& samples, double value,
    const std::atomic<bool>& isUnwanted, std::atomic<double>* part = nullptr);

} // namespace tavo
