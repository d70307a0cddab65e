#pragma once

#include <QPalette>
#include <cstdint>

namespace tavo {

enum class Theme : std::uint8_t
{
    Desktop,
    Light,
    Dark
};

// The colours of a theme; for the desktop's the ones that the program has from it.
QPalette paletteOf(Theme theme);

} // namespace tavo
