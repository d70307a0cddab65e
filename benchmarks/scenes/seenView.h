#pragma once

#include "vireo/show/scenes/SceneView.h"

namespace vireo_bench {

// A view of a scene in a window, for programs that measure one.
void show(tavo::SceneView& view);
void send(tavo::SceneView& view, tavo::ItemUpdate item);

// Handles events until the view rests. Returns the longest time that one of them would have had to wait.
double untilItRests(tavo::SceneView& view);

} // namespace vireo_bench
