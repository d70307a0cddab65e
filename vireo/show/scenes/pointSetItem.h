#pragma once

#include <optional>

#include "tavo/points/PointSet.h"
#include "vireo/show/scenes/SceneUpdate.h"

namespace tavo {

// A cloud of the points, with what else the set has of them: "normal", "color", and each attribute of one number as a
// field of its name. Nothing if "position" has no three floats.
std::optional<ItemUpdate> pointSetItem(const PointSet& points);

// The first `width` numbers of an attribute of every point.
NumberTuples tuplesOf(const PointSet& points, unsigned int attribute, std::size_t width);

} // namespace tavo
