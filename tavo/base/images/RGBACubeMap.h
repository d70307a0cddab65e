#pragma once

#include <array>

#include "tavo/base/images/RGBAImage.h"

namespace tavo {

/// The six faces of a cube as pictures. Nothing keeps them square or of one size.
///
///     RGBACubeMap sky;
///     sky.getImage(RGBACubeMap::POSITIVE_Y) = image;
class RGBACubeMap
{
public:
    enum Face
    {
        POSITIVE_X,
        NEGATIVE_X,
        POSITIVE_Y,
        NEGATIVE_Y,
        POSITIVE_Z,
        NEGATIVE_Z
    };
    static constexpr unsigned int NUM_FACES = 6;

    RGBAImage& getImage(Face face) { return m_Images[face]; }
    const RGBAImage& getImage(Face face) const { return m_Images[face]; }

private:
    std::array<RGBAImage, NUM_FACES> m_Images;
};

} // namespace tavo
