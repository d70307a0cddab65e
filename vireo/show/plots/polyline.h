#pragma once

#include <QPolygonF>
#include <vector>

#include "vireo/show/plots/CurveStore.h"
#include "vireo/show/plots/PixelMap.h"

namespace tavo {

// What is drawn of a curve.
struct Polylines
{
    std::vector<QPolygonF> lines; // a further one behind each gap
    QPolygonF marks;              // of samples between two gaps
    bool areDense = false;        // so much so that smooth edges are not seen
};

// Samples of a curve, from one up to and without another.
struct Stretch
{
    std::size_t first;
    std::size_t last;
};

// What is seen, and one sample more at either end, up to which lines lead.
Stretch seenOf(const CurveStore& curve, const PixelMap& xMap);

// The pieces of a curve that are seen, in pixels. Of the samples that share a column of pixels it takes the first, the
// lowest, the highest and the last, in the order in which they come: with a thin pen that is the picture of all of
// them. What is not finite is a gap, unless it is alone among finite samples of its column. Where x goes to and fro all
// samples are drawn, until they cover the view many times over: then those that stick out are.
Polylines polylinesOf(const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap);

// The same of steps: each sample holds until the next one, also if that is a gap. Lines go sideways first.
Polylines stepsOf(const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap);

} // namespace tavo
