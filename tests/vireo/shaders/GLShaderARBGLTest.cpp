#include <algorithm>
#include <gmock/gmock.h>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "tavo/base/objects/PException.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/PictureComparison.h"
#include "tests/support/extensions.h"
#include "tests/tavo/base/objects/messageOf.h"
#include "tests/vireo/PrivateMember.h"
#include "tests/vireo/shaders/ShaderTest.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/shaders/GLShaderARB.h"
#include "vireo/shaders/ShaderConstant.h"

namespace tavo {

struct ShaderTarget
{
    friend auto memberOf(ShaderTarget);
};
template struct PrivateMember<ShaderTarget, &GLShaderARB::target>;

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr unsigned int VERTEX = GL_VERTEX_PROGRAM_ARB;
constexpr unsigned int FRAGMENT = GL_FRAGMENT_PROGRAM_ARB;

const std::string RED = "!!ARBfp1.0\nMOV result.color, {1, 0, 0, 1};\nEND";
const std::string GREEN = "!!ARBfp1.0\nMOV result.color, {0, 1, 0, 1};\nEND";
// What is wrong is the word "nowhere". Mesa says where it ends, with the header as one character and each end of a line
// as two: here that comes out as where it begins.
const std::string WRONG = "!!ARBfp1.0\nTEMP unused;\nMOV result.color, nowhere;\nEND";

unsigned int boundProgram(unsigned int target)
{
    const CallRecorder::Pause ownCalls;
    int name = 0;
    glGetProgramivARB(target, GL_PROGRAM_BINDING_ARB, &name);
    return static_cast<unsigned int>(name);
}

using Vector = std::array<float, 4>;

Vector localParameter(unsigned int target, unsigned int index)
{
    Vector value{};
    glGetProgramLocalParameterfvARB(target, index, value.data());
    return value;
}

Vector globalParameter(unsigned int target, unsigned int index)
{
    Vector value{};
    glGetProgramEnvParameterfvARB(target, index, value.data());
    return value;
}

std::string withName(const std::string& before, unsigned int name, const std::string& after)
{
    return before + std::to_string(name) + after;
}

std::string bindCall(const std::string& target, unsigned int name)
{
    return withName("glBindProgramARB(" + target + ", ", name, ")");
}

std::string deleteCall(unsigned int name)
{
    return withName("glDeleteProgramsARB(1, (", name, "))");
}

class GLShaderARBGLTest : public ShaderTest
{
protected:
    void SetUp() override
    {
        ShaderTest::SetUp();
        if (IsSkipped())
            return;
        NEEDS_EXTENSION("GL_ARB_vertex_program");
        NEEDS_EXTENSION("GL_ARB_fragment_program");
    }

    // The GL name of a program; it is bound afterwards.
    static unsigned int nameOf(GLShaderARB& shader, unsigned int target)
    {
        const CallRecorder::Pause ownCalls;
        shader.bind();
        shader.unbind();
        return boundProgram(target);
    }

    static bool isProgram(unsigned int name)
    {
        const CallRecorder::Pause ownCalls;
        return glIsProgramARB(name) == GL_TRUE;
    }
};

// --- construction ---

TEST_F(GLShaderARBGLTest, MakesItsNameAndBindsNothing)
{
    std::optional<GLShaderARB> shader;
    EXPECT_THAT(callsOf([&] { shader.emplace(context(), VERTEX); }), ElementsAre("glGenProgramsARB(1, ptr)"));
    EXPECT_EQ(boundProgram(VERTEX), 0u);
    EXPECT_EQ(shader->getLastError(), "");
    EXPECT_EQ(shader->getLastErrorPosition(), -1);
    EXPECT_TRUE(shader->isValid());
}

TEST_F(GLShaderARBGLTest, HasANameOfItsOwn)
{
    GLShaderARB one(context(), FRAGMENT);
    GLShaderARB other(context(), FRAGMENT);
    EXPECT_NE(nameOf(one, FRAGMENT), 0u);
    EXPECT_NE(nameOf(one, FRAGMENT), nameOf(other, FRAGMENT));
}

// --- compiling ---

TEST_F(GLShaderARBGLTest, CompilesAndLeavesTheProgramBound)
{
    GLShaderARB shader(context(), FRAGMENT);
    const unsigned int name = nameOf(shader, FRAGMENT);
    glBindProgramARB(FRAGMENT, 0);
    EXPECT_THAT(callsOf([&] { EXPECT_TRUE(shader.compile(RED)); }),
        ElementsAre(bindCall("GL_FRAGMENT_PROGRAM_ARB", name), "glGetError()",
            "glProgramStringARB(GL_FRAGMENT_PROGRAM_ARB, GL_PROGRAM_FORMAT_ASCII_ARB, 46, "
            "\"!!ARBfp1.0\\nMOV result.color, {1, 0, 0, 1};\\nEND\")",
            "glGetError()"));
    EXPECT_EQ(boundProgram(FRAGMENT), name);
    EXPECT_FALSE(glIsEnabled(FRAGMENT));
    EXPECT_EQ(shader.getLastError(), "");
    EXPECT_EQ(shader.getLastErrorPosition(), -1);
}

TEST_F(GLShaderARBGLTest, TellsWhatIsWrongAndWhere)
{
    GLShaderARB shader(context(), FRAGMENT);
    const unsigned int name = nameOf(shader, FRAGMENT);
    glBindProgramARB(FRAGMENT, 0);
    EXPECT_THAT(callsOf([&] { EXPECT_FALSE(shader.compile(WRONG)); }),
        ElementsAre(bindCall("GL_FRAGMENT_PROGRAM_ARB", name), "glGetError()",
            testing::StartsWith("glProgramStringARB("), "glGetError()", "glGetString(GL_PROGRAM_ERROR_STRING_ARB)",
            "glGetIntegerv(GL_PROGRAM_ERROR_POSITION_ARB, ptr)"));
    EXPECT_EQ(boundProgram(FRAGMENT), name);
    EXPECT_FALSE(glIsEnabled(FRAGMENT));
    EXPECT_NE(shader.getLastError(), "");
    EXPECT_EQ(shader.getLastError(), reinterpret_cast<const char*>(glGetString(GL_PROGRAM_ERROR_STRING_ARB)));
    EXPECT_EQ(shader.getLastErrorPosition(), WRONG.find("nowhere"));
}

// What docs/shaders.md says of Mesa.
TEST_F(GLShaderARBGLTest, PassesOnWhatMesaCounts)
{
    if (std::string_view(reinterpret_cast<const char*>(glGetString(GL_VERSION))).find("Mesa") == std::string_view::npos)
        GTEST_SKIP() << "the driver is not Mesa";
    const std::string header = "!!ARBfp1.0";
    const std::string wrong = "nowhere";
    for (const char* const between :
        {" MOV result.color, ", "   MOV\tresult.color,   ", "\nMOV result.color, ", "\n\n\n\nMOV result.color, ",
            "\n# a comment\nMOV result.color, ", "\nTEMP a;\nMOV result.color, a;\n  "}) {
        const std::string start = header + between;
        GLShaderARB shader(context(), FRAGMENT);
        EXPECT_FALSE(shader.compile(start + wrong + ";\nEND"));

        const auto numLineEnds = std::count(start.begin(), start.end(), '\n');
        const auto length = static_cast<int>(start.size() + wrong.size());
        EXPECT_EQ(shader.getLastErrorPosition(), length - static_cast<int>(header.size()) + 1 + numLineEnds) << start;
        const std::size_t column = start.size() - (start.rfind('\n') + 1) + 1;
        EXPECT_THAT(shader.getLastError(),
            testing::StartsWith("line " + std::to_string(1 + numLineEnds) + ", char " + std::to_string(column) + ":"));
    }
}

TEST_F(GLShaderARBGLTest, ForgetsAnErrorOnceAProgramIsGood)
{
    GLShaderARB shader(context(), FRAGMENT);
    EXPECT_FALSE(shader.compile("rubbish"));
    EXPECT_NE(shader.getLastErrorPosition(), -1);
    EXPECT_NE(shader.getLastError(), "");
    EXPECT_TRUE(shader.compile(GREEN));
    EXPECT_EQ(shader.getLastErrorPosition(), -1);
    EXPECT_EQ(shader.getLastError(), "");
}

TEST_F(GLShaderARBGLTest, PassesTheWholeSourceOnWhateverItsCharacters)
{
    GLShaderARB shader(context(), FRAGMENT);
    const std::string source = RED + std::string("\0 after the end", 15);
    std::string given;
    for (const std::string& call : callsOf([&] { shader.compile(source); }))
        if (call.starts_with("glProgramStringARB"))
            given = call;
    EXPECT_THAT(given, testing::StartsWith(withName("glProgramStringARB(GL_FRAGMENT_PROGRAM_ARB, "
                                                    "GL_PROGRAM_FORMAT_ASCII_ARB, ",
                           static_cast<unsigned int>(source.size()), ",")));
    EXPECT_THAT(given, testing::HasSubstr(std::string("END\0 after the end", 18)));
}

TEST_F(GLShaderARBGLTest, ReplacesTheProgramOfTheSameName)
{
    GLShaderARB shader(context(), FRAGMENT);
    ASSERT_TRUE(shader.compile(RED));
    const unsigned int name = boundProgram(FRAGMENT);
    shader.bind();
    EXPECT_EQ(drawnColour(), RED_PIXEL);
    ASSERT_TRUE(shader.compile(GREEN));
    EXPECT_EQ(boundProgram(FRAGMENT), name);
    EXPECT_EQ(drawnColour(), GREEN_PIXEL);
}

TEST_F(GLShaderARBGLTest, DoesNotTakeAPendingErrorForTheSources)
{
    GLShaderARB shader(context(), FRAGMENT);
    glEnd(); // without glBegin: GL_INVALID_OPERATION
    EXPECT_TRUE(shader.compile(GREEN));
    EXPECT_THAT(drainErrors(), IsEmpty());
}

TEST_F(GLShaderARBGLTest, TakesTheSourcesErrorFromTheQueue)
{
    GLShaderARB shader(context(), FRAGMENT);
    EXPECT_FALSE(shader.compile(WRONG));
    EXPECT_THAT(drainErrors(), IsEmpty());
}

TEST_F(GLShaderARBGLTest, DeliberatelyTakesOtherErrorsForSuccess)
{
    // A shader that has failed before, and then has a target that is none.
    GLShaderARB failed(context(), FRAGMENT);
    ASSERT_FALSE(failed.compile(WRONG));
    constexpr unsigned int noProgramTarget = GL_TEXTURE_2D;
    failed.*memberOf(ShaderTarget()) = noProgramTarget;
    EXPECT_TRUE(failed.compile(WRONG)) << "GL_INVALID_ENUM";
    EXPECT_EQ(failed.getLastError(), "");
    EXPECT_EQ(failed.getLastErrorPosition(), -1);
    EXPECT_THAT(drainErrors(), IsEmpty());
}

// --- drawing with it ---

TEST_F(GLShaderARBGLTest, BindsAndUnbinds)
{
    GLShaderARB shader(context(), VERTEX);
    const unsigned int name = nameOf(shader, VERTEX);
    glBindProgramARB(VERTEX, 0);
    for (int time = 0; time < 2; ++time) {
        EXPECT_THAT(callsOf([&] { shader.bind(); }),
            ElementsAre("glEnable(GL_VERTEX_PROGRAM_ARB)", bindCall("GL_VERTEX_PROGRAM_ARB", name)));
        EXPECT_TRUE(glIsEnabled(VERTEX));
        EXPECT_EQ(boundProgram(VERTEX), name);
    }
    EXPECT_THAT(callsOf([&] { shader.unbind(); }), ElementsAre("glDisable(GL_VERTEX_PROGRAM_ARB)"));
    EXPECT_FALSE(glIsEnabled(VERTEX));
    EXPECT_EQ(boundProgram(VERTEX), name);
}

TEST_F(GLShaderARBGLTest, DrawsOnlyWhileItIsBound)
{
    GLShaderARB shader(context(), FRAGMENT);
    ASSERT_TRUE(shader.compile(RED));
    EXPECT_EQ(drawnColour(), WHITE_PIXEL);
    shader.bind();
    EXPECT_EQ(drawnColour(), RED_PIXEL);
    shader.unbind();
    EXPECT_EQ(drawnColour(), WHITE_PIXEL);
}

TEST_F(GLShaderARBGLTest, BindsWithoutUpdatingDefaultMatrices)
{
    class Watched : public GLShaderARB
    {
    public:
        using GLShaderARB::GLShaderARB;
        void updateDefaultMatrices() override { ADD_FAILURE() << "updated"; }
    };
    Watched watched(context(), VERTEX);
    watched.bind();
    watched.unbind();
    GLShaderARB shader(context(), VERTEX);
    EXPECT_THAT(callsOf([&] { shader.updateDefaultMatrices(); }), IsEmpty());
}

TEST_F(GLShaderARBGLTest, PassesOtherTargetsOn)
{
    GLShaderARB shader(context(), GL_FRAGMENT_PROGRAM_NV);
    Vector v{1, 2, 3, 4};
    const std::vector<std::string> calls = callsOf([&] {
        shader.bind();
        shader.compile(RED);
        shader.setLocalParameter4f(0, 1, 2, 3, 4);
        shader.setLocalParameter4fv(0, v.data());
        shader.setGlobalParameter4f(0, 1, 2, 3, 4);
        shader.setGlobalParameter4fv(0, v.data());
        shader.setConstant({"", 0, 1});
        shader.unbind();
    });
    unsigned int passed = 0;
    for (const std::string& call : calls)
        passed += call.find("(GL_FRAGMENT_PROGRAM_NV") != call.npos;
    EXPECT_EQ(passed, calls.size() - 2) << "all but the two glGetError: " << testing::PrintToString(calls);
    drainErrors(); // not every driver knows the target
}

// --- parameters ---

TEST_F(GLShaderARBGLTest, SetsLocalParameters)
{
    GLShaderARB shader(context(), FRAGMENT);
    ASSERT_TRUE(shader.compile(RED));
    Vector v{5, 6, 7, 8};
    EXPECT_THAT(callsOf([&] { shader.setLocalParameter4f(3, 1, 2, 3, 4); }),
        ElementsAre("glProgramLocalParameter4fARB(GL_FRAGMENT_PROGRAM_ARB, 3, 1, 2, 3, 4)"));
    EXPECT_THAT(callsOf([&] { shader.setLocalParameter4fv(4, v.data()); }),
        ElementsAre("glProgramLocalParameter4fvARB(GL_FRAGMENT_PROGRAM_ARB, 4, (5, 6, 7, 8))"));
    EXPECT_THAT(localParameter(FRAGMENT, 3), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(localParameter(FRAGMENT, 4), ElementsAre(5, 6, 7, 8));
}

TEST_F(GLShaderARBGLTest, SetsLocalParametersOfTheProgramThatIsBound)
{
    GLShaderARB one(context(), FRAGMENT);
    GLShaderARB other(context(), FRAGMENT);
    one.bind();
    other.bind();
    one.setLocalParameter4f(0, 1, 2, 3, 4);
    EXPECT_THAT(localParameter(FRAGMENT, 0), ElementsAre(1, 2, 3, 4));
    one.bind();
    EXPECT_THAT(localParameter(FRAGMENT, 0), ElementsAre(0, 0, 0, 0));
}

TEST_F(GLShaderARBGLTest, SetsGlobalParametersOfTheTarget)
{
    GLShaderARB shader(context(), VERTEX);
    Vector v{5, 6, 7, 8};
    EXPECT_THAT(callsOf([&] { shader.setGlobalParameter4f(3, 1, 2, 3, 4); }),
        ElementsAre("glProgramEnvParameter4fARB(GL_VERTEX_PROGRAM_ARB, 3, 1, 2, 3, 4)"));
    EXPECT_THAT(callsOf([&] { shader.setGlobalParameter4fv(4, v.data()); }),
        ElementsAre("glProgramEnvParameter4fvARB(GL_VERTEX_PROGRAM_ARB, 4, (5, 6, 7, 8))"));
    EXPECT_THAT(globalParameter(VERTEX, 3), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(globalParameter(VERTEX, 4), ElementsAre(5, 6, 7, 8));
    EXPECT_THAT(globalParameter(FRAGMENT, 3), ElementsAre(0, 0, 0, 0));
}

TEST_F(GLShaderARBGLTest, FillsConstantsUpWithZeros)
{
    GLShaderARB shader(context(), FRAGMENT);
    ASSERT_TRUE(shader.compile(RED));
    std::vector<ShaderConstant> constants{{"x", 9, 1}, {"xy", 8, 2}, {"xyz", 7, 3}, {"xyzw", 6, 4}};
    for (ShaderConstant& constant : constants) {
        shader.setLocalParameter4f(static_cast<unsigned int>(constant.getIndex()), -1, -1, -1, -1);
        for (int i = 0; i < constant.getNumComponents(); ++i)
            constant.setData(static_cast<unsigned int>(i), static_cast<float>(10 * constant.getNumComponents() + i));
    }
    EXPECT_THAT(callsOf([&] { shader.setConstants(constants); }),
        ElementsAre("glProgramLocalParameter4fARB(GL_FRAGMENT_PROGRAM_ARB, 9, 10, 0, 0, 0)",
            "glProgramLocalParameter4fARB(GL_FRAGMENT_PROGRAM_ARB, 8, 20, 21, 0, 0)",
            "glProgramLocalParameter4fARB(GL_FRAGMENT_PROGRAM_ARB, 7, 30, 31, 32, 0)",
            "glProgramLocalParameter4fvARB(GL_FRAGMENT_PROGRAM_ARB, 6, (40, 41, 42, 43))"));
    EXPECT_THAT(localParameter(FRAGMENT, 9), ElementsAre(10, 0, 0, 0));
    EXPECT_THAT(localParameter(FRAGMENT, 8), ElementsAre(20, 21, 0, 0));
    EXPECT_THAT(localParameter(FRAGMENT, 7), ElementsAre(30, 31, 32, 0));
    EXPECT_THAT(localParameter(FRAGMENT, 6), ElementsAre(40, 41, 42, 43));
}

TEST_F(GLShaderARBGLTest, SendsNothingOfConstantsOfOtherLengths)
{
    GLShaderARB shader(context(), FRAGMENT);
    EXPECT_THAT(callsOf([&] { shader.setConstant({"c", 0, 5}); }), IsEmpty());
    EXPECT_THAT(callsOf([&] { EXPECT_THROW(shader.setConstant({"c", 0, 0}), std::out_of_range); }), IsEmpty());
}

TEST_F(GLShaderARBGLTest, LoadsProgramMatrices)
{
    GLShaderARB shader(context(), VERTEX);
    Matrix matrix = UNLIKE_ANY_OTHER;
    glMatrixMode(GL_TEXTURE);
    EXPECT_THAT(callsOf([&] { shader.setMatrix4f("ignored", 2, matrix.data()); }),
        ElementsAre("glMatrixMode(GL_MATRIX2_ARB)", "glLoadIdentity()",
            "glMultMatrixf((2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17))", "glMatrixMode(GL_MODELVIEW)"));
    int mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    EXPECT_EQ(mode, GL_MODELVIEW);

    Matrix loaded{};
    glMatrixMode(GL_MATRIX2_ARB);
    glGetFloatv(GL_CURRENT_MATRIX_ARB, loaded.data());
    EXPECT_EQ(loaded, matrix);
    shader.setMatrix4f("", 2, matrix.data());
    glMatrixMode(GL_MATRIX2_ARB);
    glGetFloatv(GL_CURRENT_MATRIX_ARB, loaded.data());
    EXPECT_EQ(loaded, matrix) << "loaded, not multiplied with what was there";
}

// --- lifetimes ---

TEST_F(GLShaderARBGLTest, DeletesItsProgramWhenItDies)
{
    auto shader = std::make_unique<GLShaderARB>(context(), FRAGMENT);
    ASSERT_TRUE(shader->compile(RED));
    const unsigned int name = nameOf(*shader, FRAGMENT);
    EXPECT_TRUE(isProgram(name));
    EXPECT_THAT(callsOf([&] { shader.reset(); }), ElementsAre(deleteCall(name)));
    EXPECT_FALSE(isProgram(name));
    EXPECT_THAT(callsOf([&] { destroyContext(); }), IsEmpty());
}

TEST_F(GLShaderARBGLTest, LeavesItsProgramToAContextThatIsNotActive)
{
    makeInactive();
    auto shader = std::make_unique<GLShaderARB>(context(), FRAGMENT);
    const unsigned int name = nameOf(*shader, FRAGMENT);
    EXPECT_THAT(callsOf([&] { shader.reset(); }), IsEmpty());
    EXPECT_TRUE(isProgram(name));
    EXPECT_THAT(callsOf([&] { context()->activate(); }), ElementsAre("wglGetCurrentContext()", deleteCall(name)));
    EXPECT_FALSE(isProgram(name));
}

TEST_F(GLShaderARBGLTest, LivesOnInTheRootWhenItsChildContextDies)
{
    const auto native = makeSharedContext();
    auto child = std::make_unique<GLContext>(native->getDC(), native->getRC(), context(), nullptr);
    auto shader = std::make_unique<GLShaderARB>(child.get(), FRAGMENT);
    child.reset();
    EXPECT_TRUE(shader->isValid());
    EXPECT_TRUE(shader->compile(GREEN));
    const unsigned int name = nameOf(*shader, FRAGMENT);
    EXPECT_THAT(callsOf([&] { shader.reset(); }), ElementsAre(deleteCall(name)));
}

TEST_F(GLShaderARBGLTest, DeletesItsProgramOnceWhenItsContextDiesFirst)
{
    auto shader = std::make_unique<GLShaderARB>(context(), FRAGMENT);
    const unsigned int name = nameOf(*shader, FRAGMENT);
    EXPECT_THAT(callsOf([&] { destroyContext(); }), ElementsAre(deleteCall(name)));
    EXPECT_FALSE(isProgram(name));
    EXPECT_THAT(callsOf([&] { shader.reset(); }), IsEmpty());
}

TEST_F(GLShaderARBGLTest, LosesItsProgramWithAContextThatDiesInactive)
{
    makeInactive();
    GLShaderARB shader(context(), FRAGMENT);
    EXPECT_THAT(callsOf([&] { destroyContext(); }), IsEmpty());
    EXPECT_FALSE(shader.isValid());
}

TEST_F(GLShaderARBGLTest, RefusesToWorkWithoutItsContext)
{
    GLShaderARB shader(context(), FRAGMENT);
    ASSERT_FALSE(shader.compile(WRONG));
    const std::string text = shader.getLastError();
    const int position = shader.getLastErrorPosition();
    destroyContext();

    Vector v{1, 2, 3, 4};
    EXPECT_THAT(callsOf([&] {
        EXPECT_EQ(messageOf([&] { shader.compile(RED); }), "GLShaderARB::compile() - invalid context!");
        EXPECT_EQ(messageOf([&] { shader.bind(); }), "GLShaderARB::bind() - invalid context!");
        EXPECT_EQ(messageOf([&] { shader.unbind(); }), "GLShaderARB::unbind() - invalid context!");
        EXPECT_EQ(messageOf([&] { shader.setConstant({"c", 0, 4}); }), "GLShaderARB::setConstant() - invalid context!");
        EXPECT_EQ(messageOf([&] {
            shader.setConstant({"c", 0, 0});
        }),
            "GLShaderARB::setConstant() - invalid context!")
            << "comes before the constant's own";
        EXPECT_EQ(messageOf([&] { shader.setLocalParameter4f(0, 1, 2, 3, 4); }),
            "GLShaderARB::setLocalParameter4f() - invalid context!");
        EXPECT_EQ(messageOf([&] { shader.setLocalParameter4fv(0, v.data()); }),
            "GLShaderARB::setLocalParameter4fv() - invalid context!");
        EXPECT_EQ(messageOf([&] { shader.setGlobalParameter4f(0, 1, 2, 3, 4); }),
            "GLShaderARB::setGlobalParameter4f() - invalid context!");
        EXPECT_EQ(messageOf([&] { shader.setGlobalParameter4fv(0, v.data()); }),
            "GLShaderARB::setGlobalParameter4fv() - invalid context!");
        EXPECT_EQ(messageOf([&] { shader.onDeleteContext(); }), "GLShaderARB::onDeleteContext() - invalid context!");
    }),
        IsEmpty());
    EXPECT_EQ(shader.getLastError(), text);
    EXPECT_EQ(shader.getLastErrorPosition(), position);
}

TEST_F(GLShaderARBGLTest, LoadsProgramMatricesEvenWithoutItsContext)
{
    GLShaderARB shader(context(), VERTEX);
    destroyContext();
    Matrix matrix = UNLIKE_ANY_OTHER;
    EXPECT_THAT(callsOf([&] { shader.setMatrix4f("", 0, matrix.data()); }), testing::SizeIs(4));
}

TEST_F(GLShaderARBGLTest, CopiesShareTheProgramAndAreNotRegistered)
{
    auto original = std::make_unique<GLShaderARB>(context(), FRAGMENT);
    std::optional<GLShaderARB> copy;
    EXPECT_THAT(callsOf([&] { copy.emplace(*original); }), IsEmpty());
    EXPECT_EQ(copy->getContext(), context());
    EXPECT_EQ(nameOf(*copy, FRAGMENT), nameOf(*original, FRAGMENT));

    ASSERT_FALSE(original->compile(WRONG));
    EXPECT_EQ(copy->getLastErrorPosition(), -1) << "what the copy knows is its own";
    const unsigned int name = nameOf(*original, FRAGMENT);

    EXPECT_THAT(callsOf([&] { destroyContext(); }), ElementsAre(deleteCall(name))) << "one object was told";
    EXPECT_FALSE(original->isValid());
    EXPECT_TRUE(copy->isValid()) << "the copy was not";

    EXPECT_THAT(callsOf([&] { *copy = *original; }), IsEmpty());
    EXPECT_FALSE(copy->isValid());
    EXPECT_EQ(copy->getLastError(), original->getLastError());
    EXPECT_EQ(copy->getLastErrorPosition(), WRONG.find("nowhere"));
    EXPECT_THAT(callsOf([&] {
        original.reset();
        copy.reset();
    }),
        IsEmpty())
        << "nothing is freed twice";
}

// --- a whole picture ---

// Moves vertices by one program matrix and normals by another, both of which are the application's own.
const std::string TRANSFORM = R"(!!ARBvp1.0
PARAM transform[4] = { state.matrix.program[0] };
PARAM turn[4] = { state.matrix.program[1] };
PARAM scale = program.local[0];
PARAM shift = program.env[0];
TEMP position;
MUL position, vertex.position, scale;
ADD position, position, shift;
DP4 result.position.x, transform[0], position;
DP4 result.position.y, transform[1], position;
DP4 result.position.z, transform[2], position;
DP4 result.position.w, transform[3], position;
DP3 result.texcoord[0].x, turn[0], vertex.normal;
DP3 result.texcoord[0].y, turn[1], vertex.normal;
DP3 result.texcoord[0].z, turn[2], vertex.normal;
MOV result.texcoord[0].w, 1;
END)";

// Lights each fragment, with ambient light, diffuse colour, and a highlight.
const std::string LIGHTING = R"(!!ARBfp1.0
PARAM light = program.env[0];
PARAM halfway = program.env[1];
PARAM ambient = program.local[0];
PARAM shininess = program.local[1];
PARAM colour = program.local[2];
PARAM highlight = program.local[3];
TEMP normal, lit;
DP3 normal.w, fragment.texcoord[0], fragment.texcoord[0];
RSQ normal.w, normal.w;
MUL normal.xyz, fragment.texcoord[0], normal.w;
DP3 lit.x, normal, light;
DP3 lit.y, normal, halfway;
MOV lit.w, shininess.y;
LIT lit, lit;
ADD lit.y, lit.y, ambient.x;
MUL lit.z, lit.z, shininess.x;
MUL lit.w, lit.z, highlight.w;
MUL normal, colour, lit.y;
MAD result.color.xyz, highlight, lit.z, normal;
MOV result.color.w, 1;
END)";

ShaderConstant makeConstant(int index, const std::vector<float>& values)
{
    ShaderConstant constant("", index, static_cast<int>(values.size()));
    for (std::size_t i = 0; i < values.size(); ++i)
        constant.setData(static_cast<unsigned int>(i), values[i]);
    return constant;
}

// The matrix that these GL calls make.
template <typename Calls>
Matrix matrixOf(Calls calls)
{
    Matrix matrix{};
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    calls();
    glGetFloatv(GL_MODELVIEW_MATRIX, matrix.data());
    glPopMatrix();
    return matrix;
}

TEST_F(GLShaderARBGLTest, LightsAnObject)
{
    GLShaderARB vertices(context(), VERTEX);
    GLShaderARB fragments(context(), FRAGMENT);
    ASSERT_TRUE(vertices.compile(TRANSFORM)) << vertices.getLastError();
    ASSERT_TRUE(fragments.compile(LIGHTING)) << fragments.getLastError();

    const auto turn = [] {
        glRotatef(20, 1, 0, 0);
        glRotatef(-30, 0, 0, 1);
    };
    Matrix turnMatrix = matrixOf(turn);
    Matrix transformMatrix = matrixOf([&] {
        gluPerspective(40, 1, 1, 10);
        glTranslatef(0, 0, -4);
        turn();
    });
    Vector flatter{1, 0.7f, 1, 1};
    Vector halfway{0.33f, 0.46f, 0.82f, 0};

    vertices.bind();
    vertices.setLocalParameter4fv(0, flatter.data());
    vertices.setGlobalParameter4f(0, 0.1f, -0.2f, 0, 0);
    vertices.setMatrix4f("", 0, transformMatrix.data());
    vertices.setMatrix4f("", 1, turnMatrix.data());
    fragments.bind();
    fragments.setGlobalParameter4f(0, 0.56f, 0.76f, 0.33f, 0);
    fragments.setGlobalParameter4fv(1, halfway.data());
    fragments.setConstants({makeConstant(0, {0.25f}), makeConstant(1, {0.8f, 25}), makeConstant(2, {0.9f, 0.5f, 0.2f}),
        makeConstant(3, {1, 1, 0.8f, 1})});
    drawBall();
    fragments.unbind();
    vertices.unbind();
    EXPECT_TRUE(matchesReference(readPixels(), "GLShaderARB/litObject", {.perChannel = 2, .differingPixels = 0.01}));
}

} // namespace
} // namespace tavo
