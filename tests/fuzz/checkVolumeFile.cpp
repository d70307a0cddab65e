#include "tests/fuzz/checkVolumeFile.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/NiftiReader.h"
#include "tests/apps/vireo-view/NiftiFile.h"
#include "tests/fuzz/Fuzzing.h"
#include "tests/fuzz/checkExhibits.h"

namespace vireo_fuzz {

namespace {

using namespace vireo_view;

bool isSame(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool areSame(const NumberColumn& a, const NumberColumn& b)
{
    bool areSame = sizeOf(a) == sizeOf(b);
    for (std::size_t i = 0; areSame && i < sizeOf(a); ++i)
        areSame = isSame(numberAt(a, i), numberAt(b, i));
    return areSame;
}

// As doubles, which hold every number that is kept. Volumes of more voxels along an axis than the header of this kind
// can say are passed over.
void checkWrittenAgain(const Volume& volume)
{
    std::vector<short> extents;
    for (const int extent : volume.grid.size) {
        if (extent > std::numeric_limits<short>::max())
            return;
        extents.push_back(static_cast<short>(extent));
    }
    const NumberColumn& samples = volume.times.back();
    std::vector<double> numbers;
    for (std::size_t i = 0; i < sizeOf(samples); ++i)
        numbers.push_back(numberAt(samples, i));
    const NiftiFile file(extents, NIFTI_TYPE_FLOAT64, vireo_view::bytesOf(numbers));
    const Volume again = readNifti(writeFile("again.nii", file.getBytes()), nullptr);
    require(again.grid.size == volume.grid.size, "a volume that is written and read again is of the same size");
    require(areSame(again.times.front(), samples), "samples that are written and read again are the same");
}

void checkVolume(const Volume& volume)
{
    std::uint64_t numVoxels = 1;
    for (const int extent : volume.grid.size) {
        require(extent > 0, "a volume has voxels");
        numVoxels *= static_cast<std::uint64_t>(extent);
    }
    require(volume.numChannels == 1 || volume.numChannels == 3 || volume.numChannels == 4, "it can be shown");
    require(!volume.times.empty(), "there is something at some time");
    for (const NumberColumn& samples : volume.times)
        require(sizeOf(samples) == volume.numChannels * numVoxels, "a volume has as many samples as voxels");
}

} // namespace

void checkVolumeFile(const std::filesystem::path& file)
{
    try {
        LoadOptions options;
        options.withCurves = true;
        const std::vector<Exhibit> exhibits = loadExhibits(file, "volume", options, nullptr);
        checkExhibits(exhibits);
        const auto* const shown = std::get_if<VolumeExhibit>(&exhibits.front());
        require(shown || file.extension() == ".tif", "the file has a volume");
        if (!shown)
            return; // pages that differ are images
        checkVolume(shown->volume);
        if (shown->volume.numChannels == 1)
            checkWrittenAgain(shown->volume);
    } catch (const InputError& error) {
        requireGoodMessage(error.what());
    }
}

} // namespace vireo_fuzz
