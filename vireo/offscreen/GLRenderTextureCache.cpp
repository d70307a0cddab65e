#include "vireo/offscreen/GLRenderTextureCache.h"

#include <algorithm>
#include <iterator>
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

} // namespace

GLRenderTextureCache::GLRenderTextureCache(GLContext* context)
    : m_Context(context)
{}

GLRenderTextureCache::~GLRenderTextureCache()
{
    clearAll();
}

GLRenderTextureFBO* GLRenderTextureCache::getRenderTexture(unsigned int width, unsigned int height,
    unsigned int components, bool rectangle, bool floatTexture, bool float32, bool depth, bool stencil)
{
    const unsigned int desc = getDesc(width, height, components, rectangle, floatTexture, float32, depth, stencil);
    const auto available = std::find_if(
        m_Available.begin(), m_Available.end(), [desc](const Entry& entry) { return entry.second == desc; });
    if (available != m_Available.end())
        return reuse(available);

    auto renderTexture = std::make_unique<GLRenderTextureFBO>(m_Context);
    if (!renderTexture->create(width, height, components, flagsOf(rectangle, floatTexture, float32, depth, stencil)))
        return nullptr;
    m_InUse.emplace_back(renderTexture.get(), desc);
    renderTexture.release();
    debugOutput << "num cached render textures: " << std::to_string(m_Available.size() + m_InUse.size()) << "\n";
    return indexLastInUse();
}

GLRenderTextureFBO* GLRenderTextureCache::reuse(Entries::iterator available)
{
    m_InUse.splice(m_InUse.end(), m_Available, available);
    return indexLastInUse();
}

GLRenderTextureFBO* GLRenderTextureCache::indexLastInUse()
{
    GLRenderTextureFBO* const renderTexture = m_InUse.back().first;
    m_Index[renderTexture] = std::prev(m_InUse.end());
    return renderTexture;
}

void GLRenderTextureCache::freeRenderTexture(GLRenderTextureFBO* renderTexture)
{
    const auto found = m_Index.find(renderTexture);
    if (found == m_Index.end())
        throw PException("GLRenderTextureCache::freeRenderTexture() - not a render texture that was handed out");
    m_Available.splice(m_Available.end(), m_InUse, found->second);
    m_Index.erase(found);
}

void GLRenderTextureCache::clearUnused()
{
    for (const Entry& entry : m_Available)
        delete entry.first;
    m_Available.clear();
}

void GLRenderTextureCache::clearAll()
{
    for (const Entry& entry : m_InUse)
        delete entry.first;
    m_InUse.clear();
    // What comes back from now on is found not to be handed out.
    m_Index.clear();
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
