#include "tavo/base/debug/DebugOutput.h"

#include <QApplication>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <atomic>
#include <cstdio>
#include <mutex>
#include <sstream>
#include <thread>
#include <utility>

#include "tavo/base/debug/DebugWindow.h"
#include "tavo/base/debug/EventDisplayer.h"
#include "tavo/base/debug/LogText.h"
#include "tavo/base/debug/debugOutputInForks.h"
#include "tavo/base/debug/displayException.h"
#include "tavo/base/threads/WindowFirstMutex.h"

namespace tavo {

constinit DebugOutput debugOutput;

namespace {

constexpr std::size_t KEPT_TEXT = 1 << 20;

// Between two appends to the log, so that laying it out leaves time for the rest of the window: 30 frames a second.
constexpr int FRAME_MILLISECONDS = 33;

// The debug output's state lives on the heap and is never destroyed, so that static initialisers and destructors
// anywhere can write to it.
struct State
{
    WindowFirstMutex mutex;
    std::atomic<std::thread::id> windowThread;
    std::string text;
    LogText waiting; // for the window's log
    bool isLogScheduled = false;
    bool isInChild = false; // of a fork
    QPointer<DebugWindow> window;
    std::atomic<DebugWindow* (*)()> makeWindow{nullptr};
};

State& state()
{
    static State* const theState = new State;
    return *theState;
}

void lockState()
{
    if (std::this_thread::get_id() == state().windowThread)
        state().mutex.lockFirst();
    else
        state().mutex.lock();
}

class StateLock
{
public:
    StateLock() { lockState(); }
    ~StateLock() { state().mutex.unlock(); }
    StateLock(const StateLock&) = delete;
    StateLock& operator=(const StateLock&) = delete;
};

// Keeps the newest half when the text grows too long, from the start of a line on.
void keep(std::string& kept, const std::string& text)
{
    kept += text;
    if (kept.size() <= KEPT_TEXT)
        return;
    kept.erase(0, kept.size() - KEPT_TEXT / 2);
    kept.erase(0, kept.find('\n') + 1);
}

bool isApplicationThread()
{
    const QCoreApplication* const application = QCoreApplication::instance();
    return application && QThread::currentThread() == application->thread();
}

// In the thread of the QApplication.
void bringLogUpToDate()
{
    std::string text;
    {
        const StateLock lock;
        text = state().waiting.take();
    }
    if (state().window && !text.empty())
        state().window->appendText(text);
}

void showFrame()
{
    {
        const StateLock lock;
        state().isLogScheduled = false;
    }
    runGuarded(bringLogUpToDate);
}

// With the state locked: as long as the window is in it, the QApplication is there. The window itself may be going away
// in another thread.
void scheduleLog()
{
    if (!std::exchange(state().isLogScheduled, true))
        QMetaObject::invokeMethod(
            qApp, [] { QTimer::singleShot(FRAME_MILLISECONDS, qApp, showFrame); }, Qt::QueuedConnection);
}

void writeToErrorStream(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr); // Windows' runtime may keep it back where it goes to another program
}

// What nobody has seen in its log is on the standard error stream then.
void deleteWindow()
{
    DebugWindow* window = nullptr;
    std::string unseen;
    {
        const StateLock lock;
        window = state().window;
        state().window = nullptr;
        unseen = state().waiting.take();
    }
    delete window;
    writeToErrorStream(unseen);
}

DebugWindow* makeWindow()
{
    DebugWindow* (*const maker)() = state().makeWindow;
    DebugWindow* const window = maker ? maker() : nullptr;
    return window ? window : new DebugWindow;
}

bool canShowEvents()
{
    if (state().isInChild)
        return false;
    const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!application || QCoreApplication::closingDown()) {
        static const bool said =
            std::fputs("tavo: events sent to the debug output are dropped: there is no QApplication\n", stderr) >= 0;
        static_cast<void>(said);
        return false;
    }
    if (!isApplicationThread()) {
        warning("DebugOutput::displayEvent() - events can only be sent from the thread of the QApplication.");
        return false;
    }
    return true;
}

} // namespace

DebugOutput& DebugOutput::operator<<(const std::string& text)
{
    // Before the lock is taken: on Windows a program outlives a reference to nowhere, which must not leave it locked.
    const std::string copy = text; // NOLINT(performance-unnecessary-copy-initialization): see above
    {
        const StateLock lock;
        keep(state().text, copy);
        if (!state().window.isNull()) { // it may be going away: only its own thread may look at it
            state().waiting.append(copy);
            scheduleLog();
            return *this;
        }
    }
    writeToErrorStream(copy);
    return *this;
}

DebugOutput& DebugOutput::operator<<(const char* text)
{
    return *this << std::string(text ? text : "(null)");
}

DebugOutput& DebugOutput::operator<<(std::string_view text)
{
    return *this << std::string(text);
}

DebugOutput& DebugOutput::writeBy(const std::function<void(std::ostream&)>& print)
{
    std::ostringstream text;
    text << std::boolalpha;
    print(text);
    return *this << text.str();
}

bool DebugOutput::displayEvent(const MetaClass* displayerClass, std::string name, const EventDisplayerEvent* event)
{
    if (!canShowEvents())
        return false;

    bool delivered = false;
    runGuarded([&] {
        EventDisplayer& displayer = requireWindow().getDisplayer(displayerClass, name);
        delivered = true;
        displayer.displayEvent(event, name.c_str());
    });
    return delivered;
}

// It goes before the QApplication does.
DebugWindow& DebugOutput::requireWindow()
{
    if (!state().window) {
        qRemovePostRoutine(deleteWindow);
        qAddPostRoutine(deleteWindow);
        DebugWindow* const window = makeWindow();
        state().windowThread = std::this_thread::get_id();
        {
            const StateLock lock;
            state().window = window;
            state().waiting = LogText();
            state().waiting.append(state().text);
            state().isLogScheduled = false; // what an earlier QApplication had scheduled went with it
        }
        bringLogUpToDate();
    }
    return *state().window;
}

void DebugOutput::setWindowMaker(DebugWindow* (*maker)())
{
    state().makeWindow = maker;
}

void lockDebugOutputForFork()
{
    lockState();
}

void unlockDebugOutputInParent()
{
    state().mutex.unlock();
}

void unlockDebugOutputInChild()
{
    state().isInChild = true;
    state().window = nullptr; // which is the parent's
    state().waiting = LogText();
    state().windowThread = std::thread::id();
    state().mutex.unlockInChild();
}

DebugWindow* DebugOutput::getWindow() const
{
    if (isApplicationThread())
        runGuarded(bringLogUpToDate);
    const StateLock lock;
    return state().window;
}

std::string DebugOutput::getText() const
{
    const StateLock lock;
    return state().text;
}

} // namespace tavo
