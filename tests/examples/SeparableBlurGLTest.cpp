#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "tests/examples/ExampleTest.h"
#include "tests/support/blurPass.h"

namespace {

using tavo::blurPass;
using tavo::Picture;
using tavo::toPicture;

std::vector<double> bellCurve(int radius, double deviation)
{
    std::vector<double> weights;
    double sum = 0;
    for (int i = -radius; i <= radius; ++i) {
        weights.push_back(std::exp(-i * i / (2 * deviation * deviation)));
        sum += weights.back();
    }
    for (double& weight : weights)
        weight /= sum;
    return weights;
}

// The picture, dimmed, and the blurred one in the colour of embers.
Picture glowing(const Picture& picture, const Picture& blurred)
{
    constexpr std::array<double, 3> embers{1.5, 0.75, 0.25};
    Picture result = picture;
    for (std::size_t i = 0; i < picture.pixels.size(); ++i)
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const double value = embers[channel] * blurred.pixels[i][channel] + 0.5 * picture.pixels[i][channel];
            result.pixels[i][channel] = static_cast<unsigned char>(std::lround(std::min(value, 255.0)));
        }
    return result;
}

int largestDifference(const Picture& a, const Picture& b)
{
    int largest = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i)
        for (std::size_t channel = 0; channel < 3; ++channel)
            largest = std::max(largest, std::abs(a.pixels[i][channel] - b.pixels[i][channel]));
    return largest;
}

using SeparableBlurGLTest = tavo::ExampleTest;

// Each of the three passes may round otherwise than the computation does, the last one half as much again.
TEST_F(SeparableBlurGLTest, ShowsWhatIsComputedWithoutGL)
{
    ASSERT_EQ(run("separable-blur", "picture.png").exitStatus, 0);
    const Picture shown = toPicture(picture("picture.png"));
    const Picture original = toPicture(QImage(VIREO_BLURRED_PICTURE));
    ASSERT_EQ(shown.pixels.size(), original.pixels.size());

    const std::vector<double> weights = bellCurve(8, 4);
    const Picture blurred = blurPass(blurPass(original, weights, 1, 0), weights, 0, 1);
    EXPECT_LE(largestDifference(shown, glowing(original, blurred)), 3);
    EXPECT_GT(largestDifference(shown, original), 100) << "it does something";
}

} // namespace
