#pragma once

#include <string>

#include "vireo/show/Export.h"
#include "vireo/show/Image.h"
#include "vireo/show/Plot.h"
#include "vireo/show/Scene.h"
#include "vireo/show/Slices.h"

/// @file
/// The front door: shows what a running program has.
///
///     #include <vector>
///     #include <vireo/show/show.h>
///
///     int main()
///     {
///         std::vector<double> y{3, 1, 2};
///         tavo::plot("p").curve("y", y);
///         tavo::show();
///     }
///
/// Views are made by `plot(name)`, `scene(name)`, `slices(name)` and `image(name)`, from any thread, and are on the
/// screen at once in a program that has a QApplication and serves its events. A program without Qt ends with `show()`,
/// calls `pump()` in its loop, or calls `openWindow()` once; the window then has a thread of its own, with a
/// QApplication, until the program ends. The same thread makes the pictures of `savePicture()`, `savePictures()` and
/// VIREO_SHOW=pictures where there is no QApplication, and opens no window for them. A program that has this thread
/// must not make a QApplication later: Qt cannot have two, and the program ends with a line that says so. One that
/// makes a QApplication makes it before these calls.
///
/// The environment variable VIREO_SHOW says what becomes of all this: `off` makes every call do nothing,
/// `pictures:FOLDER` saves a PNG of every view in that folder when the program ends or calls `show()`, and opens no
/// window, `fresh` opens the window without what it remembers of earlier ones.
///
/// The child of a fork() shows nothing. Where there was a QApplication before the fork, the child's exit() ends it
/// without what atexit() has registered, of which Qt's part needs threads that the child does not have, and without
/// destroying static objects: std::cout and the files of stdio.h are flushed, streams of your own are not. fork() waits
/// while the window's thread handles an event, so that it holds no lock that exit() would wait for; but for a quarter
/// of a second at most. What a child writes to debugOutput goes to its standard error stream.
///
/// A thread of the window's own leaves your program's signals to your threads. It takes SIGTERM, SIGINT, SIGHUP and
/// SIGQUIT, by which a program is ended, only if the thread took them that made the first of these calls.
///
/// Nothing here throws. What goes wrong is a line in the log of the window, or, where there is none, on the standard
/// error stream.

namespace tavo {

/// Opens the window and returns when it is closed. Returns at once, with a line in the log, if there is nothing to show
/// or no display. With VIREO_SHOW=pictures:FOLDER it saves the pictures and returns. In the thread of the program's
/// QApplication it serves events meanwhile; in any other it only waits.
VIREO_SHOW_EXPORT void show();

/// Serves the window from a loop of the program; to be called as often as one likes, since it returns at once when
/// nothing is due. Returns true until the window is closed; always true where no window can be opened.
///
///     while (tavo::pump())
///         tavo::plot("rpm").append("motor", now(), measure());
VIREO_SHOW_EXPORT bool pump();

/// Opens the window and returns. False, with a line in the log, if there is no display; false without one where
/// `VIREO_SHOW` says that no window is wanted.
VIREO_SHOW_EXPORT bool openWindow();

/// Closes the window, as its close button does. What is sent goes on arriving; the next new view opens it again.
VIREO_SHOW_EXPORT void closeWindow();

/// Takes a view away. A later call under its name makes a new one. Overloaded for const char* so that remove("x")
/// after `using namespace tavo` is ambiguous instead of silently deleting a file.
VIREO_SHOW_EXPORT void remove(const char* name);
VIREO_SHOW_EXPORT void remove(const std::string& name);

/// Takes all views away.
VIREO_SHOW_EXPORT void clear();

/// Saves a picture of a view, or of the section that a displayer of that name has, `width` x `height` pixels, as a PNG
/// or whatever else the file's name ends with; with all that this thread has sent. It needs no display. Waits until it
/// is done, but no longer than 5 seconds for a QApplication of the program that does not serve its events. False, with
/// a line in the log, if it cannot be saved, as when the program is ending: behind main().
VIREO_SHOW_EXPORT bool savePicture(
    const std::string& name, const std::string& file, int width = 1000, int height = 700);

/// Saves a picture of every view and section in a folder, which is made if need be, as the view's name and ".png". As
/// savePicture().
VIREO_SHOW_EXPORT bool savePictures(const std::string& folder);

/// Saves the data of a view as comma-separated values in a ".csv" file: of a plot its samples, of a scene the points
/// and faces of its items with all their numbers, in the coordinates that were sent, of slices the samples and where
/// they are, of an image its pixels. An image of bytes is also saved as they are in a ".png" file, and the volume of a
/// scene, or of slices, in a ".nii" file (NIfTI-1); how the volume of a scene is shown in a ".json" file, which
/// Item::loadTransferFunction() reads. As savePicture(), but it needs no QApplication: where none shows
/// the view, what was sent to it is saved.
VIREO_SHOW_EXPORT bool saveData(const std::string& name, const std::string& file);

} // namespace tavo
