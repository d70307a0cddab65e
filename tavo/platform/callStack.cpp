#include "tavo/platform/callStack.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <memory>
#include <sstream>

namespace tavo {

namespace {

struct Free
{
    void operator()(char* memory) const { std::free(memory); }
};

std::string demangled(const char* symbol)
{
    const std::unique_ptr<char, Free> name(abi::__cxa_demangle(symbol, nullptr, nullptr, nullptr));
    return name ? name.get() : symbol;
}

} // namespace

std::vector<void*> captureCallStack(int skip)
{
    constexpr int MOST = 32;
    std::array<void*, MOST> addresses{};
    const int count = backtrace(addresses.data(), MOST);
    const int first = skip + 1 < count ? skip + 1 : count; // and without this function
    return std::vector<void*>(addresses.begin() + first, addresses.begin() + count);
}

std::string describeCall(void* address)
{
    std::ostringstream text;
    Dl_info where{};
    if (dladdr(address, &where) == 0) {
        text << address;
        return text.str();
    }
    const auto offset = reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(where.dli_fbase);
    if (where.dli_sname)
        text << demangled(where.dli_sname) << ' ';
    text << '(' << where.dli_fname << "+0x" << std::hex << offset << ')';
    return text.str();
}

} // namespace tavo
