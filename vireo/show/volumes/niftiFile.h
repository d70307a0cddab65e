#pragma once

#include <QString>
#include <string>

namespace tavo {

class SceneItem;

// Whether the name of a file ends as those of volumes do: with "nii".
bool isNiftiFile(const QString& file);

// Saves the samples of an item that is a volume as they were sent, with where they are: before `transform`. Why they
// could not be saved, for a person; empty if they were.
std::string saveNifti(const QString& file, const SceneItem& volume);

} // namespace tavo
