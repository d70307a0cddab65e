#pragma once

#include <string>

namespace tavo {

// How the current context was made: "GLX", "EGL" or "WGL"; empty if none is current.
std::string wayOfCurrentContext();

} // namespace tavo
