#include "vireo/displayers/loadCamera.h"

#include "tavo/base/gui/Camera.h"
#include "tavo/platform/wgl.h"

#include <GL/glu.h>

namespace tavo {

void loadCamera(const Camera& camera)
{
    const Vector3f& eye = camera.getEyePoint();
    const Vector3f& lookAt = camera.getLookAtPoint();
    const Vector3f& up = camera.getUpVector();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    gluLookAt(eye[0], eye[1], eye[2], lookAt[0], lookAt[1], lookAt[2], up[0], up[1], up[2]);
}

} // namespace tavo
