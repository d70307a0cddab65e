#include "vireo/show/scenes/drawSections.h"

#include <cmath>

#include "vireo/context/GLExtensions.h"
#include "vireo/context/SavedState.h"
#include "vireo/show/scenes/ClipBox.h"
#include "vireo/show/scenes/ClipPlanes.h"

namespace tavo {

namespace {

using Placed = SceneModel::Placed;

Vector3d outwards(std::size_t face)
{
    Vector3d direction;
    direction[face / 2] = face % 2 ? 1 : -1;
    return direction;
}

bool isSeenFromOutside(const SceneBox& box, std::size_t face, const SceneCamera& camera)
{
    const Matrix4 view = camera.modelView({}, middleOfFace(box, face));
    const Vector3d normal = view.turned(outwards(face));
    return camera.isOrthographic() ? normal[2] > 0 : dot(normal, view * Vector3d()) < 0;
}

bool doesCut(const SceneBox& box, std::size_t face, const SceneBox& item)
{
    const double place = middleOfFace(box, face)[face / 2];
    bool doesMeet = item.getMin()[face / 2] < place && place < item.getMax()[face / 2];
    for (std::size_t axis = 0; axis < 3; ++axis)
        doesMeet = doesMeet && item.getMin()[axis] <= box.getMax()[axis] && item.getMax()[axis] >= box.getMin()[axis];
    return doesMeet;
}

void fillFace(const SceneBox& box, std::size_t face, const SceneCamera& camera)
{
    const Vector3d middle = middleOfFace(box, face);
    glLoadMatrixd(camera.modelView({}, middle).numbers.data());
    const std::size_t across = (face / 2 + 1) % 3;
    const std::size_t up = (face / 2 + 2) % 3;
    const Vector3d half = 0.5 * box.getMax() - 0.5 * box.getMin();
    const Primitive quad(GL_QUADS);
    for (const auto& [right, top] : {std::pair(-1, -1), std::pair(1, -1), std::pair(1, 1), std::pair(-1, 1)}) {
        Vector3d corner;
        corner[across] = right * half[across];
        corner[up] = top * half[up];
        glVertex3dv(corner.data());
    }
}

// Where an odd number of sheets lies behind the face, opacity is 1 in the picture, elsewhere 0.
void countSheets(const Placed& placed, const SceneBox& box, std::size_t face, const SceneCamera& camera)
{
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_TRUE);
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    const ClipPlanes behind(camera, box, face);
    glColor4ub(0, 0, 0, 255);
    glBlendFunc(GL_ONE_MINUS_DST_ALPHA, GL_ZERO);
    glLoadMatrixd(camera.modelView(placed.matrix, placed.item->origin()).numbers.data());
    placed.item->drawSheets();
}

void drawSection(
    const Placed& placed, const SceneBox& box, std::size_t face, const SceneCamera& camera, const RGBA8& colour)
{
    countSheets(placed, box, face, camera);
    glColor4ubv(colour.data());
    glBlendFunc(GL_ZERO, GL_SRC_ALPHA);
    fillFace(box, face, camera);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_FALSE);
    glBlendFunc(GL_DST_ALPHA, GL_ONE_MINUS_DST_ALPHA);
    fillFace(box, face, camera);
}

// Darker than the surface, and more so the less one looks straight at the face: two faces can be told apart.
RGBA8 sectionColour(RGBA8 colour, std::size_t face, const SceneCamera& camera)
{
    const double brightness = 0.4 + 0.3 * std::abs(camera.modelView().turned(outwards(face))[2]);
    for (std::size_t i = 0; i < 3; ++i)
        colour[i] = static_cast<unsigned char>(brightness * colour[i]);
    return colour;
}

} // namespace

void drawSections(const std::vector<Placed>& items, const SceneBox& box, const SceneCamera& camera, bool isGroundDark)
{
    const SavedAttributes state;
    for (const GLenum capability : {GL_DEPTH_TEST, GL_CULL_FACE, GL_LIGHTING})
        glDisable(capability);
    glEnable(GL_BLEND);
    for (std::size_t face = 0; face < ClipBox::NUM_FACES; ++face)
        for (const Placed& placed : items)
            if (isSeenFromOutside(box, face, camera) && doesCut(box, face, placed.item->box().moved(placed.matrix)) &&
                placed.item->isClosedSurface())
                drawSection(
                    placed, box, face, camera, sectionColour(placed.item->oneColour(isGroundDark), face, camera));
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_TRUE);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
}

} // namespace tavo
