#pragma once

#include <QGLContext>
#include <QSize>
#include <optional>
#include <string>

#include "tavo/platform/windowlessContext.h"

struct HDC__;         // NOLINT(bugprone-reserved-identifier): the name on Windows
struct HPBUFFERARB__; // NOLINT(bugprone-reserved-identifier): the name on Windows

namespace tavo {

// The GL context of a view. It draws to the view's window or, for a picture, to a pbuffer of its own: whoever makes the
// view current then, the shown object, or Qt in order to draw text, has the picture as framebuffer 0. Where Qt has no
// context for the window, or none that draws to it, one without a window takes its place, so that there are pictures
// nevertheless.
class ViewContext : public QGLContext
{
public:
    ViewContext();
    ~ViewContext() override;
    ViewContext(const ViewContext&) = delete;
    ViewContext& operator=(const ViewContext&) = delete;

    void makeCurrent() override;

    // Whether there is a context of either kind.
    bool exists();

    // Whether it is current in this thread.
    bool isCurrent() const;

    // Why it is not current after makeCurrent(), as far as that can be known.
    std::string getFailure() const;

    // How often the context was made current so far.
    unsigned int getNumMadeCurrent() const { return m_NumMadeCurrent; }

    // From now on draws to a pbuffer of that size. The context must be current, and the entry points loaded. False, and
    // nothing has changed, if the driver makes no pbuffer for this context.
    bool beginPbuffer(const QSize& size);

    bool drawsToPbuffer() const { return m_Pbuffer != nullptr; }

    // Draws to the window again. It becomes current.
    void endPbuffer();

protected:
    bool chooseContext(const QGLContext* shared) override;

private:
    unsigned int m_NumMadeCurrent = 0;
    HPBUFFERARB__* m_Pbuffer = nullptr;
    HDC__* m_PbufferDC = nullptr;
    std::optional<WindowlessContext> m_Windowless; // as soon as it was tried
};

} // namespace tavo
