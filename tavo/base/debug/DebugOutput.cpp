#include "tavo/base/debug/DebugOutput.h"

#include <QApplication>
#include <QPointer>
#include <QThread>
#include <cstdio>
#include <mutex>
#include <sstream>

#include "tavo/base/debug/DebugWindow.h"
#include "tavo/base/debug/EventDisplayer.h"
#include "tavo/base/debug/displayException.h"

namespace tavo {

constinit DebugOutput debugOutput;

namespace {

constexpr std::size_t KEPT_TEXT = 1 << 20;

// The debug output's state lives on the heap and is never destroyed, so that static initialisers and destructors
// anywhere can write to it.
struct State
{
    std::mutex mutex;
    std::string text;
    QPointer<DebugWindow> window;
};

State& state()
{
    static State* const theState = new State;
    return *theState;
}

// Keeps the newest half when the text grows too long, from the start of a line on.
void keep(std::string& kept, const std::string& text)
{
    kept += text;
    if (kept.size() <= KEPT_TEXT)
        return;
    kept.erase(0, kept.size() - KEPT_TEXT / 2);
    kept.erase(0, kept.find('\n') + 1);
}

void deleteWindow()
{
    DebugWindow* window = nullptr;
    {
        const std::lock_guard lock(state().mutex);
        window = state().window;
        state().window = nullptr;
    }
    delete window;
}

// Opens the window on the first call. It goes before the QApplication does.
DebugWindow& openedWindow()
{
    if (!state().window) {
        auto* window = new DebugWindow;
        window->appendText(debugOutput.getText());
        qRemovePostRoutine(deleteWindow);
        qAddPostRoutine(deleteWindow);
        const std::lock_guard lock(state().mutex);
        state().window = window;
    }
    return *state().window;
}

bool canShowEvents()
{
    const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!application || QCoreApplication::closingDown()) {
        static const bool said =
            std::fputs("tavo: events sent to the debug output are dropped: there is no QApplication\n", stderr) >= 0;
        static_cast<void>(said);
        return false;
    }
    if (QThread::currentThread() != application->thread()) {
        warning("DebugOutput::displayEvent() - events can only be sent from the thread of the QApplication.");
        return false;
    }
    return true;
}

} // namespace

DebugOutput& DebugOutput::operator<<(const std::string& text)
{
    // Before the lock is taken: on Windows a program outlives a reference to nowhere, which must not leave it locked.
    const std::string copy = text;
    DebugWindow* window = nullptr;
    {
        const std::lock_guard lock(state().mutex);
        keep(state().text, copy);
        window = state().window;
        if (window && window->thread() != QThread::currentThread()) {
            // Posted while the window cannot go away.
            QMetaObject::invokeMethod(
                window, [window, copy] { window->appendText(copy); }, Qt::QueuedConnection);
            return *this;
        }
    }
    if (window)
        window->appendText(copy);
    else
        std::fputs(copy.c_str(), stderr);
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
        EventDisplayer& displayer = openedWindow().getDisplayer(displayerClass, name);
        delivered = true;
        displayer.displayEvent(event, name.c_str());
    });
    return delivered;
}

DebugWindow* DebugOutput::getWindow() const
{
    return state().window;
}

std::string DebugOutput::getText() const
{
    const std::lock_guard lock(state().mutex);
    return state().text;
}

} // namespace tavo
