#pragma once

#include <QPolygonF>
#include <functional>
#include <vector>

#include "vireo/show/plots/CurveStore.h"

namespace tavo {

// From samples to pixels, along one axis.
using ToPixels = std::function<double(double)>;

// What is drawn of a curve.
struct Polylines
{
    std::vector<QPolygonF> lines; // a further one behind each gap
    QPolygonF marks;              // of samples between two gaps, and of points
};

// The pieces of a curve that are seen between two xs, in pixels. Of the samples that share a column of pixels it takes
// the first, the lowest, the highest and the last, in the order in which they come: with a thin pen that is the picture
// of all of them. A NaN is a gap.
Polylines polylinesOf(const CurveStore& curve, const ToPixels& xMap, const ToPixels& yMap, double firstX, double lastX);

// The same for samples that are shown as marks: one for all samples of one pixel that follow each other.
Polylines marksOf(const CurveStore& curve, const ToPixels& xMap, const ToPixels& yMap, double firstX, double lastX);

} // namespace tavo
