#include "apps/vireo-view/ExampleData.h"

#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

namespace fs = std::filesystem;

fs::path findIn(const fs::path& directory, const fs::path& file)
{
    for (const char* const folder : {"points_3", "data/points_3", "."}) {
        const fs::path candidate = (directory / folder / file).lexically_normal();
        std::error_code error;
        if (fs::exists(candidate, error))
            return candidate;
    }
    throw InputError(directory, "no example data: " + file.string() +
                                    " is not there (see --data in the help), and no file to show was named instead");
}

} // namespace

std::vector<InputFile> findExampleData(const fs::path& directory)
{
    return {{findIn(directory, "building.ply"), Axis::Z}, {findIn(directory, "kitten.xyz"), Axis::Y}};
}

} // namespace vireo_view
