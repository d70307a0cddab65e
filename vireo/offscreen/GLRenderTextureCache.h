#pragma once

#include <list>
#include <map>
#include <memory_resource>
#include <utility>

#include "vireo/Export.h"

namespace tavo {

class GLContext;
class GLRenderTextureFBO;

// Render textures of one context to be used again and again: a pass that needs a target for a moment asks for one of
// the kind it needs, and gives it back afterwards.
//
//     GLRenderTextureFBO* target = cache.getRenderTexture(640, 480, 4, true, false, false, true, false);
//     ... draw into it, and with it ...
//     cache.freeRenderTexture(target);
//
// The kind is the arguments of the request, packed into 32 bits. A request gets the render texture of its kind that was
// given back first, or else a new one. Kinds of very large sizes or more than eight components deliberately coincide
// with others, and such a request may get a target of another size: width and height count up to 4096.
//
// The cache owns all its render textures, those handed out too. Its context must be current for all operations, also
// for the destructor. Once the context has died nothing may be asked for any more; what is there can still be given
// back and destroyed. Copies share the render textures: only one of them may be destroyed, and what was out when it was
// made must not be given back to a copy. Copying is not a supported use.
class VIREO_EXPORT GLRenderTextureCache
{
public:
    // An empty cache; calls no GL. The context is not owned.
    explicit GLRenderTextureCache(GLContext* context);

    // Destroys all render textures.
    ~GLRenderTextureCache();

    GLRenderTextureCache(const GLRenderTextureCache&) = default;
    GLRenderTextureCache& operator=(const GLRenderTextureCache&) = default;

    // A render texture of width x height texels, for the caller alone until it is given back; it stays the cache's. One
    // that was used before is as it was given back, also its contents. A new one is announced on the debug output, with
    // the number of render textures that the cache then has. Null if a new one is needed and the driver refuses it, as
    // many do with depth and stencil together; the depth and stencil buffers of the attempt stay behind.
    //
    // Making a new one leaves its texture bound on unit 0, which is active, and the window being drawn into, also where
    // another target is active: ask before activating.
    //
    // Without floatTexture, components are bytes; with it, floats of 16 or, with float32, of 32 bits, if rectangle is
    // set as well. float32 alone changes nothing, but deliberately makes another kind.
    GLRenderTextureFBO* getRenderTexture(unsigned int width, unsigned int height, unsigned int components,
        bool rectangle, bool floatTexture, bool float32, bool depth, bool stencil);

    // Gives a render texture back, which must no longer be active or bound; that is the caller's business. Throws
    // PException, and changes nothing, if the cache has not handed it out, or has got it back already.
    void freeRenderTexture(GLRenderTextureFBO* renderTexture);

    // Destroys the render textures that nobody has.
    void clearUnused();

    // Destroys all render textures, those handed out too: whoever has one must forget it. Of render textures that are
    // destroyed, the depth and stencil buffers stay behind (see GLRenderTextureFBO).
    void clearAll();

private:
    // A render texture and its kind.
    using Entry = std::pair<GLRenderTextureFBO*, unsigned int>;

    // The kind, packed.
    unsigned int getDesc(unsigned int width, unsigned int height, unsigned int components, bool rectangle,
        bool floatTexture, bool float32, bool depth, bool stencil);

    GLRenderTextureFBO* create(
        unsigned int width, unsigned int height, unsigned int components, unsigned int flags, unsigned int kind);

    GLContext* m_Context;
    // In the order in which they were handed out.
    std::pmr::list<Entry> m_InUse;
    // In the order in which they were given back.
    std::pmr::list<Entry> m_Available;
    // Where each render texture stands in m_InUse; the end of that for those that clearAll() has destroyed.
    std::pmr::map<GLRenderTextureFBO*, std::pmr::list<Entry>::iterator> m_Index;
};

} // namespace tavo
