#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QString>

#include "vireo/show/images/ImageLevels.h"
#include "vireo/show/images/ImageSight.h"
#include "vireo/show/images/PixelColours.h"

class QPainter;

namespace tavo {

// From this magnification on, a grid and the numbers of the pixels are drawn.
constexpr double SCALE_OF_VALUES = 32;

struct ImageInk
{
    QColor ground;
    QColor edge; // of the image
    QFont font;
};

// A picture of what is seen of an image. Its cost goes by the pixels of the picture, once the levels are there that it
// shows.
void drawImage(
    QImage& picture, ImageLevels& levels, const PixelColours& colours, const ImageSight& sight, const ImageInk& ink);
QImage drawImage(
    ImageLevels& levels, const PixelColours& colours, const ImageSight& sight, const QSize& size, const ImageInk& ink);

// The same into a picture of what was seen before of the same image, with the same colours: where the image was only
// moved, what stays in view is moved, too, and drawn is what comes into view.
void moveImage(QImage& picture, const ImageSight& before, ImageLevels& levels, const PixelColours& colours,
    const ImageSight& sight, const ImageInk& ink);

// Whether it is painted about as fast as a picture of it would be, so that none need be kept; and paints it so, in a
// view of that size.
bool isPaintedAtOnce(const ImageSight& sight);
void paintImage(QPainter& painter, const QSize& view, const ImagePixels& pixels, const PixelColours& colours,
    const ImageSight& sight, const ImageInk& ink);

// A number as it stands in a pixel or a line of text, with so many digits.
QString textOfNumber(const ImagePixels& pixels, int x, int y, int channel, int digits);

} // namespace tavo
