#pragma once

#include <QLineF>
#include <optional>
#include <string>
#include <vector>

#include "vireo/show/images/ImagePixels.h"

namespace tavo {

// The numbers of the pixels along a line, as a plot of its own, which is called after the image.
class ImageProfile
{
public:
    explicit ImageProfile(const std::string& nameOfImage)
        : m_NameOfPlot(nameOfImage + " profile")
    {}

    const std::string& nameOfPlot() const { return m_NameOfPlot; }

    // In pixels of the image, from the middle of one pixel to that of another.
    const std::optional<QLineF>& line() const { return m_Line; }
    void setLine(const QLineF& line, const ImagePixels& pixels);

    // Takes the line away, and its plot. Returns whether there was one.
    bool clear();

    // Shows what has become of the numbers.
    void follow(const ImagePixels& pixels) const;

private:
    std::string m_NameOfPlot;
    std::optional<QLineF> m_Line;
};

} // namespace tavo
