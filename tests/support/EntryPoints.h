#pragma once

#include <string>

namespace tavo {

// While it lives, wglGetProcAddress answers null for this name, as a driver does that lacks the function. Entry points
// that were fetched before stay what they are.
class WithheldEntryPoint
{
public:
    explicit WithheldEntryPoint(const std::string& name);
    ~WithheldEntryPoint();
    WithheldEntryPoint(const WithheldEntryPoint&) = delete;
    WithheldEntryPoint& operator=(const WithheldEntryPoint&) = delete;

private:
    std::string m_Name;
};

// While it lives, wglGetProcAddress has an address for every name, as drivers for GLX and EGL have. Where the driver
// has no such function, the address is that of one that ends the program.
class EveryEntryPoint
{
public:
    EveryEntryPoint();
    ~EveryEntryPoint();
    EveryEntryPoint(const EveryEntryPoint&) = delete;
    EveryEntryPoint& operator=(const EveryEntryPoint&) = delete;
};

} // namespace tavo
