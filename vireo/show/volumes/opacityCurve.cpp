#include "vireo/show/volumes/opacityCurve.h"

#include <algorithm>

namespace tavo {

double opacityAt(const OpacityCurve& curve, double place)
{
    if (curve.empty())
        return 0;
    const auto after = std::upper_bound(curve.begin(), curve.end(), place,
        [](double wanted, const OpacityPoint& point) { return wanted < point.place; });
    if (after == curve.begin())
        return curve.front().opacity;
    if (after == curve.end())
        return curve.back().opacity;
    const auto before = after - 1;
    const double part = (place - before->place) / (after->place - before->place);
    return before->opacity + part * (after->opacity - before->opacity);
}

// Halved: the whole may be too large.
double placeInRange(double value, const std::pair<double, double>& range)
{
    const double half = range.second / 2 - range.first / 2;
    return half != 0 ? (value / 2 - range.first / 2) / half : 0.5;
}

const OpacityCurve& usualOpacities()
{
    static const OpacityCurve CURVE{{0, 0}, {0.1, 0}, {1, 0.3}};
    return CURVE;
}

const OpacityCurve& opacitiesOfCategories()
{
    static const OpacityCurve CURVE{{0, 0.3}, {1, 0.3}};
    return CURVE;
}

} // namespace tavo
