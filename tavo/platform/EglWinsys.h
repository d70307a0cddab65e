#pragma once

#include "tavo/platform/Winsys.h"

namespace tavo {

// Contexts current through EGL, with surfaces or without. EGL itself refuses what has been destroyed or terminated.
class EglWinsys : public Winsys
{
public:
    static const EglWinsys& instance();

    NativeContext makeNative(void* display, void* context) const;
    NativeDrawable makeNative(void* display, void* draw, void* read) const;

    std::optional<NativeContext> getCurrentContext() const override;
    NativeDrawable getCurrentDrawable() const override;
    bool makeCurrent(const NativeDrawable& drawable, const NativeContext& context) const override;
    bool release() const override;
    PROC getProcAddress(const char* name) const override;
    int getConfig(const NativeContext& context) const override;
    std::optional<NativeDrawable> makePbuffer(const NativeContext& context, int width, int height) const override;
    void destroyPbuffer(const NativeDrawable& pbuffer) const override;
    // EGL displays live as long as the process.
    void watchDisplay(void*) const override {}
};

} // namespace tavo
