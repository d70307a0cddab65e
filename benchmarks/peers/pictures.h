#pragma once

#include <string>

#include "benchmarks/peers/Scene.h"
#include "benchmarks/support/Comparison.h"

namespace vireo_bench {

// All that can show a subject, each from the data to the first picture.
Comparison firstPicture(const std::string& name, Subject subject);

// The same picture once more.
Comparison nextPicture(const std::string& name, Subject subject);

// A picture of the head in another window of densities than before.
Comparison changedPicture(const std::string& name, Subject subject);

} // namespace vireo_bench
