#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tavo {

// Colour maps that others have published, as 0xRRGGBB.
using PublishedColours = std::array<std::uint32_t, 256>;
extern const PublishedColours VIRIDIS;
extern const PublishedColours PLASMA;
extern const PublishedColours INFERNO;
extern const PublishedColours MAGMA;

} // namespace tavo
