#pragma once

#include <QPolygonF>
#include <QRectF>
#include <vector>

#include "vireo/show/plots/CurveStore.h"
#include "vireo/show/plots/PixelMap.h"

namespace tavo {

// Bars from zero to the samples of a curve, in pixels; `width` is along x. Where many share a column of pixels, one bar
// stands for them, as high as the highest and as low as the lowest.
std::vector<QRectF> barsOf(const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap, double width);

// The areas between two curves over the same x, one more behind each gap. Columns of pixels as above.
std::vector<QPolygonF> bandOf(
    const CurveStore& low, const CurveStore& high, const PixelMap& xMap, const PixelMap& yMap);

// The least distance of neighbours along x, in whatever order they come; 1 if there is none.
double leastDistance(const CurveStore& curve);

// How many of the values lie in each of some intervals of equal length, at their middles. Where all values are whole
// numbers, each interval has as many of these. What is not finite is left out.
CurveSamples histogramOf(const NumberArray& values);

// How many of them a histogram leaves out for being infinite.
std::size_t numInfiniteOf(const NumberArray& values);

} // namespace tavo
