#pragma once

#include <optional>
#include <vector>

#include "vireo/show/scenes/ScenePick.h"

namespace tavo {

// Where a ray that comes from outside of a box goes into it through the filling of a closed surface: the last one of
// several that fill the place. The vertex and the face are those of the sheet that lies behind it.
std::optional<ScenePick> pickSection(
    const std::vector<SceneModel::Placed>& items, const SceneBox& box, const Ray& ray, bool startsAtEye);

} // namespace tavo
