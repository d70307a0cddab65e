// A spindle with five edges, twisted by a Cg program for its vertices and lit by one for its fragments.
#include <vireo/shaders/GLShaderCG.h>

#include "ExampleView.h"

#include <Cg/cgGL.h>

namespace {

// The matrices of GL come in under these names with every bind; the twist is the application's.
const char* const VERTICES = R"(
void main(float4 position : POSITION, float3 normal : NORMAL, uniform float4x4 matMVP, uniform float4x4 matMV,
    uniform float4x4 matMVinvtrans, uniform float twist,
    out float4 clipPosition : POSITION, out float3 eyePosition : TEXCOORD0, out float3 eyeNormal : TEXCOORD1)
{
    float s = sin(twist * position.z);
    float c = cos(twist * position.z);
    float2x2 turn = float2x2(c, -s, s, c);
    position.xy = mul(turn, position.xy);
    normal.xy = mul(turn, normal.xy);
    clipPosition = mul(matMVP, position);
    eyePosition = mul(matMV, position).xyz;
    eyeNormal = mul(matMVinvtrans, float4(normal, 0)).xyz;
})";

const char* const FRAGMENTS = R"(
float4 main(float3 position : TEXCOORD0, float3 normal : TEXCOORD1,
    uniform float3 light, uniform float4 colour, uniform float shininess) : COLOR
{
    normal = normalize(normal);
    float3 halfway = normalize(light - normalize(position));
    float4 lighting = lit(dot(normal, light), dot(normal, halfway), shininess);
    return colour * (0.25 + 0.75 * lighting.y) + 0.6 * lighting.z;
})";

// Without a program, and with a line that says why, where it cannot be compiled or would not run.
std::unique_ptr<tavo::GLShaderCG> makeProgram(tavo::GLContext& context, CGprofile profile, const char* source)
{
    auto program = std::make_unique<tavo::GLShaderCG>(&context, profile);
    if (!cgGLIsProfileSupported(profile))
        std::fprintf(stderr, "this context does not support the Cg profile %s\n", cgGetProfileString(profile));
    else if (!program->compile(source))
        std::fprintf(stderr, "%s", program->getLastError().c_str());
    return program;
}

class ProgramView : public ExampleView
{
public:
    using ExampleView::ExampleView;

private:
    void setUp(tavo::GLContext& context) override
    {
        m_Vertices = makeProgram(context, CG_PROFILE_ARBVP1, VERTICES);
        m_Fragments = makeProgram(context, CG_PROFILE_ARBFP1, FRAGMENTS);
    }

    void draw(tavo::GLContext&) override
    {
        gluLookAt(0, -4, 1.2, 0, 0, 0, 0, 0, 1);
        glScalef(0.8f, 0.8f, 1.2f);
        m_Vertices->bind(); // after the matrices are what they should be
        m_Vertices->setParameter1f("twist", 2.5f);
        m_Fragments->bind();
        m_Fragments->setParameter3f("light", 0.36f, 0.48f, 0.8f);
        m_Fragments->setParameter4f("colour", 0.3f, 0.65f, 0.95f, 1);
        m_Fragments->setParameter1f("shininess", 20);
        GLUquadric* const quadric = gluNewQuadric();
        gluSphere(quadric, 1, 5, 128);
        gluDeleteQuadric(quadric);
        m_Fragments->unbind();
        m_Vertices->unbind();
    }

    std::unique_ptr<tavo::GLShaderCG> m_Vertices;
    std::unique_ptr<tavo::GLShaderCG> m_Fragments;
};

} // namespace

int main(int argc, char** argv)
{
    return showExample<ProgramView>(argc, argv);
}
