#include "apps/vireo-view/Exhibits.h"
#include "apps/vireo-view/InputError.h"
#include "tests/fuzz/Fuzzing.h"
#include "tests/fuzz/checkExhibits.h"

// Any bytes as points or surfaces: by what they begin with as PLY, OFF or glTF, and else as each of the formats that
// only the file's name tells.

namespace {

using namespace vireo_view;

void check(const char* name, std::string_view bytes, const LoadOptions& options)
{
    try {
        vireo_fuzz::checkExhibits(loadExhibits(vireo_fuzz::writeFile(name, bytes), name, options, nullptr));
    } catch (const InputError& error) {
        vireo_fuzz::requireGoodMessage(error.what());
    }
}

bool mayBeJson(std::string_view bytes)
{
    const std::size_t first = bytes.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && bytes[first] == '{';
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes = vireo_fuzz::bytesOf(data, size);
    LoadOptions options;
    options.up = Axis::Z;
    options.withCurves = true;
    if (bytes.starts_with("glTF") || mayBeJson(bytes)) {
        check("scene.gltf", bytes, options);
        return 0;
    }
    for (const char* const name : {"scene.ply", "scene.off", "scene.obj", "scene.stl", "scene.xyz", "scene.pts"})
        check(name, bytes, options);
    return 0;
}
