#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <gmock/gmock.h>
#include <limits>
#include <memory>
#include <new>
#include <random>
#include <vector>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/objects/PException.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/GLTest.h"
#include "tests/support/extensions.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/GLObject.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A context with its protected operations in reach.
class OpenContext : public GLContext
{
public:
    OpenContext(TestContext& native, GLContext* parent)
        : GLContext(native.getDC(), native.getRC(), parent, nullptr)
    {}

    using GLContext::addChildContext;
    using GLContext::addObject;
    using GLContext::delayedDelete;
    using GLContext::onDeleteContext;
    using GLContext::removeChildContext;
    using GLContext::removeObject;
    using GLContext::setGlobalActive;
};

// A context that cannot be made current.
class BrokenContext : public GLContext
{
public:
    BrokenContext()
        : GLContext(nullptr, reinterpret_cast<HGLRC>(this), nullptr, nullptr)
    {}

    using GLContext::setGlobalActive;
};

// An object that writes down when it is told that its context dies.
class WatchedObject : public GLObject
{
public:
    WatchedObject(GLContext* context, std::string name, std::vector<std::string>& log)
        : GLObject(context)
        , m_Name(std::move(name))
        , m_Log(log)
    {}

    // What to do besides when the context dies.
    std::function<void()> whenTold = [] {};

protected:
    void onDeleteContext() override
    {
        EXPECT_TRUE(isValid()) << "the context is still there when the object is told";
        m_Log.push_back(m_Name);
        whenTold();
    }

private:
    std::string m_Name;
    std::vector<std::string>& m_Log;
};

class GLContextGLTest : public GLTest
{
protected:
    void SetUp() override
    {
        GLTest::SetUp();
        if (!IsSkipped())
            initGLExtensions();
    }

    std::unique_ptr<OpenContext> makeRoot() { return std::make_unique<OpenContext>(mainContext(), nullptr); }

    static unsigned int makeTexture()
    {
        unsigned int name = 0;
        glGenTextures(1, &name);
        glBindTexture(GL_TEXTURE_2D, name);
        glBindTexture(GL_TEXTURE_2D, 0);
        return name;
    }

    static unsigned int makeBuffer()
    {
        unsigned int name = 0;
        glGenBuffersARB(1, &name);
        glBindBufferARB(GL_ARRAY_BUFFER_ARB, name);
        glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0);
        return name;
    }

    static unsigned int makeProgram()
    {
        unsigned int name = 0;
        glGenProgramsARB(1, &name);
        glBindProgramARB(GL_VERTEX_PROGRAM_ARB, name);
        glBindProgramARB(GL_VERTEX_PROGRAM_ARB, 0);
        return name;
    }

    std::vector<std::string> m_Log;
};

std::string call(const char* function, const std::vector<unsigned int>& names)
{
    std::string text = std::string(function) + "(" + std::to_string(names.size()) + ", (";
    for (std::size_t i = 0; i < names.size(); ++i)
        text += (i ? ", " : "") + std::to_string(names[i]);
    return text + "))";
}

TEST_F(GLContextGLTest, NumbersContextsFromOneOnWhateverTheirTrees)
{
    const auto native = makeSharedContext();
    const auto first = makeRoot();
    OpenContext second(*native, nullptr);
    const OpenContext third(*native, &second);
    const std::uint64_t start = first->getContextNumber();
    // Other tests of this program may have made contexts before.
    if (testing::UnitTest::GetInstance()->test_to_run_count() == 1) {
        EXPECT_EQ(start, 1u);
    }
    EXPECT_EQ(second.getContextNumber(), start + 1);
    EXPECT_EQ(const_cast<OpenContext&>(third).getContextNumber(), start + 2);
}

TEST_F(GLContextGLTest, KeepsWhatItWasGiven)
{
    auto* const widget = reinterpret_cast<QGLWidget*>(this); // only stored
    GLContext context(getDC(), getRC(), nullptr, widget);
    EXPECT_EQ(context.getDC(), getDC());
    EXPECT_EQ(context.getRC(), getRC());
    EXPECT_EQ(context.getQGLWidget(), widget);
    EXPECT_TRUE(context.getUseVertexBufferObjects());
    context.setUseVertexBufferObjects(false);
    EXPECT_FALSE(context.getUseVertexBufferObjects());
    EXPECT_FALSE(context.isGlobalActive());
}

// Without extensions loaded by anybody before.
class FirstContextGLTest : public GLTest
{
protected:
    void SetUp() override
    {
        GLTest::SetUp();
        if (!IsSkipped() && glExtensionsInitialized)
            GTEST_SKIP() << "needs a process of its own: the first root context was made by another test";
    }
};

TEST_F(FirstContextGLTest, MakesTheCgContextThenLoadsTheExtensionsOnce)
{
    const auto native = makeSharedContext();
    OpenContext* first = nullptr;
    const std::vector<std::string> calls = callsOf([&] { first = new OpenContext(mainContext(), nullptr); });
    EXPECT_TRUE(glExtensionsInitialized);
    EXPECT_NE(glBindBufferARB, nullptr);
    ASSERT_GE(calls.size(), 2u);
#ifdef VIREO_HAVE_CG
    EXPECT_EQ(calls[0], "cgCreateContext()");
    EXPECT_EQ(calls[1], "glGetString(GL_EXTENSIONS)");
    EXPECT_NE(first->getCGContext(), nullptr);
#else
    EXPECT_EQ(calls[0], "glGetString(GL_EXTENSIONS)");
    EXPECT_EQ(first->getCGContext(), nullptr);
#endif
    EXPECT_THAT(callsOf([&] {
        OpenContext child(*native, first);
        OpenContext second(*native, nullptr);
        EXPECT_EQ(second.getCGContext(), first->getCGContext());
        EXPECT_EQ(child.getCGContext(), first->getCGContext());
    }),
        IsEmpty());
    delete first;
}

TEST_F(FirstContextGLTest, HasItsWidgetOnlyOnceAllElseIsThere)
{
    auto* const widget = reinterpret_cast<QGLWidget*>(this); // only stored
    alignas(GLContext) std::array<std::byte, sizeof(GLContext)> memory;
    auto* const context = reinterpret_cast<GLContext*>(memory.data());
    {
        CallRecorder recorder;
        recorder.beforeEachCall([&] { EXPECT_EQ(context->getQGLWidget(), nullptr) << recorder.calls().back(); });
        new (memory.data()) GLContext(getDC(), getRC(), nullptr, widget);
        EXPECT_FALSE(recorder.calls().empty());
    }
    EXPECT_EQ(context->getQGLWidget(), widget);
    std::destroy_at(context);
}

TEST_F(GLContextGLTest, ActivatesWithoutMakingCurrentWhatIsCurrent)
{
    const auto root = makeRoot();
    const unsigned int texture = makeTexture();
    root->deleteTexture(texture);
    EXPECT_THAT(callsOf([&] { EXPECT_TRUE(root->activate()); }),
        ElementsAre("wglGetCurrentContext()", call("glDeleteTextures", {texture})));
    EXPECT_TRUE(root->isGlobalActive());
}

TEST_F(GLContextGLTest, MakesCurrentWhatIsNot)
{
    const auto root = makeRoot();
    const unsigned int texture = makeTexture();
    root->deleteTexture(texture);
    mainContext().release();
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_THAT(callsOf([&] { EXPECT_TRUE(root->activate()); }),
        ElementsAre(
            "wglGetCurrentContext()", testing::StartsWith("wglMakeCurrent("), call("glDeleteTextures", {texture})));
    EXPECT_EQ(wglGetCurrentContext(), getRC());
    EXPECT_TRUE(root->isGlobalActive());
}

TEST_F(GLContextGLTest, ReportsAFailedActivationByItsResultAlone)
{
    BrokenContext broken;
    broken.setGlobalActive(true);
    const std::string textBefore = debugOutput.getText();
    EXPECT_FALSE(broken.activate());
    EXPECT_FALSE(broken.isGlobalActive());
    EXPECT_EQ(debugOutput.getText(), textBefore);
    mainContext().makeCurrent();
}

TEST_F(GLContextGLTest, KeepsWaitingNamesWhenActivationFails)
{
    BrokenContext broken;
    const unsigned int texture = makeTexture();
    broken.deleteTexture(texture);
    EXPECT_THAT(callsOf([&] { broken.activate(); }), testing::Not(testing::Contains(testing::HasSubstr("glDelete"))));
    mainContext().makeCurrent();
    EXPECT_THAT(callsOf([&] { broken.setGlobalActive(true); }), ElementsAre(call("glDeleteTextures", {texture})));
}

TEST_F(GLContextGLTest, ReleasesWhateverIsCurrentAndClearsOnlyItsOwnFlag)
{
    const auto native = makeUnsharedContext();
    const auto root = makeRoot();
    OpenContext other(*native, nullptr);
    ASSERT_TRUE(root->activate());
    ASSERT_TRUE(other.activate());

    root->deactivate();
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_FALSE(root->isGlobalActive());
    EXPECT_TRUE(other.isGlobalActive());

    EXPECT_THAT(callsOf([&] { other.deactivate(); }), ElementsAre("wglGetCurrentContext()")) << "nothing is current";
    EXPECT_FALSE(other.isGlobalActive());
    mainContext().makeCurrent();
}

TEST_F(GLContextGLTest, IsActiveAsAWholeTree)
{
    const auto native = makeSharedContext();
    const auto root = makeRoot();
    OpenContext child(*native, root.get());
    ASSERT_TRUE(child.activate());
    EXPECT_TRUE(root->isGlobalActive());
    child.deactivate();
    EXPECT_FALSE(root->isGlobalActive());
    child.setGlobalActive(true);
    EXPECT_TRUE(root->isGlobalActive());
    mainContext().makeCurrent();
}

TEST_F(GLContextGLTest, DeletesAtOnceWhileActive)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    const auto native = makeSharedContext();
    const auto root = makeRoot();
    OpenContext child(*native, root.get());
    root->activate();
    const unsigned int texture = makeTexture();
    const unsigned int buffer = makeBuffer();
    const unsigned int program = makeProgram();
    EXPECT_THAT(callsOf([&] {
        child.deleteTexture(texture);
        child.deleteBuffer(buffer);
        child.deleteShader(program);
    }),
        ElementsAre(call("glDeleteTextures", {texture}), call("glDeleteBuffersARB", {buffer}),
            call("glDeleteProgramsARB", {program})));
    EXPECT_FALSE(glIsTexture(texture));
    EXPECT_FALSE(glIsBufferARB(buffer));
    EXPECT_FALSE(glIsProgramARB(program));
}

TEST_F(GLContextGLTest, DeletesInWhateverContextIsCurrentWhileItCountsAsActive)
{
    const auto native = makeUnsharedContext();
    const auto root = makeRoot();
    OpenContext other(*native, nullptr);
    ASSERT_TRUE(root->activate());
    const unsigned int texture = makeTexture();
    ASSERT_TRUE(other.activate());
    EXPECT_TRUE(root->isGlobalActive()) << "nobody told it";
    glBindTexture(GL_TEXTURE_2D, texture); // makes one of the same name
    ASSERT_TRUE(glIsTexture(texture));

    root->deleteTexture(texture);
    EXPECT_FALSE(glIsTexture(texture)) << "the other tree's";
    ASSERT_TRUE(root->activate());
    EXPECT_TRUE(glIsTexture(texture)) << "its own";
    glDeleteTextures(1, &texture);
}

TEST_F(GLContextGLTest, QueuesWhileInactiveAndDeletesEachKindByOneCallOnActivation)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    const auto native = makeSharedContext();
    const auto root = makeRoot();
    OpenContext child(*native, root.get());
    const std::vector<unsigned int> textures = {makeTexture(), makeTexture(), makeTexture()};
    const std::vector<unsigned int> buffers = {makeBuffer(), makeBuffer()};
    const std::vector<unsigned int> programs = {makeProgram()};

    EXPECT_THAT(callsOf([&] {
        root->deleteShader(programs[0]);
        child.deleteTexture(textures[0]);
        root->deleteBuffer(buffers[0]);
        root->deleteTexture(textures[1]);
        child.deleteBuffer(buffers[1]);
        child.deleteTexture(textures[2]);
    }),
        IsEmpty());
    EXPECT_TRUE(glIsTexture(textures[0]));

    native->makeCurrent();
    EXPECT_THAT(callsOf([&] { child.activate(); }),
        ElementsAre("wglGetCurrentContext()", call("glDeleteTextures", textures), call("glDeleteBuffersARB", buffers),
            call("glDeleteProgramsARB", programs)));
    EXPECT_FALSE(glIsTexture(textures[2]));
    EXPECT_FALSE(glIsBufferARB(buffers[1]));
    EXPECT_FALSE(glIsProgramARB(programs[0]));

    EXPECT_THAT(callsOf([&] { root->delayedDelete(); }), IsEmpty()) << "each name is deleted once";
    mainContext().makeCurrent();
}

TEST_F(GLContextGLTest, DeletesWaitingNamesWhenToldThatItIsActive)
{
    const auto root = makeRoot();
    const unsigned int buffer = makeBuffer();
    root->deleteBuffer(buffer);
    EXPECT_THAT(callsOf([&] { root->setGlobalActive(false); }), IsEmpty());
    EXPECT_THAT(callsOf([&] { root->setGlobalActive(true); }), ElementsAre(call("glDeleteBuffersARB", {buffer})));
}

TEST_F(GLContextGLTest, LeavesWaitingNamesToDieWithTheContext)
{
    auto root = makeRoot();
    const unsigned int texture = makeTexture();
    root->deleteTexture(texture);
    EXPECT_THAT(callsOf([&] { root.reset(); }), IsEmpty());
    EXPECT_TRUE(glIsTexture(texture));
    glDeleteTextures(1, &texture);
}

TEST_F(GLContextGLTest, KnowsItsRoot)
{
    const auto native = makeSharedContext();
    const auto root = makeRoot();
    OpenContext child(*native, root.get());
    OpenContext grandchild(*native, &child);
    EXPECT_EQ(root->getRootContext(), root.get());
    EXPECT_EQ(child.getRootContext(), root.get());
    EXPECT_EQ(grandchild.getRootContext(), root.get());
    root->removeChildContext(&child);
    EXPECT_EQ(child.getRootContext(), &child);
    root->addChildContext(&grandchild); // lets it leave quietly
    child.addChildContext(&grandchild);
}

TEST_F(GLContextGLTest, RegistersObjectsAtTheRoot)
{
    const auto native = makeSharedContext();
    auto root = makeRoot();
    auto child = std::make_unique<OpenContext>(*native, root.get());
    WatchedObject object(child.get(), "object", m_Log);
    EXPECT_TRUE(object.isValid());
    EXPECT_EQ(object.getContext(), child.get());
    EXPECT_EQ(object.getRootContext(), root.get());

    child.reset();
    EXPECT_TRUE(object.isValid()) << "its names live on in the root";
    EXPECT_EQ(object.getContext(), root.get()) << "and nothing points to the dead child";
    EXPECT_THAT(m_Log, IsEmpty());

    root.reset();
    EXPECT_THAT(m_Log, ElementsAre("object"));
    EXPECT_FALSE(object.isValid());
    EXPECT_EQ(object.getContext(), nullptr);
}

TEST_F(GLContextGLTest, TellsItsObjectsInTheOrderOfTheirRegistration)
{
    const auto native = makeSharedContext();
    auto root = makeRoot();
    OpenContext child(*native, root.get());
    WatchedObject first(root.get(), "first", m_Log);
    WatchedObject second(&child, "second", m_Log);
    auto gone = std::make_unique<WatchedObject>(root.get(), "gone", m_Log);
    WatchedObject third(root.get(), "third", m_Log);
    gone.reset();
    root.reset();
    EXPECT_THAT(m_Log, ElementsAre("first", "second", "third"));
}

TEST_F(GLContextGLTest, LetsObjectsDieInAnyOrder)
{
    auto root = makeRoot();
    auto before = std::make_unique<WatchedObject>(root.get(), "before", m_Log);
    auto after = std::make_unique<WatchedObject>(root.get(), "after", m_Log);
    before.reset();
    root.reset();
    after.reset();
    EXPECT_THAT(m_Log, ElementsAre("after"));
}

TEST_F(GLContextGLTest, SurvivesObjectsThatDestroyEachOtherOrThemselvesWhenTold)
{
    auto root = makeRoot();
    auto first = std::make_unique<WatchedObject>(root.get(), "first", m_Log);
    auto second = std::make_unique<WatchedObject>(root.get(), "second", m_Log);
    auto* third = new WatchedObject(root.get(), "third", m_Log);
    WatchedObject last(root.get(), "last", m_Log);
    first->whenTold = [&] { second.reset(); };
    third->whenTold = [third] { delete third; };
    root.reset();
    EXPECT_THAT(m_Log, ElementsAre("first", "third", "last"));
}

TEST_F(GLContextGLTest, TellsAllObjectsThoughOneThrows)
{
    auto* const root = new OpenContext(mainContext(), nullptr);
    WatchedObject first(root, "first", m_Log);
    WatchedObject second(root, "second", m_Log);
    first.whenTold = [] { throw PException("first fails"); };
    EXPECT_THROW(delete root, PException);
    EXPECT_THAT(m_Log, ElementsAre("first", "second"));
    EXPECT_FALSE(first.isValid());
    EXPECT_FALSE(second.isValid());
}

TEST_F(GLContextGLTest, RemovesAnObjectByItsEntryAndIgnoresTheEnd)
{
    const auto native = makeSharedContext();
    auto root = makeRoot();
    OpenContext child(*native, root.get());
    WatchedObject object(root.get(), "object", m_Log);
    std::list<GLObject*>::iterator entry = child.addObject(&object);
    EXPECT_EQ(*entry, &object);
    const std::list<GLObject*>::iterator end = std::next(entry);
    child.removeObject(end);
    child.removeObject(entry);
    root.reset();
    EXPECT_THAT(m_Log, ElementsAre("object")) << "it was registered once again, and that entry was removed";
}

TEST_F(GLContextGLTest, IsCompatibleWithItsFamilyDownToTheRootsChildren)
{
    const auto native = makeSharedContext();
    const auto root = makeRoot();
    OpenContext child(*native, root.get());
    OpenContext sibling(*native, root.get());
    OpenContext grandchild(*native, &child);
    OpenContext stranger(*native, nullptr);

    EXPECT_TRUE(child.isCompatible(&child));
    EXPECT_TRUE(child.isCompatible(root.get()));
    EXPECT_TRUE(grandchild.isCompatible(root.get()));
    EXPECT_TRUE(grandchild.isCompatible(&child));
    EXPECT_TRUE(grandchild.isCompatible(&grandchild));
    EXPECT_TRUE(child.isCompatible(&sibling));
    EXPECT_TRUE(root->isCompatible(&child));
    EXPECT_FALSE(root->isCompatible(&grandchild)) << "deliberate";
    EXPECT_FALSE(sibling.isCompatible(&grandchild)) << "deliberate";
    EXPECT_FALSE(root->isCompatible(&stranger));
    EXPECT_FALSE(stranger.isCompatible(root.get()));

    auto object = std::make_unique<WatchedObject>(&child, "object", m_Log);
    EXPECT_TRUE(object->isCompatible(root.get()));
    EXPECT_TRUE(object->isCompatible(&sibling));
    EXPECT_FALSE(object->isCompatible(&stranger));

    root->addChildContext(&grandchild); // lets it leave quietly
}

TEST_F(GLContextGLTest, AnObjectWithoutAContextIsCompatibleWithNone)
{
    auto root = makeRoot();
    const auto other = makeRoot();
    WatchedObject object(root.get(), "object", m_Log);
    root.reset();
    EXPECT_FALSE(object.isCompatible(other.get()));
}

TEST_F(GLContextGLTest, MakesRootsOfItsChildrenWhenItDies)
{
    const auto native = makeSharedContext();
    auto root = makeRoot();
    OpenContext first(*native, root.get());
    OpenContext second(*native, root.get());
    const unsigned int texture = makeTexture();
    root->deleteTexture(texture);
    root->setGlobalActive(false);
    root.reset();
    EXPECT_EQ(first.getRootContext(), &first);
    EXPECT_EQ(second.getRootContext(), &second);
    EXPECT_FALSE(first.isGlobalActive());
    EXPECT_THAT(callsOf([&] { first.setGlobalActive(true); }), IsEmpty()) << "its queue is empty";
    EXPECT_FALSE(first.isCompatible(&second));
    glDeleteTextures(1, &texture);
}

TEST_F(GLContextGLTest, RefusesToRemoveWhatIsNotAChildOfTheRoot)
{
    const auto native = makeSharedContext();
    const auto root = makeRoot();
    OpenContext stranger(*native, nullptr);
    try {
        root->removeChildContext(&stranger);
        FAIL() << "nothing was thrown";
    } catch (const PException& error) {
        EXPECT_EQ(error.getMessage(), "GLContext::removeChildContext - context ist not a child of this parentcontext!");
    }
}

TEST_F(GLContextGLTest, ThrowsWhenDestroyedOnTheThirdLevelAndLeavesNothingBehind)
{
    const auto native = makeSharedContext();
    auto root = makeRoot();
    auto child = std::make_unique<OpenContext>(*native, root.get());
    auto* const grandchild = new OpenContext(*native, child.get());
    WatchedObject object(grandchild, "object", m_Log);
    try {
        delete grandchild;
        FAIL() << "nothing was thrown";
    } catch (const PException& error) {
        EXPECT_EQ(error.getMessage(), "GLContext::removeChildContext - context ist not a child of this parentcontext!");
    }
    EXPECT_TRUE(object.isValid());
    EXPECT_EQ(object.getContext(), root.get());
    child.reset();
    root.reset();
    EXPECT_FALSE(object.isValid());
}

TEST_F(GLContextGLTest, EndsTheProgramWhenAUniquePtrDestroysItOnTheThirdLevel)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto native = makeSharedContext();
    const auto root = makeRoot();
    OpenContext child(*native, root.get());
    EXPECT_DEATH(std::make_unique<OpenContext>(*native, &child), "terminate called");
}

TEST_F(GLContextGLTest, DoesNotEndTheProgramWhenDestroyedWhileAnExceptionIsUnderWay)
{
    const auto native = makeSharedContext();
    const auto root = makeRoot();
    OpenContext child(*native, root.get());
    try {
        const OpenContext grandchild(*native, &child);
        throw std::runtime_error("the application's own");
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "the application's own");
    }
}

TEST_F(GLContextGLTest, HandsItsChildrenToItsParentWhenAChildDies)
{
    const auto native = makeSharedContext();
    const auto root = makeRoot();
    auto child = std::make_unique<OpenContext>(*native, root.get());
    auto grandchild = std::make_unique<OpenContext>(*native, child.get());
    WatchedObject object(grandchild.get(), "object", m_Log);
    child.reset();
    EXPECT_EQ(grandchild->getRootContext(), root.get());
    EXPECT_EQ(object.getContext(), grandchild.get());
    EXPECT_TRUE(root->isCompatible(grandchild.get()));
    EXPECT_NO_THROW(grandchild.reset());
    EXPECT_EQ(object.getContext(), root.get());
}

// Contexts and objects of one tree of three, made and destroyed in random order: nothing dangles (which the address
// sanitizer sees), and every object whose root has died was told once.
TEST_F(GLContextGLTest, SurvivesEveryOrderOfDying)
{
    const auto native = makeSharedContext();
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        m_Log.clear();
        std::vector<std::unique_ptr<OpenContext>> contexts;
        contexts.push_back(makeRoot());
        contexts.push_back(std::make_unique<OpenContext>(*native, contexts[0].get()));
        contexts.push_back(std::make_unique<OpenContext>(*native, contexts[0].get()));
        std::vector<std::unique_ptr<WatchedObject>> objects;
        for (int i = 0; i < 6; ++i)
            objects.push_back(std::make_unique<WatchedObject>(contexts[random() % 3].get(), std::to_string(i), m_Log));

        std::vector<std::function<void()>> deaths;
        for (auto& context : contexts)
            deaths.emplace_back([&context] { context.reset(); });
        for (auto& object : objects)
            deaths.emplace_back([&object] { object.reset(); });
        std::shuffle(deaths.begin(), deaths.end(), random);
        for (const auto& death : deaths) {
            death();
            for (const auto& object : objects) {
                if (object) {
                    EXPECT_EQ(object->isValid(), contexts[0] != nullptr);
                }
            }
        }
        std::sort(m_Log.begin(), m_Log.end());
        EXPECT_EQ(std::adjacent_find(m_Log.begin(), m_Log.end()), m_Log.end()) << "told twice";
    }
}

class GLContextDebugGLTest : public GLContextGLTest
{
protected:
    // What debug writes.
    std::string textOf(GLContext& context, const std::string& tag)
    {
        const std::size_t before = debugOutput.getText().size();
        context.debug(tag);
        return debugOutput.getText().substr(before);
    }

    static void makeBufferTooLarge()
    {
        const unsigned int buffer = makeBuffer();
        glBindBufferARB(GL_ARRAY_BUFFER_ARB, buffer);
        glBufferDataARB(
            GL_ARRAY_BUFFER_ARB, std::numeric_limits<GLsizeiptrARB>::max() / 2, nullptr, GL_STATIC_DRAW_ARB);
        glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0);
        glDeleteBuffersARB(1, &buffer);
    }
};

TEST_F(GLContextDebugGLTest, PrintsNothingWithoutAnError)
{
    const auto root = makeRoot();
    EXPECT_EQ(textOf(*root, "quiet"), "");
    EXPECT_THAT(callsOf([&] { root->debug("quiet"); }), ElementsAre("glGetError()"));
}

TEST_F(GLContextDebugGLTest, PrintsTheTagAndTheError)
{
    const auto root = makeRoot();
    glBegin(12345);
    EXPECT_EQ(textOf(*root, "before teximage3d"), "before teximage3d errortype = invalid enum\n");
    glClear(~0u);
    EXPECT_EQ(textOf(*root, "clear"), "clear errortype = invalid value\n");
    glEnd();
    EXPECT_EQ(textOf(*root, "end"), "end errortype = invalid operation\n");
    glPopMatrix();
    EXPECT_EQ(textOf(*root, "pop"), "pop errortype = stack underflow\n");
    for (int i = 0; i < 1000; ++i)
        glPushMatrix();
    EXPECT_EQ(textOf(*root, "push"), "push errortype = stack overflow\n");
    drainErrors();
    makeBufferTooLarge();
    EXPECT_EQ(textOf(*root, "buffer"), "buffer errortype = out of memory\n");
}

TEST_F(GLContextDebugGLTest, TakesOneErrorFromTheQueue)
{
    const auto root = makeRoot();
    glBegin(12345);
    EXPECT_THAT(callsOf([&] { root->debug("once"); }), ElementsAre("glGetError()"));
}

TEST_F(GLContextDebugGLTest, CallsAnErrorOfTheFramebufferUnknown)
{
    const auto root = makeRoot();
    unsigned int framebuffer = 0;
    glGenFramebuffersEXT(1, &framebuffer);
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer);
    glClear(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(textOf(*root, "incomplete"), "incomplete errortype = unknown gl error\n");
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
    glDeleteFramebuffersEXT(1, &framebuffer);
}

} // namespace
} // namespace tavo
