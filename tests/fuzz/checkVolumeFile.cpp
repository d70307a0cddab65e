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

std::vector<float> samplesOf(const tavo::RegularVolume& volume)
{
    std::vector<float> samples(volume.getPointSet()->getNumPoints());
    std::memcpy(samples.data(), volume.getPointSet()->getData(), samples.size() * sizeof(float));
    return samples;
}

bool isSame(float a, float b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

// Volumes of more voxels along an axis than the header of this kind can say are passed over.
void checkWrittenAgain(const tavo::RegularVolume& volume)
{
    std::vector<short> extents;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        if (volume.getExtends()[axis] > std::numeric_limits<short>::max())
            return;
        extents.push_back(static_cast<short>(volume.getExtends()[axis]));
    }
    const std::vector<float> samples = samplesOf(volume);
    const NiftiFile file(extents, NIFTI_TYPE_FLOAT32, vireo_view::bytesOf(samples));
    const tavo::RegularVolume again = readNifti(writeFile("again.nii", file.getBytes()), nullptr);
    require(again.getExtends() == volume.getExtends(), "a volume that is written and read again is of the same size");
    const std::vector<float> samplesAgain = samplesOf(again);
    require(std::equal(samples.begin(), samples.end(), samplesAgain.begin(), samplesAgain.end(), isSame),
        "samples that are written and read again are the same");
}

void checkVolume(const tavo::RegularVolume& volume)
{
    std::uint64_t numVoxels = 1;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        require(volume.getExtends()[axis] > 0, "a volume has voxels");
        numVoxels *= static_cast<std::uint64_t>(volume.getExtends()[axis]);
    }
    require(volume.getPointSet()->getNumPoints() == numVoxels, "a volume has as many samples as voxels");
}

} // namespace

void checkVolumeFile(const std::filesystem::path& file)
{
    try {
        const tavo::RegularVolume volume = readNifti(file, nullptr);
        checkVolume(volume);
        checkWrittenAgain(volume);
        LoadOptions options;
        options.withCurves = true;
        checkExhibits(loadExhibits(file, "volume", options, nullptr));
    } catch (const InputError& error) {
        requireGoodMessage(error.what());
    }
}

} // namespace vireo_fuzz
