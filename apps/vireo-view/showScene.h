#pragma once

#include <string>

#include "apps/vireo-view/Exhibits.h"

namespace vireo_view {

// Shows points and surfaces in the scene of that name, each under the path of the exhibit's name.
void showScene(SceneExhibit exhibit, const std::string& scene);

} // namespace vireo_view
