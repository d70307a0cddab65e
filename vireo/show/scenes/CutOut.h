#pragma once

#include <array>
#include <functional>
#include <vector>

#include "vireo/show/scenes/ClipBox.h"
#include "vireo/show/scenes/SceneCamera.h"

namespace tavo {

// Has OpenGL draw what is outside of a box of the scene. That is cut into six parts, none of which is in another, and
// none of which hides one that comes after it.
class CutOut
{
public:
    CutOut(const SceneCamera& camera, const SceneBox& box);

    // Calls `drawPart` for one part after the other, the farthest first, each of which is all that OpenGL draws then.
    // GL's matrix of models and views is what it was.
    void draw(const std::function<void()>& drawPart) const;

private:
    using Plane = std::array<double, 4>; // in eye space; the box is where it is not negative

    void setPlane(unsigned int number, Plane plane, bool isTurned) const;

    std::array<Plane, ClipBox::NUM_FACES> m_Planes;
    std::vector<std::size_t> m_Order; // of the parts: each is beyond one face, and not beyond those before it
};

} // namespace tavo
