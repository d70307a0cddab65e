#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace tavo {

// The order in which the points of a cloud are stored, so that a few of them show the shape of all.
//
// Chunks are of 65,536 consecutive points, the last one of what is left. Within a chunk there are 64 phases: of every
// 64 consecutive points each phase has one, and the first phases together have them evenly spread. So the first points
// of a chunk, up to the end of any phase, cover all of it. The points that make no full 64 are stored last, as they
// come.
//
// The order is a formula and takes no memory. Picking uses its inverse.
class PointOrder
{
public:
    static constexpr std::size_t CHUNK = 65536;
    static constexpr std::size_t PHASES = 64;

    explicit PointOrder(std::size_t numPoints)
        : m_NumPoints(numPoints)
    {}

    std::size_t numPoints() const { return m_NumPoints; }
    std::size_t numChunks() const { return (m_NumPoints + CHUNK - 1) / CHUNK; }

    // Chunk `chunk` begins at point, and place, CHUNK * chunk.
    std::size_t sizeOfChunk(std::size_t chunk) const { return std::min(CHUNK, m_NumPoints - CHUNK * chunk); }

    // How many points the first phases of a chunk have; all of them together have the last points, too.
    std::size_t sizeOfPhases(std::size_t chunk, std::size_t numPhases) const
    {
        const std::size_t size = sizeOfChunk(chunk);
        return numPhases >= PHASES ? size : size / PHASES * numPhases;
    }

    // Where a point is stored.
    std::size_t placeOf(std::size_t point) const
    {
        const std::size_t inChunk = point % CHUNK;
        const std::size_t row = inChunk / PHASES;
        const std::size_t numRows = sizeOfChunk(point / CHUNK) / PHASES;
        if (row == numRows)
            return point;
        return point - inChunk + reversed(inChunk % PHASES ^ shift(row)) * numRows + row;
    }

    // Which point is stored at a place.
    std::size_t pointAt(std::size_t place) const
    {
        const std::size_t inChunk = place % CHUNK;
        const std::size_t numRows = sizeOfChunk(place / CHUNK) / PHASES;
        if (inChunk >= numRows * PHASES)
            return place;
        const std::size_t row = inChunk % numRows;
        return place - inChunk + row * PHASES + (reversed(inChunk / numRows) ^ shift(row));
    }

    // Stores what belongs to the points of a chunk: calls store(point) for each place of it, from the first on. Writing
    // one phase after the other is several times as fast as going through the points and writing to all phases at once.
    template <typename Store>
    void forEachPlace(std::size_t chunk, Store&& store) const
    {
        const std::size_t first = CHUNK * chunk;
        const std::size_t size = sizeOfChunk(chunk);
        const std::size_t numRows = size / PHASES;
        for (std::size_t phase = 0; phase < PHASES; ++phase) {
            const std::size_t column = reversed(phase);
            for (std::size_t row = 0; row < numRows; ++row)
                store(first + row * PHASES + (column ^ shift(row)));
        }
        for (std::size_t i = numRows * PHASES; i < size; ++i)
            store(first + i);
    }

private:
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
