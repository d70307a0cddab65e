#include <gmock/gmock.h>

#include "tests/vireo/ContextTest.h"
#include "tests/vireo/DebugText.h"
#include "tests/vireo/PrivateMember.h"
#include "tests/vireo/volume/VolumeTest.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/LeakReport.h"
#include "vireo/geometry/GLBuffer.h"
#include "vireo/geometry/GLGeometryList.h"
#include "vireo/geometry/GLTemplatedIndexBuffer.h"
#include "vireo/offscreen/GLRenderTargetFBO.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"
#include "vireo/shaders/GLShaderARB.h"
#include "vireo/textures/GLTexture2D.h"
#include "vireo/textures/GLTextureRect.h"
#include "vireo/volume/SliceVolumeRenderer.h"

namespace tavo {

struct FirstTextureMember
{
    friend auto memberOf(FirstTextureMember);
};
template struct PrivateMember<FirstTextureMember, &GLRenderTextureFBO::m_Texture>;

namespace {

using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

using Group = LeakReport::Group;

class LeakReportGLTest : public ContextTest
{
protected:
    void SetUp() override
    {
        LeakReport::setMode(LeakReport::Mode::COUNTS);
        ContextTest::SetUp();
    }

    void TearDown() override
    {
        ContextTest::TearDown();
        LeakReport::setMode(LeakReport::Mode::OFF);
    }

    LeakReport ofTree() { return LeakReport::ofTree(*context()); }

    static auto group(const char* kind, const char* className, std::size_t count, std::uint64_t bytes)
    {
        return testing::AllOf(Field("kind", &Group::kind, kind), Field("className", &Group::className, className),
            Field("count", &Group::count, count), Field("bytes", &Group::bytes, bytes));
    }
};

TEST_F(LeakReportGLTest, KnowsNothingWhileItIsSwitchedOff)
{
    LeakReport::setMode(LeakReport::Mode::OFF);
    EXPECT_EQ(LeakReport::getMode(), LeakReport::Mode::OFF);
    const GLTexture2D texture(context());
    EXPECT_TRUE(ofTree().isEmpty());
    EXPECT_EQ(ofTree().getText(), "");
    const DebugText text;
    destroyContext();
    EXPECT_EQ(text.text(), "");
}

TEST_F(LeakReportGLTest, ForgetsWhatItKnowsWhenItIsSwitchedOff)
{
    const GLTexture2D texture(context());
    EXPECT_FALSE(ofTree().isEmpty());
    LeakReport::setMode(LeakReport::Mode::OFF);
    LeakReport::setMode(LeakReport::Mode::COUNTS);
    EXPECT_TRUE(ofTree().isEmpty());
}

TEST_F(LeakReportGLTest, CountsObjectsThatLiveByClassWithTheirBytes)
{
    GLTexture2D first(context());
    first.createFromMemory(8, 4, 4, nullptr, false);
    GLTexture2D second(context());
    second.createFromMemory(2, 2, 1, nullptr, false);
    GLTextureRect floats(context());
    floats.createFloatTextureFromMemory(4, 4, 4, nullptr, true);
    drainErrors(); // of a driver without floats
    GLTemplatedIndexBuffer<unsigned int> buffer(context());
    buffer.init(25, GL_STATIC_DRAW_ARB);
    EXPECT_THAT(ofTree().getAlive(),
        ElementsAre(group("object", "GLTemplatedIndexBuffer<unsigned int>", 1, 100),
            group("object", "GLTexture2D", 2, 8 * 4 * 4 + 4), group("object", "GLTextureRect", 1, 4 * 4 * 4 * 4)));
    EXPECT_THAT(ofTree().getNeverDeleted(), IsEmpty());
    second.createFromMemory(4, 4, 1, nullptr, false);
    EXPECT_EQ(ofTree().getAlive()[1].bytes, 8 * 4 * 4 + 16u) << "other storage takes the place of the first";
}

TEST_F(LeakReportGLTest, FindsNothingWhereAllIsDeleted)
{
    {
        GLTexture2D texture(context());
        texture.createFromMemory(8, 4, 4, nullptr, false);
        GLBuffer buffer(context(), GL_ARRAY_BUFFER_ARB);
        GLRenderTextureFBO target(context());
        ASSERT_TRUE(target.create(8, 8, 4, 0));
        GLRenderTargetFBO both(context());
        both.create(8, 8);
        GLGeometryList list(context());
        list.begin(GL_POINTS);
        list.vertex3f(0, 0, 0);
        list.end();
        list.compile(context(), false);
    }
    EXPECT_TRUE(ofTree().isEmpty()) << ofTree().getText();
    const DebugText text;
    destroyContext();
    EXPECT_EQ(text.text(), "");
}

TEST_F(LeakReportGLTest, ReportsObjectsThatOutliveTheRootAsLegal)
{
    GLTexture2D texture(context());
    texture.createFromMemory(8, 4, 4, nullptr, false);
    const std::string number = std::to_string(context()->getContextNumber());
    const DebugText text;
    destroyContext();
    EXPECT_EQ(text.text(), "LeakReport: the tree of context " + number +
                               " ends\n  objects that still live, which is legal:\n    1 object of GLTexture2D, 128 "
                               "bytes\n");
    EXPECT_TRUE(LeakReport::ofProcess().isEmpty()) << "once is enough";
}

TEST_F(LeakReportGLTest, ReportsDepthAndStencilBuffersThatNobodyDeletes)
{
    {
        GLRenderTextureFBO target(context());
        ASSERT_TRUE(target.create(16, 8, 4, GLRenderTextureFBO::FLAG_DEPTH));
        EXPECT_THAT(ofTree().getNeverDeleted(), IsEmpty()) << "while the target lives";
    }
    EXPECT_THAT(ofTree().getNeverDeleted(), ElementsAre(group("renderbuffer", "GLRenderTextureFBO", 1, 16 * 8 * 4)));
    EXPECT_THAT(ofTree().getAlive(), IsEmpty());
    const DebugText text;
    destroyContext();
    EXPECT_THAT(
        text.text(), HasSubstr("  names that were never deleted:\n    1 renderbuffer of GLRenderTextureFBO, 512 "
                               "bytes\n"));
    EXPECT_THAT(text.text(), Not(HasSubstr("legal")));
}

TEST_F(LeakReportGLTest, ReportsWhatASecondCreateLeavesBehind)
{
    GLRenderTextureFBO target(context());
    ASSERT_TRUE(target.create(8, 8, 4, GLRenderTextureFBO::FLAG_DEPTH));
    const std::unique_ptr<GLTexture> firstTexture(target.*memberOf(FirstTextureMember()));
    ASSERT_TRUE(target.create(4, 4, 4, 0));
    EXPECT_THAT(ofTree().getNeverDeleted(), ElementsAre(group("framebuffer", "GLRenderTextureFBO", 1, 0),
                                                group("renderbuffer", "GLRenderTextureFBO", 1, 8 * 8 * 4)));
    EXPECT_THAT(ofTree().getAlive(), ElementsAre(group("object", "GLRenderTextureFBO", 1, 0),
                                         group("object", "GLTexture2D", 2, (8 * 8 + 4 * 4) * 4)));
}

TEST_F(LeakReportGLTest, CountsNamesThatWaitUntilTheTreeIsActive)
{
    context()->deactivate();
    mainContext().makeCurrent();
    {
        GLTexture2D texture(context());
        GLBuffer buffer(context(), GL_ARRAY_BUFFER_ARB);
        GLShaderARB shader(context(), GL_VERTEX_PROGRAM_ARB);
    }
    EXPECT_THAT(ofTree().getNeverDeleted(), SizeIs(3));
    context()->activate();
    EXPECT_TRUE(ofTree().isEmpty());
}

TEST_F(LeakReportGLTest, ReportsNamesThatWaitedInVain)
{
    context()->deactivate();
    mainContext().makeCurrent();
    {
        GLTexture2D texture(context());
        texture.createFromMemory(2, 2, 4, nullptr, false);
    }
    const DebugText text;
    destroyContext();
    EXPECT_THAT(text.text(), HasSubstr("never deleted:\n    1 texture of GLTexture2D, 16 bytes\n"));
}

TEST_F(LeakReportGLTest, ReportsAFramebufferWhoseContextWasNotCurrent)
{
    if (!GLRenderTargetFBO::isSupported())
        GTEST_SKIP() << "the driver has no such targets";
    const auto other = makeSharedContext();
    {
        GLRenderTargetFBO target(context());
        ASSERT_TRUE(target.create(8, 8));
        other->makeCurrent();
    }
    EXPECT_THAT(ofTree().getNeverDeleted(), ElementsAre(group("framebuffer", "GLRenderTargetFBO", 1, 0)));
    mainContext().makeCurrent();
}

TEST_F(LeakReportGLTest, KnowsTreesApart)
{
    const GLTexture2D texture(context());
    const auto other = makeContext();
    EXPECT_TRUE(LeakReport::ofTree(*other).isEmpty());
    GLContext child(getDC(), getRC(), context(), nullptr);
    EXPECT_FALSE(LeakReport::ofTree(child).isEmpty()) << "the tree is the root's";
}

TEST_F(LeakReportGLTest, CountsTexturesOfVolumesOutsideOfTrees)
{
    RegularVolume volume = makeCodedVolume({4, 4, 4});
    SliceVolumeRenderer renderer;
    renderer.drawVolume(
        &volume, Vector3f(0, 0, -1), "density",
        [](void*, const StaticVector<float, 1>&) { return RGBA8(255, 255, 255, 16); }, nullptr);
    EXPECT_TRUE(ofTree().isEmpty());
    EXPECT_THAT(
        LeakReport::ofProcess().getNeverDeleted(), ElementsAre(group("texture", "SliceVolumeRenderer", 4, 4 * 64)));
    renderer.disposeTextures();
    EXPECT_TRUE(LeakReport::ofProcess().isEmpty());
}

// Two places of their own.
__attribute__((noinline)) GLTexture2D* makeHere(GLContext* context)
{
    return new GLTexture2D(context);
}

__attribute__((noinline)) GLTexture2D* makeThere(GLContext* context)
{
    auto* const texture = new GLTexture2D(context);
    texture->createFromMemory(1, 1, 4, nullptr, false);
    return texture;
}

TEST_F(LeakReportGLTest, SaysWhereEachWasMade)
{
    LeakReport::setMode(LeakReport::Mode::STACKS);
    std::vector<std::unique_ptr<GLTexture2D>> textures;
    for (int i = 0; i < 3; ++i)
        textures.emplace_back(makeHere(context()));
    textures.emplace_back(makeThere(context()));
    const LeakReport report = ofTree();
    ASSERT_THAT(report.getAlive(), SizeIs(1));
    const std::vector<LeakReport::Place>& places = report.getAlive()[0].places;
    ASSERT_THAT(places, SizeIs(2));
    EXPECT_EQ(places[0].count + places[1].count, 4u);
    EXPECT_TRUE(places[0].count == 3 || places[0].count == 1);
    for (const LeakReport::Place& place : places) {
        EXPECT_GT(place.calls.size(), 3u);
        EXPECT_THAT(place.calls, Not(testing::Contains(HasSubstr("NameAccounts"))));
    }
    EXPECT_THAT(report.getText(), HasSubstr("      3 made by\n        "));
    EXPECT_THAT(report.getText(), HasSubstr("+0x"));
}

TEST_F(LeakReportGLTest, MakesNoPlacesWithoutStacks)
{
    const GLTexture2D texture(context());
    EXPECT_THAT(ofTree().getAlive()[0].places, IsEmpty());
}

} // namespace
} // namespace tavo
