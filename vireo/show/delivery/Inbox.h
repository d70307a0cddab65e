#pragma once

#include <QPointer>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "vireo/show/delivery/ViewUpdate.h"

class QObject;

namespace tavo {

// What has been sent to one view since it was shown last.
struct Pending
{
    bool isRemoved = false; // the view goes first
    std::unique_ptr<ViewUpdate> update;

    bool isEmpty() const { return !isRemoved && !update; }
    void merge(Pending& newer);
    Replaced replaced() const;
};

// A name, and the view that bears it. Handles keep it; the inbox forgets it some time after the view was removed and
// the last handle has gone, or as soon as a view of another kind wants a name under which there is nothing.
struct ViewSlot
{
    ViewSlot(std::string viewName, ViewKind viewKind)
        : name(std::move(viewName))
        , kind(viewKind)
    {}

    const std::string name;
    const ViewKind kind;
    // Guarded by the inbox.
    Pending pending;
    std::unique_ptr<ViewUpdate> next; // what the next update is merged into
    bool isShown = false;
    bool isSuperseded = false; // by a view of another kind: what its handles send is refused

    bool hasAnything() const { return pending.update || (isShown && !pending.isRemoved); }
};

using ViewSlotPointer = std::shared_ptr<ViewSlot>;

// What one statement sends.
struct Batch
{
    struct Part
    {
        ViewSlotPointer slot;
        Pending pending;
        std::set<std::string, std::less<>> refused; // items that the statement could not send
    };

    // What the statement has sent to a view so far.
    Part& partOf(const ViewSlotPointer& slot);
    Pending& operator[](const ViewSlotPointer& slot) { return partOf(slot).pending; }

    int depth = 0; // of statements within statements
    std::vector<Part> parts;
};

// Where threads leave what they send, and the window's thread finds it: for each view the newest of everything, so that
// what is not shown in time is replaced and takes no memory. There is one inbox; it is never destroyed, so that static
// initialisers and destructors may send.
namespace inbox {

// The slot of a view's name, made by the first call; null, with a line in the log, if a view of another kind has the
// name and shows something, or is about to.
ViewSlotPointer findSlot(ViewKind kind, const std::string& name);

// The same without making one.
ViewSlotPointer findSlot(const std::string& name);

// All slots that have anything to show.
std::vector<ViewSlotPointer> allSlots();

// Whether anything is shown or waits to be; whether anything waits to be.
bool hasAnything();
bool hasWaiting();

// What waits for a view, and goes on waiting; null if nothing does.
std::unique_ptr<ViewUpdate> copyOfWaiting(const std::string& name);

// Merges what a statement sent into what is waiting, all of it before anything is taken, and wakes the receiver.
void deliver(Batch& batch);

// Takes all that is waiting. The slots are shown from now on, or, where they were removed and nothing came after it, no
// more.
std::vector<Batch::Part> take();

// What of the views that are shown is replaced by what is waiting.
using Room = std::vector<std::pair<ViewSlotPointer, Replaced>>;

// Takes all that is waiting if this replaces what there is room for. Otherwise says for what room is needed, and takes
// nothing.
std::optional<std::vector<Batch::Part>> takeInto(Room& room);

// Who is told, by an event, to take what is waiting: once until it does. Null while there is nobody. The receiver
// withdraws before it goes.
void setReceiver(QObject* receiver, std::function<void()> whenAnythingWaits);

// Has the receiver's thread run this, in the order of the calls. False if there is no receiver; dropped if it goes
// first.
bool post(std::function<void()> work);

// A fork while another thread holds the lock would leave it locked in the child.
void lockForFork();
void unlockInParent();
void unlockInChild();

} // namespace inbox

} // namespace tavo
