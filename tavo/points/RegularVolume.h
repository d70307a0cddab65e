#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "tavo/base/math/vectors.h"
#include "tavo/points/Export.h"
#include "tavo/points/PointSet.h"

namespace tavo {

/// Samples on a regular grid that fills an axis-aligned box. They are the points of a PointSet: sample (x, y, z) has
/// index x + y * nx + z * nx * ny. The set's attributes are the channels, which may have different types.
///
///     VertexDescriptor channels;
///     channels.pushAttrib(VertexAttribDescriptor("density", 1, VertexAttribDescriptor::TYPE_FLOAT));
///     const Box3f box({0, 0, 0}, {181, 217, 181});
///     RegularVolume volume({181, 217, 181}, box, std::make_unique<PointSet>(channels, 181 * 217 * 181));
class TAVO_POINTS_EXPORT RegularVolume
{
public:
    using RGBA = RGBA8; // its older name

    /// The colour of a sample of N floats. The pointer is the caller's own.
    template <unsigned int N>
    using Mapping = RGBA8 (*)(void*, const StaticVector<float, N>&);

    /// As a bound: not restricted along that axis.
    static constexpr int UNRESTRICTED = -1;

    /// Takes the numbers of samples along X, Y and Z, the box that they fill, and the samples, which may be null for a
    /// volume that has none yet.
    /// @owns The volume owns the samples.
    /// @throws PException If a number is negative.
    RegularVolume(const Vector3i& extends, const Box3f& box, std::unique_ptr<PointSet> samples = nullptr);
    ~RegularVolume();
    /// The volume moved from has no samples, and a new number.
    RegularVolume(RegularVolume&&) noexcept;
    RegularVolume& operator=(RegularVolume&&) noexcept;

    /// A number unique in the process, by which users can tell a volume from an earlier one at the same address.
    std::uint64_t getVolumeNumber() const { return m_VolumeNumber; }

    const Vector3i& getExtends() const { return m_Extends; }
    const Box3f& getBoundingBox() const { return m_Box; }

    /// The samples; null if there are none.
    /// @owns The volume owns them.
    PointSet* getPointSet() { return m_Samples.get(); }
    const PointSet* getPointSet() const { return m_Samples.get(); }

    /// Visits the samples of a channel of N floats within bounds, which are inclusive or UNRESTRICTED: X before Y
    /// before Z. Calls `visit` with each StaticVector<float, N>, its column and its row. Rows run along the first axis
    /// that the bounds do not fix to one index (in a plane of one X, along Y), and are numbered consecutively.
    /// @throws PException With nothing visited. "RegularVolume::mapChannel() - data size does not match volume." if the
    /// number of samples differs from what the numbers along the axes say, or there are none;
    /// "RegularVolume::mapChannel() - data format does not match channel format." if the channel does not have N
    /// floats; also if there is no such channel, or the bounds are not within the volume.
    template <unsigned int N, typename Visit>
    void forEachSample(const std::string& channel, const Vector3i& min, const Vector3i& max, Visit visit) const
    {
        // By reference: rows are visited by copies, and it may have a state.
        visitBlock<N>(findBlock(channel, N, min, max),
            [&visit](const auto& sample, std::size_t column, std::size_t row) { visit(sample, column, row); });
    }

    /// Maps the same samples to colours, one each in `out`, which must have room for them. Calls `map` with each
    /// StaticVector<float, N>. Rows follow one another or, with a rowLength, begin that many colours apart; the colours
    /// between them are left alone. Throws as forEachSample does.
    template <unsigned int N, typename Map>
    void mapChannelBy(const std::string& channel, const Vector3i& min, const Vector3i& max, Map map, RGBA8* out,
        std::size_t rowLength = 0) const
    {
        const Block block = findBlock(channel, N, min, max);
        const std::size_t step = rowLength > block.counts[0] ? rowLength : block.counts[0];
        visitBlock<N>(block, [map, out, step](const StaticVector<float, N>& sample, std::size_t column,
                                 std::size_t row) { out[row * step + column] = map(sample); });
    }

    /// Does the same with a function, and a pointer that is passed to it.
    template <unsigned int N>
    void mapChannel(const std::string& channel, const Vector3i& min, const Vector3i& max, Mapping<N> mapping,
        void* userData, RGBA8* out) const
    {
        mapChannelBy<N>(
            channel, min, max,
            [mapping, userData](const StaticVector<float, N>& value) { return mapping(userData, value); }, out);
    }

private:
    // Where the samples within bounds lie, in bytes; axes that are fixed to one index come last.
    struct Block
    {
        const unsigned char* start;
        std::size_t counts[3];
        std::size_t steps[3];
    };

    template <unsigned int N, typename Visit>
    static void visitBlock(const Block& block, Visit visit)
    {
        std::size_t row = 0;
        for (std::size_t k = 0; k < block.counts[2]; ++k) {
            for (std::size_t j = 0; j < block.counts[1]; ++j, ++row) {
                const unsigned char* at = block.start + k * block.steps[2] + j * block.steps[1];
                fetchAhead(block, at);
                visitRow<N>(at, block.counts[0], block.steps[0], row, visit);
            }
        }
    }

    // A function of its own, in which all that a loop around a call needs has its registers.
    template <unsigned int N, typename Visit>
    [[gnu::noinline]] static void visitRow(
        const unsigned char* at, std::size_t count, std::size_t step, std::size_t row, Visit visit)
    {
        for (std::size_t i = 0; i < count; ++i, at += step) {
            std::array<unsigned char, N * sizeof(float)> bytes;
            std::memcpy(bytes.data(), at, sizeof bytes);
            visit(std::bit_cast<StaticVector<float, N>>(bytes), i, row);
        }
    }

    // Has the memory fetch both ends of a row to come: processors do not foresee short rows that lie far apart.
    static void fetchAhead(const Block& block, const unsigned char* row)
    {
        constexpr std::size_t NUM_ROWS = 16;
        const std::uintptr_t start = reinterpret_cast<std::uintptr_t>(row) + NUM_ROWS * block.steps[1];
        __builtin_prefetch(reinterpret_cast<const void*>(start));
        __builtin_prefetch(reinterpret_cast<const void*>(start + (block.counts[0] - 1) * block.steps[0]));
    }

    Block findBlock(
        const std::string& channel, unsigned int numComponents, const Vector3i& min, const Vector3i& max) const;
    unsigned int requireChannel(const std::string& channel, unsigned int numComponents) const;

    std::uint64_t m_VolumeNumber;
    Vector3i m_Extends;
    Box3f m_Box;
    std::unique_ptr<PointSet> m_Samples;
};

} // namespace tavo
