#include "vireo/show/volumes/GreatestValues.h"

#include "vireo/context/GLExtensions.h"
#include "vireo/context/SavedState.h"
#include "vireo/show/scenes/drawOverViewport.h"
#include "vireo/show/scenes/fetchEntryPoint.h"
#include "vireo/textures/GLTextureRect.h"

namespace tavo {

namespace {

constexpr const char* COLOURED = R"(!!ARBfp1.0
PARAM entry = program.local[0];         # from a place to its entry in the table: factor and summand
TEMP place, colour;
TEX place, fragment.texcoord[0], texture[0], RECT;
MAD place.x, place.w, entry.x, entry.y;
TEX result.color, place, texture[1], 1D;
END)";

void clearOpacity(float opacity)
{
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_TRUE);
    glClearColor(0, 0, 0, opacity);
    glClear(GL_COLOR_BUFFER_BIT);
}

} // namespace

std::unique_ptr<GreatestValues> GreatestValues::make(GLContext& context)
{
    if (!isExtensionSupported("GL_ARB_fragment_program") || !isExtensionSupported("GL_ARB_texture_rectangle"))
        return nullptr;
    BlendEquation blendEquation = nullptr;
    if (!fetchEntryPoint(blendEquation, "glBlendEquation"))
        return nullptr;
    std::unique_ptr<GreatestValues> made(new GreatestValues(context, blendEquation));
    return made->m_Program.compile(COLOURED) ? std::move(made) : nullptr;
}

GreatestValues::GreatestValues(GLContext& context, BlendEquation blendEquation)
    : m_BlendEquation(blendEquation)
    , m_Program(&context, GL_FRAGMENT_PROGRAM_ARB)
    , m_Places(std::make_unique<GLTextureRect>(&context))
{}

void GreatestValues::draw(const std::function<void()>& drawPlaces, float factor, float summand)
{
    int viewport[4];
    glGetIntegerv(GL_VIEWPORT, viewport);
    const SavedAttributes attributes(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_ENABLE_BIT | GL_POLYGON_BIT |
                                     GL_TEXTURE_BIT | GL_TRANSFORM_BIT | GL_CURRENT_BIT);
    clearOpacity(0);
    m_BlendEquation(GL_MAX);
    drawPlaces();
    m_BlendEquation(GL_FUNC_ADD);
    m_Places->bind(0);
    glCopyTexImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, GL_RGBA8, 0, 0, viewport[2], viewport[3], 0);
    for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, filter, GL_NEAREST);
    clearOpacity(1);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_FALSE);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    for (unsigned int plane = 0; plane < 6; ++plane) // what they cut is cut already
        glDisable(GL_CLIP_PLANE0 + plane);
    m_Program.bind();
    m_Program.setLocalParameter4f(0, factor, summand, 0, 0);
    drawOverViewport(viewport[2], viewport[3]);
    m_Program.unbind();
    m_Places->unbind(0);
}

} // namespace tavo
