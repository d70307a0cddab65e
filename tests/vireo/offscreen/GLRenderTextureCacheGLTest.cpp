#include <algorithm>
#include <array>
#include <gmock/gmock.h>
#include <list>
#include <map>
#include <memory>
#include <memory_resource>
#include <random>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tavo/base/objects/PException.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/extensions.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/DebugText.h"
#include "tests/vireo/PrivateMember.h"
#include "tests/vireo/offscreen/renderTextures.h"
#include "tests/vireo/offscreen/targetPictures.h"
#include "tests/vireo/textures/floatFormats.h"
#include "tests/vireo/textures/texels.h"
#include "vireo/offscreen/GLRenderTextureCache.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"

// The rules of the cache, to which the tests refer:
//
// 1. A request gets the render texture of its key that was given back first, and as it was given back.
// 2. Where none is free, the request gets a new one, of the size, components and flags that it asks for.
// 3. The key is made of all arguments, each in bits of its own; what is too large for its bits spills upwards.
// 4. A new render texture is announced with the number of all there are; one that is used again is not.
// 5. A render texture that the driver refuses is destroyed; the request gets null, and the cache is as before.
// 6. Giving back calls no GL. What was not handed out, or came back already, is refused, and the cache is as before.
// 7. clearUnused destroys those that are free, in the order in which they were given back, and no others.
// 8. clearAll, and so the destructor, destroys those in use, in the order in which they were handed out, then the rest.
// 9. A render texture stands in one of two lists, with its key: of those in use, in the order handed out, or of those
//    that are free, in the order given back. A map leads from those in use to their positions.
// 10. It counts what it holds by kind, and the requests that it has served with and without a new render texture.
// 11. With a byte budget, those free for longest go where a new one would exceed it. Those in use stay, and so do those
//     with depth or stencil buffers; giving back still calls no GL. Without a budget nothing goes by itself.

namespace tavo {

struct DescMember
{
    friend auto memberOf(DescMember);
};
template struct PrivateMember<DescMember, &GLRenderTextureCache::getDesc>;

struct InUseMember
{
    friend auto memberOf(InUseMember);
};
template struct PrivateMember<InUseMember, &GLRenderTextureCache::m_InUse>;

struct AvailableMember
{
    friend auto memberOf(AvailableMember);
};
template struct PrivateMember<AvailableMember, &GLRenderTextureCache::m_Available>;

struct IndexMember
{
    friend auto memberOf(IndexMember);
};
template struct PrivateMember<IndexMember, &GLRenderTextureCache::m_Index>;

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using testing::ThrowsMessage;

// The arguments of a request.
struct Request
{
    unsigned int width = 4;
    unsigned int height = 4;
    unsigned int components = 4;
    bool rectangle = false;
    bool floatTexture = false;
    bool float32 = false;
    bool depth = false;
    bool stencil = false;
};

using Entries = std::pmr::list<std::pair<GLRenderTextureFBO*, unsigned int>>;
using Index = std::pmr::map<GLRenderTextureFBO*, Entries::iterator>;
static_assert(std::is_same_v<decltype(memberOf(InUseMember())), Entries GLRenderTextureCache::*>);
static_assert(std::is_same_v<decltype(memberOf(AvailableMember())), Entries GLRenderTextureCache::*>);
static_assert(std::is_same_v<decltype(memberOf(IndexMember())), Index GLRenderTextureCache::*>);

const char* const NOT_HANDED_OUT =
    "GLRenderTextureCache::freeRenderTexture() - not a render texture that was handed out";

std::string message(unsigned int count)
{
    return "num cached render textures: " + std::to_string(count) + "\n";
}

class GLRenderTextureCacheGLTest : public ContextTest
{
protected:
    void SetUp() override
    {
        ContextTest::SetUp();
        if (!IsSkipped())
            m_Cache = std::make_unique<GLRenderTextureCache>(context());
    }

    void TearDown() override
    {
        m_Cache.reset();
        ContextTest::TearDown();
    }

    GLRenderTextureCache& cache() { return *m_Cache; }
    void destroyCache() { m_Cache.reset(); }

    GLRenderTextureFBO* get(const Request& request)
    {
        return cache().getRenderTexture(request.width, request.height, request.components, request.rectangle,
            request.floatTexture, request.float32, request.depth, request.stencil);
    }

    unsigned int keyOf(const Request& request)
    {
        return (cache().*memberOf(DescMember()))(request.width, request.height, request.components, request.rectangle,
            request.floatTexture, request.float32, request.depth, request.stencil);
    }

    void give(std::initializer_list<GLRenderTextureFBO*> renderTextures)
    {
        for (GLRenderTextureFBO* const renderTexture : renderTextures)
            cache().freeRenderTexture(renderTexture);
    }

    const Entries& inUse() { return cache().*memberOf(InUseMember()); }
    const Entries& available() { return cache().*memberOf(AvailableMember()); }
    const Index& index() { return cache().*memberOf(IndexMember()); }

    // Whether the map leads to all that are in use.
    bool isIndexed()
    {
        for (auto position = inUse().begin(); position != inUse().end(); ++position) {
            const auto found = index().find(position->first);
            if (found == index().end() || found->second != position)
                return false;
        }
        return true;
    }

    void expectRefusal(GLRenderTextureFBO* renderTexture)
    {
        EXPECT_THAT([&] { cache().freeRenderTexture(renderTexture); }, ThrowsMessage<PException>(NOT_HANDED_OUT));
    }

private:
    std::unique_ptr<GLRenderTextureCache> m_Cache;
};

// Rule 1

TEST_F(GLRenderTextureCacheGLTest, HandsOutFirstWhatWasGivenBackFirst)
{
    GLRenderTextureFBO* const a = get({});
    GLRenderTextureFBO* const b = get({});
    GLRenderTextureFBO* const c = get({});
    EXPECT_NE(a, b);
    give({b, a, c});
    EXPECT_EQ(get({}), b);
    EXPECT_EQ(get({}), a);
    give({b});
    EXPECT_EQ(get({}), c);
    EXPECT_EQ(get({}), b);
}

TEST_F(GLRenderTextureCacheGLTest, HandsOutTheOldestOfTwo)
{
    GLRenderTextureFBO* const a = get({});
    GLRenderTextureFBO* const b = get({});
    give({a, b});
    EXPECT_EQ(get({}), a);
}

TEST_F(GLRenderTextureCacheGLTest, PassesOverOlderOnesOfOtherKinds)
{
    GLRenderTextureFBO* const other = get({.width = 8});
    GLRenderTextureFBO* const wanted = get({});
    give({other, wanted});
    EXPECT_EQ(get({}), wanted);
    EXPECT_EQ(get({.width = 8}), other);
}

TEST_F(GLRenderTextureCacheGLTest, FindsEachOfManyKinds)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    constexpr unsigned int numKinds = 100;
    std::vector<GLRenderTextureFBO*> targets;
    for (unsigned int i = 0; i < numKinds; ++i)
        targets.push_back(get({.width = i + 1}));
    for (GLRenderTextureFBO* const target : targets)
        give({target});
    for (const unsigned int i : {99u, 0u, 31u, 32u, 63u, 64u, 95u, 96u, 50u}) {
        EXPECT_EQ(get({.width = i + 1}), targets[i]) << i;
        EXPECT_NE(get({.width = i + 1}), targets[i]) << "that one is in use";
    }
}

TEST_F(GLRenderTextureCacheGLTest, HandsOutAgainWithoutACallOfGL)
{
    GLRenderTextureFBO* const target = get({});
    target->activate();
    drawQuarters();
    target->bind(2); // left so, on purpose
    EXPECT_THAT(callsOf([&] {
        give({target});
        EXPECT_EQ(get({}), target);
    }),
        IsEmpty());
    EXPECT_TRUE(target->isBound());
    target->unbind();
    target->deactivate();
    EXPECT_EQ(pictureOf(std::unique_ptr<RGBAImage>(target->getRGBAImage())), quarters(4, 4));
}

// Rule 2

TEST_F(GLRenderTextureCacheGLTest, MakesANewOneWhileTheOthersAreInUse)
{
    std::set<GLRenderTextureFBO*> all;
    for (unsigned int i = 0; i < 5; ++i)
        all.insert(get({}));
    EXPECT_THAT(all, SizeIs(5));
    EXPECT_EQ(countNames().framebuffers, 5u);
}

TEST_F(GLRenderTextureCacheGLTest, MakesWhatIsAskedFor)
{
    const GLRenderTextureFBO* const target =
        get({.width = 5, .height = 7, .components = 3, .rectangle = true, .depth = true});
    ASSERT_NE(target, nullptr);
    EXPECT_EQ(target->getContext(), context());
    EXPECT_EQ(target->getWidth(), 5u);
    EXPECT_EQ(target->getHeight(), 7u);
    EXPECT_EQ(target->getNumComponents(), 3u);
    EXPECT_TRUE(target->isRectangle());
    EXPECT_TRUE(target->hasDepth());
    EXPECT_FALSE(target->hasStencil());
    EXPECT_FALSE(target->isFloat16());
    EXPECT_FALSE(target->isFloat32());
    EXPECT_FALSE(target->isActive());
    EXPECT_FALSE(target->isBound());
}

struct FlagsOfRequest
{
    Request request;
    unsigned int flags;
};

// Of 2D textures, in which the flags of floats are accepted by every driver.
TEST_F(GLRenderTextureCacheGLTest, TurnsTheArgumentsIntoFlags)
{
    const FlagsOfRequest cases[] = {
        {{}, 0},
        {{.rectangle = true}, RECTANGLE},
        {{.floatTexture = true}, FLOAT16},
        {{.floatTexture = true, .float32 = true}, FLOAT32},
        {{.float32 = true}, 0}, // deliberate
        {{.depth = true}, DEPTH},
        {{.stencil = true}, STENCIL},
        {{.floatTexture = true, .float32 = true, .stencil = true}, FLOAT32 | STENCIL},
    };
    for (const auto& [request, flags] : cases) {
        const GLRenderTextureFBO* const target = get(request);
        ASSERT_NE(target, nullptr);
        EXPECT_EQ(target->isRectangle(), (flags & RECTANGLE) != 0);
        EXPECT_EQ(target->isFloat16(), (flags & FLOAT16) != 0);
        EXPECT_EQ(target->isFloat32(), (flags & FLOAT32) != 0);
        EXPECT_EQ(target->hasDepth(), (flags & DEPTH) != 0);
        EXPECT_EQ(target->hasStencil(), (flags & STENCIL) != 0);
    }
}

TEST_F(GLRenderTextureCacheGLTest, MakesRectanglesOfFloats)
{
    if (!hasFloatFormats())
        GTEST_SKIP() << "the driver has no float formats for rectangles";
    const GLRenderTextureFBO* const half = get({.rectangle = true, .floatTexture = true});
    const GLRenderTextureFBO* const full = get({.rectangle = true, .floatTexture = true, .float32 = true});
    ASSERT_NE(half, nullptr);
    ASSERT_NE(full, nullptr);
    EXPECT_TRUE(half->isFloat16());
    EXPECT_TRUE(full->isFloat32());
}

// Rule 3

struct Key
{
    Request request;
    unsigned int key;
};

TEST_F(GLRenderTextureCacheGLTest, PacksTheArgumentsIntoAKey)
{
    const Key keys[] = {
        {{1, 1, 1, false, false, false, false, false}, 0},
        {{256, 128, 4, true, false, false, true, false}, 0x07F0FF69},
        {{1, 1, 1, true, false, false, false, false}, 1},
        {{1, 1, 1, false, true, false, false, false}, 2},
        {{1, 1, 1, false, false, true, false, false}, 4},
        {{1, 1, 1, false, false, false, true, false}, 8},
        {{1, 1, 1, false, false, false, false, true}, 16},
        {{1, 1, 2, false, false, false, false, false}, 1 << 5},
        {{1, 1, 8, false, false, false, false, false}, 7 << 5},
        {{2, 1, 1, false, false, false, false, false}, 1 << 8},
        {{4096, 1, 1, false, false, false, false, false}, 0xFFF00},
        {{1, 2, 1, false, false, false, false, false}, 1 << 20},
        {{1, 4096, 1, false, false, false, false, false}, 0xFFF00000},
        {{4096, 4096, 8, true, true, true, true, true}, 0xFFFFFFFF},
        {{640, 480, 3, true, true, true, false, true}, 0x1DF27F57},
    };
    for (const auto& [request, key] : keys)
        EXPECT_EQ(keyOf(request), key) << std::hex << keyOf(request) << " instead of " << key;
}

// Deliberate: nothing is masked.
TEST_F(GLRenderTextureCacheGLTest, LetsWhatIsTooLargeSpillUpwards)
{
    EXPECT_EQ(keyOf({.width = 4097, .height = 1}), keyOf({.width = 1, .height = 2}));
    EXPECT_EQ(keyOf({.width = 4098, .height = 2}), keyOf({.width = 2, .height = 2}))
        << "the bits are joined, not added";
    EXPECT_EQ(keyOf({.width = 1, .components = 9}), keyOf({.width = 2, .components = 1}));
    EXPECT_EQ(keyOf({.height = 4097}), keyOf({.height = 1})) << "lost at the top";
    EXPECT_EQ(keyOf({.width = 1 << 24 | 5, .height = 1}), keyOf({.width = 5, .height = 1}));
    EXPECT_EQ(keyOf({.components = 0}), 0xFFFFFFE0);
    EXPECT_EQ(keyOf({.width = 0, .components = 1}), 0xFFFFFF00);
    EXPECT_EQ(keyOf({.width = 1, .height = 0, .components = 1}), 0xFFF00000);
}

TEST_F(GLRenderTextureCacheGLTest, ServesRequestsWithEqualKeysAlike)
{
    GLRenderTextureFBO* const target = get({.width = 1, .height = 2});
    give({target});
    EXPECT_EQ(get({.width = 4097, .height = 1}), target) << "though its size is another";
    EXPECT_EQ(target->getWidth(), 1u);
    EXPECT_EQ(target->getHeight(), 2u);
}

TEST_F(GLRenderTextureCacheGLTest, KeepsKindsApart)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    const Request kinds[] = {
        {},
        {.width = 5},
        {.height = 5},
        {.components = 3},
        {.rectangle = true},
        {.floatTexture = true},
        {.float32 = true}, // deliberate, though what is made is the same as without
        {.floatTexture = true, .float32 = true},
        {.depth = true},
        {.stencil = true},
    };
    std::vector<GLRenderTextureFBO*> all;
    for (const Request& kind : kinds) {
        GLRenderTextureFBO* const target = get(kind);
        ASSERT_NE(target, nullptr);
        EXPECT_THAT(all, testing::Not(testing::Contains(target)));
        give({target});
        all.push_back(target);
    }
    for (std::size_t i = 0; i < all.size(); ++i)
        EXPECT_EQ(get(kinds[i]), all[i]);
}

// Rule 4

TEST_F(GLRenderTextureCacheGLTest, AnnouncesHowManyThereAre)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    const DebugText debug;
    GLRenderTextureFBO* const a = get({});
    EXPECT_EQ(debug.text(), message(1));
    GLRenderTextureFBO* const b = get({});
    EXPECT_EQ(debug.text(), message(1) + message(2));
    give({a});
    EXPECT_EQ(get({}), a);
    EXPECT_EQ(debug.text(), message(1) + message(2)) << "nothing of those that are used again";
    give({a, b});
    get({.width = 8});
    EXPECT_EQ(debug.text(), message(1) + message(2) + message(3)) << "those that are free count";
    cache().clearUnused();
    get({.width = 9});
    EXPECT_EQ(debug.text(), message(1) + message(2) + message(3) + message(2));
}

// Rule 5

TEST_F(GLRenderTextureCacheGLTest, HandsOutNothingWhereTheDriverRefuses)
{
    NEEDS_EXTENSION("GL_ARB_texture_non_power_of_two");
    GLRenderTextureFBO* const target = get({});
    const DebugText debug;
    const NumNames before = countNames();
    EXPECT_EQ(get({.width = 0, .height = 0}), nullptr);
    EXPECT_EQ(countNames(), before) << "what was made for it is destroyed";
    EXPECT_EQ(boundFramebuffer(), 0);
    EXPECT_EQ(debug.text(), "");
    get({.width = 9});
    EXPECT_EQ(debug.text(), message(2)) << "it does not count";
    give({target});
    EXPECT_EQ(get({}), target);
}

// Rule 6

TEST_F(GLRenderTextureCacheGLTest, RefusesWhatItHasNotHandedOut)
{
    GLRenderTextureFBO* const target = get({});
    GLRenderTextureFBO stranger(context());
    GLRenderTextureCache otherCache(context());
    GLRenderTextureFBO* const othersTarget = otherCache.getRenderTexture(4, 4, 4, false, false, false, false, false);
    expectRefusal(&stranger);
    expectRefusal(othersTarget);
    expectRefusal(nullptr);
    give({target});
    EXPECT_EQ(get({}), target) << "the cache is as it was";
}

TEST_F(GLRenderTextureCacheGLTest, RefusesWhatCameBackAlready)
{
    GLRenderTextureFBO* const a = get({});
    GLRenderTextureFBO* const b = get({});
    give({a, b});
    EXPECT_THAT(callsOf([&] { expectRefusal(a); }), IsEmpty());
    EXPECT_EQ(get({}), a);
    EXPECT_EQ(get({}), b);
    EXPECT_NE(get({}), a) << "it is there only once";
    give({a});
}

TEST_F(GLRenderTextureCacheGLTest, RefusesWhatItHasDestroyed)
{
    GLRenderTextureFBO* const inUse = get({});
    GLRenderTextureFBO* const available = get({});
    give({available});
    cache().clearAll();
    expectRefusal(inUse);
    expectRefusal(available);
}

// Rule 7

TEST_F(GLRenderTextureCacheGLTest, DestroysThoseThatAreFree)
{
    GLRenderTextureFBO* const a = get({});
    GLRenderTextureFBO* const b = get({});
    GLRenderTextureFBO* const c = get({.width = 8});
    const std::vector<Names> names{namesOf(*c), namesOf(*a)};
    give({c, a});
    EXPECT_EQ(callsOf([&] { cache().clearUnused(); }), destructionCalls(names)) << "in the order given back";
    EXPECT_THAT(callsOf([&] { cache().clearUnused(); }), IsEmpty());
    EXPECT_EQ(countNames().framebuffers, 1u);

    give({b});
    EXPECT_EQ(get({}), b) << "what was in use is still there";
    EXPECT_THAT(callsOf([&] { get({.width = 8}); }), testing::Contains("glGenFramebuffersEXT(1, ptr)"));
}

// Rule 8

TEST_F(GLRenderTextureCacheGLTest, DestroysAll)
{
    std::array<GLRenderTextureFBO*, 4> targets{};
    std::vector<Names> names;
    for (GLRenderTextureFBO*& target : targets) {
        target = get({});
        names.push_back(namesOf(*target));
    }
    give({targets[2], targets[0]});
    EXPECT_EQ(get({}), targets[2]);
    // In use, in the order handed out: 1, 3, 2. Free: 0.
    EXPECT_EQ(callsOf([&] { cache().clearAll(); }), destructionCalls({names[1], names[3], names[2], names[0]}));
    EXPECT_EQ(countNames(), NumNames());

    const DebugText debug;
    EXPECT_NE(get({}), nullptr);
    EXPECT_EQ(debug.text(), message(1)) << "a new one";
}

TEST_F(GLRenderTextureCacheGLTest, DestroysAllWhenItDies)
{
    GLRenderTextureFBO* const a = get({});
    GLRenderTextureFBO* const b = get({});
    const std::vector<Names> names{namesOf(*b), namesOf(*a)};
    give({a});
    EXPECT_EQ(callsOf([&] { destroyCache(); }), destructionCalls(names));
}

TEST_F(GLRenderTextureCacheGLTest, MayDieAfterItsContext)
{
    give({get({})});
    get({.depth = true});
    destroyContext();
    EXPECT_THAT(callsOf([&] { destroyCache(); }), IsEmpty());
}

// Ends the program with a crash where the memory of its entries goes before it.
TEST_F(GLRenderTextureCacheGLTest, MayDieWithTheProgram)
{
    static std::unique_ptr<GLRenderTextureCache> last; // made before any cache, so destroyed after what caches made
    ASSERT_EQ(last, nullptr);
    last = std::make_unique<GLRenderTextureCache>(context());
    std::vector<GLRenderTextureFBO*> targets;
    for (int i = 0; i < 40; ++i)
        targets.push_back(last->getRenderTexture(4, 4, 4, false, false, false, false, false));
    for (int i = 0; i < 20; ++i)
        last->freeRenderTexture(targets[i]);
}

TEST_F(GLRenderTextureCacheGLTest, StartsAndDiesWithoutACallOfGL)
{
    EXPECT_THAT(callsOf([&] { GLRenderTextureCache(context()).clearAll(); }), IsEmpty());
}

TEST_F(GLRenderTextureCacheGLTest, IsCopiedWithWhatItHas)
{
    GLRenderTextureFBO* const target = get({});
    get({.depth = true});
    give({target});
    GLRenderTextureCache copy(cache());
    GLRenderTextureCache assigned(context());
    assigned = cache();
    for (GLRenderTextureCache* const other : {&copy, &assigned}) {
        EXPECT_EQ(other->getRenderTexture(4, 4, 4, false, false, false, false, false), target);
        EXPECT_EQ((other->*memberOf(InUseMember())).size(), 2u) << "it, and what was out before";
        (other->*memberOf(InUseMember())).clear(); // only one may destroy them
    }
}

// Rule 9

TEST_F(GLRenderTextureCacheGLTest, KeepsTwoListsAndAMap)
{
    const Request wide{.width = 8};
    GLRenderTextureFBO* const a = get({});
    GLRenderTextureFBO* const b = get(wide);
    GLRenderTextureFBO* const c = get({});
    EXPECT_THAT(inUse(), ElementsAre(Pair(a, keyOf({})), Pair(b, keyOf(wide)), Pair(c, keyOf({}))));
    EXPECT_THAT(available(), IsEmpty());
    EXPECT_THAT(index(), SizeIs(3));
    EXPECT_TRUE(isIndexed());

    give({b, a});
    EXPECT_THAT(inUse(), ElementsAre(Pair(c, keyOf({}))));
    EXPECT_THAT(available(), ElementsAre(Pair(b, keyOf(wide)), Pair(a, keyOf({}))));
    EXPECT_THAT(index(), ElementsAre(Pair(c, inUse().begin())));

    EXPECT_EQ(get({}), a);
    EXPECT_THAT(inUse(), ElementsAre(Pair(c, keyOf({})), Pair(a, keyOf({}))));
    EXPECT_THAT(available(), ElementsAre(Pair(b, keyOf(wide))));
    EXPECT_THAT(index(), SizeIs(2));
    EXPECT_TRUE(isIndexed());
}

// Deliberate.
TEST_F(GLRenderTextureCacheGLTest, KeepsTheMapsEntriesWhenItDestroysAll)
{
    GLRenderTextureFBO* const inUseBefore = get({});
    give({get({.width = 8})});
    cache().clearAll();
    EXPECT_THAT(inUse(), IsEmpty());
    EXPECT_THAT(available(), IsEmpty());
    EXPECT_THAT(index(), ElementsAre(Pair(inUseBefore, inUse().end())));

    // What is new may be where the other was.
    get({});
    EXPECT_TRUE(isIndexed());
}

// All rules at once: many random requests and returns, against plain lists.
class GLRenderTextureCacheRandomGLTest : public GLRenderTextureCacheGLTest
{
protected:
    void step()
    {
        countFramebuffers(callsOf([&] { act(pick(100)); }));
        EXPECT_EQ(m_NumFramebuffers, m_InUse.size() + m_Free.size());
        EXPECT_TRUE(isIndexed());
    }

    unsigned int m_NumMade = 0;
    unsigned int m_NumUsedAgain = 0;
    unsigned int m_NumRefused = 0;

private:
    // One of a few kinds, in the model's own terms.
    using Kind = std::array<unsigned int, 5>;
    struct Target
    {
        GLRenderTextureFBO* renderTexture;
        Kind kind;
    };

    unsigned int pick(unsigned int count) { return static_cast<unsigned int>(m_Random() % count); }

    void act(unsigned int choice)
    {
        if (choice < 48)
            request();
        else if (choice < 90)
            giveBack();
        else if (choice < 96)
            giveBackTwice();
        else if (choice < 99)
            clearUnused();
        else
            clearAll();
    }

    void request()
    {
        const Kind kind{pick(3), 1 + pick(2), 3 + pick(2), pick(2), pick(2)};
        const auto oldest = std::find_if(m_Free.begin(), m_Free.end(), [&](const Target& t) { return t.kind == kind; });
        const DebugText debug;
        GLRenderTextureFBO* const target = get({.width = kind[0],
            .height = kind[1],
            .components = kind[2],
            .rectangle = kind[3] != 0,
            .stencil = kind[4] != 0});
        if (kind[0] == 0) {
            EXPECT_EQ(target, nullptr) << "the driver refuses";
            EXPECT_EQ(debug.text(), "");
            ++m_NumRefused;
        } else if (oldest != m_Free.end()) {
            EXPECT_EQ(target, oldest->renderTexture);
            EXPECT_EQ(debug.text(), "");
            m_InUse.push_back(*oldest);
            m_Free.erase(oldest);
            ++m_NumUsedAgain;
        } else {
            expectNew(target, kind);
            m_InUse.push_back({target, kind});
            EXPECT_EQ(debug.text(), message(static_cast<unsigned int>(m_InUse.size() + m_Free.size())));
            ++m_NumMade;
        }
    }

    void expectNew(const GLRenderTextureFBO* target, const Kind& kind)
    {
        ASSERT_NE(target, nullptr);
        for (const std::list<Target>* list : {&m_InUse, &m_Free})
            EXPECT_TRUE(std::none_of(
                list->begin(), list->end(), [target](const Target& t) { return t.renderTexture == target; }));
        EXPECT_EQ(target->getWidth(), kind[0]);
        EXPECT_EQ(target->getHeight(), kind[1]);
        EXPECT_EQ(target->getNumComponents(), kind[2]);
        EXPECT_EQ(target->isRectangle(), kind[3] != 0);
        EXPECT_EQ(target->hasStencil(), kind[4] != 0);
    }

    void giveBack()
    {
        if (m_InUse.empty())
            return;
        const auto any = std::next(m_InUse.begin(), pick(static_cast<unsigned int>(m_InUse.size())));
        cache().freeRenderTexture(any->renderTexture);
        m_Free.splice(m_Free.end(), m_InUse, any);
    }

    void giveBackTwice()
    {
        if (!m_Free.empty())
            expectRefusal(m_Free.front().renderTexture);
    }

    void clearUnused()
    {
        cache().clearUnused();
        m_Free.clear();
    }

    void clearAll()
    {
        cache().clearAll();
        m_InUse.clear();
        m_Free.clear();
    }

    void countFramebuffers(const Calls& calls)
    {
        for (const std::string& call : calls) {
            m_NumFramebuffers += call.starts_with("glGenFramebuffersEXT") ? 1 : 0;
            m_NumFramebuffers -= call.starts_with("glDeleteFramebuffersEXT") ? 1 : 0;
        }
    }

    std::mt19937 m_Random{52};
    std::size_t m_NumFramebuffers = 0;
    std::list<Target> m_InUse;
    std::list<Target> m_Free;
};

TEST_F(GLRenderTextureCacheRandomGLTest, KeepsAllRules)
{
    testing::internal::CaptureStderr();
    constexpr unsigned int steps = 10000;
    for (unsigned int i = 0; i < steps && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        step();
    }
    testing::internal::GetCapturedStderr(); // thousands of messages
    EXPECT_GT(m_NumMade, 500u);
    EXPECT_GT(m_NumUsedAgain, 500u);
    EXPECT_GT(m_NumRefused, 500u);
}

// Rule 10

TEST_F(GLRenderTextureCacheGLTest, CountsWhatItHoldsByKind)
{
    EXPECT_THAT(cache().getStatistics().kinds, IsEmpty());
    GLRenderTextureFBO* const a = get({});
    get({});
    GLRenderTextureFBO* const c = get({.width = 8, .depth = true});
    ASSERT_TRUE(c);
    give({a, c});
    const GLRenderTextureCache::Statistics statistics = cache().getStatistics();
    ASSERT_THAT(statistics.kinds, SizeIs(2));
    const auto& small = statistics.kinds[0];
    EXPECT_EQ(small.width, 4u);
    EXPECT_EQ(small.height, 4u);
    EXPECT_EQ(small.components, 4u);
    EXPECT_EQ(small.flags, 0u);
    EXPECT_EQ(small.numFree, 1u);
    EXPECT_EQ(small.numInUse, 1u);
    EXPECT_EQ(small.bytes, 2u * 4 * 4 * 4);
    const auto& wide = statistics.kinds[1];
    EXPECT_EQ(wide.width, 8u);
    EXPECT_EQ(wide.flags, GLRenderTextureFBO::FLAG_DEPTH);
    EXPECT_EQ(wide.numFree, 1u);
    EXPECT_EQ(wide.numInUse, 0u);
    EXPECT_EQ(wide.bytes, 8u * 4 * (4 + 4)) << "colours and depths";
    EXPECT_EQ(statistics.numFree, 2u);
    EXPECT_EQ(statistics.numInUse, 1u);
    EXPECT_EQ(statistics.freeBytes, 64u + 256u);
    EXPECT_EQ(statistics.usedBytes, 64u);
}

TEST_F(GLRenderTextureCacheGLTest, CountsBytesOfFloatsWhereThereAreAny)
{
    NEEDS_EXTENSION("GL_ARB_texture_float");
    get({.rectangle = true, .floatTexture = true});
    get({.width = 8, .rectangle = true, .floatTexture = true, .float32 = true});
    get({.width = 16, .floatTexture = true, .float32 = true});
    const GLRenderTextureCache::Statistics statistics = cache().getStatistics();
    ASSERT_THAT(statistics.kinds, SizeIs(3));
    EXPECT_EQ(statistics.kinds[0].bytes, 4u * 4 * 4 * 2);
    EXPECT_EQ(statistics.kinds[1].bytes, 8u * 4 * 4 * 4);
    EXPECT_EQ(statistics.kinds[2].bytes, 16u * 4 * 4) << "2D targets are of bytes";
}

TEST_F(GLRenderTextureCacheGLTest, CountsHitsAndMisses)
{
    GLRenderTextureFBO* const a = get({});
    give({a});
    get({});
    get({});
    const GLRenderTextureCache::Statistics statistics = cache().getStatistics();
    EXPECT_EQ(statistics.hits, 1u);
    EXPECT_EQ(statistics.misses, 2u);
    EXPECT_THAT(callsOf([&] { cache().getStatistics(); }), IsEmpty());
}

// Rule 11

TEST_F(GLRenderTextureCacheGLTest, KeepsEverythingWithoutABudget)
{
    EXPECT_EQ(cache().getByteBudget(), 0u);
    std::vector<GLRenderTextureFBO*> targets;
    for (unsigned int width = 1; width <= 256; width *= 2)
        targets.push_back(get({.width = width}));
    for (GLRenderTextureFBO* const target : targets)
        give({target});
    get({.width = 512});
    EXPECT_THAT(available(), SizeIs(targets.size()));
}

TEST_F(GLRenderTextureCacheGLTest, MakesRoomForANewOneByThoseFreeForLongest)
{
    GLRenderTextureFBO* const a = get({});           // 64 bytes
    GLRenderTextureFBO* const b = get({.width = 8}); // 128
    GLRenderTextureFBO* const c = get({.width = 2}); // 32
    give({b, a, c});
    cache().setByteBudget(64 + 128 + 32);
    EXPECT_THAT(available(), SizeIs(3)) << "as many as there may be";
    get({.width = 1}); // 16 more
    EXPECT_THAT(available(), ElementsAre(Pair(a, keyOf({})), Pair(c, keyOf({.width = 2}))));
    EXPECT_EQ(get({.width = 2}), c) << "what is there is still handed out";
    EXPECT_EQ(cache().getStatistics().freeBytes + cache().getStatistics().usedBytes, 64u + 32 + 16);
}

TEST_F(GLRenderTextureCacheGLTest, DestroysAtOnceWhatASmallerBudgetHasNoRoomFor)
{
    GLRenderTextureFBO* const a = get({});
    GLRenderTextureFBO* const b = get({});
    give({a, b});
    cache().setByteBudget(64);
    EXPECT_THAT(available(), ElementsAre(Pair(b, keyOf({}))));
}

TEST_F(GLRenderTextureCacheGLTest, ExceedsItsBudgetWhereAllIsInUse)
{
    cache().setByteBudget(1);
    GLRenderTextureFBO* const a = get({});
    GLRenderTextureFBO* const b = get({});
    EXPECT_TRUE(a && b);
    EXPECT_THAT(inUse(), SizeIs(2));
    EXPECT_THAT(callsOf([&] { give({a, b}); }), IsEmpty()) << "giving back calls no GL";
    EXPECT_THAT(available(), SizeIs(2));
    get({.width = 8});
    EXPECT_THAT(available(), IsEmpty()) << "a new one makes room";
}

TEST_F(GLRenderTextureCacheGLTest, SparesThoseWhoseDepthsWouldNotBeFreed)
{
    GLRenderTextureFBO* const deep = get({.depth = true});
    ASSERT_TRUE(deep);
    GLRenderTextureFBO* const flat = get({});
    give({deep, flat});
    cache().setByteBudget(1);
    EXPECT_THAT(available(), ElementsAre(Pair(deep, keyOf({.depth = true}))));
}

} // namespace
} // namespace tavo
