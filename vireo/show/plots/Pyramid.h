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
    // gone. Returns how many numbers in them are infinite.
    template <typename Values>
    std::size_t extend(const Values& values, std::size_t size, std::size_t firstKept = 0);

    // The first number that is in no complete block.
    std::size_t end() const { return m_Levels.empty() ? 0 : m_Levels.front().size() * m_BlockSize; }

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

    // A block of a level, or numbers that are in no whole block.
    struct Place
    {
        std::size_t level = 0;
        std::size_t block = 0;
        bool isBlock = false;
        std::size_t firstNumber = 0; // where it is none
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

// What there is in a stretch of numbers.
struct Content
{
    Extent extent; // of the finite ones
    std::size_t numInfinite = 0;
};

template <typename Values>
Content contentOneByOne(const Values& values, std::size_t first, std::size_t last)
{
    Content content;
    for (std::size_t i = first; i < last; ++i) {
        content.extent.include(static_cast<double>(values[i]));
        content.numInfinite += std::isinf(static_cast<double>(values[i]));
    }
    return content;
}

template <typename Values>
Content contentOf(const Values& values, std::size_t first, std::size_t last)
{
    // Several at once. Comparisons with NaN are false.
    constexpr std::size_t LANES = 4;
    Extent lanes[LANES];
    const auto compare = [&lanes](std::size_t lane, double value) {
        lanes[lane].from = value < lanes[lane].from ? value : lanes[lane].from;
        lanes[lane].to = value > lanes[lane].to ? value : lanes[lane].to;
    };
    std::size_t i = first;
    for (; i + LANES <= last; i += LANES)
        for (std::size_t lane = 0; lane < LANES; ++lane)
            compare(lane, static_cast<double>(values[i + lane]));
    for (; i < last; ++i)
        compare(0, static_cast<double>(values[i]));
    Extent extent;
    for (const Extent& lane : lanes)
        extent.include(lane);
    if (std::isfinite(extent.from) && std::isfinite(extent.to))
        return {extent, 0};
    return contentOneByOne(values, first, last);
}

template <typename Values>
std::size_t Pyramid::extend(const Values& values, std::size_t size, std::size_t firstKept)
{
    std::size_t numInfinite = 0;
    for (std::size_t begin = this->end(); begin + m_BlockSize <= size; begin += m_BlockSize) {
        const std::size_t end = begin + m_BlockSize;
        const Content content = contentOf(values, std::min(std::max(begin, firstKept), end), end);
        addBlock(content.extent);
        numInfinite += content.numInfinite;
    }
    return numInfinite;
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
    const auto compareNumbers = [&](std::size_t from, std::size_t to) {
        compare(contentOf(values, from, to).extent, {0, 0, false, from});
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
    for (; place.level > 0; --place.level) {
        place.block *= FACTOR;
        while (!hasIt(m_Levels[place.level - 1][place.block]))
            ++place.block;
    }
    std::size_t i = place.isBlock ? place.block * m_BlockSize : place.firstNumber;
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
