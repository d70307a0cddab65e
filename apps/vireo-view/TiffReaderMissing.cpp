#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/TiffReader.h"

namespace vireo_view {

Volume readTiffStack(const std::filesystem::path& file, const Progress&)
{
    throw InputError(file, "is a TIFF file, and this vireo-view was built without libtiff, which reads them");
}

bool isTiffStack(const std::filesystem::path&)
{
    return false;
}

bool isTiffOfImages(const std::filesystem::path&)
{
    return false;
}

} // namespace vireo_view
