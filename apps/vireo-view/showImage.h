#pragma once

#include <string>

#include "apps/vireo-view/Exhibits.h"

namespace vireo_view {

// Sends what was read of a file to an image of that name: as a stack if there are several.
void showImage(ImageExhibit exhibit, const std::string& image);

// Adds them to a stack of several files, which has these names already.
void addToStack(ImageExhibit exhibit, const std::string& image, std::vector<std::string>& names);

} // namespace vireo_view
