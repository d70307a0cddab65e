#pragma once

#include "tests/tavo/platform/ContextSource.h"

#include <memory>
#include <vector>

struct _XDisplay;       // NOLINT(bugprone-reserved-identifier): Xlib's name
struct __GLXcontextRec; // NOLINT(bugprone-reserved-identifier): GLX's name

namespace vireo_test {

// A connection to the X server and what is made over it, by Xlib and GLX alone. All of it goes with the object, unless it
// has been destroyed before.
class GlxDisplay
{
public:
    // Null if there is no X server with GLX.
    static std::unique_ptr<GlxDisplay> open();
    ~GlxDisplay();
    GlxDisplay(const GlxDisplay&) = delete;
    GlxDisplay& operator=(const GlxDisplay&) = delete;

    _XDisplay* getNative() const { return m_Display; }

    unsigned long makeWindow();
    unsigned long makePbuffer();
    // Of version 3.0 or later, so that it can do without a drawable.
    __GLXcontextRec* makeContext(__GLXcontextRec* sharing = nullptr);

    void destroyWindow(unsigned long window);
    void destroyContext(__GLXcontextRec* context);

private:
    struct Config;
    GlxDisplay(_XDisplay* display, std::unique_ptr<Config> config);

    _XDisplay* m_Display;
    std::unique_ptr<Config> m_Config;
    std::vector<__GLXcontextRec*> m_Contexts;
};

// Counts the X errors that reach the application's handler while it lives.
class XErrorCounter
{
public:
    XErrorCounter();
    ~XErrorCounter();
    XErrorCounter(const XErrorCounter&) = delete;
    XErrorCounter& operator=(const XErrorCounter&) = delete;

    int getCount() const;

private:
    int (*m_Previous)(_XDisplay*, struct XErrorEvent_*);
};

std::unique_ptr<ContextSource> makeGlxWindowContexts();
std::unique_ptr<ContextSource> makeGlxPbufferContexts();
std::unique_ptr<ContextSource> makeGlxSurfacelessContexts();

} // namespace vireo_test
