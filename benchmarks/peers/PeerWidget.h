#pragma once

#include <QGLWidget>

#include "benchmarks/peers/Scene.h"

namespace vireo_bench {

// A widget of Qt's that a peer draws into, as vireo does: nobody else paints into it.
class PeerWidget : public QGLWidget
{
public:
    PeerWidget()
    {
        setAttribute(Qt::WA_ShowWithoutActivating);
        setWindowFlags(Qt::Window | Qt::BypassWindowManagerHint);
        resize(Scene::SIZE, Scene::SIZE);
        show();
    }

    // What is drawn in it.
    Bytes pixels()
    {
        makeCurrent();
        Bytes pixels(std::size_t{4} * Scene::SIZE * Scene::SIZE);
        glReadPixels(0, 0, Scene::SIZE, Scene::SIZE, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        return pixels;
    }

protected:
    void paintEvent(QPaintEvent*) override {}
    void resizeEvent(QResizeEvent*) override {}
};

} // namespace vireo_bench
