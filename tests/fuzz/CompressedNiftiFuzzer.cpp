#include "tests/apps/vireo-view/NiftiFile.h"
#include "tests/fuzz/Fuzzing.h"
#include "tests/fuzz/checkVolumeFile.h"

// Any bytes as a compressed volume; those that are not compressed also compressed, since only few changes of compressed
// bytes are not found out at once.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes = vireo_fuzz::bytesOf(data, size);
    const std::filesystem::path file = vireo_fuzz::writeFile("volume.nii.gz", bytes);
    vireo_fuzz::checkVolumeFile(file);
    if (!bytes.starts_with("\x1F\x8B")) {
        vireo_view::writeCompressed(file, bytes);
        vireo_fuzz::checkVolumeFile(file);
    }
    return 0;
}
