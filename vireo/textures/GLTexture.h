#pragma once

#include "vireo/Export.h"
#include "vireo/context/GLObject.h"

namespace tavo {

class GLContext;
class GLTextureSettings;

// Base of all textures: one GL texture name in the share tree of a context, and the target that the name is for. The
// subclasses give it storage.
//
// A texture has its name from construction to destruction, unless its tree's root dies first: then the name is handed
// to the dying context, and using the texture is a mistake that is not looked for. Every operation that calls GL needs
// a current context of the tree, and GL_ARB_multitexture. GL errors are left pending to whoever asks for them.
//
// What the create operations of all subclasses have in common:
// - They leave the texture bound to its target on texture unit 0, and unit 0 active. A later one replaces the storage
//   that an earlier one made.
// - Sizes are in texels. Client data has row 0 (and slice 0) first, and stays the caller's; it is no longer needed
//   afterwards. Null leaves the texels undefined.
// - GL reads client data and images as its pixel storage says (glPixelStorei), which the library neither sets nor looks
//   at. GL_UNPACK_ALIGNMENT must be at most 4, GL_UNPACK_ROW_LENGTH, GL_UNPACK_IMAGE_HEIGHT and the GL_UNPACK_SKIP_
//   values must be 0, as they are at first, and nothing may be bound to GL_PIXEL_UNPACK_BUFFER_ARB: otherwise GL may
//   read beyond the end of the data, or from that buffer instead.
// - Rows of client data start at multiples of the alignment, which is 4 unless the application changed it: rows of
//   texels of 1 to 3 bytes may need padding, or GL_UNPACK_ALIGNMENT of 1. Images have no padding, and need none.
// - Components mean: 1 luminance; 2 luminance, alpha; 3 red, green, blue; 4 red, green, blue, alpha. Other counts are
//   not checked; unless said otherwise, the format that the texture had before is used, and at first it has none, which
//   GL refuses.
//
// Copying is not a supported use. A copy shares the name and the original's entry in the registry: only one of a
// texture and its copies may be destroyed, and a copy only while the context lives (see GLObject). To destroy both
// deletes the name twice and corrupts the heap.
class VIREO_EXPORT GLTexture : public GLObject
{
public:
    // Makes the name. The context must be current and must not be null.
    explicit GLTexture(GLContext* context);

    // Hands the name to the context, which deletes it at once if its tree is active, else when it is activated next.
    ~GLTexture() override;

    // Bind the texture on a unit, counted from 0, and leave that unit active. With settings, they are then written into
    // the texture (see GLTextureSettings::set).
    void bind(unsigned int unit);
    void bind(const GLTextureSettings& settings, unsigned int unit);

    // Leaves the unit active, with no texture bound to this texture's target.
    void unbind(unsigned int unit);

    // Makes a unit active, and nothing else.
    static void setStage(int stage);

    // The GL enumerant of the target, such as GL_TEXTURE_2D, and the GL name.
    unsigned int getTextureTarget() const { return m_TextureTarget; }
    unsigned int getTextureID() const { return m_TextureID; }

    // What the last create operation estimated of the storage, modulo 2^32. A component counts as one byte, also a
    // float; of mipmaps the level of one texel is left out. 0 before.
    unsigned int getSizeInBytes() const { return m_SizeInBytes; }

    // A format of the base, 0 as long as no subclass sets it. The textures of this library deliberately keep their
    // formats to themselves: for all of them this is 0, and none counts as a float texture.
    unsigned int getFormat() const { return m_Format; }

    // Whether that format is one of GL_ARB_texture_float, with 1 to 4 components.
    bool isFloatTexture() const;

protected:
    // Hands the name to the dying context.
    void onDeleteContext() override;

    // Subclasses have fields without m_, deliberately. They are not these: numComponents is not m_NumComponents.
    unsigned int m_TextureTarget = 0;
    unsigned int m_TextureID = 0;
    // Whether bind asks its settings for filters between mipmap levels.
    bool m_Mipmapped = false;
    unsigned int m_SizeInBytes = 0;
    unsigned int m_NumComponents = 0;
    unsigned int m_Format = 0;
};

} // namespace tavo
