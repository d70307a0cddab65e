#pragma once

#include "vireo/show/scenes/SceneCamera.h"

namespace tavo {

// From eye space to the clip space that pictures are drawn in. Rows of pictures are counted from the top, GL's from the
// bottom: what is drawn stands on its head, so that it need not be turned when it is read.
inline Matrix4 pictureProjection(const SceneCamera& camera, const SceneBox& box, const SceneCamera::Size& size)
{
    Matrix4 projection = camera.projection(box, size);
    for (std::size_t column = 0; column < 4; ++column)
        projection.at(1, column) = -projection.at(1, column);
    return projection;
}

} // namespace tavo
