#pragma once

#include <cstddef>

#include "vireo/show/delivery/NumberArray.h"

namespace tavo {

// The pixels of an image in memory: rows of pixels, whose channels lie side by side.
struct ImagePixels
{
    NumberArray numbers;
    int width = 0;
    int height = 0;
    int channels = 1;
    std::size_t rowStride = 0; // in numbers
    bool isBgr = false;        // red is the third channel
    bool isBottomUp = false;   // the first row in memory is the lowest

    bool isEmpty() const { return numbers.isEmpty(); }
    bool hasColours() const { return channels >= 3; }

    // Of the first number of a row, counted from the top.
    std::size_t indexOfRow(int y) const
    {
        return rowStride * static_cast<std::size_t>(isBottomUp ? height - 1 - y : y);
    }

    // Where a channel is in a pixel; they count in the order red, green, blue, opacity.
    int placeOfChannel(int channel) const { return isBgr && hasColours() && channel < 3 ? 2 - channel : channel; }

    double at(int x, int y, int channel) const
    {
        return numbers[indexOfRow(y) + static_cast<std::size_t>(x) * static_cast<std::size_t>(channels) +
                       static_cast<std::size_t>(placeOfChannel(channel))];
    }

    bool isInside(int x, int y) const { return x >= 0 && y >= 0 && x < width && y < height; }
};

} // namespace tavo
