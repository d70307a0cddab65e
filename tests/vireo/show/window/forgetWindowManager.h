#pragma once

namespace tavo {

// Takes from the root window what a window manager that has ended says of itself there, which toolkits would believe.
void forgetWindowManager();

} // namespace tavo
