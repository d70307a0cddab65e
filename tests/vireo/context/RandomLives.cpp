#include "tests/vireo/context/RandomLives.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <optional>
#include <sstream>
#include <utility>

#include "tavo/base/objects/PException.h"
#include "tests/support/CallRecorder.h"
#include "tests/vireo/PrivateMember.h"
#include "tests/vireo/shaders/hasARBPrograms.h"
#include "tests/vireo/vertexLayouts.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/geometry/GLTemplatedIndexBuffer.h"
#include "vireo/geometry/GLVertexBuffer.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"
#include "vireo/shaders/GLShaderARB.h"
#include "vireo/textures/GLTexture2D.h"
#include "vireo/textures/GLTexture3D.h"
#include "vireo/textures/GLTextureCube.h"
#include "vireo/textures/GLTextureRect.h"

namespace tavo {

struct NameOfBuffer
{
    friend auto memberOf(NameOfBuffer);
};
template struct PrivateMember<NameOfBuffer, &GLBuffer::m_BufferId>;

struct NameOfProgram
{
    friend auto memberOf(NameOfProgram);
};
template struct PrivateMember<NameOfProgram, &GLShaderARB::programId>;

struct TextureOfTarget
{
    friend auto memberOf(TextureOfTarget);
};
template struct PrivateMember<TextureOfTarget, &GLRenderTextureFBO::m_Texture>;

struct FramebufferOfTarget
{
    friend auto memberOf(FramebufferOfTarget);
};
template struct PrivateMember<FramebufferOfTarget, &GLRenderTextureFBO::m_Framebuffer>;

namespace {

const std::array<std::string, 2> PROGRAMS = {
    "!!ARBvp1.0\nMOV result.position, vertex.position;\nEND", "!!ARBfp1.0\nMOV result.color, fragment.color;\nEND"};

// What a call of that verb, "glGen" or "glDelete", is about: the index in this list; nothing for other calls.
std::optional<std::size_t> kindOf(const std::string& call, const std::string& verb)
{
    constexpr std::array<const char*, 4> KINDS = {"Textures(", "BuffersARB(", "ProgramsARB(", "FramebuffersEXT("};
    for (std::size_t i = 0; i < KINDS.size(); ++i)
        if (call.starts_with(verb + KINDS[i]))
            return i;
    return std::nullopt;
}

// The names in "glDeleteTextures(2, (4, 5))".
std::vector<unsigned int> namesDeletedBy(const std::string& call)
{
    std::vector<unsigned int> names;
    std::istringstream list(call.substr(call.find(", (") + 3));
    for (std::string name; std::getline(list, name, ',');)
        names.push_back(static_cast<unsigned int>(std::stoul(name)));
    return names;
}

// The number in "glGenTextures(2, ptr)".
unsigned int numGeneratedBy(const std::string& call)
{
    return static_cast<unsigned int>(std::stoul(call.substr(call.find('(') + 1)));
}

} // namespace

RandomLives::RandomLives(WindowSystem& windowSystem, unsigned int numTrees, unsigned int seed)
    : m_WindowSystem(windowSystem)
    , m_Random(seed)
{
    for (unsigned int i = 0; i < numTrees; ++i) {
        m_Trees.push_back(std::make_unique<Tree>());
        makeTree(*m_Trees.back());
    }
}

// Objects that have lost their context may die anywhere.
RandomLives::~RandomLives()
{
    for (const auto& tree : m_Trees) {
        deactivate(*tree);
        killTree(*tree);
    }
    m_Objects.clear();
}

void RandomLives::step()
{
    m_MayCallGL = std::any_of(m_Trees.begin(), m_Trees.end(), [](const auto& tree) { return tree->isActive(); });
    Context* const current = currentContext();
    Tree& tree = anyTree();
    {
        CallRecorder recorder;
        for (const auto& known : m_Trees)
            for (const Context& context : known->contexts)
                recorder.namePointer(context.native->getRC(), context.label);
        switch (m_Events(m_Random)) {
        case 0: killTree(tree); break;
        case 1: replaceChild(tree); break;
        case 2: deactivate(tree); break;
        case 3: activate(tree); break;
        case 4: create(); break;
        case 5: destroyOne(); break;
        default: useOne(); break;
        }
        checkCalls(recorder.calls(), current);
    }
    for (const auto& known : m_Trees)
        checkNames(*known);
    checkErrors();
    if (!tree.isAlive())
        replaceDead(tree);
}

void RandomLives::makeTree(Tree& tree)
{
    const CallRecorder::Pause ownCalls;
    tree = Tree();
    const HDC previousDC = wglGetCurrentDC();
    const HGLRC previousRC = wglGetCurrentContext();
    tree.contexts.resize(pick(2) == 0 ? 3 : 1);
    TestContext* shared = nullptr;
    for (Context& context : tree.contexts) {
        context.native = m_WindowSystem.makeContext(shared);
        context.label = "context" + std::to_string(++m_NumContexts);
        shared = tree.contexts.front().native.get();
    }
    // A root may load the extensions.
    shared->makeCurrent();
    for (Context& context : tree.contexts)
        wrap(tree, context);
    tree.hasPrograms = tree.contexts.size() == 1 && hasARBPrograms(GL_VERTEX_PROGRAM_ARB);
    wglMakeCurrent(previousDC, previousRC);
    ++m_Counts.trees;
}

void RandomLives::wrap(Tree& tree, Context& context)
{
    GLContext* const parent = tree.contexts.front().context.get();
    context.context = std::make_unique<GLContext>(context.native->getDC(), context.native->getRC(), parent, nullptr);
}

void RandomLives::killTree(Tree& tree)
{
    m_MayCallGL = tree.hasDiedActive = tree.isActive();
    if (pick(2) == 0)
        std::for_each(tree.contexts.begin() + 1, tree.contexts.end(), [](Context& child) { child.context.reset(); });
    for (Context& context : tree.contexts)
        context.context.reset();
}

void RandomLives::replaceDead(Tree& tree)
{
    EXPECT_TRUE(tree.names.empty() || !tree.hasDiedActive) << "a root that dies while its tree is active deletes all";
    m_Counts.lost += static_cast<unsigned int>(tree.names.size());
    makeTree(tree);
}

void RandomLives::replaceChild(Tree& tree)
{
    if (tree.contexts.size() == 1)
        return;
    Context& child = tree.contexts[1 + pick(tree.contexts.size() - 1)];
    child.context.reset();
    wrap(tree, child);
}

void RandomLives::activate(Tree& tree)
{
    for (const auto& other : m_Trees)
        if (other.get() != &tree)
            deactivate(*other);
    m_MayCallGL = true;
    EXPECT_TRUE(anyContext(tree).context->activate());
}

// A tree that is inactive would release what another one has made current.
void RandomLives::deactivate(Tree& tree)
{
    if (tree.isActive())
        tree.root().deactivate();
}

// In the tree that is active, with whatever context of it current.
void RandomLives::create()
{
    const auto active = std::find_if(m_Trees.begin(), m_Trees.end(), [](const auto& tree) { return tree->isActive(); });
    if (active == m_Trees.end())
        return;
    Tree& tree = **active;
    m_Objects.push_back(makeObject(tree, pick(16)));
    m_Objects.back().tree = &tree;
    EXPECT_TRUE(tree.names.insert(m_Objects.back().name).second) << "GL gave out a name that is in use";
}

RandomLives::LivingObject RandomLives::makeObject(Tree& tree, unsigned int choice)
{
    static std::array<char, 64> bytes{};
    GLContext* const context = anyContext(tree).context.get();
    switch (choice % 8) {
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
            context, makeLayout({{"position", 3, FLOAT}}), static_cast<int>(choice / 8 % 2));
    case 5:
        if (tree.hasPrograms)
            return makeProgram(context, choice / 8 % 2);
        [[fallthrough]];
    case 6: return makeBuffer<GLTemplatedIndexBuffer<unsigned int>>(context);
    default: return makeRenderTexture(*currentContext(), choice / 8 % 2 == 0);
    }
}

template <typename Texture>
RandomLives::LivingObject RandomLives::makeTexture(GLContext* context, std::function<void(Texture&)> create)
{
    auto texture = std::make_unique<Texture>(context);
    Texture* const raw = texture.get();
    return {std::move(texture), {Kind::TEXTURE, raw->getTextureID()}, [raw, create] { create(*raw); }};
}

template <typename Buffer, typename... Arguments>
RandomLives::LivingObject RandomLives::makeBuffer(GLContext* context, Arguments... arguments)
{
    auto buffer = std::make_unique<Buffer>(context, arguments...);
    Buffer* const raw = buffer.get();
    return {
        std::move(buffer), {Kind::BUFFER, raw->*memberOf(NameOfBuffer())}, [raw] { raw->init(5, GL_STATIC_DRAW_ARB); }};
}

RandomLives::LivingObject RandomLives::makeProgram(GLContext* context, bool isVertexProgram)
{
    ++m_Counts.programs;
    auto program =
        std::make_unique<GLShaderARB>(context, isVertexProgram ? GL_VERTEX_PROGRAM_ARB : GL_FRAGMENT_PROGRAM_ARB);
    GLShaderARB* const raw = program.get();
    const auto use = [raw, source = PROGRAMS[isVertexProgram ? 0 : 1]] {
        EXPECT_TRUE(raw->compile(source)) << raw->getLastError();
        raw->bind();
        glRecti(-1, -1, 1, 1);
        raw->unbind();
    };
    return {std::move(program), {Kind::PROGRAM, raw->*memberOf(NameOfProgram())}, use};
}

RandomLives::LivingObject RandomLives::makeRenderTexture(Context& home, bool isRectangle)
{
    ++m_Counts.renderTextures;
    auto target = std::make_unique<GLRenderTextureFBO>(home.context.get());
    GLRenderTextureFBO* const raw = target.get();
    EXPECT_TRUE(
        raw->create(16, 16, 4, isRectangle ? GLRenderTextureFBO::FLAG_RECTANGLE : GLRenderTextureFBO::FLAG_DEPTH));
    home.framebuffers.insert(raw->*memberOf(FramebufferOfTarget()));
    const auto use = [raw] {
        raw->activate();
        glClear(GL_COLOR_BUFFER_BIT);
        raw->deactivate();
        raw->bind(0);
        raw->unbind();
    };
    const unsigned int name = (raw->*memberOf(TextureOfTarget()))->getTextureID();
    return {std::move(target), {Kind::TEXTURE, name}, use, nullptr, &home};
}

void RandomLives::destroyOne()
{
    if (m_Objects.empty())
        return;
    std::swap(m_Objects[pick(m_Objects.size())], m_Objects.back());
    LivingObject& chosen = m_Objects.back();
    if (!mayBeTouched(chosen))
        return;
    m_MayCallGL = chosen.object->isValid() && chosen.tree->isActive();
    m_Objects.pop_back();
}

void RandomLives::useOne()
{
    if (m_Objects.empty())
        return;
    const LivingObject& chosen = m_Objects[pick(m_Objects.size())];
    m_MayCallGL = chosen.object->isValid() && chosen.tree->isActive() && mayBeTouched(chosen);
    if (m_MayCallGL)
        chosen.use();
    else if (!chosen.object->isValid())
        useOrphan(*chosen.object);
}

void RandomLives::useOrphan(GLObject& orphan)
{
    if (auto* const buffer = dynamic_cast<GLBuffer*>(&orphan))
        EXPECT_THROW(buffer->bind(), PException);
    else if (auto* const program = dynamic_cast<GLShaderARB*>(&orphan))
        EXPECT_THROW(program->bind(), PException);
    else
        return;
    ++m_Counts.orphansUsed;
}

// Render textures want the context that they were made in.
bool RandomLives::mayBeTouched(const LivingObject& living)
{
    return !living.home || !living.object->isValid() || currentContext() == living.home;
}

RandomLives::Context* RandomLives::currentContext()
{
    const CallRecorder::Pause ownCalls;
    const HGLRC current = wglGetCurrentContext();
    return findContext([current](const Context& context) { return context.native->getRC() == current; }).first;
}

std::pair<RandomLives::Context*, RandomLives::Tree*> RandomLives::findContext(
    const std::function<bool(const Context&)>& isWanted)
{
    for (const auto& tree : m_Trees)
        for (Context& context : tree->contexts)
            if (isWanted(context))
                return {&context, tree.get()};
    return {nullptr, nullptr};
}

void RandomLives::checkCalls(const std::vector<std::string>& calls, const Context* current)
{
    std::string label = current ? current->label : "null";
    for (const std::string& call : calls) {
        if (call.starts_with("wglMakeCurrent("))
            label = call.substr(call.find(", ") + 2, call.size() - call.find(", ") - 3);
        if (!call.starts_with("gl"))
            continue;
        EXPECT_TRUE(m_MayCallGL) << call;
        const auto [context, tree] = findContext([&label](const Context& known) { return known.label == label; });
        EXPECT_TRUE(context) << call << " without a context, or in one of others";
        if (context)
            checkCall(call, *context, *tree);
    }
}

void RandomLives::checkCall(const std::string& call, Context& context, Tree& tree)
{
    if (const auto kind = kindOf(call, "glGen"); kind && *kind != FRAMEBUFFER) {
        tree.numGenerated += numGeneratedBy(call);
        m_Counts.generated += numGeneratedBy(call);
    }
    const auto kind = kindOf(call, "glDelete");
    if (!kind)
        return;
    for (const unsigned int name : namesDeletedBy(call)) {
        const std::size_t numErased = *kind == FRAMEBUFFER ? context.framebuffers.erase(name)
                                                           : tree.names.erase({static_cast<Kind>(*kind), name});
        EXPECT_EQ(numErased, 1u) << call << " in " << context.label << " deletes what was never made there, or is gone";
        tree.numDeleted += *kind == FRAMEBUFFER ? 0 : 1;
        ++m_Counts.deleted;
    }
}

void RandomLives::checkNames(const Tree& tree) const
{
    EXPECT_EQ(tree.numGenerated, tree.numDeleted + tree.names.size()) << "no name but those of the objects";
    std::set<Name> living;
    std::size_t numFramebuffers = 0;
    for (const LivingObject& object : m_Objects) {
        if (object.tree != &tree || !object.object->isValid())
            continue;
        living.insert(object.name);
        numFramebuffers += object.home ? 1 : 0;
    }
    EXPECT_TRUE(std::includes(tree.names.begin(), tree.names.end(), living.begin(), living.end()))
        << "a name was deleted while its object lives";
    EXPECT_TRUE(tree.names.size() == living.size() || !tree.isActive()) << "a name is lost";
    for (const Context& context : tree.contexts)
        numFramebuffers -= context.framebuffers.size();
    EXPECT_TRUE(numFramebuffers == 0 || !tree.isAlive()) << "a framebuffer is lost";
}

void RandomLives::checkErrors()
{
    const CallRecorder::Pause ownCalls;
    const GLenum error = currentContext() ? glGetError() : GL_NO_ERROR;
    EXPECT_EQ(error, static_cast<GLenum>(GL_NO_ERROR)) << "left pending";
}

} // namespace tavo
