#pragma once

#include "vireo/Export.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {

// A texture of the target GL_TEXTURE_3D: a volume of bytes or floats, without mipmaps. GL_EXT_texture3D is needed.
// GLTexture says what its create operations have in common.
class VIREO_EXPORT GLTexture3D : public GLTexture
{
public:
    // See GLTexture. The texture has no storage yet.
    explicit GLTexture3D(GLContext* context);

    // Storage of width x height x depth texels with a byte per component, from data of a GL type such as
    // GL_UNSIGNED_BYTE, with that number of components a texel. It is sampled with linear filters, and its borders are
    // clamped with GL_CLAMP: towards them, the border colour mixes in.
    //
    // Mipmaps are deliberately not built: if they are asked for, the texture is bound, its parameters are set and its
    // size is estimated with all levels, but nothing is uploaded.
    void createFromMemory(unsigned int width, unsigned int height, unsigned int depth, unsigned int components,
        char* data, bool mipmap, unsigned int type);

    // Storage of float texels, with 16 bits (half) or 32 bits a component, from as many floats a texel as there are
    // components. It is sampled without filters, and ends at its edges. The formats are those of GL_ARB_texture_float.
    // The estimated size counts floats, not bytes.
    void createFloatTexture(unsigned int width, unsigned int height, unsigned int depth, unsigned int components,
        const float* data, bool half);

    // Does not make a texture on any driver known: it deliberately hands GL the internal format as the format of the
    // client data as well, which GL refuses with GL_INVALID_ENUM. Use createFloatTexture, which is alike but for that.
    //
    // Writes a GL error that was pending before to the debug output, tagged "before teximage3d". Mipmaps are not built:
    // if they are asked for, a char* is thrown, when all but the upload is done. It points to a text of static storage,
    // which is neither to be freed nor to be written to.
    void createFloatTextureFromMemory(unsigned int width, unsigned int height, unsigned int depth,
        unsigned int components, char* data, bool half, bool mipmap);

    // A cube of size x size x size texels of luminance for tests. Deliberately no noise, but a ramp: the texel (x, y,
    // z) is the byte (x + y + z) mod 256. The other arguments are not used. It is sampled with linear filters, repeats
    // along S and T, and does along R what it did before. Throws std::out_of_range if the size is 0, before anything is
    // uploaded. A size that is not a multiple of GL_UNPACK_ALIGNMENT, which may be 8 here, skews the ramp.
    void createPerlinNoise(unsigned int size, unsigned int, float);

protected:
    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int depth = 0;
    unsigned int numComponents = 0;
    // The internal format.
    unsigned int format = 0;
    // The components of a texel in the estimated size.
    unsigned int texelComponents = 0;
    bool mipmapped = false;

private:
    void setDimensions(
        unsigned int width, unsigned int height, unsigned int depth, unsigned int components, bool mipmapped);
    void beginFloatTexture(unsigned int width, unsigned int height, unsigned int depth, unsigned int components,
        bool half, bool mipmapped);
    void upload(unsigned int clientFormat, unsigned int type, const void* data);
};

} // namespace tavo
