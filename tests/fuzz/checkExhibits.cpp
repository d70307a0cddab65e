#include "tests/fuzz/checkExhibits.h"

#include <algorithm>
#include <cmath>
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

void check(const CloudExhibit& exhibit)
{
    const tavo::PointSet& points = *exhibit.points;
    const tavo::AttributeAccessToken position = points.getAAT("position");
    require(points.getNumPoints() > 0, "there is a point");
    for (unsigned int i = 0; i < points.getNumPoints(); ++i)
        requireFinite(points.get3f(i, position), 3);
}

void check(const VolumeExhibit& exhibit)
{
    const tavo::Box3f& box = exhibit.volume->getBoundingBox();
    requireFinite(box.getMin().data(), 3);
    requireFinite(box.getMax().data(), 3);
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
