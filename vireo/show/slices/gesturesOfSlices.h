#pragma once

#include <vector>

#include "vireo/show/window/gestureHelp.h"

namespace tavo {

// What mouse and keys do to slices.
std::vector<Gesture> gesturesOfSlices();

} // namespace tavo
