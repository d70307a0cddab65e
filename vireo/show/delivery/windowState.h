#pragma once

namespace tavo::windowState {

// Whether the window is open, for every thread. Set by the window's.
void setOpen(bool isOpen);
bool isOpen() noexcept;

// Whether it was open, and is no more.
bool wasClosed() noexcept;

// Whether the program has asked for it. One that has no QApplication may only want pictures.
void want() noexcept;
bool isWanted() noexcept;

// Returns when it is closed.
void waitUntilClosed();

} // namespace tavo::windowState
