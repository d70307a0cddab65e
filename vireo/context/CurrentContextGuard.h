#pragma once

#include <QPointer>

#include "vireo/Export.h"

struct HDC__;
struct HGLRC__;
class QOpenGLContext;
class QSurface;

namespace tavo {

// Remembers what is current on this thread, and makes that current again when it dies, whatever has been made current
// or released in between, and by whom: Qt, WGL or the window system itself. What Qt takes for current is remembered
// apart from what is, since Qt does not see what others do.
//
//     const CurrentContextGuard guard;
//     view.makeCurrent();
//
// A context or drawable that died in between is not made current; nothing is, then. A drawable that only its window
// system knows to be dead is no exception where the context alone makes it current again: with GLX, that of a QWindow
// which was destroyed. Where nothing has changed, only what is current is asked for.
class VIREO_EXPORT CurrentContextGuard
{
public:
    CurrentContextGuard();
    ~CurrentContextGuard();
    CurrentContextGuard(const CurrentContextGuard&) = delete;
    CurrentContextGuard& operator=(const CurrentContextGuard&) = delete;

private:
    void restoreQt() const;

    HDC__* m_DC;
    HGLRC__* m_RC;
    QPointer<QOpenGLContext> m_QtContext;
    QSurface* m_QtSurface;
    // Of the surface; null once it has been destroyed.
    QPointer<QObject> m_QtSurfaceObject;
};

} // namespace tavo
