#pragma once

#include <memory>

struct _XDisplay; // NOLINT(bugprone-reserved-identifier): Xlib's name

namespace tavo {

// Keeps X errors of the requests made on a display while the trap lives from the application's error handler, which
// ends the process unless it was replaced. It belongs to one display and leaves the process-wide handler alone, so
// traps of several threads do not disturb each other; errors of another thread's requests on the same display are kept
// back too.
//
// Asks nothing of the X server unless requests were made whose fate is not known yet.
class XErrorTrap
{
public:
    explicit XErrorTrap(_XDisplay* display);
    ~XErrorTrap();
    XErrorTrap(const XErrorTrap&) = delete;
    XErrorTrap& operator=(const XErrorTrap&) = delete;

    // Whether a request made so far failed because of this X resource.
    bool hasErrorOn(unsigned long resource);

private:
    struct State;
    std::unique_ptr<State> m_State;
};

} // namespace tavo
