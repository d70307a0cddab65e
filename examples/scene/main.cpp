#include <cmath>
#include <vector>
#include <vireo/show/show.h>

int main()
{
    std::vector<tavo::Vector3d> echoes;
    std::vector<double> heights;
    for (int i = 0; i < 200'000; ++i) {
        const double x = 0.02 * (i % 500) - 5;
        const double y = 0.025 * (i / 500) - 5;
        const double distance = std::hypot(x, y);
        heights.push_back(2 * std::cos(2 * distance) / (1 + distance));
        echoes.emplace_back(x, y, heights.back());
    }
    const tavo::Scene world = tavo::scene("world");
    world.cloud("lidar", echoes).scalar("height", heights).size(4);
    world.lines("path", {-5, -5, 1, 0, 0, 3, 5, -2, 1}).size(3);
    world.text("path/start", {-5, -5, 1}, "start");
    tavo::show();
}
