#pragma once

#include <malloc.h>

namespace vireo_bench {

// What the process has allocated and not given back. What malloc keeps for later, and pages that nobody has touched
// yet, make no difference.
inline double bytesInUse()
{
    const auto memory = mallinfo2();
    return static_cast<double>(memory.uordblks + memory.hblkhd);
}

} // namespace vireo_bench
