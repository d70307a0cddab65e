#include "vireo/show/delivery/WindowThread.h"

#include <QApplication>
#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <thread>

#include "tavo/base/debug/displayException.h"
#include "vireo/show/delivery/FrontDoor.h"
#include "vireo/show/delivery/endOfProgram.h"
#include "vireo/show/delivery/process.h"
#include "vireo/show/delivery/sayOnce.h"

namespace tavo {

namespace {

using namespace std::chrono_literals;

constexpr auto LONGEST_WAIT = 5s;

struct State
{
    std::mutex mutex;
    std::thread thread;
    bool hasStopped = false;
    std::atomic<bool> isRunning{false}; // for children of forks, to which the mutex may have come locked
};

State& state()
{
    static State* const theState = new State;
    return *theState;
}

QtMessageHandler theProgramsHandler = nullptr;

// Qt does not like to see a QApplication outside of main()'s thread; where there is one only, it does its work.
void passOnOtherMessages(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (!text.contains("QApplication was not created in the main() thread"))
        theProgramsHandler(type, context, text);
}

// Qt makes much of what it has when it first needs it, and what is made last goes first when the program ends. So the
// order of the end is set again behind events: ever more seldom, since little is new then.
class Application : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override
    {
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

void serve(std::string platform, std::promise<void> started)
{
    ignoreSignalsInThisThread();
    char name[] = "vireo";
    char option[] = "-platform";
    char* arguments[] = {name, option, platform.data(), nullptr};
    int numArguments = 3;
    theProgramsHandler = qInstallMessageHandler(passOnOtherMessages);
    Application application(numArguments, arguments);
    qInstallMessageHandler(theProgramsHandler);
    QApplication::setQuitOnLastWindowClosed(false);
    endProgramInOrder();
    started.set_value();
    QApplication::exec();
}

// Where windows of our own can be opened; looked for once.
const std::string& ownPlatform()
{
    static const std::string platform = displayPlatform();
    return platform;
}

} // namespace

namespace windowThread {

void start(const std::string& platform)
{
    const std::lock_guard<std::mutex> lock(state().mutex);
    if (state().thread.joinable() || state().hasStopped)
        return;
    std::promise<void> started;
    std::future<void> hasStarted = started.get_future();
    state().thread = std::thread(serve, platform, std::move(started));
    hasStarted.wait();
    state().isRunning = true;
}

bool isRunning()
{
    return state().isRunning;
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
    windowThread::start(ownPlatform().empty() ? "offscreen" : ownPlatform());
    return windowThread::isRunning();
}

bool hasWindowThread(const char* call)
{
    if (!FrontDoor::get() && ownPlatform().empty())
        return refuse(call, NO_DISPLAY);
    return hasViewThread(call);
}

} // namespace tavo
