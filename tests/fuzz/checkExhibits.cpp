#include "tests/fuzz/checkExhibits.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <set>

#include "tests/fuzz/Fuzzing.h"

namespace vireo_fuzz {

namespace {

using namespace vireo_view;

void requireFinite(const float* point, unsigned int numCoordinates)
{
    require(std::all_of(point, point + numCoordinates, [](float value) { return std::isfinite(value); }),
        "what is shown is finite");
}

void check(const PathExhibit& exhibit)
{
    require(!exhibit.pieces.empty(), "there is a curve");
    for (const FittedPoints3& piece : exhibit.pieces) {
        require(piece.size() > 1, "a curve has a length");
        for (const tavo::Vector3f& point : piece)
            requireFinite(point.data(), 3);
    }
}

void check(const PlotExhibit& exhibit)
{
    require(!exhibit.curves.empty(), "there is a curve");
    std::set<std::string> names;
    for (const PlotExhibit::Curve& curve : exhibit.curves) {
        require(names.insert(curve.name).second, "every curve has a name of its own");
        require(exhibit.xs.empty() || exhibit.xs.size() == curve.y.size(), "every value has an x");
    }
    require(
        std::none_of(exhibit.xs.begin(), exhibit.xs.end(), [](double x) { return std::isnan(x); }), "x has no gaps");
    for (const std::string& remark : exhibit.remarks)
        requireGoodMessage(remark);
}

// One for each of so many points, or none.
void requireFor(const NumberColumn& column, std::size_t numPoints, std::size_t width)
{
    require(sizeOf(column) == 0 || sizeOf(column) == width * numPoints, "every point has its numbers");
}

void check(const Geometry& geometry)
{
    const std::size_t numPoints = geometry.getNumPoints();
    require(sizeOf(geometry.positions) % 3 == 0, "every point has three coordinates");
    requireFor(geometry.normals, numPoints, 3);
    requireFor(geometry.colours, numPoints, geometry.numChannels);
    requireFor(geometry.labels, numPoints, 1);
    std::set<std::string> names;
    for (const Geometry::Scalar& scalar : geometry.scalars) {
        require(sizeOf(scalar.values) == numPoints, "every point has its numbers");
        require(!scalar.name.empty() && names.insert(scalar.name).second, "numbers have a name of their own");
    }
    const std::vector<std::uint32_t>& counts = geometry.cornerCounts;
    if (geometry.numCorners == 0)
        require(std::accumulate(counts.begin(), counts.end(), std::size_t(0)) == geometry.faces.size(),
            "faces have all their corners");
    else
        require(geometry.faces.size() % geometry.numCorners == 0, "faces have all their corners");
    require(std::all_of(geometry.faces.begin(), geometry.faces.end(),
                [numPoints](std::uint32_t corner) { return corner < numPoints; }),
        "faces have corners that are there");
    for (const Placement& placement : geometry.placements)
        require(!placement.matrix || std::all_of(placement.matrix->begin(), placement.matrix->end(),
                                         [](double number) { return std::isfinite(number); }),
            "places are finite");
}

void check(const SceneExhibit& exhibit)
{
    require(!exhibit.geometries.empty(), "there is a point");
    for (const Geometry& geometry : exhibit.geometries) {
        require(!geometry.placements.empty(), "what is read is shown");
        check(geometry);
    }
    for (const std::string& remark : exhibit.remarks)
        requireGoodMessage(remark);
}

void check(const VolumeExhibit& exhibit)
{
    const VoxelGrid& grid = exhibit.volume.grid;
    for (const tavo::Vector3d& place : {grid.spacing, grid.origin, grid.axes[0], grid.axes[1], grid.axes[2]})
        require(isFinite(place), "what is shown is finite");
    for (const std::string& remark : exhibit.remarks)
        requireGoodMessage(remark);
}

void check(const ImageExhibit& exhibit)
{
    require(!exhibit.pictures.empty(), "there is an image");
    for (const Picture& picture : exhibit.pictures) {
        require(picture.width > 0 && picture.height > 0 && picture.channels >= 1 && picture.channels <= 4,
            "an image has pixels");
        require(sizeOf(picture.numbers) == std::size_t(picture.width) * static_cast<std::size_t>(picture.height) *
                                               static_cast<std::size_t>(picture.channels),
            "every pixel has its numbers");
    }
}

} // namespace

void checkExhibits(const std::vector<Exhibit>& exhibits)
{
    require(!exhibits.empty(), "there is something to show");
    for (const Exhibit& exhibit : exhibits) {
        require(!nameOf(exhibit).empty(), "what is shown has a name");
        std::visit([](const auto& shown) { check(shown); }, exhibit);
    }
}

} // namespace vireo_fuzz
