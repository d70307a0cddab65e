#pragma once

#include <span>

#include "tavo/base/images/RGBAImage.h"
#include "vireo/Export.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {

/// A texture of the target GL_TEXTURE_2D with one byte per component, with or without mipmaps. It starts with linear
/// filters, and repeats. GLTexture says what all create operations have in common.
///
///     GLTexture2D texture(&context);
///     texture.createFromRGBA(image, true);
///     texture.bind(0);
class VIREO_EXPORT GLTexture2D : public GLTexture
{
public:
    /// Makes the name (see GLTexture). There is no storage yet.
    explicit GLTexture2D(GLContext* context);

    /// Makes width x height texels from as many bytes per texel as there are components (glTexImage2D). For mipmaps GLU
    /// builds all levels (gluBuild2DMipmaps). It scales sizes that are not powers of two, and reads `data`, which must
    /// not be null then.
    ///
    /// This operation deliberately does not tell bind() whether there are mipmaps; only those that take images do.
    void createFromMemory(unsigned int width, unsigned int height, unsigned int components, char* data, bool mipmap);

    /// Makes a texture of the image's size with 4 components, from its pixels as they are (glTexImage2D or
    /// gluBuild2DMipmaps). Use this for pictures such as RGBAImage::fromQImage returns.
    /// @throws std::out_of_range If the image has no pixels, or fewer than its size says. The texture is bound and has
    /// its parameters then; nothing is uploaded.
    void createFromRGBA(const RGBAImage& image, bool mipmap);
    /// Does the same, but deliberately exchanges red and blue, so that an image of the bytes blue, green, red, alpha
    /// comes out right. The image stays as it is; unlike createFromRGBA, this copies its pixels.
    void createFromImage(RGBAImage& image, bool mipmap);

protected:
    /// Stores the size in texels, the number of components and whether there are mipmaps; estimates the storage.
    void setDimensions(unsigned int width, unsigned int height, unsigned int components, bool mipmapped);

    /// Estimates the storage from the fields.
    void calcSize();

    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int numComponents = 0;
    bool mipmapped = true;
    /// The internal format, and the client format too.
    unsigned int format = 0;

private:
    // All of an image but its upload. Returns its pixels.
    std::span<const RGBAImage::Pixel> beginImage(const RGBAImage& image, bool mipmap);
    void upload(const void* data);
};

} // namespace tavo
