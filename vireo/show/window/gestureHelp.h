#pragma once

#include <vector>

class QWidget;

namespace tavo {

// What a person can do with mouse and keys, and what comes of it.
struct Gesture
{
    const char* how;
    const char* what;
};

// Lists them in a window of its own, beside which the program goes on. A view has one such window at most.
void openGestureHelp(QWidget& view, const std::vector<Gesture>& gestures);

} // namespace tavo
