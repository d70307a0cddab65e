#pragma once

#include <QImage>
#include <memory>

#include "benchmarks/support/inputs.h"
#include "vireo/show/scenes/SceneCamera.h"
#include "vireo/show/scenes/SceneContext.h"

namespace vireo_bench {

inline const QSize VIEW_SIZE(1024, 768);

// What a program does that shows nothing but points in one colour, in the context that scenes are drawn in: a vertex
// buffer, a picture that is read back.
class BareCloud
{
public:
    BareCloud();
    ~BareCloud();
    BareCloud(const BareCloud&) = delete;
    BareCloud& operator=(const BareCloud&) = delete;

    // Copies the points, and puts them into the buffer, counted from the middle of their box.
    void upload(const Points& points);
    void forgetPoints() { m_Points = {}; } // they stay in the buffer
    QImage draw(const tavo::SceneCamera& camera) const;

    const tavo::SceneBox& box() const { return m_Box; }

private:
    std::shared_ptr<tavo::SceneContext> m_Context;
    std::unique_ptr<tavo::GLRenderTargetFBO> m_Target;
    tavo::SceneBox m_Box;
    Points m_Points;
    int m_NumPoints = 0;
    unsigned int m_Buffer = 0;
};

} // namespace vireo_bench
