#pragma once

#include "vireo/Export.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {

/// A texture of the target GL_TEXTURE_3D: a volume of bytes or floats, without mipmaps. It needs GL_EXT_texture3D.
/// GLTexture says what all create operations have in common.
///
///     const std::vector<float> densities(64 * 64 * 64);
///     GLTexture3D texture(&context);
///     texture.createFloatTexture(64, 64, 64, 1, densities.data(), false);
class VIREO_EXPORT GLTexture3D : public GLTexture
{
public:
    /// Makes the name (see GLTexture). There is no storage yet.
    explicit GLTexture3D(GLContext* context);

    /// Makes width x height x depth texels with one byte per component (glTexImage3DEXT), from data of a GL type such
    /// as GL_UNSIGNED_BYTE. The texture starts with linear filters and the wrap mode GL_CLAMP, which blends in the
    /// border colour at the edges.
    ///
    /// Mipmaps are deliberately not built. If they are asked for, nothing is uploaded: the texture is only bound, its
    /// parameters set, and its size estimated with all levels.
    void createFromMemory(unsigned int width, unsigned int height, unsigned int depth, unsigned int components,
        char* data, bool mipmap, unsigned int type);

    /// Makes float texels of 16 bits (half) or 32 bits per component from client floats (glTexImage3DEXT), in the
    /// formats of GL_ARB_texture_float. The texture starts without filters, clamped to its edges. The estimated size
    /// counts floats, not bytes.
    void createFloatTexture(unsigned int width, unsigned int height, unsigned int depth, unsigned int components,
        const float* data, bool half);

    /// Makes no texture on any known driver; use createFloatTexture. It deliberately passes the internal format as the
    /// client format too, which GL refuses with GL_INVALID_ENUM. Before that it writes a pending GL error to the debug
    /// output, tagged "before teximage3d".
    /// @throws char* If mipmaps are asked for, after all but the upload. It points to static text: neither free it nor
    /// write to it.
    void createFloatTextureFromMemory(unsigned int width, unsigned int height, unsigned int depth,
        unsigned int components, char* data, bool half, bool mipmap);

    /// Makes a cube of size x size x size texels of luminance, for tests (glTexImage3DEXT). It is deliberately a ramp,
    /// not noise: texel (x, y, z) is the byte (x + y + z) mod 256. The other arguments are not used. The texture starts
    /// with linear filters and repeats along S and T; its wrap mode along R stays as it was. A size that is not a
    /// multiple of GL_UNPACK_ALIGNMENT, which may be 8 here, skews the ramp.
    /// @throws std::out_of_range If the size is 0, before anything is uploaded.
    void createPerlinNoise(unsigned int size, unsigned int, float);

protected:
    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int depth = 0;
    unsigned int numComponents = 0;
    /// The internal format.
    unsigned int format = 0;
    /// The number of components in the estimated size.
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
