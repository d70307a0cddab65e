#pragma once

#include <QString>
#include <string>

#include "vireo/show/slices/SliceLayer.h"

namespace tavo {

// Saves the samples of a volume: in a ".nii" file as NIfTI, with their type and where they are; or as comma-separated
// values, a line for each sample. Why they could not be saved, for a person; empty if they were.
std::string saveSlices(const QString& file, const SliceLayer& volume);

} // namespace tavo
