#include <gmock/gmock.h>

#include "tests/support/CallRecorder.h"
#include "tests/vireo/ContextTest.h"
#include "vireo/shaders/GLShader.h"
#include "vireo/shaders/ShaderConstant.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A kind of program that only writes down what it is asked for.
class NotedShader : public GLShader
{
public:
    using GLShader::GLShader;

    bool compile(const std::string& source) override
    {
        lastError = "cannot compile " + source;
        return false;
    }
    void bind() override {}
    void unbind() override {}
    void setConstant(const ShaderConstant& constant) override
    {
        constants.push_back(constant.getName());
        if (toShrink)
            toShrink->pop_back();
    }
    void setMatrix4f(const std::string&, unsigned int, float*) override {}
    void onDeleteContext() override
    {
        toldWithContext = isValid();
        if (numTold)
            ++*numTold;
    }

    std::vector<std::string> constants;
    std::vector<ShaderConstant>* toShrink = nullptr;
    bool toldWithContext = false;
    unsigned int* numTold = nullptr;
};

using GLShaderGLTest = ContextTest;

TEST_F(GLShaderGLTest, IsRegisteredWithItsContext)
{
    NotedShader shader(context());
    EXPECT_EQ(shader.getContext(), context());
    destroyContext();
    EXPECT_TRUE(shader.toldWithContext);
    EXPECT_FALSE(shader.isValid());
}

TEST_F(GLShaderGLTest, LeavesTheRegistryWhenItDies)
{
    unsigned int numTold = 0;
    auto first = std::make_unique<NotedShader>(context());
    auto second = std::make_unique<NotedShader>(context());
    first->numTold = &numTold;
    second->numTold = &numTold;
    first.reset();
    destroyContext();
    EXPECT_EQ(numTold, 1u);
}

TEST_F(GLShaderGLTest, KeepsTheTextOfTheLastError)
{
    NotedShader shader(context());
    EXPECT_EQ(shader.getLastError(), "");
    shader.compile("this");
    EXPECT_EQ(shader.getLastError(), "cannot compile this");
}

TEST_F(GLShaderGLTest, SetsConstantsInTheirOrder)
{
    NotedShader shader(context());
    shader.setConstants({});
    EXPECT_THAT(shader.constants, IsEmpty());
    shader.setConstants({{"b", 0, 1}, {"a", 1, 4}, {"b", 2, 0}});
    EXPECT_THAT(shader.constants, ElementsAre("b", "a", "b"));
}

TEST_F(GLShaderGLTest, AsksForTheNumberOfConstantsAfterEach)
{
    NotedShader shader(context());
    std::vector<ShaderConstant> constants{{"a", 0, 1}, {"b", 0, 1}, {"c", 0, 1}, {"d", 0, 1}};
    shader.toShrink = &constants;
    shader.setConstants(constants);
    EXPECT_THAT(shader.constants, ElementsAre("a", "b"));
}

TEST_F(GLShaderGLTest, HasNoDefaultMatricesByItself)
{
    NotedShader shader(context());
    EXPECT_THAT(callsOf([&] { shader.updateDefaultMatrices(); }), IsEmpty());
}

} // namespace
} // namespace tavo
