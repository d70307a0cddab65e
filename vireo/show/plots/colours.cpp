#include "vireo/show/plots/colours.h"

#include <iterator>

namespace tavo {

namespace {

struct Shades
{
    QRgb onLight;
    QRgb onDark;
};

// After Okabe and Ito, but for their yellow: it is faint on white, and a darker one is their orange to who has no green
// cones.
constexpr Shades PALETTE[] = {
    {0xFF0072B2, 0xFF3D9BE0},
    {0xFFD55E00, 0xFFF2702B},
    {0xFF009E73, 0xFF1FC08F},
    {0xFFCC79A7, 0xFFE08FC0},
    {0xFF56B4E9, 0xFF9BD8F7},
    {0xFFE69F00, 0xFFF5B733},
    {0xFF555555, 0xFFBBBBBB},
    {0xFF8A2BE2, 0xFF8F4BFF},
};

} // namespace

QColor colourOfCurve(std::size_t i, bool isGroundDark)
{
    const Shades& shades = PALETTE[i % std::size(PALETTE)];
    return QColor::fromRgb(isGroundDark ? shades.onDark : shades.onLight);
}

} // namespace tavo
