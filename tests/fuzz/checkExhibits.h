#pragma once

#include <vector>

#include "apps/vireo-view/Exhibits.h"

namespace vireo_fuzz {

// Sees that what is shown of a file can be shown: there is something, curves and points are finite, and every curve has
// its colour.
void checkExhibits(const std::vector<vireo_view::Exhibit>& exhibits);

} // namespace vireo_fuzz
