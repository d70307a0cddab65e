#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace tavo {

using Pixel = std::array<unsigned char, 4>;

// RGBA pixels with 8 bits per channel, row by row from the bottom up, as GL reads them.
struct Picture
{
    Picture() = default;
    Picture(unsigned int pictureWidth, unsigned int pictureHeight, Pixel colour = {})
        : width(pictureWidth)
        , height(pictureHeight)
        , pixels(static_cast<std::size_t>(pictureWidth) * pictureHeight, colour)
    {}

    Pixel& at(unsigned int x, unsigned int y) { return pixels.at(static_cast<std::size_t>(y) * width + x); }
    const Pixel& at(unsigned int x, unsigned int y) const { return pixels.at(static_cast<std::size_t>(y) * width + x); }

    bool operator==(const Picture&) const = default;

    unsigned int width = 0;
    unsigned int height = 0;
    std::vector<Pixel> pixels;
};

} // namespace tavo
