#pragma once

#include <array>

#include "tavo/base/images/RGBAFloat32Image.h"
#include "tavo/base/images/RGBAImage.h"
#include "vireo/Export.h"
#include "vireo/context/GLObject.h"

namespace tavo {

class GLTexture;

// A texture that can be drawn into: a 2D or rectangle texture attached to a framebuffer object, with a depth and a
// stencil buffer if wanted; or, from createDepthTexture, a texture of depths alone.
//
//     GLRenderTextureFBO target(context);
//     if (!target.create(512, 512, 4, GLRenderTextureFBO::FLAG_DEPTH))
//         ... this driver has no such target ...
//     target.activate();
//     ... draw ...
//     target.deactivate();
//     target.bind(0);
//     ... draw with what was drawn ...
//     target.unbind();
//
// It is idle, active (drawn into) or bound (a texture of a unit). The last of activate, deactivate, bind and unbind
// decides which; they may be called in any order, and each does no more than it says.
//
// Every operation but the getters calls GL in the object's context, which must be current, and needs
// GL_EXT_framebuffer_object and GL_ARB_multitexture. Before one of the create operations has succeeded, no other may be
// called that calls GL. GL errors are left pending to whoever asks for them.
//
// Copies are member-wise and share the texture: only one of them may be destroyed. Copying is not a supported use.
class VIREO_EXPORT GLRenderTextureFBO : public GLObject
{
public:
    // What a target is made of, bits to be combined. Without the last, the texture is a 2D texture; without the two of
    // floats, a component is a byte.
    static constexpr unsigned int FLAG_DEPTH = 1;
    static constexpr unsigned int FLAG_STENCIL = 2;
    static constexpr unsigned int FLAG_FLOAT16 = 4;
    static constexpr unsigned int FLAG_FLOAT32 = 8;
    static constexpr unsigned int FLAG_RECTANGLE = 16;

    // Registers an empty object; calls no GL. The context must not be null.
    explicit GLRenderTextureFBO(GLContext* context);

    // Destroys the texture, whose name the context deletes when it can, and deletes the framebuffer at once, unless the
    // context has died. Framebuffers are not shared between contexts: the native context in which the target was made
    // must be current, and not another one of its tree. The depth and stencil buffers are deliberately left to the
    // rendering context: who makes many targets with them keeps them in a GLRenderTextureCache.
    ~GLRenderTextureFBO() override;

    GLRenderTextureFBO(const GLRenderTextureFBO&) = default;
    GLRenderTextureFBO& operator=(const GLRenderTextureFBO&) = default;

    // Makes a target of width x height texels with the given number of components, as of a GLTexture2D or
    // GLTextureRect. 2D textures deliberately have bytes for components whatever the flags say; the float formats of
    // rectangles are those of GLTextureRect, 32 bits where both sizes are asked for. No size is refused here.
    //
    // False if the driver cannot draw into such a target. Then the framebuffer stays bound, and what was made so far
    // stays until the object dies. Otherwise the window is drawn into afterwards. The texture stays bound on unit 0,
    // the last depth or stencil buffer to its target.
    //
    // A second call, also of the other create operation, makes new objects and deliberately leaves the old ones alone.
    bool create(unsigned int width, unsigned int height, unsigned int components, unsigned int flags);

    // Makes a target of depths alone, without filters, that ends at its edges. Width and height must be powers of two;
    // 0 passes for one here. It counts as one with a depth buffer and without components, and is a pure depth texture
    // from the call on, even a failing one.
    //
    // False if a size is no power of two, when nothing has been made, or if the driver cannot draw into such a target,
    // as above. No texture is bound on unit 0 afterwards.
    bool createDepthTexture(unsigned int width, unsigned int height);

    // Saves the viewport, and directs drawing into the texture, the viewport being the whole of it.
    void activate();

    // Directs drawing to the window, deliberately also where another framebuffer was bound before activate, and
    // restores the viewport that activate saved.
    void deactivate();

    // Bind the texture on a unit, counted from 0, and take it from there again. The unit is left active. Binding does
    // not deactivate: an active target is still drawn into, but counts as bound.
    void bind(unsigned int unit);
    void unbind();

    // A new image with the texture's pixels, which the caller owns. An idle or active target is bound on unit 0 for it
    // and no texture is bound there afterwards; an active one is active again then, and has saved the viewport anew. Of
    // a bound one, its unit must be the active one. A depth texture cannot be read so: GL refuses, the image is zeros.
    //
    // GL writes as its pixel storage says (glPixelStorei), of which nothing is set here, and the image has no padding:
    // GL_PACK_ALIGNMENT must be at most 4, the row length and skip values 0, and nothing bound to
    // GL_PIXEL_PACK_BUFFER_ARB.
    RGBAImage* getRGBAImage();
    RGBAFloat32Image* getRGBAFloat32Image();

    // As given to the create operation: texels, and components of a texel.
    unsigned int getWidth() const { return m_Width; }
    unsigned int getHeight() const { return m_Height; }
    unsigned int getNumComponents() const { return m_NumComponents; }

    // The flags as given, whatever the texture is made of.
    bool hasDepth() const { return hasFlag(FLAG_DEPTH); }
    bool hasStencil() const { return hasFlag(FLAG_STENCIL); }
    bool isFloat16() const { return hasFlag(FLAG_FLOAT16); }
    bool isFloat32() const { return hasFlag(FLAG_FLOAT32); }
    bool isRectangle() const { return hasFlag(FLAG_RECTANGLE); }

    bool isPureDepthTexture() const { return m_PureDepthTexture; }

    bool isActive() const { return m_State == STATE_ACTIVE; }
    bool isBound() const { return m_State == STATE_BOUND; }

    // The GL enumerant of the texture's target. There must be a texture.
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
