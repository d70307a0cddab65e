#pragma once

#include <functional>
#include <memory>

#include "vireo/offscreen/GLRenderTargetFBO.h"
#include "vireo/shaders/GLShaderARB.h"

namespace tavo {

// Blends surfaces that can be seen through by their depths, pixel by pixel, however they lie in each other and in
// whichever order they are drawn: one layer after the other, the nearest first. What lies behind the last layer is
// blended as it comes.
//
// Of faces at the same depth, only the one that is drawn first is seen.
class DepthLayers
{
public:
    // Null where the driver has no targets of depths, no ARB programs or does not count what it draws. The context must
    // be current, here and below.
    static std::unique_ptr<DepthLayers> make(GLContext& context);

    // Of a picture, in pixels, in the lower left corner of its target.
    struct Size
    {
        int width = 0;
        int height = 0;
    };

    // Adds what draw() draws to a target that is active and has what is opaque. draw() is called for each layer, and
    // must leave alone how colours are blended and depths compared. Returns false if the driver has no memory for it.
    bool blend(GLRenderTargetFBO& target, const Size& size, unsigned int mostLayers, const std::function<void()>& draw);

private:
    explicit DepthLayers(GLContext& context);

    GLRenderTargetFBO& layer(unsigned int number) { return m_Layers[number % 2]; }
    bool makeTargets(unsigned int width, unsigned int height);
    bool drawLayer(unsigned int number, GLRenderTargetFBO& target, const Size& size, const std::function<void()>& draw);
    void addLayer(unsigned int number, const Size& size);
    void drawBehind(unsigned int number, const std::function<void()>& draw);

    GLRenderTargetFBO m_Layers[2]; // the last one, and the one before
    GLRenderTargetFBO m_Sum;       // of the layers
    GLShaderARB m_LayerProgram;
    GLShaderARB m_BehindProgram;
};

} // namespace tavo
