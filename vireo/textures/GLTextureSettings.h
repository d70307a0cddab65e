#pragma once

#include <string>

#include "tavo/base/objects/Card32.h"
#include "tavo/base/objects/Persistent.h"
#include "vireo/Export.h"

namespace tavo {

// How a texture is sampled, as plain numbers that can be kept, copied, compared, and written to and read from an object
// stream. It holds no GL state: set writes the numbers into the texture that is bound at that moment. Beside it stand
// the fixed settings with which the texture classes begin.
//
// An application that writes or reads settings registers the class once, by init(Persistent::getClass()).
class VIREO_EXPORT GLTextureSettings : public Persistent
{
public:
    // Values of the filters. Whatever is not FILTER_LINEAR counts as nearest.
    static constexpr unsigned int FILTER_LINEAR = 1;
    static constexpr unsigned int FILTER_NEAREST = 2;

    // Values of the wrap modes. Whatever is none of them counts as WRAP_REPEAT.
    static constexpr unsigned int WRAP_REPEAT = 1;
    static constexpr unsigned int WRAP_CLAMP = 2;
    static constexpr unsigned int WRAP_CLAMP_TO_EDGE = 3;
    static constexpr unsigned int WRAP_CLAMP_TO_BORDER = 4;

    const MetaClass* getInstanceClass() const override;

    // Linear filters, and textures that repeat.
    GLTextureSettings();
    GLTextureSettings(const GLTextureSettings& other);
    GLTextureSettings& operator=(const GLTextureSettings& other);
    ~GLTextureSettings() override;

    // The operations below write into the texture that is bound to the target, a GL enumerant such as GL_TEXTURE_2D, on
    // the active unit. They need a current context, bind nothing, and leave GL errors to whoever asks for them.

    // Filters and the wrap modes along S and T. Mipmapped textures are filtered between their levels as well.
    void set(unsigned int target, bool mipmapped) const;

    // The settings of colour textures: linear filters; rectangles end at their edges, all others repeat along S and T.
    static void setDefaults(unsigned int target, bool mipmapped);

    // The settings of textures of exact values: no filtering, an end at the edges along S, T and R.
    static void setFloatDefaults(unsigned int target);

    // Those of setFloatDefaults, for the target GL_TEXTURE_CUBE_MAP.
    static void setCubeDefaults();

    // The values as a person is shown them, "unkown" for those that have no name.
    static std::string getFilterText(unsigned int filter);
    static std::string getWrapText(unsigned int wrap);

    // The class record, made by the first call; not to be asked for after shutdown.
    static const MetaClass* getClass();
    static void initMetaClass();
    static void init(const MetaClass* parent);
    static void shutdown();

    static MetaClass* GLTextureSettingsMetaClass;

    // The filter for minification and for magnification.
    Card32 m_MinFilter;
    // Kept, but not used.
    Card32 m_MagFilter;
    // The filter between the levels of a mipmapped texture.
    Card32 m_MipmapFilter;
    Card32 m_WrapS;
    Card32 m_WrapT;
    // Kept, but not used.
    Card32 m_WrapR;

private:
    static Object* newInstance();
};

} // namespace tavo
