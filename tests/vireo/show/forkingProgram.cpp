// A program that forks while its window is open and threads of it send. VIREO_TEST_PROGRAM says what the child does.
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "tavo/base/debug/DebugOutput.h"
#include "vireo/show/show.h"

namespace {

const std::vector<double> SAMPLES{3, 1, 2};

bool isChild(const char* what)
{
    return std::getenv("VIREO_TEST_PROGRAM") == std::string(what);
}

void send()
{
    for (int i = 0; i < 100; ++i)
        tavo::plot("p").curve("y", SAMPLES).append("z", i, i);
    for (int i = 0; i < 100 && isChild("writes to the log"); ++i)
        tavo::debugOutput << "the parent writes\n";
}

int runChild(const std::string& what)
{
    if (what == "exits")
        std::exit(7);
    if (what == "exits in a thread")
        std::thread([] { std::exit(7); }).join();
    if (what == "writes") {
        std::ios::sync_with_stdio(false);
        std::cout << "the child writes\n";
    }
    if (what == "writes to the log")
        tavo::debugOutput << "the child writes\n";
    if (what == "ends at once")
        _exit(7);
    if (what == "calls") {
        send();
        tavo::remove("p");
        tavo::closeWindow();
        const bool isAnythingDone = tavo::openWindow() || tavo::savePicture("p", "child.png") || !tavo::pump();
        tavo::show();
        return isAnythingDone ? 1 : 7;
    }
    return 7;
}

void forkAtEnd()
{
    const pid_t child = fork();
    if (child == 0)
        return;
    int status = 0;
    waitpid(child, &status, 0);
    std::printf("the child of the end %s\n", status == 0 ? "ends" : "crashes");
}

} // namespace

int main()
{
    if (isChild("forks at its end")) {
        std::atexit(forkAtEnd);
        return tavo::openWindow() ? 0 : 1;
    }
    if (!tavo::openWindow())
        return 1;
    std::atomic<bool> isOver{false};
    std::thread sender([&isOver] {
        while (!isOver)
            send();
    });
    for (int i = 0; i < 20; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            sender.detach(); // it is the parent's
            return runChild(std::getenv("VIREO_TEST_PROGRAM"));
        }
        int status = 0;
        waitpid(child, &status, 0);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 7)
            std::printf("the child ended with status %d\n", status);
    }
    isOver = true;
    sender.join();
    tavo::plot("p").curve("y", SAMPLES);
    std::printf("the parent %s\n", tavo::saveData("p", "p.csv") ? "goes on" : "stands still");
}
