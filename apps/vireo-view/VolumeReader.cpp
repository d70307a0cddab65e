#include "apps/vireo-view/VolumeReader.h"

#include "apps/vireo-view/MetaImageReader.h"
#include "apps/vireo-view/NiftiReader.h"
#include "apps/vireo-view/NrrdReader.h"
#include "apps/vireo-view/TiffReader.h"

namespace vireo_view {

Volume readVolume(const std::filesystem::path& file, FileFormat format, const Progress& progress)
{
    switch (format) {
    case FileFormat::NRRD: return readNrrd(file, progress);
    case FileFormat::METAIMAGE: return readMetaImage(file, progress);
    case FileFormat::TIFF: return readTiffStack(file, progress);
    default: return readNifti(file, progress);
    }
}

} // namespace vireo_view
