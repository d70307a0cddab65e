#include <atomic>
#include <cstdlib>
#include <windows.h>

#include "vireo/show/delivery/process.h"

namespace tavo {

// What a library registers by atexit is called when it is unloaded, when the program's threads are gone. What the
// program registers is called before that; the runtime's own list is the program's.
//
// The runtime holds a lock while it calls what is in the list. Whoever registers something then waits for the end of
// the program, which would wait for the window's thread. So the hook is registered once: all of Qt's goes later anyway.
void callAtExit(void (*hook)())
{
    static std::atomic<bool> isRegistered = false;
    if (isRegistered.exchange(true))
        return;
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

void leaveSignalsToProgram() {}

std::vector<std::string> openDisplays()
{
    return {"windows"};
}

// There it finds no fonts, and makes no OpenGL.
bool drawsWithoutDisplay()
{
    return false;
}

} // namespace tavo
