#include "vireo/show/scenes/ClipPlanes.h"

#include "vireo/context/GLExtensions.h"
#include "vireo/show/scenes/ClipBox.h"

namespace tavo {

ClipPlanes::ClipPlanes(const SceneCamera& camera, const std::optional<SceneBox>& box)
{
    for (std::size_t face = 0; box && face < ClipBox::NUM_FACES; ++face)
        add(camera, *box, face);
}

ClipPlanes::ClipPlanes(const SceneCamera& camera, const SceneBox& box, std::size_t face)
{
    add(camera, box, face);
}

ClipPlanes::~ClipPlanes()
{
    while (m_Number > 0)
        glDisable(GL_CLIP_PLANE0 + --m_Number);
}

// In eye space, where numbers are small however far the box is from the origin.
void ClipPlanes::add(const SceneCamera& camera, const SceneBox& box, std::size_t face)
{
    Vector3d inwards;
    inwards[face / 2] = face % 2 ? -1 : 1;
    const Matrix4 view = camera.modelView({}, middleOfFace(box, face));
    const Vector3d normal = view.turned(inwards);
    const double plane[] = {normal[0], normal[1], normal[2], -dot(normal, view * Vector3d())};
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glClipPlane(GL_CLIP_PLANE0 + m_Number, plane);
    glEnable(GL_CLIP_PLANE0 + m_Number);
    ++m_Number;
}

} // namespace tavo
