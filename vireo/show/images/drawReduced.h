#pragma once

#include <QImage>
#include <QRect>

#include "vireo/show/images/ImageLevels.h"
#include "vireo/show/images/ImageSight.h"
#include "vireo/show/images/PixelColours.h"

namespace tavo {

// Draws an image that is seen smaller than it is, into a part of a picture that it covers. What a pixel shows depends
// on nothing but its place in the image: parts fit to each other, and to what has been moved by whole pixels.
void drawReduced(
    QImage& picture, const QRect& part, ImageLevels& levels, const PixelColours& colours, const ImageSight& sight);

} // namespace tavo
