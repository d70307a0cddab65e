#pragma once

#include <vector>

#include "vireo/show/scenes/SceneCamera.h"
#include "vireo/show/scenes/SceneModel.h"

namespace tavo {

// Fills closed surfaces where the faces of a box cut them, so that they look solid. Everything else has been drawn, and
// only in the box: none of it is nearer than a face that one looks at.
//
// Seen through a face, a place of it is inside a closed surface if an odd number of sheets lies behind it. They are
// counted in the opacity of the picture, of which nothing else makes use: it is 0 or 1, and afterwards 1.
void drawSections(
    const std::vector<SceneModel::Placed>& items, const SceneBox& box, const SceneCamera& camera, bool isGroundDark);

} // namespace tavo
