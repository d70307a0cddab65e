#pragma once

#include <filesystem>
#include <vector>

#include "apps/vireo-view/Point.h"

namespace vireo_view {

// A file to be shown and the axis that points up in it.
struct InputFile
{
    std::filesystem::path path;
    Axis up;
};

// What is shown when no file is named: two scans from the data that come with CGAL. The directory is the unpacked
// archive, or one that has it or the files themselves in it. Throws InputError if a file is not there.
std::vector<InputFile> findExampleData(const std::filesystem::path& directory);

} // namespace vireo_view
