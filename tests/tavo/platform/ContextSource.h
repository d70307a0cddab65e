#pragma once

#include <memory>

namespace tavo {

// Two contexts, 0 and 1, that share their objects, made by one of the ways in which an application may: with
// window-system calls, or by Qt.
class ContextSource
{
public:
    ContextSource() = default;
    virtual ~ContextSource() = default;
    ContextSource(const ContextSource&) = delete;
    ContextSource& operator=(const ContextSource&) = delete;

    // Without any WGL call.
    virtual bool makeCurrent(int index) = 0;
    // Whether the contexts are made current with surfaces, each with its own.
    virtual bool hasSurfaces() const = 0;
};

// A way to make contexts. Where the machine offers what it needs, make() yields them, else null.
struct ContextKind
{
    const char* name;
    const char* needs;
    std::unique_ptr<ContextSource> (*make)();
};

// The native context that is current on this thread, by the window systems' own account; null if none is.
const void* getNativeCurrentContext();

// Whether there is an X server where DISPLAY says.
bool hasXServer();

} // namespace tavo
