#pragma once

#include <limits>

namespace tavo {

// The smallest interval of the finite numbers that were seen.
struct Extent
{
    double from = std::numeric_limits<double>::infinity();
    double to = -std::numeric_limits<double>::infinity();

    bool isEmpty() const { return from > to; }
    void include(double value);
    void include(const Extent& other);
};

} // namespace tavo
