#include "tavo/platform/displayWatch.h"

#include <mutex>
#include <set>

#include "tavo/platform/handles.h"

// clang-format off: last, because of its macros min and max
#include <X11/Xlibint.h>
// clang-format on

namespace tavo {

namespace {

struct WatchedDisplays
{
    std::mutex mutex;
    std::set<Display*> displays;
};

// Never destroyed, for displays that are closed while the process ends.
WatchedDisplays& watched()
{
    static auto& instance = *new WatchedDisplays;
    return instance;
}

int onClose(Display* display, XExtCodes*)
{
    {
        const std::scoped_lock lock(watched().mutex);
        watched().displays.erase(display);
    }
    forgetHandlesOf(display);
    return 0;
}

} // namespace

void watchXDisplay(Display* display)
{
    {
        const std::scoped_lock lock(watched().mutex);
        if (!watched().displays.insert(display).second)
            return;
    }
    if (const XExtCodes* codes = XAddExtension(display))
        XESetCloseDisplay(display, codes->extension, onClose);
}

} // namespace tavo
