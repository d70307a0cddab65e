#pragma once

#include <cstddef>

#include "tavo/base/images/TemplatedImage.h"
#include "tavo/base/math/checkedAt.h"

namespace tavo {

// The first `count` pixels of an image, for an upload. Throws std::out_of_range if the image has fewer, or if the count
// is 0.
template <typename Component>
const typename TemplatedImage<Component>::Pixel* firstPixels(const TemplatedImage<Component>& image, std::size_t count)
{
    // For a count of 0 the index wraps around, to one that no image has.
    checkedAt(image.getPixels(), count - 1);
    return image.getPixels().data();
}

} // namespace tavo
