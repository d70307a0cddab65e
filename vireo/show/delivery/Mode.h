#pragma once

#include <string>

#include "vireo/show/delivery/isShowOff.h"

namespace tavo {

// What becomes of what is sent, as VIREO_SHOW says.
enum class Mode
{
    Window,
    Fresh,    // a window, without what was remembered of earlier ones
    Pictures, // files in a folder
    Off
};

// Cheap: one load after the first call. Off, too, once the program is ending, and in the child of a fork.
Mode showMode() noexcept;

// Where pictures go.
std::string picturesFolder();

// From now on nothing is shown, whatever VIREO_SHOW says.
void switchShowOff() noexcept;

} // namespace tavo
