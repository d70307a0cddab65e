#pragma once

#include "vireo/show/images/ImagePixels.h"

namespace tavo {

// By how much the numbers of an image are above those of another one of its size, as floats, or as doubles where one of
// them has numbers that floats are too small for.
ImagePixels imageDifference(const ImagePixels& pixels, const ImagePixels& other);

// Whether there is such a thing.
bool haveDifference(const ImagePixels& pixels, const ImagePixels& other);

} // namespace tavo
