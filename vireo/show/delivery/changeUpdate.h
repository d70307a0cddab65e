#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "tavo/base/debug/displayException.h"
#include "vireo/show/delivery/Inbox.h"
#include "vireo/show/delivery/currentBatch.h"

namespace tavo {

// What the operations of all handles do.

// A call as a line of the log names it: plot("pressure").curve("inlet").
std::string callOf(const char* view, const ViewSlotPointer& slot, const char* operation, std::string_view name);

// The same with other arguments than a name.
std::string callWith(
    const char* view, const ViewSlotPointer& slot, const char* operation, const std::string& arguments);

// Whether anything may come of a call. Numbers of calls that nothing comes of are empty.
bool isSent(const ViewSlotPointer& slot) noexcept;

// Whether the statement has tried in vain to send an item of a view: then further numbers that it sends for the item
// are left out, too, since they do not belong to what is still shown. Both are for calls of which something may come.
void noteWhetherRefused(const ViewSlotPointer& slot, std::string_view item, bool isRefused);
bool isRefused(const ViewSlotPointer& slot, std::string_view item) noexcept;

// Has `change` change what the statement sends to the view, an update of that class. Nothing escapes.
template <typename Update, typename Change>
void changeUpdate(const ViewSlotPointer& slot, Change&& change) noexcept
{
    Batch* const batch = currentBatch();
    if (!slot || !batch)
        return;
    runGuarded([&] {
        std::unique_ptr<ViewUpdate>& update = (*batch)[slot].update;
        if (!update)
            update = std::make_unique<Update>();
        change(static_cast<Update&>(*update));
    });
}

} // namespace tavo
