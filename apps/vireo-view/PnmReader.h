#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "apps/vireo-view/ImageReader.h"

namespace vireo_view {

// Whether a file that begins so may be a PGM or a PPM, of bytes or of text.
bool beginsLikePnm(std::string_view beginning);

// The numbers of a PGM or a PPM whose greatest one is 255 or above, as they are: from 256 on they have 16 bits, which
// Qt makes bytes of. None if there are smaller numbers, which Qt makes brighter. Throws InputError as readImages()
// does.
std::optional<Picture> readPnm(const std::filesystem::path& file, const Progress& progress);

} // namespace vireo_view
