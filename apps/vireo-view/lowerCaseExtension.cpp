#include "apps/vireo-view/lowerCaseExtension.h"

#include <algorithm>
#include <cctype>

namespace vireo_view {

std::string lowerCaseExtension(const std::filesystem::path& file)
{
    std::string extension = file.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
        [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".gz" ? lowerCaseExtension(file.stem()) : extension;
}

} // namespace vireo_view
