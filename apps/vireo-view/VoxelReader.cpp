#include "apps/vireo-view/VoxelReader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <type_traits>

#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

constexpr std::size_t PIECE = 1 << 13; // numbers that are converted at a time

// Calls a function with a number of that type.
template <typename Function>
auto withTypeOf(VoxelType type, Function function)
{
    switch (type) {
    case VoxelType::INT8: return function(std::int8_t());
    case VoxelType::UINT8: return function(std::uint8_t());
    case VoxelType::INT16: return function(std::int16_t());
    case VoxelType::UINT16: return function(std::uint16_t());
    case VoxelType::INT32: return function(std::int32_t());
    case VoxelType::UINT32: return function(std::uint32_t());
    case VoxelType::INT64: return function(std::int64_t());
    case VoxelType::UINT64: return function(std::uint64_t());
    case VoxelType::FLOAT: return function(float());
    default: return function(double());
    }
}

template <typename Value>
Value swapped(Value value)
{
    std::array<char, sizeof value> bytes{};
    std::memcpy(bytes.data(), &value, sizeof value);
    std::reverse(bytes.begin(), bytes.end());
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

// What numbers of a type are kept as, while they are not scaled.
template <typename Stored>
using Kept = std::conditional_t<std::is_integral_v<Stored> && sizeof(Stored) == sizeof(std::int64_t), double, Stored>;

class VoxelReader
{
public:
    VoxelReader(CompressedFile& file, const VoxelLayout& layout, const Progress& progress)
        : m_File(file)
        , m_Layout(layout)
        , m_Progress(progress)
        , m_NumBytes(layout.numPerTime * std::uint64_t{sizeInBytes(layout.type)})
    {
        if (m_NumBytes > m_File.getLargestRest() / layout.numTimes)
            endsTooSoon();
    }

    std::vector<NumberColumn> read()
    {
        std::vector<NumberColumn> times;
        for (m_Time = 0; m_Time < m_Layout.numTimes; ++m_Time)
            times.push_back(withTypeOf(m_Layout.type, [this](auto value) { return readTime<decltype(value)>(); }));
        // Behind the last voxel a compressed file says whether all before it was right. Damage may put more before
        // that.
        std::array<unsigned char, 1 << 14> behind{};
        m_File.read(behind.data(), behind.size());
        return times;
    }

private:
    template <typename Stored>
    NumberColumn readTime()
    {
        const bool isScaled = m_Layout.slope != 1 || m_Layout.intercept != 0;
        const double slope = m_Layout.slope, intercept = m_Layout.intercept;
        if (!isScaled)
            return convert<Stored>([](Stored stored) { return static_cast<Kept<Stored>>(stored); });
        return convert<Stored>(
            [=](Stored stored) { return static_cast<float>(static_cast<double>(stored) * slope + intercept); });
    }

    // The column takes up its room when all that shall fill it is known to be there. To decompress takes about as long
    // as the rest.
    template <typename Stored, typename Convert>
    auto convert(Convert toKept)
    {
        double partBefore = 0;
        const bool areThere = m_File.ensure(m_NumBytes, [&](double part) {
            partBefore = part / 2;
            tell(partBefore);
        });
        if (!areThere)
            endsTooSoon();
        std::vector<decltype(toKept(Stored()))> values(m_Layout.numPerTime);
        std::vector<Stored> piece(std::min(PIECE, values.size()));
        for (std::size_t start = 0; start < values.size(); start += piece.size()) {
            piece.resize(std::min(piece.size(), values.size() - start));
            readPiece(piece);
            std::transform(piece.begin(), piece.end(), values.begin() + static_cast<std::ptrdiff_t>(start), toKept);
            tell(partBefore +
                 (1 - partBefore) * static_cast<double>(start + piece.size()) / static_cast<double>(values.size()));
        }
        return values;
    }

    template <typename Stored>
    void readPiece(std::vector<Stored>& piece)
    {
        const std::size_t numBytes = piece.size() * sizeof(Stored);
        if (m_File.read(piece.data(), numBytes) < numBytes)
            endsTooSoon();
        if (m_Layout.isSwapped)
            std::transform(piece.begin(), piece.end(), piece.begin(), swapped<Stored>);
    }

    // Which part of this time there is.
    void tell(double part) const
    {
        const double partOfAll = (static_cast<double>(m_Time) + part) / static_cast<double>(m_Layout.numTimes);
        if (m_Progress && !m_Progress(partOfAll))
            throw InputError(m_File.getFile(), "the reading was stopped");
    }

    [[noreturn]] void endsTooSoon() const { throw InputError(m_File.getFile(), "ends before its last voxel"); }

    CompressedFile& m_File;
    const VoxelLayout& m_Layout;
    const Progress& m_Progress;
    std::uint64_t m_NumBytes; // of each time
    std::size_t m_Time = 0;
};

} // namespace

std::size_t sizeInBytes(VoxelType type)
{
    return withTypeOf(type, [](auto value) { return sizeof value; });
}

std::vector<NumberColumn> readVoxels(CompressedFile& file, const VoxelLayout& layout, const Progress& progress)
{
    return VoxelReader(file, layout, progress).read();
}

} // namespace vireo_view
