#include "benchmarks/scenes/clouds.h"

#include <array>
#include <cmath>

#include "vireo/show/Tuples.h"

namespace vireo_bench {

namespace {

std::size_t widthOf(std::size_t number)
{
    return static_cast<std::size_t>(std::sqrt(static_cast<double>(number)));
}

} // namespace

Points hills(std::size_t number)
{
    const std::size_t width = widthOf(number);
    const float step = 10 / static_cast<float>(width);
    Points points;
    points.reserve(number);
    for (std::size_t i = 0; i < number; ++i) {
        const float x = step * static_cast<float>(i % width);
        const float y = step * static_cast<float>(i / width);
        points.emplace_back(x, y, std::sin(x) * std::cos(0.8F * y));
    }
    return points;
}

tavo::ItemUpdate cloudOf(const Points& points)
{
    tavo::ItemUpdate item;
    item.shape.emplace();
    item.shape->points.numbers = tavo::Points(points);
    item.colour = COLOUR_OF_CLOUD;
    return item;
}

tavo::ItemUpdate cloudOf(std::size_t number)
{
    return cloudOf(hills(number));
}

tavo::ItemUpdate colouredCloudOf(std::size_t number)
{
    const Points points = hills(number);
    std::vector<float> heights;
    heights.reserve(points.size());
    for (const tavo::Vector3f& point : points)
        heights.push_back(point[2]);
    tavo::ItemUpdate item = cloudOf(points);
    tavo::SceneField field{"height", {tavo::Numbers(std::move(heights)), 1}, false};
    item.addField(field);
    return item;
}

tavo::ItemUpdate surfaceOf(std::size_t number)
{
    const auto side = static_cast<int>(widthOf(number));
    std::vector<std::array<int, 3>> triangles;
    for (int y = 0; y + 1 < side; ++y)
        for (int x = 0; x + 1 < side; ++x) {
            const int corner = y * side + x;
            triangles.push_back({corner, corner + 1, corner + side});
            triangles.push_back({corner + side + 1, corner + side, corner + 1});
        }
    tavo::ItemUpdate item = cloudOf(number);
    item.shape->kind = tavo::ItemKind::Mesh;
    item.shape->faces = {tavo::Faces(triangles), 3};
    return item;
}

} // namespace vireo_bench
