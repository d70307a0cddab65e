#include "vireo/textures/GLTextureSettings.h"

#include "tavo/base/objects/Card32ClassProperty.h"
#include "tavo/base/objects/ClassRecord.h"
#include "tavo/base/objects/MetaClass.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/textures/textureParameters.h"

namespace tavo {

// Defined here as well as in the class: a DLL exports only what is defined in one of its sources.
constexpr unsigned int GLTextureSettings::FILTER_LINEAR;
constexpr unsigned int GLTextureSettings::FILTER_NEAREST;
constexpr unsigned int GLTextureSettings::WRAP_REPEAT;
constexpr unsigned int GLTextureSettings::WRAP_CLAMP;
constexpr unsigned int GLTextureSettings::WRAP_CLAMP_TO_EDGE;
constexpr unsigned int GLTextureSettings::WRAP_CLAMP_TO_BORDER;

namespace {

GLint minFilterOf(bool linear, bool mipmapped, bool linearBetweenLevels)
{
    if (!mipmapped)
        return linear ? GL_LINEAR : GL_NEAREST;
    if (linearBetweenLevels)
        return linear ? GL_LINEAR_MIPMAP_LINEAR : GL_NEAREST_MIPMAP_LINEAR;
    return linear ? GL_LINEAR_MIPMAP_NEAREST : GL_NEAREST_MIPMAP_NEAREST;
}

GLint wrapModeOf(unsigned int wrap)
{
    switch (wrap) {
    case GLTextureSettings::WRAP_CLAMP: return GL_CLAMP;
    case GLTextureSettings::WRAP_CLAMP_TO_EDGE: return GL_CLAMP_TO_EDGE;
    case GLTextureSettings::WRAP_CLAMP_TO_BORDER: return GL_CLAMP_TO_BORDER;
    default: return GL_REPEAT;
    }
}

void addProperties(MetaClass& record)
{
    const auto addProperty = [&record](const char* name, Card32 GLTextureSettings::*field) {
        record.addProperty(
            new Card32ClassProperty(name, 1000, static_cast<Card32 Object::*>(field), nullptr, nullptr, 0));
    };
    addProperty("m_MinFilter", &GLTextureSettings::m_MinFilter);
    addProperty("m_MagFilter", &GLTextureSettings::m_MagFilter);
    addProperty("m_MipmapFilter", &GLTextureSettings::m_MipmapFilter);
    addProperty("m_WrapS", &GLTextureSettings::m_WrapS);
    addProperty("m_WrapT", &GLTextureSettings::m_WrapT);
    addProperty("m_WrapR", &GLTextureSettings::m_WrapR);
}

} // namespace

TAVO_CLASS_RECORD_WITH_PROPERTIES(GLTextureSettings, addProperties)

GLTextureSettings::GLTextureSettings()
    : m_MinFilter(FILTER_LINEAR)
    , m_MagFilter(FILTER_LINEAR)
    , m_MipmapFilter(FILTER_LINEAR)
    , m_WrapS(WRAP_REPEAT)
    , m_WrapT(WRAP_REPEAT)
    , m_WrapR(WRAP_REPEAT)
{}

GLTextureSettings::GLTextureSettings(const GLTextureSettings& other) = default;
GLTextureSettings& GLTextureSettings::operator=(const GLTextureSettings& other) = default;
GLTextureSettings::~GLTextureSettings() = default;

void GLTextureSettings::set(unsigned int target, bool mipmapped) const
{
    // Magnification deliberately follows m_MinFilter, not m_MagFilter, and the wrap mode along R is deliberately not
    // set.
    const bool linear = m_MinFilter == FILTER_LINEAR;
    setFiltersAndWraps(target, linear ? GL_LINEAR : GL_NEAREST,
        minFilterOf(linear, mipmapped, m_MipmapFilter == FILTER_LINEAR), wrapModeOf(m_WrapS), wrapModeOf(m_WrapT));
}

void GLTextureSettings::setDefaults(unsigned int target, bool mipmapped)
{
    const GLint wrap = target == GL_TEXTURE_RECTANGLE_ARB ? GL_CLAMP_TO_EDGE : GL_REPEAT;
    setFiltersAndWraps(target, GL_LINEAR, minFilterOf(true, mipmapped, true), wrap, wrap);
}

void GLTextureSettings::setFloatDefaults(unsigned int target)
{
    setFilterAndWrapEverywhere(target, GL_NEAREST, GL_CLAMP_TO_EDGE);
}

void GLTextureSettings::setCubeDefaults()
{
    setFloatDefaults(GL_TEXTURE_CUBE_MAP);
}

std::string GLTextureSettings::getFilterText(unsigned int filter)
{
    switch (filter) {
    case FILTER_LINEAR: return "linear";
    case FILTER_NEAREST: return "nearest";
    default: return "unkown"; // deliberately spelt so
    }
}

std::string GLTextureSettings::getWrapText(unsigned int wrap)
{
    switch (wrap) {
    case WRAP_REPEAT: return "repeat";
    case WRAP_CLAMP: return "clamp";
    case WRAP_CLAMP_TO_EDGE: return "clamp to edge";
    case WRAP_CLAMP_TO_BORDER: return "clamp to border";
    default: return "unkown"; // deliberately spelt so
    }
}

} // namespace tavo
