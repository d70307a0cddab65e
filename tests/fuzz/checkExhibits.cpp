#include "tests/fuzz/checkExhibits.h"

#include <algorithm>
#include <cmath>

#include "tests/fuzz/Fuzzing.h"

namespace vireo_fuzz {

namespace {

using namespace vireo_view;

void requireFinite(const float* point, unsigned int numCoordinates)
{
    require(std::all_of(point, point + numCoordinates, [](float value) { return std::isfinite(value); }),
        "what is shown is finite");
}

template <unsigned int N>
void check(const CurvesExhibit<N>& exhibit)
{
    require(!exhibit.curves.empty(), "there is a curve");
    require(exhibit.curves.size() == exhibit.colours.size(), "every curve has its colour");
    for (const auto& curve : exhibit.curves) {
        require(curve.size() > 1, "a curve has a length");
        for (const auto& point : curve)
            requireFinite(point.data(), N);
    }
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
