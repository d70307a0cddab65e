#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "tavo/points/RegularVolume.h"
#include "vireo/volume/volumeSlices.h"

namespace tavo {

// Maps the slices of a stack, of a channel of N floats, to colours, best in ascending order. Of a slice across X, every
// sample lies in a cache line of its own: these are fetched several at a time, as many as share the lines.
template <unsigned int N>
class SliceReader
{
public:
    // Volume and name must live as long as the reader. The volume has samples.
    SliceReader(const RegularVolume& volume, const std::string& channel, unsigned int axis)
        : m_Volume(volume)
        , m_Channel(channel)
        , m_Axis(axis)
        , m_NumTogether(std::max(1, CACHE_LINE / static_cast<int>(volume.getPointSet()->getDescr().getSize())))
    {}

    // Maps a slice, as RegularVolume::mapChannelBy does it within the slice's bounds.
    template <typename Map>
    void mapSlice(int slice, Map map, RGBA8* out, std::size_t rowLength)
    {
        const int first = slice - slice % m_NumTogether;
        const int count = std::min(m_NumTogether, m_Volume.getExtends()[0] - first);
        if (m_Axis != 0 || count < 2) {
            const Vector3i bounds = boundsOfSlice(m_Axis, slice);
            m_Volume.mapChannelBy<N>(m_Channel, bounds, bounds, map, out, rowLength);
            return;
        }
        if (m_First != first)
            fetch(first, count);
        const Sample* row = &m_Samples[static_cast<std::size_t>(slice - first) * distance()];
        for (std::size_t i = 0; i < numAlong(2); ++i, row += numAlong(1), out += rowLength)
            mapRow(row, numAlong(1), map, out);
    }

private:
    using Sample = StaticVector<float, N>;

    static constexpr int CACHE_LINE = 64;

    // A function of its own, in which all that a loop around a call needs has its registers.
    template <typename Map>
    [[gnu::noinline]] static void mapRow(const Sample* row, std::size_t count, Map map, RGBA8* out)
    {
        std::transform(row, row + count, out, map);
    }

    void fetch(int first, int count)
    {
        constexpr int all = RegularVolume::UNRESTRICTED;
        m_First = -1; // until all is there
        m_Samples.resize(static_cast<std::size_t>(count) * distance());
        m_Volume.forEachSample<N>(m_Channel, {first, all, all}, {first + count - 1, all, all},
            [samples = m_Samples.data(), distance = distance()](const Sample& sample, std::size_t slice,
                std::size_t place) { samples[slice * distance + place] = sample; });
        m_First = first;
    }

    std::size_t numAlong(unsigned int axis) const { return static_cast<std::size_t>(m_Volume.getExtends()[axis]); }

    // From a slice that was fetched to the next one: a cache line more than its size, since caches keep only a few of
    // the places that are a large power of two apart.
    std::size_t distance() const { return numAlong(1) * numAlong(2) + CACHE_LINE / sizeof(Sample); }

    const RegularVolume& m_Volume;
    const std::string& m_Channel;
    unsigned int m_Axis;
    int m_NumTogether;
    // The slices across X that were fetched last, one behind the other, and the number of the first of them.
    std::vector<Sample> m_Samples;
    int m_First = -1;
};

} // namespace tavo
