#include "vireo/show/images/imageData.h"

#include <QFileInfo>
#include <QImage>
#include <type_traits>

#include "tavo/base/files/saveFile.h"
#include "vireo/show/delivery/csvFile.h"

namespace tavo {

namespace {

QByteArray head(const ImagePixels& pixels)
{
    switch (pixels.channels) {
    case 1: return "x,y,value\n";
    case 2: return "x,y,first,second\n";
    case 3: return "x,y,red,green,blue\n";
    default: return "x,y,red,green,blue,opacity\n";
    }
}

QByteArray rowOf(const ImagePixels& pixels, int y)
{
    QByteArray text;
    pixels.numbers.visit([&](const auto* numbers, std::size_t) {
        const auto* number = numbers + pixels.indexOfRow(y);
        for (int x = 0; x < pixels.width; ++x, number += pixels.channels) {
            appendNumber(text, x);
            text += ',';
            appendNumber(text, y);
            for (int channel = 0; channel < pixels.channels; ++channel) {
                text += ',';
                appendNumber(text, number[pixels.placeOfChannel(channel)]);
            }
            text += '\n';
        }
    });
    return text;
}

// Null of what is not bytes of one, three or four channels.
QImage pictureOf(const ImagePixels& pixels)
{
    const auto* const bytes = pixels.numbers.visit([](const auto* numbers, std::size_t) -> const uchar* {
        if constexpr (std::is_same_v<decltype(numbers), const std::uint8_t*>)
            return numbers;
        else
            return nullptr;
    });
    if (!bytes || pixels.channels == 2)
        return {};
    const QImage::Format format = pixels.channels == 1   ? QImage::Format_Grayscale8
                                  : pixels.channels == 3 ? QImage::Format_RGB888
                                                         : QImage::Format_RGBA8888;
    QImage picture(pixels.width, pixels.height, format);
    if (picture.isNull())
        return {};
    for (int y = 0; y < pixels.height; ++y) {
        const uchar* byte = bytes + pixels.indexOfRow(y);
        uchar* to = picture.scanLine(y);
        for (int x = 0; x < pixels.width; ++x, byte += pixels.channels)
            for (int channel = 0; channel < pixels.channels; ++channel)
                *to++ = byte[pixels.placeOfChannel(channel)];
    }
    return picture;
}

} // namespace

std::string saveImage(const QString& file, const ImagePixels& pixels)
{
    if (pixels.isEmpty())
        return "there are no pixels";
    if (QFileInfo(file).suffix().toLower() == "png") {
        const QImage picture = pictureOf(pixels);
        return picture.isNull() ? "a PNG is for bytes of 1, 3 or 4 channels: other data are saved as .csv"
                                : savePicture(file, picture);
    }
    int y = -1;
    return saveCsv(file, dataFormatsOf(ViewKind::Image), [&]() -> QByteArray {
        QByteArray piece = y < 0 ? head(pixels) : QByteArray();
        for (y = std::max(y, 0); y < pixels.height && piece.size() < CSV_PIECE; ++y)
            piece += rowOf(pixels, y);
        return piece;
    });
}

} // namespace tavo
