#pragma once

#include <string>

#include "apps/vireo-view/Exhibits.h"

namespace vireo_view {

// Shows a volume in the scene of that name, under the path of the exhibit's name.
void showVolume(VolumeExhibit exhibit, const std::string& scene);

} // namespace vireo_view
