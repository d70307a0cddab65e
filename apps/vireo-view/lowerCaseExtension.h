#pragma once

#include <filesystem>
#include <string>

namespace vireo_view {

// The extension of a file's name with its dot, in lower case; that before .gz, if it has both.
std::string lowerCaseExtension(const std::filesystem::path& file);

} // namespace vireo_view
