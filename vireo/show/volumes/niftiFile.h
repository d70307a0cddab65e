#pragma once

#include <QString>
#include <string>

#include "vireo/show/delivery/NumberArray.h"
#include "vireo/show/volumes/VolumeGrid.h"

namespace tavo {

class SceneItem;

// Whether the name of a file ends as those of volumes do: with "nii".
bool isNiftiFile(const QString& file);

// Saves samples with their type and where they are: numbers, or red, green, blue and opacity as bytes. `isOriented`
// says that the axes are those of a scanner's. Why they could not be saved, for a person; empty if they were.
std::string saveNifti(const QString& file, const VolumeGrid& grid, const NumberArray& samples, bool isOriented);

// Saves the samples of an item that is a volume as they were sent, with where they are: before `transform`.
std::string saveNifti(const QString& file, const SceneItem& volume);

} // namespace tavo
