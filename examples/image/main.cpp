#include <cmath>
#include <vector>
#include <vireo/show/show.h>

int main()
{
    constexpr int WIDTH = 640;
    constexpr int HEIGHT = 480;
    std::vector<float> heights;
    std::vector<unsigned char> colours;
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 0; x < WIDTH; ++x) {
            const double distance = 0.01 * std::hypot(x - 320, y - 240);
            heights.push_back(static_cast<float>(distance < 0.1 ? NAN : std::cos(6 * distance) / (1 + distance)));
            for (const int channel : {x * 255 / WIDTH, y * 255 / HEIGHT, 128})
                colours.push_back(static_cast<unsigned char>(channel));
        }
    tavo::image("colours", colours, WIDTH, HEIGHT, 3).link(tavo::image("heights"));
    tavo::image("heights", heights, WIDTH, HEIGHT).colourMap("viridis").percentiles(1, 99);
    tavo::show();
}
