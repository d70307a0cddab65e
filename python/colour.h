#pragma once

#include <pybind11/pybind11.h>

#include "tavo/base/math/vectors.h"

namespace tavo::python {

// Red, green and blue, and maybe opacity, each a whole number from 0 to 255. Throws a TypeError if it is not.
RGBA8 colourOf(const pybind11::handle& colour);

} // namespace tavo::python
