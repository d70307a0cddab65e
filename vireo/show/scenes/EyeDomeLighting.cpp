#include "vireo/show/scenes/EyeDomeLighting.h"

#include <array>
#include <cmath>
#include <numbers>
#include <string>
#include <utility>

#include "vireo/context/GLExtensions.h"
#include "vireo/context/SavedState.h"
#include "vireo/offscreen/GLRenderTargetFBO.h"
#include "vireo/shaders/GLShaderARB.h"
#include "vireo/show/scenes/drawOverViewport.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {

namespace {

constexpr double STEEPEST = 10;
constexpr int NUM_NEIGHBOURS = 8;

const char* const BEGINNING = R"(!!ARBfp1.0
PARAM slope = program.local[0];         # factor of d - d_j, n/f, factor of the sum, steepest / first factor
PARAM right = program.local[1];         # to the neighbours; the others lie opposite
PARAM up = program.local[2];
PARAM rightUp = program.local[3];
PARAM rightDown = program.local[4];
TEMP divisor, shade;
)";

// In perspective z / z_j - 1 = (1 - n/f) (d - d_j) / (1 - d + d n/f), d being the depth in the buffer, since 1/z is
// linear in d. So the neighbours need no division of their own. With n/f = 1 the same is the slope of an orthographic
// view. Differences of depths come first, or they would drown in what large factors leave of rounding.
const char* const SHADE = R"(SUB divisor.x, 1, here.x;
MAD divisor.x, here.x, slope.y, divisor.x;
MUL divisor.y, divisor.x, slope.w;
RCP divisor.z, divisor.x;
SUB ones, here.x, ones;
SUB others, here.x, others;
MAX ones, ones, 0;
MAX others, others, 0;
MIN ones, ones, divisor.y;
MIN others, others, divisor.y;
ADD ones, ones, others;
DP4 shade.x, ones, 1;
MUL shade.x, shade.x, divisor.z;
MUL shade.x, shade.x, slope.z;
EX2 shade.x, shade.x;
SUB here.x, here.x, 1;
CMP shade.x, here.x, shade.x, 1;        # nothing was drawn at 1
MUL result.color.xyz, colour, shade.x;
MOV result.color.w, colour.w;
END)";

// By how much the slopes grow with the difference of depths, at a pixel as near as can be.
double factorOf(const EyeDomeLighting::View& view, double pixels, double radius)
{
    const double depths = view.isOrthographic ? view.farthest - view.nearest : 1 - view.nearest / view.farthest;
    return depths * pixels / (view.heightSeen * radius);
}

} // namespace

const char* const EyeDomeLighting::FETCHES = R"(ATTRIB place = fragment.texcoord[0];
TEMP colour, here, a, b, c, d, e, f, g, h, ones, others;
ADD a, place, right;
SUB b, place, right;
ADD c, place, up;
SUB d, place, up;
ADD e, place, rightUp;
SUB f, place, rightUp;
ADD g, place, rightDown;
SUB h, place, rightDown;
TEX colour, place, texture[0], RECT;
TEX here, place, texture[1], RECT;
TEX ones.x, a, texture[1], RECT;
TEX ones.y, b, texture[1], RECT;
TEX ones.z, c, texture[1], RECT;
TEX ones.w, d, texture[1], RECT;
TEX others.x, e, texture[1], RECT;
TEX others.y, f, texture[1], RECT;
TEX others.z, g, texture[1], RECT;
TEX others.w, h, texture[1], RECT;
)";

std::unique_ptr<EyeDomeLighting> EyeDomeLighting::make(GLContext& context)
{
    if (!GLRenderTargetFBO::isSupported() || !isExtensionSupported("GL_ARB_vertex_program") ||
        !isExtensionSupported("GL_ARB_fragment_program"))
        return nullptr;
    auto program = std::make_unique<GLShaderARB>(&context, GL_FRAGMENT_PROGRAM_ARB);
    if (!program->compile(std::string(BEGINNING) + FETCHES + SHADE))
        return nullptr;
    return std::unique_ptr<EyeDomeLighting>(new EyeDomeLighting(std::move(program)));
}

EyeDomeLighting::EyeDomeLighting(std::unique_ptr<GLShaderARB> program)
    : m_Program(std::move(program))
{}

EyeDomeLighting::~EyeDomeLighting() = default;

void EyeDomeLighting::draw(const GLRenderTargetFBO& picture, const Size& size, const View& view, double pixelRatio)
{
    const SavedAttributes attributes(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_ENABLE_BIT | GL_POLYGON_BIT |
                                     GL_TEXTURE_BIT | GL_TRANSFORM_BIT | GL_CURRENT_BIT);
    for (const unsigned int stage : {GL_ALPHA_TEST, GL_BLEND, GL_CULL_FACE, GL_DEPTH_TEST, GL_DITHER, GL_SCISSOR_TEST,
             GL_STENCIL_TEST, GL_VERTEX_PROGRAM_ARB})
        glDisable(stage);
    for (int plane = 0; plane < 6; ++plane)
        glDisable(static_cast<unsigned int>(GL_CLIP_PLANE0 + plane));
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    picture.getDepthTexture()->bind(1);
    picture.getColourTexture()->bind(0);
    m_Program->bind();
    setParameters(size, view, RADIUS * pixelRatio);
    drawOverViewport(size.width, size.height);
    m_Program->unbind();
    picture.getDepthTexture()->unbind(1);
    picture.getColourTexture()->unbind(0);
}

void EyeDomeLighting::setParameters(const Size& size, const View& view, double radius)
{
    const double factor = factorOf(view, size.height, radius);
    const double ratio = view.isOrthographic ? 1 : view.nearest / view.farthest;
    const double ofSum = -STRENGTH * std::numbers::log2e * factor / NUM_NEIGHBOURS;
    m_Program->setLocalParameter4f(0, static_cast<float>(factor), static_cast<float>(ratio), static_cast<float>(ofSum),
        static_cast<float>(STEEPEST / factor));
    const auto straight = static_cast<float>(radius);
    const auto diagonal = static_cast<float>(radius * std::numbers::sqrt2 / 2);
    m_Program->setLocalParameter4f(1, straight, 0, 0, 0);
    m_Program->setLocalParameter4f(2, 0, straight, 0, 0);
    m_Program->setLocalParameter4f(3, diagonal, diagonal, 0, 0);
    m_Program->setLocalParameter4f(4, diagonal, -diagonal, 0, 0);
}

} // namespace tavo
