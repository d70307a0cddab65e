#include "vireo/show/delivery/process.h"

#include <X11/Xlib.h>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <mutex>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tavo {

namespace {

bool (*hasHadApplication)() = nullptr;
void (*tellBeforeFork)() = nullptr;
void (*tellParent)() = nullptr;
void (*tellChild)() = nullptr;

// The C library's lock of its list of handlers comes to a child as it was at the fork. Held by a thread that the child
// does not have, it keeps the child's exit() waiting for ever. So nobody forks while a handler is added here.
std::mutex& addingHandlers()
{
    static std::mutex* const theMutex = new std::mutex;
    return *theMutex;
}

std::string variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

bool opensX()
{
    Display* const display = XOpenDisplay(nullptr);
    if (display)
        XCloseDisplay(display);
    return display;
}

bool opensWayland()
{
    std::string path = variable("WAYLAND_DISPLAY");
    if (path.empty())
        return false;
    if (path.front() != '/')
        path = variable("XDG_RUNTIME_DIR") + '/' + path;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        return false;
    path.copy(address.sun_path, path.size());
    const int connection = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool opens =
        connection >= 0 && connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    if (connection >= 0)
        close(connection);
    return opens;
}

void beforeFork()
{
    tellBeforeFork();
    addingHandlers().lock();
}

void parentOfFork()
{
    addingHandlers().unlock();
    tellParent();
}

// exit() destroys what its thread has of its own before it calls any handler.
void (*&endOfThisThread())()
{
    struct EndOfThread
    {
        void (*hook)() = nullptr;
        ~EndOfThread()
        {
            if (hook)
                hook();
        }
    };
    static thread_local EndOfThread end;
    return end.hook;
}

// What was written is not lost with the handlers that would have flushed it.
void endChildOfFork(int status, void*)
{
    try {
        std::cout.flush();
        std::clog.flush();
    } catch (const std::exception&) {
        // as exit() would leave it
    }
    std::fflush(nullptr);
    _exit(status);
}

void endChildFirst()
{
    on_exit(endChildOfFork, nullptr);
}

// The child ends in front of all handlers, of which some destroy what Qt has: of those of its parent, whichever thread
// ends it, and where this one does, of its own, too.
void childOfFork()
{
    addingHandlers().unlock();
    const bool hasLeftovers = hasHadApplication();
    endOfThisThread() = hasLeftovers ? endChildFirst : nullptr;
    if (hasLeftovers)
        endChildFirst();
    tellChild();
}

} // namespace

void callAtExit(void (*hook)())
{
    const std::lock_guard<std::mutex> lock(addingHandlers());
    std::atexit(hook);
}

void callAtEndOfMainThread(void (*hook)())
{
    if (gettid() == getpid())
        endOfThisThread() = hook;
}

void watchForks(void (*before)(), void (*inParent)(), void (*inChild)(), bool (*hasThereBeenAnApplication)())
{
    hasHadApplication = hasThereBeenAnApplication;
    tellBeforeFork = before;
    tellParent = inParent;
    tellChild = inChild;
    pthread_atfork(beforeFork, parentOfFork, childOfFork);
}

void leaveSignalsToProgram()
{
    sigset_t blocked;
    sigset_t blockedByMaker;
    sigfillset(&blocked);
    pthread_sigmask(SIG_SETMASK, &blocked, &blockedByMaker);
    for (const int signal :
        {SIGTERM, SIGINT, SIGHUP, SIGQUIT, SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS, SIGABRT})
        if (!sigismember(&blockedByMaker, signal))
            sigdelset(&blocked, signal);
    pthread_sigmask(SIG_SETMASK, &blocked, nullptr);
}

std::vector<std::string> openDisplays()
{
    std::vector<std::string> displays;
    if (opensX())
        displays.push_back("xcb");
    if (opensWayland())
        displays.insert(displays.end(), {"wayland", "wayland-egl"});
    return displays;
}

bool drawsWithoutDisplay()
{
    return true;
}

} // namespace tavo
