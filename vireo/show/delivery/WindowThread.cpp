#include "vireo/show/delivery/WindowThread.h"

#include <QApplication>
#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <thread>

#include "tavo/base/debug/displayException.h"
#include "vireo/show/delivery/FrontDoor.h"
#include "vireo/show/delivery/displayPlatforms.h"
#include "vireo/show/delivery/endOfProgram.h"
#include "vireo/show/delivery/isShowOff.h"
#include "vireo/show/delivery/process.h"
#include "vireo/show/delivery/sayOnce.h"
#include "vireo/show/delivery/windowState.h"

namespace tavo {

namespace {

using namespace std::chrono_literals;

constexpr auto LONGEST_WAIT = 5s;

struct State
{
    std::mutex mutex;
    std::thread thread;
    bool hasStopped = false;
    std::atomic<bool> hasFailed{false};
    std::atomic<bool> isBlind{false};   // it has no windows that can be seen
    std::atomic<bool> isRunning{false}; // for children of forks, to which the mutex may have come locked
    std::recursive_timed_mutex working; // held while an event is handled, and while the QApplication is made
    std::atomic<bool> isInChild{false}; // of a fork, where nobody can release what the parent holds
};

State& state()
{
    static State* const theState = new State;
    return *theState;
}

// While a QApplication is being made.
struct Start
{
    std::promise<bool> isDone; // whether there is one
    std::thread::id thread;
    QtMessageHandler programsHandler = nullptr;
};

Start* theStart = nullptr;

// Qt ends a program where it finds no platform to start; but there is nobody who must have this one.
[[noreturn]] void stayInConstructor()
{
    qInstallMessageHandler(theStart->programsHandler);
    theStart->isDone.set_value(false);
    for (;;)
        std::this_thread::sleep_for(1h);
}

// Qt does not like to see a QApplication outside of main()'s thread; where there is one only, it does its work. What it
// says of platforms that do not start is said when one is missed.
void passOnOtherMessages(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (std::this_thread::get_id() != theStart->thread)
        return theStart->programsHandler(type, context, text);
    if (type == QtFatalMsg)
        stayInConstructor();
    if (!text.contains("QApplication was not created in the main() thread") &&
        qstrcmp(context.category, "qt.qpa.plugin"))
        theStart->programsHandler(type, context, text);
}

// Qt makes much of what it has when it first needs it, and what is made last goes first when the program ends. So the
// order of the end is set again behind events: ever more seldom, since little is new then.
class Application : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override
    {
        const std::unique_lock<std::recursive_timed_mutex> lock = working();
        const bool isHandled = QApplication::notify(receiver, event);
        constexpr double GROWTH = 1.02;
        if (++m_NumEvents >= m_Next) {
            m_Next = m_NumEvents * GROWTH;
            endProgramInOrder();
        }
        return isHandled;
    }

private:
    static std::unique_lock<std::recursive_timed_mutex> working()
    {
        return state().isInChild ? std::unique_lock<std::recursive_timed_mutex>() : std::unique_lock(state().working);
    }

    double m_NumEvents = 0;
    double m_Next = 0;
};

void serve(const QStringList& displayPlatforms)
{
    ignoreSignalsInThisThread();
    char name[] = "vireo";
    char option[] = "-platform";
    QByteArray platforms = (displayPlatforms + QStringList{"offscreen", "minimal"}).join(';').toLocal8Bit();
    char* arguments[] = {name, option, platforms.data(), nullptr};
    int numArguments = 3;
    theStart->thread = std::this_thread::get_id();
    theStart->programsHandler = qInstallMessageHandler(passOnOtherMessages);
    std::unique_lock making(state().working);
    Application application(numArguments, arguments);
    qInstallMessageHandler(theStart->programsHandler);
    QApplication::setQuitOnLastWindowClosed(false);
    endProgramInOrder();
    state().isBlind = !hasDisplay();
    making.unlock();
    theStart->isDone.set_value(true);
    if (FrontDoor::get()) // there is none, to be told to quit, where the program has ended meanwhile
        QApplication::exec();
}

} // namespace

namespace windowThread {

void start(const QStringList& displayPlatforms)
{
    const std::lock_guard<std::mutex> lock(state().mutex);
    if (state().thread.joinable() || state().hasStopped)
        return;
    theStart = new Start; // which stays: a message may still be on its way through it
    std::future<bool> isDone = theStart->isDone.get_future();
    state().thread = std::thread(serve, displayPlatforms);
    state().isRunning = isDone.get();
    if (state().isRunning)
        return;
    state().hasStopped = true;
    state().hasFailed = true;
    state().thread.detach();
}

bool isRunning()
{
    return state().isRunning;
}

bool isHere()
{
    return theStart && theStart->thread == std::this_thread::get_id();
}

bool hasFailed()
{
    return state().hasFailed;
}

bool holdForFork()
{
    constexpr auto LONGEST = 250ms; // a menu may be open, or an event wait for who forks
    return !state().isInChild && state().working.try_lock_for(LONGEST);
}

void releaseAfterFork()
{
    state().working.unlock();
}

void forgetInChild()
{
    state().isInChild = true;
}

void stop()
{
    std::thread thread;
    {
        const std::lock_guard<std::mutex> lock(state().mutex);
        state().hasStopped = true;
        state().isRunning = false;
        thread.swap(state().thread);
    }
    if (!thread.joinable())
        return;
    if (thread.get_id() == std::this_thread::get_id())
        return thread.detach();
    inbox::post([] { QCoreApplication::quit(); });
    thread.join(); // however long its last picture takes: Qt's end would pull the ground from under it
}

} // namespace windowThread

bool runInWindowThread(std::function<void()> work)
{
    if (FrontDoor::isHere())
        return runGuarded(work);
    // It is either begun or given up.
    const auto isClaimed = std::make_shared<std::atomic_flag>();
    auto promise = std::make_shared<std::promise<void>>();
    std::future<void> done = promise->get_future();
    const bool isPosted = inbox::post([isClaimed, work = std::move(work), promise = std::move(promise)] {
        if (!isClaimed->test_and_set())
            runGuarded(work);
        promise->set_value();
    });
    if (!isPosted || (done.wait_for(LONGEST_WAIT) != std::future_status::ready && !isClaimed->test_and_set()))
        return false;
    try {
        done.get();
        return true;
    } catch (const std::future_error&) {
        return false; // the window went first
    }
}

bool hasViewThread(const char* call)
{
    if (FrontDoor::get())
        return FrontDoor::canMakeViews() ||
               refuse(call, "the program has a QCoreApplication, where views need a QApplication");
    windowThread::start(displayPlatforms().names);
    return windowThread::isRunning() || (!isShowOff() && refuse(call, "Qt has no platform plugin that starts"));
}

bool hasWindowThread(const char* call)
{
    if (!FrontDoor::get() && displayPlatforms().names.empty())
        return refuse(call, displayPlatforms().whyNoneIs.c_str());
    if (!hasViewThread(call))
        return false;
    if (state().isBlind)
        return refuse(call, displayPlatforms().whyNoneIs.c_str());
    if (!windowState::isWanted()) {
        windowState::want();
        inbox::post([] { FrontDoor::get()->moveViewsIntoWindow(); });
    }
    return true;
}

} // namespace tavo
