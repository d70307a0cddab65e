#pragma once

#include <cstddef>

namespace tavo {

// While it lives, there is no memory for allocations from a size on: operator new throws std::bad_alloc, or returns
// null where it must not throw. Programs that link it have their operator new replaced.
class ScarceMemory
{
public:
    explicit ScarceMemory(std::size_t smallestFailingSize);
    ~ScarceMemory();
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;
};

} // namespace tavo
