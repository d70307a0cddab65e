#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <tuple>

#include "tavo/platform/wgl.h"

namespace tavo {

class Winsys;

// What tells one native context from another.
struct NativeContext
{
    const Winsys* winsys;
    void* display;
    void* context;
    // A number that no later context at the same address has; 0 if the window system has none, or if the context has
    // been destroyed and only remains because it is still current.
    unsigned long serial = 0;

    // By where the context lives; the serial is left to isStill().
    auto operator<=>(const NativeContext& other) const
    {
        return std::tie(winsys, display, context) <=> std::tie(other.winsys, other.display, other.context);
    }

    // Whether what now lives at this address is this context, and not one made after it was destroyed.
    bool isStill(const NativeContext& now) const { return now.serial == 0 || serial == now.serial; }
};

// What tells one drawable from another: X resources with GLX, surfaces with EGL, 0 for no surface.
struct NativeDrawable
{
    const Winsys* winsys;
    void* display;
    std::uintptr_t draw;
    std::uintptr_t read;

    auto operator<=>(const NativeDrawable& other) const
    {
        return std::tie(winsys, display, draw, read) <=> std::tie(other.winsys, other.display, other.draw, other.read);
    }

    bool isStill(const NativeDrawable&) const { return true; }
};

// One of the ways to make a context current. What is current is so on the calling thread.
class Winsys
{
public:
    virtual std::optional<NativeContext> getCurrentContext() const = 0;
    // A context of this window system must be current.
    virtual NativeDrawable getCurrentDrawable() const = 0;

    // Both must be of this window system, and of one display. Nothing of another display may be current.
    virtual bool makeCurrent(const NativeDrawable& drawable, const NativeContext& context) const = 0;
    // Releases the context that is current through this window system.
    virtual bool release() const = 0;

    virtual PROC getProcAddress(const char* name) const = 0;

    // The number of the configuration that a context was made with; 0 if it was made without.
    virtual int getConfig(const NativeContext& context) const = 0;
    // A drawable off screen for such contexts; nothing if the driver makes none.
    virtual std::optional<NativeDrawable> makePbuffer(const NativeContext& context, int width, int height) const = 0;
    virtual void destroyPbuffer(const NativeDrawable& pbuffer) const = 0;

    // Makes sure that forgetHandlesOf() is called when the display is closed.
    virtual void watchDisplay(void* display) const = 0;

protected:
    ~Winsys() = default;
};

} // namespace tavo
