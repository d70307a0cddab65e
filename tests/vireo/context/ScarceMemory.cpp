#include "tests/vireo/context/ScarceMemory.h"

#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::size_t smallestFailing = SIZE_MAX;

} // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return size < smallestFailing ? std::malloc(size) : nullptr;
}

void* operator new(std::size_t size)
{
    if (void* const memory = operator new(size, std::nothrow))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace tavo {

ScarceMemory::ScarceMemory(std::size_t smallestFailingSize)
{
    smallestFailing = smallestFailingSize;
}

ScarceMemory::~ScarceMemory()
{
    smallestFailing = SIZE_MAX;
}

} // namespace tavo
