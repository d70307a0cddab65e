#include "vireo/show/scenes/clipSpace.h"

#include <cstddef>

namespace tavo {

namespace {

using Vector4d = StaticVector<double, 4>;

Vector4d product(const ToClipSpace& matrix, const Vector3d& point)
{
    Vector4d result;
    for (std::size_t row = 0; row < 4; ++row)
        result[row] =
            matrix[row] * point[0] + matrix[row + 4] * point[1] + matrix[row + 8] * point[2] + matrix[row + 12];
    return result;
}

Vector3d cornerOf(const Box3d& box, unsigned int number)
{
    Vector3d corner;
    for (unsigned int axis = 0; axis < 3; ++axis)
        corner[axis] = (number >> axis & 1 ? box.getMax() : box.getMin())[axis];
    return corner;
}

} // namespace

bool isOutside(const Box3d& box, const ToClipSpace& toClipSpace)
{
    unsigned int beyond = 0x3F; // a bit for each plane beyond which all corners were so far
    for (unsigned int number = 0; number < 8; ++number) {
        const Vector4d corner = product(toClipSpace, cornerOf(box, number));
        for (unsigned int axis = 0; axis < 3; ++axis) {
            if (corner[axis] >= -corner[3])
                beyond &= ~(1u << axis);
            if (corner[axis] <= corner[3])
                beyond &= ~(8u << axis);
        }
    }
    return beyond != 0;
}

ToClipSpace croppedTo(const ToClipSpace& toClipSpace, const PictureSize& size, const PicturePart& part)
{
    const double across = size.width / part.width;
    const double up = size.height / part.height;
    const double centreX = (2 * part.left + part.width) / size.width - 1;
    const double centreY = (2 * part.bottom + part.height) / size.height - 1;
    ToClipSpace cropped = toClipSpace;
    for (std::size_t column = 0; column < 16; column += 4) {
        cropped[column] = across * (toClipSpace[column] - centreX * toClipSpace[column + 3]);
        cropped[column + 1] = up * (toClipSpace[column + 1] - centreY * toClipSpace[column + 3]);
    }
    return cropped;
}

ToClipSpace croppedTo(const ToClipSpace& toClipSpace, const PictureSize& size, int pixelX, int pixelY, int side)
{
    const auto width = double(side);
    return croppedTo(toClipSpace, size, {pixelX + 0.5 - width / 2, pixelY + 0.5 - width / 2, width, width});
}

} // namespace tavo
