#pragma once

#include <QImage>

#include "benchmarks/scenes/BareCloud.h"
#include "benchmarks/scenes/clouds.h"
#include "vireo/show/scenes/SceneRenderer.h"

namespace vireo_bench {

// A scene of one item, seen as a whole.
class SeenScene : public Contestant
{
public:
    explicit SeenScene(tavo::ItemUpdate item);

protected:
    void send(tavo::ItemUpdate item);
    QImage draw() { return m_Renderer.draw(m_Camera, VIEW_SIZE, m_Look); }

    std::shared_ptr<tavo::SceneContext> m_Context = tavo::SceneContext::get();
    tavo::SceneModel m_Model{"scene"};
    tavo::SceneCamera m_Camera;
    tavo::SceneLook m_Look;

private:
    tavo::SceneRenderer m_Renderer{m_Context, m_Model};
};

} // namespace vireo_bench
