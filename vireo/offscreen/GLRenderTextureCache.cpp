#include "vireo/offscreen/GLRenderTextureCache.h"

#include <algorithm>
#include <cstdint>
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

// Where the first of a kind stands; behind the last if there is none. Blocks are gone through to their ends, so that
// the compiler can compare several kinds at once.
std::size_t positionOf(unsigned int kind, const std::vector<unsigned int>& kinds)
{
    constexpr std::size_t BLOCK = 32;
    std::size_t start = 0;
    for (; start + BLOCK <= kinds.size(); start += BLOCK) {
        std::uint32_t isThere = 0;
        for (std::size_t i = 0; i < BLOCK; ++i)
            isThere |= kinds[start + i] == kind ? ~0u : 0u;
        if (isThere != 0)
            break;
    }
    while (start < kinds.size() && kinds[start] != kind)
        ++start;
    return start;
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
    const unsigned int kind = getDesc(width, height, components, rectangle, floatTexture, float32, depth, stencil);
    if (const std::size_t position = positionOf(kind, m_AvailableKinds); position < m_Available.size())
        return reuse(position);

    return create(width, height, components, flagsOf(rectangle, floatTexture, float32, depth, stencil), kind);
}

GLRenderTextureFBO* GLRenderTextureCache::create(
    unsigned int width, unsigned int height, unsigned int components, unsigned int flags, unsigned int kind)
{
    reserveForOneMore();
    auto renderTexture = std::make_unique<GLRenderTextureFBO>(m_Context);
    if (!renderTexture->create(width, height, components, flags))
        return nullptr;
    m_InUse.push_back({renderTexture.release(), kind});
    debugOutput << "num cached render textures: " << std::to_string(m_Available.size() + m_InUse.size()) << "\n";
    return m_InUse.back().renderTexture;
}

GLRenderTextureFBO* GLRenderTextureCache::reuse(std::size_t position)
{
    const auto offset = static_cast<std::ptrdiff_t>(position);
    m_InUse.push_back({m_Available[position], m_AvailableKinds[position]});
    m_Available.erase(m_Available.begin() + offset);
    m_AvailableKinds.erase(m_AvailableKinds.begin() + offset);
    return m_InUse.back().renderTexture;
}

// Has room for all that there are, and another one, in use as well as free: only a new one may find no memory.
void GLRenderTextureCache::reserveForOneMore()
{
    const std::size_t count = m_InUse.size() + m_Available.size() + 1;
    m_InUse.reserve(count);
    m_Available.reserve(count);
    m_AvailableKinds.reserve(count);
}

void GLRenderTextureCache::freeRenderTexture(GLRenderTextureFBO* renderTexture)
{
    // The one that was handed out last comes back first, as a rule.
    const auto found = std::find_if(m_InUse.rbegin(), m_InUse.rend(),
        [renderTexture](const Entry& entry) { return entry.renderTexture == renderTexture; });
    if (found == m_InUse.rend())
        throw PException("GLRenderTextureCache::freeRenderTexture() - not a render texture that was handed out");
    m_Available.push_back(found->renderTexture);
    m_AvailableKinds.push_back(found->kind);
    m_InUse.erase(std::prev(found.base()));
}

void GLRenderTextureCache::clearUnused()
{
    for (const GLRenderTextureFBO* const renderTexture : m_Available)
        delete renderTexture;
    m_Available.clear();
    m_AvailableKinds.clear();
}

void GLRenderTextureCache::clearAll()
{
    for (const Entry& entry : m_InUse)
        delete entry.renderTexture;
    m_InUse.clear();
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
