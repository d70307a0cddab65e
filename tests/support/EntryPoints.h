#pragma once

#include <string>

namespace vireo_test {

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

} // namespace vireo_test
