#include "vireo/show/delivery/WindowThread.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

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

// What the window's thread is at while it handles events, in which nobody forks if it can be helped. While it waits for
// the next one it is at nothing, however deep it is in menus and dialogs.
class Work
{
public:
    // By the window's thread; work within work ends before that does.
    void begin()
    {
        resume();
        if (m_Depth++ == 0)
            m_Mutex.lock();
    }
    void end()
    {
        if (--m_Depth == 0 && !std::exchange(m_IsPaused, false))
            m_Mutex.unlock();
    }
    void pause()
    {
        if (m_Depth > 0 && !std::exchange(m_IsPaused, true))
            m_Mutex.unlock();
    }
    void resume()
    {
        if (std::exchange(m_IsPaused, false))
            m_Mutex.lock();
    }

    // By others.
    bool prevent(std::chrono::milliseconds longestWait) { return m_Mutex.try_lock_for(longestWait); }
    void allow() { m_Mutex.unlock(); }

private:
    std::timed_mutex m_Mutex;
    int m_Depth = 0;
    bool m_IsPaused = false;
};

class PieceOfWork
{
public:
    explicit PieceOfWork(Work& work)
        : m_Work(work)
    {
        m_Work.begin();
    }
    ~PieceOfWork() { m_Work.end(); }
    PieceOfWork(const PieceOfWork&) = delete;
    PieceOfWork& operator=(const PieceOfWork&) = delete;

private:
    Work& m_Work;
};

struct State
{
    std::mutex mutex;
    std::thread thread;
    bool hasStopped = false;
    std::atomic<bool> hasFailed{false};
    std::atomic<bool> isBlind{false};   // it has no windows that can be seen
    std::atomic<bool> isRunning{false}; // for children of forks, to which the mutex may have come locked
    Work work;
    std::atomic<bool> isInChild{false}; // of a fork, where the work of the parent's thread never ends
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
        std::optional<PieceOfWork> work;
        if (!state().isInChild)
            work.emplace(state().work);
        const bool isHandled = QApplication::notify(receiver, event);
        constexpr double GROWTH = 1.02;
        if (++m_NumEvents >= m_Next) {
            m_Next = m_NumEvents * GROWTH;
            endProgramInOrder();
        }
        return isHandled;
    }

private:
    double m_NumEvents = 0;
    double m_Next = 0;
};

void noteWhenItWaits()
{
    const QAbstractEventDispatcher* const dispatcher = QAbstractEventDispatcher::instance();
    QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, [] { state().work.pause(); });
    QObject::connect(dispatcher, &QAbstractEventDispatcher::awake, [] { state().work.resume(); });
}

void serve(const QStringList& displayPlatforms)
{
    leaveSignalsToProgram();
    char name[] = "vireo";
    char option[] = "-platform";
    QByteArray platforms = (displayPlatforms + QStringList{"offscreen", "minimal"}).join(';').toLocal8Bit();
    char* arguments[] = {name, option, platforms.data(), nullptr};
    int numArguments = 3;
    theStart->thread = std::this_thread::get_id();
    theStart->programsHandler = qInstallMessageHandler(passOnOtherMessages);
    std::optional<PieceOfWork> making(state().work);
    Application application(numArguments, arguments);
    qInstallMessageHandler(theStart->programsHandler);
    QApplication::setQuitOnLastWindowClosed(false);
    endProgramInOrder();
    state().isBlind = !hasDisplay();
    noteWhenItWaits();
    making.reset();
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
    constexpr auto LONGEST = 250ms; // an event may wait for who forks
    return !state().isInChild && !isHere() && state().work.prevent(LONGEST);
}

void releaseAfterFork()
{
    state().work.allow();
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
