#include "benchmarks/support/inputs.h"

#include <QStandardPaths>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <random>
#include <utility>

#include "apps/vireo-view/ExampleData.h"
#include "apps/vireo-view/FileFormat.h"
#include "apps/vireo-view/GeometryReader.h"
#include "apps/vireo-view/NiftiReader.h"
#include "apps/vireo-view/SceneFitting.h"

namespace vireo_bench {

namespace {

constexpr std::size_t HEAD = 0;
constexpr std::size_t BUILDING = 1;

// Where scripts/example-data puts what the packages do not put into place themselves.
std::filesystem::path dataDirectory()
{
    if (const char* const directory = std::getenv("VIREO_VIEW_DATA"))
        return directory;
    return (QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/vireo-view").toStdString();
}

std::filesystem::path exampleFile(std::size_t index)
{
    return vireo_view::findExample(vireo_view::exampleFiles().at(index), dataDirectory()).path;
}

bool goOn(double)
{
    return true;
}

tavo::RegularVolume makeCubeOf(const tavo::RegularVolume& from, int side)
{
    const tavo::Vector3i& extends = from.getExtends();
    const tavo::PointSet& samples = *from.getPointSet();
    const std::size_t size = samples.getDescr().getSize();
    auto scaled = std::make_unique<tavo::PointSet>(samples.getDescr(), static_cast<unsigned int>(side * side * side));
    unsigned char* to = scaled->getData();
    for (int z = 0; z < side; ++z)
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x, to += size) {
                const int row = z * extends[2] / side * extends[1] + y * extends[1] / side;
                const int index = row * extends[0] + x * extends[0] / side;
                std::memcpy(to, samples.getData() + static_cast<std::size_t>(index) * size, size);
            }
    return {tavo::Vector3i(side, side, side), from.getBoundingBox(), std::move(scaled)};
}

// One channel of floats, about the origin.
tavo::RegularVolume regularVolumeOf(const vireo_view::Volume& volume)
{
    const vireo_view::NumberColumn& numbers = volume.times.front();
    tavo::VertexDescriptor channels;
    channels.pushAttrib({"density", 1, tavo::VertexAttribDescriptor::TYPE_FLOAT});
    auto samples = std::make_unique<tavo::PointSet>(channels, static_cast<unsigned int>(vireo_view::sizeOf(numbers)));
    for (std::size_t i = 0; i < vireo_view::sizeOf(numbers); ++i) {
        const auto number = static_cast<float>(vireo_view::numberAt(numbers, i));
        std::memcpy(samples->getData() + i * sizeof number, &number, sizeof number);
    }
    const vireo_view::VoxelGrid& grid = volume.grid;
    tavo::Vector3f corner;
    for (unsigned int i = 0; i < 3; ++i)
        corner[i] = static_cast<float>(grid.size[i] * grid.spacing[i] / 2);
    return {tavo::Vector3i(grid.size[0], grid.size[1], grid.size[2]), {corner * -1.0f, corner}, std::move(samples)};
}

} // namespace

tavo::RegularVolume& head()
{
    static tavo::RegularVolume volume = regularVolumeOf(vireo_view::readNifti(exampleFile(HEAD), goOn));
    return volume;
}

tavo::RegularVolume& headInCube(int side)
{
    static std::map<int, tavo::RegularVolume> cubes;
    const auto made = cubes.find(side);
    return made != cubes.end() ? made->second : cubes.emplace(side, makeCubeOf(head(), side)).first->second;
}

Points randomPoints(unsigned int count)
{
    std::mt19937 generator(1); // NOLINT(cert-msc51-cpp): the same numbers each time are wanted
    const auto coordinate = [&generator] { return static_cast<float>(generator() / 4294967296.0 - 0.5); };
    Points points(count);
    for (tavo::Vector3f& point : points)
        for (unsigned int axis = 0; axis < 3; ++axis)
            point[axis] = coordinate();
    return points;
}

std::unique_ptr<tavo::PointSet> pointSetOf(const Points& points)
{
    tavo::VertexDescriptor layout;
    layout.pushAttrib(tavo::VertexAttribDescriptor("position", 3, tavo::VertexAttribDescriptor::TYPE_FLOAT));
    auto set = std::make_unique<tavo::PointSet>(layout, static_cast<unsigned int>(points.size()));
    std::memcpy(set->getData(), points.data(), set->getSizeInBytes());
    return set;
}

Points scannedPoints()
{
    const vireo_view::GeometryFile file =
        vireo_view::readGeometry(exampleFile(BUILDING), vireo_view::FileFormat::PLY, goOn);
    const vireo_view::Geometry& building = file.geometries.front();
    vireo_view::Points3 points(building.getNumPoints());
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = building.getPoint(i);
    return vireo_view::fitPoints(points);
}

tavo::RGBAImage makeImage(unsigned int side)
{
    tavo::RGBAImage image(side, side);
    unsigned int i = 0;
    for (tavo::RGBAImage::Pixel& pixel : image.getPixels()) {
        pixel = {static_cast<unsigned char>(i), static_cast<unsigned char>(i >> 8), static_cast<unsigned char>(i >> 16),
            255};
        ++i;
    }
    return image;
}

Curves makeCurves(std::size_t count, std::size_t numSamples)
{
    Curves curves(count, std::vector<float>(numSamples));
    for (std::size_t curve = 0; curve < count; ++curve)
        for (std::size_t i = 0; i < numSamples; ++i) {
            const double angle = 10 * static_cast<double>((curve + 1) * i) / static_cast<double>(numSamples);
            curves[curve][i] = 0.4f * static_cast<float>(std::sin(angle));
        }
    return curves;
}

std::vector<tavo::RGBA8> makeColours(std::size_t count)
{
    std::vector<tavo::RGBA8> colours;
    for (std::size_t curve = 0; curve < count; ++curve)
        colours.emplace_back(static_cast<unsigned char>(255 * curve / count), 255,
            static_cast<unsigned char>(255 - 255 * curve / count), 255);
    return colours;
}

} // namespace vireo_bench
