#include "benchmarks/support/View.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <stdexcept>

#include "tavo/platform/wgl.h"

#include <GL/gl.h>

namespace vireo_bench {

View::View()
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowFlags(Qt::Window | Qt::BypassWindowManagerHint);
    move(0, 0);
    show();
    makeCurrent();
    m_Context = std::make_unique<tavo::GLContext>(wglGetCurrentDC(), wglGetCurrentContext(), nullptr, this);
}

View& View::ofSize(int width, int height)
{
    static auto* const view = new View; // goes with the program: Qt's application is gone before static destructors run
    return view->inSize(width, height);
}

View& View::inSize(int width, int height)
{
    makeCurrent();
    if (size() != QSize(width, height)) {
        resize(width, height);
        // What the window system said of the size before may still be on its way.
        const QDeadlineTimer deadline(5000);
        do
            QApplication::processEvents();
        while (size() != QSize(width, height) && !deadline.hasExpired());
        swapBuffers(); // only now does the driver learn of the new size
        makeCurrent();
    }
    m_Context->activate();
    if (this->width() != width || this->height() != height)
        throw std::runtime_error("the screen is too small for a view of 1024 x 1024 pixels");
    glViewport(0, 0, width, height);
    return *this;
}

tavo::GLContext& View::context()
{
    return ofSize(512, 512).getContext();
}

Bytes View::pixels() const
{
    Bytes bytes(std::size_t{4} * width() * height());
    glReadPixels(0, 0, width(), height(), GL_RGBA, GL_UNSIGNED_BYTE, bytes.data());
    return bytes;
}

} // namespace vireo_bench
