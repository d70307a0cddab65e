#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace tavo {

// Which points of a cloud are drawn where there is time for a few, so that these show the shape of all.
//
// There are 4096 phases: of every chunk of 4096 consecutive points each phase has one. A chunk has 64 rows of 64
// points. The first 64 phases have one point of each row, the next 64 another one, and so on; the first phases together
// have rows, and points of a row, evenly spread. So the points of the first phases, however many these are, cover all
// of the cloud. What is outside the view is left out by chunks. The last chunk has what is left: of this some is always
// drawn, since it may be all that a small cloud has, and the points that make no full row belong to the last phase.
//
// It is a formula and takes no memory. Points stay in the order in which they were sent: neighbours are usually sent
// one after the other, which is what drivers draw fastest.
class PointPhases
{
public:
    static constexpr std::size_t CHUNK = 4096;
    static constexpr std::size_t ALL = CHUNK;

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
        if (numPhases >= ALL || size == CHUNK)
            return std::min(numPhases, size);
        std::size_t number = 0;
        for (std::size_t row = 0; row < size / ROW; ++row)
            number += sizeOfRow(chunk, row, std::max(numPhases, ROW));
        return number;
    }

    // Calls use(point) for those points, one after the other.
    template <typename Use>
    void forEachPoint(std::size_t chunk, std::size_t numPhases, Use use) const
    {
        const std::size_t first = CHUNK * chunk;
        const std::size_t size = sizeOfChunk(chunk);
        const std::size_t numRows = size / ROW;
        if (size < CHUNK)
            numPhases = std::max(numPhases, ROW);
        const Columns fewer = columnsOf(numPhases / ROW);
        const Columns more = columnsOf(numPhases / ROW + 1);
        for (std::size_t row = 0; row < numRows; ++row) {
            const Columns& columns = sizeOfRow(chunk, row, numPhases) > numPhases / ROW ? more : fewer;
            for (std::uint64_t left = columns[shift(first / ROW + row)]; left != 0; left &= left - 1)
                use(first + row * ROW + static_cast<std::size_t>(std::countr_zero(left)));
        }
        for (std::size_t i = numRows * ROW; numPhases >= ALL && i < size; ++i)
            use(first + i);
    }

private:
    static constexpr std::size_t ROW = 64;

    // Of the points of a row, one bit for each, for every shift.
    using Columns = std::array<std::uint64_t, ROW>;

    // Of the first `number` of a row.
    static Columns columnsOf(std::size_t number)
    {
        Columns columns{};
        for (std::size_t i = 0; i < std::min(number, ROW); ++i)
            for (std::size_t shift = 0; shift < ROW; ++shift)
                columns[shift] |= std::uint64_t(1) << (reversed(i) ^ shift);
        return columns;
    }

    // How many points of a row the first phases have.
    static std::size_t sizeOfRow(std::size_t chunk, std::size_t row, std::size_t numPhases)
    {
        return numPhases / ROW + ((reversed(row) ^ shift(chunk)) < numPhases % ROW ? 1 : 0);
    }

    // The six bits of a number from last to first.
    static constexpr std::size_t reversed(std::size_t bits)
    {
        return (bits & 1) << 5 | (bits & 2) << 3 | (bits & 4) << 1 | (bits & 8) >> 1 | (bits & 16) >> 3 |
               (bits & 32) >> 5;
    }

    // Differs from one row to the next. Otherwise the phases of an organised cloud, whose lines are often as many
    // multiples of 64, would be stripes. Of random multipliers this one spreads clouds of the usual widths most evenly.
    static constexpr std::size_t shift(std::size_t row)
    {
        constexpr std::uint32_t MULTIPLIER = 0xE49D09C3;
        return static_cast<std::uint32_t>(row) * MULTIPLIER >> 26;
    }

    std::size_t m_NumPoints;
};

} // namespace tavo
