#pragma once

#include <optional>

#include "tavo/points/PointSet.h"
#include "vireo/show/scenes/SceneUpdate.h"

namespace tavo {

// A cloud of the points, with what else the set has of them: "normal", "color", and each attribute of one number as a
// field of its name. Nothing if "position" has no three floats.
std::optional<ItemUpdate> pointSetItem(const PointSet& points);

} // namespace tavo
