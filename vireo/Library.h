#pragma once

#include "vireo/Export.h"

namespace tavo {

// Makes the library's displayers usable: the button images become part of Qt's resources, under
// ":/vireo/Images/Buttons/", and GLEventObject and GLPointCloudDisplayer are registered. To be called once, before the
// first displayer is used. The library's other registered classes (GLTextureSettings, GLEventDisplayer,
// GLGraphDisplayer, Tex2dVolumeRenderer) are registered by the application, by their own init, when it needs them.
VIREO_EXPORT void initVireo();

// Frees the two class records, once, at the end. Neither class may be used afterwards. The images stay.
VIREO_EXPORT void shutdownVireo();

} // namespace tavo
