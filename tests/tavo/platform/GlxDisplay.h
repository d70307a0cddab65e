#pragma once

#include <memory>
#include <vector>

struct _XDisplay;       // NOLINT(bugprone-reserved-identifier): Xlib's name
struct __GLXcontextRec; // NOLINT(bugprone-reserved-identifier): GLX's name

namespace tavo {

// A connection to the X server and what is made over it, by Xlib and GLX alone. All of it goes with the object.
class GlxDisplay
{
public:
    // Null if there is no X server with GLX.
    static std::unique_ptr<GlxDisplay> open();
    ~GlxDisplay();
    GlxDisplay(const GlxDisplay&) = delete;
    GlxDisplay& operator=(const GlxDisplay&) = delete;

    _XDisplay* getNative() const;

    unsigned long makeWindow();
    unsigned long makePbuffer();
    // Of version 3.0 or later, so that it can be current without a drawable.
    __GLXcontextRec* makeContext(__GLXcontextRec* sharing = nullptr);

    // Have reached the server when they return.
    void destroyWindow(unsigned long window);
    void destroyContext(__GLXcontextRec* context);

private:
    struct Native;
    explicit GlxDisplay(std::unique_ptr<Native> native);

    std::unique_ptr<Native> m_Native;
    std::vector<unsigned long> m_Pbuffers;
    std::vector<__GLXcontextRec*> m_Contexts;
};

} // namespace tavo
