#pragma once

#include <filesystem>

namespace vireo_view {

// Throws an InputError where a JPEG is cut off: what reads its pixels would show grey for the rest, and say so on the
// standard error stream without naming the file.
void checkJpeg(const std::filesystem::path& file);

} // namespace vireo_view
