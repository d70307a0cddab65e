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
    // The map first, since it may find no memory. A position remains what it is when its entry changes lists.
    m_Index[oldest->first] = oldest;
    m_InUse.splice(m_InUse.end(), m_Available, oldest);
    return oldest->first;
}

GLRenderTextureFBO* GLRenderTextureCache::create(
    unsigned int width, unsigned int height, unsigned int components, unsigned int flags, unsigned int kind)
{
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
