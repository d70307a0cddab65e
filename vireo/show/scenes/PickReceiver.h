#pragma once

#include <functional>
#include <memory>

#include "tavo/base/debug/displayException.h"
#include "vireo/show/Picked.h"

namespace tavo {

// Whom a program has told what a person clicks.
struct PickReceiver
{
    using Callback = std::function<void(const Picked&)>;
    using Executor = std::function<void(std::function<void()>)>;

    Callback callback;
    Executor executor; // empty if the callback is called at once

    // Lives while it is called, and is called no more once nobody holds it. What it throws is reported.
    static void tell(const std::weak_ptr<const PickReceiver>& receiver, const Picked& picked)
    {
        const std::shared_ptr<const PickReceiver> held = receiver.lock();
        if (!held)
            return;
        runGuarded([&] {
            if (held->executor)
                held->executor([receiver, picked] { call(receiver, picked); });
            else
                held->callback(picked);
        });
    }

private:
    static void call(const std::weak_ptr<const PickReceiver>& receiver, const Picked& picked)
    {
        if (const std::shared_ptr<const PickReceiver> held = receiver.lock())
            runGuarded([&] { held->callback(picked); });
    }
};

} // namespace tavo
