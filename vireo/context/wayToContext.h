#pragma once

#include <string>

struct HGLRC__; // NOLINT(bugprone-reserved-identifier): the name on Windows

namespace tavo {

// How a context was made: "GLX", "EGL" or "WGL"; empty for null.
std::string wayToContext(HGLRC__* context);

} // namespace tavo
