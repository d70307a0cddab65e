#pragma once

#include <string>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/inputs.h"
#include "vireo/show/scenes/SceneUpdate.h"

namespace vireo_bench {

// Hills, scanned line by line.
Points hills(std::size_t number);

// A cloud of them in one colour, and in the colours of their heights.
inline const tavo::RGBA8 COLOUR_OF_CLOUD(31, 119, 180, 255);
tavo::ItemUpdate cloudOf(const Points& points);
tavo::ItemUpdate cloudOf(std::size_t number);
tavo::ItemUpdate colouredCloudOf(std::size_t number);

// About twice as many triangles.
tavo::ItemUpdate surfaceOf(std::size_t number);

// The works.
void addPicks();
void addFrames();
void addRefinement();
void addVolumes();

} // namespace vireo_bench
