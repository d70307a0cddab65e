#include "vireo/show/delivery/Inbox.h"

#include <QCoreApplication>
#include <QObject>
#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <utility>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/text/printable.h"

namespace tavo {

void Pending::merge(Pending& newer)
{
    if (newer.isRemoved) {
        std::swap(update, newer.update);
        isRemoved = true;
    } else if (update && newer.update) {
        update->merge(*newer.update);
    } else if (newer.update) {
        update = std::move(newer.update);
    }
}

Pending& Batch::operator[](const ViewSlotPointer& slot)
{
    const auto found =
        std::find_if(parts.begin(), parts.end(), [&slot](const Part& part) { return part.slot == slot; });
    if (found != parts.end())
        return found->pending;
    return parts.emplace_back(Part{slot, {}}).pending;
}

namespace inbox {

namespace {

struct State
{
    std::mutex mutex;
    std::map<std::string, ViewSlotPointer> views;
    std::vector<ViewSlotPointer> waiting;
    QObject* receiver = nullptr;
    std::function<void()> whenAnythingWaits;
    bool isReceiverTold = false;
};

State& state()
{
    static State* const theState = new State;
    return *theState;
}

using Lock = std::lock_guard<std::mutex>;

// With the state locked: the receiver withdraws under the same lock.
void tellReceiver()
{
    if (state().receiver && !state().waiting.empty() && !std::exchange(state().isReceiverTold, true))
        QMetaObject::invokeMethod(state().receiver, state().whenAnythingWaits, Qt::QueuedConnection);
}

} // namespace

ViewSlotPointer findSlot(ViewKind kind, const std::string& name)
{
    ViewSlotPointer slot;
    {
        const Lock lock(state().mutex);
        ViewSlotPointer& kept = state().views[name];
        if (!kept)
            kept = std::make_shared<ViewSlot>(name, kind);
        slot = kept;
    }
    if (slot->kind == kind)
        return slot;
    warning(
        "\"" + printable(name, 100) + "\" is a view of another kind: what is sent to it under this name is not shown.");
    return nullptr;
}

ViewSlotPointer findSlot(const std::string& name)
{
    const Lock lock(state().mutex);
    const auto found = state().views.find(name);
    return found != state().views.end() ? found->second : nullptr;
}

std::vector<ViewSlotPointer> allSlots()
{
    const Lock lock(state().mutex);
    std::vector<ViewSlotPointer> views;
    for (const auto& [name, slot] : state().views)
        if (slot->isShown || !slot->pending.isEmpty())
            views.push_back(slot);
    return views;
}

bool hasAnything()
{
    return !allSlots().empty();
}

bool hasWaiting()
{
    const Lock lock(state().mutex);
    return !state().waiting.empty();
}

void deliver(Batch& batch)
{
    const Lock lock(state().mutex);
    for (auto& [slot, pending] : batch.parts) {
        if (pending.isEmpty())
            continue;
        if (slot->pending.isEmpty())
            state().waiting.push_back(slot);
        slot->pending.merge(pending);
    }
    tellReceiver();
}

std::vector<Batch::Part> take()
{
    std::vector<Batch::Part> taken;
    const Lock lock(state().mutex);
    state().isReceiverTold = false;
    for (ViewSlotPointer& slot : state().waiting) {
        slot->isShown = slot->pending.update != nullptr || (slot->isShown && !slot->pending.isRemoved);
        Pending pending = std::exchange(slot->pending, {});
        constexpr int OURS = 2; // in the table, and among those that wait
        if (!slot->isShown && slot.use_count() == OURS)
            state().views.erase(slot->name);
        taken.push_back({std::move(slot), std::move(pending)});
    }
    state().waiting.clear();
    return taken;
}

void setReceiver(QObject* receiver, std::function<void()> whenAnythingWaits)
{
    const Lock lock(state().mutex);
    state().receiver = receiver;
    state().whenAnythingWaits = std::move(whenAnythingWaits);
    state().isReceiverTold = false;
    tellReceiver();
}

bool post(std::function<void()> work)
{
    const Lock lock(state().mutex);
    if (!state().receiver)
        return false;
    return QMetaObject::invokeMethod(state().receiver, std::move(work), Qt::QueuedConnection);
}

void lockForFork()
{
    state().mutex.lock();
}

void unlockAfterFork()
{
    state().mutex.unlock();
}

} // namespace inbox

} // namespace tavo
