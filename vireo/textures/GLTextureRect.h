#pragma once

#include "tavo/base/images/RGBAImage.h"
#include "vireo/Export.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {

// A texture of the target GL_TEXTURE_RECTANGLE_ARB: of any size, without mipmaps, and with texture coordinates that
// count texels. It ends at its edges. GL_ARB_texture_rectangle is needed. GLTexture says what its create operations
// have in common.
class VIREO_EXPORT GLTextureRect : public GLTexture
{
public:
    // See GLTexture. The texture has no storage yet.
    explicit GLTextureRect(GLContext* context);

    // Storage of width x height texels of the given number of components, from as many bytes a texel. It is sampled
    // with linear filters.
    void createFromMemory(unsigned int width, unsigned int height, unsigned int components, char* data);

    // Storage of the image's size with 4 components, from its pixels as they are; deliberately, red and blue do not
    // change places, as they do in a 2D texture. Throws std::out_of_range if the image has no pixels, or fewer than its
    // size says, when the texture is bound and its parameters are set, but before anything is uploaded.
    void createFromImage(RGBAImage& image);

    // Storage of float texels, of 32 or of 16 bits a component, from as many floats a texel as there are components. It
    // is sampled without filters. The formats are those of GL_NV_float_buffer, or, on drivers that do not list that
    // extension, those of GL_ARB_texture_float. Where the driver has neither, a GL error is left pending and the
    // texture has no storage. The estimated size counts floats, not bytes.
    void createFloatTextureFromMemory(
        unsigned int width, unsigned int height, unsigned int components, float* data, bool use32Bit);

protected:
    // Stores the size in texels and the components of a texel, and estimates the storage.
    void setDimensions(unsigned int width, unsigned int height, unsigned int components);

    // Estimates the storage from the fields.
    void calcSize();

    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int numComponents = 0;
    // The internal format; of texels of bytes, the client format too.
    unsigned int format = 0;

private:
    void bindWithDefaults();
    void upload(unsigned int clientFormat, unsigned int type, const void* data);
};

} // namespace tavo
