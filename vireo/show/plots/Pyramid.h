#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <deque>
#include <type_traits>
#include <vector>

#include "vireo/show/plots/Extent.h"

namespace tavo {

// Where the lowest and the highest of some numbers are. Without a finite number among them, the extent is empty.
struct Extremes
{
    Extent extent;
    std::size_t lowest = 0;
    std::size_t highest = 0;
};

// Finds the extremes of any stretch of a series of numbers, without looking at each.
//
// It has the extents of blocks of numbers, of four blocks together, of four of these, and so on: a third more than the
// lowest blocks alone. A block counts only once all of its numbers are there, so that appending costs the same however
// many there are. Numbers go from the front, and blocks with them. What is not finite is in no extent.
//
// The numbers are kept elsewhere: `values[i]` is the i-th, counted from the first that ever was.
class Pyramid
{
public:
    // The smaller the numbers are, the longer are the blocks: a pyramid takes 4 % of the memory of its numbers.
    explicit Pyramid(std::size_t bytesOfNumber = sizeof(double))
        : m_BlockSize(512 / bytesOfNumber)
    {}

    // Takes the blocks in that are complete, where there are `size` numbers, of which those before `firstKept` have
    // gone.
    template <typename Values>
    void extend(const Values& values, std::size_t size, std::size_t firstKept = 0);

    // The numbers before the `first` one are gone.
    void drop(std::size_t first);

    // Of the numbers from `first` up to and without `last`.
    template <typename Values>
    Extremes extremes(const Values& values, std::size_t first, std::size_t last) const;

    // Calls `visit(first, last)` for all pieces of a stretch that `isWanted(extent)`, and no larger ones than blocks.
    template <typename IsWanted, typename Visit>
    void visit(std::size_t first, std::size_t last, const IsWanted& isWanted, const Visit& visit) const;

private:
    static constexpr std::size_t FACTOR = 4;

    struct Level
    {
        std::deque<Extent> blocks;
        std::size_t numDropped = 0;

        std::size_t size() const { return numDropped + blocks.size(); }
        const Extent& operator[](std::size_t i) const { return blocks[i - numDropped]; }
    };

    // A block of a level, or none.
    struct Place
    {
        std::size_t level = 0;
        std::size_t block = 0;
        bool isBlock = false;
        std::size_t number = 0; // where it is none
    };

    void addBlock(const Extent& extent);

    // The fewest blocks that cover whole blocks from one to another.
    template <typename Visit>
    void coverWithBlocks(std::size_t first, std::size_t last, const Visit& visit) const;

    template <typename IsWanted, typename Visit>
    void visitBlock(std::size_t level, std::size_t block, const IsWanted& isWanted, const Visit& visit) const;

    template <typename Values, typename HasIt>
    std::size_t find(const Values& values, Place place, const HasIt& hasIt) const;

    std::size_t m_BlockSize;
    std::vector<Level> m_Levels;
};

// Of the finite numbers.
template <typename Values>
Extent extentOf(const Values& values, std::size_t first, std::size_t last)
{
    // Several at once. Comparisons with NaN are false.
    constexpr std::size_t LANES = 4;
    Extent lanes[LANES];
    std::size_t i = first;
    for (; i + LANES <= last; i += LANES)
        for (std::size_t lane = 0; lane < LANES; ++lane) {
            const auto value = static_cast<double>(values[i + lane]);
            lanes[lane].from = value < lanes[lane].from ? value : lanes[lane].from;
            lanes[lane].to = value > lanes[lane].to ? value : lanes[lane].to;
        }
    Extent extent;
    for (const Extent& lane : lanes)
        extent.include(lane);
    for (; i < last; ++i)
        extent.include(static_cast<double>(values[i]));
    if (std::isfinite(extent.from) && std::isfinite(extent.to))
        return extent;
    extent = {};
    for (i = first; i < last; ++i)
        extent.include(static_cast<double>(values[i]));
    return extent;
}

template <typename Values>
void Pyramid::extend(const Values& values, std::size_t size, std::size_t firstKept)
{
    std::size_t numBlocks = m_Levels.empty() ? 0 : m_Levels.front().size();
    for (; (numBlocks + 1) * m_BlockSize <= size; ++numBlocks) {
        const std::size_t end = (numBlocks + 1) * m_BlockSize;
        addBlock(extentOf(values, std::min(std::max(numBlocks * m_BlockSize, firstKept), end), end));
    }
}

template <typename Visit>
void Pyramid::coverWithBlocks(std::size_t first, std::size_t last, const Visit& visit) const
{
    for (std::size_t level = 0; first < last; ++level) {
        const bool isTop = level + 1 == m_Levels.size();
        for (; first < last && (isTop || first % FACTOR != 0); ++first)
            visit(level, first);
        for (; first < last && last % FACTOR != 0; --last)
            visit(level, last - 1);
        first /= FACTOR;
        last /= FACTOR;
    }
}

template <typename Values>
Extremes Pyramid::extremes(const Values& values, std::size_t first, std::size_t last) const
{
    Extremes found;
    Place lowest;
    Place highest;
    const auto compare = [&](const Extent& extent, const Place& place) {
        if (extent.from < found.extent.from) {
            found.extent.from = extent.from;
            lowest = place;
        }
        if (extent.to > found.extent.to) {
            found.extent.to = extent.to;
            highest = place;
        }
    };
    // Comparisons with NaN are false.
    const auto compareNumbers = [&](std::size_t from, std::size_t to) {
        for (std::size_t i = from; i < to; ++i) {
            const auto value = static_cast<double>(values[i]);
            if ((value < found.extent.from || value > found.extent.to) && std::isfinite(value))
                compare({value, value}, {0, 0, false, i});
        }
    };
    const std::size_t firstBlock = (first + m_BlockSize - 1) / m_BlockSize;
    const std::size_t lastBlock = std::min(last / m_BlockSize, m_Levels.empty() ? 0 : m_Levels.front().size());
    if (firstBlock >= lastBlock) {
        compareNumbers(first, last);
    } else {
        compareNumbers(first, firstBlock * m_BlockSize);
        coverWithBlocks(firstBlock, lastBlock, [&](std::size_t level, std::size_t block) {
            compare(m_Levels[level][block], {level, block, true, 0});
        });
        compareNumbers(lastBlock * m_BlockSize, last);
    }
    if (found.extent.isEmpty())
        return found;
    found.lowest = find(values, lowest, [&](const Extent& extent) { return extent.from == found.extent.from; });
    found.highest = find(values, highest, [&](const Extent& extent) { return extent.to == found.extent.to; });
    return found;
}

template <typename Values, typename HasIt>
std::size_t Pyramid::find(const Values& values, Place place, const HasIt& hasIt) const
{
    if (!place.isBlock)
        return place.number;
    for (; place.level > 0; --place.level) {
        place.block *= FACTOR;
        while (!hasIt(m_Levels[place.level - 1][place.block]))
            ++place.block;
    }
    std::size_t i = place.block * m_BlockSize;
    while (!hasIt({static_cast<double>(values[i]), static_cast<double>(values[i])}))
        ++i;
    return i;
}

template <typename IsWanted, typename Visit>
void Pyramid::visit(std::size_t first, std::size_t last, const IsWanted& isWanted, const Visit& visit) const
{
    const std::size_t firstBlock = (first + m_BlockSize - 1) / m_BlockSize;
    const std::size_t lastBlock = std::min(last / m_BlockSize, m_Levels.empty() ? 0 : m_Levels.front().size());
    if (firstBlock >= lastBlock)
        return visit(first, last);
    visit(first, firstBlock * m_BlockSize);
    coverWithBlocks(firstBlock, lastBlock,
        [&](std::size_t level, std::size_t block) { visitBlock(level, block, isWanted, visit); });
    visit(lastBlock * m_BlockSize, last);
}

template <typename IsWanted, typename Visit>
void Pyramid::visitBlock(std::size_t level, std::size_t block, const IsWanted& isWanted, const Visit& visit) const
{
    if (!isWanted(m_Levels[level][block]))
        return;
    if (level == 0)
        return visit(block * m_BlockSize, (block + 1) * m_BlockSize);
    for (std::size_t i = 0; i < FACTOR; ++i)
        visitBlock(level - 1, block * FACTOR + i, isWanted, visit);
}

} // namespace tavo
