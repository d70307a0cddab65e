#pragma once

#include <cstddef>
#include <optional>

#include "vireo/show/scenes/SceneCamera.h"

namespace tavo {

// For as long as it lives, OpenGL draws nothing outside of a box of the scene: of lines and faces the parts that are in
// it, and points whose middles are. GL's matrix of models and views is another one afterwards.
class ClipPlanes
{
public:
    // Of no box everything is drawn.
    ClipPlanes(const SceneCamera& camera, const std::optional<SceneBox>& box);

    // Behind one of its faces only (see ClipBox).
    ClipPlanes(const SceneCamera& camera, const SceneBox& box, std::size_t face);

    ~ClipPlanes();
    ClipPlanes(const ClipPlanes&) = delete;
    ClipPlanes& operator=(const ClipPlanes&) = delete;

private:
    void add(const SceneCamera& camera, const SceneBox& box, std::size_t face);

    unsigned int m_Number = 0;
};

} // namespace tavo
