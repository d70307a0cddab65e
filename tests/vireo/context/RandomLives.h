#pragma once

#include <functional>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/WindowSystem.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLObject.h"

namespace tavo {

// Textures, buffers, ARB programs and render textures live and die in random order, in trees that do so too. Of several
// trees one at most is active, as an application must see to. Each step fails the running test where it breaks a rule:
//
// 1. Every name that is deleted was generated in the tree whose context is current (a framebuffer in that very
// context),
//    belongs to no living object, and was not deleted before.
// 2. While a tree is active, every name that was generated in it and not deleted belongs to a living object: none
// leaks.
// 3. While a tree is inactive, nothing calls GL, whatever dies.
// 4. Of an object that has lost its context, nothing calls GL, whatever happens to it; a buffer and a program say why.
// 5. A root that dies while its tree is active deletes all names; one that dies inactive leaves them.
// 6. No GL error is left pending.
//
// A tree is a root and two children, or a root alone with ARB programs: Mesa 22 crashes where a program is used in one
// of two contexts that share names, and deleted in the other.
class RandomLives
{
public:
    // What has taken place so far.
    struct Counts
    {
        unsigned int trees = 0;
        unsigned int generated = 0;
        unsigned int deleted = 0;
        unsigned int lost = 0; // with a root that died inactive
        unsigned int programs = 0;
        unsigned int renderTextures = 0;
        unsigned int orphansUsed = 0;
    };

    RandomLives(WindowSystem& windowSystem, unsigned int numTrees, unsigned int seed);
    ~RandomLives();
    RandomLives(const RandomLives&) = delete;
    RandomLives& operator=(const RandomLives&) = delete;

    // Does one thing at random, and sees what it made of the names.
    void step();

    const Counts& getCounts() const { return m_Counts; }

private:
    // Of names that are shared within a tree; in the order of the calls that are looked for.
    enum class Kind
    {
        TEXTURE,
        BUFFER,
        PROGRAM
    };
    static constexpr std::size_t FRAMEBUFFER = 3; // of which every context has its own

    struct Name
    {
        Kind kind;
        unsigned int name;

        auto operator<=>(const Name&) const = default;
    };

    // A native context with the context around it.
    struct Context
    {
        std::unique_ptr<TestContext> native;
        std::unique_ptr<GLContext> context;
        std::string label;
        std::set<unsigned int> framebuffers; // that were made in it and not deleted since
    };

    struct Tree
    {
        std::vector<Context> contexts; // the root first
        bool hasPrograms = false;
        std::set<Name> names; // that were generated and not deleted since
        std::size_t numGenerated = 0;
        std::size_t numDeleted = 0;
        bool hasDiedActive = false;

        GLContext& root() const { return *contexts.front().context; }
        bool isAlive() const { return contexts.front().context != nullptr; }
        bool isActive() const { return isAlive() && root().isGlobalActive(); }
    };

    struct LivingObject
    {
        std::unique_ptr<GLObject> object;
        Name name;
        // Gives the object storage, or draws with it, in a current context.
        std::function<void()> use;
        Tree* tree = nullptr;
        // The one context in which a render texture may be used and destroyed; null for other objects.
        Context* home = nullptr;
    };

    unsigned int pick(std::size_t count) { return static_cast<unsigned int>(m_Random() % count); }
    Tree& anyTree() { return *m_Trees[pick(m_Trees.size())]; }
    Context& anyContext(Tree& tree) { return tree.contexts[pick(tree.contexts.size())]; }

    void makeTree(Tree& tree);
    static void wrap(Tree& tree, Context& context);
    void killTree(Tree& tree);
    void replaceDead(Tree& tree);
    void replaceChild(Tree& tree);
    void activate(Tree& tree);
    static void deactivate(Tree& tree);

    void create();
    LivingObject makeObject(Tree& tree, unsigned int choice);
    template <typename Texture>
    static LivingObject makeTexture(GLContext* context, std::function<void(Texture&)> create);
    template <typename Buffer, typename... Arguments>
    static LivingObject makeBuffer(GLContext* context, Arguments... arguments);
    LivingObject makeProgram(GLContext* context, bool isVertexProgram);
    LivingObject makeRenderTexture(Context& home, bool isRectangle);
    void destroyOne();
    void useOne();
    void useOrphan(GLObject& orphan);
    bool mayBeTouched(const LivingObject& living);

    // The context that is current; null if it is none of these.
    Context* currentContext();
    std::pair<Context*, Tree*> findContext(const std::function<bool(const Context&)>& isWanted);

    void checkCalls(const std::vector<std::string>& calls, const Context* current);
    void checkCall(const std::string& call, Context& context, Tree& tree);
    void checkNames(const Tree& tree) const;
    void checkErrors();

    WindowSystem& m_WindowSystem;
    std::mt19937 m_Random;
    // How often each event of a step takes place among a hundred.
    std::discrete_distribution<int> m_Events{1, 6, 10, 15, 24, 20, 24};
    std::vector<std::unique_ptr<Tree>> m_Trees;
    std::vector<LivingObject> m_Objects;
    bool m_MayCallGL = true; // in this step
    unsigned int m_NumContexts = 0;
    Counts m_Counts;
};

} // namespace tavo
