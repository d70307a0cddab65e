#pragma once

#include <algorithm>
#include <type_traits>

namespace tavo {

// Of a component of a colour: an integer up to 255, or a floating-point number up to 1. NaN is 0.
template <typename T>
unsigned char byteOf(T component)
{
    double byte = static_cast<double>(component);
    if constexpr (std::is_floating_point_v<T>)
        byte *= 255;
    return byte > 0 ? static_cast<unsigned char>(std::min(byte + 0.5, 255.0)) : 0;
}

} // namespace tavo
