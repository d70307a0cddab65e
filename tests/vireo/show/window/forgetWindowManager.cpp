#include "tests/vireo/show/window/forgetWindowManager.h"

#include <X11/Xlib.h>
#include <span>
#include <string>

namespace tavo {

void forgetWindowManager()
{
    Display* const display = XOpenDisplay(nullptr);
    if (!display)
        return;
    const Window root = DefaultRootWindow(display);
    int count = 0;
    Atom* const properties = XListProperties(display, root, &count);
    for (const Atom property : std::span(properties, static_cast<std::size_t>(count))) {
        char* const name = XGetAtomName(display, property);
        if (std::string(name).starts_with("_NET_"))
            XDeleteProperty(display, root, property);
        XFree(name);
    }
    if (properties)
        XFree(properties);
    XCloseDisplay(display);
}

} // namespace tavo
