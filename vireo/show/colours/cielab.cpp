#include "vireo/show/colours/cielab.h"

#include <algorithm>
#include <cmath>

namespace tavo {

namespace {

using Triple = std::array<double, 3>;
using Matrix = std::array<Triple, 3>;

constexpr Matrix XYZ_OF_RGB{
    {{0.4124564, 0.3575761, 0.1804375}, {0.2126729, 0.7151522, 0.0721750}, {0.0193339, 0.1191920, 0.9503041}}};
constexpr Matrix RGB_OF_XYZ{
    {{3.2404542, -1.5371385, -0.4985314}, {-0.9692660, 1.8760108, 0.0415560}, {0.0556434, -0.2040259, 1.0572252}}};
constexpr Triple WHITE{0.9504700, 1.0000001, 1.0888300}; // the sums of the rows above

// Linear RGB as it is seen without one kind of cones, after Machado, Oliveira and Fernandes (2009).
constexpr Matrix PROTAN{
    {{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}}};
constexpr Matrix DEUTAN{
    {{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}}};
constexpr Matrix TRITAN{
    {{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}};

// Where the cube root of CIELAB turns into a line, and the slope of that line.
constexpr double LINEAR_BELOW = 216.0 / 24389;
constexpr double LINEAR_SLOPE = 24389.0 / 27;

Triple product(const Matrix& matrix, const Triple& v)
{
    Triple result{};
    for (std::size_t i = 0; i < 3; ++i)
        result[i] = matrix[i][0] * v[0] + matrix[i][1] * v[1] + matrix[i][2] * v[2];
    return result;
}

double linearised(unsigned char byte)
{
    const double c = byte / 255.0;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

unsigned char encoded(double linear)
{
    const double c = std::clamp(linear, 0.0, 1.0);
    const double s = c <= 0.0031308 ? c * 12.92 : 1.055 * std::pow(c, 1 / 2.4) - 0.055;
    return static_cast<unsigned char>(std::lround(255 * s));
}

double compressed(double t)
{
    return t > LINEAR_BELOW ? std::cbrt(t) : (LINEAR_SLOPE * t + 16) / 116;
}

double expanded(double f)
{
    const double cube = f * f * f;
    return cube > LINEAR_BELOW ? cube : (116 * f - 16) / LINEAR_SLOPE;
}

Triple linearRGB(const Lab& colour)
{
    const double y = (colour.l + 16) / 116;
    const Triple f{y + colour.a / 500, y, y - colour.b / 200};
    Triple xyz{};
    for (std::size_t i = 0; i < 3; ++i)
        xyz[i] = WHITE[i] * expanded(f[i]);
    return product(RGB_OF_XYZ, xyz);
}

Triple asSeen(const Triple& rgb, Vision vision)
{
    if (vision == Vision::FULL)
        return rgb;
    const Matrix& loss = vision == Vision::PROTAN ? PROTAN : vision == Vision::DEUTAN ? DEUTAN : TRITAN;
    Triple seen = product(loss, rgb);
    for (double& component : seen)
        component = std::clamp(component, 0.0, 1.0);
    return seen;
}

} // namespace

Lab toLab(const RGBA8& colour, Vision vision)
{
    const Triple rgb{linearised(colour[0]), linearised(colour[1]), linearised(colour[2])};
    const Triple xyz = product(XYZ_OF_RGB, asSeen(rgb, vision));
    const double x = compressed(xyz[0] / WHITE[0]);
    const double y = compressed(xyz[1] / WHITE[1]);
    const double z = compressed(xyz[2] / WHITE[2]);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

bool isShowable(const Lab& colour)
{
    constexpr double ROUNDING = 1e-4;
    const Triple rgb = linearRGB(colour);
    return std::all_of(rgb.begin(), rgb.end(), [](double c) { return c >= -ROUNDING && c <= 1 + ROUNDING; });
}

RGBA8 toSRGB(const Lab& colour)
{
    double kept = 1; // of the chroma
    if (!isShowable(colour)) {
        double least = 0;
        for (int i = 0; i < 20; ++i) {
            const double middle = (least + kept) / 2;
            (isShowable({colour.l, middle * colour.a, middle * colour.b}) ? least : kept) = middle;
        }
        kept = least;
    }
    const Triple rgb = linearRGB({colour.l, kept * colour.a, kept * colour.b});
    return RGBA8(encoded(rgb[0]), encoded(rgb[1]), encoded(rgb[2]), 255);
}

double chromaOf(const Lab& colour)
{
    return std::hypot(colour.a, colour.b);
}

double distance(const Lab& one, const Lab& other)
{
    return std::hypot(one.l - other.l, one.a - other.a, one.b - other.b);
}

} // namespace tavo
