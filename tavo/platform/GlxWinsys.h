#pragma once

#include "tavo/platform/Winsys.h"

struct _XDisplay;       // NOLINT(bugprone-reserved-identifier): Xlib's name
struct __GLXcontextRec; // NOLINT(bugprone-reserved-identifier): GLX's name

namespace tavo {

// Contexts current through GLX. No X error of a failing call reaches the application's error handler.
class GlxWinsys : public Winsys
{
public:
    static const GlxWinsys& instance();

    NativeContext makeNative(_XDisplay* display, __GLXcontextRec* context) const;
    NativeDrawable makeNative(_XDisplay* display, unsigned long draw, unsigned long read) const;

    std::optional<NativeContext> getCurrentContext() const override;
    NativeDrawable getCurrentDrawable() const override;
    bool makeCurrent(const NativeDrawable& drawable, const NativeContext& context) const override;
    bool release() const override;
    PROC getProcAddress(const char* name) const override;
    int getConfig(const NativeContext& context) const override;
    std::optional<NativeDrawable> makePbuffer(const NativeContext& context, int width, int height) const override;
    void destroyPbuffer(const NativeDrawable& pbuffer) const override;
    void watchDisplay(void* display) const override;
};

} // namespace tavo
