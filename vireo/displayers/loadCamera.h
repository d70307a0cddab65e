#pragma once

#include "vireo/Export.h"

namespace tavo {

class Camera;

// Selects the model-view matrix and makes it the camera's (glMatrixMode, glLoadIdentity, gluLookAt). A GL context must
// be current.
//
// A view draws its object under the camera of the paint before. An object of your own that wants the camera it is given
// loads that first, and what it draws is right at once:
//
//     void Globe::drawGL(QGLWidget*, Camera& camera)
//     {
//         loadCamera(camera);
//         m_Mesh.draw();
//     }
//
// The view sets its matrices at each paint, so there is no need to save them there.
VIREO_EXPORT void loadCamera(const Camera& camera);

} // namespace tavo
