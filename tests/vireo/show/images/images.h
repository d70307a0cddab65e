#pragma once

#include <QSize>
#include <string>
#include <vector>

#include "vireo/show/Numbers.h"
#include "vireo/show/images/ImageView.h"

namespace tavo {

template <typename T>
ImagePixels imageOf(std::vector<T> numbers, int width, int height, int channels = 1)
{
    ImagePixels pixels;
    pixels.numbers = Numbers(std::move(numbers));
    pixels.width = width;
    pixels.height = height;
    pixels.channels = channels;
    pixels.rowStride = static_cast<std::size_t>(width) * static_cast<std::size_t>(channels);
    return pixels;
}

// Sends pixels, as the front door hands them to a view.
inline void send(ImageView& view, const ImagePixels& pixels, const ImageSettings& settings = {})
{
    ImageUpdate update;
    update.pixels = pixels;
    update.settings = settings;
    view.apply(update);
}

} // namespace tavo
