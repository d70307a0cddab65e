#pragma once

#include "tavo/base/Export.h"
#include "tavo/base/images/TemplatedImage.h"

class QImage;

namespace tavo {

// A picture of four bytes a pixel, in the order red, green, blue, alpha; alpha is not multiplied into the colours.
// Row 0 is the first in memory; GL calls that row the bottom one, files and QImage the top one.
class TAVO_BASE_EXPORT RGBAImage : public TemplatedImage<unsigned char>
{
public:
    using TemplatedImage::TemplatedImage;

    // Row 0 of the one is row 0 of the other. An image of another format is converted; a null image has no pixels.
    static RGBAImage fromQImage(const QImage& image);
    QImage toQImage() const;
};

} // namespace tavo
