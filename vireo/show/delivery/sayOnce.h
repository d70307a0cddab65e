#pragma once

#include <string>

namespace tavo {

// A line in the log, or on the standard error stream where there is no log: the first time only.
void sayOnce(const std::string& text) noexcept;

} // namespace tavo
