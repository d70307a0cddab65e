#include "apps/vireo-view/ExampleData.h"

#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace fs = std::filesystem;

const std::vector<ExampleFile>& exampleFiles()
{
    static const std::vector<ExampleFile> files = {
        {"ch2.nii.gz", Axis::Z, {".", "/usr/share/mricron/templates"}},
        {"building.ply", Axis::Z, {"points_3", "data/points_3", "."}},
    };
    return files;
}

fs::path findLabelsOfExample(const fs::path& head)
{
    const fs::path labels = head.parent_path() / "aal.nii.gz";
    std::error_code error;
    return head.filename() == exampleFiles().front().name && fs::exists(labels, error) ? labels : fs::path();
}

InputFile findExample(const ExampleFile& example, const fs::path& directory)
{
    for (const fs::path& folder : example.folders) {
        const fs::path candidate = (directory / folder / example.name).lexically_normal();
        std::error_code error;
        if (fs::exists(candidate, error))
            return {candidate, example.up};
    }
    throw InputError(directory, std::string("no example data: ") + example.name +
                                    " is not there (see --data in the help), and no file to show was named instead");
}

} // namespace vireo_view
