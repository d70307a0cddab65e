#pragma once

#include <cstdint>
#include <optional>

namespace tavo {

// Size in bytes, or nothing if it exceeds 32 bits.
inline std::optional<unsigned int> bytesOfElements(unsigned int numElements, unsigned int elementSize)
{
    const std::uint64_t bytes = std::uint64_t{numElements} * elementSize;
    if (bytes > UINT32_MAX)
        return std::nullopt;
    return static_cast<unsigned int>(bytes);
}

// A place within the bound buffer, which GL takes as if it were an address.
inline const void* bufferOffset(std::uintptr_t offset)
{
    return reinterpret_cast<const void*>(offset);
}

// Binds the buffer to the target and makes storage of that size for it. False on a GL error, with the buffer left
// bound; otherwise nothing is bound to the target afterwards.
bool makeBufferStorage(unsigned int target, unsigned int buffer, unsigned int sizeInBytes, unsigned int usage);

} // namespace tavo
