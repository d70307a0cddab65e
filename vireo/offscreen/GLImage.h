#pragma once

#include "tavo/base/images/RGBAFloat32Image.h"
#include "tavo/base/images/RGBAImage.h"
#include "vireo/Export.h"

namespace tavo {

class GLRenderTextureCache;
class GLRenderTextureFBO;

/// An image on the GPU: a handle on one render texture that is drawn into, drawn with, uploaded and read back. The
/// render texture comes from a cache and goes back to it, is owned, or is only borrowed.
///
///     void blur(GLRenderTextureCache& cache, RGBAImage& picture)
///     {
///         GLImage original;
///         GLImage blurred;
///         original.setup(&cache, &picture);
///         blurred.setup(&cache, &original);
///         blurred.activate();
///         original.bind(0);
///         // draw
///         original.unbind();
///         blurred.deactivate();
///         blurred.drawToScreen();
///     }
///
/// An image is empty until it is set up, and also after a set-up for which the cache had no render texture
/// (getRenderTexture() is null then). What an empty image cannot do throws PException. Every set-up first lets go of
/// the present render texture: returns, destroys or forgets it. Arguments may belong to the image itself.
///
/// Operations that call GL need what GLRenderTextureFBO needs, above all a current context. Pointers must not be null.
/// A cache must outlive the images that use it. After clearAll(), do not use them; a set-up then throws PException and
/// leaves the image empty. Copies share the render texture, which only one of them may own.
class VIREO_EXPORT GLImage
{
public:
    GLImage() = default;

    /// Lets go of the render texture. If its cache refuses it, the debug output says so.
    ~GLImage();

    GLImage(const GLImage&) = default;
    GLImage& operator=(const GLImage&) = default;

    /// Takes a render texture. It may be the one that the image has: that is not destroyed, but returned to its cache
    /// if it is no longer owned, and kept otherwise.
    /// @owns With `owns`, the image destroys it; else it remains the caller's.
    void setup(GLRenderTextureFBO* renderTexture, bool owns);

    /// Takes a render texture from a cache. GLRenderTextureCache::getRenderTexture explains the arguments, and what
    /// making a new one leaves bound.
    void setup(GLRenderTextureCache* cache, unsigned int width, unsigned int height, unsigned int components,
        bool rectangle, bool floatTexture, bool float32, bool depth, bool stencil);

    /// Takes a render texture of the same kind as that of another image, without its contents. If the other one has a
    /// depth buffer, this deliberately asks for a stencil buffer too. Many drivers do not have both, and the image is
    /// then empty. The other one's stencil buffer does not count.
    void setup(GLRenderTextureCache* cache, GLImage* other);

    /// Takes a rectangle of 4 components from a cache, of bytes or of floats with 16 or 32 bits, and uploads the
    /// picture, row 0 at the bottom (glTexSubImage2D). It is sampled without filters. GL reads the picture by its pixel
    /// storage (glPixelStorei).
    /// @needs For floats, GL_ARB_texture_float or GL_NV_float_buffer.
    /// @leaves Unit 0 is active, with no texture bound to the target.
    /// @throws std::out_of_range If the picture has no pixels. Nothing has changed then.
    /// @throws PException If the driver refuses the render texture. The image is then empty.
    void setup(GLRenderTextureCache* cache, RGBAFloat32Image* image, bool float32);
    void setup(GLRenderTextureCache* cache, RGBAImage* image);

    /// See the operations of that name in GLRenderTextureFBO.
    void activate();
    void deactivate();
    void bind(unsigned int unit);
    void unbind();

    unsigned int getWidth() const;
    unsigned int getHeight() const;
    unsigned int getNumComponents() const;
    bool isFloat16() const;
    bool isFloat32() const;
    bool isRectangle() const;

    /// Whether floats of either size were asked for.
    bool isFloat() const;

    /// Whether there is a depth buffer. Deliberately, hasStencil() answers the same.
    bool hasDepth() const;
    bool hasStencil() const;

    bool isSquare() const;

    /// Whether width and height are both powers of two. 1 is a power of two, 0 is not.
    bool isPowerOfTwo() const;

    /// The render texture; null if the image is empty.
    GLRenderTextureFBO* getRenderTexture() const { return m_RenderTexture; }

    /// Deliberately copies nothing. Activates this image, binds the source on unit 0, unbinds it, and deactivates this
    /// image. The six numbers are not used.
    void copySubImage(
        GLImage* source, unsigned int, unsigned int, unsigned int, unsigned int, unsigned int, unsigned int);

    /// Reads the pixels back into a new image (glGetTexImage). GL writes them by its pixel storage, which must not ask
    /// for padding (see GLRenderTextureFBO). This waits for the GPU to finish drawing.
    /// @leaves Unit 0 is active, with no texture bound to the target. Unlike in GLRenderTextureFBO, the framebuffer of
    /// an active image deliberately stays bound, though the image no longer counts as active.
    /// @owns The caller owns the new image.
    RGBAImage* getRGBAImage();
    RGBAFloat32Image* getRGBAFloat32Image();

    /// Draws the image over the viewport (glBegin). It should be a rectangle, since the texture coordinates count
    /// texels. Whatever is enabled takes part, such as programs, blending and the texture environment, but not the
    /// depth test.
    ///
    /// The projection deliberately has the viewport's width less its x and its height less its y. The quad fills the
    /// viewport nevertheless, unless one of them is 0: then nothing is drawn, and GL has an error.
    /// @leaves GL's state is as before. The image no longer counts as active or bound.
    void drawToScreen();

private:
    // Lets the render texture go.
    void deleteRenderTexture();
    GLRenderTextureFBO& requireRenderTexture(const char* operation) const;

    GLRenderTextureCache* m_Cache = nullptr;
    GLRenderTextureFBO* m_RenderTexture = nullptr;
    // Whether letting the render texture go means to give it back to the cache, or, without one, to destroy it.
    bool m_OwnsRenderTexture = false;
};

} // namespace tavo
