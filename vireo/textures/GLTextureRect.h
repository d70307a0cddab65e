#pragma once

#include "tavo/base/images/RGBAImage.h"
#include "vireo/Export.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {

/// A texture of the target GL_TEXTURE_RECTANGLE_ARB: of any size, without mipmaps, with texture coordinates in texels.
/// It is clamped to its edges, and needs GL_ARB_texture_rectangle. GLTexture says what all create operations have in
/// common.
///
///     GLTextureRect texture(&context);
///     std::vector<float> field(640 * 480 * 4);
///     texture.createFloatTextureFromMemory(640, 480, 4, field.data(), true);
class VIREO_EXPORT GLTextureRect : public GLTexture
{
public:
    /// Makes the name (see GLTexture). There is no storage yet.
    explicit GLTextureRect(GLContext* context);

    /// Makes width x height texels from as many bytes per texel as there are components (glTexImage2D). The texture
    /// starts with linear filters.
    void createFromMemory(unsigned int width, unsigned int height, unsigned int components, char* data);

    /// Makes a texture of the image's size with 4 components, from its pixels as they are (glTexImage2D). Unlike
    /// GLTexture2D::createFromImage it deliberately does not exchange red and blue. The texture starts with linear
    /// filters.
    /// @throws std::out_of_range If the image has no pixels, or fewer than its size says. The texture is bound and has
    /// its parameters then; nothing is uploaded.
    void createFromImage(RGBAImage& image);

    /// Makes float texels of 32 or 16 bits per component from client floats (glTexImage2D). The formats are those of
    /// GL_NV_float_buffer or, where the driver does not list it, of GL_ARB_texture_float. With neither, a GL error is
    /// left pending and there is no storage. The texture starts without filters. The estimated size counts floats, not
    /// bytes.
    void createFloatTextureFromMemory(
        unsigned int width, unsigned int height, unsigned int components, float* data, bool use32Bit);

protected:
    /// Stores the size in texels and the number of components; estimates the storage.
    void setDimensions(unsigned int width, unsigned int height, unsigned int components);

    /// Estimates the storage from the fields.
    void calcSize();

    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int numComponents = 0;
    /// The internal format; for byte texels also the client format.
    unsigned int format = 0;

private:
    void bindWithDefaults();
    void upload(unsigned int clientFormat, unsigned int type, const void* data);
};

} // namespace tavo
