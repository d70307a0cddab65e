#include "tests/fuzz/Fuzzing.h"
#include "tests/fuzz/checkVolumeFile.h"

// Any bytes as TIFF pages, a stack or not.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    vireo_fuzz::checkVolumeFile(vireo_fuzz::writeFile("volume.tif", vireo_fuzz::bytesOf(data, size)));
    return 0;
}
