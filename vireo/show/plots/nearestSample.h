#pragma once

#include <QPointF>
#include <cstddef>
#include <optional>

#include "vireo/show/plots/CurveStore.h"
#include "vireo/show/plots/PixelMap.h"

namespace tavo {

struct NearestSample
{
    std::size_t number;
    QPointF pixel;
    double distance; // in pixels
};

// The sample that is drawn nearest to a place, and no farther from it than a radius.
std::optional<NearestSample> nearestSample(
    const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap, const QPointF& place, double radius);

// Of a curve of steps, the sample that holds at a place, which is the last one that is not behind it. The steps are no
// farther from the place than a radius, and x is sorted.
std::optional<NearestSample> holdingSample(
    const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap, const QPointF& place, double radius);

// The sample at an x, or the nearest to it within some pixels, where x is sorted; of steps that which holds there.
std::optional<std::size_t> sampleAtX(
    const CurveStore& curve, bool isSteps, const PixelMap& xMap, double x, double radius);

} // namespace tavo
