#pragma once

#include <string>

namespace tavo {

// Makes a device that is always full under that path. False where there is none, or this process may not make one.
bool makeFullDevice(const std::string& path);

} // namespace tavo
