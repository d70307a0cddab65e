#include "vireo/show/delivery/Inbox.h"

#include <QCoreApplication>
#include <QObject>
#include <algorithm>
#include <map>
#include <mutex>
#include <utility>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/text/printable.h"
#include "tavo/base/threads/WindowFirstMutex.h"
#include "vireo/show/delivery/sayOnce.h"

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

Replaced Pending::replaced() const
{
    if (isRemoved)
        return {true, {}};
    return update ? update->replaced() : Replaced();
}

Batch::Part& Batch::partOf(const ViewSlotPointer& slot)
{
    const auto found =
        std::find_if(parts.begin(), parts.end(), [&slot](const Part& part) { return part.slot == slot; });
    return found != parts.end() ? *found : parts.emplace_back(Part{slot, {}, {}});
}

namespace inbox {

namespace {

struct State
{
    WindowFirstMutex mutex;
    std::map<std::string, ViewSlotPointer> views;
    std::size_t sweepSize = 64;
    std::vector<ViewSlotPointer> waiting;
    QObject* receiver = nullptr;
    std::function<void()> whenAnythingWaits;
    bool isReceiverTold = false; // of what waits, until it takes it
    bool hasNews = false;        // to tell it of, when it wakes
    std::vector<std::function<void()>> work;
    bool isReceiverWoken = false;
};

State& state()
{
    static State* const theState = new State;
    return *theState;
}

using Lock = std::lock_guard<WindowFirstMutex>;

// Forgets the names of views that are no more, whenever the names have doubled. With the state locked.
void sweep()
{
    if (state().views.size() < state().sweepSize)
        return;
    std::erase_if(state().views, [](const auto& entry) {
        const ViewSlotPointer& slot = entry.second;
        return slot.use_count() == 1 && !slot->isShown && slot->pending.isEmpty();
    });
    state().sweepSize = 2 * state().views.size() + 64;
}

// In the receiver's thread. What threads hand over is in the state alone; the event only says that something is there.
void serveReceiver()
{
    std::function<void()> whenAnythingWaits;
    std::vector<std::function<void()>> work;
    {
        state().mutex.lockFirst();
        const Lock lock(state().mutex, std::adopt_lock);
        state().isReceiverWoken = false;
        if (std::exchange(state().hasNews, false))
            whenAnythingWaits = state().whenAnythingWaits;
        work.swap(state().work);
    }
    if (whenAnythingWaits)
        whenAnythingWaits();
    for (const std::function<void()>& piece : work)
        runGuarded(piece);
}

// With the state locked: the receiver withdraws under the same lock.
void wakeReceiver()
{
    if (!std::exchange(state().isReceiverWoken, true))
        QMetaObject::invokeMethod(
            state().receiver, [] { serveReceiver(); }, Qt::QueuedConnection);
}

void tellReceiver()
{
    if (!state().receiver || state().waiting.empty() || std::exchange(state().isReceiverTold, true))
        return;
    state().hasNews = true;
    wakeReceiver();
}

// With the state locked.
std::vector<Batch::Part> takeAll()
{
    std::vector<Batch::Part> taken;
    state().isReceiverTold = false;
    for (ViewSlotPointer& slot : state().waiting) {
        slot->isShown = slot->pending.update != nullptr || (slot->isShown && !slot->pending.isRemoved);
        Pending pending = std::exchange(slot->pending, {});
        if (pending.update)
            slot->next = pending.update->forTheNext();
        taken.push_back({std::move(slot), std::move(pending), {}});
    }
    state().waiting.clear();
    return taken;
}

void refuseOtherKind(const std::string& name)
{
    sayOnce("\"" + printable(name, 100) + "\" is a view of another kind: what is sent under this name is not shown");
}

// False if it belongs to no view any more. With the state locked.
bool isDelivered(const ViewSlotPointer& slot, Pending& pending)
{
    if (slot->isSuperseded)
        return !pending.update;
    if (pending.isEmpty())
        return true;
    if (slot->pending.isEmpty())
        state().waiting.push_back(slot);
    if (!slot->pending.update && !pending.isRemoved)
        slot->pending.update = std::move(slot->next);
    slot->next.reset();
    slot->pending.merge(pending);
    return true;
}

} // namespace

ViewSlotPointer findSlot(ViewKind kind, const std::string& name)
{
    ViewSlotPointer slot;
    {
        const Lock lock(state().mutex);
        sweep();
        ViewSlotPointer& kept = state().views[name];
        if (kept && kept->kind != kind && !kept->hasAnything()) {
            kept->isSuperseded = true;
            kept = nullptr;
        }
        if (!kept)
            kept = std::make_shared<ViewSlot>(name, kind);
        slot = kept;
    }
    if (slot->kind == kind)
        return slot;
    refuseOtherKind(name);
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
        if (slot->hasAnything())
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
    return std::any_of(state().waiting.begin(), state().waiting.end(),
        [](const ViewSlotPointer& slot) { return slot->pending.update != nullptr; });
}

std::unique_ptr<ViewUpdate> copyOfWaiting(const std::string& name)
{
    const Lock lock(state().mutex);
    const auto found = state().views.find(name);
    const bool isWaiting = found != state().views.end() && found->second->pending.update;
    return isWaiting ? found->second->pending.update->copy() : nullptr;
}

void deliver(Batch& batch)
{
    std::vector<ViewSlotPointer> refused;
    {
        const Lock lock(state().mutex);
        for (Batch::Part& part : batch.parts)
            if (!isDelivered(part.slot, part.pending))
                refused.push_back(part.slot);
        tellReceiver();
    }
    for (const ViewSlotPointer& slot : refused)
        refuseOtherKind(slot->name);
}

std::vector<Batch::Part> take()
{
    state().mutex.lockFirst();
    const Lock lock(state().mutex, std::adopt_lock);
    return takeAll();
}

std::optional<std::vector<Batch::Part>> takeInto(Room& room)
{
    Room needed; // and then what there was
    state().mutex.lockFirst();
    const Lock lock(state().mutex, std::adopt_lock);
    for (const ViewSlotPointer& slot : state().waiting)
        if (slot->isShown)
            needed.emplace_back(slot, slot->pending.replaced());
    if (needed == room)
        return takeAll();
    room.swap(needed);
    return std::nullopt;
}

void setReceiver(QObject* receiver, std::function<void()> whenAnythingWaits)
{
    std::vector<std::function<void()>> dropped;
    const Lock lock(state().mutex);
    dropped.swap(state().work);
    state().receiver = receiver;
    state().whenAnythingWaits = std::move(whenAnythingWaits);
    state().isReceiverTold = state().hasNews = state().isReceiverWoken = false;
    tellReceiver();
}

bool post(std::function<void()> work)
{
    const Lock lock(state().mutex);
    if (!state().receiver)
        return false;
    state().work.push_back(std::move(work));
    wakeReceiver();
    return true;
}

void lockForFork()
{
    state().mutex.lock();
}

void unlockInParent()
{
    state().mutex.unlock();
}

void unlockInChild()
{
    state().mutex.unlockInChild();
}

} // namespace inbox

} // namespace tavo
