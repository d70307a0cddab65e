#pragma once

#include <array>

#include "tavo/base/math/vectors.h"

namespace tavo {

// A matrix of OpenGL's, column by column, from the coordinates of an object to clip space.
using ToClipSpace = std::array<double, 16>;

// Whether a box lies wholly beyond one of the six planes, so that nothing in it is drawn. Of what is near the corners
// of the view it may say no although nothing is seen.
bool isOutside(const Box3d& box, const ToClipSpace& toClipSpace);

// In pixels, from the lower left corner.
struct PictureSize
{
    double width = 0;
    double height = 0;
};

// A rectangle of it.
struct PicturePart
{
    double left = 0;
    double bottom = 0;
    double width = 0;
    double height = 0;
};

// What is left of a projection when only that part of a picture is drawn, into a viewport as large as the part.
ToClipSpace croppedTo(const ToClipSpace& toClipSpace, const PictureSize& size, const PicturePart& part);

// The same of a square of pixels around the middle of a pixel.
ToClipSpace croppedTo(const ToClipSpace& toClipSpace, const PictureSize& size, int pixelX, int pixelY, int side);

} // namespace tavo
