#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "tests/support/Picture.h"

namespace tavo {

// One pass of a blur, computed without GL: each pixel becomes the weighted mean of those that lie up to a radius before
// and behind it in the direction (dx, dy), rounded to bytes, as a render texture of bytes keeps it. The edges go on
// for ever. The 2 * radius + 1 weights begin with that of the pixel farthest before.
inline Picture blurPass(const Picture& source, const std::vector<double>& weights, int dx, int dy)
{
    const auto clamped = [](int value, unsigned int size) {
        return static_cast<unsigned int>(std::clamp(value, 0, static_cast<int>(size) - 1));
    };
    const int radius = static_cast<int>(weights.size() / 2);
    Picture result(source.width, source.height);
    for (unsigned int y = 0; y < source.height; ++y)
        for (unsigned int x = 0; x < source.width; ++x)
            for (std::size_t channel = 0; channel < 4; ++channel) {
                double sum = 0;
                for (int i = -radius; i <= radius; ++i)
                    sum += weights[static_cast<std::size_t>(i + radius)] *
                           source.at(clamped(static_cast<int>(x) + i * dx, source.width),
                               clamped(static_cast<int>(y) + i * dy, source.height))[channel];
                result.at(x, y)[channel] = static_cast<unsigned char>(std::lround(sum));
            }
    return result;
}

} // namespace tavo
