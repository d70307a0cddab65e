// A ball in stripes, lit by a program for its vertices and one for its fragments, in the language of ARB programs.
#include <vireo/shaders/GLShaderARB.h>
#include <vireo/shaders/ShaderConstant.h>

#include "ExampleView.h"

namespace {

// Where a vertex appears, and for its fragments the normal, as seen from the eye, and the place on the ball. GL's
// matrices are there to be read.
const char* const VERTICES = R"(!!ARBvp1.0
PARAM project[4] = { state.matrix.mvp };
PARAM turn[4] = { state.matrix.modelview.invtrans };
DP4 result.position.x, project[0], vertex.position;
DP4 result.position.y, project[1], vertex.position;
DP4 result.position.z, project[2], vertex.position;
DP4 result.position.w, project[3], vertex.position;
DP3 result.texcoord[0].x, turn[0], vertex.normal;
DP3 result.texcoord[0].y, turn[1], vertex.normal;
DP3 result.texcoord[0].z, turn[2], vertex.normal;
MOV result.texcoord[1], vertex.texcoord[0];
END)";

// The colour of a fragment. Local parameters are this program's own, those of the environment all fragment programs'.
const char* const FRAGMENTS = R"(!!ARBfp1.0
PARAM light = program.env[0];
PARAM ambient = program.local[0];
PARAM stripes = program.local[1];
PARAM oneColour = program.local[2];
PARAM otherColour = program.local[3];
TEMP normal, stripe, shade, colour;
DP3 normal.w, fragment.texcoord[0], fragment.texcoord[0];
RSQ normal.w, normal.w;
MUL normal.xyz, fragment.texcoord[0], normal.w;
DP3_SAT shade, normal, light;
ADD shade, shade, ambient.x;
DP3 stripe, fragment.texcoord[1], stripes;
FRC stripe, stripe;
SGE stripe, stripe, 0.5;
LRP colour, stripe, oneColour, otherColour;
MUL result.color, colour, shade;
END)";

std::unique_ptr<tavo::GLShaderARB> makeProgram(tavo::GLContext& context, unsigned int target, const char* source)
{
    auto program = std::make_unique<tavo::GLShaderARB>(&context, target);
    if (!program->compile(source))
        std::fprintf(stderr, "at character %d: %s", program->getLastErrorPosition(), program->getLastError().c_str());
    return program;
}

// The local parameter of that number.
tavo::ShaderConstant makeConstant(int number, std::initializer_list<float> components)
{
    tavo::ShaderConstant constant("", number, static_cast<int>(components.size()));
    for (unsigned int i = 0; const float component : components)
        constant.setData(i++, component);
    return constant;
}

class ProgramView : public ExampleView
{
public:
    using ExampleView::ExampleView;

private:
    void setUp(tavo::GLContext& context) override
    {
        m_Vertices = makeProgram(context, GL_VERTEX_PROGRAM_ARB, VERTICES);
        m_Fragments = makeProgram(context, GL_FRAGMENT_PROGRAM_ARB, FRAGMENTS);
    }

    void draw(tavo::GLContext&) override
    {
        gluLookAt(0, -3.5, 1.6, 0, 0, 0, 0, 0, 1);
        m_Vertices->bind();
        m_Fragments->bind(); // parameters go to the program that is bound
        m_Fragments->setGlobalParameter4f(0, 0.42f, 0.57f, 0.71f, 0);
        m_Fragments->setConstants({makeConstant(0, {0.25f}), makeConstant(1, {8, 6}),
            makeConstant(2, {1, 0.6f, 0.1f, 1}), makeConstant(3, {0.9f, 0.9f, 0.85f, 1})});
        GLUquadric* const quadric = gluNewQuadric();
        gluQuadricTexture(quadric, GL_TRUE);
        gluSphere(quadric, 1, 64, 32);
        gluDeleteQuadric(quadric);
        m_Fragments->unbind();
        m_Vertices->unbind();
    }

    std::unique_ptr<tavo::GLShaderARB> m_Vertices;
    std::unique_ptr<tavo::GLShaderARB> m_Fragments;
};

} // namespace

int main(int argc, char** argv)
{
    return showExample<ProgramView>(argc, argv);
}
