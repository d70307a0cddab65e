#include "vireo/textures/textureFormats.h"

#include <algorithm>
#include <array>

#include "vireo/context/GLExtensions.h"

namespace tavo {

namespace {

// For 1, 2, 3 and 4 components.
using FormatTable = std::array<unsigned int, 4>;

constexpr FormatTable FORMATS{GL_LUMINANCE, GL_LUMINANCE_ALPHA, GL_RGB, GL_RGBA};
constexpr FormatTable ARB_HALF_FORMATS{GL_LUMINANCE16F_ARB, GL_LUMINANCE_ALPHA16F_ARB, GL_RGB16F_ARB, GL_RGBA16F_ARB};
constexpr FormatTable ARB_FLOAT_FORMATS{GL_LUMINANCE32F_ARB, GL_LUMINANCE_ALPHA32F_ARB, GL_RGB32F_ARB, GL_RGBA32F_ARB};
constexpr FormatTable NV_HALF_FORMATS{GL_FLOAT_R16_NV, GL_FLOAT_RG16_NV, GL_FLOAT_RGB16_NV, GL_FLOAT_RGBA16_NV};
constexpr FormatTable NV_FLOAT_FORMATS{GL_FLOAT_R32_NV, GL_FLOAT_RG32_NV, GL_FLOAT_RGB32_NV, GL_FLOAT_RGBA32_NV};

constexpr const char* ARB_EXTENSION = "GL_ARB_texture_float";
constexpr const char* NV_EXTENSION = "GL_NV_float_buffer";

unsigned int formatIn(const FormatTable& table, unsigned int components, unsigned int otherwise)
{
    return components >= 1 && components <= table.size() ? table[components - 1] : otherwise;
}

bool contains(const FormatTable& table, unsigned int format)
{
    return std::find(table.begin(), table.end(), format) != table.end();
}

} // namespace

unsigned int formatOfComponents(unsigned int components, unsigned int otherwise)
{
    return formatIn(FORMATS, components, otherwise);
}

unsigned int arbFloatFormatOfComponents(unsigned int components, bool half, unsigned int otherwise)
{
    return formatIn(half ? ARB_HALF_FORMATS : ARB_FLOAT_FORMATS, components, otherwise);
}

unsigned int rectFloatFormatOfComponents(unsigned int components, bool half, unsigned int otherwise)
{
    if (!isExtensionSupported(NV_EXTENSION))
        return arbFloatFormatOfComponents(components, half, otherwise);
    return formatIn(half ? NV_HALF_FORMATS : NV_FLOAT_FORMATS, components, otherwise);
}

bool hasRectFloatFormats()
{
    return isExtensionSupported(NV_EXTENSION) || isExtensionSupported(ARB_EXTENSION);
}

bool isArbFloatFormat(unsigned int format)
{
    return contains(ARB_HALF_FORMATS, format) || contains(ARB_FLOAT_FORMATS, format);
}

} // namespace tavo
