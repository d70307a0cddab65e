#pragma once

#include <QGLWidget>
#include <memory>

#include "benchmarks/support/Comparison.h"
#include "vireo/context/GLContext.h"

namespace vireo_bench {

// The window that contestants draw into, as an application would have it: a widget of Qt's, whose context is wrapped in
// a GLContext. It is never painted by Qt itself.
class View : public QGLWidget
{
public:
    // The view that contestants share, in that size.
    static View& ofSize(int width, int height);

    // The same where nothing is drawn.
    static tavo::GLContext& context();

    // A view of a contestant's own, for what needs a context in which nothing has happened yet.
    View();

    // Gives it that size, and makes its context current and active.
    View& inSize(int width, int height);

    tavo::GLContext& getContext() { return *m_Context; }

    // What was drawn, as RGBA bytes from the lower left corner on.
    Bytes pixels() const;

protected:
    void paintEvent(QPaintEvent*) override {}
    void resizeEvent(QResizeEvent*) override {}

private:
    std::unique_ptr<tavo::GLContext> m_Context;
};

} // namespace vireo_bench
