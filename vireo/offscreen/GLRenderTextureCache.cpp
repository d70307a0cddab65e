#include "vireo/offscreen/GLRenderTextureCache.h"

#include <algorithm>
#include <memory>
#include <string>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/objects/PException.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"

namespace tavo {

namespace {

// Deliberately, float32 without floatTexture asks for bytes.
unsigned int flagsOf(bool rectangle, bool floatTexture, bool float32, bool depth, bool stencil)
{
    unsigned int flags = 0;
    if (depth)
        flags |= GLRenderTextureFBO::FLAG_DEPTH;
    if (stencil)
        flags |= GLRenderTextureFBO::FLAG_STENCIL;
    if (floatTexture)
        flags |= float32 ? GLRenderTextureFBO::FLAG_FLOAT32 : GLRenderTextureFBO::FLAG_FLOAT16;
    if (rectangle)
        flags |= GLRenderTextureFBO::FLAG_RECTANGLE;
    return flags;
}

std::uint64_t bytesOf(unsigned int width, unsigned int height, unsigned int components, unsigned int flags)
{
    using Target = GLRenderTextureFBO;
    std::uint64_t bytesOfComponent = 1;
    if ((flags & Target::FLAG_RECTANGLE) != 0 && (flags & Target::FLAG_FLOAT32) != 0)
        bytesOfComponent = 4;
    else if ((flags & Target::FLAG_RECTANGLE) != 0 && (flags & Target::FLAG_FLOAT16) != 0)
        bytesOfComponent = 2;
    const std::uint64_t bytesOfTexel = components * bytesOfComponent + ((flags & Target::FLAG_DEPTH) != 0 ? 4 : 0) +
                                       ((flags & Target::FLAG_STENCIL) != 0 ? 1 : 0);
    return std::uint64_t{width} * height * bytesOfTexel;
}

unsigned int flagsOf(const GLRenderTextureFBO& target)
{
    unsigned int flags = 0;
    flags |= target.hasDepth() ? GLRenderTextureFBO::FLAG_DEPTH : 0;
    flags |= target.hasStencil() ? GLRenderTextureFBO::FLAG_STENCIL : 0;
    flags |= target.isFloat16() ? GLRenderTextureFBO::FLAG_FLOAT16 : 0;
    flags |= target.isFloat32() ? GLRenderTextureFBO::FLAG_FLOAT32 : 0;
    flags |= target.isRectangle() ? GLRenderTextureFBO::FLAG_RECTANGLE : 0;
    return flags;
}

std::uint64_t bytesOf(const GLRenderTextureFBO& target)
{
    return bytesOf(target.getWidth(), target.getHeight(), target.getNumComponents(), flagsOf(target));
}

// Keeps the entries of all caches close together. Where they happen to be made, the memory of a render texture and of
// the driver would lie between any two, and giving back would wait for each. Never destroyed, since caches may be as
// late as the last destructor.
std::pmr::memory_resource* entryMemory()
{
    static auto* const memory = new std::pmr::synchronized_pool_resource;
    return memory;
}

} // namespace

GLRenderTextureCache::GLRenderTextureCache(GLContext* context)
    : m_Context(context)
    , m_InUse(entryMemory())
    , m_Available(entryMemory())
    , m_Index(entryMemory())
{}

GLRenderTextureCache::~GLRenderTextureCache()
{
    clearAll();
}

GLRenderTextureFBO* GLRenderTextureCache::getRenderTexture(unsigned int width, unsigned int height,
    unsigned int components, bool rectangle, bool floatTexture, bool float32, bool depth, bool stencil)
{
    const unsigned int kind = getDesc(width, height, components, rectangle, floatTexture, float32, depth, stencil);
    const auto oldest = std::find_if(
        m_Available.begin(), m_Available.end(), [kind](const Entry& entry) { return entry.second == kind; });
    if (oldest == m_Available.end())
        return create(width, height, components, flagsOf(rectangle, floatTexture, float32, depth, stencil), kind);
    ++m_Hits;
    // The map first, since it may find no memory. A position remains what it is when its entry changes lists.
    m_Index[oldest->first] = oldest;
    m_InUse.splice(m_InUse.end(), m_Available, oldest);
    return oldest->first;
}

GLRenderTextureFBO* GLRenderTextureCache::create(
    unsigned int width, unsigned int height, unsigned int components, unsigned int flags, unsigned int kind)
{
    ++m_Misses;
    makeRoom(bytesOf(width, height, components, flags));
    auto renderTexture = std::make_unique<GLRenderTextureFBO>(m_Context);
    if (!renderTexture->create(width, height, components, flags))
        return nullptr;
    const auto position = m_InUse.emplace(m_InUse.end(), renderTexture.get(), kind);
    renderTexture.release();
    debugOutput << "num cached render textures: " << std::to_string(m_Available.size() + m_InUse.size()) << "\n";
    m_Index[position->first] = position;
    return position->first;
}

void GLRenderTextureCache::freeRenderTexture(GLRenderTextureFBO* renderTexture)
{
    const auto found = m_Index.find(renderTexture);
    if (found == m_Index.end() || found->second == m_InUse.end())
        throw PException("GLRenderTextureCache::freeRenderTexture() - not a render texture that was handed out");
    m_Available.splice(m_Available.end(), m_InUse, found->second);
    m_Index.erase(found);
}

void GLRenderTextureCache::clearUnused()
{
    for (const auto& [renderTexture, kind] : m_Available)
        delete renderTexture;
    m_Available.clear();
}

void GLRenderTextureCache::clearAll()
{
    for (const auto& [renderTexture, kind] : m_InUse)
        delete renderTexture;
    m_InUse.clear();
    // The entries deliberately stay, but lead nowhere: what was destroyed is refused.
    for (auto& [renderTexture, position] : m_Index)
        position = m_InUse.end();
    clearUnused();
}

GLRenderTextureCache::Statistics GLRenderTextureCache::getStatistics() const
{
    Statistics statistics;
    std::map<unsigned int, Statistics::Kind> kinds;
    const auto count = [&kinds](const Entry& entry) -> Statistics::Kind& {
        const GLRenderTextureFBO& target = *entry.first;
        const Statistics::Kind fresh{
            target.getWidth(), target.getHeight(), target.getNumComponents(), flagsOf(target), 0, 0, 0};
        Statistics::Kind& kind = kinds.try_emplace(entry.second, fresh).first->second;
        kind.bytes += bytesOf(target);
        return kind;
    };
    for (const Entry& entry : m_Available) {
        ++count(entry).numFree;
        statistics.freeBytes += bytesOf(*entry.first);
    }
    for (const Entry& entry : m_InUse) {
        ++count(entry).numInUse;
        statistics.usedBytes += bytesOf(*entry.first);
    }
    for (const auto& [key, kind] : kinds)
        statistics.kinds.push_back(kind);
    statistics.numFree = m_Available.size();
    statistics.numInUse = m_InUse.size();
    statistics.hits = m_Hits;
    statistics.misses = m_Misses;
    return statistics;
}

void GLRenderTextureCache::setByteBudget(std::uint64_t bytes)
{
    m_ByteBudget = bytes;
    makeRoom(0);
}

std::uint64_t GLRenderTextureCache::getBytes() const
{
    std::uint64_t bytes = 0;
    for (const auto* const list : {&m_Available, &m_InUse})
        for (const Entry& entry : *list)
            bytes += bytesOf(*entry.first);
    return bytes;
}

void GLRenderTextureCache::makeRoom(std::uint64_t bytes)
{
    if (m_ByteBudget == 0)
        return;
    std::uint64_t held = getBytes();
    for (auto entry = m_Available.begin(); entry != m_Available.end() && held + bytes > m_ByteBudget;) {
        GLRenderTextureFBO* const target = entry->first;
        if (target->hasDepth() || target->hasStencil()) {
            ++entry;
            continue;
        }
        held -= bytesOf(*target);
        delete target;
        entry = m_Available.erase(entry);
    }
}

// Bits 0 to 4 for the booleans, 5 to 7 for the components, 8 to 19 for the width and 20 to 31 for the height, which are
// counted from 0. Deliberately not masked: what is too large for its bits changes those above, and is lost at the top.
unsigned int GLRenderTextureCache::getDesc(unsigned int width, unsigned int height, unsigned int components,
    bool rectangle, bool floatTexture, bool float32, bool depth, bool stencil)
{
    const unsigned int size = (height - 1) << 12 | (width - 1);
    const unsigned int sizeAndComponents = size << 3 | (components - 1);
    return sizeAndComponents << 5 | static_cast<unsigned int>(rectangle) |
           static_cast<unsigned int>(floatTexture) << 1 | static_cast<unsigned int>(float32) << 2 |
           static_cast<unsigned int>(depth) << 3 | static_cast<unsigned int>(stencil) << 4;
}

} // namespace tavo
