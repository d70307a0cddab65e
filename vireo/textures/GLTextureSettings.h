#pragma once

#include <string>

#include "tavo/base/objects/Card32.h"
#include "tavo/base/objects/Persistent.h"
#include "vireo/Export.h"

namespace tavo {

/// How a texture is sampled, as plain numbers that can be kept, copied, compared, and written to an object stream. An
/// object holds no GL state; GLTexture::bind writes the numbers into a texture.
///
///     GLTextureSettings settings;
///     settings.m_MinFilter = GLTextureSettings::FILTER_NEAREST;
///     settings.m_WrapS = GLTextureSettings::WRAP_CLAMP_TO_EDGE;
///     texture.bind(settings, 0);
///
/// The operations that set something write into the texture that is bound to the given target, a GL enumerant such as
/// GL_TEXTURE_2D, on the active unit (glTexParameteri). They need a current context, bind nothing, and leave GL errors
/// pending.
///
/// An application that streams settings registers the class once, with init(Persistent::getClass()).
class VIREO_EXPORT GLTextureSettings : public Persistent
{
public:
    /// Values of the filters. Any value but FILTER_LINEAR counts as FILTER_NEAREST.
    static constexpr unsigned int FILTER_LINEAR = 1;
    static constexpr unsigned int FILTER_NEAREST = 2;

    /// Values of the wrap modes. Any other value counts as WRAP_REPEAT.
    static constexpr unsigned int WRAP_REPEAT = 1;
    static constexpr unsigned int WRAP_CLAMP = 2;
    static constexpr unsigned int WRAP_CLAMP_TO_EDGE = 3;
    static constexpr unsigned int WRAP_CLAMP_TO_BORDER = 4;

    const MetaClass* getInstanceClass() const override;

    /// Linear filters, and textures that repeat.
    GLTextureSettings();
    GLTextureSettings(const GLTextureSettings& other);
    GLTextureSettings& operator=(const GLTextureSettings& other);
    ~GLTextureSettings() override;

    /// Sets the filters and the wrap modes along S and T. Mipmapped textures are also filtered between levels.
    void set(unsigned int target, bool mipmapped) const;

    /// Sets what colour textures start with: linear filters; rectangles are clamped to their edges, all others repeat
    /// along S and T.
    static void setDefaults(unsigned int target, bool mipmapped);

    /// Sets what textures of exact values start with: no filtering, clamped to the edges along S, T and R.
    static void setFloatDefaults(unsigned int target);

    /// Does as setFloatDefaults for GL_TEXTURE_CUBE_MAP.
    static void setCubeDefaults();

    /// The value as shown to people; "unkown" if it has no name.
    static std::string getFilterText(unsigned int filter);
    static std::string getWrapText(unsigned int wrap);

    /// The class record, which the first call makes. Do not call this after shutdown().
    static const MetaClass* getClass();
    static void initMetaClass();
    static void init(const MetaClass* parent);
    static void shutdown();

    static MetaClass* GLTextureSettingsMetaClass;

    /// The filter, for minification and for magnification.
    Card32 m_MinFilter;
    /// Stored with the object, but ignored: m_MinFilter stands for both.
    Card32 m_MagFilter;
    /// The filter between the levels of a mipmapped texture.
    Card32 m_MipmapFilter;
    Card32 m_WrapS;
    Card32 m_WrapT;
    /// Stored with the object, but ignored.
    Card32 m_WrapR;

private:
    static Object* newInstance();
};

} // namespace tavo
