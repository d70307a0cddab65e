#include "vireo/show/delivery/windowState.h"

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace tavo::windowState {

namespace {

struct State
{
    std::mutex mutex;
    std::condition_variable changed;
    std::atomic<bool> isOpen{false};
    std::atomic<bool> wasClosed{false};
    std::atomic<bool> isWanted{false};
};

State& state()
{
    static State* const theState = new State; // threads may wait while the program ends
    return *theState;
}

} // namespace

void setOpen(bool isOpen)
{
    const std::lock_guard<std::mutex> lock(state().mutex);
    state().wasClosed = !isOpen && (state().isOpen || state().wasClosed);
    state().isOpen = isOpen;
    state().changed.notify_all();
}

bool isOpen() noexcept
{
    return state().isOpen.load(std::memory_order_relaxed);
}

bool wasClosed() noexcept
{
    return state().wasClosed.load(std::memory_order_relaxed);
}

void want() noexcept
{
    state().isWanted = true;
}

bool isWanted() noexcept
{
    return state().isWanted;
}

void waitUntilClosed()
{
    std::unique_lock<std::mutex> lock(state().mutex);
    state().changed.wait(lock, [] { return !state().isOpen; });
}

} // namespace tavo::windowState
