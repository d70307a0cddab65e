#include "apps/vireo-view/Exhibits.h"
#include "apps/vireo-view/InputError.h"
#include "tests/fuzz/Fuzzing.h"
#include "tests/fuzz/checkExhibits.h"

// Any bytes as an image: by what they begin with as PNG, JPEG, TIFF, PFM or GIF, and else as what Qt takes them for.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes = vireo_fuzz::bytesOf(data, size);
    try {
        const auto file = vireo_fuzz::writeFile("image.png", bytes);
        vireo_fuzz::checkExhibits(vireo_view::loadExhibits(file, "image", {}, nullptr));
    } catch (const vireo_view::InputError& error) {
        vireo_fuzz::requireGoodMessage(error.what());
    }
    return 0;
}
