#pragma once

namespace tavo {

// Has Qt, in this process and in those that it starts from now on, make its contexts on the X server the way that
// VIREO_TEST_WINSYS says, "glx" or "egl". Without the variable, and with "wgl", Qt does what it does by itself. False
// if an X server is needed and DISPLAY names none.
bool chooseQtWindowSystem();

} // namespace tavo
