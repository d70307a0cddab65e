#pragma once

#include <QGLWidget>
#include <QOpenGLContext>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>

#include "tavo/platform/wgl.h"
#include "tests/support/WindowSystem.h"

namespace tavo {

// What is current on this thread, and what Qt takes for it.
struct CurrentState
{
    HDC dc = wglGetCurrentDC();
    HGLRC rc = wglGetCurrentContext();
    const QOpenGLContext* qtContext = QOpenGLContext::currentContext();
    const QSurface* qtSurface = qtContext ? qtContext->surface() : nullptr;

    bool operator==(const CurrentState&) const = default;

    friend void PrintTo(const CurrentState& state, std::ostream* stream)
    {
        *stream << "dc " << state.dc << ", rc " << state.rc << ", for Qt " << state.qtContext << " on "
                << state.qtSurface;
    }
};

// What an application may have current that uses Qt and makes contexts of its own.
enum class Made
{
    NOTHING,
    OWN,
    QT,
    OWN_OVER_QT,    // Qt does not see that another context was made current
    NOTHING_OVER_QT // nor that its own was released
};

inline const Made ALL_MADE[] = {Made::NOTHING, Made::OWN, Made::QT, Made::OWN_OVER_QT, Made::NOTHING_OVER_QT};

inline void PrintTo(Made made, std::ostream* stream)
{
    constexpr const char* NAMES[] = {"nothing", "own", "Qt", "own over Qt", "nothing over Qt"};
    *stream << NAMES[static_cast<int>(made)];
}

// An application with a context of its own and a widget of Qt.
class Application
{
public:
    Application()
    {
        std::string reason;
        m_WindowSystem = WindowSystem::open(reason);
        if (!m_WindowSystem)
            throw std::runtime_error(reason);
        m_Context = m_WindowSystem->makeContext(nullptr);
    }

    TestContext& context() { return *m_Context; }
    QGLWidget& widget() { return *m_Widget; }
    void deleteContext() { m_Context.reset(); }
    void deleteWidget() { m_Widget.reset(); }

    void make(Made made)
    {
        if (QOpenGLContext* const context = QOpenGLContext::currentContext())
            context->doneCurrent();
        wglMakeCurrent(nullptr, nullptr);
        if (made == Made::QT || made == Made::OWN_OVER_QT || made == Made::NOTHING_OVER_QT)
            m_Widget->makeCurrent();
        if (made == Made::OWN_OVER_QT || made == Made::NOTHING_OVER_QT)
            wglMakeCurrent(nullptr, nullptr);
        if (made == Made::OWN || made == Made::OWN_OVER_QT)
            wglMakeCurrent(m_Context->getDC(), m_Context->getRC());
    }

private:
    std::unique_ptr<WindowSystem> m_WindowSystem;
    std::unique_ptr<TestContext> m_Context;
    std::unique_ptr<QGLWidget> m_Widget = std::make_unique<QGLWidget>();
};

} // namespace tavo
