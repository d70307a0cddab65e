#include "vireo/show/show.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSize>
#include <QString>
#include <algorithm>
#include <functional>
#include <memory>
#include <optional>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/displayException.h"
#include "tavo/base/text/printable.h"
#include "vireo/show/delivery/FrontDoor.h"
#include "vireo/show/delivery/Inbox.h"
#include "vireo/show/delivery/Mode.h"
#include "vireo/show/delivery/WindowThread.h"
#include "vireo/show/delivery/currentBatch.h"
#include "vireo/show/delivery/endOfProgram.h"
#include "vireo/show/delivery/sayOnce.h"
#include "vireo/show/delivery/windowState.h"

namespace tavo {

namespace {

constexpr std::size_t LONGEST_NAME = 100;
constexpr int PUMP_MILLISECONDS = 8;
constexpr const char* NO_ANSWER = "the thread of the QApplication does not answer";

std::string quoted(const std::string& text)
{
    return "\"" + printable(text, LONGEST_NAME) + "\"";
}

// What went wrong, empty if nothing did; none if it was refused, which has been said.
using Saved = std::optional<std::string>;

// Has something saved, with everything that this thread has sent; says what went wrong.
bool save(const std::string& call, const std::function<Saved()>& work)
{
    if (isShowOff()) {
        if (isEndingProgram())
            sayOnce(call + " saves nothing: the program is ending");
        return false;
    }
    bool isSaved = false;
    runGuarded([&] {
        sendCurrentBatch();
        const Saved error = work();
        isSaved = error && error->empty();
        if (error && !isSaved && !isShowOff())
            warning(call + ": " + *error);
    });
    return isSaved;
}

// By the front door, of what it shows.
std::string saveShown(const std::function<std::string(FrontDoor&)>& work)
{
    const auto error = std::make_shared<std::string>("saving it failed");
    const bool isDone = runInWindowThread([work, error] {
        FrontDoor::get()->showWaiting();
        *error = work(*FrontDoor::get());
    });
    return isDone ? *error : NO_ANSWER;
}

Saved savePictureOfShown(const std::string& call, const std::function<std::string(FrontDoor&)>& work)
{
    return hasViewThread(call.c_str()) ? Saved(saveShown(work)) : std::nullopt;
}

// Whether nobody shows anything yet, and nothing waits under that name either.
bool isUnheardOf(const std::string& name)
{
    const std::vector<ViewSlotPointer> views = inbox::allSlots();
    return !FrontDoor::get() && std::none_of(views.begin(), views.end(),
                                    [&name](const ViewSlotPointer& slot) { return slot->name == name; });
}

// Where there is nobody who shows anything, all of it still waits.
std::string saveWaitingData(const std::string& name, const QString& file)
{
    const std::unique_ptr<ViewUpdate> waiting = inbox::copyOfWaiting(name);
    return waiting ? waiting->saveData(file) : noSuchView(name);
}

QString fileName(const std::string& name)
{
    return QString::fromLocal8Bit(name.c_str());
}

void removeViews(const std::vector<ViewSlotPointer>& views)
{
    const Statement statement;
    Batch* const batch = currentBatch();
    for (const ViewSlotPointer& slot : views)
        if (batch && slot) {
            Pending& pending = (*batch)[slot];
            pending.isRemoved = true;
            pending.update.reset();
        }
}

// Waits no longer than five seconds for a thread that does not answer, which is said.
bool openWindow(const char* call)
{
    if (!hasWindowThread(call))
        return false;
    const auto isOpen = std::make_shared<bool>(false);
    if (!runInWindowThread([=] { *isOpen = FrontDoor::get()->openWindow(call); }))
        return !isShowOff() && refuse(call, NO_ANSWER);
    return *isOpen;
}

void showWindow()
{
    constexpr const char* CALL = "tavo::show()";
    if (!inbox::hasAnything() && !debugOutput.getWindow())
        sayOnce(std::string(CALL) + " shows nothing: nothing was sent");
    else if (openWindow(CALL) && FrontDoor::isHere())
        FrontDoor::get()->serveUntilClosed();
    else
        windowState::waitUntilClosed();
}

void servePump()
{
    static thread_local QElapsedTimer sinceLast;
    if (sinceLast.isValid() && sinceLast.elapsed() < PUMP_MILLISECONDS)
        return;
    sinceLast.start();
    QCoreApplication::processEvents();
}

} // namespace

void show()
{
    if (isShowOff())
        return;
    runGuarded([] {
        sendCurrentBatch();
        if (showMode() != Mode::Pictures)
            showWindow();
        else if ((inbox::hasAnything() || debugOutput.getWindow()) && hasViewThread("tavo::show()"))
            runInWindowThread([] { FrontDoor::get()->savePicturesOfMode(); });
    });
}

bool pump()
{
    if (isShowOff() || showMode() == Mode::Pictures)
        return true;
    runGuarded([] {
        if (FrontDoor::isHere())
            servePump();
        else if (!windowState::isWanted() && (windowThread::isRunning() || (!FrontDoor::get() && inbox::hasWaiting())))
            hasWindowThread("tavo::pump()");
    });
    return !windowState::wasClosed();
}

bool openWindow()
{
    if (isShowOff() || showMode() == Mode::Pictures)
        return false;
    bool isOpen = false;
    runGuarded([&isOpen] {
        sendCurrentBatch();
        isOpen = openWindow("tavo::openWindow()");
    });
    return isOpen;
}

void closeWindow()
{
    if (!isShowOff())
        runGuarded([] { inbox::post([] { FrontDoor::get()->closeWindow(); }); });
}

void remove(const char* name)
{
    if (name)
        runGuarded([name] { remove(std::string(name)); });
}

void remove(const std::string& name)
{
    if (!isShowOff())
        runGuarded([&name] { removeViews({inbox::findSlot(name)}); });
}

void clear()
{
    if (!isShowOff())
        runGuarded([] { removeViews(inbox::allSlots()); });
}

bool savePicture(const std::string& name, const std::string& file, int width, int height)
{
    const std::string call = "tavo::savePicture(" + quoted(name) + ", " + quoted(file) + ")";
    return save(call, [&]() -> Saved {
        if (isUnheardOf(name)) // which no QApplication has to be made for
            return noSuchView(name);
        return savePictureOfShown(call, [=](FrontDoor& door) {
            return door.savePicture(name, fileName(file), {width, height});
        });
    });
}

bool savePictures(const std::string& folder)
{
    const std::string call = "tavo::savePictures(" + quoted(folder) + ")";
    return save(call, [&] {
        return savePictureOfShown(call, [folder](FrontDoor& door) { return door.savePictures(fileName(folder)); });
    });
}

bool saveData(const std::string& name, const std::string& file)
{
    const std::string call = "tavo::saveData(" + quoted(name) + ", " + quoted(file) + ")";
    return save(call, [&]() -> Saved {
        if (FrontDoor::canMakeViews())
            return saveShown([=](FrontDoor& door) { return door.saveData(name, fileName(file)); });
        if (windowThread::hasFailed() && !hasViewThread(call.c_str()))
            return std::nullopt;
        return saveWaitingData(name, fileName(file));
    });
}

} // namespace tavo
