#pragma once

#include "tavo/base/Export.h"
#include "tavo/base/images/TemplatedImage.h"

class QImage;

namespace tavo {

/// A picture of four 32-bit floats per pixel: red, green, blue, alpha. Full intensity is 1. Values outside 0 to 1 are
/// kept.
///
///     #include <QImage>
///
///     const RGBAFloat32Image heights = RGBAFloat32Image::fromQImage(QImage("heights.png"));
class TAVO_BASE_EXPORT RGBAFloat32Image : public TemplatedImage<float>
{
public:
    using TemplatedImage::TemplatedImage;

    /// Converts an image of any format; a byte `b` becomes `b / 255`. Row 0 stays row 0. A null image gives one without
    /// pixels.
    static RGBAFloat32Image fromQImage(const QImage& image);

    /// Clamps values to 0 to 1 and rounds them to bytes. Not-a-number becomes 0. Row 0 stays row 0.
    QImage toQImage() const;
};

} // namespace tavo
