#pragma once

#include <vector>

#include "vireo/show/window/gestureHelp.h"

namespace tavo {

// What mouse and keys do to a plot.
std::vector<Gesture> gesturesOfPlots();

} // namespace tavo
