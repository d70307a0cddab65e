#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "tavo/base/math/vectors.h"
#include "tavo/points/Export.h"
#include "tavo/points/PointSet.h"
#include "tavo/points/VolumeChannel.h"
#include "tavo/points/detail/SampleBlock.h"

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

    /// The channel of that name, for the operations below.
    /// @throws PException If there is none.
    VolumeChannel getChannel(const std::string& name) const;

    /// Visits the samples of a channel of N floats within bounds, which are inclusive or UNRESTRICTED: X before Y
    /// before Z. Calls `visit` with each StaticVector<float, N>, its column and its row. Rows run along the first axis
    /// that the bounds do not fix to one index (in a plane of one X, along Y), and are numbered consecutively.
    /// @throws PException With nothing visited. "RegularVolume::mapChannel() - data size does not match volume." if the
    /// number of samples differs from what the numbers along the axes say, or there are none;
    /// "RegularVolume::mapChannel() - data format does not match channel format." if the channel does not have N
    /// floats; also if there is no such channel, or the bounds are not within the volume.
    template <unsigned int N, typename Visit>
    void forEachSample(const VolumeChannel& channel, const Vector3i& min, const Vector3i& max, Visit visit) const
    {
        // By reference: rows are visited by copies, and it may have a state.
        detail::visitBlock<N>(findBlock(channel, N, min, max),
            [&visit](const auto& sample, std::size_t column, std::size_t row) { visit(sample, column, row); });
    }
    template <unsigned int N, typename Visit>
    void forEachSample(const std::string& channel, const Vector3i& min, const Vector3i& max, Visit visit) const
    {
        requireSamples();
        forEachSample<N>(getChannel(channel), min, max, visit);
    }

    /// Maps the same samples to colours, one each in `out`, which must have room for them. Calls `map` with each
    /// StaticVector<float, N>. Rows follow one another or, with a rowLength, begin that many colours apart; the colours
    /// between them are left alone. Throws as forEachSample does.
    template <unsigned int N, typename Map>
    void mapChannelBy(const VolumeChannel& channel, const Vector3i& min, const Vector3i& max, Map map, RGBA8* out,
        std::size_t rowLength = 0) const
    {
        const detail::SampleBlock block = findBlock(channel, N, min, max);
        const std::size_t step = rowLength > block.counts[0] ? rowLength : block.counts[0];
        detail::visitBlock<N>(block, [map, out, step](const StaticVector<float, N>& sample, std::size_t column,
                                         std::size_t row) { out[row * step + column] = map(sample); });
    }
    template <unsigned int N, typename Map>
    void mapChannelBy(const std::string& channel, const Vector3i& min, const Vector3i& max, Map map, RGBA8* out,
        std::size_t rowLength = 0) const
    {
        requireSamples();
        mapChannelBy<N>(getChannel(channel), min, max, map, out, rowLength);
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
    detail::SampleBlock findBlock(
        const VolumeChannel& channel, unsigned int numComponents, const Vector3i& min, const Vector3i& max) const;
    void requireSamples() const;

    std::uint64_t m_VolumeNumber;
    Vector3i m_Extends;
    Box3f m_Box;
    std::unique_ptr<PointSet> m_Samples;
};

} // namespace tavo
