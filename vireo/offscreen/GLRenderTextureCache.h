#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <memory_resource>
#include <utility>
#include <vector>

#include "vireo/Export.h"

namespace tavo {

class GLContext;
class GLRenderTextureFBO;

/// Keeps render textures of one context for reuse. A pass that needs a target for a moment asks for one of the kind it
/// needs, and returns it afterwards.
///
///     void drawOnce(GLRenderTextureCache& cache)
///     {
///         GLRenderTextureFBO* const target = cache.getRenderTexture(640, 480, 4, true, false, false, true, false);
///         // draw into it, and with it
///         cache.freeRenderTexture(target);
///     }
///
/// The kind is made of the arguments of the request, packed into 32 bits. A request gets the render texture of its kind
/// that was returned first, or else a new one. Width and height count up to 4096, components up to eight: kinds beyond
/// that deliberately coincide with others, and such a request may get a target of another size.
///
/// What is free stays until clearUnused(), or with a byte budget until there is too much of it: see setByteBudget().
///
/// A request walks the list of free render textures; giving one back is one look-up.
///
/// All operations, the destructor included, need the cache's context to be current. Once the context has died, ask for
/// nothing; what exists can still be returned and destroyed.
///
/// @owns The cache owns all its render textures, including those handed out. Do not copy caches: copies share the
/// render textures, only one may be destroyed, and what was handed out before the copy must not be returned to it.
class VIREO_EXPORT GLRenderTextureCache
{
public:
    /// Makes an empty cache; calls no GL.
    /// @owns The context remains the caller's.
    explicit GLRenderTextureCache(GLContext* context);

    /// Destroys all render textures.
    ~GLRenderTextureCache();

    GLRenderTextureCache(const GLRenderTextureCache&) = default;
    GLRenderTextureCache& operator=(const GLRenderTextureCache&) = default;

    /// A render texture of width x height texels, for the caller alone until it is returned. A reused one is as it was
    /// when returned, contents included. A new one is announced on the debug output, with the number that the cache
    /// then has. Null if a new one is needed and the driver refuses it, as many do for depth and stencil together; the
    /// depth and stencil buffers of the attempt are not freed.
    ///
    /// Components are bytes, or with floatTexture floats of 16 bits, or with both floatTexture and float32 floats of 32
    /// bits; floats need `rectangle` too. float32 alone changes nothing, but deliberately makes another kind.
    /// @leaves If one is made, unit 0 is active with the texture bound, and drawing goes to the window even if another
    /// target was active: ask before you activate.
    /// @owns The cache owns it.
    GLRenderTextureFBO* getRenderTexture(unsigned int width, unsigned int height, unsigned int components,
        bool rectangle, bool floatTexture, bool float32, bool depth, bool stencil);

    /// Returns a render texture. It must no longer be active or bound, which is not checked.
    /// @throws PException If the cache has not handed it out, or has it back already. Nothing has changed then.
    void freeRenderTexture(GLRenderTextureFBO* renderTexture);

    /// Destroys the render textures that are not handed out.
    void clearUnused();

    /// Destroys all render textures, including those handed out; whoever has one must forget it. Depth and stencil
    /// buffers are not freed (see GLRenderTextureFBO).
    void clearAll();

    /// What a cache holds, and how it has served.
    struct Statistics
    {
        /// Render textures of one kind.
        struct Kind
        {
            unsigned int width;
            unsigned int height;
            unsigned int components;
            unsigned int flags; // as for GLRenderTextureFBO::create
            std::size_t numFree;
            std::size_t numInUse;
            std::uint64_t bytes; // of all of them
        };

        std::vector<Kind> kinds;
        std::size_t numFree = 0;
        std::size_t numInUse = 0;
        std::uint64_t freeBytes = 0;
        std::uint64_t usedBytes = 0;
        std::uint64_t hits = 0;   // requests that got a free one
        std::uint64_t misses = 0; // and those that needed a new one, whether or not the driver made it
    };

    /// What the cache holds now, by kind, and what it has done since it was made. Bytes are those that GL is asked for:
    /// of colours, of depths 4 for a texel, of stencils 1. Calls no GL.
    Statistics getStatistics() const;

    /// Sets how many bytes there should be at most, in use and free together; 0, as at first, for any number. Where a
    /// new render texture would exceed the budget, those free for longest are destroyed first, and those that are free
    /// now if there are too many already. What is in use is never touched and no request refused: then there are more
    /// bytes. Those with depth or stencil buffers stay, since destroying them would not free these (see
    /// GLRenderTextureFBO).
    void setByteBudget(std::uint64_t bytes);
    std::uint64_t getByteBudget() const { return m_ByteBudget; }

private:
    // A render texture and its kind.
    using Entry = std::pair<GLRenderTextureFBO*, unsigned int>;

    // The kind, packed.
    unsigned int getDesc(unsigned int width, unsigned int height, unsigned int components, bool rectangle,
        bool floatTexture, bool float32, bool depth, bool stencil);

    GLRenderTextureFBO* create(
        unsigned int width, unsigned int height, unsigned int components, unsigned int flags, unsigned int kind);

    // Destroys what is free until as many bytes more would fit into the budget.
    void makeRoom(std::uint64_t bytes);
    std::uint64_t getBytes() const;

    GLContext* m_Context;
    // In the order in which they were handed out.
    std::pmr::list<Entry> m_InUse;
    // In the order in which they were given back.
    std::pmr::list<Entry> m_Available;
    // Where each render texture stands in m_InUse; the end of that for those that clearAll() has destroyed.
    std::pmr::map<GLRenderTextureFBO*, std::pmr::list<Entry>::iterator> m_Index;
    std::uint64_t m_ByteBudget = 0;
    std::uint64_t m_Hits = 0;
    std::uint64_t m_Misses = 0;
};

} // namespace tavo
