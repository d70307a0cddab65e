#pragma once

#include <cstddef>
#include <utility>

#include "vireo/show/images/ImagePixels.h"
#include "vireo/show/scenes/valueCounts.h"

namespace tavo {

// What the numbers of an image are like: of one channel, or, with -1, of the first three.
struct ImageStatistics
{
    long double least = 0; // of those that are finite; exact for integers of 64 bits, too
    long double greatest = 0;
    std::size_t numNaN = 0; // pixels that are no number in any of these channels, or else infinite in any
    std::size_t numInfinite = 0;
    bool hasNumbers = false; // that are finite
};

// One pass over all of them.
ImageStatistics imageStatistics(const ImagePixels& pixels, int channel);

// How often numbers are where, from the least to the greatest. Of more than some millions, an even choice is counted.
ValueCounts countPixels(const ImagePixels& pixels, int channel, const ImageStatistics& statistics);

// The numbers below which so many per cent of all lie that are finite. Of more than some millions, of an even choice.
// They are 0 where none is finite.
std::pair<double, double> percentilesOf(const ImagePixels& pixels, int channel, double low, double high);

} // namespace tavo
