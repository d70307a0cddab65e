#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <string>

#include "tavo/base/Export.h"

namespace tavo {

// Files that are saved whole or not at all: the contents are written beside the file, and take its place when all of
// them are written. On a full disk, say, the file stays as it was.
//
// A file that is replaced keeps its permissions. A symbolic link stays, and the file that it leads to is replaced, or
// made. What is no regular file (a folder, a device, a pipe) is neither replaced nor written to.
//
// Both return why the file could not be saved, in words for a person, empty if it was saved.
[[nodiscard]] TAVO_BASE_EXPORT std::string saveFile(const QString& path, const QByteArray& contents);

// As a PNG or whatever else the end of the file's name says.
[[nodiscard]] TAVO_BASE_EXPORT std::string savePicture(const QString& path, const QImage& picture);

} // namespace tavo
