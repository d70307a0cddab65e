#include "tavo/platform/XErrorTrap.h"

#include <algorithm>
#include <vector>

// clang-format off: last, because of its macros min and max
#include <X11/Xlibint.h>
// clang-format on

namespace tavo {

struct XErrorTrap::State
{
    explicit State(Display* display);

    void waitForErrors() const;

    // Runs under the display's lock, on whichever thread reads the error.
    static Bool keepError(Display* display, xReply* reply, char*, int, XPointer state);

    Display* m_Display;
    // The trap keeps the errors of this request and all later ones.
    unsigned long m_FirstRequest;
    std::vector<XID> m_FailedResources;
    _XAsyncHandler m_Handler;
};

XErrorTrap::State::State(Display* display)
    : m_Display(display)
    , m_FirstRequest(XNextRequest(display))
    , m_Handler{nullptr, keepError, reinterpret_cast<XPointer>(this)}
{}

Bool XErrorTrap::State::keepError(Display* display, xReply* reply, char*, int, XPointer state)
{
    auto& trap = *reinterpret_cast<State*>(state);
    if (reply->generic.type != X_Error || display->last_request_read < trap.m_FirstRequest)
        return False;
    trap.m_FailedResources.push_back(reply->error.resourceID);
    return True;
}

void XErrorTrap::State::waitForErrors() const
{
    const unsigned long lastRequest = XNextRequest(m_Display) - 1;
    if (lastRequest != m_FirstRequest && XLastKnownRequestProcessed(m_Display) < lastRequest)
        XSync(m_Display, False);
}

XErrorTrap::XErrorTrap(Display* display)
    : m_State(std::make_unique<State>(display))
{
    LockDisplay(display);
    m_State->m_Handler.next = display->async_handlers;
    display->async_handlers = &m_State->m_Handler;
    UnlockDisplay(display);
    // The GL library makes up errors of its own under the number of the last request, which has to be the trap's.
    XNoOp(display);
}

XErrorTrap::~XErrorTrap()
{
    Display* display = m_State->m_Display;
    m_State->waitForErrors();
    LockDisplay(display);
    DeqAsyncHandler(display, &m_State->m_Handler);
    UnlockDisplay(display);
}

bool XErrorTrap::hasErrorOn(XID resource)
{
    m_State->waitForErrors();
    LockDisplay(m_State->m_Display);
    const auto& failed = m_State->m_FailedResources;
    const bool found = std::find(failed.begin(), failed.end(), resource) != failed.end();
    UnlockDisplay(m_State->m_Display);
    return found;
}

} // namespace tavo
