#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <utility>

#include "vireo/show/delivery/NumberArray.h"

namespace tavo {

// How often numbers are where, from the least to the greatest that is finite. Of more than a million, an even choice is
// counted.
struct ValueCounts
{
    static constexpr std::size_t SIZE = 128;

    double least = 0;
    double greatest = 0;
    std::array<std::size_t, SIZE> counts{};

    std::size_t largest() const;
    bool areNone() const { return largest() == 0; }
};

// The least and the greatest number that is finite; 0 and 0 if none is.
std::pair<double, double> finiteRangeOf(const NumberArray& numbers);

bool isAnyFinite(const NumberArray& numbers);

// Ends early once they are unwanted.
ValueCounts countValues(const NumberArray& numbers, const std::atomic<bool>* isUnwanted = nullptr);

// The numbers that a part of all is below, and another part, each from 0 to 1; of those that are finite. Of more than a
// million, an even choice is looked at.
std::pair<double, double> quantiles(const NumberArray& numbers, double first, double second);

} // namespace tavo
