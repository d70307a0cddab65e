#pragma once

#include <cstddef>

namespace vireo_view {

// While it lives, operator new throws std::bad_alloc for what would exceed a sum of bytes, whether or not memory was
// given back in between. Programs that link it have their operator new replaced.
class MemoryBudget
{
public:
    explicit MemoryBudget(std::size_t numBytes);
    ~MemoryBudget();
    MemoryBudget(const MemoryBudget&) = delete;
    MemoryBudget& operator=(const MemoryBudget&) = delete;

    std::size_t getNumLeft() const;
};

} // namespace vireo_view
