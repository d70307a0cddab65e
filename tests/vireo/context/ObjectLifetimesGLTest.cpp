#include <algorithm>
#include <array>
#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <utility>
#include <vector>

#include "tavo/base/objects/PException.h"
#include "tests/support/CallRecorder.h"
#include "tests/vireo/ContextTest.h"
#include "vireo/geometry/GLTemplatedIndexBuffer.h"
#include "vireo/geometry/GLVertexBuffer.h"
#include "vireo/textures/GLTexture2D.h"
#include "vireo/textures/GLTexture3D.h"
#include "vireo/textures/GLTextureCube.h"
#include "vireo/textures/GLTextureRect.h"

// Textures and buffers live and die in random order in a tree of a root and two children, which do so too. The rules:
//
// 1. Every name that is deleted was generated, belongs to no living object, and was not deleted before.
// 2. While the tree is active, every name that was generated and not deleted belongs to a living object: none leaks.
// 3. While the tree is inactive, nothing calls GL, whatever dies.
// 4. Of an object that has lost its context, nothing calls GL, whatever happens to it; a buffer says why.
// 5. A root that dies while its tree is active deletes all names; one that dies inactive leaves them.

namespace tavo {
namespace {

using vireo_test::CallRecorder;

enum class Kind
{
    TEXTURE,
    BUFFER
};

struct Name
{
    Kind kind;
    unsigned int name;

    auto operator<=>(const Name&) const = default;
};

// A buffer whose name can be asked for.
template <typename Buffer>
class Named : public Buffer
{
public:
    using Buffer::Buffer;

    unsigned int getName() const { return this->m_BufferId; }
};

struct LivingObject
{
    std::unique_ptr<GLObject> object;
    Name name;
    // Gives the object storage, in a current context.
    std::function<void()> use;
};

template <typename Texture>
LivingObject makeTexture(GLContext* context, std::function<void(Texture&)> create)
{
    auto texture = std::make_unique<Texture>(context);
    Texture* const raw = texture.get();
    return {std::move(texture), {Kind::TEXTURE, raw->getTextureID()}, [raw, create] { create(*raw); }};
}

template <typename Buffer, typename... Arguments>
LivingObject makeBuffer(GLContext* context, Arguments... arguments)
{
    auto buffer = std::make_unique<Named<Buffer>>(context, arguments...);
    Named<Buffer>* const raw = buffer.get();
    return {std::move(buffer), {Kind::BUFFER, raw->getName()}, [raw] { raw->init(5, GL_STATIC_DRAW_ARB); }};
}

LivingObject makeObject(GLContext* context, unsigned int choice)
{
    static std::array<char, 64> bytes{};
    switch (choice % 6) {
    case 0:
        return makeTexture<GLTexture2D>(
            context, [](GLTexture2D& texture) { texture.createFromMemory(4, 4, 4, bytes.data(), true); });
    case 1:
        return makeTexture<GLTextureRect>(
            context, [](GLTextureRect& texture) { texture.createFromMemory(4, 4, 4, bytes.data()); });
    case 2: return makeTexture<GLTexture3D>(context, [](GLTexture3D& texture) { texture.createPerlinNoise(4, 0, 0); });
    case 3: return makeTexture<GLTextureCube>(context, [](GLTextureCube& texture) { texture.create(4, 4); });
    case 4:
        return makeBuffer<GLVertexBuffer>(
            context, makeLayout({{"position", 3, FLOAT}}), static_cast<int>(choice / 6 % 2));
    default: return makeBuffer<GLTemplatedIndexBuffer<unsigned int>>(context);
    }
}

// What a call of that verb, "glGen" or "glDelete", is about; nothing for other calls.
std::optional<Kind> kindOf(const std::string& call, const std::string& verb)
{
    if (call.starts_with(verb + "Textures("))
        return Kind::TEXTURE;
    if (call.starts_with(verb + "BuffersARB("))
        return Kind::BUFFER;
    return std::nullopt;
}

// The names in "glDeleteTextures(2, (4, 5))".
std::vector<Name> namesDeletedBy(const std::string& call)
{
    std::vector<Name> names;
    if (const std::optional<Kind> kind = kindOf(call, "glDelete")) {
        std::istringstream list(call.substr(call.find(", (") + 3));
        for (std::string name; std::getline(list, name, ',');)
            names.push_back({*kind, static_cast<unsigned int>(std::stoul(name))});
    }
    return names;
}

// The number in "glGenTextures(2, ptr)".
unsigned int numGeneratedBy(const std::string& call)
{
    return kindOf(call, "glGen") ? static_cast<unsigned int>(std::stoul(call.substr(call.find('(') + 1))) : 0;
}

class ObjectLifetimesGLTest : public vireo_test::GLTest
{
protected:
    void SetUp() override
    {
        GLTest::SetUp();
        if (IsSkipped())
            return;
        m_Natives = {makeSharedContext(), makeSharedContext()};
        makeTree();
    }

    void TearDown() override
    {
        m_Objects.clear();
        m_Children = {};
        m_Root.reset();
        m_Natives = {};
        if (!IsSkipped())
            mainContext().makeCurrent();
        GLTest::TearDown();
    }

    // Does one thing at random, and sees what it made of the names.
    void step()
    {
        const bool wasActive = m_Root->isGlobalActive();
        m_MayCallGL = true;
        m_TreeDiedActive = false;
        CallRecorder recorder;
        switch (m_Events(m_Random)) {
        case 0: replaceTree(); break;
        case 1: replaceChild(pick(2)); break;
        case 2: m_Root->deactivate(); break;
        case 3: EXPECT_TRUE(anyContext()->activate()); break;
        case 4: create(); break;
        case 5: destroyOne(); break;
        default: useOne(); break;
        }
        const bool staysInactive = !wasActive && !m_Root->isGlobalActive();
        check(recorder.calls(), m_MayCallGL && !staysInactive);
    }

    unsigned int m_NumGenerated = 0;
    unsigned int m_NumDeleted = 0;
    unsigned int m_NumLost = 0;
    unsigned int m_NumTrees = 0;
    unsigned int m_NumOrphansUsed = 0;

private:
    unsigned int pick(std::size_t count) { return static_cast<unsigned int>(m_Random() % count); }

    LivingObject& anyObject() { return m_Objects[pick(m_Objects.size())]; }

    GLContext* anyContext()
    {
        const unsigned int i = pick(3);
        return i < 2 ? m_Children[i].get() : m_Root.get();
    }

    void makeTree()
    {
        ++m_NumTrees;
        m_Root = std::make_unique<GLContext>(getDC(), getRC(), nullptr, nullptr);
        for (unsigned int i = 0; i < 2; ++i)
            makeChild(i);
    }

    void makeChild(unsigned int i)
    {
        m_Children[i] =
            std::make_unique<GLContext>(m_Natives[i]->getDC(), m_Natives[i]->getRC(), m_Root.get(), nullptr);
    }

    void replaceChild(unsigned int i)
    {
        m_Children[i].reset();
        makeChild(i);
    }

    void replaceTree()
    {
        if (pick(2) == 0)
            m_Children = {};
        const bool active = m_TreeDiedActive = m_Root->isGlobalActive();
        m_Root.reset();
        m_Children = {};
        if (!active) {
            m_NumLost += static_cast<unsigned int>(m_Names.size());
            m_Names.clear();
            m_MayCallGL = false;
        }
        makeTree();
    }

    // With whatever context of the tree current.
    void create()
    {
        if (!m_Root->isGlobalActive())
            return;
        m_Objects.push_back(makeObject(anyContext(), pick(12)));
        EXPECT_TRUE(m_Names.insert(m_Objects.back().name).second) << "GL gave out a name that is in use";
    }

    void destroyOne()
    {
        if (m_Objects.empty())
            return;
        std::swap(anyObject(), m_Objects.back());
        m_MayCallGL = m_Objects.back().object->isValid();
        m_Objects.pop_back();
    }

    void useOne()
    {
        if (m_Objects.empty())
            return;
        const LivingObject& chosen = anyObject();
        m_MayCallGL = chosen.object->isValid();
        if (m_MayCallGL && m_Root->isGlobalActive())
            chosen.use();
        else if (auto* const buffer = dynamic_cast<GLBuffer*>(chosen.object.get()); buffer && !buffer->isValid()) {
            EXPECT_THROW(buffer->bind(), PException);
            ++m_NumOrphansUsed;
        }
    }

    void check(const Calls& calls, bool mayCallGL)
    {
        for (const std::string& call : calls) {
            m_NumGenerated += numGeneratedBy(call);
            EXPECT_TRUE(mayCallGL || !call.starts_with("gl")) << call;
            for (const Name& name : namesDeletedBy(call)) {
                EXPECT_EQ(m_Names.erase(name), 1u) << call << " deletes what was never made, or is gone";
                ++m_NumDeleted;
            }
        }
        const std::set<Name> living = namesOfLivingObjects();
        EXPECT_EQ(m_NumGenerated, m_NumDeleted + m_NumLost + m_Names.size()) << "no name but those of the objects";
        if (m_Root->isGlobalActive() || m_TreeDiedActive)
            EXPECT_EQ(m_Names, living);
        else
            EXPECT_TRUE(std::includes(m_Names.begin(), m_Names.end(), living.begin(), living.end()));
    }

    std::set<Name> namesOfLivingObjects() const
    {
        std::set<Name> names;
        for (const LivingObject& living : m_Objects)
            if (living.object->isValid())
                names.insert(living.name);
        return names;
    }

    std::mt19937 m_Random{20};
    // How often each event of a step takes place among a hundred.
    std::discrete_distribution<int> m_Events{1, 6, 10, 15, 24, 20, 24};
    std::array<std::unique_ptr<vireo_test::TestContext>, 2> m_Natives;
    std::unique_ptr<GLContext> m_Root;
    std::array<std::unique_ptr<GLContext>, 2> m_Children;
    std::vector<LivingObject> m_Objects;
    // Those that were generated and not deleted since.
    std::set<Name> m_Names;
    bool m_MayCallGL = true;
    bool m_TreeDiedActive = false;
};

TEST_F(ObjectLifetimesGLTest, NeitherLosesNorDeletesANameTwice)
{
    constexpr unsigned int steps = 10000;
    for (unsigned int i = 0; i < steps && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        step();
    }
    // Each kind of event took place often enough to mean something.
    EXPECT_GT(m_NumTrees, 30u);
    EXPECT_GT(m_NumGenerated, 500u);
    EXPECT_GT(m_NumDeleted, 400u);
    EXPECT_GT(m_NumLost, 50u);
    EXPECT_GT(m_NumOrphansUsed, 50u);
}

} // namespace
} // namespace tavo
