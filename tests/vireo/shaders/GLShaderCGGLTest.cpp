#include <algorithm>
#include <gmock/gmock.h>
#include <optional>
#include <stdexcept>

#include "tavo/base/objects/PException.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/PictureComparison.h"
#include "tests/tavo/base/objects/messageOf.h"
#include "tests/vireo/shaders/ShaderTest.h"
#include "vireo/shaders/GLShaderCG.h"
#include "vireo/shaders/ShaderConstant.h"

#include <Cg/cgGL.h>

namespace tavo {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr CGprofile VERTEX = CG_PROFILE_ARBVP1;
constexpr CGprofile FRAGMENT = CG_PROFILE_ARBFP1;

const std::string RED = "float4 main() : COLOR { return float4(1, 0, 0, 1); }";
const std::string GREEN = "float4 main() : COLOR { return float4(0, 1, 0, 1); }";
const std::string WRONG = "float4 main() : COLOR { return nothing; }";
const std::string TRANSFORM = "float4 main(float4 p : POSITION, uniform float4x4 matMVP) : POSITION"
                              "{ return mul(matMVP, p); }";

class GLShaderCGGLTest : public ShaderTest
{
protected:
    void SetUp() override
    {
        ShaderTest::SetUp();
        if (IsSkipped())
            return;
        m_Cg = context()->getCGContext();
        cgGetError();
        if (!cgGLIsProfileSupported(VERTEX) || !cgGLIsProfileSupported(FRAGMENT))
            GTEST_SKIP() << "the Cg runtime knows no way to use ARB programs in this context";
        ASSERT_THAT(programs(), IsEmpty());
    }

    // The programs of the Cg context. It outlives the GLContext.
    std::vector<CGprogram> programs() const
    {
        std::vector<CGprogram> all;
        for (CGprogram program = cgGetFirstProgram(m_Cg); program; program = cgGetNextProgram(program))
            all.push_back(program);
        return all;
    }

    // The calls of an operation, in which the handle of the Cg context appears as "cg", that of the first program as
    // "program", and those of its parameters as the parameters' names.
    template <typename Operation>
    Calls namedCallsOf(Operation operation) const
    {
        CallRecorder recorder;
        recorder.namePointer(m_Cg, "cg");
        if (const CGprogram program = cgGetFirstProgram(m_Cg)) {
            recorder.namePointer(program, "program");
            for (CGparameter parameter = cgGetFirstParameter(program, CG_PROGRAM); parameter;
                 parameter = cgGetNextParameter(parameter))
                recorder.namePointer(parameter, cgGetParameterName(parameter));
        }
        operation();
        return recorder.calls();
    }

    CGcontext m_Cg = nullptr;
};

// What updating the default matrices makes, if the program has only the given ones of them.
Calls updateCalls(const std::vector<std::string>& declared)
{
    Calls calls;
    const auto add = [&](const std::string& name, const std::string& matrix, const std::string& transform) {
        const bool isDeclared = std::find(declared.begin(), declared.end(), name) != declared.end();
        calls.push_back("cgGetNamedParameter(program, \"" + name + "\")");
        calls.push_back(
            "cgGLSetStateMatrixParameter(" + (isDeclared ? name : "null") + ", " + matrix + ", " + transform + ")");
    };
    add("matMVP", "CG_GL_MODELVIEW_PROJECTION_MATRIX", "CG_GL_MATRIX_IDENTITY");
    add("matMV", "CG_GL_MODELVIEW_MATRIX", "CG_GL_MATRIX_IDENTITY");
    add("matMVinv", "CG_GL_MODELVIEW_MATRIX", "CG_GL_MATRIX_INVERSE");
    add("matMVinvtrans", "CG_GL_MODELVIEW_MATRIX", "CG_GL_MATRIX_INVERSE_TRANSPOSE");
    add("matMVtrans", "CG_GL_MODELVIEW_MATRIX", "CG_GL_MATRIX_TRANSPOSE");
    return calls;
}

Calls operator+(Calls calls, const Calls& more)
{
    calls.insert(calls.end(), more.begin(), more.end());
    return calls;
}

// --- compiling ---

TEST_F(GLShaderCGGLTest, StartsWithoutAProgram)
{
    std::optional<GLShaderCG> shader;
    EXPECT_THAT(callsOf([&] { shader.emplace(context(), FRAGMENT); }), IsEmpty());
    EXPECT_THAT(programs(), IsEmpty());
    EXPECT_EQ(shader->getLastError(), "");
    EXPECT_EQ(shader->getContext(), context());
}

TEST_F(GLShaderCGGLTest, CompilesTheFunctionMainAndLoadsIt)
{
    GLShaderCG shader(context(), FRAGMENT);
    EXPECT_THAT(namedCallsOf([&] { EXPECT_TRUE(shader.compile(RED)); }),
        ElementsAre("cgIsProgram(null)",
            "cgCreateProgram(cg, CG_SOURCE, \"float4 main() : COLOR { return float4(1, 0, 0, 1); }\", "
            "CG_PROFILE_ARBFP1, \"main\", null)",
            testing::StartsWith("cgGLLoadProgram(")));
    EXPECT_EQ(programs().size(), 1u);
    EXPECT_EQ(shader.getLastError(), "");
    EXPECT_TRUE(cgGLIsProgramLoaded(programs().at(0)));
    EXPECT_EQ(cgGetError(), CG_NO_ERROR);
}

TEST_F(GLShaderCGGLTest, KeepsTheListingOfAProgramWithAnError)
{
    GLShaderCG shader(context(), FRAGMENT);
    EXPECT_THAT(namedCallsOf([&] { EXPECT_FALSE(shader.compile(WRONG)); }),
        ElementsAre("cgIsProgram(null)", testing::StartsWith("cgCreateProgram(cg, "), "cgGetLastListing(cg)"));
    EXPECT_THAT(shader.getLastError(), HasSubstr("undefined variable \"nothing\""));
    EXPECT_EQ(shader.getLastError(), cgGetLastListing(m_Cg));
    EXPECT_THAT(programs(), IsEmpty());
    EXPECT_THAT(callsOf([&] { shader.bind(); }), IsEmpty());
}

TEST_F(GLShaderCGGLTest, FindsNoFunctionOfAnotherName)
{
    GLShaderCG shader(context(), FRAGMENT);
    EXPECT_FALSE(shader.compile("float4 other() : COLOR { return float4(1, 0, 0, 1); }"));
    EXPECT_THAT(shader.getLastError(), HasSubstr("no program defined"));
}

TEST_F(GLShaderCGGLTest, SaysSoWhereTheRuntimeHasNoListing)
{
    if (testing::UnitTest::GetInstance()->test_to_run_count() > 1)
        GTEST_SKIP() << "needs a process of its own: destroys the Cg context";
    GLShaderCG shader(context(), FRAGMENT);
    cgDestroyContext(m_Cg);
    EXPECT_FALSE(shader.compile(RED));
    EXPECT_EQ(shader.getLastError(), "unkown error");
}

TEST_F(GLShaderCGGLTest, DestroysTheOldProgramBeforeItTriesTheNew)
{
    GLShaderCG shader(context(), FRAGMENT);
    ASSERT_TRUE(shader.compile(RED));
    EXPECT_THAT(namedCallsOf([&] { EXPECT_FALSE(shader.compile(WRONG)); }),
        ElementsAre("cgIsProgram(program)", "cgDestroyProgram(program)", testing::StartsWith("cgCreateProgram(cg, "),
            "cgGetLastListing(cg)"));
    EXPECT_THAT(programs(), IsEmpty());
    EXPECT_THAT(callsOf([&] { shader.bind(); }), IsEmpty());
    EXPECT_THAT(shader.getLastError(), HasSubstr("nothing"));

    EXPECT_TRUE(shader.compile(GREEN));
    EXPECT_EQ(shader.getLastError(), "");
    EXPECT_EQ(programs().size(), 1u);
}

TEST_F(GLShaderCGGLTest, CompilesAgainAfterSuccess)
{
    GLShaderCG shader(context(), FRAGMENT);
    ASSERT_TRUE(shader.compile(RED));
    shader.bind();
    EXPECT_EQ(drawnColour(), RED_PIXEL);
    ASSERT_TRUE(shader.compile(GREEN));
    EXPECT_EQ(programs().size(), 1u);
    shader.bind();
    EXPECT_EQ(drawnColour(), GREEN_PIXEL);
}

// --- drawing with it ---

TEST_F(GLShaderCGGLTest, DoesNotBindWithoutAProgram)
{
    GLShaderCG shader(context(), FRAGMENT);
    EXPECT_THAT(callsOf([&] { shader.bind(); }), IsEmpty());
    EXPECT_THAT(callsOf([&] { shader.unbind(); }), ElementsAre("glDisable(GL_FRAGMENT_PROGRAM_ARB)"));
}

TEST_F(GLShaderCGGLTest, BindsAndUpdatesTheDefaultMatrices)
{
    GLShaderCG shader(context(), VERTEX);
    ASSERT_TRUE(shader.compile(TRANSFORM));
    EXPECT_EQ(namedCallsOf([&] { shader.bind(); }),
        Calls({"glEnable(GL_VERTEX_PROGRAM_ARB)", "cgGLBindProgram(program)"}) + updateCalls({"matMVP"}));
    EXPECT_TRUE(glIsEnabled(GL_VERTEX_PROGRAM_ARB));
    EXPECT_THAT(namedCallsOf([&] { shader.unbind(); }), ElementsAre("glDisable(GL_VERTEX_PROGRAM_ARB)"));
    EXPECT_FALSE(glIsEnabled(GL_VERTEX_PROGRAM_ARB));
}

TEST_F(GLShaderCGGLTest, UpdatesWhatASubclassSaysWhenItIsBound)
{
    class Watched : public GLShaderCG
    {
    public:
        using GLShaderCG::GLShaderCG;
        void updateDefaultMatrices() override { ++updates; }
        int updates = 0;
    };
    Watched watched(context(), FRAGMENT);
    watched.bind();
    EXPECT_EQ(watched.updates, 0) << "there is no program";
    ASSERT_TRUE(watched.compile(RED));
    EXPECT_EQ(watched.updates, 0);
    EXPECT_THAT(namedCallsOf([&] { watched.bind(); }),
        ElementsAre("glEnable(GL_FRAGMENT_PROGRAM_ARB)", "cgGLBindProgram(program)"));
    EXPECT_EQ(watched.updates, 1);
}

TEST_F(GLShaderCGGLTest, DrawsOnlyWhileItIsBound)
{
    GLShaderCG shader(context(), FRAGMENT);
    ASSERT_TRUE(shader.compile(RED));
    EXPECT_EQ(drawnColour(), WHITE_PIXEL);
    shader.bind();
    EXPECT_EQ(drawnColour(), RED_PIXEL);
    shader.unbind();
    EXPECT_EQ(drawnColour(), WHITE_PIXEL);
}

TEST_F(GLShaderCGGLTest, UpdatesMatricesThatAProgramDoesNotDeclareToo)
{
    GLShaderCG shader(context(), FRAGMENT);
    ASSERT_TRUE(shader.compile(RED));
    EXPECT_EQ(namedCallsOf([&] { shader.updateDefaultMatrices(); }), updateCalls({}));
    EXPECT_EQ(drainErrors().size(), 0u);
}

TEST_F(GLShaderCGGLTest, DeliberatelyDoesNotAskForItsProgramElsewhere)
{
    GLShaderCG shader(context(), FRAGMENT);
    Matrix m = UNLIKE_ANY_OTHER;
    const std::string get = "cgGetNamedParameter(null, \"p\")";
    EXPECT_THAT(
        callsOf([&] { shader.setParameter1f("p", 1); }), ElementsAre(get, HasSubstr("cgGLSetParameter1fv(null")));
    EXPECT_THAT(
        callsOf([&] { shader.setParameter3f("p", 1, 2, 3); }), ElementsAre(get, HasSubstr("cgGLSetParameter3fv(null")));
    EXPECT_THAT(callsOf([&] { shader.setParameter4f("p", 1, 2, 3, 4); }),
        ElementsAre(get, HasSubstr("cgGLSetParameter4fv(null")));
    EXPECT_THAT(callsOf([&] {
        shader.setConstant({"p", 0, 2});
    }),
        ElementsAre(get, HasSubstr("cgGLSetParameter2fv(null")));
    EXPECT_THAT(callsOf([&] { shader.setMatrixParameterc("p", m.data()); }),
        ElementsAre(get, HasSubstr("cgGLSetMatrixParameterfc(null")));
    EXPECT_THAT(callsOf([&] { shader.setMatrixParameterr("p", m.data()); }),
        ElementsAre(get, HasSubstr("cgGLSetMatrixParameterfr(null")));
    EXPECT_THAT(callsOf([&] { shader.updateDefaultMatrices(); }), testing::SizeIs(10u));
}

// An error callback of the application's may look at the shader while it compiles.
TEST_F(GLShaderCGGLTest, HasNoProgramWhileItCompiles)
{
    static GLShaderCG* compiling = nullptr;
    static Calls whileCompiling;
    GLShaderCG shader(context(), FRAGMENT);
    ASSERT_TRUE(shader.compile(RED));
    compiling = &shader;
    cgSetErrorCallback([] {
        const CallRecorder recorder;
        compiling->bind();
        whileCompiling = recorder.calls();
        whileCompiling.push_back("asked");
    });
    EXPECT_FALSE(shader.compile(WRONG));
    cgSetErrorCallback(nullptr);
    EXPECT_THAT(whileCompiling, ElementsAre("asked"));
}

// --- the profiles ---

struct ProfileTarget
{
    CGprofile profile;
    const char* name; // or number, as recorded calls have it
    bool ofVertices;
    const char* target;
};

TEST_F(GLShaderCGGLTest, EnablesTheTargetOfItsProfile)
{
    const ProfileTarget table[] = {
        {CG_PROFILE_VP20, "CG_PROFILE_VP20", true, "GL_VERTEX_PROGRAM_ARB"},
        {CG_PROFILE_VP30, "CG_PROFILE_VP30", true, "GL_VERTEX_PROGRAM_ARB"},
        {CG_PROFILE_ARBVP1, "CG_PROFILE_ARBVP1", true, "GL_VERTEX_PROGRAM_ARB"},
        {CG_PROFILE_VP40, "CG_PROFILE_VP40", true, "GL_VERTEX_PROGRAM_ARB"},
        {CG_PROFILE_FP30, "CG_PROFILE_FP30", false, "GL_FRAGMENT_PROGRAM_NV"},
        {CG_PROFILE_FP40, "CG_PROFILE_FP40", false, "GL_FRAGMENT_PROGRAM_ARB"},
        {CG_PROFILE_ARBFP1, "CG_PROFILE_ARBFP1", false, "GL_FRAGMENT_PROGRAM_ARB"},
        {CG_PROFILE_FP20, "CG_PROFILE_FP20", false, "GL_NONE"}, // deliberately
        {CG_PROFILE_GLSLV, "7007", true, "GL_NONE"},
        {CG_PROFILE_GLSLF, "7008", false, "GL_NONE"},
        {CG_PROFILE_GP4VP, "7011", true, "GL_NONE"},
    };
    for (const auto& [profile, name, ofVertices, target] : table) {
        const testing::ScopedTrace trace(__FILE__, __LINE__, cgGetProfileString(profile));
        GLShaderCG shader(context(), profile);
        const std::string& source = ofVertices ? TRANSFORM : RED;
        const Calls compiling = namedCallsOf([&] { ASSERT_TRUE(shader.compile(source)) << shader.getLastError(); });
        EXPECT_THAT(compiling, Contains(HasSubstr(", " + std::string(name) + ", \"main\", null)")));
        const Calls binding = namedCallsOf([&] { shader.bind(); });
        ASSERT_GE(binding.size(), 2u);
        EXPECT_EQ(binding[0], "glEnable(" + std::string(target) + ")");
        EXPECT_EQ(binding[1], "cgGLBindProgram(program)");
        EXPECT_THAT(namedCallsOf([&] { shader.unbind(); }), ElementsAre("glDisable(" + std::string(target) + ")"));
    }
    drainErrors(); // of targets that are none
}

TEST_F(GLShaderCGGLTest, AsksTheRuntimeForTheLatestProfiles)
{
    EXPECT_THAT(callsOf([] { EXPECT_EQ(GLShaderCG::getLatestVSProfile(), cgGLGetLatestProfile(CG_GL_VERTEX)); }),
        ElementsAre("cgGLGetLatestProfile(CG_GL_VERTEX)", "cgGLGetLatestProfile(CG_GL_VERTEX)"));
    EXPECT_THAT(callsOf([] { EXPECT_EQ(GLShaderCG::getLatestPSProfile(), cgGLGetLatestProfile(CG_GL_FRAGMENT)); }),
        ElementsAre("cgGLGetLatestProfile(CG_GL_FRAGMENT)", "cgGLGetLatestProfile(CG_GL_FRAGMENT)"));
    GLShaderCG vertices(context(), GLShaderCG::getLatestVSProfile());
    EXPECT_TRUE(vertices.compile(TRANSFORM)) << vertices.getLastError();
    GLShaderCG fragments(context(), GLShaderCG::getLatestPSProfile());
    EXPECT_TRUE(fragments.compile(RED)) << fragments.getLastError();
}

// --- parameters ---

// A fragment program whose colour is an expression of the uniform parameter p.
class GLShaderCGParameterGLTest : public GLShaderCGGLTest
{
protected:
    void SetUp() override
    {
        GLShaderCGGLTest::SetUp();
        if (!IsSkipped())
            m_Shader.emplace(context(), FRAGMENT);
    }

    void TearDown() override
    {
        m_Shader.reset();
        GLShaderCGGLTest::TearDown();
    }

    void show(const std::string& typeOfP, const std::string& colour)
    {
        ASSERT_TRUE(m_Shader->compile("float4 main(uniform " + typeOfP + " p) : COLOR { return " + colour + "; }"))
            << m_Shader->getLastError();
        m_Shader->bind();
    }

    std::optional<GLShaderCG> m_Shader;
};

TEST_F(GLShaderCGParameterGLTest, SetsOneToFourFloats)
{
    show("float", "float4(p, 0, 0, 1)");
    EXPECT_THAT(namedCallsOf([&] { m_Shader->setParameter1f("p", 0.2f); }),
        ElementsAre("cgGetNamedParameter(program, \"p\")", "cgGLSetParameter1fv(p, (0.2))"));
    EXPECT_EQ(drawnColour(), Pixel({51, 0, 0, 255}));

    show("float2", "float4(p, 0, 1)");
    EXPECT_THAT(namedCallsOf([&] { m_Shader->setParameter2f("p", 0.2f, 0.4f); }),
        ElementsAre("cgGetNamedParameter(program, \"p\")", "cgGLSetParameter2fv(p, (0.2, 0.4))"));
    EXPECT_EQ(drawnColour(), Pixel({51, 102, 0, 255}));

    show("float3", "float4(p, 1)");
    EXPECT_THAT(namedCallsOf([&] { m_Shader->setParameter3f("p", 0.2f, 0.4f, 0.6f); }),
        ElementsAre("cgGetNamedParameter(program, \"p\")", "cgGLSetParameter3fv(p, (0.2, 0.4, 0.6))"));
    EXPECT_EQ(drawnColour(), Pixel({51, 102, 153, 255}));

    show("float4", "p");
    EXPECT_THAT(namedCallsOf([&] { m_Shader->setParameter4f("p", 0.2f, 0.4f, 0.6f, 0.8f); }),
        ElementsAre("cgGetNamedParameter(program, \"p\")", "cgGLSetParameter4fv(p, (0.2, 0.4, 0.6, 0.8))"));
    EXPECT_EQ(drawnColour(), Pixel({51, 102, 153, 204}));
}

TEST_F(GLShaderCGParameterGLTest, SetsAsManyFloatsAsItIsTold)
{
    show("float4", "p");
    const std::array<float, 5> v{0.2f, 0.4f, 0.6f, 0.8f, 1};
    const auto set = [&](unsigned int n) { return namedCallsOf([&] { m_Shader->setParameterxf("p", n, v.data()); }); };
    const std::string name = "cgGetNamedParameter(program, \"p\")";
    EXPECT_THAT(set(1), ElementsAre(name, "cgGLSetParameter1fv(p, (0.2))"));
    EXPECT_THAT(set(2), ElementsAre(name, "cgGLSetParameter2fv(p, (0.2, 0.4))"));
    EXPECT_THAT(set(3), ElementsAre(name, "cgGLSetParameter3fv(p, (0.2, 0.4, 0.6))"));
    EXPECT_THAT(set(4), ElementsAre(name, "cgGLSetParameter4fv(p, (0.2, 0.4, 0.6, 0.8))"));
    EXPECT_EQ(drawnColour(), Pixel({51, 102, 153, 204}));
    EXPECT_THAT(set(0), IsEmpty());
    EXPECT_THAT(set(5), IsEmpty());
    EXPECT_EQ(drawnColour(), Pixel({51, 102, 153, 204}));
}

TEST_F(GLShaderCGParameterGLTest, SetsConstantsByTheirNames)
{
    show("float4", "p");
    std::vector<ShaderConstant> constants{{"p", 9, 1}, {"p", 9, 2}, {"p", 9, 3}, {"p", 9, 4}, {"p", 9, 5}};
    for (ShaderConstant& constant : constants) {
        for (int i = 0; i < constant.getNumComponents(); ++i)
            constant.setData(static_cast<unsigned int>(i), 0.2f * static_cast<float>(i + 1));
    }
    const std::string name = "cgGetNamedParameter(program, \"p\")";
    EXPECT_THAT(namedCallsOf([&] { m_Shader->setConstants(constants); }),
        ElementsAre(name, "cgGLSetParameter1fv(p, (0.2))", name, "cgGLSetParameter2fv(p, (0.2, 0.4))", name,
            "cgGLSetParameter3fv(p, (0.2, 0.4, 0.6))", name, "cgGLSetParameter4fv(p, (0.2, 0.4, 0.6, 0.8))"));
    EXPECT_EQ(drawnColour(), Pixel({51, 102, 153, 204}));
    EXPECT_THAT(callsOf([&] { EXPECT_THROW(m_Shader->setConstant({"p", 0, 0}), std::out_of_range); }), IsEmpty());
}

TEST_F(GLShaderCGParameterGLTest, LeavesUnknownParametersToTheRuntimesErrors)
{
    show("float4", "p");
    cgGetError();
    EXPECT_THAT(namedCallsOf([&] { m_Shader->setParameter1f("q", 1); }),
        ElementsAre("cgGetNamedParameter(program, \"q\")", "cgGLSetParameter1fv(null, (1))"));
    EXPECT_NE(cgGetError(), CG_NO_ERROR);
}

// How the elements of a matrix, from -8 to 8, appear in a colour.
const std::string ELEMENTS_AS_COLOUR = " / 16 + 0.5";

class GLShaderCGMatrixGLTest : public GLShaderCGParameterGLTest
{
protected:
    // Row by row, what the program sees in its uniform float4x4 of that name.
    using Rows = std::array<std::array<float, 4>, 4>;
    template <typename SetMatrix>
    Rows seenRows(const std::string& name, SetMatrix setMatrix)
    {
        const std::string source = "float4 main(uniform float4x4 " + name +
                                   ", uniform float4 row) : COLOR { return mul(row, " + name + ")" +
                                   ELEMENTS_AS_COLOUR + "; }";
        EXPECT_TRUE(m_Shader->compile(source)) << m_Shader->getLastError();
        setMatrix();
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();

        Rows rows{};
        for (std::size_t row = 0; row < 4; ++row) {
            m_Shader->setParameter4f("row", row == 0, row == 1, row == 2, row == 3);
            const Pixel colour = drawnColour();
            for (std::size_t column = 0; column < 4; ++column)
                rows[row][column] = (static_cast<float>(colour[column]) / 255 - 0.5f) * 16;
        }
        return rows;
    }

    static void expectRows(const Rows& seen, const Rows& expected)
    {
        constexpr float colourStep = 16.0f / 255;
        for (std::size_t row = 0; row < 4; ++row) {
            EXPECT_THAT(seen[row], testing::Pointwise(testing::FloatNear(colourStep), expected[row])) << "row " << row;
        }
    }
};

TEST_F(GLShaderCGMatrixGLTest, GivesAProgramTheMatricesOfGL)
{
    // Scaled, turned by 90 degrees about the z axis, and moved, so that each transform of it looks different.
    const auto bindUnderMatrices = [this] {
        constexpr Matrix modelview{0, 2, 0, 0, -4, 0, 0, 0, 0, 0, 0.5f, 0, 1, 2, 3, 1};
        glMatrixMode(GL_PROJECTION);
        glScalef(0.5f, 1, 2);
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixf(modelview.data());
        m_Shader->bind();
    };
    expectRows(seenRows("matMV", bindUnderMatrices), {{{0, -4, 0, 1}, {2, 0, 0, 2}, {0, 0, 0.5f, 3}, {0, 0, 0, 1}}});
    expectRows(seenRows("matMVP", bindUnderMatrices), {{{0, -2, 0, 0.5f}, {2, 0, 0, 2}, {0, 0, 1, 6}, {0, 0, 0, 1}}});
    expectRows(seenRows("matMVinv", bindUnderMatrices),
        {{{0, 0.5f, 0, -1}, {-0.25f, 0, 0, 0.25f}, {0, 0, 2, -6}, {0, 0, 0, 1}}});
    expectRows(seenRows("matMVinvtrans", bindUnderMatrices),
        {{{0, -0.25f, 0, 0}, {0.5f, 0, 0, 0}, {0, 0, 2, 0}, {-1, 0.25f, -6, 1}}});
    expectRows(
        seenRows("matMVtrans", bindUnderMatrices), {{{0, 2, 0, 0}, {-4, 0, 0, 0}, {0, 0, 0.5f, 0}, {1, 2, 3, 1}}});
}

TEST_F(GLShaderCGMatrixGLTest, KeepsMatricesUntilTheyAreUpdated)
{
    const Rows updated = seenRows("matMV", [this] {
        m_Shader->bind();
        glTranslatef(5, 0, 0);
        m_Shader->updateDefaultMatrices();
    });
    expectRows(updated, {{{1, 0, 0, 5}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
    const Rows kept = seenRows("matMV", [this] {
        m_Shader->bind();
        glTranslatef(5, 0, 0);
    });
    expectRows(kept, {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
}

TEST_F(GLShaderCGMatrixGLTest, TakesMatricesInBothOrders)
{
    Matrix m{0, 1, 2, 3, 4, 5, 6, 7, -1, -2, -3, -4, -5, -6, -7, 0.5f};
    const Rows byColumns{{{0, 4, -1, -5}, {1, 5, -2, -6}, {2, 6, -3, -7}, {3, 7, -4, 0.5f}}};
    const Rows byRows{{{0, 1, 2, 3}, {4, 5, 6, 7}, {-1, -2, -3, -4}, {-5, -6, -7, 0.5f}}};
    const std::string elements = "(0, 1, 2, 3, 4, 5, 6, 7, -1, -2, -3, -4, -5, -6, -7, 0.5)";
    const std::string name = "cgGetNamedParameter(program, \"m\")";

    expectRows(seenRows("m",
                   [&] {
                       m_Shader->bind();
                       EXPECT_THAT(namedCallsOf([&] { m_Shader->setMatrixParameterc("m", m.data()); }),
                           ElementsAre(name, "cgGLSetMatrixParameterfc(m, " + elements + ")"));
                   }),
        byColumns);
    expectRows(seenRows("m",
                   [&] {
                       m_Shader->bind();
                       EXPECT_THAT(namedCallsOf([&] { m_Shader->setMatrixParameterr("m", m.data()); }),
                           ElementsAre(name, "cgGLSetMatrixParameterfr(m, " + elements + ")"));
                   }),
        byRows);
    expectRows(seenRows("m",
                   [&] {
                       m_Shader->bind();
                       EXPECT_THAT(namedCallsOf([&] { m_Shader->setMatrix4f("m", 7, m.data()); }),
                           ElementsAre(name, "cgGLSetMatrixParameterfc(m, " + elements + ")"));
                   }),
        byColumns);
}

// --- lifetimes ---

TEST_F(GLShaderCGGLTest, DestroysItsProgramWhenItDies)
{
    auto shader = std::make_unique<GLShaderCG>(context(), FRAGMENT);
    ASSERT_TRUE(shader->compile(RED));
    const GLuint name = cgGLGetProgramID(programs().at(0));
    EXPECT_TRUE(glIsProgramARB(name));
    EXPECT_THAT(
        namedCallsOf([&] { shader.reset(); }), ElementsAre("cgIsProgram(program)", "cgDestroyProgram(program)"));
    EXPECT_THAT(programs(), IsEmpty());
    EXPECT_FALSE(glIsProgramARB(name));
    EXPECT_THAT(callsOf([this] { destroyContext(); }), IsEmpty());
}

TEST_F(GLShaderCGGLTest, DiesWithoutAProgramToo)
{
    auto shader = std::make_unique<GLShaderCG>(context(), FRAGMENT);
    EXPECT_THAT(callsOf([&] { shader.reset(); }), ElementsAre("cgIsProgram(null)"));
    shader = std::make_unique<GLShaderCG>(context(), FRAGMENT);
    EXPECT_THAT(callsOf([this] { destroyContext(); }), ElementsAre("cgIsProgram(null)"));
}

TEST_F(GLShaderCGGLTest, DestroysItsProgramOnceWhenItsContextDiesFirst)
{
    auto shader = std::make_unique<GLShaderCG>(context(), FRAGMENT);
    ASSERT_TRUE(shader->compile(RED));
    EXPECT_THAT(
        namedCallsOf([this] { destroyContext(); }), ElementsAre("cgIsProgram(program)", "cgDestroyProgram(program)"));
    EXPECT_THAT(programs(), IsEmpty());
    EXPECT_FALSE(shader->isValid());
    EXPECT_THAT(callsOf([&] { shader.reset(); }), IsEmpty());
}

TEST_F(GLShaderCGGLTest, DestroysItsProgramAtOnceEvenIfItsContextIsNotActive)
{
    auto shader = std::make_unique<GLShaderCG>(context(), FRAGMENT);
    ASSERT_TRUE(shader->compile(RED));
    const GLuint name = cgGLGetProgramID(programs().at(0));
    context()->deactivate();
    EXPECT_THAT(
        namedCallsOf([&] { shader.reset(); }), ElementsAre("cgIsProgram(program)", "cgDestroyProgram(program)"));
    EXPECT_THAT(programs(), IsEmpty());
    mainContext().makeCurrent();
    EXPECT_TRUE(glIsProgramARB(name)) << "the runtime could not delete it";
}

TEST_F(GLShaderCGGLTest, TakesTheNameFromWhateverContextIsCurrentWhenItDies)
{
    constexpr unsigned int target = GL_FRAGMENT_PROGRAM_ARB;
    std::optional<GLShaderCG> shader(std::in_place, context(), FRAGMENT);
    ASSERT_TRUE(shader->compile(RED));
    shader->bind();
    int bound = 0;
    glGetProgramivARB(target, GL_PROGRAM_BINDING_ARB, &bound);
    const auto name = static_cast<unsigned int>(bound);
    shader->unbind();

    const auto native = makeUnsharedContext();
    native->makeCurrent();
    glBindProgramARB(target, name); // makes one of the same name
    ASSERT_TRUE(glIsProgramARB(name));
    shader.reset();
    EXPECT_FALSE(glIsProgramARB(name)) << "the other context's";
    mainContext().makeCurrent();
    EXPECT_TRUE(glIsProgramARB(name)) << "its own";
}

TEST_F(GLShaderCGGLTest, LivesOnInTheRootWhenItsChildContextDies)
{
    const auto native = makeSharedContext();
    auto child = std::make_unique<GLContext>(native->getDC(), native->getRC(), context(), nullptr);
    GLShaderCG shader(child.get(), FRAGMENT);
    ASSERT_TRUE(shader.compile(RED));
    child.reset();
    EXPECT_TRUE(shader.isValid());
    shader.bind();
    EXPECT_EQ(drawnColour(), RED_PIXEL);
    EXPECT_TRUE(shader.compile(GREEN));
}

TEST_F(GLShaderCGGLTest, RefusesToCompileWithoutItsContext)
{
    GLShaderCG shader(context(), FRAGMENT);
    ASSERT_FALSE(shader.compile(WRONG));
    const std::string listing = shader.getLastError();
    destroyContext();
    EXPECT_THAT(callsOf([&] {
        EXPECT_EQ(messageOf([&] { shader.compile(RED); }), "GLShaderCG::compile() - invalid context");
        EXPECT_EQ(messageOf([&] { shader.onDeleteContext(); }), "GLShaderCG::onDeleteContext() - invalid context");
    }),
        IsEmpty());
    EXPECT_EQ(shader.getLastError(), listing);
}

TEST_F(GLShaderCGGLTest, DeliberatelyDoesNotAskForItsContextElsewhere)
{
    GLShaderCG shader(context(), FRAGMENT);
    ASSERT_TRUE(shader.compile(RED));
    CallRecorder recorder;
    recorder.namePointer(programs().at(0), "program");
    destroyContext();
    recorder.clear();

    Matrix m = UNLIKE_ANY_OTHER;
    shader.bind();
    shader.unbind();
    EXPECT_EQ(recorder.calls(), Calls({"glEnable(GL_FRAGMENT_PROGRAM_ARB)", "cgGLBindProgram(program)"}) +
                                    updateCalls({}) + Calls({"glDisable(GL_FRAGMENT_PROGRAM_ARB)"}));
    recorder.clear();
    shader.setParameter1f("p", 1);
    shader.setConstant({"p", 0, 2});
    shader.setMatrix4f("p", 0, m.data());
    EXPECT_EQ(recorder.calls().size(), 6u) << "each asks the program that is gone for its parameter, and sets that";
}

TEST_F(GLShaderCGGLTest, LeavesNothingInTheCgContext)
{
    constexpr unsigned int numShaders = 8;
    std::vector<std::unique_ptr<GLShaderCG>> shaders;
    for (unsigned int i = 0; i < numShaders; ++i) {
        shaders.push_back(std::make_unique<GLShaderCG>(context(), i % 2 ? FRAGMENT : VERTEX));
        ASSERT_TRUE(shaders.back()->compile(i % 2 ? RED : TRANSFORM));
    }
    EXPECT_EQ(programs().size(), numShaders);
    shaders[1]->compile(GREEN);
    EXPECT_EQ(programs().size(), numShaders);
    shaders[3]->compile(WRONG);
    EXPECT_EQ(programs().size(), numShaders - 1);
    shaders[3]->compile(GREEN);
    shaders[0].reset();
    shaders[5].reset();
    EXPECT_EQ(programs().size(), numShaders - 2);
    destroyContext();
    EXPECT_THAT(programs(), IsEmpty());
    shaders.clear();
    EXPECT_THAT(programs(), IsEmpty());
}

TEST_F(GLShaderCGGLTest, CopiesShareTheProgramAndAreNotRegistered)
{
    auto original = std::make_unique<GLShaderCG>(context(), FRAGMENT);
    ASSERT_TRUE(original->compile(RED));
    std::optional<GLShaderCG> copy;
    EXPECT_THAT(callsOf([&] { copy.emplace(*original); }), IsEmpty());
    EXPECT_EQ(programs().size(), 1u);
    copy->bind();
    EXPECT_EQ(drawnColour(), RED_PIXEL);
    copy->unbind();

    EXPECT_THAT(
        namedCallsOf([this] { destroyContext(); }), ElementsAre("cgIsProgram(program)", "cgDestroyProgram(program)"))
        << "one object was told";
    EXPECT_FALSE(original->isValid());
    EXPECT_TRUE(copy->isValid()) << "the copy was not";

    *copy = *original;
    EXPECT_FALSE(copy->isValid());
    EXPECT_THAT(callsOf([&] {
        original.reset();
        copy.reset();
    }),
        IsEmpty())
        << "nothing is freed twice";
}

TEST_F(GLShaderCGGLTest, ACopyDoesNotDestroyAProgramThatIsGone)
{
    GLShaderCG original(context(), FRAGMENT);
    ASSERT_TRUE(original.compile(RED));
    GLShaderCG copy(original);
    ASSERT_FALSE(original.compile(WRONG));
    EXPECT_THAT(callsOf([&] { EXPECT_TRUE(copy.compile(GREEN)); }), Not(Contains(HasSubstr("cgDestroyProgram"))));
    EXPECT_EQ(programs().size(), 1u);

    original = copy; // and now only one of them must free it
    destroyContext();
    EXPECT_THAT(programs(), IsEmpty());
    copy = original;
}

// --- a whole picture ---

// Uses each of the default matrices for what it is good for.
const std::string MOVED_AND_LIT = R"(
void main(float4 position : POSITION, float3 normal : NORMAL,
    uniform float4x4 matMVP, uniform float4x4 matMV, uniform float4x4 matMVinv, uniform float4x4 matMVinvtrans,
    uniform float4x4 matMVtrans, uniform float4 light,
    out float4 clipPosition : POSITION, out float3 eyePosition : TEXCOORD0, out float3 eyeNormal : TEXCOORD1,
    out float facing : TEXCOORD2, out float height : TEXCOORD3)
{
    clipPosition = mul(matMVP, position);
    eyePosition = mul(matMV, position).xyz;
    eyeNormal = mul(matMVinvtrans, float4(normal, 0)).xyz;
    // How much the surface faces the viewer, as seen from the object.
    float3 viewer = mul(matMVinv, float4(0, 0, 0, 1)).xyz;
    facing = dot(normal, normalize(viewer - position.xyz));
    // How high the point lies above the object's middle, in the direction of the light.
    height = dot(position.xyz, mul(matMVtrans, float4(light.xyz, 0)).xyz);
})";

// Lit, with a dark rim, and with bands across the light, in the colours that one matrix or the other makes.
const std::string COLOURED = R"(
float4 main(float3 eyePosition : TEXCOORD0, float3 eyeNormal : TEXCOORD1, float facing : TEXCOORD2,
    float height : TEXCOORD3, uniform float4 light, uniform float4 colour, uniform float shininess,
    uniform float4x4 oneWay, uniform float4x4 otherWay) : COLOR
{
    float3 normal = normalize(eyeNormal);
    float3 halfway = normalize(light.xyz - normalize(eyePosition));
    float4 lighting = lit(dot(normal, light.xyz), dot(normal, halfway), shininess);
    float4 base = frac(3 * height) > 0.5 ? mul(oneWay, colour) : mul(otherWay, colour);
    float3 shaded = base.rgb * (0.25 + 0.65 * lighting.y) * smoothstep(0.1, 0.5, facing) + 0.5 * lighting.z;
    return float4(shaded, 1);
})";

TEST_F(GLShaderCGGLTest, LightsAnObject)
{
    GLShaderCG vertices(context(), VERTEX);
    GLShaderCG fragments(context(), FRAGMENT);
    ASSERT_TRUE(vertices.compile(MOVED_AND_LIT)) << vertices.getLastError();
    ASSERT_TRUE(fragments.compile(COLOURED)) << fragments.getLastError();

    glMatrixMode(GL_PROJECTION);
    gluPerspective(40, 1, 1, 10);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(0, 0, -4);
    glRotatef(-30, 0, 0, 1);
    glScalef(1.2f, 0.7f, 1);
    vertices.bind();
    fragments.bind();
    for (GLShaderCG* shader : {&vertices, &fragments})
        shader->setParameter4f("light", 0.48f, 0.64f, 0.6f, 0);
    fragments.setParameter4f("colour", 1, 0.5f, 0.2f, 1);
    fragments.setParameter1f("shininess", 30);
    // Red to green, green to blue and blue to red; and the other way round.
    Matrix shiftColours{0, 1, 0, 0, 0, 0, 1, 0, 1, 0, 0, 0, 0, 0, 0, 1};
    fragments.setMatrixParameterc("oneWay", shiftColours.data());
    fragments.setMatrixParameterr("otherWay", shiftColours.data());
    drawBall();
    fragments.unbind();
    vertices.unbind();
    EXPECT_EQ(cgGetError(), CG_INVALID_PARAM_HANDLE_ERROR) << "of matrices that the fragment program does not declare";
    EXPECT_TRUE(matchesReference(readPixels(), "GLShaderCG/litObject", {.perChannel = 2, .differingPixels = 0.01}));
}

} // namespace
} // namespace tavo
