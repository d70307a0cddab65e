#include "tavo/base/images/RGBAFloat32Image.h"

#include <QImage>
#include <algorithm>

#include "tavo/base/images/RGBAImage.h"

namespace tavo {

namespace {

// Converts pixel by pixel, component by component.
template <typename Target, typename Source, typename Conversion>
Target convert(const Source& source, Conversion conversion)
{
    Target target(source.getWidth(), source.getHeight());
    for (std::size_t i = 0; i < source.getPixels().size(); ++i)
        for (unsigned int c = 0; c < 4; ++c)
            target.getPixels()[i][c] = conversion(source.getPixels()[i][c]);
    return target;
}

unsigned char toByte(float value)
{
    // The comparison is false for not-a-number too.
    return value > 0.0f ? static_cast<unsigned char>(std::min(value, 1.0f) * 255.0f + 0.5f) : 0;
}

} // namespace

RGBAFloat32Image RGBAFloat32Image::fromQImage(const QImage& image)
{
    return convert<RGBAFloat32Image>(
        RGBAImage::fromQImage(image), [](unsigned char byte) { return static_cast<float>(byte) / 255.0f; });
}

QImage RGBAFloat32Image::toQImage() const
{
    return convert<RGBAImage>(*this, toByte).toQImage();
}

} // namespace tavo
