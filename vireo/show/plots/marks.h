#pragma once

#include <QPolygonF>
#include <QRectF>
#include <vector>

#include "vireo/show/plots/CurveStore.h"
#include "vireo/show/plots/PixelMap.h"

namespace tavo {

// Where the samples of a curve are marked.
struct Marks
{
    QPolygonF points;
    std::vector<QRectF> runs; // where there are too many for points: pixels above each other that all have a sample
};

// One mark for all samples of one pixel, of those that are seen. Where x is sorted, samples of pixels that are marked
// already are passed over block by block, so that the cost is bounded by the pixels.
Marks marksOf(const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap);

} // namespace tavo
