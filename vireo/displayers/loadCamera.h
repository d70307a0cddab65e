#pragma once

#include "vireo/Export.h"

namespace tavo {

class Camera;

/// Selects the modelview matrix and loads the camera into it (glMatrixMode, glLoadIdentity, gluLookAt).
///
/// A view draws its object under the camera of the previous paint. An object that loads the camera it is given is right
/// at once:
///
///     void drawGlobe(const Camera& camera)
///     {
///         loadCamera(camera);
///         GLHelper::drawCoords();
///     }
///
/// The view sets its matrices at each paint, so you need not save them.
/// @needs A current GL context.
VIREO_EXPORT void loadCamera(const Camera& camera);

} // namespace tavo
