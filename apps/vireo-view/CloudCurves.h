#pragma once

#include "apps/vireo-view/Point.h"

namespace vireo_view {

// Curves that tell of a cloud's shape. The clouds have a point at least, and finite coordinates only.

// How many points there are at which height: the outline of a histogram, whose x is the coordinate along the axis and
// whose y is the number of points. It begins and ends at y = 0.
Points2 heightHistogram(const Points3& cloud, Axis up);

// That one of the other two axes along which the cloud is longer.
Axis longerAxisBeside(Axis up, const Points3& cloud);

// The heights of the highest and of the lowest points along the longer of the other two axes. y is NaN where the cloud
// has a gap.
struct Silhouette
{
    Axis along;
    Points2 highest;
    Points2 lowest;
};

Silhouette silhouette(const Points3& cloud, Axis up);

} // namespace vireo_view
