#include "vireo/show/slices/slicesData.h"

#include <QFileInfo>
#include <utility>

#include "vireo/show/delivery/csvFile.h"
#include "vireo/show/volumes/niftiFile.h"

namespace tavo {

namespace {

QByteArray headOf(const SliceLayer& volume)
{
    switch (volume.samples.width) {
    case 1: return "x,y,z,value\n";
    case 3: return "x,y,z,red,green,blue\n";
    default: return "x,y,z,red,green,blue,opacity\n";
    }
}

void appendSample(QByteArray& text, const SliceLayer& volume, std::size_t sample)
{
    const Vector3i& size = volume.grid.size;
    const std::size_t inRow = static_cast<std::size_t>(size[0]);
    const std::size_t row = sample / inRow;
    const std::size_t numRows = static_cast<std::size_t>(size[1]);
    const Vector3d place = volume.grid.at({double(sample % inRow), double(row % numRows), double(row / numRows)});
    for (std::size_t i = 0; i < 3; ++i) {
        appendNumber(text, place[i]);
        text += ',';
    }
    volume.samples.numbers.visit([&](const auto* numbers, std::size_t) {
        const std::size_t width = volume.samples.width;
        for (std::size_t i = 0; i < width; ++i) {
            appendNumber(text, numbers[sample * width + i]);
            text += i + 1 < width ? ',' : '\n';
        }
    });
}

} // namespace

std::string saveSlices(const QString& file, const SliceLayer& volume)
{
    if (volume.samples.numbers.isEmpty())
        return "there are no samples";
    if (isNiftiFile(file))
        return volume.areColours() ? "colours are saved as .csv"
                                   : saveNifti(file, volume.grid, volume.samples.numbers, volume.isOriented);
    if (QFileInfo(file).suffix().toLower() == "gz")
        return "it is saved uncompressed, in a file that ends with \".nii\"";
    QByteArray head = headOf(volume);
    std::size_t sample = 0;
    return saveCsv(file, dataFormatsOf(ViewKind::Slices), [&]() -> QByteArray {
        QByteArray piece = std::exchange(head, {});
        for (; sample < volume.samples.size() && piece.size() < CSV_PIECE; ++sample)
            appendSample(piece, volume, sample);
        return piece;
    });
}

} // namespace tavo
