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

} // namespace tavo
