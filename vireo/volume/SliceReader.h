#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "tavo/points/RegularVolume.h"
#include "vireo/volume/SliceStack.h"

namespace tavo {

// Maps the slices of a stack, of a channel of N floats, to colours, best in ascending order. Of a slice across X, every
// sample lies in a cache line of its own: several slices are fetched at a time, as many as share the lines, and as
// there is room for: 1 MiB, or, where that is more, what the colours of one slice and of the texture's image take.
template <unsigned int N>
class SliceReader
{
public:
    // The volume must live as long as the reader, and has samples. The image is the one that slices are mapped into.
    SliceReader(const RegularVolume& volume, const VolumeChannel& channel, const SliceStack& stack,
        std::size_t numTexelsOfImage)
        : m_Volume(volume)
        , m_Channel(channel)
        , m_Stack(stack)
        , m_SliceSize(static_cast<std::size_t>(stack.getWidth()) * static_cast<std::size_t>(stack.getHeight()))
        , m_NumSamples(std::max(MIN_ROOM, (m_SliceSize + numTexelsOfImage) * sizeof(RGBA8)) / sizeof(Sample))
        , m_NumTogether(numTogether())
    {}

    // Maps a slice, as RegularVolume::mapChannelBy does it within the slice's bounds.
    template <typename Map>
    void mapSlice(int slice, Map map, RGBA8* out, std::size_t rowLength)
    {
        const int first = slice - slice % m_NumTogether;
        const int count = std::min(m_NumTogether, m_Stack.getNumSlices() - first);
        if (count < 2) {
            const Vector3i bounds = m_Stack.getBounds(slice);
            m_Volume.mapChannelBy<N>(m_Channel, bounds, bounds, map, out, rowLength);
            return;
        }
        if (m_First != first)
            fetch(first, count);
        const auto width = static_cast<std::size_t>(m_Stack.getWidth());
        const Sample* row = &m_Samples[static_cast<std::size_t>(slice - first) * distance()];
        for (int i = 0; i < m_Stack.getHeight(); ++i, row += width, out += rowLength)
            detail::mapRow(row, width, map, out);
    }

    // The bytes of the slices that were fetched.
    std::size_t getSizeInBytes() const { return m_Samples.capacity() * sizeof(Sample); }

private:
    using Sample = StaticVector<float, N>;

    static constexpr std::size_t CACHE_LINE = 64;
    static constexpr std::size_t MIN_ROOM = std::size_t{1} << 20;

    int numTogether() const
    {
        if (m_Stack.getAxis() != 0 || m_SliceSize == 0)
            return 1;
        const std::size_t inLine = CACHE_LINE / m_Volume.getPointSet()->getDescr().getSize();
        const auto numSlices = static_cast<std::size_t>(m_Stack.getNumSlices());
        return static_cast<int>(std::max(std::min({inLine, m_NumSamples / m_SliceSize, numSlices}), std::size_t{1}));
    }

    void fetch(int first, int count)
    {
        constexpr int all = RegularVolume::UNRESTRICTED;
        m_First = -1; // until all is there
        if (m_Samples.empty())
            m_Samples.resize(static_cast<std::size_t>(m_NumTogether) * distance());
        m_Volume.forEachSample<N>(m_Channel, {first, all, all}, {first + count - 1, all, all},
            [samples = m_Samples.data(), distance = distance()](const Sample& sample, std::size_t slice,
                std::size_t place) { samples[slice * distance + place] = sample; });
        m_First = first;
    }

    // From a slice that was fetched to the next one: a cache line more than its size, if there is room, since caches
    // keep only a few of the places that are a large power of two apart.
    std::size_t distance() const
    {
        const std::size_t apart = m_SliceSize + CACHE_LINE / sizeof(Sample);
        return static_cast<std::size_t>(m_NumTogether) * apart <= m_NumSamples ? apart : m_SliceSize;
    }

    const RegularVolume& m_Volume;
    VolumeChannel m_Channel;
    SliceStack m_Stack;
    std::size_t m_SliceSize;  // in samples
    std::size_t m_NumSamples; // that there is room for
    int m_NumTogether;
    // The slices across X that were fetched last, one behind the other, and the number of the first of them.
    std::vector<Sample> m_Samples;
    int m_First = -1;
};

} // namespace tavo
