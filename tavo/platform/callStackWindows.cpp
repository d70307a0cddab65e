#include <array>
#include <cstdint>
#include <sstream>

#include "tavo/platform/callStack.h"
#include "tavo/platform/wgl.h"

namespace tavo {

std::vector<void*> captureCallStack(int skip)
{
    constexpr unsigned long MOST = 32;
    std::array<void*, MOST> addresses{};
    const unsigned short count =
        CaptureStackBackTrace(static_cast<unsigned long>(skip) + 1, MOST, addresses.data(), nullptr);
    return std::vector<void*>(addresses.begin(), addresses.begin() + count);
}

std::string describeCall(void* address)
{
    std::ostringstream text;
    HMODULE module = nullptr;
    std::array<char, MAX_PATH> file{};
    if (!GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
            static_cast<const char*>(address), &module) ||
        GetModuleFileNameA(module, file.data(), static_cast<unsigned long>(file.size())) == 0) {
        text << address;
        return text.str();
    }
    text << '(' << file.data() << "+0x" << std::hex
         << reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(module) << ')';
    return text.str();
}

} // namespace tavo
