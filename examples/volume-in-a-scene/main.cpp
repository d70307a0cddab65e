#include <cmath>
#include <utility>
#include <vector>
#include <vireo/show/show.h>

int main()
{
    // Two charges: how strong their potential is, and a wall between them.
    constexpr int SIZE = 64;
    std::vector<float> potential;
    for (int z = 0; z < SIZE; ++z)
        for (int y = 0; y < SIZE; ++y)
            for (int x = 0; x < SIZE; ++x) {
                const auto strength = [&](double from) { return 6 / (6 + std::hypot(x - from, y - 32, z - 32)); };
                potential.push_back(static_cast<float>(strength(18) + strength(46)));
            }
    const tavo::Scene lab = tavo::scene("lab");
    lab.volume("potential", std::move(potential), {SIZE, SIZE, SIZE}, 1.0 / SIZE)
        .colourMap("inferno")
        .transferFunction({{0.4, 0}, {0.41, 0.02}, {0.6, 0.06}, {1.2, 0.9}});
    lab.mesh("wall", {0.48, 0.1, 0.1, 0.48, 0.85, 0.1, 0.48, 0.85, 0.55, 0.48, 0.1, 0.55}, {{0, 1, 2, 3}});
    lab.lines("path", {0, 0.3, 0.48, 0.48, 0.48, 0.48, 0.95, 0.6, 0.48}).size(3);
    tavo::show();
}
