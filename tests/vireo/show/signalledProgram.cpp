// Programs whose window has a thread of its own, and what signals that thread takes. VIREO_TEST_PROGRAM names one.
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <pthread.h>
#include <set>
#include <string>

#include "vireo/show/show.h"

namespace {

namespace fs = std::filesystem;

bool isProgram(const char* name)
{
    return std::getenv("VIREO_TEST_PROGRAM") == std::string(name);
}

void takeAllSignals()
{
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGQUIT})
        std::signal(signal, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

void block(int signal)
{
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, signal);
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
}

std::set<fs::path> threads()
{
    return {fs::directory_iterator("/proc/self/task"), fs::directory_iterator()};
}

// A bit for each signal, from 1 on.
unsigned long long blockedSignalsOf(const fs::path& thread)
{
    std::ifstream status(thread / "status");
    const std::string name = "SigBlk:";
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(name))
            return std::stoull(line.substr(name.size()), nullptr, 16);
    return 0;
}

// Some of a driver's threads block all of them, whoever makes them.
void sayWhatIsBlocked(const std::set<fs::path>& threadsBefore)
{
    for (const auto& [signal, name] : {std::pair(SIGTERM, "SIGTERM"), {SIGINT, "SIGINT"}, {SIGHUP, "SIGHUP"},
             {SIGQUIT, "SIGQUIT"}, {SIGSEGV, "SIGSEGV"}, {SIGUSR1, "SIGUSR1"}, {SIGALRM, "SIGALRM"}}) {
        const std::set<fs::path> all = threads();
        const bool isTaken = std::any_of(all.begin(), all.end(), [&](const fs::path& thread) {
            return !threadsBefore.contains(thread) && (blockedSignalsOf(thread) >> (signal - 1)) % 2 == 0;
        });
        std::printf("%s %s\n", name, isTaken ? "taken" : "blocked");
    }
}

} // namespace

int main()
{
    const std::set<fs::path> threadsBefore = threads();
    takeAllSignals(); // whoever starts it may do otherwise
    if (isProgram("blocks a signal"))
        block(SIGTERM);
    tavo::scene("scene").cloud("points", {0, 0, 0, 1, 1, 1}); // whose driver has threads
    if (!tavo::openWindow() || !tavo::savePicture("scene", "scene.png", 50, 50))
        return 1;
    if (!isProgram("ends its main thread")) {
        sayWhatIsBlocked(threadsBefore);
        return 0;
    }
    std::puts("the main thread ends");
    std::fflush(stdout);
    pthread_exit(nullptr);
}
