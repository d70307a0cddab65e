#pragma once

#include <cstdint>

#include "tavo/base/math/vectors.h"

namespace tavo {

// Beyond it, numbers of floating point are no labels.
constexpr double LARGEST_LABEL = 9.2e18;

// The colour of a category. It depends on nothing but the label, so that a category looks the same in every data set,
// whichever others are there. The colours of 256 consecutive labels differ, those of the first ones most, and
// colour-blind people can tell neighbours apart. None is very light, very dark or grey. After 256 labels they repeat.
RGBA8 colourOfLabel(std::int64_t label);

} // namespace tavo
