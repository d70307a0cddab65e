#pragma once

#include "tavo/base/Export.h"
#include "tavo/base/images/TemplatedImage.h"

class QImage;

namespace tavo {

// A picture of four 32-bit floats a pixel, in the order red, green, blue, alpha. Full intensity is 1; values beyond 0
// to 1 are kept.
class TAVO_BASE_EXPORT RGBAFloat32Image : public TemplatedImage<float>
{
public:
    using TemplatedImage::TemplatedImage;

    // Row 0 of the one is row 0 of the other; a byte b becomes b / 255. A null image has no pixels.
    static RGBAFloat32Image fromQImage(const QImage& image);

    // Values are cut to 0 to 1 and rounded to bytes; not-a-number becomes 0.
    QImage toQImage() const;
};

} // namespace tavo
