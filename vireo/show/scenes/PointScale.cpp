#include "vireo/show/scenes/PointScale.h"

#include <cmath>
#include <string>
#include <utility>

#include "vireo/context/GLExtensions.h"

namespace tavo {

namespace {

constexpr const char* SIZE = R"(!!ARBvp1.0
OPTION ARB_position_invariant;
PARAM depth = state.matrix.mvp.row[3];
PARAM scale = program.local[0];         # pixels of a radius of 1 at depth 1
TEMP size;
DP4 size.y, depth, vertex.position;
RCP size.y, size.y;
MUL size.x, vertex.texcoord[0].x, scale.x;
MUL size.x, size.x, size.y;
MAX result.pointsize.x, size.x, 1;      # those of no size are seen, too
SUB size.x, 4, size.x;
MAX result.texcoord[1].x, size.x, 0;    # see RoundPoints
)";

constexpr const char* OWN_COLOUR = R"(MOV result.color, vertex.color;
END)";

constexpr const char* ID = R"(ADD result.color, vertex.color, program.local[1];
END)";

// As OpenGL's own light, straight ahead.
constexpr const char* LIT_COLOUR = R"(PARAM toEye[3] = { state.matrix.modelview.invtrans.row[0..2] };
TEMP normal;
DP3 normal.x, toEye[0], vertex.normal;
DP3 normal.y, toEye[1], vertex.normal;
DP3 normal.z, toEye[2], vertex.normal;
DP3 normal.w, normal, normal;
MAX normal.w, normal.w, 1e-30;          # some have no direction
RSQ normal.w, normal.w;
MUL normal.z, normal.z, normal.w;
MAX normal.z, normal.z, 0;
MAD normal.z, normal.z, 0.75, 0.25;
MUL result.color.xyz, vertex.color, normal.z;
MOV result.color.w, vertex.color.w;
END)";

} // namespace

std::unique_ptr<PointScale> PointScale::make(GLContext& context, Colour colour)
{
    if (!isExtensionSupported("GL_ARB_vertex_program"))
        return nullptr;
    auto program = std::make_unique<GLShaderARB>(&context, GL_VERTEX_PROGRAM_ARB);
    constexpr const char* COLOURS[] = {OWN_COLOUR, LIT_COLOUR, ID};
    if (!program->compile(std::string(SIZE) + COLOURS[static_cast<std::size_t>(colour)]))
        return nullptr;
    return std::unique_ptr<PointScale>(new PointScale(std::move(program)));
}

PointScale::PointScale(std::unique_ptr<GLShaderARB> program)
    : m_Program(std::move(program))
{}

void PointScale::begin(double scale)
{
    float projection[16];
    glGetFloatv(GL_PROJECTION_MATRIX, projection);
    int viewport[4];
    glGetIntegerv(GL_VIEWPORT, viewport);
    // At depth 1 half the height of the picture shows as much as the second number of its row scales to 1.
    const double pixels = std::abs(scale * static_cast<double>(projection[5])) * viewport[3];
    m_Program->bind();
    m_Program->setLocalParameter4f(0, static_cast<float>(pixels), 0, 0, 0);
    glEnable(GL_VERTEX_PROGRAM_POINT_SIZE_ARB);
}

void PointScale::end()
{
    glDisable(GL_VERTEX_PROGRAM_POINT_SIZE_ARB);
    m_Program->unbind();
}

} // namespace tavo
