#pragma once

#include <optional>
#include <string_view>

#include "tavo/points/RegularVolume.h"
#include "vireo/show/scenes/SceneUpdate.h"

namespace tavo {

// The field of a volume that its own numbers are.
inline constexpr const char* VOLUME_SAMPLES = "value";

// What is sent of a volume, whose samples are numbers if they are one by one, and colours otherwise.
ItemUpdate volumeItem(const VolumeGrid& grid, const NumberTuples& samples);

// Of a channel of one, three or four numbers; of the first such channel if its name is empty. Nothing if there is none,
// or nothing of the volume can be drawn.
std::optional<ItemUpdate> volumeItem(const RegularVolume& volume, std::string_view channel);

} // namespace tavo
