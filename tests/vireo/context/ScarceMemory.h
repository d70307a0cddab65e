#pragma once

#include <cstddef>

namespace tavo {

// While it lives, operator new throws std::bad_alloc for allocations from a size on. Programs that link it have their
// operator new replaced.
class ScarceMemory
{
public:
    explicit ScarceMemory(std::size_t smallestFailingSize);
    ~ScarceMemory();
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;
};

} // namespace tavo
