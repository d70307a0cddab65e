#include "vireo/show/volumes/niftiFile.h"

#include <QByteArray>
#include <QFileInfo>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

#include "tavo/base/files/saveFile.h"
#include "vireo/show/scenes/SceneItem.h"

namespace tavo {

namespace {

constexpr int DATA_BEGIN = 352;
constexpr std::int16_t RGBA32 = 2304;
constexpr std::size_t PIECE = 1 << 20; // in bytes

std::int16_t typeCode(NumberType type)
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

using Header = std::array<char, DATA_BEGIN>;

template <typename T>
void put(Header& header, int offset, T value)
{
    std::memcpy(header.data() + offset, &value, sizeof value);
}

// Of NIfTI-1, in the byte order of the machine, which readers tell from the first number.
QByteArray headerOf(const VolumeGrid& grid, std::int16_t type, int bytesOfSample, bool isOriented)
{
    Header header{};
    put(header, 0, std::int32_t(348));
    put(header, 40, std::int16_t(3)); // dimensions
    put(header, 70, type);
    put(header, 72, static_cast<std::int16_t>(8 * bytesOfSample));
    put(header, 76, 1.0F);
    put(header, 108, float(DATA_BEGIN));
    put(header, 112, 1.0F);                             // samples are values
    put(header, 254, std::int16_t(isOriented ? 1 : 2)); // three rows say where they are, in a scanner or elsewhere
    for (int i = 0; i < 3; ++i) {
        const auto axis = static_cast<std::size_t>(i);
        put(header, 42 + 2 * i, static_cast<std::int16_t>(grid.size[axis]));
        put(header, 80 + 4 * i, static_cast<float>(grid.spacing[axis]));
        for (std::size_t row = 0; row < 3; ++row)
            put(header, 280 + 16 * static_cast<int>(row) + 4 * i,
                static_cast<float>(grid.spacing[axis] * grid.axes[axis][row]));
        put(header, 280 + 16 * i + 12, static_cast<float>(grid.origin[axis]));
    }
    for (int i = 3; i < 7; ++i)
        put(header, 42 + 2 * i, std::int16_t(1));
    std::memcpy(header.data() + 344, "n+1", 4);
    return {header.data(), DATA_BEGIN};
}

// Colours as bytes.
NumberArray bytesOf(const SceneItem& volume)
{
    const auto bytes = std::make_shared<std::vector<std::uint8_t>>();
    for (std::size_t i = 0; i < volume.shape()->numPoints(); ++i)
        if (const std::optional<RGBA8> colour = volume.colourSent(i, i))
            bytes->insert(bytes->end(), colour->data(), colour->data() + 4);
    return {bytes, bytes->data(), bytes->size(), NumberType::UInt8};
}

} // namespace

bool isNiftiFile(const QString& file)
{
    return QFileInfo(file).suffix().toLower() == "nii";
}

std::string saveNifti(const QString& file, const VolumeGrid& grid, const NumberArray& samples, bool isOriented)
{
    for (std::size_t i = 0; i < 3; ++i)
        if (grid.size[i] > std::numeric_limits<std::int16_t>::max())
            return "a NIfTI file has at most 32767 samples along an axis, and not " + std::to_string(grid.size[i]);
    const std::size_t size =
        samples.visit([]<typename T>(const T*, std::size_t numNumbers) { return numNumbers * sizeof(T); });
    const bool areColours = samples.size() > grid.numSamples();
    const auto bytesOfSample = static_cast<int>(size / std::max<std::size_t>(grid.numSamples(), 1));
    QByteArray piece = headerOf(grid, areColours ? RGBA32 : typeCode(samples.getType()), bytesOfSample, isOriented);
    return saveFile(file, [samples, size, piece, isFirst = true, next = std::size_t(0)]() mutable {
        if (std::exchange(isFirst, false))
            return piece;
        const std::size_t count = std::min(PIECE, size - next);
        const char* const from = static_cast<const char*>(samples.getData()) + next;
        next += count;
        return QByteArray(from, static_cast<int>(count));
    });
}

std::string saveNifti(const QString& file, const SceneItem& volume)
{
    const std::vector<SceneField> fields = volume.fields();
    return saveNifti(
        file, *volume.shape()->grid, fields.empty() ? bytesOf(volume) : fields.front().values.numbers, true);
}

} // namespace tavo
