#pragma once

#include "benchmarks/support/inputs.h"
#include "vireo/show/scenes/SceneCamera.h"
#include "vireo/show/scenes/SceneUpdate.h"

namespace vireo_bench {

// The head as an item of a scene, in a window of densities.
tavo::ItemUpdate headVolume(const DensityWindow& window = {});

// The same in a cube of so many samples a side.
tavo::ItemUpdate headVolumeInCube(int side);

// The head's range and opacities are changed to those of a window; the samples stay.
tavo::ItemUpdate headLook(const DensityWindow& window);

// Along which the head is seen here, and a camera that looks that way.
inline const tavo::Vector3f VIEW_OF_HEAD = {0.6F, -0.64F, -0.48F};
tavo::SceneCamera cameraOfHead();

} // namespace vireo_bench
