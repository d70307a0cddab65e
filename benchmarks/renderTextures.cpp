#include <fcntl.h>
#include <list>
#include <optional>
#include <unistd.h>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/View.h"
#include "benchmarks/works.h"
#include "tavo/base/objects/PException.h"
#include "vireo/offscreen/GLRenderTextureCache.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"

#include <GL/gl.h>

namespace vireo_bench {

namespace {

// The kind that is asked for; kinds that are in the way have other widths.
constexpr unsigned int WIDTH = 640;
constexpr unsigned int HEIGHT = 480;
constexpr unsigned int OTHER_HEIGHT = 1;

using Target = tavo::GLRenderTextureFBO;

std::unique_ptr<Target> createTarget(unsigned int width, unsigned int height)
{
    auto target = std::make_unique<Target>(&View::context());
    if (!target->create(width, height, 4, 0))
        throw tavo::PException("the driver has no render textures");
    return target;
}

// While it lives, nothing is said on the standard error stream, where the cache announces what it makes.
class Silence
{
public:
    Silence()
        : m_Errors(dup(STDERR_FILENO))
    {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDERR_FILENO);
        close(nowhere);
    }
    ~Silence()
    {
        dup2(m_Errors, STDERR_FILENO);
        close(m_Errors);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

private:
    int m_Errors;
};

// Takes a free target of the wanted kind and gives it back, with as many free ones of other kinds in front of it.
class Taking : public Contestant
{
public:
    double repetitions() const override { return NUM_TAKEN; }
    Bytes result() override
    {
        return {static_cast<unsigned char>(m_Taken->getWidth()), static_cast<unsigned char>(m_Taken->getHeight())};
    }

protected:
    static constexpr int NUM_TAKEN = 1000;

    Target* m_Taken = nullptr;
};

class CacheTaking : public Taking
{
public:
    explicit CacheTaking(unsigned int numOthers)
        : m_Cache(&View::context())
    {
        const Silence silence;
        std::vector<Target*> targets;
        for (unsigned int i = 0; i < numOthers; ++i)
            targets.push_back(take(i + 1, OTHER_HEIGHT));
        targets.push_back(take(WIDTH, HEIGHT));
        for (Target* const target : targets)
            m_Cache.freeRenderTexture(target);
    }
    void run() override
    {
        for (int i = 0; i < NUM_TAKEN; ++i) {
            m_Taken = take(WIDTH, HEIGHT);
            m_Cache.freeRenderTexture(m_Taken);
        }
    }

private:
    Target* take(unsigned int width, unsigned int height)
    {
        return m_Cache.getRenderTexture(width, height, 4, false, false, false, false, false);
    }

    tavo::GLRenderTextureCache m_Cache;
};

// The leanest cache of the same interface, whose functions are called as those of a library are.
class TargetList
{
public:
    void add(std::unique_ptr<Target> target, unsigned int kind) { m_Available.push_back({std::move(target), kind}); }

    [[gnu::noinline]] Target* take(unsigned int width, unsigned int height, unsigned int components, bool rectangle,
        bool floatTexture, bool float32, bool depth, bool stencil)
    {
        const unsigned int kind = kindOf(width, height, components, rectangle, floatTexture, float32, depth, stencil);
        for (auto entry = m_Available.begin(); entry != m_Available.end(); ++entry)
            if (entry->kind == kind) {
                m_InUse.splice(m_InUse.end(), m_Available, entry);
                return entry->target.get();
            }
        return nullptr;
    }

    [[gnu::noinline]] void giveBack(Target* target)
    {
        for (auto entry = m_InUse.begin(); entry != m_InUse.end(); ++entry)
            if (entry->target.get() == target) {
                m_Available.splice(m_Available.end(), m_InUse, entry);
                return;
            }
    }

    static unsigned int kindOf(unsigned int width, unsigned int height, unsigned int components, bool rectangle,
        bool floatTexture, bool float32, bool depth, bool stencil)
    {
        const unsigned int flags = static_cast<unsigned int>(rectangle) | static_cast<unsigned int>(floatTexture) << 1 |
                                   static_cast<unsigned int>(float32) << 2 | static_cast<unsigned int>(depth) << 3 |
                                   static_cast<unsigned int>(stencil) << 4;
        return height << 20 | width << 8 | components << 5 | flags;
    }

private:
    struct Entry
    {
        std::unique_ptr<Target> target;
        unsigned int kind;
    };

    std::list<Entry> m_Available;
    std::list<Entry> m_InUse;
};

class ListWalk : public Taking
{
public:
    explicit ListWalk(unsigned int numOthers)
    {
        for (unsigned int i = 0; i < numOthers; ++i)
            create(i + 1, OTHER_HEIGHT);
        create(WIDTH, HEIGHT);
    }
    void run() override
    {
        for (int i = 0; i < NUM_TAKEN; ++i) {
            m_Taken = m_Targets.take(WIDTH, HEIGHT, 4, false, false, false, false, false);
            m_Targets.giveBack(m_Taken);
        }
    }

private:
    void create(unsigned int width, unsigned int height)
    {
        m_Targets.add(
            createTarget(width, height), TargetList::kindOf(width, height, 4, false, false, false, false, false));
    }

    TargetList m_Targets;
};

// Gives back all that are out, in the order in which they were handed out.
class GivingBack : public Contestant
{
public:
    explicit GivingBack(unsigned int numOut)
        : m_Cache(&View::context())
        , m_Out(numOut)
    {}
    void prepare() override
    {
        const Silence silence;
        for (Target*& target : m_Out)
            target = m_Cache.getRenderTexture(1, 1, 4, false, false, false, false, false);
    }
    void run() override
    {
        for (Target* const target : m_Out)
            m_Cache.freeRenderTexture(target);
    }
    double repetitions() const override { return static_cast<double>(m_Out.size()); }

private:
    tavo::GLRenderTextureCache m_Cache;
    std::vector<Target*> m_Out;
};

class Creating : public Contestant
{
public:
    void prepare() override { View::context(); }
    void run() override
    {
        m_Target = createTarget(WIDTH, HEIGHT);
        glFinish();
    }
    void cleanUp() override { m_Target.reset(); }

private:
    std::unique_ptr<Target> m_Target;
};

template <typename Kind>
std::function<std::unique_ptr<Contestant>()> with(unsigned int numOthers)
{
    return [numOthers] { return std::make_unique<Kind>(numOthers); };
}

} // namespace

Comparison takeRenderTexture(unsigned int numOthers)
{
    // Past a single other there is no walk to speak of; there it counts what is saved.
    const bool isWalk = numOthers > 1;
    const std::optional<double> mostOfWalk = isWalk ? std::optional(1.2) : std::nullopt;
    const std::optional<double> mostOfCreating = isWalk ? std::nullopt : std::optional(0.01);
    return {"render texture from the cache, behind " + withCommas(numOthers) + " of other kinds",
        {{"vireo", with<CacheTaking>(numOthers)}, {"floor", with<ListWalk>(numOthers), mostOfWalk},
            {"creating one", std::make_unique<Creating>, mostOfCreating, anyResult}}};
}

Comparison giveBackRenderTexture(unsigned int numOut)
{
    constexpr unsigned int FEW = 1'000;
    return {"render texture given back, of " + withCommas(numOut) + " that are out",
        {{"vireo", with<GivingBack>(numOut)}, {"of " + withCommas(FEW) + " that are out", with<GivingBack>(FEW), 3}}};
}

void addRenderTextureWorks()
{
    add(takeRenderTexture(1));
    add(takeRenderTexture(1'000));
    add(giveBackRenderTexture(64'000));
}

} // namespace vireo_bench
