#include <cmath>
#include <cstdint>
#include <vector>
#include <vireo/show/show.h>

int main()
{
    // A head: skin, bone and brain in layers, and what is warm in it.
    constexpr int SIZE = 96;
    std::vector<std::int16_t> density;
    std::vector<float> warmth;
    std::vector<std::uint8_t> tissues;
    for (int z = 0; z < SIZE; ++z)
        for (int y = 0; y < SIZE; ++y)
            for (int x = 0; x < SIZE; ++x) {
                const double depth = 1 - std::hypot((x - 48) / 36.0, (y - 48) / 45.0, (z - 44) / 40.0);
                const double folds = 8 * std::sin(x / 2.5) * std::sin(y / 2.5) * std::cos(z / 2.5);
                const int tissue = depth < 0 ? 0 : depth < 0.08 ? 1 : depth < 0.18 ? 2 : 3;
                const int densities[] = {-1000, 20, 700, 35 + static_cast<int>(folds)};
                density.push_back(static_cast<std::int16_t>(densities[tissue]));
                tissues.push_back(static_cast<std::uint8_t>(tissue == 2 ? 1 : 0));
                warmth.push_back(static_cast<float>(
                    std::exp(-0.01 * (std::pow(x - 62, 2) + std::pow(y - 60, 2) + std::pow(z - 50, 2)))));
            }
    const tavo::Orientation upright; // x to the right, y to the front, z upwards
    tavo::slices("head", density, {SIZE, SIZE, SIZE}, {1.5, 1.8, 1.6}, {-72, -86, -70}, upright)
        .window(-20, 90)
        .crosshair(18, 20, 8);
    tavo::slices("head").overlay(warmth, {SIZE, SIZE, SIZE}, {1.5, 1.8, 1.6}, {-72, -86, -70}).window(0.2, 1);
    tavo::slices("head").labels(tissues, {"", "bone"}).opacity(0.4);
    tavo::show();
}
