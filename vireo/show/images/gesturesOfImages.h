#pragma once

#include <vector>

#include "vireo/show/window/gestureHelp.h"

namespace tavo {

// What mouse and keys do to an image.
std::vector<Gesture> gesturesOfImages();

} // namespace tavo
