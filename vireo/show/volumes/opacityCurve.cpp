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

const OpacityCurve& usualOpacities()
{
    static const OpacityCurve CURVE{{0, 0}, {0.1, 0}, {1, 0.3}};
    return CURVE;
}

} // namespace tavo
