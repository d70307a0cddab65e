#pragma once

#include <array>

#include "tavo/base/images/RGBAFloat32Image.h"
#include "tavo/base/images/RGBAImage.h"
#include "vireo/Export.h"
#include "vireo/context/GLObject.h"

namespace tavo {

class GLTexture;

/// A texture to draw into: a 2D or rectangle texture attached to a framebuffer object, with depth and stencil buffers
/// on request; or, from createDepthTexture, a texture of depths only.
///
///     GLRenderTextureFBO target(&context);
///     if (!target.create(512, 512, 4, GLRenderTextureFBO::FLAG_DEPTH))
///         return; // the driver has no such target
///     target.activate();
///     // draw
///     target.deactivate();
///     target.bind(0);
///     // draw with what was drawn
///     target.unbind();
///
/// A target is idle, active (drawn into) or bound (to a unit). The last call of activate, deactivate, bind and unbind
/// decides which. They may be called in any order, and each does no more than it says.
///
/// Every operation but the getters calls GL in the object's context, which must be current, and needs
/// GL_EXT_framebuffer_object and GL_ARB_multitexture. Until a create operation has succeeded, call no other operation
/// that calls GL. GL errors are left pending. Do not copy targets: copies share the texture, and only one may be
/// destroyed.
class VIREO_EXPORT GLRenderTextureFBO : public GLObject
{
public:
    /// What a target is made of; combine the bits. Without FLAG_RECTANGLE it is a 2D texture. Without the two float
    /// flags, a component is a byte.
    static constexpr unsigned int FLAG_DEPTH = 1;
    static constexpr unsigned int FLAG_STENCIL = 2;
    static constexpr unsigned int FLAG_FLOAT16 = 4;
    static constexpr unsigned int FLAG_FLOAT32 = 8;
    static constexpr unsigned int FLAG_RECTANGLE = 16;

    /// Registers an empty object; calls no GL.
    /// @needs The context must not be null.
    explicit GLRenderTextureFBO(GLContext* context);

    /// Destroys the texture, whose name the context deletes when it can. Unless the context has died, deletes the
    /// framebuffer at once (glDeleteFramebuffersEXT). Depth and stencil buffers are deliberately not freed: if you need
    /// many targets with them, keep the targets in a GLRenderTextureCache.
    /// @needs The native context in which the target was made must be current, not another one of its tree:
    /// framebuffers are not shared.
    ~GLRenderTextureFBO() override;

    GLRenderTextureFBO(const GLRenderTextureFBO&) = default;
    GLRenderTextureFBO& operator=(const GLRenderTextureFBO&) = default;

    /// Makes a target of width x height texels with that many components, as in GLTexture2D or GLTextureRect
    /// (glTexImage2D, glGenFramebuffersEXT, glFramebufferTexture2DEXT, glRenderbufferStorageEXT). 2D textures
    /// deliberately have byte components whatever the flags say. Rectangles have the float formats of GLTextureRect,
    /// with 32 bits if both sizes are asked for. No size is refused here.
    ///
    /// A second call, of either create operation, makes new objects and deliberately leaves the old ones alone.
    ///
    /// Returns false if the driver cannot draw into such a target.
    /// @leaves Drawing goes to the window. The texture is bound on unit 0, the last depth or stencil buffer to its
    /// target. On failure the framebuffer stays bound, and what was made lives as long as this object.
    bool create(unsigned int width, unsigned int height, unsigned int components, unsigned int flags);

    /// Makes a target of depths only, without filters, clamped to its edges. Width and height must be powers of two or
    /// 0. It counts as having a depth buffer and no components. From the call on it is a pure depth texture, even if
    /// the call fails.
    ///
    /// Returns false if a size is not a power of two, with nothing made, or if the driver cannot draw into such a
    /// target, as above.
    /// @leaves No texture is bound on unit 0.
    bool createDepthTexture(unsigned int width, unsigned int height);

    /// Saves the viewport, directs drawing into the texture, and sets the viewport to all of it (glBindFramebufferEXT,
    /// glViewport).
    void activate();

    /// Directs drawing to the window, deliberately even if another framebuffer was bound before activate, and restores
    /// the viewport that activate saved (glBindFramebufferEXT, glViewport).
    void deactivate();

    /// Binds the texture on a unit, counted from 0 (glActiveTextureARB, glBindTexture). This does not deactivate: an
    /// active target is still drawn into, but counts as bound.
    /// @leaves That unit is active.
    void bind(unsigned int unit);
    /// Binds no texture on the unit of the last bind (glActiveTextureARB, glBindTexture).
    /// @leaves That unit is active.
    void unbind();

    /// Reads the texture back into a new image (glGetTexImage). This waits for the GPU to finish drawing. A depth
    /// texture cannot be read: GL reports an error, and the image is zero.
    /// @needs If the target is bound, its unit must be active. GL's pixel storage (glPixelStorei), which is not set
    /// here, must ask for no padding: GL_PACK_ALIGNMENT at most 4, row length and skip values 0, nothing bound to
    /// GL_PIXEL_PACK_BUFFER_ARB.
    /// @leaves A bound target stays bound. Otherwise unit 0 is active with no texture bound; an active target is active
    /// again, and has saved the viewport anew.
    /// @owns The caller owns the new image.
    RGBAImage* getRGBAImage();
    RGBAFloat32Image* getRGBAFloat32Image();

    /// As passed to the create operation: texels, and components per texel.
    unsigned int getWidth() const { return m_Width; }
    unsigned int getHeight() const { return m_Height; }
    unsigned int getNumComponents() const { return m_NumComponents; }

    /// The flags as passed, whatever the texture is made of.
    bool hasDepth() const { return hasFlag(FLAG_DEPTH); }
    bool hasStencil() const { return hasFlag(FLAG_STENCIL); }
    bool isFloat16() const { return hasFlag(FLAG_FLOAT16); }
    bool isFloat32() const { return hasFlag(FLAG_FLOAT32); }
    bool isRectangle() const { return hasFlag(FLAG_RECTANGLE); }

    bool isPureDepthTexture() const { return m_PureDepthTexture; }

    bool isActive() const { return m_State == STATE_ACTIVE; }
    bool isBound() const { return m_State == STATE_BOUND; }

    /// The texture that is drawn into; null until a create operation was called.
    const GLTexture* getTexture() const { return m_Texture; }

    /// The GL enumerant of the texture's target.
    /// @needs There must be a texture.
    unsigned int getTextureTarget();

private:
    static constexpr unsigned int STATE_IDLE = 0;
    static constexpr unsigned int STATE_ACTIVE = 1;
    static constexpr unsigned int STATE_BOUND = 2;

    bool hasFlag(unsigned int flag) const { return (m_Flags & flag) != 0; }

    void makeRectangleTexture();
    void make2DTexture();
    void makeDepthTexture();

    // Makes the framebuffer, attaches the texture, and leaves the framebuffer bound.
    void makeFramebuffer(unsigned int textureAttachment);

    // Makes a buffer of the target's size, attaches it to the framebuffer that is bound, and returns its name.
    unsigned int attachRenderbuffer(unsigned int format, unsigned int attachment);

    // Whether the framebuffer that is bound can be drawn into.
    bool checkStatus();

    // The last step of both create operations.
    bool finishFramebuffer();

    GLTexture* m_Texture = nullptr;
    unsigned int m_Framebuffer = 0;
    unsigned int m_DepthBuffer = 0;
    unsigned int m_StencilBuffer = 0;
    // The unit of the last bind.
    unsigned int m_TextureUnit = 0;
    unsigned int m_Width = 0;
    unsigned int m_Height = 0;
    unsigned int m_NumComponents = 0;
    unsigned int m_Flags = 0;
    // x, y, width, height.
    std::array<int, 4> m_SavedViewport{};
    unsigned int m_State = STATE_IDLE;
    bool m_PureDepthTexture = false;
};

} // namespace tavo
