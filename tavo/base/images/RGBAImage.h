#pragma once

#include "tavo/base/Export.h"
#include "tavo/base/images/TemplatedImage.h"

class QImage;

namespace tavo {

/// A picture of four bytes per pixel: red, green, blue, alpha. Colours are not premultiplied by alpha. Row 0 is the
/// first in memory: GL draws it at the bottom, while files and QImage have it at the top.
///
///     #include <QImage>
///
///     const RGBAImage picture = RGBAImage::fromQImage(QImage("stone.png"));
///     const unsigned char red = picture.at(0, 0)[0];
class TAVO_BASE_EXPORT RGBAImage : public TemplatedImage<unsigned char>
{
public:
    using TemplatedImage::TemplatedImage;

    /// Converts an image of any format. Row 0 stays row 0. A null image gives one without pixels.
    static RGBAImage fromQImage(const QImage& image);
    /// Row 0 stays row 0.
    QImage toQImage() const;
};

} // namespace tavo
