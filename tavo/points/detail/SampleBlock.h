#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "tavo/base/math/vectors.h"

// How samples are read quickly. Two things that compilers and processors do not do by themselves:
//
// - A loop around a call is a function of its own, which is not inlined, so that all it needs has its registers.
// - Rows to come are fetched ahead: processors do not foresee short rows that lie far apart.
namespace tavo::detail {

// Where the samples within bounds lie, in bytes; axes that are fixed to one index come last.
struct SampleBlock
{
    const unsigned char* start;
    std::size_t counts[3];
    std::size_t steps[3];
};

template <unsigned int N, typename Visit>
[[gnu::noinline]] void visitRow(
    const unsigned char* at, std::size_t count, std::size_t step, std::size_t row, Visit visit)
{
    for (std::size_t i = 0; i < count; ++i, at += step) {
        std::array<unsigned char, N * sizeof(float)> bytes;
        std::memcpy(bytes.data(), at, sizeof bytes);
        visit(std::bit_cast<StaticVector<float, N>>(bytes), i, row);
    }
}

template <typename Sample, typename Map>
[[gnu::noinline]] void mapRow(const Sample* row, std::size_t count, Map map, RGBA8* out)
{
    std::transform(row, row + count, out, map);
}

// Both ends of a row to come. It may lie behind the last sample, where no pointer may point: hence the numbers.
inline void fetchAhead(const SampleBlock& block, const unsigned char* row)
{
    constexpr std::size_t NUM_ROWS = 16;
    const std::uintptr_t start = reinterpret_cast<std::uintptr_t>(row) + NUM_ROWS * block.steps[1];
    // NOLINTBEGIN(performance-no-int-to-ptr)
    __builtin_prefetch(reinterpret_cast<const void*>(start));
    __builtin_prefetch(reinterpret_cast<const void*>(start + (block.counts[0] - 1) * block.steps[0]));
    // NOLINTEND(performance-no-int-to-ptr)
}

template <unsigned int N, typename Visit>
void visitBlock(const SampleBlock& block, Visit visit)
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

} // namespace tavo::detail
