#include "vireo/Library.h"

#include "vireo/context/nameAccounts.h"
#include "vireo/displayers/GLEventObject.h"
#include "vireo/displayers/GLPointCloudDisplayer.h"
#include "vireo/resources/ButtonImages.h"

namespace tavo {

void initVireo()
{
    registerButtonImages();
    GLEventObject::init(Object::getClass());
    GLPointCloudDisplayer::init(GLEventObject::getClass());
}

void shutdownVireo()
{
    reportLeaksOfProcess();
    GLEventObject::shutdown();
    GLPointCloudDisplayer::shutdown();
}

} // namespace tavo
