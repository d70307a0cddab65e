#pragma once

#include <algorithm>
#include <cmath>

namespace tavo {

// The opacity of a layer that is so many times as thick as one of the given opacity, each from 0 to 1.
inline double opacityOfLayer(double opacity, double thickness)
{
    return 1 - std::pow(1 - std::clamp(opacity, 0.0, 1.0), thickness);
}

} // namespace tavo
