#pragma once

#include <filesystem>

namespace vireo_fuzz {

// Reads a file as a volume, and sees that it is read well or refused well.
void checkVolumeFile(const std::filesystem::path& file);

} // namespace vireo_fuzz
