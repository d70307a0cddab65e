#pragma once

#include <array>

#include "tavo/base/math/vectors.h"

namespace tavo {

// A colour in CIELAB under D65: lightness from 0 to 100, and two axes, from green to red and from blue to yellow.
// Distances between such colours are about as large as they look.
struct Lab
{
    double l = 0;
    double a = 0;
    double b = 0;
};

// Who looks at colours: without red, green or blue cones, they see fewer of them.
enum class Vision
{
    FULL,
    PROTAN,
    DEUTAN,
    TRITAN
};
inline constexpr std::array<Vision, 4> ALL_VISIONS{Vision::FULL, Vision::PROTAN, Vision::DEUTAN, Vision::TRITAN};

// An sRGB colour as it looks.
Lab toLab(const RGBA8& colour, Vision vision = Vision::FULL);

// The opaque sRGB colour that looks so. What screens cannot show loses chroma until they can; lightness and hue stay.
RGBA8 toSRGB(const Lab& colour);

// Whether screens can show it.
bool isShowable(const Lab& colour);

double chromaOf(const Lab& colour);

// How different two colours look (ΔE of 1976). 2.3 can just be told apart.
double distance(const Lab& one, const Lab& other);

} // namespace tavo
