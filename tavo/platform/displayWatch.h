#pragma once

struct _XDisplay; // NOLINT(bugprone-reserved-identifier): Xlib's name

namespace tavo {

// Has the handles of this open display forgotten when it is closed. Asks nothing of the X server.
void watchXDisplay(_XDisplay* display);

} // namespace tavo
