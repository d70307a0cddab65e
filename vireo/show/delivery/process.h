#pragma once

#include <string>
#include <vector>

namespace tavo {

// What differs between systems about processes and displays.

// Has `hook`, always the same one, called when the program ends, before everything that was loaded so far is torn down.
// It may be called several times, once for each registration.
void callAtExit(void (*hook)());

// Has `hook` called when the main thread ends the program, before anything else is torn down. To be called by the main
// thread; does nothing elsewhere, and where threads end too late for it.
void callAtEndOfMainThread(void (*hook)());

// Has `before` called in front of a fork, and behind it `inParent` or `inChild`. A child that ends by exit() is ended
// without tearing anything down, if at the fork there is or was an application: what its parent's threads have begun,
// nobody can end in it. Does nothing where processes do not fork.
void watchForks(void (*before)(), void (*inParent)(), void (*inChild)(), bool (*hasThereBeenAnApplication)());

// Leaves the program's signals to the program's threads, but for those that end a program, which may have no other
// thread left, or are of a fault of this thread's own: of these it takes what the thread takes that made it.
void leaveSignalsToProgram();

// Qt's names for the kinds of display that answer here, the preferred one first.
std::vector<std::string> openDisplays();

// Whether Qt's platform for programs without a display has all that pictures need.
bool drawsWithoutDisplay();

} // namespace tavo
