#pragma once

#include <vector>

#include "apps/vireo-view/Exhibits.h"

namespace vireo_fuzz {

// Sees that what is shown of a file can be shown: there is something, points in space are finite, and every curve has
// a name of its own.
void checkExhibits(const std::vector<vireo_view::Exhibit>& exhibits);

} // namespace vireo_fuzz
