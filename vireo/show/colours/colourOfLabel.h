#pragma once

#include <cmath>
#include <cstdint>
#include <optional>
#include <type_traits>

#include "tavo/base/math/vectors.h"

namespace tavo {

// Beyond it, numbers of floating point are no labels.
constexpr double LARGEST_LABEL = 9.2e18;

// The category that a number is; nothing of what is no number, or too large.
template <typename T>
std::optional<std::int64_t> labelOf(T value)
{
    if constexpr (std::is_floating_point_v<T>)
        return std::abs(value) < LARGEST_LABEL ? std::optional(static_cast<std::int64_t>(value)) : std::nullopt;
    else
        return static_cast<std::int64_t>(value);
}

// The colour of a category. It depends on nothing but the label, so that a category looks the same in every data set,
// whichever others are there. The colours of 256 consecutive labels differ, those of the first ones most, and
// colour-blind people can tell neighbours apart. None is very light, very dark or grey. After 256 labels they repeat.
RGBA8 colourOfLabel(std::int64_t label);

} // namespace tavo
