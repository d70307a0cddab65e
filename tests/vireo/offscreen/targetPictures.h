#pragma once

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <memory>

#include "tavo/base/images/RGBAFloat32Image.h"
#include "tavo/base/images/RGBAImage.h"
#include "tests/vireo/textures/texels.h"

namespace tavo {

using Viewport = std::array<int, 4>;

inline Viewport viewport()
{
    Viewport values{};
    glGetIntegerv(GL_VIEWPORT, values.data());
    return values;
}

inline void setViewport(const Viewport& values)
{
    glViewport(values[0], values[1], values[2], values[3]);
}

// Four colours, one a quarter of the target, which fill it; and the picture of them.
inline constexpr std::array<Pixel, 4> QUARTERS{
    {{250, 10, 20, 30}, {40, 240, 50, 60}, {70, 80, 230, 90}, {220, 210, 100, 255}}};

inline void drawQuarters()
{
    for (unsigned int i = 0; i < QUARTERS.size(); ++i) {
        const float x = i % 2 == 0 ? -1 : 0;
        const float y = i / 2 == 0 ? -1 : 0;
        glColor4ubv(QUARTERS[i].data());
        glRectf(x, y, x + 1, y + 1);
    }
}

inline Picture quarters(unsigned int width, unsigned int height)
{
    Picture picture(width, height);
    for (unsigned int y = 0; y < height; ++y)
        for (unsigned int x = 0; x < width; ++x)
            picture.at(x, y) = QUARTERS[(x < width / 2 ? 0 : 1) + (y < height / 2 ? 0 : 2)];
    return picture;
}

// Paints the pixels of a viewport.
inline void paintRect(Picture& picture, const Viewport& where, const Pixel& colour)
{
    for (int y = where[1]; y < where[1] + where[3]; ++y)
        for (int x = where[0]; x < where[0] + where[2]; ++x)
            picture.at(static_cast<unsigned int>(x), static_cast<unsigned int>(y)) = colour;
}

// The picture of an image that is the caller's.
inline Picture pictureOf(const RGBAImage& image)
{
    return pictureOf(image.getPixels().data()->data(), image.getWidth(), image.getHeight(), 4);
}

inline unsigned char byteOf(float value)
{
    const float scaled = 255 * value;
    EXPECT_NEAR(scaled, std::round(scaled), 0.001f);
    return static_cast<unsigned char>(std::lround(scaled));
}

// The same of one with floats, which must be those of bytes.
inline Picture pictureOf(const RGBAFloat32Image& image)
{
    Picture picture(image.getWidth(), image.getHeight());
    for (unsigned int y = 0; y < image.getHeight(); ++y)
        for (unsigned int x = 0; x < image.getWidth(); ++x)
            for (unsigned int i = 0; i < 4; ++i)
                picture.at(x, y)[i] = byteOf(image.at(x, y)[i]);
    return picture;
}

template <typename Image>
Picture pictureOf(std::unique_ptr<Image> image)
{
    return pictureOf(*image);
}

// A picture no two of whose pixels are alike, as an image.
template <typename Image>
Image makeImage(unsigned int width, unsigned int height)
{
    Image image(width, height);
    for (unsigned int y = 0; y < height; ++y)
        for (unsigned int x = 0; x < width; ++x)
            image.at(x, y) = typename Image::Pixel(x, y, x + y, x * y);
    return image;
}

} // namespace tavo
