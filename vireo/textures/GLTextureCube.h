#pragma once

#include "tavo/base/images/RGBACubeMap.h"
#include "vireo/Export.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {

// A texture of the target GL_TEXTURE_CUBE_MAP: six square faces of one size with a byte per component, sampled by a
// direction, without filters. GL_ARB_texture_cube_map is needed. GLTexture says what its create operations have in
// common.
class VIREO_EXPORT GLTextureCube : public GLTexture
{
public:
    // See GLTexture. The texture has no storage yet.
    explicit GLTextureCube(GLContext* context);

    // Six faces of size x size texels, undefined as yet, of the given number of components. Any number other than 1, 2
    // and 3 deliberately counts as 4, though not in the estimated size.
    void create(unsigned int size, unsigned int components);

    // Six faces of 4 components from the pixels of the cube map's images as they are. The edge is the width of the
    // positive X image; every image should be a square of that edge, which is not checked. From one with fewer pixels
    // than such a square, the texels left are zeros; from one without pixels, all are undefined.
    void createFromImage(RGBACubeMap& cubeMap);

    // Replace one face by size x size texels from the client's data, of the texture's format, or else, if bgra is true,
    // of the bytes blue, green, red, alpha. GL reads it as that of the create operations (see GLTexture). They neither
    // select a unit nor bind: the texture must be bound on the active unit, and have been created.
    void setPositiveX(char* data, bool bgra);
    void setNegativeX(char* data, bool bgra);
    void setPositiveY(char* data, bool bgra);
    void setNegativeY(char* data, bool bgra);
    void setPositiveZ(char* data, bool bgra);
    void setNegativeZ(char* data, bool bgra);

protected:
    // The edge of every face.
    unsigned int size = 0;
    // Kept, but not used.
    unsigned int reserved = 0;
    unsigned int numComponents = 0;
    // The internal format, and the client format too.
    unsigned int format = 0;

private:
    void calcSize();
    void bindWithDefaults();
    void uploadFace(unsigned int face, unsigned int clientFormat, const void* data);
    void replaceFace(unsigned int face, const void* data, bool bgra);
};

} // namespace tavo
