#pragma once

#include <utility>
#include <vector>

namespace tavo {

// How opaque a volume is where its values lie at a place of their range, from 0 at its beginning to 1 at its end: in a
// layer as thick as the smallest distance of samples.
struct OpacityPoint
{
    double place = 0;
    double opacity = 0;

    bool operator==(const OpacityPoint&) const = default;
};

// By their places.
using OpacityCurve = std::vector<OpacityPoint>;

// Straight from point to point, and level before the first and behind the last.
double opacityAt(const OpacityCurve& curve, double place);

// Where a value is in a range; in the middle of one that is none.
double placeInRange(double value, const std::pair<double, double>& range);

// For whoever says nothing else: what is least is not seen, what is greatest best.
const OpacityCurve& usualOpacities();

// The same of categories: all are seen alike.
const OpacityCurve& opacitiesOfCategories();

} // namespace tavo
