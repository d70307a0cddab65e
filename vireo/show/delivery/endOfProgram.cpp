#include "vireo/show/delivery/endOfProgram.h"

#include <QCoreApplication>
#include <atomic>
#include <mutex>
#include <thread>

#include "tavo/base/debug/debugOutputInForks.h"
#include "tavo/base/debug/displayException.h"
#include "vireo/show/delivery/FrontDoor.h"
#include "vireo/show/delivery/Inbox.h"
#include "vireo/show/delivery/Mode.h"
#include "vireo/show/delivery/WindowThread.h"
#include "vireo/show/delivery/displayPlatforms.h"
#include "vireo/show/delivery/process.h"
#include "vireo/show/delivery/sayOnce.h"

namespace tavo {

namespace {

std::atomic<std::thread::id> theEndingThread;

// What no QApplication has seen.
void attendToWhatWaits()
{
    if (QCoreApplication::instance() || !inbox::hasWaiting())
        return;
    if (showMode() == Mode::Pictures)
        windowThread::start(drawsWithoutDisplay() ? QStringList() : displayPlatforms().names); // whose end saves them
    else if (!hasRefused())
        sayOnce("the program ends, and what it sent was never shown: call tavo::show() at its end, tavo::pump() in its "
                "loop, or tavo::openWindow() once");
}

void endProgram()
{
    if (isShowOff())
        return;
    runGuarded([] {
        theEndingThread = std::this_thread::get_id();
        attendToWhatWaits();
        switchShowOff(); // nobody waits any more for a window that is going
        windowThread::stop();
        if (FrontDoor::isHere())
            delete FrontDoor::get();
    });
}

// Handlers come too late for what Qt makes when it first needs it: that goes before them. They are for programs that
// end in another thread than the main one, which loads this library.
[[maybe_unused]] const bool isMainThreadWatched = (callAtEndOfMainThread(endProgram), true);

// Guarded by the inbox.
bool isWindowThreadHeld = false;

void prepareFork()
{
    const bool isHeld = windowThread::holdForFork();
    inbox::lockForFork();
    lockDebugOutputForFork();
    isWindowThreadHeld = isHeld;
}

void afterForkInParent()
{
    const bool isHeld = isWindowThreadHeld;
    unlockDebugOutputInParent();
    inbox::unlockInParent();
    if (isHeld)
        windowThread::releaseAfterFork();
}

void afterForkInChild()
{
    unlockDebugOutputInChild();
    inbox::unlockInChild();
    windowThread::forgetInChild();
    switchShowOff();
}

// Whose threads no child has, though what Qt makes for the program waits for them at its end, or crashes without them.
// Some of them are there when the QApplication has gone.
bool hasThereBeenAnApplication()
{
    return windowThread::isRunning() || FrontDoor::couldMakeViews();
}

} // namespace

bool isEndingProgram() noexcept
{
    return theEndingThread.load() == std::this_thread::get_id();
}

void endProgramInOrder()
{
    static std::once_flag once;
    std::call_once(
        once, [] { watchForks(prepareFork, afterForkInParent, afterForkInChild, hasThereBeenAnApplication); });
    callAtExit(endProgram);
}

} // namespace tavo
