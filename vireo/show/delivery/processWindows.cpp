#include <cstdlib>
#include <windows.h>

#include "vireo/show/delivery/process.h"

namespace tavo {

// What a library registers by atexit is called when it is unloaded, when the program's threads are gone. What the
// program registers is called before that; the runtime's own list is the program's.
void callAtExit(void (*hook)())
{
    using OnExit = int (*)();
    using Register = OnExit (*)(OnExit);
    const HMODULE runtime = GetModuleHandleA("msvcrt.dll");
    const auto registerHook =
        runtime ? reinterpret_cast<Register>(reinterpret_cast<void*>(GetProcAddress(runtime, "_onexit"))) : nullptr;
    if (registerHook)
        registerHook(reinterpret_cast<OnExit>(hook));
    else
        std::atexit(hook);
}

void callAtEndOfMainThread(void (*)()) {}

void watchForks(void (*)(), void (*)(), void (*)(), bool (*)()) {}

void ignoreSignalsInThisThread() {}

std::vector<std::string> openDisplays()
{
    return {"windows"};
}

} // namespace tavo
