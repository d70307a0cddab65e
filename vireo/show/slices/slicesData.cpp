#include "vireo/show/slices/slicesData.h"

#include <QFileInfo>
#include <QtEndian>
#include <algorithm>
#include <cstring>
#include <memory>

#include "tavo/base/files/saveFile.h"
#include "vireo/show/delivery/csvFile.h"

namespace tavo {

namespace {

constexpr int SIZE_OF_HEADER = 352; // with the four bytes behind it
constexpr int LONGEST_AXIS = 32767;

// A header of NIfTI-1, in the order of bytes that this machine has, which readers see by its first number.
class NiftiHeader
{
public:
    NiftiHeader() { put<qint32>(0, 348); }

    template <typename T>
    void put(int place, T value)
    {
        std::memcpy(m_Bytes.data() + place, &value, sizeof value);
    }

    template <typename T>
    void putAll(int place, std::initializer_list<double> values)
    {
        for (const double value : values) {
            put(place, static_cast<T>(value));
            place += static_cast<int>(sizeof(T));
        }
    }

    void put(int place, const char* text) { std::strcpy(m_Bytes.data() + place, text); }

    const QByteArray& bytes() const { return m_Bytes; }

private:
    QByteArray m_Bytes = QByteArray(SIZE_OF_HEADER, '\0');
};

qint16 niftiTypeOf(NumberType type)
{
    switch (type) {
    case NumberType::Int8: return 256;
    case NumberType::UInt8: return 2;
    case NumberType::Int16: return 4;
    case NumberType::UInt16: return 512;
    case NumberType::Int32: return 8;
    case NumberType::UInt32: return 768;
    case NumberType::Int64: return 1024;
    case NumberType::UInt64: return 1280;
    case NumberType::Float32: return 16;
    case NumberType::Float64: break;
    }
    return 64;
}

std::size_t bytesOfNumber(const NumberArray& numbers)
{
    return numbers.visit([](const auto* number, std::size_t) { return sizeof *number; });
}

QByteArray headerOf(const SliceLayer& volume)
{
    const VolumeGrid& grid = volume.grid;
    NiftiHeader header;
    header.putAll<qint16>(40, {3.0, double(grid.size[0]), double(grid.size[1]), double(grid.size[2]), 1, 1, 1, 1});
    header.put(70, niftiTypeOf(volume.samples.numbers.getType()));
    header.put(72, static_cast<qint16>(8 * bytesOfNumber(volume.samples.numbers)));
    header.putAll<float>(76, {1, grid.spacing[0], grid.spacing[1], grid.spacing[2], 0, 0, 0, 0});
    header.putAll<float>(108, {double(SIZE_OF_HEADER), 1, 0});
    header.put<qint16>(254, volume.isOriented ? 1 : 2); // of a scanner's coordinates, or those of something else
    for (std::size_t row = 0; row < 3; ++row)
        header.putAll<float>(
            280 + 16 * static_cast<int>(row), {grid.axes[0][row] * grid.spacing[0], grid.axes[1][row] * grid.spacing[1],
                                                  grid.axes[2][row] * grid.spacing[2], grid.origin[row]});
    header.put(344, "n+1");
    return header.bytes();
}

std::string saveNifti(const QString& file, const SliceLayer& volume)
{
    const Vector3i& size = volume.grid.size;
    if (volume.areColours())
        return "colours are saved as .csv";
    if (std::max({size[0], size[1], size[2]}) > LONGEST_AXIS)
        return "NIfTI has at most 32767 samples along an axis: more are saved as .csv";
    const auto* const bytes = static_cast<const char*>(volume.samples.numbers.getData());
    const std::size_t numBytes = volume.samples.numbers.size() * bytesOfNumber(volume.samples.numbers);
    QByteArray header = headerOf(volume);
    std::size_t done = 0;
    return saveFile(file, [&]() -> QByteArray {
        if (!header.isEmpty())
            return std::exchange(header, {});
        const std::size_t count = std::min(numBytes - done, static_cast<std::size_t>(CSV_PIECE));
        done += count;
        return QByteArray::fromRawData(bytes + done - count, static_cast<int>(count));
    });
}

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
    const QString ending = QFileInfo(file).suffix().toLower();
    if (ending == "nii")
        return saveNifti(file, volume);
    if (ending == "gz")
        return "it is saved uncompressed, in a file that ends with \".nii\"";
    QByteArray head = headOf(volume);
    std::size_t sample = 0;
    return saveCsv(file, [&]() -> QByteArray {
        QByteArray piece = std::exchange(head, {});
        for (; sample < volume.samples.size() && piece.size() < CSV_PIECE; ++sample)
            appendSample(piece, volume, sample);
        return piece;
    });
}

} // namespace tavo
