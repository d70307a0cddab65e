#pragma once

#include <QString>
#include <string>

#include "vireo/show/images/ImagePixels.h"

namespace tavo {

// Saves the numbers of an image: as comma-separated values, a line for each pixel; or, of bytes, as a PNG. Why they
// could not be saved, for a person; empty if they were.
std::string saveImage(const QString& file, const ImagePixels& pixels);

} // namespace tavo
