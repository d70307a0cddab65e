#include "vireo/show/scenes/DepthLayers.h"

#include <string>

#include "vireo/context/GLExtensions.h"
#include "vireo/context/SavedState.h"
#include "vireo/show/scenes/drawOverViewport.h"
#include "vireo/show/scenes/isAnySeen.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {

namespace {

// Leaves out what is not behind the layer before. Depths of textures are rounded to 24 bits.
constexpr const char* BEHIND_LAYER = R"(!!ARBfp1.0
PARAM rounding = { 0.0000003 };
ATTRIB place = fragment.position;
TEMP depth, colour;
TEX depth.x, place, texture[0], RECT;
SUB depth.x, place.z, depth.x;
SUB depth.x, depth.x, rounding.x;
KIL depth.x;
)";

// And what the picture hides. Colours are multiplied by their opacity.
constexpr const char* LAYER = R"(TEX depth.x, place, texture[1], RECT;
SUB depth.x, depth.x, place.z;
ADD depth.x, depth.x, rounding.x;
KIL depth.x;
MOV colour, fragment.color;
MUL result.color.xyz, colour, colour.w;
MOV result.color.w, colour.w;
END)";

constexpr const char* AS_IT_IS = R"(MOV result.color, fragment.color;
END)";

// Directs drawing to a target, as long as it lives.
class DrawnInto
{
public:
    DrawnInto(GLRenderTargetFBO& target, const DepthLayers::Size& size)
        : m_Target(target)
    {
        m_Target.activate();
        glViewport(0, 0, size.width, size.height);
    }
    ~DrawnInto() { m_Target.deactivate(); }
    DrawnInto(const DrawnInto&) = delete;
    DrawnInto& operator=(const DrawnInto&) = delete;

private:
    GLRenderTargetFBO& m_Target;
};

void clear(double depth)
{
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glClearColor(0, 0, 0, 0);
    glClearDepth(depth);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void drawOver(GLTexture& texture, const DepthLayers::Size& size)
{
    const SavedAttributes attributes(GL_ENABLE_BIT | GL_TEXTURE_BIT);
    for (const GLenum stage : {GL_LIGHTING, GL_DEPTH_TEST, GL_CULL_FACE})
        glDisable(stage);
    for (unsigned int plane = 0; plane < 6; ++plane) // what they cut is cut already
        glDisable(GL_CLIP_PLANE0 + plane);
    texture.bind(0);
    glEnable(GL_TEXTURE_RECTANGLE_ARB);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    drawOverViewport(size.width, size.height);
    texture.unbind(0);
}

} // namespace

std::unique_ptr<DepthLayers> DepthLayers::make(GLContext& context)
{
    if (!GLRenderTargetFBO::isSupported() || !isExtensionSupported("GL_ARB_vertex_program") ||
        !isExtensionSupported("GL_ARB_fragment_program") || !canAskWhatIsSeen())
        return nullptr;
    std::unique_ptr<DepthLayers> layers(new DepthLayers(context));
    const std::string behind = BEHIND_LAYER;
    const bool canDraw =
        layers->m_LayerProgram.compile(behind + LAYER) && layers->m_BehindProgram.compile(behind + AS_IT_IS);
    return canDraw ? std::move(layers) : nullptr;
}

DepthLayers::DepthLayers(GLContext& context)
    : m_Layers{GLRenderTargetFBO(&context), GLRenderTargetFBO(&context)}
    , m_Sum(&context)
    , m_LayerProgram(&context, GL_FRAGMENT_PROGRAM_ARB)
    , m_BehindProgram(&context, GL_FRAGMENT_PROGRAM_ARB)
{}

bool DepthLayers::makeTargets(unsigned int width, unsigned int height)
{
    for (GLRenderTargetFBO* const target : {&m_Layers[0], &m_Layers[1], &m_Sum})
        if ((target->getWidth() < width || target->getHeight() < height) && !target->create(width, height))
            return false;
    return true;
}

bool DepthLayers::blend(
    GLRenderTargetFBO& target, const Size& size, unsigned int mostLayers, const std::function<void()>& draw)
{
    const SavedAttributes attributes(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_ENABLE_BIT | GL_TEXTURE_BIT);
    if (!makeTargets(target.getWidth(), target.getHeight()))
        return false;
    for (GLRenderTargetFBO* const empty : {&layer(0), &m_Sum}) {
        const DrawnInto into(*empty, size);
        clear(0);
    }
    unsigned int number = 1;
    for (; number <= mostLayers && drawLayer(number, target, size, draw); ++number)
        addLayer(number, size);
    if (number > mostLayers)
        drawBehind(mostLayers, draw);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    drawOver(*m_Sum.getColourTexture(), size);
    return true;
}

bool DepthLayers::drawLayer(
    unsigned int number, GLRenderTargetFBO& target, const Size& size, const std::function<void()>& draw)
{
    const DrawnInto into(layer(number), size);
    clear(1);
    glDepthFunc(GL_LESS);
    glBlendFunc(GL_ONE, GL_ZERO);
    target.getDepthTexture()->bind(1);
    layer(number - 1).getDepthTexture()->bind(0);
    m_LayerProgram.bind();
    const bool isAny = isAnySeen(draw);
    m_LayerProgram.unbind();
    target.getDepthTexture()->unbind(1);
    layer(number - 1).getDepthTexture()->unbind(0);
    return isAny;
}

void DepthLayers::addLayer(unsigned int number, const Size& size)
{
    const DrawnInto into(m_Sum, size);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE_MINUS_DST_ALPHA, GL_ONE);
    drawOver(*layer(number).getColourTexture(), size);
}

// Into the target itself, whose depths cannot be a texture meanwhile.
void DepthLayers::drawBehind(unsigned int number, const std::function<void()>& draw)
{
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_FALSE);
    glDepthMask(GL_FALSE);
    glDepthFunc(GL_LEQUAL);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    layer(number).getDepthTexture()->bind(0);
    m_BehindProgram.bind();
    draw();
    m_BehindProgram.unbind();
    layer(number).getDepthTexture()->unbind(0);
}

} // namespace tavo
