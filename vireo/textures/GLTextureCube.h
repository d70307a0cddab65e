#pragma once

#include "tavo/base/images/RGBACubeMap.h"
#include "vireo/Export.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {

/// A texture of the target GL_TEXTURE_CUBE_MAP: six square faces of one size with one byte per component, sampled by a
/// direction. It starts without filters, and needs GL_ARB_texture_cube_map. GLTexture says what all create operations
/// have in common.
///
///     RGBACubeMap sky;
///     sky.getImage(RGBACubeMap::POSITIVE_X) = image; // and the other five
///     GLTextureCube texture(&context);
///     texture.createFromImage(sky);
class VIREO_EXPORT GLTextureCube : public GLTexture
{
public:
    /// Makes the name (see GLTexture). There is no storage yet.
    explicit GLTextureCube(GLContext* context);

    /// Makes six faces of size x size undefined texels (glTexImage2D). Any number of components other than 1, 2 and 3
    /// deliberately counts as 4, except in the estimated size.
    void create(unsigned int size, unsigned int components);

    /// Makes six faces of 4 components from the images' pixels as they are (glTexImage2D). The edge is the width of the
    /// positive X image. Every image should be a square of that edge, which is not checked: if one has too few pixels,
    /// the rest of its face is zero; if it has none, all of the face is undefined.
    void createFromImage(RGBACubeMap& cubeMap);

    /// Replaces one face by size x size texels of client data (glTexImage2D). The data have the texture's format or,
    /// with `bgra`, the bytes blue, green, red, alpha.
    /// @needs The texture is created, and bound on the active unit; this neither binds it nor selects a unit.
    void setPositiveX(char* data, bool bgra);
    void setNegativeX(char* data, bool bgra);
    void setPositiveY(char* data, bool bgra);
    void setNegativeY(char* data, bool bgra);
    void setPositiveZ(char* data, bool bgra);
    void setNegativeZ(char* data, bool bgra);

protected:
    /// The edge of every face.
    unsigned int size = 0;
    /// Not used; subclasses may still name it.
    unsigned int reserved = 0;
    unsigned int numComponents = 0;
    /// The internal format, and the client format too.
    unsigned int format = 0;

private:
    void calcSize();
    void bindWithDefaults();
    void uploadFace(unsigned int face, unsigned int clientFormat, const void* data);
    void replaceFace(unsigned int face, const void* data, bool bgra);
};

} // namespace tavo
