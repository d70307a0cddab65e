#include "tests/apps/vireo-view/MemoryBudget.h"

#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::size_t numLeft = SIZE_MAX;

void* allocate(std::size_t size) noexcept
{
    if (size > numLeft)
        return nullptr;
    if (numLeft != SIZE_MAX)
        numLeft -= size;
    return std::malloc(size);
}

} // namespace

void* operator new(std::size_t size)
{
    if (void* const memory = allocate(size))
        return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace vireo_view {

MemoryBudget::MemoryBudget(std::size_t numBytes)
{
    numLeft = numBytes;
}

MemoryBudget::~MemoryBudget()
{
    numLeft = SIZE_MAX;
}

std::size_t MemoryBudget::getNumLeft() const
{
    return numLeft;
}

} // namespace vireo_view
