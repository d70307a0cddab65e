#pragma once

#include <string>

namespace tavo {

// A line in the log, or on the standard error stream where there is no log: the first time only, so that a mistake in a
// loop does not flood it. The same line with other numbers, but for those in names, is the same mistake, which is said
// ten times.
void sayOnce(const std::string& text) noexcept;

// The same of a call that shows nothing, and why. False.
bool refuse(const char* call, const char* why) noexcept;

// Whether any call was refused: the program has been told why nobody sees what it sends.
bool hasRefused() noexcept;

} // namespace tavo
