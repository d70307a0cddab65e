#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <functional>
#include <string>

#include "tavo/base/Export.h"

namespace tavo {

/// @file
/// Files that are saved whole or not at all. The contents are written beside the file and take its place when they are
/// complete; if the disk is full, the file stays as it was.
///
///     const std::string error = saveFile("notes.txt", "a line\n");
///     if (!error.empty())
///         warning(error);
///
/// A file that is replaced keeps its permissions. A symbolic link stays, and the file it leads to is replaced or made.
/// What is not a regular file (a folder, a device, a pipe) is left alone.

/// Saves the contents. Returns why that failed, in words for people; empty if it did not.
[[nodiscard]] TAVO_BASE_EXPORT std::string saveFile(const QString& path, const QByteArray& contents);

/// Saves contents that come piece by piece, so that they need not be in memory all at once. Each call of `nextPiece`
/// returns what comes next; an empty piece is their end. Where it throws, nothing is saved.
[[nodiscard]] TAVO_BASE_EXPORT std::string saveFile(const QString& path, const std::function<QByteArray()>& nextPiece);

/// Saves a picture, as a PNG or in whatever format the file's name asks for. Returns as saveFile does.
[[nodiscard]] TAVO_BASE_EXPORT std::string savePicture(const QString& path, const QImage& picture);

} // namespace tavo
