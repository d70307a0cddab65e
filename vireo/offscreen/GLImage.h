#pragma once

#include "tavo/base/images/RGBAFloat32Image.h"
#include "tavo/base/images/RGBAImage.h"
#include "vireo/Export.h"

namespace tavo {

class GLRenderTextureCache;
class GLRenderTextureFBO;

// An image on the GPU: a handle on one render texture, which is drawn into and drawn with, uploaded and read back. The
// render texture comes from a cache and is given back to it, is owned outright, or is only borrowed.
//
//     GLImage original, blurred;
//     original.setup(&cache, &picture);
//     blurred.setup(&cache, &original);
//     blurred.activate();
//     ... draw with original.bind(0) ...
//     blurred.deactivate();
//     blurred.drawToScreen();
//
// An image is empty until it is set up, and after a set-up for which the cache had no render texture
// (getRenderTexture() then is null). What an empty one cannot do throws PException. Every set-up first lets the render
// texture go that the image has: gives it back, destroys it, or just forgets it. What a set-up is given may be of the
// image itself.
//
// Whatever calls GL needs what GLRenderTextureFBO needs, above all a current context. The pointers that operations take
// must not be null. A cache must outlive the images that have something of it; once it has destroyed that (clearAll),
// they must not be used, and a set-up throws PException and leaves the image empty. Copies refer to the same render
// texture, which only one of them may own.
class VIREO_EXPORT GLImage
{
public:
    GLImage() = default;

    // Lets the render texture go. Where its cache does not take it back, that is reported by the debug output.
    ~GLImage();

    GLImage(const GLImage&) = default;
    GLImage& operator=(const GLImage&) = default;

    // Takes a render texture; with `owns` to destroy it, without to leave it alone. It may be the one that the image
    // has: it is not destroyed then, but given back to its cache if it is no longer owned, and otherwise kept as it
    // came.
    void setup(GLRenderTextureFBO* renderTexture, bool owns);

    // Takes a render texture from a cache; the arguments are those of GLRenderTextureCache::getRenderTexture, which
    // says what making a new one leaves bound.
    void setup(GLRenderTextureCache* cache, unsigned int width, unsigned int height, unsigned int components,
        bool rectangle, bool floatTexture, bool float32, bool depth, bool stencil);

    // Takes one of the same kind as that of another image, with contents of its own. The other one's depth buffer
    // deliberately asks for a stencil buffer as well, which many drivers do not have beside one, so that the image is
    // empty then; its stencil buffer does not count.
    void setup(GLRenderTextureCache* cache, GLImage* other);

    // Take a rectangle of 4 components from a cache, of floats with 32 or 16 bits or of bytes, and copy an image into
    // it, row 0 at the bottom. It is sampled without filters; no texture is bound on unit 0 afterwards, which is
    // active. The picture stays the caller's; GL reads it as its pixel storage says (glPixelStorei).
    //
    // Throw std::out_of_range, and change nothing, if the picture has no pixels, and PException, with the image empty,
    // if the driver refuses the render texture. Those of floats need GL_ARB_texture_float or GL_NV_float_buffer.
    void setup(GLRenderTextureCache* cache, RGBAFloat32Image* image, bool float32);
    void setup(GLRenderTextureCache* cache, RGBAImage* image);

    // See the operations of that name in GLRenderTextureFBO.
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

    // Whether floats, of whatever size, were asked for.
    bool isFloat() const;

    // Whether there is a depth buffer; deliberately both.
    bool hasDepth() const;
    bool hasStencil() const;

    bool isSquare() const;

    // Whether width and height both are; 1 is one, 0 is none.
    bool isPowerOfTwo() const;

    // Null if the image is empty.
    GLRenderTextureFBO* getRenderTexture() const { return m_RenderTexture; }

    // Deliberately copies nothing: activates this image, binds the source on unit 0 and unbinds it, and deactivates
    // this image. The six numbers are not used.
    void copySubImage(
        GLImage* source, unsigned int, unsigned int, unsigned int, unsigned int, unsigned int, unsigned int);

    // A new image with the pixels, which the caller owns. No texture is bound on unit 0 afterwards, which is active. GL
    // writes as its pixel storage says, and must be told of no padding; see GLRenderTextureFBO.
    // Unlike GLRenderTextureFBO's, this deliberately leaves the framebuffer of an active image bound, though the image
    // no longer counts as active.
    RGBAImage* getRGBAImage();
    RGBAFloat32Image* getRGBAFloat32Image();

    // Draws the image, which should be a rectangle, over the viewport: its texture coordinates count texels. It is
    // drawn with whatever is enabled, programs, blending and the texture environment too, but without the depth test.
    // GL's state is as before afterwards; the image no longer counts as active or bound.
    //
    // Deliberately, the projection is of the viewport's width less its x by its height less its y. That fills the
    // viewport nevertheless, except where one of them is 0: then nothing is drawn, and GL has an error.
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
