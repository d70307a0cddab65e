#pragma once

#include <array>
#include <memory>

#include "vireo/Export.h"
#include "vireo/context/GLObject.h"

struct HGLRC__; // NOLINT(bugprone-reserved-identifier): the name on Windows

namespace tavo {

class GLTexture;
class GLTextureRect;

/// A target to draw into whose colours and depths are both textures, for passes that draw again with what they see:
/// light by the depths around, picking, refinement of what is already there. Both are rectangle textures of the same
/// size: colours of 4 bytes, depths of 24 bits.
///
///     GLRenderTargetFBO target(&context);
///     if (!target.create(1100, 754))
///         return; // the driver has no such target
///     target.activate();
///     // draw
///     target.deactivate();
///     target.getColourTexture()->bind(0);
///     target.getDepthTexture()->bind(1);
///     // draw with what was drawn; texture coordinates are in texels
///     target.getDepthTexture()->unbind(1);
///     target.getColourTexture()->unbind(0);
///
/// A target shared by several contexts of a tree has its textures in all of them. The framebuffer is not shared: it can
/// be drawn into only in the native context that was current when it was made.
///
/// The target, its context and the native contexts may die in any order. The textures' names go to the context, which
/// deletes them when it can. The framebuffer's name is deleted with the target, or by release(), if the native context
/// in which it was made is current then. Otherwise it stays as long as the driver keeps it, at most until the last
/// native context of the tree dies, and so does the textures' memory.
///
/// Every operation but the getters and the destructor calls GL, and needs the object's context, or one that shares
/// names with it, to be current. GL errors are left pending.
class VIREO_EXPORT GLRenderTargetFBO : public GLObject
{
public:
    /// Registers an empty object; calls no GL.
    /// @needs The context must not be null.
    explicit GLRenderTargetFBO(GLContext* context);

    /// Does what release() does, as far as the context lives. Needs nothing to be current.
    ~GLRenderTargetFBO() override;

    GLRenderTargetFBO(const GLRenderTargetFBO&) = delete;
    GLRenderTargetFBO& operator=(const GLRenderTargetFBO&) = delete;

    /// Whether the driver has what a target needs: GL_EXT_framebuffer_object, GL_ARB_texture_rectangle,
    /// GL_ARB_depth_texture and GL_ARB_multitexture. Calls no GL, and is false before the first GLContext was made.
    static bool isSupported();

    /// Makes a target of width x height texels, whose contents are undefined, in place of the one that there was
    /// (glTexImage2D, glGenFramebuffersEXT, glFramebufferTexture2DEXT).
    ///
    /// Returns false, with nothing made, if the driver has no such targets, or none of that size; 0 is no size.
    /// @leaves The framebuffer that was bound, and unit 0 active without a texture of the target's kind.
    /// @throws PException If the context has died: "GLRenderTargetFBO::create() - invalid context!".
    bool create(unsigned int width, unsigned int height);

    /// Deactivates the target and frees all that it is made of. It may be created again.
    void release();

    /// Directs drawing into the target, with a viewport of all of it, and keeps what was set before
    /// (glBindFramebufferEXT, glViewport). Does nothing if the target is active. Targets may be nested.
    /// @needs The native context in which the target was created must be current.
    /// @throws PException If the target was not created, or its context has died: "GLRenderTargetFBO::activate() -
    /// there is no target!", "GLRenderTargetFBO::activate() - invalid context!".
    void activate();

    /// Sets the framebuffer and the viewport that activate() has kept (glBindFramebufferEXT, glViewport). Does nothing
    /// if the target is not active.
    /// @needs As activate().
    /// @throws PException If the context has died: "GLRenderTargetFBO::deactivate() - invalid context!".
    void deactivate();

    /// What was drawn: bytes of red, green, blue and alpha, with linear filters, clamped to the edges. Null before
    /// create() has succeeded.
    /// @owns The target keeps it.
    GLTexture* getColourTexture() const;

    /// How deep it lies, from 0 to 1 in all four components, without filters, clamped to the edges. Null before
    /// create() has succeeded.
    /// @owns The target keeps it.
    GLTexture* getDepthTexture() const;

    /// In texels; 0 before create() has succeeded.
    unsigned int getWidth() const { return m_Width; }
    unsigned int getHeight() const { return m_Height; }

    bool isCreated() const { return m_Framebuffer != 0; }
    bool isActive() const { return m_Active; }

private:
    void makeTextures(unsigned int width, unsigned int height);
    bool makeFramebuffer();

    // Whether the framebuffer's own context is current.
    bool isAtHome() const;

    std::unique_ptr<GLTextureRect> m_Colour;
    std::unique_ptr<GLTextureRect> m_Depth;
    unsigned int m_Framebuffer = 0;
    HGLRC__* m_Home = nullptr; // the native context in which the framebuffer was made
    unsigned int m_Width = 0;
    unsigned int m_Height = 0;
    int m_SavedFramebuffer = 0;
    std::array<int, 4> m_SavedViewport{};
    bool m_Active = false;
};

} // namespace tavo
