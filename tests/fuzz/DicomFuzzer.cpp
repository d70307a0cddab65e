#include "tests/fuzz/Fuzzing.h"
#include "tests/fuzz/checkVolumeFile.h"

// Any bytes as a DICOM file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    vireo_fuzz::checkVolumeFile(vireo_fuzz::writeFile("volume.dcm", vireo_fuzz::bytesOf(data, size)));
    return 0;
}
