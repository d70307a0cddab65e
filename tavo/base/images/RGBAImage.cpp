#include "tavo/base/images/RGBAImage.h"

#include <QImage>
#include <cstring>

namespace tavo {

RGBAImage RGBAImage::fromQImage(const QImage& image)
{
    const QImage bytes = image.convertToFormat(QImage::Format_RGBA8888);
    RGBAImage result(bytes.width(), bytes.height());
    for (int y = 0; y < bytes.height(); ++y)
        std::memcpy(&result.at(0, y), bytes.constScanLine(y), 4 * static_cast<std::size_t>(bytes.width()));
    return result;
}

QImage RGBAImage::toQImage() const
{
    QImage result(getWidth(), getHeight(), QImage::Format_RGBA8888);
    for (int y = 0; y < result.height(); ++y)
        std::memcpy(result.scanLine(y), &at(0, y), 4 * static_cast<std::size_t>(getWidth()));
    return result;
}

} // namespace tavo
