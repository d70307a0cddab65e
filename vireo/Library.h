#pragma once

#include "vireo/Export.h"

namespace tavo {

/// Prepares the library's displayers: adds the button images to Qt's resources under ":/vireo/Images/Buttons/", and
/// registers GLEventObject and GLPointCloudDisplayer. Call it once, before the first displayer is used. An application
/// that needs the other registered classes (GLTextureSettings, GLEventDisplayer, GLGraphDisplayer, Tex2dVolumeRenderer)
/// calls their own init.
///
///     initVireo();
///     // use displayers until the application ends
///     shutdownVireo();
VIREO_EXPORT void initVireo();

/// Frees the two class records, and reports what is left if VIREO_LEAKS says so (see LeakReport). Call it once, at the
/// end; neither class may be used afterwards. The images stay.
VIREO_EXPORT void shutdownVireo();

} // namespace tavo
