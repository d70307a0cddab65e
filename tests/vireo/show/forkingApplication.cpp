// A program that forks in the thread that serves its window, or in another one. Its children end with exit().
#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "vireo/show/show.h"

namespace {

void forkOften()
{
    for (int i = 0; i < 20; ++i) {
        tavo::plot("p").curve("y", {3, 1, i});
        const pid_t child = fork();
        if (child == 0)
            std::exit(7);
        int status = 0;
        waitpid(child, &status, 0);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 7)
            std::printf("the child ended with status %d\n", status);
    }
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    tavo::plot("p").curve("y", {3, 1, 2});
    tavo::scene("s").cloud("c", {0, 0, 0, 1, 1, 1});
    if (!tavo::openWindow() || !tavo::savePicture("p", "p.png"))
        return 1;
    if (std::string(std::getenv("VIREO_TEST_PROGRAM")) == "in the window's thread") {
        forkOften();
    } else {
        bool isOver = false;
        std::thread forking([&] {
            forkOften();
            QMetaObject::invokeMethod(
                qApp, [&] { isOver = true; }, Qt::QueuedConnection);
        });
        while (!isOver)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        forking.join();
    }
    std::printf("the parent %s\n", tavo::saveData("p", "p.csv") ? "goes on" : "stands still");
}
