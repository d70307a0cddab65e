#pragma once

#include <cmath>
#include <limits>

namespace tavo {

// The smallest interval of the finite numbers that were seen.
struct Extent
{
    double from = std::numeric_limits<double>::infinity();
    double to = -std::numeric_limits<double>::infinity();

    bool isEmpty() const { return from > to; }

    void include(double value)
    {
        if (std::isfinite(value))
            include({value, value});
    }

    void include(const Extent& other)
    {
        from = other.from < from ? other.from : from;
        to = other.to > to ? other.to : to;
    }
};

} // namespace tavo
