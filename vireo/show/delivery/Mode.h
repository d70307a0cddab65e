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

// Cheap: one load after the first call. What it says holds to the end of the program, also when nothing is shown any
// more.
Mode showMode() noexcept;

// Where pictures go.
std::string picturesFolder();

// From now on isShowOff(), whatever VIREO_SHOW says.
void switchShowOff() noexcept;

} // namespace tavo
