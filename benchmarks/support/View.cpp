#include "benchmarks/support/View.h"

#include <QApplication>
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
    if (view->size() != QSize(width, height)) {
        view->resize(width, height);
        QApplication::processEvents();
        view->swapBuffers(); // only now does the driver learn of the new size
    }
    view->makeCurrent();
    view->m_Context->activate();
    if (view->width() != width || view->height() != height)
        throw std::runtime_error("the screen is too small for a view of 1024 x 1024 pixels");
    glViewport(0, 0, width, height);
    return *view;
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
