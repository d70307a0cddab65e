#pragma once

#include <cstddef>
#include <vector>

#include "tavo/base/math/checkedAt.h"
#include "tavo/base/math/vectors.h"

namespace tavo {

/// A picture in memory: width x height pixels of four components (red, green, blue, alpha), row after row without
/// padding. A default image has no pixels. Programs use its subclasses RGBAImage and RGBAFloat32Image.
///
///     TemplatedImage<float> picture(640, 480);
///     picture.at(0, 0) = {1, 0.5f, 0, 1};
template <typename Component>
class TemplatedImage
{
public:
    using Pixel = StaticVector<Component, 4>;

    TemplatedImage() = default;
    TemplatedImage(unsigned int width, unsigned int height) { resize(width, height); }

    /// Sets the size in pixels, and every pixel to zero.
    void resize(unsigned int width, unsigned int height)
    {
        m_Pixels.assign(static_cast<std::size_t>(width) * height, Pixel());
        m_Width = width;
        m_Height = height;
    }

    unsigned int getWidth() const { return m_Width; }
    unsigned int getHeight() const { return m_Height; }

    /// The pixel in column `x` of row `y`.
    /// @throws std::out_of_range Outside the image.
    Pixel& at(unsigned int x, unsigned int y) { return checkedAt(m_Pixels, indexOf(x, y)); }
    const Pixel& at(unsigned int x, unsigned int y) const { return checkedAt(m_Pixels, indexOf(x, y)); }

    /// All pixels, row 0 first.
    std::vector<Pixel>& getPixels() { return m_Pixels; }
    const std::vector<Pixel>& getPixels() const { return m_Pixels; }

private:
    std::size_t indexOf(unsigned int x, unsigned int y) const
    {
        return x < m_Width ? static_cast<std::size_t>(y) * m_Width + x : m_Pixels.size();
    }

    unsigned int m_Width = 0;
    unsigned int m_Height = 0;
    std::vector<Pixel> m_Pixels;
};

} // namespace tavo
