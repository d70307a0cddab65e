#include "vireo/show/delivery/FrontDoor.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <thread>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugSection.h"
#include "tavo/base/debug/displayException.h"
#include "tavo/base/files/saveFile.h"
#include "tavo/base/text/printable.h"
#include "vireo/show/delivery/Mode.h"
#include "vireo/show/delivery/WindowThread.h"
#include "vireo/show/delivery/dataFormats.h"
#include "vireo/show/delivery/displayPlatforms.h"
#include "vireo/show/delivery/endOfProgram.h"
#include "vireo/show/delivery/sayOnce.h"
#include "vireo/show/delivery/windowState.h"
#include "vireo/show/images/ImageView.h"
#include "vireo/show/plots/PlotView.h"
#include "vireo/show/scenes/SceneView.h"
#include "vireo/show/show.h"
#include "vireo/show/slices/SlicesView.h"
#include "vireo/show/window/ShowWindow.h"
#include "vireo/show/window/pictureFile.h"
#include "vireo/show/window/sectionContent.h"

namespace tavo {

std::string noSuchView(const std::string& name)
{
    return "there is no view \"" + printable(name, 100) + "\"";
}

namespace {

constexpr std::chrono::milliseconds FRAME(16);
constexpr QSize DEFAULT_PICTURE(1000, 700);

// Written in the thread of the QApplication, under whose thread others look it up.
std::atomic<FrontDoor*> theFrontDoor = nullptr;
// Not by QThread: asking for that makes something of Qt's, which stays, for every thread that asks.
std::atomic<std::thread::id> theThread;
std::atomic<bool> isThereAnApplication = false;
std::atomic<bool> hasThereBeenAnApplication = false;

std::unique_ptr<View> makeViewOf(const ViewSlot& slot)
{
    switch (slot.kind) {
    case ViewKind::Plot: return std::make_unique<PlotView>(slot.name);
    case ViewKind::Scene: return std::make_unique<SceneView>(slot.name);
    case ViewKind::Image: return std::make_unique<ImageView>(slot.name);
    case ViewKind::Slices: return std::make_unique<SlicesView>(slot.name);
    }
    return nullptr;
}

// Of the displayers of events, which share the window.
std::vector<DebugSection*> allSections()
{
    const DebugWindow* const window = debugOutput.getWindow();
    return window ? window->getSections() : std::vector<DebugSection*>();
}

DebugSection* findSection(const std::string& name)
{
    for (DebugSection* section : allSections())
        if (section->getName() == name)
            return section;
    return nullptr;
}

std::string saveIfAny(const QString& file, const QImage& picture)
{
    return picture.isNull() ? "there is no picture" : savePicture(file, picture);
}

void deleteFrontDoor()
{
    delete theFrontDoor.load();
}

// Before the window of the debug output, if that is there: pictures of its sections may have to be saved.
void deleteFrontDoorFirst()
{
    qRemovePostRoutine(deleteFrontDoor);
    qAddPostRoutine(deleteFrontDoor);
}

// Where VIREO_SHOW asks for pictures, they are all that is seen of it.
DebugWindow* makeUnseenWindow()
{
    auto* window = new DebugWindow;
    window->setAttribute(Qt::WA_DontShowOnScreen);
    return window;
}

// The window that views and the debug output share.
DebugWindow* makeShowWindow()
{
    if (theFrontDoor)
        deleteFrontDoorFirst();
    if (!theFrontDoor || isShowOff() || !hasDisplay())
        return nullptr;
    return showMode() == Mode::Pictures ? makeUnseenWindow() : theFrontDoor.load()->makeWindow();
}

[[maybe_unused]] const bool isWindowMakerSet = (DebugOutput::setWindowMaker(makeShowWindow), true);

// Qt's objects are a mixture of both by now, which nobody can serve or take down. Nobody will see a window's log.
[[noreturn]] void endForTwoApplications()
{
    std::fflush(nullptr);
    std::fputs("tavo: the program makes a QApplication, but vireo has one already, in a thread of its own, since the "
               "program had none when it called tavo::show(), tavo::pump(), tavo::openWindow(), tavo::savePicture() or "
               "tavo::savePictures(). Qt cannot have two: the program ends. Make the QApplication before these calls\n",
        stderr);
    std::_Exit(EXIT_FAILURE);
}

// Called by the constructor of every QCoreApplication.
void makeFrontDoor()
{
    if (isShowOff())
        return;
    if (windowThread::isRunning())
        endForTwoApplications();
    if (theFrontDoor) // the program has two of its own; which goes with the first
        return;
    runGuarded([] {
        theFrontDoor = new FrontDoor;
        deleteFrontDoorFirst();
    });
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(makeFrontDoor)

FrontDoor::FrontDoor()
    : m_IsOfProgram(!windowThread::isHere())
{
    moveToThread(QCoreApplication::instance()->thread());
    if (thread() == QThread::currentThread())
        theThread = std::this_thread::get_id();
    else // the library was loaded by another one
        QTimer::singleShot(0, this, [] { theThread = std::this_thread::get_id(); });
    isThereAnApplication = qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
    if (isThereAnApplication)
        hasThereBeenAnApplication = true;
    inbox::setReceiver(this, [this] { scheduleFrame(); });
}

FrontDoor::~FrontDoor()
{
    inbox::setReceiver(nullptr, nullptr);
    m_IsEnding = true;
    runGuarded([this] { showMode() == Mode::Pictures ? savePicturesOfMode() : sayWhatWaits(); });
    delete m_Window;
    for (const ShownView& shown : m_Views)
        delete shown.view; // if it was in no window
    windowState::setOpen(false);
    isThereAnApplication = false;
    theThread = std::thread::id();
    theFrontDoor = nullptr;
}

FrontDoor* FrontDoor::get()
{
    return theFrontDoor;
}

bool FrontDoor::canMakeViews()
{
    return isThereAnApplication;
}

bool FrontDoor::couldMakeViews()
{
    return hasThereBeenAnApplication;
}

bool FrontDoor::isHere()
{
    return theThread.load() == std::this_thread::get_id();
}

void FrontDoor::scheduleFrame()
{
    if (std::exchange(m_IsFrameScheduled, true))
        return;
    std::chrono::nanoseconds wait(0);
    if (m_SinceLastFrame.isValid())
        wait = FRAME - std::chrono::nanoseconds(m_SinceLastFrame.nsecsElapsed());
    // To the nearest millisecond: with each rounded up, there would be fewer than 60 frames in a second.
    const auto rounded = std::chrono::round<std::chrono::milliseconds>(wait);
    QTimer::singleShot(
        std::max(rounded, std::chrono::milliseconds(0)), Qt::PreciseTimer, this, [this] { showWaiting(); });
}

void FrontDoor::showWaiting()
{
    m_IsFrameScheduled = false;
    if (!canMakeViews())
        return sayOnce("nothing is shown: the program has a QCoreApplication, where views need a QApplication");
    m_SinceLastFrame.start(); // from beginning to beginning: what a frame takes is no pause before the next one
    for (Batch::Part& part : takeWaiting()) {
        runGuarded([&] { show(std::move(part)); });
        m_HasUnsavedPictures = true;
    }
}

// While what is taken is being shown, as much may come to wait again: what is replaced goes before anything is taken.
std::vector<Batch::Part> FrontDoor::takeWaiting()
{
    constexpr int MOST_ROUNDS = 20; // somebody may send new names for ever
    inbox::Room room;
    for (int round = 0; round < MOST_ROUNDS; ++round) {
        if (std::optional<std::vector<Batch::Part>> taken = inbox::takeInto(room))
            return std::move(*taken);
        for (const auto& [slot, replaced] : room)
            runGuarded([this, &slot = slot, &replaced = replaced] { makeRoom(slot, replaced); });
    }
    return inbox::take();
}

void FrontDoor::makeRoom(const ViewSlotPointer& slot, const Replaced& replaced)
{
    if (View* const view = findView(slot))
        view->makeRoom(replaced);
}

void FrontDoor::show(Batch::Part part)
{
    if (part.pending.isRemoved)
        removeView(part.slot);
    if (!part.pending.update)
        return;
    View* view = findView(part.slot);
    if (!view)
        view = &makeView(part.slot);
    view->apply(*part.pending.update);
}

View* FrontDoor::findView(const ViewSlotPointer& slot) const
{
    const auto found =
        std::find_if(m_Views.begin(), m_Views.end(), [&slot](const ShownView& shown) { return shown.slot == slot; });
    return found != m_Views.end() ? found->view.data() : nullptr;
}

View* FrontDoor::findView(const std::string& name) const
{
    const ViewSlotPointer slot = inbox::findSlot(name);
    return slot ? findView(slot) : nullptr;
}

View& FrontDoor::makeView(const ViewSlotPointer& slot)
{
    removeView(slot);
    std::unique_ptr<View> made = makeViewOf(*slot);
    View* const view = made.release();
    m_Views.push_back({slot, view});
    moveViewsIntoWindow();
    return *view;
}

// A program that has a QApplication is one with windows; any other says when it wants one.
bool FrontDoor::opensWindow() const
{
    return !m_IsEnding && showMode() != Mode::Pictures && (m_IsOfProgram || windowState::isWanted()) && hasDisplay();
}

void FrontDoor::moveViewsIntoWindow()
{
    if (!opensWindow())
        return;
    for (ShownView& shown : m_Views)
        if (shown.view && !std::exchange(shown.isInWindow, true))
            window().addView(shown.slot->name, shown.view, dataFormatsOf(shown.slot->kind));
}

void FrontDoor::removeView(const ViewSlotPointer& slot)
{
    const auto found =
        std::find_if(m_Views.begin(), m_Views.end(), [&slot](const ShownView& shown) { return shown.slot == slot; });
    if (found == m_Views.end())
        return;
    if (m_Window && found->view)
        m_Window->removeView(found->view);
    delete found->view;
    m_Views.erase(found);
}

ShowWindow& FrontDoor::window()
{
    if (!m_Window)
        debugOutput.requireWindow();
    if (!m_Window) // where the debug output has had one of its own since before this library was loaded
        makeWindow();
    return *m_Window;
}

ShowWindow* FrontDoor::makeWindow()
{
    m_Window = new ShowWindow;
    connect(m_Window, &ShowWindow::opened, this, [] { windowState::setOpen(true); });
    connect(m_Window, &ShowWindow::closed, this, [] { windowState::setOpen(false); });
    connect(m_Window, &QObject::destroyed, this, [] { windowState::setOpen(false); });
    connect(m_Window, &ShowWindow::clearWanted, this, [] { clear(); });
    return m_Window;
}

bool FrontDoor::openWindow(const char* call)
{
    if (!hasDisplay())
        return refuse(call, NO_DISPLAY);
    showWaiting();
    window().show();
    return true;
}

void FrontDoor::closeWindow()
{
    if (m_Window)
        m_Window->close();
}

void FrontDoor::serveUntilClosed()
{
    QEventLoop loop;
    connect(m_Window, &ShowWindow::closed, &loop, &QEventLoop::quit);
    connect(m_Window, &QObject::destroyed, &loop, &QEventLoop::quit);
    constexpr int REFUSED = -1; // as all loops are, once the program was told to quit and served no events since
    if (loop.exec() == REFUSED)
        while (m_Window && m_Window->isVisible())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

std::string FrontDoor::savePicture(const std::string& name, const QString& file, QSize size)
{
    View* const view = findView(name);
    DebugSection* const section = view ? nullptr : findSection(name);
    if (!view && !section)
        return noSuchView(name);
    if (size.isEmpty())
        return "there are no pictures of " + std::to_string(size.width()) + " x " + std::to_string(size.height()) +
               " pixels";
    constexpr int MOST_PIXELS = 32'767; // along a side; Qt draws no further
    if (size.width() > MOST_PIXELS || size.height() > MOST_PIXELS)
        return "pictures have at most " + std::to_string(MOST_PIXELS) + " pixels along a side";
    return view ? view->savePicture(file, size) : saveIfAny(file, section->getPicture(size));
}

std::string FrontDoor::savePictures(const QString& folder)
{
    if (folder.isEmpty() || !QDir().mkpath(folder))
        return "the folder cannot be made";
    std::set<QString> taken;
    std::string errors;
    const auto save = [&](const std::string& name, const QImage& picture) {
        const QString file = pictureFileOf(name, taken);
        const std::string error = saveIfAny(QDir(folder).filePath(file), picture);
        if (!error.empty())
            errors += (errors.empty() ? "" : "; ") + file.toStdString() + ": " + error;
    };
    for (const ShownView& shown : m_Views)
        if (shown.view)
            save(shown.slot->name, shown.view->picture(DEFAULT_PICTURE));
    for (DebugSection* section : allSections())
        save(section->getName(), section->getPicture(DEFAULT_PICTURE));
    return errors;
}

void FrontDoor::savePicturesOfMode()
{
    showWaiting();
    if (!std::exchange(m_HasUnsavedPictures, false) && allSections().empty())
        return;
    const std::string folder = picturesFolder();
    const std::string errors = savePictures(QString::fromLocal8Bit(folder.c_str()));
    if (!errors.empty())
        warning("VIREO_SHOW=pictures:" + printable(folder) + ": " + errors);
}

// Mistakes in what was sent last are found when it is shown, or later.
void FrontDoor::sayWhatWaits()
{
    if (canMakeViews())
        showWaiting();
    for (const ShownView& shown : m_Views)
        if (shown.view)
            shown.view->sayWhatWaits();
}

std::string FrontDoor::saveData(const std::string& name, const QString& file)
{
    if (View* const view = findView(name))
        return view->saveData(file);
    DebugSection* const section = findSection(name);
    return section ? saveSectionData(*section, file) : noSuchView(name);
}

} // namespace tavo
