#include "vireo/context/CurrentContextGuard.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QWindow>

#include "tavo/platform/wgl.h"

namespace tavo {

namespace {

QSurface* currentSurface()
{
    const QOpenGLContext* const context = QOpenGLContext::currentContext();
    return context ? context->surface() : nullptr;
}

QObject* objectOf(QSurface* surface)
{
    if (!surface)
        return nullptr;
    if (surface->surfaceClass() == QSurface::Window)
        return static_cast<QWindow*>(surface);
    return static_cast<QOffscreenSurface*>(surface);
}

} // namespace

CurrentContextGuard::CurrentContextGuard()
    : m_DC(wglGetCurrentDC())
    , m_RC(wglGetCurrentContext())
    , m_QtContext(QOpenGLContext::currentContext())
    , m_QtSurface(currentSurface())
    , m_QtSurfaceObject(objectOf(m_QtSurface))
{}

CurrentContextGuard::~CurrentContextGuard()
{
    restoreQt();
    if (wglGetCurrentContext() == m_RC && wglGetCurrentDC() == m_DC)
        return;
    if (!wglMakeCurrent(m_DC, m_RC))
        wglMakeCurrent(nullptr, nullptr);
}

// Qt first: it makes current, or releases, what it remembers.
void CurrentContextGuard::restoreQt() const
{
    QOpenGLContext* const current = QOpenGLContext::currentContext();
    if (current == m_QtContext && currentSurface() == m_QtSurface)
        return;
    if (m_QtContext && m_QtSurfaceObject && m_QtContext->makeCurrent(m_QtSurface))
        return;
    if (current)
        current->doneCurrent();
}

} // namespace tavo
