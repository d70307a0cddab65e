#pragma once

#include "vireo/Export.h"
#include "vireo/context/GLObject.h"

namespace tavo {

class GLContext;
class GLTextureSettings;

/// The base of all textures: a GL texture name in the share tree of a context, and the target it is for. Subclasses
/// give it storage.
///
///     void drawWith(GLTexture& texture)
///     {
///         texture.bind(0);
///         // draw
///         texture.unbind(0);
///     }
///
/// A texture has its name from construction to destruction. If the root of its tree dies first, the name passes to the
/// dying context; using the texture after that is an error, which nothing checks. Every operation that calls GL needs a
/// current context of the tree, and GL_ARB_multitexture. GL errors are left pending.
///
/// All create operations of the subclasses have this in common:
///
/// - They leave the texture bound to its target on unit 0, and unit 0 active. Calling one again replaces the storage.
/// - Sizes are in texels. Client data begins with row 0 (and slice 0). It stays the caller's, and is not needed
///   afterwards. Null leaves the texels undefined.
/// - GL reads data and images by the pixel storage of the context (glPixelStorei), which the library neither sets nor
///   checks. Keep GL's initial values: GL_UNPACK_ALIGNMENT at most 4; GL_UNPACK_ROW_LENGTH, GL_UNPACK_IMAGE_HEIGHT and
///   all GL_UNPACK_SKIP values 0; nothing bound to GL_PIXEL_UNPACK_BUFFER_ARB. Otherwise GL may read beyond the data,
///   or from that buffer.
/// - Rows of client data begin at multiples of that alignment, 4 by default. Rows of texels of 1 to 3 bytes may need
///   padding, or an alignment of 1. Images have no padding and need none.
/// - The number of components says what they are: 1 luminance; 2 luminance, alpha; 3 red, green, blue; 4 red, green,
///   blue, alpha. Other numbers are not checked. Unless stated otherwise the texture keeps its previous format; a new
///   texture has none, and GL then reports an error.
///
/// Do not copy textures. A copy shares the name and the original's entry in the registry: only one of the two may be
/// destroyed, a copy only while the context lives (see GLObject). Destroying both deletes the name twice and corrupts
/// the heap.
class VIREO_EXPORT GLTexture : public GLObject
{
public:
    /// Makes the name (glGenTextures).
    /// @needs The context must be current, and not null.
    explicit GLTexture(GLContext* context);

    /// Hands the name to the context, which deletes it (glDeleteTextures): at once if its tree is active, else when it
    /// is next activated.
    ~GLTexture() override;

    /// Binds the texture on a unit, counted from 0 (glActiveTextureARB, glBindTexture).
    /// @leaves That unit is active.
    void bind(unsigned int unit);
    /// Binds the texture, then writes the settings into it (see GLTextureSettings::set).
    /// @leaves That unit is active.
    void bind(const GLTextureSettings& settings, unsigned int unit);

    /// Binds texture 0 to this texture's target on a unit (glActiveTextureARB, glBindTexture).
    /// @leaves That unit is active.
    void unbind(unsigned int unit);

    /// Makes a unit active and does nothing else (glActiveTextureARB).
    static void setStage(int stage);

    /// The GL enumerant of the target, such as GL_TEXTURE_2D.
    unsigned int getTextureTarget() const { return m_TextureTarget; }
    /// The GL name.
    unsigned int getTextureID() const { return m_TextureID; }

    /// What the last create operation estimated as the size of the storage, modulo 2^32; 0 before the first. Every
    /// component counts as one byte, floats too; the mipmap level of one texel is left out.
    unsigned int getSizeInBytes() const { return m_SizeInBytes; }

    /// The format that a subclass of your own may set; else 0. The library's textures deliberately keep their formats
    /// to themselves: for them this is 0, and none counts as a float texture.
    unsigned int getFormat() const { return m_Format; }

    /// Whether that format is one of GL_ARB_texture_float, with 1 to 4 components.
    bool isFloatTexture() const;

protected:
    /// Hands the name to the dying context.
    void onDeleteContext() override;

    // Subclasses deliberately have fields without m_, which are not these: numComponents is not m_NumComponents.
    unsigned int m_TextureTarget = 0;
    unsigned int m_TextureID = 0;
    /// Whether bind() asks its settings for filters between mipmap levels.
    bool m_Mipmapped = false;
    unsigned int m_SizeInBytes = 0;
    unsigned int m_NumComponents = 0;
    unsigned int m_Format = 0;
};

} // namespace tavo
