#pragma once

#include <QPointer>

#include "vireo/Export.h"

struct HDC__;   // NOLINT(bugprone-reserved-identifier): the name on Windows
struct HGLRC__; // NOLINT(bugprone-reserved-identifier): the name on Windows
class QOpenGLContext;
class QSurface;

namespace tavo {

/// Remembers what is current on this thread, and makes it current again when the guard dies, whatever was made current
/// or released in between, by Qt, WGL or the window system itself.
///
///     const CurrentContextGuard guard;
///     context.activate();
///
/// What is current and what Qt believes to be current are saved separately, since Qt does not see what others do. If a
/// context or drawable has died meanwhile, nothing is current afterwards. There is one exception: a drawable that only
/// its window system knows to be dead, where the context alone is enough to make it current again; with GLX, that of a
/// destroyed QWindow. If nothing has changed, the guard only asks what is current. Otherwise its end costs a
/// switch of contexts, by Qt, by the window system or by both.
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
