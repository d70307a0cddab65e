#include "vireo/show/scenes/CutOut.h"

#include "vireo/context/GLExtensions.h"
#include "vireo/context/SavedState.h"

namespace tavo {

CutOut::CutOut(const SceneCamera& camera, const SceneBox& box)
{
    std::vector<std::size_t> nearer;
    for (std::size_t face = 0; face < ClipBox::NUM_FACES; ++face) {
        Vector3d inwards;
        inwards[face / 2] = face % 2 ? -1 : 1;
        const Matrix4 view = camera.modelView({}, middleOfFace(box, face));
        const Vector3d normal = view.turned(inwards);
        m_Planes[face] = {normal[0], normal[1], normal[2], -dot(normal, view * Vector3d())};
        const bool isEyeBeyond = (camera.isOrthographic() ? normal[2] : m_Planes[face][3]) < 0;
        isEyeBeyond ? nearer.push_back(face) : m_Order.push_back(face);
    }
    m_Order.insert(m_Order.end(), nearer.rbegin(), nearer.rend());
}

void CutOut::draw(const std::function<void()>& drawPart) const
{
    for (const std::size_t part : m_Order) {
        {
            const SavedMatrix modelView(GL_MODELVIEW);
            glLoadIdentity();
            for (std::size_t face = 0; face <= part; ++face)
                setPlane(static_cast<unsigned int>(face), m_Planes[face], face == part);
        }
        drawPart();
        for (std::size_t face = 0; face <= part; ++face)
            glDisable(GL_CLIP_PLANE0 + static_cast<unsigned int>(face));
    }
}

void CutOut::setPlane(unsigned int number, Plane plane, bool isTurned) const
{
    for (double& coefficient : plane)
        coefficient *= isTurned ? -1 : 1;
    glClipPlane(GL_CLIP_PLANE0 + number, plane.data());
    glEnable(GL_CLIP_PLANE0 + number);
}

} // namespace tavo
