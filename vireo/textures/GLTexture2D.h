#pragma once

#include <span>

#include "tavo/base/images/RGBAImage.h"
#include "vireo/Export.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {

// A texture of the target GL_TEXTURE_2D with a byte per component, mipmapped if wanted. It is sampled with linear
// filters, and repeats. GLTexture says what its create operations have in common.
class VIREO_EXPORT GLTexture2D : public GLTexture
{
public:
    // See GLTexture. The texture has no storage yet.
    explicit GLTexture2D(GLContext* context);

    // Storage of width x height texels of the given number of components, from as many bytes a texel. With mipmaps, GLU
    // builds the levels, and scales the first one if a size is not a power of two; it reads the data, which then must
    // not be null.
    //
    // Deliberately, bind with settings does not learn here whether there are mipmaps; only images tell it.
    void createFromMemory(unsigned int width, unsigned int height, unsigned int components, char* data, bool mipmap);

    // Storage of the image's size with 4 components. createFromRGBA takes the pixels as they are: this is the one for
    // pictures such as RGBAImage::fromQImage gives. With createFromImage red and blue deliberately change places on the
    // way: an image of the bytes blue, green, red, alpha comes out right. Mipmaps are built as above.
    //
    // The image stays as it is. Throw std::out_of_range if it has no pixels, or fewer than its size says, when the
    // texture is bound and its parameters are set, but before anything is uploaded.
    void createFromRGBA(const RGBAImage& image, bool mipmap);
    void createFromImage(RGBAImage& image, bool mipmap);

protected:
    // Stores the size in texels, the components of a texel and whether there are mipmaps, and estimates the storage.
    void setDimensions(unsigned int width, unsigned int height, unsigned int components, bool mipmapped);

    // Estimates the storage from the fields.
    void calcSize();

    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int numComponents = 0;
    bool mipmapped = true;
    // The internal format, and the client format too.
    unsigned int format = 0;

private:
    // All of an image but its upload. Returns its pixels.
    std::span<const RGBAImage::Pixel> beginImage(const RGBAImage& image, bool mipmap);
    void upload(const void* data);
};

} // namespace tavo
