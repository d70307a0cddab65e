#include <algorithm>

#include "tests/fuzz/Fuzzing.h"
#include "tests/fuzz/checkVolumeFile.h"

// Any bytes as a header and, if there are more of them than a header has, the image that belongs to it. Either file is
// named in turn.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes = vireo_fuzz::bytesOf(data, size);
    // It begins with its size, in either byte order.
    using namespace std::string_view_literals;
    const bool isOfVersion2 = bytes.starts_with("\x1C\x02\0\0"sv) || bytes.starts_with("\0\0\x02\x1C"sv);
    const std::size_t headerSize = std::min<std::size_t>(isOfVersion2 ? 540 : 348, size);
    const std::filesystem::path header = vireo_fuzz::writeFile("volume.hdr", bytes.substr(0, headerSize));
    const std::filesystem::path image = vireo_fuzz::writeFile("volume.img", bytes.substr(headerSize));
    if (headerSize == size)
        std::filesystem::remove(image);
    vireo_fuzz::checkVolumeFile(header);
    vireo_fuzz::checkVolumeFile(image);
    return 0;
}
