#include "vireo/show/scenes/RoundPoints.h"

#include "vireo/context/GLExtensions.h"

namespace tavo {

namespace {

// What is farther from the middle of a sprite than its edges are is not drawn, unless that is small, as programs of
// vertices say. Else, where middles lie between pixels, nothing of it might be.
constexpr const char* DISC = R"(!!ARBfp1.0
TEMP away;
SUB away, fragment.texcoord[0], 0.5;
MUL away, away, away;
ADD away.x, away.x, away.y;
SUB away.x, 0.25, away.x;
ADD away.x, away.x, fragment.texcoord[1].x;
KIL away.x;
MOV result.color, fragment.color;
END)";

void setSprites(bool areOn)
{
    areOn ? glEnable(GL_POINT_SPRITE_ARB) : glDisable(GL_POINT_SPRITE_ARB);
    glTexEnvi(GL_POINT_SPRITE_ARB, GL_COORD_REPLACE_ARB, areOn ? GL_TRUE : GL_FALSE);
}

} // namespace

std::unique_ptr<RoundPoints> RoundPoints::make(GLContext& context)
{
    if (!isExtensionSupported("GL_ARB_fragment_program") || !isExtensionSupported("GL_ARB_point_sprite"))
        return nullptr;
    auto program = std::make_unique<GLShaderARB>(&context, GL_FRAGMENT_PROGRAM_ARB);
    if (!program->compile(DISC))
        return nullptr;
    return std::unique_ptr<RoundPoints>(new RoundPoints(std::move(program)));
}

void RoundPoints::begin()
{
    m_Program->bind();
    setSprites(true);
}

void RoundPoints::end()
{
    setSprites(false);
    m_Program->unbind();
}

} // namespace tavo
