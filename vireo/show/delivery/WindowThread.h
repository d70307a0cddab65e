#pragma once

#include <QStringList>
#include <functional>

namespace tavo {

// The thread of the window where the program has no QApplication: it makes one and serves it, from its first start
// until the program ends.
namespace windowThread {

// Returns when the QApplication is there, or cannot be made. It has windows where `displayPlatforms` are some of Qt's
// and one of them starts; otherwise it only makes pictures.
void start(const QStringList& displayPlatforms);

bool isRunning();

// Whether this is it.
bool isHere();

// Whether Qt has left it with half a QApplication, beside which nothing of Qt's widgets can be made.
bool hasFailed();

// Keeps it from handling events, so that the program can fork: while it handles one it may hold locks of the C library,
// which would come to the child locked. Waits for that, but not for long. False if it is not kept, or is the thread
// that forks.
bool holdForFork();

// Afterwards, in the parent, if it was kept; and in the child, which does not have the thread.
void releaseAfterFork();
void forgetInChild();

// Ends it, and with it the QApplication; it cannot be started again. From the thread itself it is only left to itself.
void stop();

} // namespace windowThread

// Has the thread of the QApplication, the program's or this library's, do some work, and waits until it is done. False
// if there is none, or if it does not begin within five seconds, in which case it never does. `work` is kept until
// then: it owns what it needs.
bool runInWindowThread(std::function<void()> work);

// Makes sure that there is a thread in which views can be made: of the program's QApplication, or a thread of its own.
// False, with a line in the log that begins with `call`, if there can be none.
bool hasViewThread(const char* call);

// The same, with a thread of its own only where there is a display, for a window, in which all views are from now on.
bool hasWindowThread(const char* call);

} // namespace tavo
