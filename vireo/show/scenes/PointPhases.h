#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace tavo {

// Which points of a cloud are drawn where there is time for a few, so that these show the shape of all.
//
// There are 64 phases: of every 64 consecutive points each phase has one, and the first phases together have them
// evenly spread. So the points of the first phases, however many these are, cover all of the cloud. The points that
// make no full 64 belong to the last one. What is outside the view is left out by chunks, of 4096 consecutive points;
// the last one has what is left.
//
// It is a formula and takes no memory. Points stay in the order in which they were sent: neighbours are usually sent
// one after the other, which is what drivers draw fastest.
class PointPhases
{
public:
    static constexpr std::size_t CHUNK = 4096;
    static constexpr std::size_t ALL = 64;

    explicit PointPhases(std::size_t numPoints)
        : m_NumPoints(numPoints)
    {}

    std::size_t numPoints() const { return m_NumPoints; }
    std::size_t numChunks() const { return (m_NumPoints + CHUNK - 1) / CHUNK; }

    // Chunk `chunk` begins at point CHUNK * chunk.
    std::size_t sizeOfChunk(std::size_t chunk) const { return std::min(CHUNK, m_NumPoints - CHUNK * chunk); }

    // How many points of a chunk the first phases have.
    std::size_t sizeOfPhases(std::size_t chunk, std::size_t numPhases) const
    {
        const std::size_t size = sizeOfChunk(chunk);
        return numPhases >= ALL ? size : size / ALL * numPhases;
    }

    // Calls use(point) for those points, one after the other.
    template <typename Use>
    void forEachPoint(std::size_t chunk, std::size_t numPhases, Use use) const
    {
        const std::size_t first = CHUNK * chunk;
        const std::size_t size = sizeOfChunk(chunk);
        const std::size_t numRows = size / ALL;
        const std::array<std::uint64_t, ALL> columns = columnsOf(numPhases);
        for (std::size_t row = 0; row < numRows; ++row)
            for (std::uint64_t left = columns[shift(first / ALL + row)]; left != 0; left &= left - 1)
                use(first + row * ALL + static_cast<std::size_t>(std::countr_zero(left)));
        for (std::size_t i = numRows * ALL; numPhases >= ALL && i < size; ++i)
            use(first + i);
    }

private:
    // Of 64 consecutive points those of the first phases, one bit for each, for every shift.
    static std::array<std::uint64_t, ALL> columnsOf(std::size_t numPhases)
    {
        std::array<std::uint64_t, ALL> columns{};
        for (std::size_t phase = 0; phase < std::min(numPhases, ALL); ++phase)
            for (std::size_t shift = 0; shift < ALL; ++shift)
                columns[shift] |= std::uint64_t(1) << (reversed(phase) ^ shift);
        return columns;
    }

    // The six bits of a number from last to first.
    static constexpr std::size_t reversed(std::size_t bits)
    {
        return (bits & 1) << 5 | (bits & 2) << 3 | (bits & 4) << 1 | (bits & 8) >> 1 | (bits & 16) >> 3 |
               (bits & 32) >> 5;
    }

    // Differs from one row of 64 to the next. Otherwise the phases of an organised cloud, whose lines are often as many
    // multiples of 64, would be stripes. Of random multipliers this one spreads clouds of the usual widths most evenly.
    static constexpr std::size_t shift(std::size_t row)
    {
        constexpr std::uint32_t MULTIPLIER = 0xE49D09C3;
        return static_cast<std::uint32_t>(row) * MULTIPLIER >> 26;
    }

    std::size_t m_NumPoints;
};

} // namespace tavo
