#include "vireo/show/plots/Extent.h"

#include <algorithm>
#include <cmath>

namespace tavo {

void Extent::include(double value)
{
    if (!std::isfinite(value))
        return;
    from = std::min(from, value);
    to = std::max(to, value);
}

void Extent::include(const Extent& other)
{
    from = std::min(from, other.from);
    to = std::max(to, other.to);
}

} // namespace tavo
