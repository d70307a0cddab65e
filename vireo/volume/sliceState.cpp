#include "vireo/volume/sliceState.h"

#include "tavo/base/objects/PException.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/classNeeds.h"

namespace tavo {

void requireMultitexture(const std::string& operation)
{
    if (isExtensionSupported("GL_ARB_multitexture"))
        return;
    reportMissing(operation.substr(0, operation.find("::")));
    throw PException(operation + " - GL_ARB_multitexture is missing: there is no glActiveTextureARB");
}

void setSliceParameters()
{
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
}

void enableBlendedSlices()
{
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_TEXTURE_2D);
    glDepthMask(GL_FALSE);
}

} // namespace tavo
