#include "vireo/textures/textureParameters.h"

namespace tavo {

void setFiltersAndWraps(unsigned int target, GLint magFilter, GLint minFilter, GLint wrapS, GLint wrapT)
{
    glTexParameteri(target, GL_TEXTURE_MAG_FILTER, magFilter);
    glTexParameteri(target, GL_TEXTURE_MIN_FILTER, minFilter);
    glTexParameteri(target, GL_TEXTURE_WRAP_S, wrapS);
    glTexParameteri(target, GL_TEXTURE_WRAP_T, wrapT);
}

void setFilterAndWrapEverywhere(unsigned int target, GLint filter, GLint wrap)
{
    setFiltersAndWraps(target, filter, filter, wrap, wrap);
    glTexParameteri(target, GL_TEXTURE_WRAP_R, wrap);
}

} // namespace tavo
