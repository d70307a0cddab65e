#include "vireo/displayers/ViewContext.h"

#include <QGuiApplication>
#include <QOpenGLContext>
#include <utility>

#include "tavo/platform/wgl.h"
#include "vireo/context/GLExtensions.h"

namespace tavo {

ViewContext::ViewContext()
    : QGLContext(QGLFormat::defaultFormat())
{}

// Of a context that could not be made, Qt forgets what it was to be made of.
ViewContext::~ViewContext()
{
    if (!isValid())
        delete contextHandle();
    if (m_Windowless)
        destroyWindowlessContext(*m_Windowless);
}

// On Wayland windows within windows never show what is drawn to them.
bool ViewContext::chooseContext(const QGLContext* shared)
{
    return !QGuiApplication::platformName().startsWith("wayland") && QGLContext::chooseContext(shared);
}

bool ViewContext::exists()
{
    if (isValid())
        return true;
    if (!m_Windowless)
        m_Windowless = makeWindowlessContext();
    return m_Windowless->renderingContext != nullptr;
}

void ViewContext::makeCurrent()
{
    ++m_NumMadeCurrent;
    if (isValid())
        QGLContext::makeCurrent();
    else if (exists())
        wglMakeCurrent(m_Windowless->deviceContext, m_Windowless->renderingContext);
    if (m_PbufferDC)
        wglMakeCurrent(m_PbufferDC, wglGetCurrentContext());
}

bool ViewContext::isCurrent() const
{
    const HGLRC current = wglGetCurrentContext();
    if (isValid() || !current)
        return current && QGLContext::currentContext() == this;
    return m_Windowless && current == m_Windowless->renderingContext;
}

std::string ViewContext::getFailure() const
{
    if (!QGLFormat::hasOpenGL())
        return "Qt's platform \"" + QGuiApplication::platformName().toStdString() + "\" has no OpenGL here";
    return isValid() ? "it cannot be made current" : "the OpenGL driver makes none";
}

bool ViewContext::beginPbuffer(const QSize& size)
{
    if (!wglCreatePbufferARB)
        return false;
    const HDC window = wglGetCurrentDC();
    m_Pbuffer = wglCreatePbufferARB(window, GetPixelFormat(window), size.width(), size.height(), nullptr);
    m_PbufferDC = m_Pbuffer ? wglGetPbufferDCARB(m_Pbuffer) : nullptr;
    if (m_PbufferDC && wglMakeCurrent(m_PbufferDC, wglGetCurrentContext()))
        return true;
    endPbuffer();
    return false;
}

void ViewContext::endPbuffer()
{
    HDC__* const device = std::exchange(m_PbufferDC, nullptr);
    makeCurrent();
    if (device)
        wglReleasePbufferDCARB(m_Pbuffer, device);
    if (m_Pbuffer)
        wglDestroyPbufferARB(std::exchange(m_Pbuffer, nullptr));
}

} // namespace tavo
