#pragma once

#include <cstddef>

#include "vireo/show/Export.h"
#include "vireo/show/delivery/NumberArray.h"

namespace tavo {

// Curves over the same x are sent it once for each of them. What is copied from the same place again, and is the same
// still, is therefore shared as long as anybody has the earlier copy: it takes no memory of its own, and it is faster
// to compare numbers than to write them into fresh memory.

/// Whether so few bytes are copied at once, without a look for an earlier copy.
constexpr bool areFewBytes(std::size_t count)
{
    return count < 4096;
}

/// The copy that was made lately of the `size` numbers at `source`, if they are what they were then, bit by bit; empty
/// otherwise.
VIREO_SHOW_EXPORT NumberArray findRecentCopy(const void* source, std::size_t size, NumberType type) noexcept;

/// That these are the numbers at `source`, copied. They are not kept alive.
VIREO_SHOW_EXPORT void rememberCopy(const void* source, const NumberArray& copy) noexcept;

} // namespace tavo
