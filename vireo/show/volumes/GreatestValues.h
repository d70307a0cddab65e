#pragma once

#include <functional>
#include <memory>

#include "vireo/context/GLExtensions.h"
#include "vireo/shaders/GLShaderARB.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {

// Shows, of what is drawn at a pixel, only the greatest place in a table of colours. It goes through the opacity of the
// target, which is 1 everywhere before and afterwards.
class GreatestValues
{
public:
    // Null if the driver cannot. The context must be current for this, and for drawing.
    static std::unique_ptr<GreatestValues> make(GLContext& context);

    // Calls `drawPlaces`, which draws them as opacities, and colours what comes of it by the table on unit 1.
    // `factor` and `summand` take a place to that of its entry.
    void draw(const std::function<void()>& drawPlaces, float factor, float summand);

private:
    using BlendEquation = void(APIENTRY*)(unsigned int equation);

    GreatestValues(GLContext& context, BlendEquation blendEquation);

    BlendEquation m_BlendEquation;
    GLShaderARB m_Program;
    std::unique_ptr<GLTexture> m_Places;
};

} // namespace tavo
