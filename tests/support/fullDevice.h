#pragma once

#include <string>

namespace vireo_test {

// Makes a device that is always full under that path. False where there is none, or this process may not make one.
bool makeFullDevice(const std::string& path);

} // namespace vireo_test
